// Part of `SquareMatrix`: linear systems, determinant, inverse and eigenvalues.

#include "numerics/elementtype.h"
#include "numerics/squarematrix.h"

#include <cmath>

namespace {

template <class T>
void requireSize(const Vector<T>& v, int size, const char* where)
{
    if (v.getSize() != std::max(0, size)) {
        raise<SizeError>(where, "Incompatible matrix and vector dimensions");
    }
}

/// The elimination of a tridiagonal matrix, kept to solve for any number of right-hand sides.
template <class T>
class TridiagonalFactors
{
public:
    TridiagonalFactors(const Vector<T>& d,
                       const Vector<T>& l,
                       const Vector<T>& u,
                       const char* where,
                       const char* nullPivot)
        : lower_(l)
        , pivots_(d.getSize())
        , ratios_(u.getSize())
    {
        requireSize(l, d.getSize() - 1, where);
        requireSize(u, d.getSize() - 1, where);
        for (int i = 0; i < d.getSize(); ++i) {
            pivots_[i] = i == 0 ? d[0] : d[i] - l[i - 1] * ratios_[i - 1];
            if (std::abs(pivots_[i]) <= Vector<T>::epsilon()) {
                raise<MathError>(where, nullPivot);
            }
            if (i < u.getSize()) {
                ratios_[i] = u[i] / pivots_[i];
            }
        }
    }

    void solve(Vector<T>& x) const
    {
        const int n = pivots_.getSize();
        for (int i = 0; i < n; ++i) {
            const T known = i == 0 ? T(0) : lower_[i - 1] * x[i - 1];
            x[i] = (x[i] - known) / pivots_[i];
        }
        for (int i = n - 2; i >= 0; --i) {
            x[i] -= ratios_[i] * x[i + 1];
        }
    }

private:
    Vector<T> lower_;
    Vector<T> pivots_;
    Vector<T> ratios_;
};

/// The state of the Jacobi method. Rutishauser, The Jacobi method for real symmetric matrices,
/// Numerische Mathematik 9, 1966.
template <class T>
class JacobiIteration
{
public:
    JacobiIteration(const SquareMatrix<T>& matrix, Vector<T>& values, SquareMatrix<T>& vectors)
        : a_(matrix)
        , values_(values)
        , vectors_(vectors)
        , size_(matrix.getSize())
    {
        vectors_.setIdentity(size_);
        values_ = matrix.diagonal();
        start_ = values_;
        corrections_.setZeros(size_);
    }

    /// False if the matrix isn't diagonal after many sweeps, or at once on a NaN or an overflow.
    bool run()
    {
        constexpr int maximumSweeps = 100;
        for (int count = 0; count < maximumSweeps && isFinite(); ++count) {
            if (offDiagonalSum() == 0) {
                return true;
            }
            sweep();
        }
        return false;
    }

private:
    /// In the widest type, so that a sum of large elements is no overflow.
    long double offDiagonalSum() const
    {
        long double sum = 0;
        for (int p = 0; p < size_; ++p) {
            for (int q = p + 1; q < size_; ++q) {
                sum += std::abs(a_[p][q]);
            }
        }
        return sum;
    }

    bool isFinite() const
    {
        for (int p = 0; p < size_; ++p) {
            if (!std::isfinite(values_[p])) {
                return false;
            }
        }
        return std::isfinite(offDiagonalSum());
    }

    void sweep()
    {
        for (int p = 0; p + 1 < size_; ++p) {
            for (int q = p + 1; q < size_; ++q) {
                if (a_[p][q] != 0) {
                    annihilate(p, q);
                }
            }
        }
        start_ += corrections_;
        values_ = start_;
        corrections_.setZeros();
    }

