#pragma once

#include "image/filters/separablegradientoperator0.h"

/// Gradient of the image smoothed by a Gaussian, cut at two sigma. The smoothing kernel sums to 1
/// and the positive half of the derivative kernel too, so that an ideal step of height h gets the
/// answer h.
///
/// Exists for integer types, but has no kernels there: `TypeError`.
template <class T>
class GaussianGradient0 : public SeparableGradientOperator0<T>
{
public:
    /// Sigma in pixels, above 0 and at most 1e6 (`ValueError`).
    explicit GaussianGradient0(T newSigma);
    ~GaussianGradient0() override;

    T getSigma() const { return sigma; }

    /// Rebuilds the kernels.
    void setSigma(T newSigma);

    void computeKernels();

private:
    T sigma;
};

extern template class GaussianGradient0<char>;
extern template class GaussianGradient0<unsigned char>;
extern template class GaussianGradient0<short>;
extern template class GaussianGradient0<unsigned short>;
extern template class GaussianGradient0<int>;
extern template class GaussianGradient0<unsigned int>;
extern template class GaussianGradient0<float>;
extern template class GaussianGradient0<double>;
extern template class GaussianGradient0<long double>;
