#pragma once

#include "shape/meshes/triangle.h"
#include "shape/vertices/vertices.h"

#include <memory>
#include <ostream>
#include <string>
#include <vector>

/// A surface in space: vertices, triangles over them, and optionally normals and colours of the
/// vertices.
///
/// Each triangle is stored twice: as the numbers of its vertices, and as a `Triangle` that follows
/// the vertices. For each vertex the mesh knows its star, the numbers of the triangles that touch
/// it. A removed triangle leaves a null entry, so that the others keep their numbers. Numbers of
/// triangles are not checked, those of vertices where a triangle gets them.
///
/// A copy shares the vertices, as that of all shapes, but has normals of its own.
template <class T>
class TriMesh : public Vertices<T>
{
public:
    /// No server, no vertices.
    TriMesh();

    /// As for vertices, without triangles.
    TriMesh(int space, int size, int capacity, int growth);
    explicit TriMesh(const Vertices<T>& vertices);
    TriMesh(const TriMesh& other);

    /// Reads the file, see `load`.
    explicit TriMesh(const std::string& filename);
    ~TriMesh() override;

    using Vertices<T>::operator=;
    TriMesh& operator=(const TriMesh& other);

    /// Takes all of another mesh, or the vertices alone of a list of these; raises the standard bad
    /// cast error for any other shape.
    void assign(const VertexClient<T>& other) override;
    void detach() override;
    TriMesh* clone() const override;

    /// 8.
    int getShapeType() const override;

    /// The text form: that of the vertices; "# " and the number of triangles; a line per triangle
    /// with the numbers of its vertices; "# 1" and a line per normal, or "# 0" if there are none. A
    /// mesh in three dimensions without normals gets them when it is read. Removed triangles are
    /// not written, so that the numbers of those behind change. A failed read leaves the mesh as it
    /// was.
    int read(std::istream& stream) override;
    void write(std::ostream& stream) const override;

    // Vertices

    /// Adds zero vertices or drops the last ones, with their triangles. `ValueError` for a negative
    /// size, `UsageError` for a mesh without a server.
    void setSize(int size);

    using Vertices<T>::append;
    void append(const Vertices<T>& vertices) override;
    void append(const Vector<T>& vertex);

    /// Vertices and triangles; normals and colours are not taken over.
    void append(const TriMesh& other);

    /// Deletes triangles, normals and colours; the vertices stay.
    void clear();

    /// Drops a vertex with its triangles and its normal. The numbers that other triangles hold are
    /// not rewritten: those above it then tell the vertex before the one meant.
    void remove(int vertex);

    // Triangles

    /// Adds a triangle over three vertices. Raises `RangeError` for a vertex that does not exist,
    /// `SizeError` unless there are three.
    void addTriangle(int i, int j, int k);
    void addTriangle(const Vector<int>& vertices);

    /// Replaces all triangles, with their numbers and stars. Raises as `addTriangle`, after which those before stand.
    void setTriangles(const std::vector<Vector<int>>& list);

    /// Removed ones included.
    int getNumTriangles() const { return static_cast<int>(triangles_.size()); }

    /// Null for a removed triangle.
    Triangle<T>* triangle(int i) { return triangles_[static_cast<std::size_t>(i)].get(); }

    const Triangle<T>* triangle(int i) const
    {
        return triangles_[static_cast<std::size_t>(i)].get();
    }

    /// The numbers of its vertices, -1 for a removed triangle.
    const Vector<int>& getTriangleIndexes(int i) const
    {
        return triangleIndexes[static_cast<std::size_t>(i)];
    }

    /// Sets these numbers alone; the stars and the `Triangle` stay. Raises as `addTriangle`.
    void setTriangleIndexes(int i, const Vector<int>& vertices);

    /// Exchanges the first two of these numbers; the `Triangle` keeps its order.
    void invertTriangle(int i);

    /// Silent if it is removed already.
    void removeTriangle(int t);

    /// The triangles that touch a vertex.
    const std::vector<int>& star(int vertex) const;

    /// Puts vertex `to` in the place of `from` in all triangles. Raises `RangeError` for a vertex
    /// that does not exist, and `UsageError`, with a line on the standard error stream and before
    /// any change, if a triangle holds `to` already.
    void updateStar(int from, int to);

