#pragma once

#include "interface/lmxaction.h"

#include <memory>
#include <string>
#include <vector>

/// What a user did to one slice in one go, with the name that the menu shows: the actions of it, in
/// order.
///
/// A new item also changes which slice the stack notes as segmented last. The note is written to
/// stack files, so the edit exchanges it, and leaves it as it met it.
class SliceEdit : public LMXSliceAction
{
public:
    /// Notes which slice was segmented last, so it is made before its actions are applied.
    SliceEdit(StackSlice& subject, const QString& name);
    ~SliceEdit() override;

    /// Keeps the action and applies it. If that raises an error the action counts as applied.
    void applyNext(std::unique_ptr<LMXAction> action);

    bool isNull() const override { return actions_.empty(); }

    /// Again, from the first action to the last.
    void apply() override;

    /// Reverts the actions from the last to the first.
    void revert() override;

    QString description(bool) const override { return name_; }

private:
    QString name_;
    std::vector<std::unique_ptr<LMXAction>> actions_;
    std::string lastSegmented_; // of the other state
};
