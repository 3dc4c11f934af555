#pragma once

#include "image/pixels/byteplane.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// A two-valued image, 64 pixels a word: logic on whole words replaces that on pixels. Column j of a
/// row is bit j % 64 of its word j / 64. Bits behind the last column are 0.
class BitPlane
{
public:
    using Word = std::uint64_t;
    static constexpr int wordBits = 64;

    /// All pixels are 0.
    BitPlane(int rows, int columns);

    int rows() const { return rows_; }

    int columns() const { return columns_; }

    /// Words of a row.
    int width() const { return width_; }

    Word* row(int i) { return words_.data() + start(i); }

    const Word* row(int i) const { return words_.data() + start(i); }

    bool operator()(int i, int j) const
    {
        return (row(i)[j / wordBits] >> (j % wordBits) & 1) != 0;
    }

    /// Those bits of a row's last word that stand for columns.
    Word lastWordMask() const;

    /// Sets the columns from `begin` to before `end` of a row.
    void set(int i, int begin, int end);

    /// Sets all pixels.
    void fill();

    std::size_t count() const;

    /// The bytes that are at least `threshold`.
    static BitPlane notBelow(const BytePlane& bytes, int threshold);

    /// The values above 0.
    static BitPlane positive(const PixelMatrix<int>& image);

    /// The bits of `count` flags, each 0 or 1, at most 64.
    static Word pack(const std::uint8_t* flags, int count);

private:
    std::size_t start(int i) const
    {
        return static_cast<std::size_t>(i) * static_cast<std::size_t>(width_);
    }

    int rows_;
    int columns_;
    int width_;
    std::vector<Word> words_;
};
