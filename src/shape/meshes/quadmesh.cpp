#include "shape/meshes/quadmesh.h"

#include "image/values/colormap.h"
#include "numerics/matrix.h"
#include "shape/vertices/segment.h"
#include "shape/vertices/shapeset.h"
#include "shape/vertices/vertexdistance.h"
#include "system/exception.h"

#include <cmath>

namespace {

/// Index of the colour for a value between the two ends, 0 where these agree.
template <class T>
int colorIndex(T value, T smallest, T largest)
{
    const double place = (static_cast<double>(value) - static_cast<double>(smallest)) /
                         (static_cast<double>(largest) - static_cast<double>(smallest));
    if (!(place > 0)) {
        return 0;
    }
    return place < 1 ? static_cast<int>(std::floor(place * 255)) : 255;
}

} // namespace

template <class T>
QuadMesh<T>::QuadMesh() = default;

template <class T>
QuadMesh<T>::QuadMesh(int space, int height, int width, int capacity, int growth, bool open)
    : CurveStack<T>(space, height, width, capacity, growth, open)
{}

template <class T>
QuadMesh<T>::QuadMesh(const CurveStack<T>& stack)
    : CurveStack<T>(stack)
{
    for (int k = 1; k < this->getHeight(); ++k) {
        if ((*this)[k].getSize() != getWidth()) {
            raise<SizeError>("QuadMesh<T>::QuadMesh(const Curvestack<T>&)",
                             "Curve size is not constant along the curve stack");
        }
    }
}

template <class T>
QuadMesh<T>::QuadMesh(const QuadMesh& other)
    : CurveStack<T>(other)
{
    copyCaps(other);
    if (other.hasVertexColors()) {
        vertexColors = std::make_unique<QuadMesh<int>>(*other.vertexColors);
    }
}

template <class T>
QuadMesh<T>::QuadMesh(const std::string& filename)
{
    this->load(filename);
}

template <class T>
QuadMesh<T>::~QuadMesh() = default;

template <class T>
QuadMesh<T>& QuadMesh<T>::operator=(const QuadMesh& other)
{
    assign(other);
    return *this;
}

template <class T>
void QuadMesh<T>::assign(const VertexClient<T>& other)
{
    if (this == &other) {
        return;
    }
    const auto& mesh = dynamic_cast<const QuadMesh&>(other);
    CurveStack<T>::assign(other);
    copyCaps(mesh);
}

template <class T>
void QuadMesh<T>::detach()
{
    CurveStack<T>::detach();
    for (QuadMesh* cap : {beginCap.get(), endCap.get()}) {
        if (cap != nullptr) {
            cap->detach();
        }
    }
    if (hasVertexColors()) {
        vertexColors->detach();
    }
}

template <class T>
QuadMesh<T>* QuadMesh<T>::clone() const
{
    return new QuadMesh(*this);
}

template <class T>
int QuadMesh<T>::getShapeType() const
{
    return this->open_ ? 5 : 4;
}

template <class T>
int QuadMesh<T>::read(std::istream& stream)
{
    CurveStack<T> levels;
    const int type = levels.read(stream);
    if (type == -1) {
        return -1;
    }
    for (int k = 1; k < levels.getHeight(); ++k) {
        if (levels[k].getSize() != levels[0].getSize()) {
            stream.setstate(std::ios::failbit);
            return -1;
        }
    }
    destroyCaps();
    vertexColors.reset();
    CurveStack<T>::assign(levels);
    return type;
}

template <class T>
void QuadMesh<T>::requireWidth(const Vertices<T>& curve, const char* where) const
{
    if (this->getHeight() > 0 && curve.getSize() != getWidth()) {
        raise<SizeError>(where, "Incompatible curve size");
    }
}

template <class T>
void QuadMesh<T>::append(const Vertices<T>& curve)
{
    requireWidth(curve, "void QuadMesh<T>::append(const Curve<T>&)");
    CurveStack<T>::insert(static_cast<unsigned int>(this->getHeight()), curve);
    destroyEndCap();
}

template <class T>
void QuadMesh<T>::prepend(const Vertices<T>& curve)
{
    requireWidth(curve, "void QuadMesh<T>::prepend(const Curve<T>&)");
    CurveStack<T>::insert(0, curve);
    destroyBeginCap();
}

