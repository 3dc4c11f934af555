// Contents, pieces and edges of `Curve`.

#include "shape/curves/curve.h"

#include "numerics/elementtype.h"
#include "shape/curves/curveresampling.h"
#include "shape/curves/edge.h"
#include "shape/vertices/vertexdistance.h"
#include "system/exception.h"

#include <algorithm>
#include <cmath>

namespace {

/// Distance of `p` from the line through `a` and `b` in the plane, from `a` where these coincide.
template <class T>
T distanceFromLine(const Vector<T>& a, const Vector<T>& b, const Vector<T>& p, int c1, int c2)
{
    const T x = b[c1] - a[c1];
    const T y = b[c2] - a[c2];
    const T length = std::sqrt(x * x + y * y);
    const T px = p[c1] - a[c1];
    const T py = p[c2] - a[c2];
    return length > 0 ? std::abs(x * py - y * px) / length : std::sqrt(px * px + py * py);
}

} // namespace

template <class T>
Curve<T>::Curve() = default;

template <class T>
Curve<T>::Curve(int space, int size, int capacity, int growth, bool open)
    : Vertices<T>(space, size, capacity, growth)
    , open_(open)
{}

template <class T>
Curve<T>::Curve(const Vertices<T>& vertices, bool open)
    : Vertices<T>(vertices)
    , open_(open)
{}

template <class T>
Curve<T>::Curve(const Curve& other) = default;

template <class T>
Curve<T>::Curve(const std::string& filename)
{
    this->load(filename);
}

template <class T>
Curve<T>::~Curve() = default;

template <class T>
Curve<T>& Curve<T>::operator=(const Curve& other)
{
    this->assign(other);
    return *this;
}

template <class T>
void Curve<T>::assign(const VertexClient<T>& other)
{
    const auto& curve = dynamic_cast<const Curve&>(other);
    Vertices<T>::assign(other);
    open_ = curve.open_;
}

template <class T>
Curve<T>* Curve<T>::clone() const
{
    return new Curve(*this);
}

template <class T>
int Curve<T>::getShapeType() const
{
    return open_ ? 1 : 0;
}

template <class T>
int Curve<T>::read(std::istream& stream)
{
    const int type = Vertices<T>::read(stream);
    if (type != -1) {
        open_ = type == 1;
    }
    return type;
}

template <class T>
std::unique_ptr<ConcreteEdgeIterator<T>> Curve<T>::edgeIterator()
{
    return std::make_unique<__ConcreteEdgeIterator>(*this);
}

template <class T>
std::unique_ptr<ConcreteEdgeIterator<T>> Curve<T>::edgeIterator() const
{
    return std::make_unique<__ConcreteEdgeIterator>(*this);
}

template <class T>
Curve<T> Curve<T>::resample(int size) const
{
    Curve target(this->getSpace(), size, 0, 0, false);
    resample(target);
    return target;
}

template <class T>
void Curve<T>::resample(Curve& target) const
{
    const bool open = open_;
    if (open) {
        resamplePolyline(target);
    } else {
        resamplePolygon(target);
    }
    target.open_ = open;
}

template <class T>
void Curve<T>::resamplePolygon([[maybe_unused]] Curve& target) const
{
    if constexpr (std::is_integral_v<T>) {
        raise<TypeError>("void Curve<T>::resamplePolygon(Curve&) const",
                         std::string("Method not available for type '") + elementTypeName<T>() +
                             "'");
    } else {
        CurveResampling<T>().apply(*this, target, target.getSize());
    }
}

template <class T>
void Curve<T>::resamplePolyline(Curve& target) const
{
    CurveResampling<T>().resamplePolyline(*this, target, target.getSize());
}

template <class T>
void Curve<T>::resamplingError([[maybe_unused]] const Curve& resampled,
                               [[maybe_unused]] Vector<T>& errors,
                               [[maybe_unused]] int c1,
                               [[maybe_unused]] int c2) const
{
    if constexpr (std::is_integral_v<T>) {
        raiseNotAvailable<T>("void Curve<T>::resamplingError(...) const");
    } else {
        if (resampled.getSize() < 2) {
            raise<SizeError>("void Curve<T>::resamplingError(...) const",
                             "The resampled curve contains less than two vertices");
        }
        const Curve& r = resampled;
        errors.setZeros(this->getSize());
        int a = 0;
        int b = 1;
        T walked = 0;
        T reached = vertexDistance(r[0], r[1]);
        for (int i = 0; i + 1 < this->getSize(); ++i) {
            const Vector<T>& vertex = (*this)[i + 1];
            walked += vertexDistance((*this)[i], vertex);
            // The walk stays on the closing segment, when it gets there, for all further vertices.
            while (walked > reached && b != 0) {
                a = b;
                b = b + 1 < r.getSize() ? b + 1 : 0;
                if (b != 0) {
                    reached += vertexDistance(r[a], r[b]);
                }
            }
            errors[i + 1] = distanceFromLine(r[a], r[b], vertex, c1, c2);
            reached = walked + vertexDistance(r[b], vertex);
        }
    }
}

template <class T>
std::vector<Curve<T>> Curve<T>::split(const Curve& curve, int c1, int c2) const
{
    return split(intersectionIndexes(curve, c1, c2));
}

