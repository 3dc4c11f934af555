#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

/// A plane of pixels in one array with a border of one pixel around it, so that every pixel has all
/// its neighbours. A pixel is named by its place in the array; its neighbours up, left, right and
/// down lie at -stride, -1, +1 and +stride.
template <class T>
class BorderedPlane
{
public:
    /// All pixels are `value`, the border is `border`.
    BorderedPlane(int rows, int columns, T value, T border)
        : rows_(rows)
        , columns_(columns)
        , cells_(static_cast<std::size_t>(rows + 2) * static_cast<std::size_t>(columns + 2), border)
    {
        for (int i = 0; i < rows; ++i) {
            std::fill(row(i), row(i) + columns, value);
        }
    }

    int rows() const { return rows_; }

    int columns() const { return columns_; }

    int stride() const { return columns_ + 2; }

    int place(int row, int column) const { return (row + 1) * stride() + column + 1; }

    T& operator[](int place) { return cells_[static_cast<std::size_t>(place)]; }

    const T& operator[](int place) const { return cells_[static_cast<std::size_t>(place)]; }

    /// The first pixel of a row; the border lies right before and right behind the row.
    T* row(int i) { return cells_.data() + place(i, 0); }

    const T* row(int i) const { return cells_.data() + place(i, 0); }

private:
    int rows_;
    int columns_;
    std::vector<T> cells_;
};
