#pragma once

#include "numerics/matrix.h"
#include "shape/vertices/shape.h"
#include "shape/vertices/vertexstack.h"

#include <string>
#include <vector>

/// The shapes of one object, in order, some of them flagged as references for registration.
///
/// A set holds pointers and owns nothing: its copy holds the same shapes, and its destructor leaves
/// them alone. Whoever owns the shapes through the set calls `clear`. A null entry stands for a
/// missing shape; operations pass over it unless they say otherwise.
template <class T>
class ShapeSet
{
public:
    ShapeSet();

    void addShape(Shape<T>* shape, bool reference);

    /// Removes the first entry of the shape, if there is one; deletes nothing.
    void removeShape(const Shape<T>* shape);

    /// Deletes every shape and empties the set.
    void clear();

    /// A new set of copies, with their names; the caller owns set and shapes.
    ShapeSet* clone() const;

    void setName(const std::string& name) { name_ = name; }

    const std::string& getName() const { return name_; }

    /// Number of entries, null ones too.
    int getSize() const { return static_cast<int>(shapes_.size()); }

    /// The same as `getSize`.
    int getNumShapes() const { return getSize(); }

    /// An entry, null for a missing shape; unchecked.
    Shape<T>* operator[](int i) const { return shapes_[static_cast<std::size_t>(i)]; }

    bool isReference(int i) const { return references_[static_cast<std::size_t>(i)]; }

    /// Number of vertices of all shapes.
    int numVertices() const;

    /// Whether all shapes have this type, or are references; false for none.
    bool onlyShapeType(int type) const;
    bool onlyReference() const;

    /// The reference shapes alone.
    ShapeSet referenceShapeSet() const;

    /// A new shape, the mean of all, vertex by vertex, or null for none; the caller owns it. Raises
    /// `UsageError` where types differ; errors as `Shape::operator+=`.
    Shape<T>* average() const;

    /// A set named "mean" with, for each entry of the first set, the mean of the quad meshes there
    /// in all sets, with the first one's name and flag, or null where there is none. The caller
    /// owns the shapes.
    static ShapeSet computeMean(const std::vector<ShapeSet*>& sets);

    /// Turns each closed quad mesh to match that of `other` at the same entry and returns the
    /// shifts; 0 for other entries.
    Vector<int> matchSurfaces(const ShapeSet& other);

    /// The operation of `Shape` for each shape against that at the same entry of `other`; 0 or
    /// empty where one is missing.
    Vector<T> rmsDistances(const ShapeSet& other) const;
    std::vector<Vector<T>> squareDistances(const ShapeSet& other) const;
    std::vector<std::vector<Vector<unsigned int>>> nearestNeighbors(const ShapeSet& other) const;

    /// For each pair of quad meshes at the same entry the squared distances of grid points; rows
    /// are levels. Raises `SizeError` where dimensions differ.
    std::vector<Matrix<T>> sdistance(const ShapeSet& other) const;

    /// The centres of gravity; zero for a missing shape, so that positions are entries.
    Vertices<T> centroids() const;

    /// All levels and plain shapes as levels of one stack, each shape followed by its extensions.
    VertexStack<T> asVertexStack() const;

    /// Saves each shape as directory/set-shape and its suffix, see `Shape::save`.
    void save(const std::string& directory, bool overwrite = false) const;

    /// Principal axes transform of all shapes together, which must be stacks (standard bad cast
    /// error).
    void computePAT(Vector<T>& translation, SquareMatrix<T>& rotation) const;

    /// Applies it to each shape.
    void applyPAT();

    /// Least-squares registration of all stacks onto those of `target`, vertex by vertex, or by the
    /// nearest vertex of the target's shape at the same entry.
    void computeLSRegistration(const ShapeSet& target,
                               Vector<T>& translation,
                               SquareMatrix<T>& rotation) const;
    void computeICPLSRegistration(const ShapeSet& target,
                                  Vector<T>& translation,
                                  SquareMatrix<T>& rotation) const;

private:
    VertexStack<T> joinedStack() const;
    std::vector<std::pair<Shape<T>*, Shape<T>*>> pairs(const ShapeSet& other) const;

    std::string name_;
    std::vector<Shape<T>*> shapes_;
    std::vector<bool> references_;
};

extern template class ShapeSet<int>;
extern template class ShapeSet<float>;
extern template class ShapeSet<double>;
extern template class ShapeSet<long double>;
