#pragma once

#include "image/values/imagechannel.h"
#include "image/values/pixelcalibration.h"
#include "numerics/matrix.h"

#include <string>

class Image0;
class RandomGenerator;

/// A two-dimensional image: a matrix whose row is the image row and whose column is the position in
/// the row, with the size of a pixel. All pixels lie in one block, row after row.
template <class T>
class PixelMatrix : public Matrix<T>
{
public:
    /// 0 x 0.
    PixelMatrix() = default;

    /// Pixels are not initialised.
    PixelMatrix(int rows, int columns);

    /// Copies the elements; no calibration.
    PixelMatrix(const Matrix<T>& matrix);
    PixelMatrix(const PixelMatrix& other);
    PixelMatrix(PixelMatrix&& other) noexcept;

    /// Calls `convertFromImage`.
    explicit PixelMatrix(const Image0& image);
    ~PixelMatrix() override;
    PixelMatrix& operator=(const PixelMatrix& other);
    PixelMatrix& operator=(PixelMatrix&& other) noexcept;

    /// As `Matrix::setSize`, but always contiguous: images need their pixels in one block.
    void setSize(int rows, int columns, bool owner = true) override;
    using Matrix<T>::setSize;

    void setPixelCalibration(const PixelCalibration& calibration) { calibration_ = calibration; }

    const PixelCalibration& getPixelCalibration() const { return calibration_; }

    /// Uniform random pixels from `min` to `max`, both included.
    void randomise(int min, int max, RandomGenerator& generator);

    /// The same with a generator seeded from the clock. `min` is 0 and `max` 255 unless given.
    void randomise(int min, int max);
    void randomise(int max);
    void randomise();

    /// Writes the outermost ring of pixels.
    void fillBorder(T value);

    /// Writes `width` rings from the outside in, at most the whole image.
    void fillBorder(int width, T value);

    bool contains(int i, int j) const
    {
        return i >= 0 && i < this->getSize1() && j >= 0 && j < this->getSize2();
    }

    bool contains(const Vector<int>& position) const;

    using Matrix<T>::histogram;

    /// Sum of the histograms of the rows over the pixels whose mask is not 0. Of integers the edges
    /// of the bins need not be whole; of real numbers `origin` and `step` are converted to `T` first.
    /// `SizeError` for a mask of another size.
    Vector<unsigned int>
    histogram(float origin, float step, unsigned int bins, const PixelMatrix& mask) const;

    /// Makes an image of depth 8 or 16 with this calibration; other depths have several samples a
    /// pixel (`DepthError`). Nothing of the former image stays, since its colormap would tell of other
    /// pixels. Values are truncated and wrap around; what no 64-bit integer can hold becomes 0.
    void convertToImage(Image0& image, int depth) const;

    /// An 8-bit image; the range of the matrix is stretched to `lo .. hi`. A constant matrix
    /// becomes `lo` throughout.
    void convertToImage(Image0& image, unsigned char lo, unsigned char hi) const;

    /// An 8-bit image; values from `min` to `max` are stretched to `lo .. hi`, those outside become
    /// the nearer end.
    void convertToImage(Image0& image, T min, T max, unsigned char lo, unsigned char hi) const;

    /// Takes size, samples and calibration of an 8-bit or 16-bit image. Others have several samples
    /// a pixel and need the form with a channel (`DepthError`).
    void convertFromImage(const Image0& image);

    /// One sample of each pixel. Of an image with a colormap, the entry of that colour's table; a
    /// fourth sample is not there, and the elements then stay as they are. The channel has no
    /// meaning for other images of 8 and 16 bits. `DepthError` for the fourth sample of 24 bits.
    void convertFromImage(const Image0& image, ImageChannel channel);

    /// Writes the image that `convertToImage(image, 8)` makes as TIFF; errors as
    /// `ImageWriter::write`.
    void saveAsImage(const std::string& path, bool overwrite) const;

private:
    void takeGeometry(const Image0& image);
    void takeIndexed(const Image0& image, ImageChannel channel);
    template <class Sample, class Convert>
    void writeSamples(Image0& image, Convert convert) const;

    PixelCalibration calibration_;
};

extern template class PixelMatrix<bool>;
extern template class PixelMatrix<char>;
extern template class PixelMatrix<unsigned char>;
extern template class PixelMatrix<short>;
extern template class PixelMatrix<unsigned short>;
extern template class PixelMatrix<int>;
extern template class PixelMatrix<unsigned int>;
extern template class PixelMatrix<float>;
extern template class PixelMatrix<double>;
extern template class PixelMatrix<long double>;
