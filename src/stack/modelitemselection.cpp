#include "stack/modelitemselection.h"

#include <algorithm>

void ModelItemSelection::reset(int length)
{
    flags_.assign(static_cast<std::size_t>(length), false);
}

void ModelItemSelection::set(bool selected)
{
    flags_.assign(flags_.size(), selected);
}

void ModelItemSelection::set(bool selected, int i, bool exclusive)
{
    if (exclusive) {
        set(false);
    }
    flags_[static_cast<std::size_t>(i)] = selected;
}

void ModelItemSelection::invert()
{
    flags_.flip();
}

void ModelItemSelection::reverse()
{
    std::reverse(flags_.begin(), flags_.end());
}

void ModelItemSelection::insert(int i, bool selected)
{
    flags_.insert(flags_.begin() + i, selected);
}

void ModelItemSelection::remove(int i)
{
    remove(i, i);
}

void ModelItemSelection::remove(int first, int last)
{
    flags_.erase(flags_.begin() + first, flags_.begin() + last + 1);
}

int ModelItemSelection::getSize() const
{
    return static_cast<int>(std::count(flags_.begin(), flags_.end(), true));
}
