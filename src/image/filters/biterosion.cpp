#include "image/filters/biterosion.h"

#include "system/exception.h"

#include <algorithm>
#include <vector>

namespace {

using Word = BitPlane::Word;

constexpr Word ones = ~Word(0);

/// Calls `combine(shift)` for each step from windows of one element to windows of `length`: element
/// k is then to be ANDed with element k + shift.
template <class Combine>
void doubleWindows(int length, Combine combine)
{
    int reached = 1;
    while (reached < length) {
        const int shift = std::min(reached, length - reached);
        combine(shift);
        reached += shift;
    }
}

/// `line` has a word of ones before the row and one behind it.
void erodeLine(std::vector<Word>& line, int radius)
{
    doubleWindows(2 * radius + 1, [&](int shift) {
        for (std::size_t k = 0; k + 1 < line.size(); ++k) {
            line[k] &= line[k] >> shift | line[k + 1] << (BitPlane::wordBits - shift);
        }
    });
}

void erodeRows(BitPlane& plane, int radius)
{
    const std::size_t width = static_cast<std::size_t>(plane.width());
    std::vector<Word> line(width + 2);
    for (int i = 0; i < plane.rows(); ++i) {
        Word* row = plane.row(i);
        line.front() = ones;
        std::copy_n(row, width, line.begin() + 1);
        line[width] |= ~plane.lastWordMask();
        line.back() = ones;
        erodeLine(line, radius);
        // A window that begins `radius` pixels before its pixel.
        for (std::size_t k = 0; k < width; ++k) {
            row[k] = line[k + 1] << radius | line[k] >> (BitPlane::wordBits - radius);
        }
        row[width - 1] &= plane.lastWordMask();
    }
}

void erodeColumns(BitPlane& plane, int radius)
{
    const std::size_t width = static_cast<std::size_t>(plane.width());
    const std::size_t rows = static_cast<std::size_t>(plane.rows());
    const std::size_t above = static_cast<std::size_t>(radius);
    // All in one array: an AND with the row `shift` further is one with the word shift * width on.
    std::vector<Word> pile((above + rows) * width, ones);
    std::copy_n(plane.row(0), rows * width, pile.begin() + static_cast<long>(above * width));
    doubleWindows(2 * radius + 1, [&](int shift) {
        const std::size_t gap = static_cast<std::size_t>(shift) * width;
        for (std::size_t k = 0; k + gap < pile.size(); ++k) {
            pile[k] &= pile[k + gap];
        }
    });
    std::copy_n(pile.begin(), rows * width, plane.row(0));
}

} // namespace

void erodeSquare(BitPlane& plane, int radius)
{
    if (radius < 0 || radius > 31) {
        raise<ValueError>("void erodeSquare(BitPlane&, int)", "The radius must be 0 to 31");
    }
    if (radius == 0 || plane.rows() == 0 || plane.columns() == 0) {
        return;
    }
    erodeRows(plane, radius);
    erodeColumns(plane, radius);
}
