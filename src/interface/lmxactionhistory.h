#pragma once

#include "stack/stackslice.h"

#include <QObject>
#include <QString>

#include <memory>
#include <string>
#include <vector>

class LMXAction;
class LMXActionList;

/// Steps of actions that can be undone and redone, without limit. A step is opened, filled and
/// closed; undo and redo are not called while one is open.
class LMXActionHistory : public QObject, public SliceCompanion
{
    Q_OBJECT

public:
    LMXActionHistory();
    ~LMXActionHistory() override;

    /// Raises `UsageError` if a step is open already.
    void openStep();

    /// Adds an action to the open step, applies it on demand, and ends the redo branch. The history
    /// owns the action from now on. Raises `UsageError` without an open step; the action then stays
    /// the caller's.
    void push(LMXAction* action, bool applyNow);

    /// Ends the step; an empty one leaves no trace. Raises `UsageError` without an open step.
    void closeStep();

    bool isUndoable() const { return !undoList.empty(); }

    bool isRedoable() const { return !redoList.empty(); }

    /// Takes the last step back; without one it does nothing.
    void undo();

    /// Makes the step that was undone last again; without one it does nothing.
    void redo();

    /// The text of the first action of the step that is next in turn.
    QString getUndoDescription(bool detailed) const;
    QString getRedoDescription(bool detailed) const;

    /// Forgets all steps, here and below an open one too: its list is gone.
    void clear();
    void destroyUndoList();
    void destroyRedoList();

    /// A trace on the standard error stream.
    void print(const std::string& text) const;

signals:
    void changed();
    void undoEnabled(bool enabled);
    void redoEnabled(bool enabled);

private:
    using Steps = std::vector<std::unique_ptr<LMXActionList>>;

    static void printSteps(const char* head, const Steps& steps);

    Steps undoList;
    Steps redoList;
    bool stepOpen = false;
};
