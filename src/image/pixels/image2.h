#pragma once

#include "image/values/colorchannel.h"
#include "image/values/spatialcalibration.h"
#include "image/values/valuetype.h"
#include "numerics/vector.h"

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

class AbstractNeighbourhoodIterator;
class Scalar;
template <class T>
class BoundingBox;
template <class T>
class Histogram;
template <class T>
class Numbers;

/// The general image: up to three spatial dimensions, several samples an element, several channels,
/// several timepoints, samples of one of the seven value types.
///
/// One channel at one timepoint is a frame, a block of memory that holds plane after plane, row
/// after row, the samples of an element next to one another. Element access and whole-frame
/// operations work on the current frame. Indices go row, column, plane. Copies are deep. Template
/// members exist for the seven value types; one that is not the image's raises `TypeError`, but in
/// `convertToType`. Indices of elements are not checked.
class Image2
{
public:
    class AbstractMapper;
    class AbstractMapper2D;
    class AbstractMapper3D;
    class Mapper2D;
    class ColorMapper2D;
    class Mapper3D;
    class ColorMapper3D;
    class Iterator;
    class MappedIterator2D;
    class MappedIterator3D;

    Image2();
    Image2(const Image2& other);
    Image2(Image2&& other) noexcept;

    /// Calls `create`.
    Image2(
        ValueType type, int size1, int size2, int size3, int samples, int channels, int timepoints);
    Image2(ValueType type, const Vector<int>& size, int samples, int channels, int timepoints);

    /// Reads a file with `ImageReader`.
    explicit Image2(const std::string& path);
    ~Image2();
    Image2& operator=(const Image2& other);
    Image2& operator=(Image2&& other) noexcept;

    /// Makes a zero-filled image; channel and timepoint 0 become current. `size3` is 1 for an image
    /// of two dimensions. Raises `SizeError` for a negative size and for a frame of more samples
    /// than an `int` counts.
    void create(
        ValueType type, int size1, int size2, int size3, int samples, int channels, int timepoints);

    /// The same with two or three sizes in a vector; `SizeError` for another number of them.
    void create(ValueType type, const Vector<int>& size, int samples, int channels, int timepoints);

    /// The parts of `create`, for readers: the geometry without frames; the frames, zero-filled; the
    /// index arithmetic.
    void setGeometry(
        ValueType type, int size1, int size2, int size3, int samples, int channels, int timepoints);
    void allocateData();
    void initMapper();

    /// Frees all frames and restores the state of a new image.
    void reset();
    void swap(Image2& other) noexcept;

    /// Takes frames and calibration; the frames are written over when the images are similar.
    void assign(const Image2& other);

    ValueType getValueType() const { return valueType_; }

    int getSize1() const { return size1_; }

    int getSize2() const { return size2_; }

    int getSize3() const { return size3_; }

    /// `dimension()` elements.
    Vector<int> getSize() const;

    /// 3 when there are at least two planes, else 2.
    int dimension() const { return size3_ >= 2 ? 3 : 2; }

    int getNumChannels() const { return channels_; }

    int getNumTimepoints() const { return timepoints_; }

    int samplesPerElement() const { return samples_; }

    std::size_t bytesPerSample() const { return ::bytesPerSample(valueType_); }

    std::size_t bytesPerElement() const;
    std::size_t bytesPerLine() const;
    std::size_t bytesPerPlane() const;
    std::size_t bytesPerFrame() const;
    std::size_t bytesPerChannel() const;
    std::size_t bytes() const;

    /// Planes of all frames.
    std::size_t numSubFiles() const;

    /// Elements of all frames.
    std::size_t numElements() const;

    /// From zero to the last index along each axis, as row, column, plane with `true` and as column,
    /// row, plane with `false`; two coordinates for two dimensions.
    BoundingBox<int> boundingBox(bool rowFirst) const;

    int getCurrentChannel() const { return currentChannel_; }

    int getCurrentTimepoint() const { return currentTimepoint_; }

    /// The current frame is no part of the value of an image. All raise `ValueError` out of range.
    void setCurrentChannel(int channel) const;
    void setCurrentTimepoint(int timepoint) const;
    void setCurrentChannelAndTimepoint(int channel, int timepoint) const;

    /// Empty, "lzw", "jpg", "packbits", "j2k" or "other", as the file was read or saved.
    const std::string& fileCompression() const { return fileCompression_; }

    void setFileCompression(const std::string& compression) { fileCompression_ = compression; }

    void setSpatialCalibration(const SpatialCalibration& calibration)
    {
        calibration_ = calibration;
    }

    const SpatialCalibration& getSpatialCalibration() const { return calibration_; }

    /// Same size, value type, samples, channels and timepoints.
    bool isSimilar(const Image2& other) const;

    /// Same size, value type and samples.
    bool isFrameSimilar(const Image2& other) const;

    /// Similar, and all bytes equal.
    bool operator==(const Image2& other) const;

    bool operator!=(const Image2& other) const { return !(*this == other); }

    /// Copies the current frame of `other` into the current frame. Raises `UsageError` unless the
    /// images are frame-similar.
    void assignCurrentValues(const Image2& other);

    /// The same between value types, each sample by a plain numeric conversion, in parallel. Raises
    /// `UsageError` when sizes or samples differ.
    void castAssignCurrentValues(const Image2& other);

    /// Becomes an image of one frame: the current frame of `other`, with its calibration.
    void assignCurrentImage(const Image2& other);
    Image2 getCurrentImage() const;

    /// New images: all timepoints of one channel, all channels of one timepoint, one plane of every
    /// frame. Raise `ValueError` out of range.
    Image2 channel(int channel) const;
    Image2 timepoint(int timepoint) const;
    Image2 plane(int plane) const;

