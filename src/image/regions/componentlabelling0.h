#pragma once

#include "image/filters/pixelmatrixprocessing.h"
#include "image/filters/voxelmatrixprocessing.h"

/// Gives each connected region of elements other than 0 a number of its own, in place: 1, 2, ... in
/// the order of the regions' first elements, scanning plane after plane, row after row. Neighbours
/// are the 4 (in a volume, 6) along the axes. 0 stays 0.
///
/// Two passes with a table of equivalent labels; the time is linear in the number of elements.
/// Raises `RangeError`, the image being unchanged, if there are more regions than `T` can number.
template <class T>
class ComponentLabelling0 : public PixelMatrixProcessing<T>, public VoxelMatrixProcessing<T>
{
public:
    ComponentLabelling0();
    ~ComponentLabelling0() override;

    void apply(PixelMatrix<T>& matrix) override;
    void apply(VoxelMatrix<T>& matrix) override;

    /// Number of regions found by the last `apply`.
    int getNumLabels() const { return numLabels; }

    /// A label more, equivalent to itself alone.
    int newLabel();

    /// Joins three labels, each the smallest of its class, into the class of the smallest.
    void equivLabel(int a, int b, int c);

private:
    void start(int step);
    void labelFirstPlane(PixelMatrix<int>& plane);
    void labelPlane(PixelMatrix<int>& plane, const PixelMatrix<int>& previous);
    int join(int a, int b);
    int joined(int left, int upper);
    int root(int label);
    void compactTable();
    void relabel(PixelMatrix<int>& plane) const;
    void requireRange() const;

    Vector<int> equivalences;
    int numLabels = 0;
    int tableStep = 0;
};

extern template class ComponentLabelling0<char>;
extern template class ComponentLabelling0<unsigned char>;
extern template class ComponentLabelling0<short>;
extern template class ComponentLabelling0<unsigned short>;
extern template class ComponentLabelling0<int>;
extern template class ComponentLabelling0<unsigned int>;
extern template class ComponentLabelling0<float>;
extern template class ComponentLabelling0<double>;
extern template class ComponentLabelling0<long double>;
