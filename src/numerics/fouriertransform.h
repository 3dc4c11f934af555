#pragma once

#include "numerics/matrix.h"
#include "numerics/vector.h"

/// Discrete Fourier transform of real and imaginary parts, in one and two dimensions, by FFTW.
///
/// Both parts have one size, else `SizeError` "Real and imaginary parts have different sizes". A
/// plan is made for each call, and plans must not be made by several threads at a time: neither must
/// the transforms be called so.
template <class T>
class FourierTransform
{
public:
    /// Element `k` becomes the sum over `i` of x[i] exp(-2 pi sqrt(-1) i k / n), in place, without a
    /// factor; of a matrix in both directions.
    void computeForward(Vector<T>& re, Vector<T>& im) const;
    void computeForward(Matrix<T>& re, Matrix<T>& im) const;

    /// The same with a positive exponent: after a forward transform it gives the input times the
    /// number of elements.
    void computeBackward(Vector<T>& re, Vector<T>& im) const;
    void computeBackward(Matrix<T>& re, Matrix<T>& im) const;

    /// Moves the zero frequency from index 0 to index n / 2 by rotation; of a matrix in both
    /// directions.
    void shift(Vector<T>& re, Vector<T>& im) const;
    void shift(Matrix<T>& re, Matrix<T>& im) const;

    /// Undoes `shift`.
    void ishift(Vector<T>& re, Vector<T>& im) const;
    void ishift(Matrix<T>& re, Matrix<T>& im) const;

    /// Squared magnitude of each element. `out` may be one of the parts.
    void powerSpectrum(Vector<T>& out, const Vector<T>& re, const Vector<T>& im) const;
    void powerSpectrum(Matrix<T>& out, const Matrix<T>& re, const Matrix<T>& im) const;

    /// Phase of each element, from -pi to pi, to double precision. `out` may be one of the parts.
    void phaseAngle(Vector<T>& out, const Vector<T>& re, const Vector<T>& im) const;
    void phaseAngle(Matrix<T>& out, const Matrix<T>& re, const Matrix<T>& im) const;

    /// The transform whose exponent has this sign.
    void compute(Vector<T>& re, Vector<T>& im, int sign) const;
    void compute(Matrix<T>& re, Matrix<T>& im, int sign) const;
};

extern template class FourierTransform<float>;
extern template class FourierTransform<double>;
extern template class FourierTransform<long double>;