template <class T>
void QuadMesh<T>::insert(unsigned int i, const Vertices<T>& curve)
{
    requireWidth(curve, "void QuadMesh<T>::insert(const unsigned int,const Curve<T>&)");
    CurveStack<T>::insert(i, curve);
    if (i == 0) {
        destroyBeginCap();
    }
    if (static_cast<int>(i) >= this->getHeight() - 2) {
        destroyEndCap();
    }
}

template <class T>
void QuadMesh<T>::remove(int i)
{
    const bool isLast = i == this->getHeight() - 1;
    CurveStack<T>::remove(i);
    if (i == 0) {
        destroyBeginCap();
    }
    if (isLast) {
        destroyEndCap();
    }
}

template <class T>
void QuadMesh<T>::reverse()
{
    CurveStack<T>::reverse();
    beginCap.swap(endCap);
}

template <class T>
void QuadMesh<T>::sort(int c)
{
    if (this->getHeight() == 0) {
        return;
    }
    const Curve<T>* first = &this->getFirstCurve();
    const Curve<T>* last = &this->getLastCurve();
    CurveStack<T>::sort(c);
    if (first != &this->getFirstCurve()) {
        destroyBeginCap();
    }
    if (last != &this->getLastCurve()) {
        destroyEndCap();
    }
}

template <class T>
template <class Combine>
void QuadMesh<T>::combine(const Shape<T>& shape, const char* where, Combine combineShapes)
{
    const auto& mesh = dynamic_cast<const QuadMesh&>(shape);
    if (mesh.getHeight() != this->getHeight()) {
        raise<SizeError>("void QuadMesh<T>::operator+=(const QuadMesh&)",
                         "Incompatible mesh heights");
    }
    try {
        for (int k = 0; k < this->getHeight(); ++k) {
            combineShapes((*this)[k], mesh[k]);
        }
        if (hasBeginCap() && mesh.hasBeginCap()) {
            combineShapes(*beginCap, *mesh.beginCap);
        } else {
            destroyBeginCap();
        }
        if (hasEndCap() && mesh.hasEndCap()) {
            combineShapes(*endCap, *mesh.endCap);
        } else {
            destroyEndCap();
        }
    } catch (Exception& exception) {
        exception.addCall(where);
        throw;
    }
}

template <class T>
void QuadMesh<T>::operator+=(const Shape<T>& shape)
{
    combine(shape, "void QuadMesh<T>::operator+=(const QuadMesh&)",
            [](Shape<T>& to, const Shape<T>& from) { to += from; });
}

template <class T>
void QuadMesh<T>::operator-=(const Shape<T>& shape)
{
    combine(shape, "void QuadMesh<T>::operator-=(const QuadMesh&)",
            [](Shape<T>& to, const Shape<T>& from) { to -= from; });
}

template <class T>
int QuadMesh<T>::getWidth() const
{
    return this->getHeight() == 0 ? 0 : (*this)[0].getSize();
}

template <class T>
QuadMesh<T> QuadMesh<T>::closestPointMap(const QuadMesh& other) const
{
    return QuadMesh(CurveStack<T>::closestPointMap(other));
}

template <class T>
void QuadMesh<T>::setVertexColors(QuadMesh<int>* colors)
{
    if (colors != nullptr &&
        (colors->getHeight() != this->getHeight() || colors->getWidth() != getWidth())) {
        raise<SizeError>("void QuadMesh<T>::setVertexColors(...)",
                         "Incompatible color array dimensions");
    }
    if (colors != vertexColors.get()) {
        vertexColors.reset(colors);
    }
}

