#pragma once

#include "interface/lmxaction.h"

class Stack;

/// Inserts a slice into its stack, or takes it out, with its items. Brings the reconstruction of a
/// live stack up to date and tells the clients the action itself.
///
/// The slice knows its stack already, also where it is still to be inserted; the stack outlives the
/// action. A slice that is out of the stack lives on in the action with its items.
class LMXSliceInsertionDeletionAction : public LMXSliceAction
{
public:
    /// An insertion. The position is that of the slice in the stack, or the end.
    explicit LMXSliceInsertionDeletionAction(StackSlice& subject);

    /// Deletes the slice if the action left it out of the stack: in deletion mode when not
    /// reverted, in insertion mode when reverted.
    ~LMXSliceInsertionDeletionAction() override;

    void setInsertionMode() { insertion = true; }

    void setDeletionMode() { insertion = false; }

    /// The slice's place in the stack, inside it or where it is to go.
    void setSlicePosition(int position) { slicePosition = position; }

    /// Without a stack: `UsageError`; a place outside the stack, or one where another slice stands
    /// that is not to go: `RangeError`. Nothing is changed then. The same holds for `revert`.
    void apply() override;
    void revert() override;
    QString description(bool) const override;

private:
    void carryOut(bool insert);
    void insertSlice(Stack& stack);
    void takeSliceOut(Stack& stack);

    bool insertion = true;
    int slicePosition = 0;
};
