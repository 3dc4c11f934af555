#include "image/pixels/bitplane.h"

#include <algorithm>
#include <cstring>

namespace {

/// Sets a row from what `isSet` says of its values.
template <class T, class IsSet>
void setRow(BitPlane& plane, int i, const T* values, IsSet isSet)
{
    std::uint8_t flags[BitPlane::wordBits];
    for (int k = 0; k < plane.width(); ++k) {
        const T* from = values + k * BitPlane::wordBits;
        const int count = std::min(plane.columns() - k * BitPlane::wordBits, BitPlane::wordBits);
        if (count == BitPlane::wordBits) {
            for (int j = 0; j < BitPlane::wordBits; ++j) {
                flags[j] = isSet(from[j]);
            }
        } else {
            for (int j = 0; j < count; ++j) {
                flags[j] = isSet(from[j]);
            }
        }
        plane.row(i)[k] = BitPlane::pack(flags, count);
    }
}

} // namespace

BitPlane::BitPlane(int rows, int columns)
    : rows_(rows)
    , columns_(columns)
    , width_((columns + wordBits - 1) / wordBits)
    , words_(static_cast<std::size_t>(rows) * static_cast<std::size_t>(width_))
{}

BitPlane::Word BitPlane::lastWordMask() const
{
    return ~Word(0) >> (width_ * wordBits - columns_);
}

void BitPlane::set(int i, int begin, int end)
{
    if (begin >= end) {
        return;
    }
    Word* words = row(i);
    const int first = begin / wordBits;
    const int last = (end - 1) / wordBits;
    const Word head = ~Word(0) << (begin % wordBits);
    const Word tail = ~Word(0) >> (wordBits - 1 - (end - 1) % wordBits);
    if (first == last) {
        words[first] |= head & tail;
        return;
    }
    words[first] |= head;
    std::fill(words + first + 1, words + last, ~Word(0));
    words[last] |= tail;
}

void BitPlane::fill()
{
    for (int i = 0; i < rows_; ++i) {
        set(i, 0, columns_);
    }
}

std::size_t BitPlane::count() const
{
    std::size_t sum = 0;
    for (const Word word : words_) {
        sum += static_cast<std::size_t>(__builtin_popcountll(word));
    }
    return sum;
}

BitPlane BitPlane::notBelow(const BytePlane& bytes, int threshold)
{
    BitPlane plane(bytes.rows(), bytes.columns());
    if (threshold > 255) {
        return plane;
    }
    const std::uint8_t limit = static_cast<std::uint8_t>(std::max(threshold, 0));
    for (int i = 0; i < plane.rows(); ++i) {
        setRow(plane, i, bytes.row(i),
               [limit](std::uint8_t value) { return static_cast<std::uint8_t>(value >= limit); });
    }
    return plane;
}

BitPlane BitPlane::positive(const PixelMatrix<int>& image)
{
    BitPlane plane(image.getSize1(), image.getSize2());
    for (int i = 0; i < plane.rows(); ++i) {
        setRow(plane, i, image[i].data(),
               [](int value) { return static_cast<std::uint8_t>(value > 0); });
    }
    return plane;
}

/// A product brings the lowest bits of eight bytes together in its highest byte, those of byte k in
/// bit k; no two of its terms meet, so nothing is carried.
BitPlane::Word BitPlane::pack(const std::uint8_t* flags, int count)
{
    Word word = 0;
    int j = 0;
#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
    for (; j + 8 <= count; j += 8) {
        Word eight = 0;
        std::memcpy(&eight, flags + j, 8);
        word |= (eight * 0x0102040810204080u >> 56) << j;
    }
#endif
    for (; j < count; ++j) {
        word |= static_cast<Word>(flags[j]) << j;
    }
    return word;
}
