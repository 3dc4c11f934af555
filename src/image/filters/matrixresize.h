#pragma once

#include "image/filters/pixelmatrixprocessing.h"
#include "image/values/interpolationmode.h"

/// Brings a matrix to another size, in place: first along the rows, then along the columns. Where
/// one axis grows and the other shrinks, it is reduced first and enlarged then.
///
/// Enlarging keeps the first and the last pixel in place, with the scale (old - 1) / (new - 1);
/// reducing uses old / new. Bilinear interpolation of a reduction looks at two pixels only, so a
/// strong one should be preceded by the low-pass filter, a mean over a square of about the scale.
/// That mean counts pixels beyond the border as 0.
template <class T>
class MatrixResize : public virtual PixelMatrixProcessing<T>
{
public:
    /// Target 0 x 0, nearest pixel, no filter.
    MatrixResize();
    ~MatrixResize() override;

    /// Rows, then columns.
    void setSize(const Vector<int>& newSize);

    const Vector<int>& getSize() const { return size; }

    void setInterpolationMode(InterpolationMode mode) { interpolationMode = mode; }

    InterpolationMode getInterpolationMode() const { return interpolationMode; }

    /// Whether a reduction is preceded by the filter.
    void setLowPassFilteringEnabled(bool enabled) { lowPassFiltering = enabled; }

    bool isLowPassFilteringEnabled() const { return lowPassFiltering; }

    /// Nothing if the size is the target. `SizeError` for a negative target, and for a matrix
    /// without pixels that has to grow.
    void apply(PixelMatrix<T>& matrix) override;

    /// Each pixel becomes the mean of a 2 x 2 block, rounded down; an odd last row or column goes.
    /// Stops at the row where it is cancelled, the rows below then being what they were.
    void halve(PixelMatrix<unsigned char>& matrix);

    /// The steps of `apply`.
    void
    enlargement(PixelMatrix<T>& matrix, const Vector<int>& oldSize, const Vector<int>& newSize);
    void reduction(PixelMatrix<T>& matrix, const Vector<int>& oldSize, const Vector<int>& newSize);
    void
    mixedResize(PixelMatrix<T>& matrix, const Vector<int>& oldSize, const Vector<int>& newSize);

    /// These work within a matrix that is at least as large as both sizes.
    void enlargementUsingNearestInterpolation(PixelMatrix<T>& matrix,
                                              const Vector<int>& oldSize,
                                              const Vector<int>& newSize);
    void enlargementUsingBilinearInterpolation(PixelMatrix<T>& matrix,
                                               const Vector<int>& oldSize,
                                               const Vector<int>& newSize);
    void reductionUsingNearestInterpolation(PixelMatrix<T>& matrix,
                                            const Vector<int>& oldSize,
                                            const Vector<int>& newSize);
    void reductionUsingBilinearInterpolation(PixelMatrix<T>& matrix,
                                             const Vector<int>& oldSize,
                                             const Vector<int>& newSize);

private:
    template <class Resample>
    void resampleAxes(PixelMatrix<T>& matrix,
                      const Vector<int>& oldSize,
                      const Vector<int>& newSize,
                      Resample resample);

    Vector<int> size;
    InterpolationMode interpolationMode = InterpolationMode::Nearest;
    bool lowPassFiltering = false;
};

extern template class MatrixResize<float>;
extern template class MatrixResize<double>;
extern template class MatrixResize<long double>;
