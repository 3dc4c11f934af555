#include "numerics/maths.h"

#include <cmath>

namespace {

constexpr double pi = 3.141592653589793;

/// Size x size identity with a rotation in the plane of two axes: `from` turns toward `to`.
SquareMatrix<float> rotationInPlane(int size, int from, int to, float angle)
{
    const float c = std::cos(angle);
    const float s = std::sin(angle);
    SquareMatrix<float> result(size);
    result.setIdentity();
    result[from][from] = c;
    result[from][to] = -s;
    result[to][from] = s;
    result[to][to] = c;
    return result;
}

} // namespace

template <class T>
Vector<int> Maths::fround(const Vector<T>& values)
{
    Vector<int> result(values.getSize());
    for (int i = 0; i < values.getSize(); ++i) {
        result[i] = fround(values[i]);
    }
    return result;
}

template <class T>
Vector<T> Maths::fround(const Vector<T>& values, T step)
{
    Vector<T> result(values.getSize());
    for (int i = 0; i < values.getSize(); ++i) {
        result[i] = fround(values[i], step);
    }
    return result;
}

bool Maths::isPowerOfTwo(int n)
{
    return n > 0 && (n & (n - 1)) == 0;
}

int Maths::nextPowerOfTwo(int n)
{
    constexpr int largest = 1 << 30;
    if (n > largest) {
        raise<RangeError>("int Maths::nextPowerOfTwo(int)", "The next power of two is no int");
    }
    int power = 1;
    while (power < n) {
        power *= 2;
    }
    return power;
}

float Maths::logFactorial(int n)
{
    float sum = 0;
    for (int i = 2; i <= n; ++i) {
        sum += std::log(static_cast<float>(i));
    }
    return sum;
}

float Maths::logComb(int n, int p)
{
    return logFactorial(n) - (logFactorial(n - p) + logFactorial(p));
}

Vector<float> Maths::logComb(const Vector<int>& n, const Vector<int>& p)
{
    Vector<float> result(n.getSize());
    for (int i = 0; i < n.getSize(); ++i) {
        result[i] = logComb(n[i], p[i]);
    }
    return result;
}

int Maths::factorial(int n)
{
    return fround(std::exp(logFactorial(n)));
}

int Maths::comb(int n, int p)
{
    return fround(std::exp(logComb(n, p)));
}

Vector<int> Maths::comb(const Vector<int>& n, const Vector<int>& p)
{
    Vector<int> result(n.getSize());
    for (int i = 0; i < n.getSize(); ++i) {
        result[i] = comb(n[i], p[i]);
    }
    return result;
}

float Maths::pdfPoisson(float lambda, int k)
{
    return std::exp(static_cast<float>(k) * std::log(lambda) - lambda - logFactorial(k));
}

float Maths::toRadians(float degrees)
{
    return static_cast<float>(degrees * pi / 180.0);
}

float Maths::toDegrees(float radians)
{
    return static_cast<float>(radians * 180.0 / pi);
}

float Maths::rotationAngle(const Matrix<float>& matrix)
{
    return std::atan2(matrix[1][0], matrix[0][0]);
}

SquareMatrix<float> Maths::rotationMatrix(float angle)
{
    return rotationInPlane(2, 0, 1, angle);
}

SquareMatrix<float> Maths::xRotationMatrix3D(float angle)
{
    return rotationInPlane(3, 1, 2, angle);
}

SquareMatrix<float> Maths::yRotationMatrix3D(float angle)
{
    return rotationInPlane(3, 2, 0, angle);
}

SquareMatrix<float> Maths::zRotationMatrix3D(float angle)
{
    return rotationInPlane(3, 0, 1, angle);
}

void Maths::decomposeRotationMatrix3D(const Matrix<float>& m, float& a, float& b, float& c)
{
    const float u = m[1][2];
    const float v = m[2][2];
    float co = 1;
    float si = 0;
    float w = v;
    if (std::abs(u) >= Vector<float>::epsilon()) {
        if (std::abs(v) > std::abs(u)) {
            const float t = -u / v;
            co = static_cast<float>(1 / std::sqrt(1 + static_cast<double>(t) * t));
            si = t * co;
            w = v * co;
        } else {
            const float t = -v / u;
            si = static_cast<float>(1 / std::sqrt(1 + static_cast<double>(t) * t));
            co = t * si;
            w = v * co;
        }
    }
    a = std::atan2(si, co);
    b = std::atan2(m[0][2], w - si * u);
    c = std::atan2(m[1][0] * co + m[2][0] * si, m[1][1] * co + m[2][1] * si);
}

template Vector<int> Maths::fround(const Vector<float>&);
template Vector<int> Maths::fround(const Vector<double>&);
template Vector<int> Maths::fround(const Vector<long double>&);
template Vector<float> Maths::fround(const Vector<float>&, float);
template Vector<double> Maths::fround(const Vector<double>&, double);
template Vector<long double> Maths::fround(const Vector<long double>&, long double);
