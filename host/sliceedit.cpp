#include "host/sliceedit.h"

#include "stack/stack.h"
#include "stack/stackslice.h"

SliceEdit::SliceEdit(StackSlice& subject, const QString& name)
    : LMXSliceAction(subject)
    , name_(name)
    , lastSegmented_(subject.getStack()->getLastSegmentedSlice())
{}

SliceEdit::~SliceEdit() = default;

void SliceEdit::applyNext(std::unique_ptr<LMXAction> action)
{
    // Kept first: an action changes the document before it tells, and what may fail is a client.
    actions_.push_back(std::move(action));
    actions_.back()->apply();
}

void SliceEdit::apply()
{
    LMXAction::apply();
    Stack& stack = *getSlice().getStack();
    const std::string present = stack.getLastSegmentedSlice();
    for (const auto& action : actions_) {
        action->apply();
    }
    stack.setLastSegmentedSlice(lastSegmented_);
    lastSegmented_ = present;
}

void SliceEdit::revert()
{
    LMXAction::revert();
    Stack& stack = *getSlice().getStack();
    const std::string present = stack.getLastSegmentedSlice();
    for (auto action = actions_.rbegin(); action != actions_.rend(); ++action) {
        (*action)->revert();
    }
    stack.setLastSegmentedSlice(lastSegmented_);
    lastSegmented_ = present;
}
