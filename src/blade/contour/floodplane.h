#pragma once

#include <array>
#include <cstddef>
#include <limits>
#include <vector>

/// The pixels of a watershed, label and level together in one word, with a border around them.
///
/// A flooding meets pixels in no order of place, so what counts is how many cache lines a pixel and
/// its four neighbours touch. Hence the one word, and hence the order of pixels in memory: strips of
/// four rows, column after column, so that most neighbours above and below lie in the same line.
///
/// The lowest 9 bits of a word are the level, the others the label, see `LPETransform`. A word of 16
/// bits holds the labels of 62 basins.
template <class Word>
class FloodPlane
{
public:
    static constexpr int levelBits = 9;
    static constexpr Word oneLabel = Word(1) << levelBits;
    static constexpr Word levelMask = oneLabel - 1;

    /// The largest even label, which no basin has: the border, and pixels where basins meet.
    static constexpr Word blocked = (std::numeric_limits<Word>::max() >> levelBits) - 1;

    /// The number of basins whose labels fit.
    static constexpr Word capacity = (blocked - 1) / 2;

    /// All pixels, and the border, are blocked.
    FloodPlane(int rows, int columns)
        : rows_(rows)
        , columns_(columns)
        , stripLength_(stripRows * (columns + 2))
        , words_(static_cast<std::size_t>(rows + 2 + stripRows - 1) / stripRows *
                     static_cast<std::size_t>(stripLength_),
                 blocked << levelBits)
    {}

    int rows() const { return rows_; }

    int columns() const { return columns_; }

    int place(int row, int column) const
    {
        return (row + 1) / stripRows * stripLength_ + stripRows * (column + 1) +
               (row + 1) % stripRows;
    }

    int rowOf(int place) const { return place / stripLength_ * stripRows + place % stripRows - 1; }

    int columnOf(int place) const { return place % stripLength_ / stripRows - 1; }

    /// The distance in memory of neighbours in a row.
    static constexpr int columnStep = 4;

    int above(int place) const
    {
        return place % stripRows != 0 ? place - 1 : place - stripLength_ + (stripRows - 1);
    }

    int below(int place) const
    {
        return place % stripRows != stripRows - 1 ? place + 1
                                                  : place + stripLength_ - (stripRows - 1);
    }

    Word& operator[](int place) { return words_[static_cast<std::size_t>(place)]; }

    const Word& operator[](int place) const { return words_[static_cast<std::size_t>(place)]; }

    Word label(int place) const { return static_cast<Word>((*this)[place] >> levelBits); }

    int level(int place) const { return static_cast<int>((*this)[place] & levelMask); }

    void setLabel(int place, Word label)
    {
        (*this)[place] = static_cast<Word>(((*this)[place] & levelMask) | label << levelBits);
    }

    void setLevel(int place, int level)
    {
        (*this)[place] =
            static_cast<Word>(((*this)[place] & ~levelMask) | static_cast<Word>(level));
    }

private:
    static constexpr int stripRows = 4;

    int rows_;
    int columns_;
    int stripLength_;
    std::vector<Word> words_;
};
