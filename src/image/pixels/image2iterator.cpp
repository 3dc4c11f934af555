#include "image/pixels/image2iterator.h"

#include <algorithm>

namespace {

std::vector<int> distancesToBorder(int size)
{
    std::vector<int> distances(static_cast<std::size_t>(size));
    for (int x = 0; x < size; ++x) {
        distances[static_cast<std::size_t>(x)] = std::min(x + 1, size - x);
    }
    return distances;
}

bool isNear(const std::vector<int>& distances, int x, int margin)
{
    return distances[static_cast<std::size_t>(x)] <= margin;
}

} // namespace

Image2::Iterator::Iterator(const Image2& image)
    : image_(&image)
    , size1_(image.getSize1())
    , size2_(image.getSize2())
    , size3_(image.getSize3())
    , numElements_(size1_ * size2_ * size3_)
    , distances1_(distancesToBorder(size1_))
    , distances2_(distancesToBorder(size2_))
    , distances3_(distancesToBorder(size3_))
{}

Image2::Iterator::~Iterator() = default;

Image2::MappedIterator2D::MappedIterator2D(const Image2& image)
    : Iterator(image)
{}

void Image2::MappedIterator2D::next()
{
    ++index_;
    if (++j_ == size2_) {
        j_ = 0;
        ++i_;
    }
}

bool Image2::MappedIterator2D::insideMargin(int margin) const
{
    return isNear(distances2_, j_, margin) || isNear(distances1_, i_, margin);
}

Image2::MappedIterator3D::MappedIterator3D(const Image2& image)
    : Iterator(image)
{}

void Image2::MappedIterator3D::next()
{
    ++index_;
    if (++j_ == size2_) {
        j_ = 0;
        if (++i_ == size1_) {
            i_ = 0;
            ++k_;
        }
    }
}

bool Image2::MappedIterator3D::insideMargin(int margin) const
{
    return isNear(distances2_, j_, margin) || isNear(distances1_, i_, margin) ||
           isNear(distances3_, k_, margin);
}
