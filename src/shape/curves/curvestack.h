#pragma once

#include "shape/curves/curve.h"
#include "shape/vertices/vertexstack.h"

template <class T>
class QuadMesh;

/// A stack whose levels are curves, all open or all closed: one contour per slice.
template <class T>
class CurveStack : public VertexStack<T>
{
public:
    /// No server, no level, closed.
    CurveStack();

    /// As for a vertex stack.
    CurveStack(int space, int height, int size, int capacity, int growth, bool open);

    /// Makes each level a curve; shares the vertices.
    CurveStack(const VertexStack<T>& stack, bool open);
    CurveStack(const CurveStack& other);

    /// Reads the file, see `load`.
    explicit CurveStack(const std::string& filename);
    ~CurveStack() override;

    using VertexStack<T>::operator=;
    CurveStack& operator=(const CurveStack& other);

    /// Takes levels and flag of another curve stack; raises the standard bad cast error on any
    /// other shape.
    void assign(const VertexClient<T>& other) override;

    CurveStack* clone() const override;
    int getShapeType() const override;

    /// As for a vertex stack; the stack is open exactly if the type number read is 3.
    int read(std::istream& stream) override;

    using VertexStack<T>::append;
    using VertexStack<T>::prepend;
    /// Takes curves alone (standard bad cast error); raises `TypeError` for one with another flag.
    void insert(unsigned int i, const Vertices<T>& level) override;
    Vertices<T>* newLevel() const override;

    bool isOpen() const { return open_; }

    bool isClosed() const { return !open_; }

    /// Sets the flag of the stack and of each level.
    void setOpen(bool open);

    using VertexStack<T>::operator[];

    /// A level; unchecked.
    Curve<T>& operator[](int i) { return static_cast<Curve<T>&>(VertexStack<T>::operator[](i)); }

    const Curve<T>& operator[](int i) const
    {
        return static_cast<const Curve<T>&>(VertexStack<T>::operator[](i));
    }

    /// First and last level of a stack that has any.
    Curve<T>& getFirstCurve() { return (*this)[0]; }

    const Curve<T>& getFirstCurve() const { return (*this)[0]; }

    Curve<T>& getLastCurve() { return (*this)[this->getHeight() - 1]; }

    const Curve<T>& getLastCurve() const { return (*this)[this->getHeight() - 1]; }

    /// Whether two levels in a row have exactly the same coordinate 2 at their first vertex: in a
    /// stack sorted by height the shape branches there.
    bool isBranching() const;

    CurveStack closestPointMap(const CurveStack& other) const;

    /// Resamples each curve to the width of `target`, turns each to match the one below, and
    /// resamples the columns to its height. The target takes the flag. Raises `SizeError` for a
    /// target of another dimension or an empty stack.
    void resample(QuadMesh<T>& target) const;

    /// A new mesh of `height` curves of `width` vertices.
    QuadMesh<T> resample(int height, int width) const;

    /// A mesh in three dimensions with a level for each level of this stack, where the columns of
    /// `mesh` pass its height (coordinate 2 of its first vertex). Where a column does not reach
    /// the height the vertex is zero. `TypeError` for `int`; `SizeError` unless both have three
    /// dimensions.
    QuadMesh<T> interpolate(const QuadMesh<T>& mesh) const;

    /// For each level the largest distance of a vertex to the nearest vertex of the interpolated
    /// mesh. Errors as `interpolate`.
    Vector<T> resamplingError(const QuadMesh<T>& mesh) const;

    /// The least height and width, found by doubling and bisection, whose mesh stays within
    /// `tolerance` of this stack. Returns the largest error, 0 where three columns are enough. Raises
    /// `ValueError` unless the tolerance is positive, `MathError` where no mesh of up to a million
    /// columns reaches it; errors as `interpolate`.
    T optimalResampling(T tolerance, int& height, int& width) const;

protected:
    bool open_ = false;

private:
    int heightForWidth(const Curve<T>& curve, int width) const;
    T largestError(int height, int width) const;
};

extern template class CurveStack<int>;
extern template class CurveStack<float>;
extern template class CurveStack<double>;
extern template class CurveStack<long double>;
