#pragma once

#include "shape/vertices/concreteedgeiterator.h"
#include "shape/vertices/constvertexiterator.h"
#include "shape/vertices/vertexclient.h"
#include "shape/vertices/vertexiterator.h"

#include <istream>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

template <class T>
class BoundingBox;
template <class T>
class Matrix;
template <class T>
class CurveStack;
template <class T>
class ShapeSet;
template <class T>
class SquareMatrix;

/// Base of every geometric object: a name, a type number, walks over vertices and edges, arithmetic
/// and statistics over all vertices, text files.
///
/// A copy shares the vertices (see `VertexClient`) but has neither name nor extensions. All
/// arithmetic writes to the shared vertices.
///
/// Type numbers, names and file suffixes: 0 "ClosedCurve" and 1 "OpenCurve" (cv), 2
/// "ClosedCurveStack" and 3 "OpenCurveStack" (cs), 4 "ClosedQuadMesh" and 5 "OpenQuadMesh" (qm),
/// 6 "Vertices" (vx), 7 "VertexStack" (vs), 8 "TriMesh" (tm).
template <class T>
class Shape : public VertexClient<T>
{
public:
    Shape();
    Shape(int space, int size, int capacity, int growth);
    Shape(const Shape& other);
    ~Shape() override;

    using VertexClient<T>::operator=;
    /// Calls the virtual `assign`; raises the standard bad cast error where the classes differ.
    virtual Shape& operator=(const Shape& other);

    /// A copy on the heap, which shares the vertices; the caller owns it.
    virtual Shape* clone() const = 0;

    /// Dimension of the vertices, 0 without a server.
    virtual int getSpace() const;
    virtual int getNumVertices() const = 0;
    virtual int getShapeType() const = 0;

    /// Whether the shape is made of other shapes.
    virtual bool isComposite() const = 0;

    /// The vertex at a place that a vertex walk has told; unchecked.
    virtual Vector<T>& operator[](const Vector<unsigned int>& locator) = 0;
    virtual const Vector<T>& operator[](const Vector<unsigned int>& locator) const = 0;

    /// Adds the vertices of `shape` to those of this shape, place by place. Raises `UsageError`
    /// unless both have the same type, dimension and number of vertices.
    virtual void operator+=(const Shape& shape);

    /// The same with the difference.
    virtual void operator-=(const Shape& shape);

    /// Reads the text form and returns the type number found there. The shape gets a new server.
    ///
    /// Numbers that can't be read are 0, but stacks and meshes stay as they were; the stream is then
    /// left in its failed state. So it is by a header that is no header, or that announces more
    /// vertices than the rest of the stream can hold: then any shape stays as it was. Nothing is
    /// raised; `load` turns the failed state into an error.
    virtual int read(std::istream& stream) = 0;

    /// Writes the text form; a failure of the stream raises `FileWriteError`.
    virtual void write(std::ostream& stream) const = 0;

    /// Writes the fields, for debugging.
    virtual void print(const std::string& title, std::ostream& stream) const;

    virtual VertexIterator<T> vertexIterator();
    virtual ConstVertexIterator<T> vertexIterator() const;

    virtual std::unique_ptr<ConcreteEdgeIterator<T>> edgeIterator();

    /// The edges are views on the vertices: what is written to them changes the shape.
    virtual std::unique_ptr<ConcreteEdgeIterator<T>> edgeIterator() const;

    void setName(const std::string& name) { name_ = name; }

    const std::string& getName() const { return name_; }

    /// Number of vertices.
    int getSize() const { return getNumVertices(); }

    /// Name of the type, "UnkwownShape" for a number that no class has.
    std::string getShapeTypeName() const;

    /// Companion shapes that transforms carry along, see `ShapeSet`. The shape owns the set, but not
    /// the shapes in it.
    bool hasExtensions() const;
    ShapeSet<T>& getExtensions();
    const ShapeSet<T>& getExtensions() const;

    /// Multiplies or divides every coordinate. Division alone visits the extensions too.
    void operator*=(T factor);
    void operator/=(T divisor);

    /// Adds `offset` to every vertex; another dimension raises `SizeError`.
    void translate(const Vector<T>& offset);

    /// Multiplies each coordinate by its own factor; raises `SizeError` unless there are as many
    /// factors as dimensions.
    void scale(const Vector<T>& factors);
    void scale(const T& factor);

    /// Moves the centre of gravity to the origin.
    void center();

    /// Replaces every vertex by `matrix` times vertex.
    void multiply(const Matrix<T>& matrix);

    /// Mean of the vertices, computed in `T`; raises `SizeError` where there is none.
    Vector<T> cog() const;

    /// All coordinates, vertex after vertex: `size * space` elements.
    Vector<T> toVector() const;

    /// The inverse of `toVector`; raises `UsageError` on another number of elements.
    void fromVector(const Vector<T>& coordinates);

    /// Mean and largest norm of the vertices, both 0 for no vertex; `TypeError` for `int`.
    void stats(T& mean, T& max) const;

