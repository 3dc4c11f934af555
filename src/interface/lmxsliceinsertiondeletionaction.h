#pragma once

#include "interface/lmxaction.h"

/// Inserts a slice into its stack, or takes it out. A slice that is out of the stack lives on in
/// the action with its items, and dies with it.
class LMXSliceInsertionDeletionAction : public LMXSliceAction
{
public:
    /// The slice knows its stack already, also where it is still to be inserted.
    explicit LMXSliceInsertionDeletionAction(StackSlice& slice);

    /// Deletes the slice if it is out of the stack by the action's own doing: in deletion mode when
    /// not reverted, in insertion mode when reverted.
    ~LMXSliceInsertionDeletionAction() override;

    void setInsertionMode() { insertion_ = true; }

    void setDeletionMode() { insertion_ = false; }

    /// The slice's place in the stack, inside it or where it is to go.
    void setSlicePosition(int position) { slicePosition_ = position; }

    void apply() override;
    void revert() override;
    QString description(bool) const override;

private:
    void insertSlice();
    void takeSliceOut();

    bool insertion_ = true;
    int slicePosition_ = 0;
};
