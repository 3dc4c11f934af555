#include "image/filters/gradientoperator0.h"

#include "numerics/elementtype.h"

#include <cmath>
#include <type_traits>
#include <vector>

namespace {

template <class T>
void requireSizes(const PixelMatrix<T>& a, const PixelMatrix<T>& b, const char* where)
{
    if (a.getSize() != b.getSize()) {
        raise<SizeError>(where, "The images have different sizes");
    }
}

template <class T>
void requireReal([[maybe_unused]] const char* where)
{
    if constexpr (!std::is_floating_point_v<T>) {
        raiseNotAvailable<T>(where);
    }
}

/// sqrt of the sum of squares, or 0 for integers, which never come here.
template <class T>
T norm2(T a, T b)
{
    if constexpr (std::is_floating_point_v<T>) {
        return std::sqrt(a * a + b * b);
    } else {
        return 0;
    }
}

template <class T>
T norm3(T a, T b, T c)
{
    if constexpr (std::is_floating_point_v<T>) {
        return std::sqrt(a * a + b * b + c * c);
    } else {
        return 0;
    }
}

/// Clears each interior pixel for which `isWeak(norm, row, column, a, b)` holds; `norm` is the image
/// as it was.
template <class T, class IsWeak>
void suppress(PixelMatrix<T>& image,
              const PixelMatrix<T>& a,
              const PixelMatrix<T>& b,
              const char* where,
              IsWeak isWeak)
{
    requireSizes(image, a, where);
    requireSizes(image, b, where);
    const PixelMatrix<T> norm(image);
    for (int r = 1; r + 1 < image.getSize1(); ++r) {
        for (int c = 1; c + 1 < image.getSize2(); ++c) {
            if (isWeak(norm, r, c, a(r, c), b(r, c))) {
                image(r, c) = 0;
            }
        }
    }
}

/// Whether one of the samples at distance 1 along the gradient tops the norm; it points to the side
/// (dr, dc), with the components u along the row and v across.
template <class T, class U>
bool isFinelyTopped(const PixelMatrix<T>& norm, int r, int c, int dr, int dc, U u, U v)
{
    const T m = norm(r, c);
    const auto sample = [&](int side) {
        const T H = norm(r, c + side * dc);
        const T V = norm(r + side * dr, c);
        const T D = norm(r + side * dr, c + side * dc);
        return (1 - u) * (1 - v) * m + u * (1 - v) * H + (1 - u) * v * V + u * v * D;
    };
    return sample(1) >= m || sample(-1) > m;
}

struct Pixel
{
    int row;
    int column;
};

/// Makes interior pixels 0, strong ones (1) or weak ones (-1), and lists the last two.
template <class T>
void classify(
    PixelMatrix<T>& image, T low, T high, std::vector<Pixel>& strong, std::vector<Pixel>& weak)
{
    for (int r = 1; r + 1 < image.getSize1(); ++r) {
        for (int c = 1; c + 1 < image.getSize2(); ++c) {
            T& value = image(r, c);
            if (value < low) {
                value = 0;
            } else if (value >= high) {
                value = 1;
                strong.push_back({r, c});
            } else {
                value = static_cast<T>(-1);
                weak.push_back({r, c});
            }
        }
    }
}

/// Makes each negative pixel 1 that hangs together with a strong one.
template <class T>
void growFrom(PixelMatrix<T>& image, std::vector<Pixel>& strong)
{
    while (!strong.empty()) {
        const Pixel pixel = strong.back();
        strong.pop_back();
        for (int r = pixel.row - 1; r <= pixel.row + 1; ++r) {
            for (int c = pixel.column - 1; c <= pixel.column + 1; ++c) {
                if (image.contains(r, c) && image(r, c) < 0) {
                    image(r, c) = 1;
                    strong.push_back({r, c});
                }
            }
        }
    }
}

} // namespace

template <class T>
GradientOperator0<T>::GradientOperator0() = default;

template <class T>
GradientOperator0<T>::~GradientOperator0() = default;

template <class T>
void GradientOperator0<T>::apply(PixelMatrix<T>& matrix)
{
    PixelMatrix<T> horizontal(matrix);
    hGradient(horizontal);
    vGradient(matrix);
    norm(matrix, horizontal, matrix);
}