template <class T>
std::vector<Curve<T>> Curve<T>::split(const std::vector<int>& positions) const
{
    const char* where = "vector<Curve<T>> Curve<T>::split(const vector<int>&) const";
    if (positions.size() % 2 != 0) {
        raise<ValueError>(where, "The number of positions is odd");
    }
    if (!std::is_sorted(positions.begin(), positions.end()) ||
        (!positions.empty() && (positions.front() < 0 || positions.back() >= this->getSize()))) {
        raise<ValueError>(where, "Positions must ascend within the curve");
    }
    std::vector<Curve> pieces(positions.size() / 2 + 1, *this);
    for (Curve& piece : pieces) {
        piece.detach();
    }
    for (std::size_t p = pieces.size() - 1; p > 0; --p) {
        const int first = positions[2 * p - 2];
        const int second = positions[2 * p - 1];
        pieces[p].removeOutside(first, second + 1);
        pieces[0].remove(first + 1, second - 1);
    }
    return pieces;
}

template <class T>
Curve<T> Curve<T>::join(const Curve& other) const
{
    int i = 0;
    int j = 0;
    this->closestPoints(other, i, j);
    return join(other, i, j, true, true);
}

template <class T>
Curve<T> Curve<T>::join(const Curve& other, int i, int j, bool keep, bool check) const
{
    const int size = this->getSize();
    const int otherSize = other.getSize();
    if (i < 0 || i >= size || j < 0 || j >= otherSize) {
        raise<RangeError>("Curve<T> Curve<T>::join(const Curve&,const int,const int,const "
                          "bool,const bool) const",
                          "Position out of range");
    }
    if (check && containsAll(other, 0, 1)) {
        Curve hole(other);
        hole.reverse();
        return join(hole, i, otherSize - 1 - j, keep, false);
    }
    if (check && other.containsAll(*this, 0, 1)) {
        Curve hole(*this);
        hole.reverse();
        return other.join(hole, j, size - 1 - i, keep, false);
    }
    const int skipped = keep ? 0 : 1;
    Curve joined(this->getSpace(), size + otherSize + 2 * (1 - skipped), 0, 0, false);
    int next = 0;
    const auto copy = [&](const Curve& source, int first, int last) {
        for (int k = first; k <= last; ++k) {
            joined[next++] = source[k];
        }
    };
    copy(*this, 0, i);
    copy(other, j + skipped, otherSize - 1);
    copy(other, 0, j);
    copy(*this, i + skipped, size - 1);
    return joined;
}

template <class T>
Curve<T> Curve<T>::square(T x, T y, T side)
{
    Curve result(2, 4, 0, 0, false);
    for (int i = 0; i < 4; ++i) {
        result[i][0] = i == 1 || i == 2 ? x + side : x;
        result[i][1] = i < 2 ? y : y + side;
    }
    return result;
}

template <class T>
Curve<T>::__ConcreteEdgeIterator::__ConcreteEdgeIterator(const Curve& curve)
    : curve_(&curve)
{
    rewind();
}

template <class T>
Curve<T>::__ConcreteEdgeIterator::~__ConcreteEdgeIterator() = default;

template <class T>
Edge<T>* Curve<T>::__ConcreteEdgeIterator::current()
{
    return edge_.get();
}

template <class T>
void Curve<T>::__ConcreteEdgeIterator::operator++(int)
{
    if (edge_ == nullptr) {
        return;
    }
    ++index_;
    const int last = curve_->getSize() - 1;
    if (index_ < last) {
        edge_->setIndex(0, curve_->getIndex(index_));
        edge_->setIndex(1, curve_->getIndex(index_ + 1));
    } else if (closing_) {
        closing_ = false;
        edge_->setIndex(0, curve_->getIndex(last));
        edge_->setIndex(1, curve_->getIndex(0));
    } else {
        edge_.reset();
    }
}

template <class T>
void Curve<T>::__ConcreteEdgeIterator::rewind()
{
    index_ = 0;
    edge_.reset();
    closing_ = curve_->isClosed();
    if (curve_->getSize() > 1) {
        edge_ = std::make_unique<Edge<T>>(*curve_, 0, 1);
    }
}

template <class T>
bool Curve<T>::__ConcreteEdgeIterator::operator==(const __ConcreteEdgeIterator& other) const
{
    return curve_ == other.curve_ && index_ == other.index_;
}

template <class T>
bool Curve<T>::__ConcreteEdgeIterator::operator!=(const __ConcreteEdgeIterator& other) const
{
    return !(*this == other);
}

template <class T>
bool Curve<T>::__ConcreteEdgeIterator::isPrevious(const __ConcreteEdgeIterator& other) const
{
    const bool wraps = curve_->isClosed() && index_ == curve_->getSize() - 1 && other.index_ == 0;
    return curve_ == other.curve_ && (index_ + 1 == other.index_ || wraps);
}

template <class T>
bool Curve<T>::__ConcreteEdgeIterator::isNext(const __ConcreteEdgeIterator& other) const
{
    return other.isPrevious(*this);
}

template <class T>
bool Curve<T>::__ConcreteEdgeIterator::isAdjacent(const __ConcreteEdgeIterator& other) const
{
    return isPrevious(other) || isNext(other);
}

template class Curve<int>;
template class Curve<float>;
template class Curve<double>;
template class Curve<long double>;
