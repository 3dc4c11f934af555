#include "interface/lmxactionhistory.h"

#include "interface/lmxaction.h"
#include "interface/lmxactionlist.h"
#include "system/exception.h"

#include <iostream>

LMXActionHistory::LMXActionHistory() = default;

LMXActionHistory::~LMXActionHistory() = default;

void LMXActionHistory::openStep()
{
    if (stepOpen_) {
        raise<UsageError>("void LMXActionHistory::openStep()", "A step is already open");
    }
    undoList_.push_back(std::make_unique<LMXActionList>());
    stepOpen_ = true;
}

void LMXActionHistory::push(LMXAction* action, bool applyNow)
{
    if (!stepOpen_) {
        raise<UsageError>("void LMXActionHistory::push(LMXAction*, const bool)",
                          "No step was open prior to action insertion");
    }
    undoList_.back()->append(action);
    if (applyNow) {
        action->apply();
    }
    destroyRedoList();
}

void LMXActionHistory::closeStep()
{
    if (!stepOpen_) {
        raise<UsageError>("void LMXActionHistory::closeStep()", "No open step to close");
    }
    stepOpen_ = false;
    if (undoList_.back()->isEmpty()) {
        undoList_.pop_back();
        return;
    }
    emit changed();
    emit undoEnabled(true);
}

void LMXActionHistory::undo()
{
    if (undoList_.empty()) {
        return;
    }
    undoList_.back()->revert();
    redoList_.push_back(std::move(undoList_.back()));
    undoList_.pop_back();
    emit changed();
    emit redoEnabled(true);
    emit undoEnabled(isUndoable());
}

void LMXActionHistory::redo()
{
    if (redoList_.empty()) {
        return;
    }
    redoList_.back()->apply();
    undoList_.push_back(std::move(redoList_.back()));
    redoList_.pop_back();
    emit changed();
    emit undoEnabled(true);
    emit redoEnabled(isRedoable());
}

QString LMXActionHistory::getUndoDescription(bool detailed) const
{
    return undoList_.empty() || undoList_.back()->isEmpty()
               ? QString("(Nothing to undo)")
               : undoList_.back()->first().description(detailed);
}

QString LMXActionHistory::getRedoDescription(bool detailed) const
{
    return redoList_.empty() ? QString("(Nothing to redo)")
                             : redoList_.back()->first().description(detailed);
}

void LMXActionHistory::clear()
{
    undoList_.clear();
    redoList_.clear();
    stepOpen_ = false;
    emit changed();
}

void LMXActionHistory::destroyUndoList()
{
    undoList_.clear();
    stepOpen_ = false;
    emit undoEnabled(false);
}

void LMXActionHistory::destroyRedoList()
{
    redoList_.clear();
    emit redoEnabled(false);
}

void LMXActionHistory::print(const std::string& text) const
{
    std::cerr << "*** Action history (" << this << "): " << text << "\n";
    printSteps("  [ Undo list size = ", undoList_);
    printSteps("  [ Redo list size = ", redoList_);
}

void LMXActionHistory::printSteps(const char* head, const Steps& steps)
{
    std::cerr << head << steps.size() << " ]\n";
    for (std::size_t i = 0; i < steps.size(); ++i) {
        steps[i]->print("    " + std::to_string(i) + " ");
    }
}
