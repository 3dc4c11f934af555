#include "image/filters/gaussiangradient0.h"

#include "numerics/elementtype.h"

#include <cmath>
#include <type_traits>

template <class T>
GaussianGradient0<T>::GaussianGradient0(T newSigma)
    : sigma(newSigma)
{
    computeKernels();
}

template <class T>
GaussianGradient0<T>::~GaussianGradient0() = default;

template <class T>
void GaussianGradient0<T>::setSigma(T newSigma)
{
    sigma = newSigma;
    computeKernels();
}

template <class T>
void GaussianGradient0<T>::computeKernels()
{
    const char* const where = "void GaussianGradient<T>::computeKernels()";
    if constexpr (!std::is_floating_point_v<T>) {
        raiseNotAvailable<T>(where);
    } else {
        const T s = sigma;
        if (!(s > 0 && s <= T(1e6))) {
            raise<ValueError>(where, "Sigma must lie above 0 and be at most 1000000");
        }
        const int half = static_cast<int>(std::ceil(2.0 * s));
        Vector<T> smoothing(2 * half + 1);
        Vector<T> derivative(2 * half + 1);
        smoothing[half] = 1;
        derivative[half] = 0;
        T positiveSum = 0;
        for (int i = 1; i <= half; ++i) {
            const double distance = i;
            const T g = static_cast<T>(std::exp(distance * distance * (-0.5 / (s * s))));
            smoothing[half - i] = g;
            smoothing[half + i] = g;
            derivative[half - i] = static_cast<T>(i) * g;
            derivative[half + i] = -(static_cast<T>(i) * g);
            positiveSum += derivative[half - i];
        }
        if (!(positiveSum > 0)) {
            raise<ValueError>(where, "Sigma is too small");
        }
        smoothing /= smoothing.sum();
        derivative /= positiveSum;

        const auto setKernels = [&](SeparableFilter0<T>& filter, int axis) {
            filter.setKernel1(axis == 1 ? derivative : smoothing);
            filter.setKernel2(axis == 2 ? derivative : smoothing);
            filter.setKernel3(axis == 3 ? derivative : smoothing);
        };
        setKernels(this->filter1_, 1);
        setKernels(this->filter2_, 2);
        setKernels(this->filter3_, 3);
    }
}

template class GaussianGradient0<char>;
template class GaussianGradient0<unsigned char>;
template class GaussianGradient0<short>;
template class GaussianGradient0<unsigned short>;
template class GaussianGradient0<int>;
template class GaussianGradient0<unsigned int>;
template class GaussianGradient0<float>;
template class GaussianGradient0<double>;
template class GaussianGradient0<long double>;