template <class T>
void GradientOperator0<T>::apply(VoxelMatrix<T>& matrix)
{
    VoxelMatrix<T> second(matrix);
    VoxelMatrix<T> third(matrix);
    gradient2(second);
    gradient3(third);
    gradient1(matrix);
    for (int k = 0; k < matrix.getSize3(); ++k) {
        norm(matrix[k], matrix[k], second[k], third[k]);
    }
}

template <class T>
void GradientOperator0<T>::norm(PixelMatrix<T>& matrix)
{
    apply(matrix);
}

template <class T>
void GradientOperator0<T>::norm(PixelMatrix<T>& out,
                                const PixelMatrix<T>& a,
                                const PixelMatrix<T>& b)
{
    const char* const where = "void GradientOperator<T>::norm(...)";
    requireReal<T>(where);
    requireSizes(a, b, where);
    out.setSize(a.getSize1(), a.getSize2());
    for (int i = 0; i < out.getSize1(); ++i) {
        T* row = out[i].data();
        const T* rowA = a[i].data();
        const T* rowB = b[i].data();
        for (int j = 0; j < out.getSize2(); ++j) {
            row[j] = norm2(rowA[j], rowB[j]);
        }
    }
}

template <class T>
void GradientOperator0<T>::norm(PixelMatrix<T>& out,
                                const PixelMatrix<T>& a,
                                const PixelMatrix<T>& b,
                                const PixelMatrix<T>& c)
{
    const char* const where = "void GradientOperator<T>::norm(...)";
    requireReal<T>(where);
    requireSizes(a, b, where);
    requireSizes(a, c, where);
    out.setSize(a.getSize1(), a.getSize2());
    for (int i = 0; i < out.getSize1(); ++i) {
        T* row = out[i].data();
        const T* rowA = a[i].data();
        const T* rowB = b[i].data();
        const T* rowC = c[i].data();
        for (int j = 0; j < out.getSize2(); ++j) {
            row[j] = norm3(rowA[j], rowB[j], rowC[j]);
        }
    }
}

template <class T>
void GradientOperator0<T>::angle(PixelMatrix<T>& out,
                                 const PixelMatrix<T>& a,
                                 const PixelMatrix<T>& b)
{
    const char* const where = "void GradientOperator<T>::angle(...)";
    requireReal<T>(where);
    requireSizes(a, b, where);
    out.setSize(a.getSize1(), a.getSize2());
    for (int i = 0; i < out.getSize1(); ++i) {
        for (int j = 0; j < out.getSize2(); ++j) {
            out(i, j) = static_cast<T>(
                std::atan2(static_cast<float>(b(i, j)), static_cast<float>(a(i, j))));
        }
    }
}

template <class T>
void GradientOperator0<T>::angle(PixelMatrix<T>& matrix)
{
    PixelMatrix<T> horizontal(matrix);
    hGradient(horizontal);
    vGradient(matrix);
    angle(matrix, horizontal, matrix);
}

template <class T>
void GradientOperator0<T>::nonmaxSuppression(PixelMatrix<T>& image,
                                             const PixelMatrix<T>& a,
                                             const PixelMatrix<T>& b)
{
    const char* const where = "void GradientOperator<T>::nonmaxSuppression(...)";
    requireReal<T>(where);
    suppress(image, a, b, where, [](const PixelMatrix<T>& norm, int r, int c, T p, T q) {
        if (p == 0 && q == 0) {
            return false;
        }
        const int dr = q < 0 ? -1 : 1;
        const int dc = p < 0 ? -1 : 1;
        const T absP = p < 0 ? -p : p;
        const T absQ = q < 0 ? -q : q;
        const bool alongRow = absP > absQ;
        const T weight = alongRow ? absQ / absP : absP / absQ;
        const auto sample = [&](int side) {
            const T axial = alongRow ? norm(r, c + side * dc) : norm(r + side * dr, c);
            return axial + (norm(r + side * dr, c + side * dc) - axial) * weight;
        };
        return sample(1) > norm(r, c) || sample(-1) > norm(r, c);
    });
}

