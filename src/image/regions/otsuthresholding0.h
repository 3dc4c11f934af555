#pragma once

#include "image/regions/thresholding0.h"

/// Thresholding at the value that maximises the variance between the two classes of pixels.
/// Source: Otsu, A threshold selection method from gray-level histograms, 1979.
///
/// The histogram has 256 bins of width 1 from 0 on unless `setBins` says otherwise.
template <class T>
class OtsuThresholding0 : public Thresholding0<T>
{
public:
    OtsuThresholding0();
    ~OtsuThresholding0() override;

    /// `minimum` is the lower end of the first bin, `size` the width of a bin.
    void setBins(const T& minimum, const T& size, int count);

    /// Entry `t` is the variance between the bins below `t` and those from `t` on:
    /// p0 p1 (m0 - m1)^2 with the shares p and the mean bins m. First and last
    /// entry, and those with an empty class, are 0.
    Vector<double> computeCriterion(const Vector<unsigned int>& histogram) const;

    /// The bin of the first largest criterion; 0 if all pixels are in one bin. `SizeError` for an
    /// empty histogram.
    int computeThreshold(const Vector<unsigned int>& histogram) const;

    /// The same as a value: the lower end of the bin.
    T computeThreshold(const PixelMatrix<T>& matrix) const;
    T computeThreshold(const VoxelMatrix<T>& matrix) const;

    /// Computes the threshold, keeps it, and applies it.
    void apply(PixelMatrix<T>& matrix) override;
    void apply(VoxelMatrix<T>& matrix) override;

private:
    T valueOfBin(int bin) const;

    T binMinimum;
    T binSize;
    int binCount = 256;
};

extern template class OtsuThresholding0<char>;
extern template class OtsuThresholding0<unsigned char>;
extern template class OtsuThresholding0<short>;
extern template class OtsuThresholding0<unsigned short>;
extern template class OtsuThresholding0<int>;
extern template class OtsuThresholding0<unsigned int>;
extern template class OtsuThresholding0<float>;
extern template class OtsuThresholding0<double>;
extern template class OtsuThresholding0<long double>;
