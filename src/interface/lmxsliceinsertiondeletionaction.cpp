#include "interface/lmxsliceinsertiondeletionaction.h"

#include "interface/lmxeventserver.h"
#include "interface/lmxstack.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"

namespace {

void updateReconstruction(Stack& stack)
{
    if (auto* live = dynamic_cast<LMXStack*>(&stack)) {
        live->updateReconstruction();
    }
}

} // namespace

LMXSliceInsertionDeletionAction::LMXSliceInsertionDeletionAction(StackSlice& slice)
    : LMXSliceAction(slice)
{}

LMXSliceInsertionDeletionAction::~LMXSliceInsertionDeletionAction()
{
    if (insertion_ == reverted()) {
        delete &getSlice();
    }
}

void LMXSliceInsertionDeletionAction::apply()
{
    LMXAction::apply();
    insertion_ ? insertSlice() : takeSliceOut();
    LMXEventServer::notifyAction(*this);
}

void LMXSliceInsertionDeletionAction::revert()
{
    LMXAction::revert();
    insertion_ ? takeSliceOut() : insertSlice();
    LMXEventServer::notifyAction(*this);
}

QString LMXSliceInsertionDeletionAction::description(bool) const
{
    return insertion_ ? "Insert slice" : "Delete slice";
}

void LMXSliceInsertionDeletionAction::insertSlice()
{
    StackSlice& slice = getSlice();
    slice.getStack()->addSlice(slice, slicePosition_);
    for (int i = 0; i < slice.getNumItems(); ++i) {
        slice.getItem(i).attachToModel();
    }
    updateReconstruction(*slice.getStack());
}

void LMXSliceInsertionDeletionAction::takeSliceOut()
{
    StackSlice& slice = getSlice();
    for (int i = 0; i < slice.getNumItems(); ++i) {
        slice.getItem(i).detachFromModel();
    }
    slice.getStack()->removeSlice(slicePosition_);
    updateReconstruction(*slice.getStack());
}