template <class T>
void GradientOperator0<T>::fineNonmaxSuppression(PixelMatrix<T>& image,
                                                 const PixelMatrix<T>& a,
                                                 const PixelMatrix<T>& b)
{
    const char* const where = "void GradientOperator<T>::fineNonmaxSuppression(...)";
    requireReal<T>(where);
    suppress(image, a, b, where, [](const PixelMatrix<T>& norm, int r, int c, T p, T q) {
        const T m = norm(r, c);
        if (m == 0) {
            return false;
        }
        return isFinelyTopped(norm, r, c, p < 0 ? -1 : 1, q < 0 ? -1 : 1,
                              p / m < 0 ? -(p / m) : p / m, q / m < 0 ? -(q / m) : q / m);
    });
}

template <class T>
void GradientOperator0<T>::fineNonmaxSuppression(PixelMatrix<T>& image,
                                                 const PixelMatrix<T>& angles)
{
    const char* const where = "void GradientOperator<T>::fineNonmaxSuppression(...)";
    requireReal<T>(where);
    suppress(image, angles, angles, where,
             [](const PixelMatrix<T>& norm, int r, int c, T angle, T) {
                 if (norm(r, c) == 0) {
                     return false;
                 }
                 const T p = static_cast<T>(std::cos(static_cast<double>(angle)));
                 const T q = static_cast<T>(std::sin(static_cast<double>(angle)));
                 return isFinelyTopped(norm, r, c, p < 0 ? -1 : 1, q < 0 ? -1 : 1, p < 0 ? -p : p,
                                       q < 0 ? -q : q);
             });
}

template <class T>
void GradientOperator0<T>::nonmaxSuppressionN4(PixelMatrix<T>& image,
                                               const PixelMatrix<T>& a,
                                               const PixelMatrix<T>& b)
{
    const char* const where = "void GradientOperator<T>::nonmaxSuppressionN4(...)";
    requireReal<T>(where);
    suppress(image, a, b, where, [](const PixelMatrix<T>& norm, int r, int c, T p, T q) {
        const T absP = p < 0 ? -p : p;
        const T absQ = q < 0 ? -q : q;
        int dr = 0;
        int dc = 0;
        if (absQ > absP) {
            const bool firstIsAbove = p >= 0 ? q > 0 : q < 0;
            dr = firstIsAbove ? -1 : 1;
        } else {
            dc = p > 0 ? -1 : 1;
        }
        const T m = norm(r, c);
        return norm(r + dr, c + dc) > m || norm(r - dr, c - dc) >= m;
    });
}

template <class T>
void GradientOperator0<T>::nonmaxSuppressionN8(PixelMatrix<T>& image,
                                               const PixelMatrix<T>& a,
                                               const PixelMatrix<T>& b)
{
    const char* const where = "void GradientOperator<T>::nonmaxSuppressionN8(...)";
    requireReal<T>(where);
    suppress(image, a, b, where, [](const PixelMatrix<T>& norm, int r, int c, T p, T q) {
        if (p < 0) {
            p = -p;
            q = -q;
        }
        const T absQ = q < 0 ? -q : q;
        int dr = 1;
        int dc = 0;
        if (!(absQ > 2 * p)) {
            dr = p > 2 * absQ ? 0 : q > 0 ? 1 : -1;
            dc = 1;
        }
        const T m = norm(r, c);
        return norm(r + dr, c + dc) > m || norm(r - dr, c - dc) > m;
    });
}

template <class T>
void GradientOperator0<T>::hysteresisThresholding(PixelMatrix<T>& image, T low, T high)
{
    if constexpr (std::is_unsigned_v<T> || std::is_same_v<T, char>) {
        raiseNotAvailable<T>("void GradientOperator<T>::hysteresisThresholding(...)");
    } else {
        std::vector<Pixel> strong;
        std::vector<Pixel> weak;
        classify(image, low, high, strong, weak);
        growFrom(image, strong);
        for (const Pixel& pixel : weak) {
            T& value = image(pixel.row, pixel.column);
            value = value < 0 ? T(0) : value;
        }
    }
}

template class GradientOperator0<char>;
template class GradientOperator0<unsigned char>;
template class GradientOperator0<short>;
template class GradientOperator0<unsigned short>;
template class GradientOperator0<int>;
template class GradientOperator0<unsigned int>;
template class GradientOperator0<float>;
template class GradientOperator0<double>;
template class GradientOperator0<long double>;
