// Part of `CurveStack`: resampling onto quad meshes.

#include "shape/curves/curvestack.h"
#include "shape/curves/edge.h"
#include "shape/meshes/quadmesh.h"
#include "shape/vertices/boundingbox.h"
#include "shape/vertices/kdtree.h"
#include "shape/vertices/vertexdistance.h"
#include "system/exception.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

/// Column `j` of a mesh as an open curve on its vertices.
template <class T>
Curve<T> columnOf(QuadMesh<T>& mesh, int j)
{
    Curve<T> column;
    column.setOpen(true);
    column.setServer(*mesh.getServer());
    column.setSize(mesh.getHeight(), false);
    for (int k = 0; k < mesh.getHeight(); ++k) {
        column.setIndex(k, mesh[k].getIndex(j));
    }
    return column;
}

} // namespace

template <class T>
void CurveStack<T>::resample(QuadMesh<T>& target) const
{
    const char* where = "void CurveStack<T>::resample(QuadMesh<T>&) const";
    if (target.getSpace() != this->getSpace()) {
        raise<SizeError>(where, "Incompatible space dimension");
    }
    if (this->getHeight() == 0) {
        raise<SizeError>(where, "This stack contains no curve");
    }
    const int height = this->getHeight();
    const int width = target.getWidth();
    target.setOpen(open_);
    QuadMesh<T> rows(this->getSpace(), height, width, 0, 0, open_);
    for (int k = 0; k < height; ++k) {
        (*this)[k].resample(rows[k]);
        if (k > 0) {
            rows[k].match(rows[k - 1]);
        }
    }
    for (int j = 0; j < width; ++j) {
        Curve<T> column = columnOf(target, j);
        columnOf(rows, j).resample(column);
    }
}

template <class T>
QuadMesh<T> CurveStack<T>::resample(int height, int width) const
{
    QuadMesh<T> target(this->getSpace(), height, width, 0, 0, open_);
    resample(target);
    return target;
}

template <class T>
QuadMesh<T> CurveStack<T>::interpolate(const QuadMesh<T>& mesh) const
{
    if (this->getSpace() != 3 || mesh.getSpace() != 3) {
        raise<SizeError>("QuadMesh<T> CurveStack<T>::interpolate(const QuadMesh<T>&) const",
                         "Space dimension is not 3");
    }
    const int pairs = mesh.getHeight() - 1;
    QuadMesh<T> result(3, this->getHeight(), mesh.getWidth(), 0, 0, mesh.isOpen());
    Vector<T> normal(3);
    normal.setCanonical(2);
    Edge<T> edge(3);
    for (int z = 0; z < this->getHeight(); ++z) {
        const bool hasHeight = (*this)[z].getSize() > 0;
        int pair = 0;
        for (int j = 0; j < mesh.getWidth(); ++j) {
            result[z][j].setZeros();
            if (!hasHeight || pairs < 1) {
                continue;
            }
            const T height = (*this)[z][0][2];
            while (pair > 0 && mesh[pair + 1][j][2] > height) {
                --pair;
            }
            while (pair < pairs - 1 && mesh[pair + 1][j][2] < height) {
                ++pair;
            }
            edge[0] = mesh[pair][j];
            edge[1] = mesh[pair + 1][j];
            edge.intersects(normal, height, result[z][j]);
        }
    }
    return result;
}

template <class T>
Vector<T> CurveStack<T>::resamplingError(const QuadMesh<T>& mesh) const
{
    QuadMesh<T> interpolated = interpolate(mesh);
    Vector<T> errors(this->getHeight());
    errors.setZeros();
    if (this->getNumVertices() == 0) {
        return errors;
    }
    KDTree<T> tree;
    tree.setShape(interpolated);
    tree.build();
    for (int z = 0; z < this->getHeight(); ++z) {
        T largest = 0;
        for (int i = 0; i < (*this)[z].getSize(); ++i) {
            const Vector<T>& vertex = (*this)[z][i];
            largest = std::max(largest, squaredDistance(tree.nearestVertex(vertex), vertex));
        }
        errors[z] = squareRoot(largest);
    }
    return errors;
}

template <class T>
int CurveStack<T>::heightForWidth(const Curve<T>& curve, int width) const
{
    const Curve<T> resampled = curve.resample(width);
    const double step = std::sqrt(static_cast<double>(squaredDistance(resampled[0], resampled[1])));
    const double height = std::round(static_cast<double>(this->boundingBox().width(2)) / step);
    if (!(height <= std::numeric_limits<int>::max())) {
        raise<MathError>("T CurveStack<T>::optimalResampling(const T,int&,int&) const",
                         "A contour has no extent");
    }
    return std::max(1, static_cast<int>(height));
}

template <class T>
T CurveStack<T>::largestError(int height, int width) const
{
    return resamplingError(resample(height, width)).max();
}

template <class T>
T CurveStack<T>::optimalResampling(T tolerance, int& height, int& width) const
{
    const char* where = "T CurveStack<T>::optimalResampling(const T,int&,int&) const";
    constexpr int widest = 1 << 20;
    if (!(tolerance > 0)) {
        raise<ValueError>(where, "The tolerance must be positive");
    }
    if (this->getHeight() == 0 || this->getSpace() != 3) {
        raise<SizeError>(where, "This stack contains no curve in space");
    }
    int largest = 0;
    width = 3;
    for (int k = 0; k < this->getHeight(); ++k) {
        if ((*this)[k].getSize() > width) {
            largest = k;
            width = (*this)[k].getSize();
        }
    }
    int lower = 3;
    height = heightForWidth((*this)[largest], width);
    while (largestError(height, width) > tolerance) {
        if (width > widest / 2 || height > widest / 2) {
            raise<MathError>(where, "No mesh reaches the tolerance");
        }
        lower = width;
        width *= 2;
        height *= 2;
    }
    if (width <= lower) {
        return 0;
    }

    while (width - lower > 1) {
        const int middle = lower + (width - lower) / 2;
        height = heightForWidth(getFirstCurve(), middle);
        const T error = largestError(height, middle);
        if (error == tolerance) {
            width = middle;
            return error;
        }
        (error < tolerance ? width : lower) = middle;
    }
    const int lowerHeight = heightForWidth(getFirstCurve(), lower);
    const T lowerError = largestError(lowerHeight, lower);
    height = heightForWidth(getFirstCurve(), width);
    const T error = largestError(height, width);
    if (lowerError < error) {
        height = lowerHeight;
        width = lower;
        return lowerError;
    }
    return error;
}

#define INSTANTIATE_CURVE_STACK_MESHES(T)                                                          \
    template void CurveStack<T>::resample(QuadMesh<T>&) const;                                     \
    template QuadMesh<T> CurveStack<T>::resample(int, int) const;                                  \
    template QuadMesh<T> CurveStack<T>::interpolate(const QuadMesh<T>&) const;                     \
    template Vector<T> CurveStack<T>::resamplingError(const QuadMesh<T>&) const;                   \
    template int CurveStack<T>::heightForWidth(const Curve<T>&, int) const;                        \
    template T CurveStack<T>::largestError(int, int) const;                                        \
    template T CurveStack<T>::optimalResampling(T, int&, int&) const;

INSTANTIATE_CURVE_STACK_MESHES(int)
INSTANTIATE_CURVE_STACK_MESHES(float)
INSTANTIATE_CURVE_STACK_MESHES(double)
INSTANTIATE_CURVE_STACK_MESHES(long double)
