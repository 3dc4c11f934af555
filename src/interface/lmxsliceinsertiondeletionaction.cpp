#include "interface/lmxsliceinsertiondeletionaction.h"

#include "interface/lmxeventserver.h"
#include "interface/lmxstack.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"
#include "system/exception.h"

namespace {

/// The place of the slice in its stack, or -1.
int placeOf(const StackSlice& slice)
{
    return slice.getStack() == nullptr ? -1 : slice.getStack()->findSlice(slice);
}

} // namespace

LMXSliceInsertionDeletionAction::LMXSliceInsertionDeletionAction(StackSlice& subject)
    : LMXSliceAction(subject)
{
    const int place = placeOf(subject);
    if (place >= 0) {
        slicePosition = place;
    } else if (subject.getStack() != nullptr) {
        slicePosition = subject.getStack()->getNumSlices();
    }
}

LMXSliceInsertionDeletionAction::~LMXSliceInsertionDeletionAction()
{
    // A deletion that was never carried out leaves the slice where it is.
    if (insertion == reverted() && placeOf(getSlice()) < 0) {
        delete &getSlice();
    }
}

void LMXSliceInsertionDeletionAction::apply()
{
    carryOut(insertion);
    LMXAction::apply();
    LMXEventServer::notifyAction(*this);
}

void LMXSliceInsertionDeletionAction::revert()
{
    carryOut(!insertion);
    LMXAction::revert();
    LMXEventServer::notifyAction(*this);
}

QString LMXSliceInsertionDeletionAction::description(bool) const
{
    return insertion ? "Insert slice" : "Delete slice";
}

void LMXSliceInsertionDeletionAction::carryOut(bool insert)
{
    Stack* stack = getSlice().getStack();
    if (stack == nullptr) {
        raise<UsageError>("void LMXSliceInsertionDeletionAction::apply()",
                          "The slice has no stack");
    }
    insert ? insertSlice(*stack) : takeSliceOut(*stack);
    if (auto* live = dynamic_cast<LMXStack*>(stack)) {
        live->updateReconstruction();
    }
}

void LMXSliceInsertionDeletionAction::insertSlice(Stack& stack)
{
    if (slicePosition < 0 || slicePosition > stack.getNumSlices()) {
        raise<RangeError>("void LMXSliceInsertionDeletionAction::apply()",
                          "The slice can't be inserted outside the stack");
    }
    StackSlice& subject = getSlice();
    stack.addSlice(subject, slicePosition);
    for (int i = 0; i < subject.getNumItems(); ++i) {
        subject.getItem(i).attachToModel();
    }
}

void LMXSliceInsertionDeletionAction::takeSliceOut(Stack& stack)
{
    StackSlice& subject = getSlice();
    if (placeOf(subject) < 0 || placeOf(subject) != slicePosition) {
        raise<RangeError>("void LMXSliceInsertionDeletionAction::apply()",
                          "The slice does not stand at this position");
    }
    for (int i = 0; i < subject.getNumItems(); ++i) {
        subject.getItem(i).detachFromModel();
    }
    stack.removeSlice(slicePosition);
}