    /// One sample of each element of the current frame, as an image of one sample. Raise
    /// `RangeError` for a sample that is not there.
    Image2 currentSample(int sample) const;
    Image2 getColorChannel(ColorChannel channel) const;

    /// Writes the current frame of an image of one sample into one sample of the current frame.
    /// Raise `RangeError` for a sample that is not there, `ValueError` for a source of several
    /// samples, `UsageError` for one of another size or value type.
    void setCurrentSample(int sample, const Image2& source);
    void setColorChannel(ColorChannel channel, const Image2& source);

    /// Copies the source's current frame, of one plane, into a plane. Raises `ValueError` out of
    /// range, `UsageError` for a source of another size, value type or number of samples.
    void setSlice(int channel, int timepoint, int plane, const Image2& source);

    /// The block of a frame; null while it has none.
    unsigned char* frame(int channel, int timepoint);
    const unsigned char* frame(int channel, int timepoint) const;

    /// A shallow vector over a frame, the current one or one that exists.
    template <class T>
    Vector<T> asVector();
    template <class T>
    const Vector<T> asVector() const;
    template <class T>
    Vector<T> asVector(int channel, int timepoint);
    template <class T>
    const Vector<T> asVector(int channel, int timepoint) const;

    /// Sets all samples of the current frame.
    template <class T>
    void fill(T value);
    void clear();

    /// Counts the samples of the current frame in `bins` bins that cover `min` to `max`. Bins of
    /// integers have the least whole width that covers both; bins of real numbers divide the range
    /// evenly, without its upper end. Raises `ValueError` without a bin or a range.
    template <class T>
    Histogram<T> histogram(T min, T max, int bins) const;

    /// Minimum and maximum of as many first samples of the current frame as it has elements. Raises
    /// `SizeError` for an empty frame.
    Numbers<Scalar> numbers() const;

    /// Changes the value type by a plain numeric conversion of every sample, without scaling.
    template <class T>
    void convertToType();

    template <class T>
    void setValue(int i, int j, T value);
    template <class T>
    void setValue(const Vector<int>& position, T value);
    template <class T>
    T getValue(int i, int j) const;
    template <class T>
    T getValue(int i, int j, int k) const;
    template <class T>
    T getValue(const Vector<int>& position) const;

    template <class T>
    void setRedValue(int i, int j, T value);
    template <class T>
    void setGreenValue(int i, int j, T value);
    template <class T>
    void setBlueValue(int i, int j, T value);
    template <class T>
    T getRedValue(int i, int j) const;
    template <class T>
    T getGreenValue(int i, int j) const;
    template <class T>
    T getBlueValue(int i, int j) const;

    /// Arithmetic of `ImageArithmetic` on all frames, in the value type.
    Image2& operator+=(const Scalar& value);
    Image2& operator-=(const Scalar& value);
    Image2& operator*=(const Scalar& value);
    Image2& operator/=(const Scalar& value);
    Image2& operator+=(const Image2& other);
    Image2& operator-=(const Image2& other);
    Image2& operator*=(const Image2& other);
    Image2& operator/=(const Image2& other);
    Image2 operator+(const Scalar& value) const;
    Image2 operator-(const Scalar& value) const;
    Image2 operator*(const Scalar& value) const;
    Image2 operator/(const Scalar& value) const;
    Image2 operator+(const Image2& other) const;
    Image2 operator-(const Image2& other) const;
    Image2 operator*(const Image2& other) const;
    Image2 operator/(const Image2& other) const;

    /// The index arithmetic of this shape; there is none before there is a shape.
    const AbstractMapper& mapper() const { return *mapper_; }

    /// An iterator over the elements, for the number of dimensions.
    std::unique_ptr<Iterator> newIterator() const;

    /// An iterator over the elements around an element: all that touch it; along one axis, 0 for
    /// rows, 1 for columns, 2 for planes, up to `radius` away; and one of these for each axis. The
    /// image must outlive them. Raise `ValueError` for an axis that is not there or a radius below 0.
    std::unique_ptr<AbstractNeighbourhoodIterator> newMappedNeighbourhoodIterator() const;
    std::unique_ptr<AbstractNeighbourhoodIterator> newAxialNeighbourhoodIterator(int axis,
                                                                                 int radius) const;
    std::vector<std::unique_ptr<AbstractNeighbourhoodIterator>>
    newAxialNeighbourhoodIterators(int radius) const;

    /// Writes a file with `ImageWriter`; with `compress` the file compression becomes "lzw".
    void saveAsTiff(const std::string& path, bool compress, bool overwrite);

    /// Lists geometry and frames on the standard output.
    void print() const;

private:
    struct Free
    {
        void operator()(unsigned char* block) const { std::free(block); }
    };

    using Block = std::unique_ptr<unsigned char[], Free>;

    void setDefaults();
    void requireType(ValueType type, const char* where) const;
    template <class T>
    T* samplesOf(int channel, int timepoint, const char* where) const;
    template <class T>
    T& element(int index) const;
    std::size_t elementsPerFrame() const;

    ValueType valueType_ = ValueType::UnsignedChar;
    std::vector<std::vector<Block>> frames;
    int size1_ = 0;
    int size2_ = 0;
    int size3_ = 1;
    int samples_ = 1;
    int channels_ = 0;
    int timepoints_ = 0;
    std::string fileCompression_;
    SpatialCalibration calibration_;
    std::unique_ptr<AbstractMapper> mapper_;
    mutable int currentChannel_ = 0;
    mutable int currentTimepoint_ = 0;
};
