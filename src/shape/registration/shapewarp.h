#pragma once

#include "shape/registration/shaperegistration.h"

#include <vector>

/// A registration that bends: a field of displacements, fitted to those of given vertices.
template <class T>
class ShapeWarp : public ShapeRegistration<T>
{
public:
    ShapeWarp();
    ~ShapeWarp() override;

    /// Level of tracing, 0 at first; kept for whoever watches a fit.
    void setTrace(int trace) { trace_ = trace; }

    int getTrace() const { return trace_; }

protected:
    /// Corresponding vertices: where they stand and how far they move.
    struct Displacements
    {
        std::vector<Vector<T>> points;
        std::vector<Vector<T>> steps;
    };

    /// Walks both shapes together. Raises `SizeError` in the name of `where` if one has more
    /// vertices, there are none, or the dimensions differ.
    static Displacements
    displacements(const Shape<T>& source, const Shape<T>& target, const char* where);

    /// Raises `ProgramError` for a warp of dimension 0, which has not been fitted, and `SizeError`
    /// for a point of another dimension.
    static void requirePoint(const Vector<T>& x, int space, const char* where);

private:
    int trace_ = 0;
};

extern template class ShapeWarp<float>;
extern template class ShapeWarp<double>;
extern template class ShapeWarp<long double>;