    void annihilate(int p, int q)
    {
        const T element = a_[p][q];
        const T theta = (values_[q] - values_[p]) * T(0.5) / element;
        const T root = std::sqrt(theta * theta + 1);
        const T t = theta > 0 ? 1 / (theta + root) : 1 / (theta - root);
        const T c = 1 / std::sqrt(t * t + 1);
        const T s = t * c;
        const T tau = s / (c + 1);
        const T h = t * element;
        corrections_[p] -= h;
        corrections_[q] += h;
        values_[p] -= h;
        values_[q] += h;
        a_[p][q] = 0;
        const auto rotate = [s, tau](T& x, T& y) {
            const T g = x;
            const T k = y;
            x = g - s * (k + g * tau);
            y = k + s * (g - k * tau);
        };
        for (int j = 0; j < p; ++j) {
            rotate(a_[j][p], a_[j][q]);
        }
        for (int j = p + 1; j < q; ++j) {
            rotate(a_[p][j], a_[j][q]);
        }
        for (int j = q + 1; j < size_; ++j) {
            rotate(a_[p][j], a_[q][j]);
        }
        for (int j = 0; j < size_; ++j) {
            rotate(vectors_[j][p], vectors_[j][q]);
        }
    }

    SquareMatrix<T> a_;
    Vector<T>& values_;
    SquareMatrix<T>& vectors_;
    Vector<T> start_;
    Vector<T> corrections_;
    int size_;
};

/// The smallest pivot, absolute, of a matrix that `inverse` and `det` take for regular.
template <class T>
constexpr T singularity = static_cast<T>(20.0 / 8388608.0);

} // namespace

template <class T>
int SquareMatrix<T>::factorise(Vector<int>& perm, T tolerance)
{
    const char* const where = "int SquareMatrix<T>::luDecomp(...)";
    if constexpr (!std::is_floating_point_v<T>) {
        raiseNotAvailable<T>(where);
    } else {
        const char* const singular = "This matrix is singular";
        const int n = getSize();
        SquareMatrix& a = *this;
        Vector<T> scales(n);
        for (int i = 0; i < n; ++i) {
            T largest = 0;
            for (int j = 0; j < n; ++j) {
                largest = std::max(largest, std::abs(a[i][j]));
            }
            if (largest == 0) {
                raise<MathError>(where, singular);
            }
            scales[i] = 1 / largest;
        }

        perm.setSize(n);
        int sign = 1;
        for (int j = 0; j < n; ++j) {
            int pivot = j;
            T best = 0;
            for (int i = 0; i < n; ++i) {
                T sum = a[i][j];
                for (int k = 0; k < std::min(i, j); ++k) {
                    sum -= a[i][k] * a[k][j];
                }
                a[i][j] = sum;
                if (i >= j && std::abs(sum) * scales[i] >= best) {
                    best = std::abs(sum) * scales[i];
                    pivot = i;
                }
            }
            if (pivot != j) {
                a.swapRows(pivot, j);
                std::swap(scales[pivot], scales[j]);
                sign = -sign;
            }
            perm[j] = pivot;
            if (std::abs(a[j][j]) <= tolerance) {
                raise<MathError>(where, singular);
            }
            for (int i = j + 1; i < n; ++i) {
                a[i][j] /= a[j][j];
            }
        }
        return sign;
    }
}

template <class T>
int SquareMatrix<T>::luDecomp(Vector<int>& perm, T tolerance)
{
    SquareMatrix factors(*this);
    Vector<int> exchanges;
    const int sign = factors.factorise(exchanges, tolerance);
    perm = exchanges;
    this->swap(factors);
    return sign;
}

template <class T>
void SquareMatrix<T>::luSolve([[maybe_unused]] Vector<T>& b,
                              [[maybe_unused]] const Vector<int>& perm) const
{
    const char* const where = "void SquareMatrix<T>::luSolve(...) const";
    if constexpr (!std::is_floating_point_v<T>) {
        raiseNotAvailable<T>(where);
    } else {
        const int n = getSize();
        requireSize(b, n, where);
        requireSize(perm, n, where);
        const SquareMatrix& a = *this;
        for (int i = 0; i < n; ++i) {
            T sum = b[perm[i]];
            b[perm[i]] = b[i];
            for (int j = 0; j < i; ++j) {
                sum -= a[i][j] * b[j];
            }
            b[i] = sum;
        }
        for (int i = n - 1; i >= 0; --i) {
            T sum = b[i];
            for (int j = i + 1; j < n; ++j) {
                sum -= a[i][j] * b[j];
            }
            b[i] = sum / a[i][i];
        }
    }
}

