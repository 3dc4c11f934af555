#include "image/regions/otsuthresholding0.h"

#include "numerics/elementarithmetic.h"

#include <cstdint>

template <class T>
OtsuThresholding0<T>::OtsuThresholding0()
    : binMinimum(0)
    , binSize(1)
{}

template <class T>
OtsuThresholding0<T>::~OtsuThresholding0() = default;

template <class T>
void OtsuThresholding0<T>::setBins(const T& minimum, const T& size, int count)
{
    binMinimum = minimum;
    binSize = size;
    binCount = count;
}

template <class T>
Vector<double> OtsuThresholding0<T>::computeCriterion(const Vector<unsigned int>& histogram) const
{
    const int bins = histogram.getSize();
    Vector<double> criterion;
    criterion.setZeros(bins);
    std::uint64_t w0 = 0;
    std::uint64_t w1 = 0;
    std::uint64_t s0 = 0;
    std::uint64_t s1 = 0;
    for (int k = 0; k < bins; ++k) {
        w1 += histogram[k];
        s1 += static_cast<std::uint64_t>(k) * histogram[k];
    }
    for (int k = 0; k <= bins - 3; ++k) {
        const std::uint64_t moment = static_cast<std::uint64_t>(k) * histogram[k];
        w0 += histogram[k];
        w1 -= histogram[k];
        s0 += moment;
        s1 -= moment;
        if (w0 >= 1 && w1 >= 1) {
            const double n0 = static_cast<double>(w0);
            const double n1 = static_cast<double>(w1);
            const double distance = static_cast<double>(s0) / n0 - static_cast<double>(s1) / n1;
            criterion[k + 1] = distance * distance * (n0 / (n0 + n1)) * (n1 / (n0 + n1));
        }
    }
    return criterion;
}

template <class T>
int OtsuThresholding0<T>::computeThreshold(const Vector<unsigned int>& histogram) const
{
    return computeCriterion(histogram).maxPos();
}

template <class T>
T OtsuThresholding0<T>::valueOfBin(int bin) const
{
    return added(multiplied(static_cast<T>(bin), binSize), binMinimum);
}

template <class T>
T OtsuThresholding0<T>::computeThreshold(const PixelMatrix<T>& matrix) const
{
    return valueOfBin(computeThreshold(matrix.histogram(binMinimum, binSize, binCount)));
}

template <class T>
T OtsuThresholding0<T>::computeThreshold(const VoxelMatrix<T>& matrix) const
{
    Vector<unsigned int> histogram = Vector<T>().histogram(binMinimum, binSize, binCount);
    for (int k = 0; k < matrix.getSize3(); ++k) {
        histogram += matrix[k].histogram(binMinimum, binSize, binCount);
    }
    return valueOfBin(computeThreshold(histogram));
}

template <class T>
void OtsuThresholding0<T>::apply(PixelMatrix<T>& matrix)
{
    this->setThreshold(computeThreshold(matrix));
    Thresholding0<T>::apply(matrix);
}

template <class T>
void OtsuThresholding0<T>::apply(VoxelMatrix<T>& matrix)
{
    this->setThreshold(computeThreshold(matrix));
    Thresholding0<T>::apply(matrix);
}

template class OtsuThresholding0<char>;
template class OtsuThresholding0<unsigned char>;
template class OtsuThresholding0<short>;
template class OtsuThresholding0<unsigned short>;
template class OtsuThresholding0<int>;
template class OtsuThresholding0<unsigned int>;
template class OtsuThresholding0<float>;
template class OtsuThresholding0<double>;
template class OtsuThresholding0<long double>;
