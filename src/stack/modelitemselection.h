#pragma once

#include <vector>

/// Which vertices of an item are selected: one flag per vertex, or a single one for a region.
///
/// Indices are those of the item's vertices and are not checked.
class ModelItemSelection
{
public:
    /// `length` clear flags.
    void reset(int length);

    /// Sets all flags to `selected`.
    void set(bool selected);

    /// Sets flag `i`; if `exclusive`, clears all others.
    void set(bool selected, int i, bool exclusive);

    void invert();

    /// Turns the order of the flags round.
    void reverse();

    /// Inserts a flag in front of flag `i`; `i` equal to the length appends it.
    void insert(int i, bool selected);

    void remove(int i);

    /// Drops the flags `first` to `last`, both included.
    void remove(int first, int last);

    bool isSelected(int i) const { return flags_[static_cast<std::size_t>(i)]; }

    /// No flag is set; true for a selection without flags.
    bool isEmpty() const { return getSize() == 0; }

    /// Every flag is set; true for a selection without flags.
    bool isComplete() const { return getSize() == getLength(); }

    /// The number of flags that are set, in time linear in the length.
    int getSize() const;

    /// The number of flags.
    int getLength() const { return static_cast<int>(flags_.size()); }

private:
    std::vector<bool> flags_;
};