template <class T>
void SquareMatrix<T>::tridiagSolve([[maybe_unused]] Vector<T>& x,
                                   [[maybe_unused]] const Vector<T>& d,
                                   [[maybe_unused]] const Vector<T>& l,
                                   [[maybe_unused]] const Vector<T>& u)
{
    const char* const where = "void SquareMatrix<T>::tridiagSolve(...)";
    if constexpr (!std::is_floating_point_v<T>) {
        raiseNotAvailable<T>(where);
    } else {
        requireSize(x, d.getSize(), where);
        TridiagonalFactors<T>(d, l, u, where, "Null pivoting element found.").solve(x);
    }
}

template <class T>
void SquareMatrix<T>::tridiagInverse([[maybe_unused]] SquareMatrix& inverse,
                                     [[maybe_unused]] const Vector<T>& d,
                                     [[maybe_unused]] const Vector<T>& l,
                                     [[maybe_unused]] const Vector<T>& u)
{
    const char* const where = "void SquareMatrix<T>::tridiagInverse(...)";
    if constexpr (!std::is_floating_point_v<T>) {
        raiseNotAvailable<T>(where);
    } else {
        const TridiagonalFactors<T> factors(
            d, l, u, where, "Null pivoting element found. Try another inversion method.");
        inverse.setSize(d.getSize());
        Vector<T> column(d.getSize());
        for (int j = 0; j < d.getSize(); ++j) {
            column.setCanonical(j);
            factors.solve(column);
            inverse.setColumn(j, column);
        }
    }
}

template <class T>
void SquareMatrix<T>::cyclicTridiagSolve([[maybe_unused]] Vector<T>& x,
                                         [[maybe_unused]] const Vector<T>& d,
                                         [[maybe_unused]] const Vector<T>& l,
                                         [[maybe_unused]] const Vector<T>& u,
                                         [[maybe_unused]] T alpha,
                                         [[maybe_unused]] T beta)
{
    const char* const where = "void SquareMatrix<T>::cyclicTridiagSolve(...)";
    if constexpr (!std::is_floating_point_v<T>) {
        raiseNotAvailable<T>(where);
    } else {
        const int n = d.getSize();
        if (n < 2) {
            raise<SizeError>(where, "A cyclic system has at least two equations");
        }
        requireSize(x, n, where);
        const T gamma = -d[0];
        Vector<T> shifted(d);
        shifted[0] = d[0] - gamma;
        shifted[n - 1] = d[n - 1] - alpha * beta / gamma;
        Vector<T> y(x);
        tridiagSolve(y, shifted, l, u);
        Vector<T> w;
        w.setZeros(n);
        w[0] = gamma;
        w[n - 1] = alpha;
        tridiagSolve(w, shifted, l, u);
        const T denominator = 1 + w[0] + beta / gamma * w[n - 1];
        if (std::abs(denominator) <= Vector<T>::epsilon()) {
            raise<MathError>(where, "Singular cyclic tridiagonal matrix.");
        }
        const T factor = (y[0] + beta / gamma * y[n - 1]) / denominator;
        x = y - w * factor;
    }
}

template <class T>
SquareMatrix<T> SquareMatrix<T>::inverse() const
{
    try {
        SquareMatrix factors(*this);
        Vector<int> perm;
        factors.factorise(perm, singularity<T>);
        SquareMatrix result(getSize());
        Vector<T> column(getSize());
        for (int j = 0; j < getSize(); ++j) {
            column.setCanonical(j);
            factors.luSolve(column, perm);
            result.setColumn(j, column);
        }
        return result;
    } catch (MathError& error) {
        error.addCall("SquareMatrix<T> SquareMatrix<T>::inverse() const");
        throw;
    }
}

