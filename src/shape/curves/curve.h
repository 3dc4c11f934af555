#pragma once

#include "shape/vertices/vertices.h"

#include <vector>

/// A polygonal line, open or closed.
///
/// A closed curve does not repeat its first vertex: `n` vertices have `n` edges, the last one from
/// vertex `n-1` back to vertex 0. An open curve has `n-1` edges. The flag alone decides.
///
/// `c1` and `c2` name the two coordinates of the plane in which a question is asked; the others are
/// ignored. A positive turn leads from the axis `c1` to the axis `c2`, so in an image, whose rows
/// grow downward, the visual sense is the opposite.
template <class T>
class Curve : public Vertices<T>
{
public:
    class __ConcreteEdgeIterator;

    /// No server, no vertices, closed.
    Curve();

    /// Positions `0 .. size-1` on a new server. `(2, 0, 0, 0, false)` is ready for `append`.
    Curve(int space, int size, int capacity, int growth, bool open);

    /// Shares the server, copies the index list.
    Curve(const Vertices<T>& vertices, bool open);
    Curve(const Curve& other);

    /// Reads the file, see `load`.
    explicit Curve(const std::string& filename);
    ~Curve() override;

    using Vertices<T>::operator=;
    Curve& operator=(const Curve& other);

    /// Takes vertices and flag of another curve; raises the standard bad cast error on any other
    /// shape.
    void assign(const VertexClient<T>& other) override;

    Curve* clone() const override;
    int getShapeType() const override;

    /// As for vertices; the curve is open exactly if the type number read is 1.
    int read(std::istream& stream) override;

    std::unique_ptr<ConcreteEdgeIterator<T>> edgeIterator() override;
    std::unique_ptr<ConcreteEdgeIterator<T>> edgeIterator() const override;

    /// Changes no vertex.
    void setOpen(bool open) { open_ = open; }

    bool isOpen() const { return open_; }

    bool isClosed() const { return !open_; }

    /// Sum of the edges' lengths in `T`, closing edge first; 0 below two vertices. `TypeError` for
    /// `int`.
    T length() const;

    /// Twice the signed area of the polygon, positive for a positive turn; 0 for an open curve and
    /// below three vertices. Summed in double precision, closing edge first, rounded at the end.
    T twiceArea(int c1, int c2) const;

    /// Sign of the area, 0 within `Vector<T>::epsilon()` of zero.
    int projectedAreaSign(int c1, int c2) const;

    /// Whether the curve turns the negative way.
    bool isClockwise(int c1, int c2) const;

    /// Reverses the order of vertices unless it is as asked; a curve of area 0 stays as it is.
    void setClockwise(bool clockwise, int c1, int c2);

    /// Whether a closed curve contains `position`: the half line towards growing `c1` crosses it an
    /// odd number of times. True on the vertices; within `Vector<T>::epsilon()` of an edge the edge
    /// counts as not crossed. False for an open curve.
    bool contains(const Vector<T>& position, int c1, int c2) const;

    /// Whether it contains every vertex; true for none.
    bool containsAll(const Vertices<T>& vertices, int c1, int c2) const;

    /// Whether no vertex of `curve` is seen to lie outside and no edges cross. From each vertex a
    /// line goes to this curve's largest `c1`; only a positive even number of crossings tells
    /// outside, so a curve that lies wholly beyond this one, seeing no edge, passes. False if this
    /// curve is open. Quadratic.
    bool contains(const Curve& curve, int c1, int c2) const;

    /// The nearest point on the edges: `q` receives it, `edge` the index of the first nearest edge.
    /// Returns the distance. A curve without edges leaves both alone and gives not-a-number.
    T closestPoint(const Vector<T>& position, Vector<T>& q, int* edge = nullptr) const;

    /// Whether an edge of one curve crosses or touches an edge of the other; parallel edges never
    /// do. Quadratic.
    bool intersects(const Curve& curve, int c1, int c2) const;

