#include "image/pixels/neighbourhood.h"

#include "image/pixels/image2.h"

#include <algorithm>
#include <vector>

namespace {

using Offset = std::vector<int>;

Matrix<int> matrixOf(const std::vector<Offset>& offsets, int dimension)
{
    Matrix<int> matrix(static_cast<int>(offsets.size()), dimension);
    for (std::size_t i = 0; i < offsets.size(); ++i) {
        std::copy(offsets[i].begin(), offsets[i].end(), matrix[static_cast<int>(i)].data());
    }
    return matrix;
}

void requireRadius(int r, const char* where)
{
    if (r < 0) {
        raise<ValueError>(where, "The size of a neighbourhood must not be negative");
    }
}

/// Those offsets of a square of half size `r` for which `keeps(i, j)` holds, in scan order.
template <class Keeps>
Neighbourhood planar(int r, bool centre, Keeps keeps)
{
    std::vector<Offset> offsets;
    for (int i = -r; i <= r; ++i) {
        for (int j = -r; j <= r; ++j) {
            if (keeps(i, j) && (centre || i != 0 || j != 0)) {
                offsets.push_back({i, j});
            }
        }
    }
    return Neighbourhood(matrixOf(offsets, 2));
}

template <class Keeps>
Neighbourhood spatial(int r, bool centre, Keeps keeps)
{
    std::vector<Offset> offsets;
    for (int k = -r; k <= r; ++k) {
        for (int i = -r; i <= r; ++i) {
            for (int j = -r; j <= r; ++j) {
                if (keeps(i, j, k) && (centre || i != 0 || j != 0 || k != 0)) {
                    offsets.push_back({i, j, k});
                }
            }
        }
    }
    return Neighbourhood(matrixOf(offsets, 3));
}

/// -1 before the centre in scan order, 0 for the centre, +1 behind it.
int sideOf(const Vector<int>& offset)
{
    const int order[] = {offset.getSize() > 2 ? offset[2] : 0, offset[0], offset[1]};
    for (int coordinate : order) {
        if (coordinate != 0) {
            return coordinate < 0 ? -1 : 1;
        }
    }
    return 0;
}

} // namespace

Neighbourhood::Neighbourhood() = default;

Neighbourhood::Neighbourhood(const Matrix<int>& offsets)
    : Matrix<int>(offsets)
    , built_(true)
{}

Neighbourhood Neighbourhood::neighbourhood4()
{
    return circularNeighbourhood(1, false);
}

Neighbourhood Neighbourhood::neighbourhood6()
{
    return sphericalNeighbourhood(1, false);
}

Neighbourhood Neighbourhood::neighbourhood8()
{
    return squareNeighbourhood(1, false);
}

Neighbourhood Neighbourhood::neighbourhood26()
{
    return cubicNeighbourhood(1, false);
}

Neighbourhood Neighbourhood::squareNeighbourhood(int r, bool centre)
{
    requireRadius(r, "Neighbourhood Neighbourhood::squareNeighbourhood(const int,const bool)");
    return planar(r, centre, [](int, int) { return true; });
}

Neighbourhood Neighbourhood::cubicNeighbourhood(int r, bool centre)
{
    requireRadius(r, "Neighbourhood Neighbourhood::cubicNeighbourhood(const int,const bool)");
    return spatial(r, centre, [](int, int, int) { return true; });
}

Neighbourhood Neighbourhood::circularNeighbourhood(int r, bool centre)
{
    requireRadius(r, "Neighbourhood Neighbourhood::circularNeighbourhood(const int,const bool)");
    const long long square = 1LL * r * r;
    return planar(r, centre, [=](int i, int j) { return 1LL * i * i + 1LL * j * j <= square; });
}

Neighbourhood Neighbourhood::sphericalNeighbourhood(int r, bool centre)
{
    requireRadius(r, "Neighbourhood Neighbourhood::sphericalNeighbourhood(const int,const bool)");
    const long long square = 1LL * r * r;
    return spatial(r, centre, [=](int i, int j, int k) {
        return 1LL * i * i + 1LL * j * j + 1LL * k * k <= square;
    });
}

void Neighbourhood::setBox(int size)
{
    built_ = false;
    box_ = true;
    size_ = size;
}

void Neighbourhood::setBall(int size)
{
    built_ = false;
    box_ = false;
    size_ = size;
}

void Neighbourhood::configureFor(const Image2& image)
{
    const bool isPlanar = image.dimension() == 2;
    if (built_ && getSize2() == image.dimension()) {
        return;
    }
    const bool box = box_;
    const int size = size_;
    const Neighbourhood offsets = box && isPlanar ? squareNeighbourhood(size, true)
                                  : box           ? cubicNeighbourhood(size, true)
                                  : isPlanar      ? circularNeighbourhood(size, true)
                                                  : sphericalNeighbourhood(size, true);
    Matrix<int>::operator=(offsets);
    built_ = true;
}

template <class Keeps>
Neighbourhood Neighbourhood::filtered(Keeps keeps) const
{
    std::vector<Offset> offsets;
    for (int i = 0; i < getSize1(); ++i) {
        if (keeps((*this)[i])) {
            offsets.push_back((*this)[i].toStlVector());
        }
    }
    return Neighbourhood(matrixOf(offsets, getSize2()));
}

Neighbourhood Neighbourhood::front(bool centre) const
{
    return half(-1, centre);
}

Neighbourhood Neighbourhood::back(bool centre) const
{
    return half(1, centre);
}

Neighbourhood Neighbourhood::half(int side, bool centre) const
{
    if (side != -1 && side != 1) {
        raise<ValueError>("Neighbourhood Neighbourhood::half(const int,const bool) const",
                          "The side is neither -1 nor 1");
    }
    return filtered([=](const Vector<int>& offset) {
        const int offsetSide = sideOf(offset);
        return offsetSide == side || (centre && offsetSide == 0);
    });
}

Neighbourhood Neighbourhood::within(const int* most) const
{
    return filtered([=](const Vector<int>& offset) {
        for (int c = 0; c < offset.getSize(); ++c) {
            if (offset[c] > most[c] || offset[c] < -most[c]) {
                return false;
            }
        }
        return true;
    });
}

int Neighbourhood::maxShift() const
{
    int shift = 0;
    for (int i = 0; i < getSize1(); ++i) {
        for (int j = 0; j < getSize2(); ++j) {
            shift = std::max({shift, (*this)(i, j), -(*this)(i, j)});
        }
    }
    return shift;
}
