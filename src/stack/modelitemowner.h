#pragma once

#include <vector>

class ModelItem;

/// List of items; a model and a slice each keep one, and every attached item stands in both.
///
/// Items are owned jointly: whichever owner dies first destroys them, and the destructor of an
/// item takes it out of every list that holds it. So an item that was added anywhere has to come
/// from `new`, unless it is removed or destroyed before its owners.
class ModelItemOwner
{
public:
    ModelItemOwner() = default;
    ModelItemOwner(const ModelItemOwner&) = delete;
    ModelItemOwner& operator=(const ModelItemOwner&) = delete;
    virtual ~ModelItemOwner();

    /// Counts the changes of the list: equal counts mean that nobody changed it.
    unsigned int revision() const { return revision_; }

    int getNumItems() const { return static_cast<int>(items_.size()); }

    ModelItem& getItem(int i) { return *items_[static_cast<std::size_t>(i)]; }

    const ModelItem& getItem(int i) const { return *items_[static_cast<std::size_t>(i)]; }

    /// Appends the item; one that stands in the list already stays where it is.
    void addItem(ModelItem& item);

    /// Inserts the item in front of item `place`; the number of items appends.
    void addItem(ModelItem& item, int place);

    /// Index of this very item, or -1.
    int findItem(const ModelItem& item) const;

    /// Takes the item out of this list and destroys nothing; another's item is ignored.
    void removeItem(ModelItem& item);

    /// Empties the list and destroys nothing.
    void removeAllItems();

    /// The first item with a selection, or null.
    ModelItem* getSelectedItem() const;

    /// The items with a selection, in the order of the list.
    std::vector<ModelItem*> getSelectedItems() const;

    /// The first other item of the same model with equal properties, or null.
    ModelItem* buddyItem(const ModelItem& item) const;

    /// The absolute positions of the items' slices never decrease along the list.
    /// Each item needs a slice that stands in a stack: `ProgramError` otherwise, also from `sort`.
    bool isSorted() const;

    /// Orders the items by the absolute position of their slices, ascending; equal ones keep their
    /// order.
    void sort();

    /// The items in both lists, in the order of their addresses.
    std::vector<ModelItem*> intersection(const ModelItemOwner& other) const;

private:
    std::vector<ModelItem*> items_;
    unsigned int revision_ = 0;
};