    /// The same among the edges of this curve that are not neighbours. Quadratic.
    bool selfIntersects(int c1, int c2) const;

    /// The index of this curve's edge for every crossing with an edge of the other, in the order of
    /// the walk; an index stands once per crossing. Quadratic.
    std::vector<int> intersectionIndexes(const Curve& curve, int c1, int c2) const;

    /// A unit normal for each vertex, in two dimensions: the direction from the vertex before to
    /// the vertex behind, turned by a positive right angle. On a closed curve of positive area they
    /// point inward. Open ends take the direction of their only edge; where neighbours coincide the
    /// normal is zero. `TypeError` for `int`.
    Vertices<T> normals(int c1, int c2) const;

    /// A curve of `size` vertices at equal spacing along this one, with its flag; see
    /// `CurveResampling`.
    Curve resample(int size) const;

    /// The same for as many vertices as `target` has. The target takes the flag.
    void resample(Curve& target) const;

    /// `CurveResampling::apply` for the target's size; `TypeError` for `int`.
    void resamplePolygon(Curve& target) const;

    /// Both end points are kept exactly; see `CurveResampling`. Works for `int`, in integers.
    void resamplePolyline(Curve& target) const;

    /// For each vertex of this curve the distance, in the plane, to the line through the edge of
    /// `resampled` at about the same arc length; entry 0 is 0. Raises `SizeError` where `resampled`
    /// has fewer than two vertices, `TypeError` for `int`.
    void resamplingError(const Curve& resampled, Vector<T>& errors, int c1, int c2) const;

    /// Splits at the edges where `curve` crosses this one.
    std::vector<Curve> split(const Curve& curve, int c1, int c2) const;

    /// For `k` pairs of ascending positions, `k + 1` detached copies of this curve: first the curve
    /// without the stretches inside the pairs, then for each pair the stretch from its first
    /// position to one beyond its second. Raises `ValueError` for an odd number of positions or for
    /// positions that do not exist or descend.
    std::vector<Curve> split(const std::vector<int>& positions) const;

    /// Joins two closed curves at their closest vertices, with `keep` and `check`.
    Curve join(const Curve& other) const;

    /// One closed curve from two, of copied vertices, through a bridge from position `i` of this
    /// curve to position `j` of `other` and back. With `keep` both ends of the bridge stand twice.
    /// With `check` a curve that lies inside the other is reversed first, so that a hole turns
    /// against its outline. Raises `RangeError` for positions that do not exist.
    Curve join(const Curve& other, int i, int j, bool keep, bool check) const;

    /// The closed curve (x, y), (x + side, y), (x + side, y + side), (x, y + side).
    static Curve square(T x, T y, T side);

protected:
    bool open_ = false;
};

/// The walk over the edges of a curve, closing edge last. One edge object serves all steps.
template <class T>
class Curve<T>::__ConcreteEdgeIterator : public ConcreteEdgeIterator<T>
{
public:
    explicit __ConcreteEdgeIterator(const Curve& curve);
    ~__ConcreteEdgeIterator() override;

    Edge<T>* current() override;
    void operator++(int) override;
    void rewind() override;

    /// Index of the edge, equal to the position of its first vertex.
    int index() const { return index_; }

    /// Same curve and same index.
    bool operator==(const __ConcreteEdgeIterator& other) const;
    bool operator!=(const __ConcreteEdgeIterator& other) const;

    /// Whether this edge comes just before, just behind, or next to the other on the same curve.
    bool isPrevious(const __ConcreteEdgeIterator& other) const;
    bool isNext(const __ConcreteEdgeIterator& other) const;
    bool isAdjacent(const __ConcreteEdgeIterator& other) const;

private:
    std::unique_ptr<Edge<T>> edge_;
    int index_ = 0;
    const Curve* curve_;
    bool closing_ = false;
};

extern template class Curve<int>;
extern template class Curve<float>;
extern template class Curve<double>;
extern template class Curve<long double>;
