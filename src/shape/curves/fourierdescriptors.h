#pragma once

#include "shape/curves/curve.h"

/// Smooths closed plane curves through their spectrum: the vertices, as complex numbers, become the
/// sum of a centre and of turning vectors, and only the slowest are kept.
///
/// In a spectrum of `n` elements element 0 is the mean of the vertices, element `k` the frequency
/// `k`, element `n - k` the frequency `-k`. Coordinates beyond the first two are ignored. Like
/// `FourierTransform`, for one thread at a time. Real and imaginary parts of different sizes, and
/// curves of less than two dimensions, raise `SizeError`.
///
/// Source: G. H. Granlund, Fourier preprocessing for hand print character recognition, IEEE
/// Transactions on Computers 21, 1972.
template <class T>
class FourierDescriptors
{
public:
    /// The spectrum, divided by the number of vertices.
    void computeForward(const Curve<T>& curve, Vector<T>& re, Vector<T>& im) const;

    /// Writes the curve of a spectrum, which becomes the list of coordinates. A curve of another
    /// size is replaced by a new closed one in two dimensions; otherwise its vertices are moved
    /// where they are stored.
    void computeBackward(Vector<T>& re, Vector<T>& im, Curve<T>& curve) const;

    /// Keeps the mean and the `count` lowest frequencies of either sign, and sets the others to 0.
    /// Raises `ValueError` for a negative count.
    void cut(Vector<T>& re, Vector<T>& im, int count) const;

    /// The smallest number of frequencies of either sign whose magnitudes add up to the share
    /// `fidelity` of all but the mean; 0 where that is nothing. Raises `ValueError` for a share
    /// above 1.
    int numDescriptorsFromFidelity(const Vector<T>& re, const Vector<T>& im, T fidelity) const;

    /// The share of `count` frequencies of either sign, 0 for none. Beyond half the number of
    /// vertices frequencies count twice. Where there is nothing but the mean, 1.
    T fidelityFromNumDescriptors(const Vector<T>& re, const Vector<T>& im, int count) const;

    /// Smooths a curve in place to a number of frequencies of either sign and returns the fidelity,
    /// or to a fidelity, and returns the number.
    T filter(Curve<T>& curve, int count) const;
    int filter(Curve<T>& curve, T fidelity) const;
};

extern template class FourierDescriptors<float>;
extern template class FourierDescriptors<double>;
extern template class FourierDescriptors<long double>;
