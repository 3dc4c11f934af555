#include "image/pixels/image2mapper.h"

#include "system/exception.h"

#include <string>

namespace {

[[noreturn]] void refuse3D(const std::string& signature)
{
    raise<ProgramError>(signature, "3D access requested on a 2D image");
}

[[noreturn]] void refuse2D(const std::string& signature)
{
    raise<ProgramError>(signature, "2D access requested on a 3D image");
}

bool within(int x, int size)
{
    return x >= 0 && x < size;
}

bool nearEnd(int x, int size, int margin)
{
    return x < margin || x >= size - margin;
}

template <class Mapper>
void swapMappers(Mapper& mapper, Image2::AbstractMapper& other, const char* where)
{
    auto* const same = dynamic_cast<Mapper*>(&other);
    if (same == nullptr) {
        raise<ProgramError>(where, "The two mappers are of different kinds");
    }
    std::swap(mapper, *same);
}

/// The border of the plane whose first element has the index `first`.
void addPlaneBorder(Image2::AbstractMapper::Runs& runs, int first, int size1, int size2)
{
    if (size1 < 1 || size2 < 1) {
        return;
    }
    runs.emplace_back(first, first + size2 - 1);
    for (int i = 1; i < size1 - 1; ++i) {
        const int row = first + i * size2;
        runs.emplace_back(row, row);
        if (size2 > 1) {
            runs.emplace_back(row + size2 - 1, row + size2 - 1);
        }
    }
    if (size1 > 1) {
        const int row = first + (size1 - 1) * size2;
        runs.emplace_back(row, row + size2 - 1);
    }
}

} // namespace

Image2::AbstractMapper::AbstractMapper(int size1, int size2)
    : size1_(size1)
    , size2_(size2)
{}

Image2::AbstractMapper::~AbstractMapper() = default;

bool Image2::AbstractMapper2D::contains(int i, int j) const
{
    return within(i, size1_) && within(j, size2_);
}

bool Image2::AbstractMapper2D::contains(int, int, int) const
{
    refuse3D("bool Image2::AbstractMapper2D::contains(int, int, int) const");
}

bool Image2::AbstractMapper2D::contains(const Vector<int>& position) const
{
    return contains(position[0], position[1]);
}

bool Image2::AbstractMapper2D::insideMargin(int index, int margin) const
{
    int i;
    int j;
    decode(index, i, j);
    return nearEnd(j, size2_, margin) || nearEnd(i, size1_, margin);
}

Image2::AbstractMapper::Runs Image2::AbstractMapper2D::borderRuns() const
{
    Runs runs;
    addPlaneBorder(runs, 0, size1_, size2_);
    return runs;
}

int Image2::AbstractMapper2D::encode(int, int, int) const
{
    refuse3D("int Image2::AbstractMapper2D::encode(int, int, int) const");
}

int Image2::AbstractMapper2D::encode(const Vector<int>& position) const
{
    return encode(position[0], position[1]);
}

int Image2::AbstractMapper2D::encode(int, int, int, ColorChannel) const
{
    refuse3D("int Image2::AbstractMapper2D::encode(int, int, int, ColorChannel) const");
}

int Image2::AbstractMapper2D::encode(const Vector<int>& position, ColorChannel channel) const
{
    return encode(position[0], position[1], channel);
}

void Image2::AbstractMapper2D::decode(int index, int& i, int& j) const
{
    j = index % size2_;
    i = (index - j) / size2_;
}

void Image2::AbstractMapper2D::decode(int, int&, int&, int&) const
{
    refuse3D("void Image2::AbstractMapper2D::decode(int, int&, int&, int&) const");
}

void Image2::AbstractMapper2D::decode(int index, Vector<int>& position) const
{
    position.setSize(2);
    decode(index, position[0], position[1]);
}

Image2::AbstractMapper3D::AbstractMapper3D(int size1, int size2, int size3)
    : AbstractMapper(size1, size2)
    , size3_(size3)
{}

bool Image2::AbstractMapper3D::contains(int, int) const
{
    refuse2D("bool Image2::AbstractMapper3D::contains(int, int) const");
}

bool Image2::AbstractMapper3D::contains(int i, int j, int k) const
{
    return within(i, size1_) && within(j, size2_) && within(k, size3_);
}

bool Image2::AbstractMapper3D::contains(const Vector<int>& position) const
{
    return contains(position[0], position[1], position[2]);
}

bool Image2::AbstractMapper3D::insideMargin(int index, int margin) const
{
    int i;
    int j;
    int k;
    decode(index, i, j, k);
    return nearEnd(j, size2_, margin) || nearEnd(i, size1_, margin) || nearEnd(k, size3_, margin);
}

Image2::AbstractMapper::Runs Image2::AbstractMapper3D::borderRuns() const
{
    Runs runs;
    const int planeSize = size1_ * size2_;
    if (planeSize < 1) {
        return runs;
    }
    runs.emplace_back(0, planeSize - 1);
    for (int k = 1; k < size3_ - 1; ++k) {
        addPlaneBorder(runs, k * planeSize, size1_, size2_);
    }
    runs.emplace_back((size3_ - 1) * planeSize, size3_ * planeSize - 1);
    return runs;
}

int Image2::AbstractMapper3D::encode(int, int) const
{
    refuse2D("int Image2::AbstractMapper3D::encode(int, int) const");
}

int Image2::AbstractMapper3D::encode(const Vector<int>& position) const
{
    return encode(position[0], position[1], position[2]);
}

int Image2::AbstractMapper3D::encode(int, int, ColorChannel) const
{
    refuse2D("int Image2::AbstractMapper3D::encode(int, int, ColorChannel) const");
}

int Image2::AbstractMapper3D::encode(const Vector<int>& position, ColorChannel channel) const
{
    return encode(position[0], position[1], position[2], channel);
}

void Image2::AbstractMapper3D::decode(int, int&, int&) const
{
    refuse2D("void Image2::AbstractMapper3D::decode(int, int&, int&) const");
}

void Image2::AbstractMapper3D::decode(int index, int& i, int& j, int& k) const
{
    const int planeSize = size1_ * size2_;
    k = index / planeSize;
    const int inPlane = index - k * planeSize;
    j = inPlane % size2_;
    i = (inPlane - j) / size2_;
}

void Image2::AbstractMapper3D::decode(int index, Vector<int>& position) const
{
    position.setSize(3);
    decode(index, position[0], position[1], position[2]);
}

void Image2::Mapper2D::swap(Image2::AbstractMapper& other)
{
    swapMappers(*this, other, "void Image2::Mapper2D::swap(Image2::AbstractMapper&)");
}

Image2::ColorMapper2D::ColorMapper2D(int size1, int size2, int samples)
    : AbstractMapper2D(size1, size2)
    , samples_(samples)
{}

void Image2::ColorMapper2D::swap(Image2::AbstractMapper& other)
{
    swapMappers(*this, other, "void Image2::ColorMapper2D::swap(Image2::AbstractMapper&)");
}

void Image2::Mapper3D::swap(Image2::AbstractMapper& other)
{
    swapMappers(*this, other, "void Image2::Mapper3D::swap(Image2::AbstractMapper&)");
}

Image2::ColorMapper3D::ColorMapper3D(int size1, int size2, int size3, int samples)
    : AbstractMapper3D(size1, size2, size3)
    , samples_(samples)
{}

void Image2::ColorMapper3D::swap(Image2::AbstractMapper& other)
{
    swapMappers(*this, other, "void Image2::ColorMapper3D::swap(Image2::AbstractMapper&)");
}
