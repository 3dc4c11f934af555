#include "host/editing/edithistories.h"

#include "host/document/lmxrootmediator.h"
#include "host/editing/modelpresence.h"
#include "host/editing/segmentationnotes.h"
#include "host/editing/sliceedit.h"
#include "interface/lmxstack.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"

#include <algorithm>

EditHistories::EditHistories(LMXRootMediator& mediator, QObject* parent)
    : QObject(parent)
    , mediator_(mediator)
{}

EditHistories::~EditHistories() = default;

bool EditHistories::undo(int slice)
{
    return step(slice, true);
}

bool EditHistories::redo(int slice)
{
    return step(slice, false);
}

QString EditHistories::undoText(int slice) const
{
    const LMXActionHistory* steps = history(slice);
    return steps && steps->isUndoable() ? steps->getUndoDescription(false) : QString();
}

QString EditHistories::redoText(int slice) const
{
    const LMXActionHistory* steps = history(slice);
    return steps && steps->isRedoable() ? steps->getRedoDescription(false) : QString();
}

/// Null for a slice on which nothing was edited.
LMXActionHistory* EditHistories::history(int slice) const
{
    LMXStack* stack = mediator_.stack();
    if (!stack || slice < 0 || slice >= stack->getNumSlices()) {
        return nullptr;
    }
    StackSlice& edited = stack->getSlice(slice);
    return tracks_.count(&edited) > 0 ? &stack->sliceHistory(edited) : nullptr;
}

bool EditHistories::step(int slice, bool back)
{
    if (history(slice)) {
        endIfChanged(mediator_.stack()->getSlice(slice));
    }
    LMXActionHistory* steps = history(slice); // none any more, if it was ended
    if (!steps || !(back ? steps->isUndoable() : steps->isRedoable())) {
        return false;
    }
    StackSlice& edited = mediator_.stack()->getSlice(slice);
    ++applying_;
    try {
        back ? steps->undo() : steps->redo();
    } catch (...) {
        --applying_;
        end(); // a client failed, and the step is half done
        throw;
    }
    --applying_;
    tracks_[&edited].steps += back ? -1 : 1;
    noteRevisions(edited);
    restoreSavedFlag();
    emit changed();
    return true;
}

/// The new edit, during which events are its own, until `finish`.
std::unique_ptr<SliceEdit> EditHistories::begin(StackSlice& slice, const QString& name)
{
    if (tracks_.count(&slice) > 0) {
        endIfChanged(slice);
    }
    if (!notes_) {
        notes_ = std::make_shared<SegmentationNotes>(*mediator_.stack());
    }
    auto edit = std::make_unique<SliceEdit>(slice, name, notes_);
    ++applying_;
    return edit;
}

void EditHistories::finish(StackSlice& slice)
{
    --applying_;
    if (tracks_.count(&slice) > 0) {
        noteRevisions(slice);
        emit changed();
    }
}

void EditHistories::record(StackSlice& slice, std::unique_ptr<SliceEdit> edit)
{
    edit->finish();
    LMXActionHistory& steps = mediator_.stack()->sliceHistory(slice);
    if (tracks_.count(&slice) == 0) {
        steps.clear(); // of a slice that was out of the stack since
    }
    steps.openStep();
    steps.push(edit.release(), false);
    steps.closeStep();
    Track& track = tracks_[&slice];
    if (track.savedSteps > track.steps) {
        savedReachable_ = false; // it lay on the branch that ended now
    }
    ++track.steps;
}

void EditHistories::noteRevisions(StackSlice& slice)
{
    tracks_[&slice].revision = slice.revision();
    revision_ = mediator_.stack()->revision();
}

void EditHistories::endIfChanged(StackSlice& slice)
{
    if (mediator_.stack()->revision() != revision_) {
        end();
    } else if (tracks_[&slice].revision != slice.revision()) {
        endSlice(&slice);
    }
}

void EditHistories::endSlice(StackSlice* slice)
{
    if (tracks_.erase(slice) > 0) {
        mediator_.stack()->sliceHistory(*slice).clear();
        savedReachable_ = false;
        emit changed();
    }
}

void EditHistories::end()
{
    LMXStack* const stack = mediator_.stack();
    for (int i = 0; stack && i < stack->getNumSlices(); ++i) {
        endSlice(&stack->getSlice(i));
    }
    if (!tracks_.empty()) { // slices that are gone, and their histories with them
        tracks_.clear();
        savedReachable_ = false;
        emit changed();
    }
    presences_.clear();
}

std::shared_ptr<ModelPresence> EditHistories::findPresence(const std::string& name) const
{
    const auto found = presences_.find(name);
    return found == presences_.end() ? nullptr : found->second.lock();
}

void EditHistories::notePresence(const std::string& name,
                                 const std::shared_ptr<ModelPresence>& presence)
{
    presences_[name] = presence;
}

void EditHistories::noteSaved()
{
    for (auto& entry : tracks_) {
        entry.second.savedSteps = entry.second.steps;
    }
    savedReachable_ = true;
}

void EditHistories::restoreSavedFlag()
{
    LMXStack& stack = *mediator_.stack();
    const bool asSaved = std::all_of(tracks_.begin(), tracks_.end(), [](const auto& entry) {
        return entry.second.steps == entry.second.savedSteps;
    });
    if (savedReachable_ && asSaved) {
        stack.setModified(false);
    }
}

void EditHistories::stackOpenEvent(LMXStackOpenEvent& event)
{
    if (&event.getStack() == mediator_.stack()) {
        savedReachable_ = false;
        if (!event.getStack().isModified()) {
            noteSaved();
        }
        emit changed();
    }
}

void EditHistories::stackCloseEvent(LMXStackCloseEvent& event)
{
    if (&event.getStack() == mediator_.stack()) {
        end();
        notes_.reset();
        savedReachable_ = false;
    }
}

void EditHistories::stackModifyEvent(LMXStackModifyEvent& event)
{
    if (&event.getStack() != mediator_.stack()) {
        return;
    }
    if (!event.getStack().isModified()) {
        noteSaved();
    } else if (!isApplying()) {
        savedReachable_ = false;
    }
}

void EditHistories::processSliceInsertionDeletionAction(LMXSliceInsertionDeletionAction&)
{
    end();
}

void EditHistories::modelCreateEvent(LMXModelCreateEvent& event)
{
    foreignModelChange(event);
}

void EditHistories::modelDeleteEvent(LMXModelDeleteEvent& event)
{
    foreignModelChange(event);
}

void EditHistories::modelItemCreateEvent(LMXModelItemCreateEvent& event)
{
    foreignItemChange(event);
}

void EditHistories::modelItemDeleteEvent(LMXModelItemDeleteEvent& event)
{
    foreignItemChange(event);
}

void EditHistories::modelItemVertexEvent(LMXModelItemVertexEvent& event)
{
    foreignItemChange(event);
}

void EditHistories::modelItemConvertEvent(LMXModelItemConvertEvent& event)
{
    foreignItemChange(event);
}

void EditHistories::foreignModelChange(LMXModelEvent& event)
{
    if (!isApplying() && mediator_.stack() && mediator_.stack()->findModel(event.getModel()) >= 0) {
        end();
    }
}

void EditHistories::foreignItemChange(LMXModelItemEvent& event)
{
    if (!isApplying()) {
        endSlice(event.getItem().getSlice());
    }
}
