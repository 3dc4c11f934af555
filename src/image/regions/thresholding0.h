#pragma once

#include "image/filters/pixelmatrixprocessing.h"
#include "image/filters/voxelmatrixprocessing.h"

template <class T>
class Curve;

/// Makes a two-valued image of a grey one at a fixed threshold, and follows the outline of a region
/// in a two-valued image.
///
/// At first the threshold is 0, the foreground 255 (whatever 255 is in the element type), the
/// background 0, and the foreground is what lies at or above the threshold.
template <class T>
class Thresholding0 : public PixelMatrixProcessing<T>, public VoxelMatrixProcessing<T>
{
public:
    Thresholding0();
    ~Thresholding0() override;

    void setThreshold(const T& value) { threshold = value; }

    const T& getThreshold() const { return threshold; }

    void setForeground(const T& value) { foreground = value; }

    const T& getForeground() const { return foreground; }

    void setBackground(const T& value) { background = value; }

    const T& getBackground() const { return background; }

    void setForegroundIsAbove(bool above) { foregroundAbove = above; }

    bool foregroundIsAbove() const { return foregroundAbove; }

    /// A pixel strictly below the threshold gets the value for below, any other the one for above.
    void apply(PixelMatrix<T>& matrix) override;
    void apply(VoxelMatrix<T>& matrix) override;

    /// Elements equal to `level` become foreground, all others background.
    void levelSetMask(PixelMatrix<T>& matrix, T level) const;
    void levelSetMask(VoxelMatrix<T>& matrix, T level) const;

    /// Thins each region to its inner 8-connected edge, in place: a foreground pixel whose eight
    /// neighbours are all foreground becomes background. The outermost rows and columns stay.
    void contours(PixelMatrix<T>& matrix) const;

    /// Follows the edge pixels that hang together with the foreground pixel at (row, column), and
    /// replaces `curve` by a closed curve of (row, column) vertices. With a tolerance of 0 there is
    /// a vertex wherever the direction changes, the start being the first; above 0, a corner also
    /// goes if twice the area of the triangle that it makes is at most `tolerance`.
    ///
    /// The trace begins downward, so the start must have no foreground below it, nor to its left:
    /// the first foreground pixel of the last row that has one will do. It ends when it comes back
    /// to the start. Raises `ValueError` for a start outside the image, and ends where it would run
    /// round for ever without meeting a start that is no foreground pixel. `TypeError` for types
    /// that have no curves.
    void extractCurve(
        Curve<T>& curve, int row, int column, const PixelMatrix<T>& image, int tolerance) const;

private:
    void thresholdRow(T* row, int columns) const;

    T threshold;
    T foreground;
    T background;
    bool foregroundAbove = true;
};

extern template class Thresholding0<char>;
extern template class Thresholding0<unsigned char>;
extern template class Thresholding0<short>;
extern template class Thresholding0<unsigned short>;
extern template class Thresholding0<int>;
extern template class Thresholding0<unsigned int>;
extern template class Thresholding0<float>;
extern template class Thresholding0<double>;
extern template class Thresholding0<long double>;
