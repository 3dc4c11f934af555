#pragma once

#include "host/editing/segmentationnotes.h"
#include "interface/lmxaction.h"

#include <memory>
#include <string>
#include <vector>

/// What a user did to one slice in one go, with the name that the menu shows: the actions of it, in
/// order. It also takes care of the stack's note of the slice that was segmented last.
class SliceEdit : public LMXSliceAction
{
public:
    SliceEdit(StackSlice& subject, const QString& name, std::shared_ptr<SegmentationNotes> notes);
    ~SliceEdit() override;

    /// Keeps the action and applies it. If that raises an error the action counts as applied.
    void applyNext(std::unique_ptr<LMXAction> action);

    /// All actions are there, and applied.
    void finish();

    bool isNull() const override { return actions_.empty(); }

    /// Again, from the first action to the last.
    void apply() override;

    /// Reverts the actions from the last to the first.
    void revert() override;

    QString description(bool) const override { return name_; }

private:
    QString name_;
    std::vector<std::unique_ptr<LMXAction>> actions_;
    std::shared_ptr<SegmentationNotes> notes_;
    int number_;
    std::string note_;
};
