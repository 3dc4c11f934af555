#include "interface/lmxactionhistory.h"

#include "interface/lmxaction.h"
#include "interface/lmxactionlist.h"
#include "system/exception.h"

#include <iostream>

LMXActionHistory::LMXActionHistory() = default;

LMXActionHistory::~LMXActionHistory() = default;

void LMXActionHistory::openStep()
{
    if (stepOpen) {
        raise<UsageError>("void LMXActionHistory::openStep()", "A step is already open");
    }
    undoList.push_back(std::make_unique<LMXActionList>());
    stepOpen = true;
}

void LMXActionHistory::push(LMXAction* action, bool applyNow)
{
    if (!stepOpen) {
        raise<UsageError>("void LMXActionHistory::push(LMXAction*, const bool)",
                          "No step was open prior to action insertion");
    }
    undoList.back()->append(action);
    if (applyNow) {
        action->apply();
    }
    destroyRedoList();
}

void LMXActionHistory::closeStep()
{
    if (!stepOpen) {
        raise<UsageError>("void LMXActionHistory::closeStep()", "No open step to close");
    }
    stepOpen = false;
    if (undoList.back()->isEmpty()) {
        undoList.pop_back();
        return;
    }
    emit changed();
    emit undoEnabled(true);
}

void LMXActionHistory::undo()
{
    if (undoList.empty()) {
        return;
    }
    undoList.back()->revert();
    redoList.push_back(std::move(undoList.back()));
    undoList.pop_back();
    emit changed();
    emit redoEnabled(true);
    emit undoEnabled(isUndoable());
}

void LMXActionHistory::redo()
{
    if (redoList.empty()) {
        return;
    }
    redoList.back()->apply();
    undoList.push_back(std::move(redoList.back()));
    redoList.pop_back();
    emit changed();
    emit undoEnabled(true);
    emit redoEnabled(isRedoable());
}

QString LMXActionHistory::getUndoDescription(bool detailed) const
{
    return undoList.empty() || undoList.back()->isEmpty()
               ? QString("(Nothing to undo)")
               : undoList.back()->first().description(detailed);
}

QString LMXActionHistory::getRedoDescription(bool detailed) const
{
    return redoList.empty() ? QString("(Nothing to redo)")
                            : redoList.back()->first().description(detailed);
}

void LMXActionHistory::clear()
{
    undoList.clear();
    redoList.clear();
    stepOpen = false;
    emit changed();
}

void LMXActionHistory::destroyUndoList()
{
    undoList.clear();
    stepOpen = false;
    emit undoEnabled(false);
}

void LMXActionHistory::destroyRedoList()
{
    redoList.clear();
    emit redoEnabled(false);
}

void LMXActionHistory::print(const std::string& text) const
{
    std::cerr << "*** Action history (" << this << "): " << text << "\n";
    printSteps("  [ Undo list size = ", undoList);
    printSteps("  [ Redo list size = ", redoList);
}

void LMXActionHistory::printSteps(const char* head, const Steps& steps)
{
    std::cerr << head << steps.size() << " ]\n";
    for (std::size_t i = 0; i < steps.size(); ++i) {
        steps[i]->print("    " + std::to_string(i) + " ");
    }
}