template <class T>
void QuadMesh<T>::buildVertexColors(const Matrix<T>& matrix, const Colormap& colormap)
{
    const char* where = "void QuadMesh<T>::buildVertexColors(const Matrix<T>&,const Colormap&)";
    if (matrix.getSize1() != this->getHeight() || matrix.getSize2() != getWidth()) {
        raise<SizeError>(where, "Incompatible matrix dimensions");
    }
    if (colormap.getSize() < 256) {
        raise<SizeError>(where, "The colormap contains less than 256 colors");
    }
    const Vector<T> range = matrix.range();
    auto colors =
        std::make_unique<QuadMesh<int>>(3, matrix.getSize1(), matrix.getSize2(), 0, 0, this->open_);
    for (int k = 0; k < matrix.getSize1(); ++k) {
        for (int j = 0; j < matrix.getSize2(); ++j) {
            const int index = colorIndex(matrix(k, j), range[0], range[1]);
            Vector<int>& color = (*colors)[k][j];
            color[0] = colormap.getRed()[index];
            color[1] = colormap.getGreen()[index];
            color[2] = colormap.getBlue()[index];
        }
    }
    setVertexColors(colors.release());
}

template <class T>
unsigned int QuadMesh<T>::findMatch(const QuadMesh& mesh) const
{
    const int width = getWidth();
    if (mesh.getHeight() != this->getHeight() || mesh.getWidth() != width) {
        raise<SizeError>("unsigned int QuadMesh::findMatch(const QuadMesh&) const",
                         "Incompatible mesh dimensions");
    }
    if (this->isOpen() || mesh.isOpen()) {
        raise<TypeError>("unsigned int QuadMesh<T>::findMatch(const QuadMesh&) const",
                         "Cannot match open meshes");
    }
    int best = 0;
    Widened<T> largest = 0;
    for (int k = 0; k < width; ++k) {
        Widened<T> score = 0;
        for (int level = 0; level < this->getHeight(); ++level) {
            const Curve<T>& curve = (*this)[level];
            const Curve<T>& other = mesh[level];
            for (int i = 0; i < width; ++i) {
                score += widenedProduct(curve[i], other[i >= k ? i - k : i - k + width]);
            }
        }
        if (k == 0 || score > largest) {
            largest = score;
            best = k;
        }
    }
    return static_cast<unsigned int>(best);
}

template <class T>
void QuadMesh<T>::setOrigins(int k)
{
    for (int level = 0; level < this->getHeight(); ++level) {
        (*this)[level].setOrigin(k);
    }
    for (QuadMesh* cap : {beginCap.get(), endCap.get()}) {
        if (cap != nullptr) {
            cap->setOrigins(k);
        }
    }
    if (hasVertexColors()) {
        vertexColors->setOrigins(k);
    }
}

template <class T>
unsigned int QuadMesh<T>::match(const QuadMesh& mesh)
{
    const unsigned int shift = findMatch(mesh);
    setOrigins(static_cast<int>(shift));
    return shift;
}

template <class T>
Matrix<T> QuadMesh<T>::varianceMap(const QuadMesh& mean, const std::vector<QuadMesh*>& meshes)
{
    Matrix<T> map(mean.getHeight(), mean.getWidth());
    map.setZeros();
    if (meshes.empty()) {
        return map;
    }
    for (const QuadMesh* mesh : meshes) {
        if (mesh->getHeight() != mean.getHeight() || mesh->getWidth() != mean.getWidth()) {
            raise<SizeError>("Matrix<T> QuadMesh<T>::varianceMap(...)",
                             "Incompatible mesh dimensions");
        }
        for (int k = 0; k < map.getSize1(); ++k) {
            for (int j = 0; j < map.getSize2(); ++j) {
                map(k, j) += squaredDistance((*mesh)[k][j], mean[k][j]);
            }
        }
    }
    map /= static_cast<T>(meshes.size());
    return map;
}

template <class T>
QuadMesh<T> QuadMesh<T>::mean(const std::vector<QuadMesh*>& meshes)
{
    QuadMesh sum;
    if (meshes.empty()) {
        return sum;
    }
    try {
        sum = *meshes.front();
        sum.detach();
        for (std::size_t i = 1; i < meshes.size(); ++i) {
            sum += *meshes[i];
        }
        sum /= static_cast<T>(meshes.size());
    } catch (Exception& exception) {
        exception.addCall("QuadMesh<T> QuadMesh<T>::mean(...)");
        throw;
    }
    return sum;
}

template class QuadMesh<int>;
template class QuadMesh<float>;
template class QuadMesh<double>;
template class QuadMesh<long double>;
