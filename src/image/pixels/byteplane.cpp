#include "image/pixels/byteplane.h"

#include <algorithm>
#include <array>

namespace {

/// Values that do not fit become anything; the result tells whether there is one.
bool convertRow(std::uint8_t* __restrict to, const float* __restrict from, int columns)
{
    int outside = 0;
    for (int j = 0; j < columns; ++j) {
        const bool fits = (from[j] > -1.0f) & (from[j] < 256.0f);
        to[j] = static_cast<std::uint8_t>(static_cast<int>(fits ? from[j] : 0.0f));
        outside |= !fits;
    }
    return outside == 0;
}

} // namespace

BytePlane::BytePlane(int rows, int columns)
    : rows_(rows)
    , columns_(columns)
    , bytes_(static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns))
{}

bool BytePlane::convert(const PixelMatrix<float>& image)
{
    *this = BytePlane(image.getSize1(), image.getSize2());
    for (int i = 0; i < rows_; ++i) {
        if (!convertRow(row(i), image[i].data(), columns_)) {
            *this = BytePlane();
            return false;
        }
    }
    return true;
}

void BytePlane::clamp(const PixelMatrix<int>& image)
{
    *this = BytePlane(image.getSize1(), image.getSize2());
    for (int i = 0; i < rows_; ++i) {
        std::transform(image[i].data(), image[i].data() + columns_, row(i), [](int value) {
            return static_cast<std::uint8_t>(std::clamp(value, 0, 255));
        });
    }
}

void BytePlane::invert()
{
    for (std::uint8_t& byte : bytes_) {
        byte = static_cast<std::uint8_t>(255 - byte);
    }
}

/// Four tables in turn, so that a run of one value does not wait for its own last count.
Vector<unsigned int> BytePlane::histogram() const
{
    std::array<std::array<unsigned int, 256>, 4> counts = {};
    std::size_t k = 0;
    for (; k + 4 <= bytes_.size(); k += 4) {
        ++counts[0][bytes_[k]];
        ++counts[1][bytes_[k + 1]];
        ++counts[2][bytes_[k + 2]];
        ++counts[3][bytes_[k + 3]];
    }
    for (; k < bytes_.size(); ++k) {
        ++counts[0][bytes_[k]];
    }
    Vector<unsigned int> sums(256);
    for (int value = 0; value < 256; ++value) {
        const std::size_t v = static_cast<std::size_t>(value);
        sums[value] = counts[0][v] + counts[1][v] + counts[2][v] + counts[3][v];
    }
    return sums;
}
