#pragma once

#include "image/filters/pixelmatrixprocessing.h"
#include "image/filters/voxelmatrixprocessing.h"

/// Norm and direction of the gradient of an image, whatever operator computes its components, and
/// the thinning of edges by both. `a` is the gradient along the second index (along a row), `b` the
/// one along the first.
///
/// The thinning operations work in place on the norm; the outermost rows and columns stay, and all
/// comparisons read the norm as it was. All operations raise `SizeError` for images of different
/// sizes, and those that compute roots or angles `TypeError` for integers.
template <class T>
class GradientOperator0 : public virtual PixelMatrixProcessing<T>,
                          public virtual VoxelMatrixProcessing<T>
{
public:
    GradientOperator0();
    ~GradientOperator0() override;

    /// Replaces the image by the components along the first, second and third index. A plane has
    /// no third one.
    virtual void gradient1(PixelMatrix<T>& matrix) = 0;
    virtual void gradient2(PixelMatrix<T>& matrix) = 0;
    virtual void gradient1(VoxelMatrix<T>& matrix) = 0;
    virtual void gradient2(VoxelMatrix<T>& matrix) = 0;
    virtual void gradient3(VoxelMatrix<T>& matrix) = 0;

    /// The components along the second and along the first index.
    void hGradient(PixelMatrix<T>& matrix) { gradient2(matrix); }

    void vGradient(PixelMatrix<T>& matrix) { gradient1(matrix); }

    /// The norm of the gradient; the same as `norm` of the image.
    void apply(PixelMatrix<T>& matrix) override;
    void apply(VoxelMatrix<T>& matrix) override;

    void norm(PixelMatrix<T>& matrix);

    /// sqrt(a^2 + b^2), and sqrt(a^2 + b^2 + c^2), element by element; `out` may be one of the
    /// others.
    static void norm(PixelMatrix<T>& out, const PixelMatrix<T>& a, const PixelMatrix<T>& b);
    static void norm(PixelMatrix<T>& out,
                     const PixelMatrix<T>& a,
                     const PixelMatrix<T>& b,
                     const PixelMatrix<T>& c);

    /// atan2f(b, a) in radians; `out` may be one of the others.
    static void angle(PixelMatrix<T>& out, const PixelMatrix<T>& a, const PixelMatrix<T>& b);

    /// The direction of the gradient of the image.
    void angle(PixelMatrix<T>& matrix);

    /// Compares with the norm interpolated where the gradient line leaves the 3 x 3 block.
    static void
    nonmaxSuppression(PixelMatrix<T>& image, const PixelMatrix<T>& a, const PixelMatrix<T>& b);

    /// Compares with the norm interpolated bilinearly at distance 1 along the gradient. A norm equal
    /// to the one ahead goes, to the one behind stays.
    static void
    fineNonmaxSuppression(PixelMatrix<T>& image, const PixelMatrix<T>& a, const PixelMatrix<T>& b);

    /// The same with the direction of the gradient, in radians, as `angle` gives it.
    static void fineNonmaxSuppression(PixelMatrix<T>& image, const PixelMatrix<T>& angles);

    /// Compares with the two neighbours along the nearer axis. A norm equal to one of them goes on
    /// one side only, so that of a ridge two pixels wide at most one stays.
    static void
    nonmaxSuppressionN4(PixelMatrix<T>& image, const PixelMatrix<T>& a, const PixelMatrix<T>& b);

    /// Compares with two of the eight neighbours.
    static void
    nonmaxSuppressionN8(PixelMatrix<T>& image, const PixelMatrix<T>& a, const PixelMatrix<T>& b);

    /// Interior pixels of at least `high`, and those of at least `low` that hang together with them
    /// (diagonally too), become 1, all other interior pixels 0. `TypeError` for types that hold no negative number.
    static void hysteresisThresholding(PixelMatrix<T>& image, T low, T high);
};

extern template class GradientOperator0<char>;
extern template class GradientOperator0<unsigned char>;
extern template class GradientOperator0<short>;
extern template class GradientOperator0<unsigned short>;
extern template class GradientOperator0<int>;
extern template class GradientOperator0<unsigned int>;
extern template class GradientOperator0<float>;
extern template class GradientOperator0<double>;
extern template class GradientOperator0<long double>;
