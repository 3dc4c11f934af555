#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

class LMXStack;
class Model;
class ModelItem;

/// The models and items of a live stack as they were at one moment, to come back to when what was
/// begun then fails half way.
///
/// It holds copies of all of them, and their addresses to know again what is still there. Slices are
/// not copied: the stack must still have the same ones.
class DocumentSnapshot
{
public:
    /// Linear in the vertices.
    explicit DocumentSnapshot(const LMXStack& stack);
    ~DocumentSnapshot();
    DocumentSnapshot(const DocumentSnapshot&) = delete;
    DocumentSnapshot& operator=(const DocumentSnapshot&) = delete;

    /// Puts the models and items back, in their order on the stack and on the slices, with their
    /// selections, and the modified state. What is still as it was stays the same object, and nobody
    /// hears of it; what was changed gets its old state back; what is gone is made anew, and what
    /// was not there is destroyed, each told by its usual event. Histories are forgotten where they
    /// may name what is gone: those of its slice and of the stack, or all of them if a model is. A
    /// snapshot restores once.
    void restore(LMXStack& stack);

private:
    struct ItemState
    {
        const ModelItem* original; ///< to be compared only: it may be gone
        std::unique_ptr<ModelItem> copy;
        std::size_t model;
        ModelItem* restored;
    };

    struct ModelState
    {
        const Model* original;
        std::unique_ptr<Model> copy;
        Model* restored;
    };

    void restoreModels(LMXStack& stack);
    void restoreItems(LMXStack& stack);
    void restoreItem(LMXStack& stack, ItemState& state);
    void makeAgain(LMXStack& stack, ItemState& state);
    void removeOthers(LMXStack& stack);
    void restoreOrder(LMXStack& stack);

    std::vector<ModelState> models_;
    // In the order of the models and of their items.
    std::vector<ItemState> items_;
    // Of each slice the places of its items in `items_`, in the order of the slice.
    std::vector<std::vector<std::size_t>> sliceItems_;
    std::string lastSegmentedSlice_;
    bool modified_;
};
