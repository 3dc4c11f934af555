#pragma once

#include "numerics/squarematrix.h"

#include <cmath>
#include <limits>
#include <type_traits>

/// Small numerical operations: roundings, tolerant comparison, combinatorics, rotation matrices.
///
/// Angles are in radians unless told otherwise; rotations are counter-clockwise and act on column
/// vectors.
class Maths
{
public:
    // Comparison and rounding

    /// Machine epsilon of a real type, 0 for integers.
    template <class T>
    static constexpr T epsilon()
    {
        if constexpr (std::is_floating_point_v<T>) {
            return std::numeric_limits<T>::epsilon();
        } else {
            return 0;
        }
    }

    /// The difference is below epsilon, or at most epsilon times the larger absolute value. A NaN
    /// equals nothing, an infinity every other finite number.
    template <class T>
    static bool equal(T a, T b)
    {
        const T difference = std::abs(a - b);
        return difference < epsilon<T>() ||
               difference <= epsilon<T>() * std::max(std::abs(a), std::abs(b));
    }

    template <class T>
    static T sqr(T x)
    {
        return x * x;
    }

    /// Nearest integer, halves upward: floor(x + 0.5), in at least double precision. The value must
    /// fit an `int`.
    static int fround(float x) { return fround(static_cast<double>(x)); }

    static int fround(double x) { return static_cast<int>(std::floor(x + 0.5)); }

    static int fround(long double x) { return static_cast<int>(std::floor(x + 0.5L)); }

    /// Nearest multiple of `step`.
    template <class T>
    static T fround(T x, T step)
    {
        return static_cast<T>(fround(x / step)) * step;
    }

    /// Element by element. T is `float`, `double` or `long double`.
    template <class T>
    static Vector<int> fround(const Vector<T>& values);
    template <class T>
    static Vector<T> fround(const Vector<T>& values, T step);

    // Integers and combinatorics

    /// False below 1.
    static bool isPowerOfTwo(int n);

    /// The smallest power of two that is at least `n`; 1 for `n` below 2. `RangeError` beyond 2^30.
    static int nextPowerOfTwo(int n);

    /// Natural logarithm of n!, summed in single precision; 0 for `n` below 2.
    static float logFactorial(int n);

    /// Natural logarithm of the number of subsets of `p` out of `n`.
    static float logComb(int n, int p);

    /// Element by element, for two vectors of the same size.
    static Vector<float> logComb(const Vector<int>& n, const Vector<int>& p);

    /// Through logarithms in single precision: exact for small numbers, then within rounding. The
    /// result must fit an `int`.
    static int factorial(int n);
    static int comb(int n, int p);
    static Vector<int> comb(const Vector<int>& n, const Vector<int>& p);

    /// Probability of `k` events when `lambda` are expected.
    static float pdfPoisson(float lambda, int k);

    // Angles and rotations

    static float toRadians(float degrees);
    static float toDegrees(float radians);

    /// Angle of a rotation in the plane.
    static float rotationAngle(const Matrix<float>& matrix);

    /// 2 x 2.
    static SquareMatrix<float> rotationMatrix(float angle);

    /// 3 x 3, about one axis.
    static SquareMatrix<float> xRotationMatrix3D(float angle);
    static SquareMatrix<float> yRotationMatrix3D(float angle);
    static SquareMatrix<float> zRotationMatrix3D(float angle);

    /// The angles about the three axes of a 3 x 3 rotation m = Rx(a) Ry(b) Rz(c).
    static void decomposeRotationMatrix3D(const Matrix<float>& m, float& a, float& b, float& c);
};
