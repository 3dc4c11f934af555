#include "host/editing/sliceedit.h"

#include <utility>

SliceEdit::SliceEdit(StackSlice& subject,
                     const QString& name,
                     std::shared_ptr<SegmentationNotes> notes)
    : LMXSliceAction(subject)
    , name_(name)
    , notes_(std::move(notes))
    , number_(notes_->begin())
{}

SliceEdit::~SliceEdit() = default;

void SliceEdit::applyNext(std::unique_ptr<LMXAction> action)
{
    // Kept first: an action changes the document before it tells, and what may fail is a client.
    actions_.push_back(std::move(action));
    actions_.back()->apply();
}

void SliceEdit::finish()
{
    note_ = notes_->change();
    notes_->stand(number_, note_);
}

void SliceEdit::apply()
{
    LMXAction::apply();
    for (const auto& action : actions_) {
        action->apply();
    }
    notes_->stand(number_, note_);
}

void SliceEdit::revert()
{
    LMXAction::revert();
    for (auto action = actions_.rbegin(); action != actions_.rend(); ++action) {
        (*action)->revert();
    }
    notes_->undo(number_);
}