    /// The box of the smallest and largest coordinates; for no vertex a box of two zero vectors.
    BoundingBox<T> boundingBox() const;

    /// The first vertex of smallest squared distance to `position`, null for no vertex.
    Vector<T>* nearestVertex(const Vector<T>& position);
    const Vector<T>* nearestVertex(const Vector<T>& position) const;

    /// Squared distances of vertices at equal places. Raises `ValueError` for the shape itself and
    /// `SizeError` for a shape of another size.
    Vector<T> squareDistances(const Shape& shape) const;

    /// Root of the mean of `squareDistances`; `TypeError` for `int`.
    T rmsDistance(const Shape& shape) const;

    /// For each vertex the smallest squared distance to another place of this shape, 0 for a
    /// coincident twin. One vertex alone gives (0). Quadratic.
    Vector<T> squareNearestNeighborDistances() const;

    /// For each vertex the smallest squared distance to a vertex of `shape`; the largest finite
    /// value where that has none. Raises `ValueError` for the shape itself. Quadratic.
    Vector<T> squareNearestNeighborDistances(const Shape& shape) const;

    /// The roots of these; `TypeError` for `int`.
    Vector<T> nearestNeighborDistances(const Shape& shape) const;

    /// For each vertex the place of the nearest vertex that does not coincide with it, the first of
    /// equal distance; an empty locator where there is no such vertex. Quadratic.
    std::vector<Vector<unsigned int>> nearestNeighbors() const;

    /// For each vertex the place of the first nearest vertex of `shape`; an empty locator where
    /// that has none. Quadratic.
    std::vector<Vector<unsigned int>> nearestNeighbors(const Shape& shape) const;

    /// Scatter matrix, `space` by `space`: the sum of (x - cog)(x - cog)^T, not divided by the
    /// number of vertices; zero for no vertex. The second form also gives the centre, which it
    /// leaves alone for no vertex.
    SquareMatrix<T> inertia() const;
    SquareMatrix<T> inertia(Vector<T>& cog) const;

    /// Unit vectors along the principal axes, in the columns of the result, by decreasing
    /// eigenvalue of `inertia` divided by the number of vertices. `TypeError` for `int`.
    SquareMatrix<T> principalAxes() const;
    SquareMatrix<T> principalAxes(Vector<T>& eigenvalues) const;

    /// The motion that brings the centre to the origin (`translation`, done first) and then the
    /// principal axes to the coordinate axes (`rotation`). Raises `SizeError` for no vertex.
    void computePAT(Vector<T>& translation, SquareMatrix<T>& rotation) const;

    /// Applies that motion.
    void applyPAT();

    /// The rotation, without reflection, and the translation after it that bring this shape onto
    /// `target` with the least sum of squared distances of corresponding vertices: those at equal
    /// places, or for each vertex of this shape the one that `correspondences` tells. Raises
    /// `SizeError` where there are fewer of these than vertices, or none; `TypeError` for `int`.
    ///
    /// Source: K. S. Arun, T. S. Huang and S. D. Blostein, Least-squares fitting of two 3-D point
    /// sets, IEEE Transactions on Pattern Analysis and Machine Intelligence 9, 1987.
    void computeLSRegistration(Vector<T>& translation,
                               SquareMatrix<T>& rotation,
                               const Shape& target) const;
    void computeLSRegistration(Vector<T>& translation,
                               SquareMatrix<T>& rotation,
                               const Shape& target,
                               const std::vector<Vector<unsigned int>>& correspondences) const;

    /// For each vertex an open curve of two, from it to the vertex of `shape` at the same place.
    /// Raises `SizeError` where dimension or size differ.
    CurveStack<T> deformations(const Shape& shape) const;

    /// Reads a text file into this shape. Raises `FileReadError` for a file that can't be read and
    /// `FileFormatError` for one whose numbers are fewer, or others, than its header announces; its
    /// vertices then stay as they were. The marks at the beginning of the lines are not looked at.
    void load(const std::string& filename);

    /// A new shape of the class that the file's type number tells, named after the file; the caller
    /// owns it. Raises as `load` does, and `FileFormatError` for a file that does not begin with
    /// "#" or whose type number is unknown.
    static Shape* loadFile(const std::string& filename);

    /// Writes the text form. The type's suffix is appended to a name that lacks it. The file is
    /// written beside its place and then moved there, so that a failure leaves the former file
    /// whole. Raises `FileWriteError`, also for a file that exists unless `overwrite` is set.
    void save(const std::string& filename, bool overwrite = false) const;

    /// Writes a table: per line a vertex of this shape, then the step to the vertex of `shape` at
    /// the same place, each number followed by a tab. Raises `SizeError` where dimension or size
    /// differ, `FileWriteError` as `save` does.
    void
    saveDeformations(const Shape& shape, const std::string& filename, bool overwrite = false) const;

private:
    // Made when first asked for: most shapes, edges above all, never have any.
    mutable std::unique_ptr<ShapeSet<T>> extensions_;
    std::string name_;
};

extern template class Shape<int>;
extern template class Shape<float>;
extern template class Shape<double>;
extern template class Shape<long double>;