    // Neighbourhood; all lists ascend

    /// The vertices that share a triangle with this one.
    std::vector<int> neighbours(int vertex) const;

    /// The triangles that touch both vertices.
    std::vector<int> sharedTriangles(int i, int j) const;

    /// The other triangles that share an edge with `t`, or, `byVertex`, a vertex.
    std::vector<int> neighboringTriangles(int t, bool byVertex) const;

    /// Marks vertices on edges that are not shared by exactly two triangles. Of each vertex one
    /// such edge is looked for, to a vertex of higher number.
    std::vector<bool> vertexFlags() const;

    /// Makes the triangles that are reached from triangle 0, over edges and not through triangles
    /// of area 0, turn the same way as it, by `invertTriangle`. `TypeError` for `int`.
    void normalizeTriangleOrientations();

    // Normals and colours

    bool hasNormals() const
    {
        return normals_.getSize() > 0 && normals_.getSize() == this->getSize();
    }

    /// A mesh without normals first gets zero vectors for all vertices.
    void setNormal(int vertex, const Vector<T>& normal);

    const Vector<T>& getNormal(int vertex) const { return normals_[vertex]; }

    /// For each vertex the mean of the unit normals of its triangles, weighted by area, as a unit
    /// vector; zero without triangles, or where these are too large for the type. `TypeError` for
    /// `int`.
    void computeNormals();

    /// In each pass, replaces each normal by the mean, as a unit vector, of it and those of the
    /// neighbours. Raises `UsageError` without normals.
    void smoothNormals(int iterations);

    /// Takes ownership of the colours, red, green and blue of each vertex as its coordinates; null
    /// for none. Raises `SizeError`, and takes nothing, for another number of vertices.
    void setVertexColors(TriMesh<int>* colors);

    TriMesh<int>* getVertexColors() { return vertexColors.get(); }

    const TriMesh<int>* getVertexColors() const { return vertexColors.get(); }

    bool hasVertexColors() const { return vertexColors != nullptr; }

    // Measures, in three dimensions (`SizeError`); the triangles count in the order in which their
    // vertices were given, whatever `invertTriangle` did

    /// `TypeError` for `int`.
    T area() const;

    /// The volume of a closed mesh whose triangles all turn the same way.
    T volume() const;

    /// Radius of the ball of this volume.
    T equivalentRadius() const;

    /// Mean of the triangles' centres, weighted by the volume seen from the mean of the vertices.
    /// Raises `MathError` where that is 0.
    Vector<T> centerOfGravity() const;

    /// The nearest point of the surface, or the first vertex where there is no triangle; returns
    /// the distance. Raises `SizeError` without vertices, `TypeError` for `int`.
    T closestPoint(const Vector<T>& position, Vector<T>& q) const;

    /// Whether a closed mesh contains `position`, the surface included, by the number of crossings
    /// of a ray. A ray that meets a border of a triangle is replaced by another one. `TypeError`
    /// for `int`.
    bool contains(const Vector<T>& position) const;

    // Stereolithography files

    /// Writes the triangles in the ASCII form; a failure of the stream raises `FileWriteError`.
    /// `TypeError` for `int`.
    void export2AsciiSTL(std::ostream& stream) const;

    /// Writes this to a file, whole or not at all. ".stl" is appended to a name without that
    /// suffix. Raises `FileWriteError`, also for a file that exists unless `overwrite` is set.
    void saveAsSTL(const std::string& filename, bool overwrite = false) const;

    /// The cube from 0 to 1, with normals but for `int`.
    static TriMesh cube();

private:
    void copyParts(const TriMesh& other);
    void requireVertices(const Vector<int>& vertices, const char* where) const;
    void resetNormals();
    void readTriangles(std::istream& stream);
    void readNormals(std::istream& stream);
    bool crosses(const Edge<T>& ray, const Vector<T>& position, bool& inside) const;

    std::vector<std::unique_ptr<Triangle<T>>> triangles_;
    Vertices<T> normals_;
    std::vector<Vector<int>> triangleIndexes;
    std::vector<std::vector<int>> stars_;
    std::unique_ptr<TriMesh<int>> vertexColors;
};

extern template class TriMesh<int>;
extern template class TriMesh<float>;
extern template class TriMesh<double>;
extern template class TriMesh<long double>;
