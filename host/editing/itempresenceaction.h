#pragma once

#include "interface/lmxaction.h"

#include <memory>

/// Puts an item into the document or takes it out. While the item is out the action owns it, and
/// knows its places in the lists of its model and of its slice; coming back it takes them again.
///
/// A deletion is told after it, when the item is in no list any more but still alive.
class ItemPresenceAction : public LMXItemAction
{
public:
    /// An item with model and slice, attached to neither; it goes to the end of both lists.
    explicit ItemPresenceAction(std::unique_ptr<ModelItem> insertion);

    /// An attached item, which is to be taken out.
    explicit ItemPresenceAction(ModelItem& deletion);
    ~ItemPresenceAction() override;

    void apply() override;
    void revert() override;

private:
    void insert();
    void remove();

    bool insertion_;
    std::unique_ptr<ModelItem> removed_;
    int placeInModel_;
    int placeInSlice_;
};
