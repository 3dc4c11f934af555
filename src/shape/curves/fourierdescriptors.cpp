#include "shape/curves/fourierdescriptors.h"

#include "numerics/fouriertransform.h"
#include "system/exception.h"

#include <algorithm>
#include <cmath>

namespace {

template <class T>
void requireSameSize(const Vector<T>& re, const Vector<T>& im, const char* where)
{
    if (re.getSize() != im.getSize()) {
        raise<SizeError>(where, "Real and imaginary parts have different sizes");
    }
}

template <class T>
void requirePlane(const Curve<T>& curve, const char* where)
{
    if (curve.getSize() > 0 && curve.getSpace() < 2) {
        raise<SizeError>(where, "The curve has less than two dimensions");
    }
}

template <class T>
T magnitude(const Vector<T>& re, const Vector<T>& im, int k)
{
    return std::sqrt(re[k] * re[k] + im[k] * im[k]);
}

/// Of the frequency `k` of both signs.
template <class T>
T pairMagnitude(const Vector<T>& re, const Vector<T>& im, int k)
{
    return magnitude(re, im, k) + magnitude(re, im, re.getSize() - k);
}

/// Of all frequencies but 0.
template <class T>
T totalMagnitude(const Vector<T>& re, const Vector<T>& im)
{
    T total = 0;
    for (int k = 1; k < re.getSize(); ++k) {
        total += magnitude(re, im, k);
    }
    return total;
}

} // namespace

template <class T>
void FourierDescriptors<T>::computeForward(const Curve<T>& curve,
                                           Vector<T>& re,
                                           Vector<T>& im) const
{
    requirePlane(curve, "void FourierDescriptors<T>::computeForward(...) const");
    const int n = curve.getSize();
    re.setSize(n);
    im.setSize(n);
    for (int i = 0; i < n; ++i) {
        re[i] = curve[i][0] / static_cast<T>(n);
        im[i] = curve[i][1] / static_cast<T>(n);
    }
    FourierTransform<T>().computeForward(re, im);
}

template <class T>
void FourierDescriptors<T>::computeBackward(Vector<T>& re, Vector<T>& im, Curve<T>& curve) const
{
    const int n = re.getSize();
    if (curve.getSize() == n) {
        requirePlane(curve, "void FourierDescriptors<T>::computeBackward(...) const");
    }
    FourierTransform<T>().computeBackward(re, im);
    if (curve.getSize() != n) {
        curve = Curve<T>(2, n, 0, 0, false);
    }
    for (int i = 0; i < n; ++i) {
        curve[i][0] = re[i];
        curve[i][1] = im[i];
    }
}

template <class T>
void FourierDescriptors<T>::cut(Vector<T>& re, Vector<T>& im, int count) const
{
    const char* where = "void FourierDescriptors<T>::cut(...) const";
    requireSameSize(re, im, where);
    if (count < 0) {
        raise<ValueError>(where, "Negative number of descriptors");
    }
    const int n = re.getSize();
    for (int i = count < n ? count + 1 : n; i < n - count; ++i) {
        re[i] = 0;
        im[i] = 0;
    }
}

template <class T>
int FourierDescriptors<T>::numDescriptorsFromFidelity(const Vector<T>& re,
                                                      const Vector<T>& im,
                                                      T fidelity) const
{
    const char* where = "int FourierDescriptors<T>::numDescriptorsFromFidelity(...) const";
    requireSameSize(re, im, where);
    if (!(fidelity <= 1)) {
        raise<ValueError>(where, "Fidelity is above 1");
    }
    const T target = totalMagnitude(re, im) * fidelity;
    T sum = 0;
    int k = 0;
    while (target > sum && k + 1 < re.getSize()) {
        ++k;
        sum += pairMagnitude(re, im, k);
    }
    return k;
}

template <class T>
T FourierDescriptors<T>::fidelityFromNumDescriptors(const Vector<T>& re,
                                                    const Vector<T>& im,
                                                    int count) const
{
    requireSameSize(re, im, "T FourierDescriptors<T>::fidelityFromNumDescriptors(...) const");
    if (count <= 0) {
        return 0;
    }
    const T total = totalMagnitude(re, im);
    if (total == 0) {
        return 1;
    }
    T sum = 0;
    const int last = std::min(count, re.getSize() - 1);
    for (int k = 1; k <= last; ++k) {
        sum += pairMagnitude(re, im, k);
    }
    return sum / total;
}

template <class T>
T FourierDescriptors<T>::filter(Curve<T>& curve, int count) const
{
    Vector<T> re;
    Vector<T> im;
    computeForward(curve, re, im);
    const T fidelity = fidelityFromNumDescriptors(re, im, count);
    cut(re, im, count);
    computeBackward(re, im, curve);
    return fidelity;
}

template <class T>
int FourierDescriptors<T>::filter(Curve<T>& curve, T fidelity) const
{
    Vector<T> re;
    Vector<T> im;
    computeForward(curve, re, im);
    const int count = numDescriptorsFromFidelity(re, im, fidelity);
    cut(re, im, count);
    computeBackward(re, im, curve);
    return count;
}

template class FourierDescriptors<float>;
template class FourierDescriptors<double>;
template class FourierDescriptors<long double>;
