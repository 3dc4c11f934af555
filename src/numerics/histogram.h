#pragma once

#include "numerics/vector.h"

/// Counts of values in bins of equal width.
template <class T>
class Histogram
{
public:
    /// No bins.
    Histogram() = default;

    /// Bin `i` starts at `min + i * binWidth`. A negative `numBins` counts as 0.
    void init(T min, T binWidth, int numBins);

    /// Counts `values` anew. The bin of a value is the quotient (value - min) / binWidth, truncated
    /// toward zero for integers (so bin 0 takes values less than one width below `min`), rounded
    /// down for real numbers. What lies outside the bins is ignored, so is a NaN. `ValueError` for
    /// integer bins of width 0.
    const Vector<int>& compute(const Vector<T>& values);

    int numBins() const { return counts_.getSize(); }

    T min() const { return min_; }

    T binWidth() const { return binWidth_; }

    const Vector<int>& counts() const { return counts_; }

private:
    T min_ = 0;
    T binWidth_ = 0;
    Vector<int> counts_;
};

extern template class Histogram<unsigned char>;
extern template class Histogram<unsigned short>;
extern template class Histogram<unsigned int>;
extern template class Histogram<short>;
extern template class Histogram<int>;
extern template class Histogram<float>;
extern template class Histogram<double>;
