#pragma once

#include <memory>
#include <string>
#include <vector>

class LMXStack;
class Model;
class ModelItem;

/// The models and items of a live stack as they were at one moment, to come back to when what was
/// begun then fails half way.
///
/// It holds copies of all of them. Slices are not copied: the stack must still have the same ones.
class DocumentSnapshot
{
public:
    /// Linear in the vertices.
    explicit DocumentSnapshot(const LMXStack& stack);
    ~DocumentSnapshot();
    DocumentSnapshot(const DocumentSnapshot&) = delete;
    DocumentSnapshot& operator=(const DocumentSnapshot&) = delete;

    /// Puts the models and items back, in their order on the stack and on the slices, with their
    /// selections, and the modified state. All present models and items are destroyed, and all
    /// clients are told by the usual events; the histories that name those items are forgotten. A
    /// snapshot restores once.
    void restore(LMXStack& stack);

private:
    void remember(const LMXStack& stack);
    void removeAll(LMXStack& stack);
    void putBack(LMXStack& stack);

    std::vector<std::unique_ptr<Model>> models_;
    // Of each slice its items, in the order of the slice.
    std::vector<std::vector<ModelItem*>> sliceItems_;
    std::string lastSegmentedSlice_;
    bool modified_;
};
