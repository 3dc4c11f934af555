#pragma once

#include "shape/curves/curvestack.h"

#include <memory>
#include <vector>

class Colormap;
template <class T>
class Matrix;
template <class T>
class TriMesh;

/// A curve stack with equally many vertices in each level, so that the vertices form a grid, with
/// optional end caps and colours.
///
/// A cap belongs to the mesh and is entered in its `extensions`, so that transforms which visit
/// these move it along. It is made from the first or last level and goes when that level changes.
template <class T>
class QuadMesh : public CurveStack<T>
{
public:
    /// No server, no level, closed.
    QuadMesh();

    /// `height` curves of `width` vertices, as for a curve stack.
    QuadMesh(int space, int height, int width, int capacity, int growth, bool open);

    /// Shares the vertices; raises `SizeError` unless all curves have the size of the first.
    explicit QuadMesh(const CurveStack<T>& stack);

    /// Shares the vertices; caps and colours are copied as meshes that share theirs.
    QuadMesh(const QuadMesh& other);

    /// Reads the file, see `load`.
    explicit QuadMesh(const std::string& filename);
    ~QuadMesh() override;

    using CurveStack<T>::operator=;
    /// As the copy, but the colours stay.
    QuadMesh& operator=(const QuadMesh& other);
    void assign(const VertexClient<T>& other) override;

    /// Detaches mesh, caps and colours.
    void detach() override;
    QuadMesh* clone() const override;

    /// 4 closed, 5 open.
    int getShapeType() const override;

    /// As for a curve stack, also in taking no type number but 3 for open. Levels of different
    /// sizes leave the mesh as it was and the stream failed.
    int read(std::istream& stream) override;

    using CurveStack<T>::append;
    using CurveStack<T>::prepend;
    /// As for a curve stack; raise `SizeError` for a curve of another size than the width. A new
    /// first or last level destroys the cap there.
    void append(const Vertices<T>& curve) override;
    void prepend(const Vertices<T>& curve) override;
    void insert(unsigned int i, const Vertices<T>& curve) override;

    /// As for a vertex stack, with regard to the caps: those next to a level that is dropped or
    /// sorted away are destroyed, reversing exchanges them.
    void remove(int i);
    void reverse();
    void sort(int c);

    /// Level by level; then each cap that both meshes have, while a cap that only this one has is
    /// destroyed. Raise the standard bad cast error for any other shape, `SizeError` for another
    /// height.
    void operator+=(const Shape<T>& shape) override;
    void operator-=(const Shape<T>& shape) override;

    /// Number of vertices in each level; 0 without levels.
    int getWidth() const;

    bool hasBeginCap() const { return beginCap != nullptr; }

    bool hasEndCap() const { return endCap != nullptr; }

    bool hasAnyCap() const { return hasBeginCap() || hasEndCap(); }

    bool hasAllCaps() const { return hasBeginCap() && hasEndCap(); }

    /// As for a vertex stack, in levels and columns.
    QuadMesh closestPointMap(const QuadMesh& other) const;

    /// The caps, or null.
    QuadMesh* getBeginCap() { return beginCap.get(); }

    const QuadMesh* getBeginCap() const { return beginCap.get(); }

    QuadMesh* getEndCap() { return endCap.get(); }

    const QuadMesh* getEndCap() const { return endCap.get(); }

    void destroyBeginCap();
    void destroyEndCap();
    void destroyCaps();

    /// Makes `cap`, a mesh with as many columns as the curve has vertices, a tube that shrinks from
    /// the curve to a hundredth of it, and enters it in the extensions; it stays the caller's.
    /// `TypeError` for `int`.
    void buildCap(const Curve<T>& curve, QuadMesh& cap);

    /// Closes an end by such a tube of ten levels, which the mesh owns. Does nothing on an open
    /// mesh; raises `SizeError` on an empty one, `TypeError` for `int`.
    void buildBeginCap();
    void buildEndCap();
    void buildCaps();

    /// Makes the levels of the caps, without those that they share with the mesh, its own.
    void extendToCaps();

    bool hasVertexColors() const { return vertexColors != nullptr; }

    /// Red, green and blue of each vertex as its three coordinates, or null.
    QuadMesh<int>* getVertexColors() { return vertexColors.get(); }

    const QuadMesh<int>* getVertexColors() const { return vertexColors.get(); }

    /// Takes ownership of the colours, null for none; raises `SizeError`, and takes nothing, where
    /// their height or width is not that of the mesh.
    void setVertexColors(QuadMesh<int>* colors);

    /// Gives each vertex the colour of its value: entries 0 to 255 of the colormap from the
    /// smallest to the largest value of the matrix, whose rows are the levels. Raises `SizeError`
    /// where the matrix has other dimensions than the mesh or the colormap less than 256 entries.
    void buildVertexColors(const Matrix<T>& matrix, const Colormap& colormap);

    /// The shift of the columns for which this mesh, begun there, fits `mesh` best: the largest sum
    /// of scalar products, the smallest shift on ties. Raises `SizeError` for other dimensions,
    /// `TypeError` for open meshes.
    unsigned int findMatch(const QuadMesh& mesh) const;

    /// Turns levels, caps and colours to the best match, which is returned.
    unsigned int match(const QuadMesh& mesh);

    /// For each grid point the mean over `meshes` of the squared distance to that of `mean`; rows
    /// are levels. Raises `SizeError` where dimensions differ.
    static Matrix<T> varianceMap(const QuadMesh& mean, const std::vector<QuadMesh*>& meshes);

    /// Grid point by grid point; none gives an empty mesh. Errors as `operator+=`.
    static QuadMesh mean(const std::vector<QuadMesh*>& meshes);

    /// The surface as triangles, two for each cell of the grid, over copies of the vertices: grid
    /// point (i, j) becomes vertex `i * width + j`. The flag has no effect. Raises `SizeError` in
    /// other than three dimensions, `TypeError` for `int`.
    TriMesh<T> toTriMesh(bool flag) const;

private:
    void requireWidth(const Vertices<T>& curve, const char* where) const;
    void destroyCap(std::unique_ptr<QuadMesh>& cap);
    void copyCaps(const QuadMesh& other);
    template <class Combine>
    void combine(const Shape<T>& shape, const char* where, Combine combineShapes);
    void replaceCap(std::unique_ptr<QuadMesh>& cap, const Curve<T>& curve);
    void setOrigins(int k);

    std::unique_ptr<QuadMesh<int>> vertexColors;
    std::unique_ptr<QuadMesh> beginCap;
    std::unique_ptr<QuadMesh> endCap;

    template <class U>
    friend class QuadMesh;
};

extern template class QuadMesh<int>;
extern template class QuadMesh<float>;
extern template class QuadMesh<double>;
extern template class QuadMesh<long double>;