template <class T>
T SquareMatrix<T>::det() const
{
    SquareMatrix factors(*this);
    Vector<int> perm;
    try {
        T product = static_cast<T>(factors.factorise(perm, singularity<T>));
        for (int i = 0; i < getSize(); ++i) {
            product = static_cast<T>(product * factors[i][i]);
        }
        return product;
    } catch (const MathError&) {
        return 0;
    }
}

template <class T>
void SquareMatrix<T>::eigenJacobi([[maybe_unused]] Vector<T>& values,
                                  [[maybe_unused]] SquareMatrix& vectors,
                                  [[maybe_unused]] bool sort) const
{
    const char* const where = "void SquareMatrix<T>::eigenJacobi(...) const";
    if constexpr (!std::is_floating_point_v<T>) {
        raiseNotAvailable<T>(where);
    } else {
        Vector<T> found;
        SquareMatrix axes;
        if (!JacobiIteration<T>(*this, found, axes).run()) {
            raise<MathError>(where, "No convergence");
        }
        if (sort) {
            eigenSort(found, axes);
        }
        values = found;
        vectors = axes;
    }
}

template <class T>
Vector<T> SquareMatrix<T>::eigenValues(bool sort) const
{
    Vector<T> values;
    SquareMatrix vectors;
    eigenJacobi(values, vectors, sort);
    return values;
}

template <class T>
void SquareMatrix<T>::eigenSort(Vector<T>& values, SquareMatrix& vectors)
{
    const int n = values.getSize();
    for (int i = 0; i < n; ++i) {
        int largest = i;
        for (int k = i + 1; k < n; ++k) {
            if (values[k] > values[largest]) {
                largest = k;
            }
        }
        if (largest == i) {
            continue;
        }
        std::swap(values[i], values[largest]);
        for (int row = 0; row < vectors.getSize(); ++row) {
            const T moved = vectors[row][i];
            vectors[row][i] = vectors[row][largest];
            vectors[row][largest] = static_cast<T>(-moved);
        }
    }
}

// Member by member, since squarematrix.cpp instantiates the class with all that is defined there.
#define INSTANTIATE_SQUARE_MATRIX_SOLVERS(T)                                                       \
    template int SquareMatrix<T>::factorise(Vector<int>&, T);                                      \
    template int SquareMatrix<T>::luDecomp(Vector<int>&, T);                                       \
    template void SquareMatrix<T>::luSolve(Vector<T>&, const Vector<int>&) const;                  \
    template void SquareMatrix<T>::tridiagSolve(Vector<T>&, const Vector<T>&, const Vector<T>&,    \
                                                const Vector<T>&);                                 \
    template void SquareMatrix<T>::tridiagInverse(SquareMatrix&, const Vector<T>&,                 \
                                                  const Vector<T>&, const Vector<T>&);             \
    template void SquareMatrix<T>::cyclicTridiagSolve(Vector<T>&, const Vector<T>&,                \
                                                      const Vector<T>&, const Vector<T>&, T, T);   \
    template SquareMatrix<T> SquareMatrix<T>::inverse() const;                                     \
    template T SquareMatrix<T>::det() const;                                                       \
    template void SquareMatrix<T>::eigenJacobi(Vector<T>&, SquareMatrix&, bool) const;             \
    template Vector<T> SquareMatrix<T>::eigenValues(bool) const;                                   \
    template void SquareMatrix<T>::eigenSort(Vector<T>&, SquareMatrix&);

INSTANTIATE_SQUARE_MATRIX_SOLVERS(bool)
INSTANTIATE_SQUARE_MATRIX_SOLVERS(char)
INSTANTIATE_SQUARE_MATRIX_SOLVERS(unsigned char)
INSTANTIATE_SQUARE_MATRIX_SOLVERS(short)
INSTANTIATE_SQUARE_MATRIX_SOLVERS(unsigned short)
INSTANTIATE_SQUARE_MATRIX_SOLVERS(int)
INSTANTIATE_SQUARE_MATRIX_SOLVERS(unsigned int)
INSTANTIATE_SQUARE_MATRIX_SOLVERS(float)
INSTANTIATE_SQUARE_MATRIX_SOLVERS(double)
INSTANTIATE_SQUARE_MATRIX_SOLVERS(long double)
