#include "image/pixels/image2.h"

#include "image/pixels/image2iterator.h"
#include "image/pixels/image2mapper.h"
#include "image/values/pixelmemory.h"
#include "shape/vertices/boundingbox.h"
#include "system/exception.h"

#include <cstdio>
#include <cstring>
#include <limits>
#include <utility>

namespace {

std::size_t count(int n)
{
    return static_cast<std::size_t>(n);
}

/// Whether the product of the factors, none negative, is at most that of an `int`.
bool fitsInt(std::initializer_list<int> factors)
{
    long long product = 1;
    for (const int factor : factors) {
        product *= factor;
        if (factor == 0) {
            return true;
        }
        if (product > std::numeric_limits<int>::max()) {
            return false;
        }
    }
    return true;
}

} // namespace

Image2::Image2() = default;

Image2::Image2(const Image2& other)
{
    assign(other);
}

Image2::Image2(Image2&& other) noexcept
{
    swap(other);
}

Image2::Image2(
    ValueType type, int size1, int size2, int size3, int samples, int channels, int timepoints)
{
    create(type, size1, size2, size3, samples, channels, timepoints);
}

Image2::Image2(ValueType type, const Vector<int>& size, int samples, int channels, int timepoints)
{
    create(type, size, samples, channels, timepoints);
}

Image2::~Image2() = default;

Image2& Image2::operator=(const Image2& other)
{
    assign(other);
    return *this;
}

Image2& Image2::operator=(Image2&& other) noexcept
{
    if (this != &other) {
        reset();
        swap(other);
    }
    return *this;
}

void Image2::setDefaults()
{
    valueType_ = ValueType::UnsignedChar;
    size1_ = 0;
    size2_ = 0;
    size3_ = 1;
    samples_ = 1;
    channels_ = 0;
    timepoints_ = 0;
    currentChannel_ = 0;
    currentTimepoint_ = 0;
    mapper_.reset();
    calibration_.reset();
    fileCompression_.clear();
    frames.clear();
}

void Image2::reset()
{
    setDefaults();
}

void Image2::create(
    ValueType type, int size1, int size2, int size3, int samples, int channels, int timepoints)
{
    setGeometry(type, size1, size2, size3, samples, channels, timepoints);
    allocateData();
    initMapper();
}

void Image2::create(
    ValueType type, const Vector<int>& size, int samples, int channels, int timepoints)
{
    if (size.getSize() != 2 && size.getSize() != 3) {
        raise<SizeError>("void Image2::create(...)", "An image has two or three sizes");
    }
    create(type, size[0], size[1], size.getSize() == 3 ? size[2] : 1, samples, channels,
           timepoints);
}

void Image2::setGeometry(
    ValueType type, int size1, int size2, int size3, int samples, int channels, int timepoints)
{
    reset();
    const bool negative =
        size1 < 0 || size2 < 0 || size3 < 0 || samples < 0 || channels < 0 || timepoints < 0;
    if (negative || !fitsInt({size1, size2, size3, samples})) {
        raise<SizeError>("void Image2::create(...)", "Invalid image size");
    }
    valueType_ = type;
    size1_ = size1;
    size2_ = size2;
    size3_ = size3;
    samples_ = samples;
    channels_ = channels;
    timepoints_ = timepoints;
}

void Image2::allocateData()
{
    currentChannel_ = 0;
    currentTimepoint_ = 0;
    frames.clear();
    frames.resize(count(channels_));
    const std::size_t length = bytesPerFrame();
    for (std::vector<Block>& channelFrames : frames) {
        channelFrames.resize(count(timepoints_));
        for (Block& block : channelFrames) {
            if (length == 0) {
                continue;
            }
            block.reset(allocatePixelMemory(length));
        }
    }
}

void Image2::initMapper()
{
    if (size3_ <= 1 && samples_ <= 1) {
        mapper_ = std::make_unique<Mapper2D>(size1_, size2_);
    } else if (size3_ <= 1) {
        mapper_ = std::make_unique<ColorMapper2D>(size1_, size2_, samples_);
    } else if (samples_ <= 1) {
        mapper_ = std::make_unique<Mapper3D>(size1_, size2_, size3_);
    } else {
        mapper_ = std::make_unique<ColorMapper3D>(size1_, size2_, size3_, samples_);
    }
}

void Image2::swap(Image2& other) noexcept
{
    std::swap(valueType_, other.valueType_);
    std::swap(frames, other.frames);
    std::swap(size1_, other.size1_);
    std::swap(size2_, other.size2_);
    std::swap(size3_, other.size3_);
    std::swap(samples_, other.samples_);
    std::swap(channels_, other.channels_);
    std::swap(timepoints_, other.timepoints_);
    std::swap(fileCompression_, other.fileCompression_);
    std::swap(calibration_, other.calibration_);
    std::swap(mapper_, other.mapper_);
    std::swap(currentChannel_, other.currentChannel_);
    std::swap(currentTimepoint_, other.currentTimepoint_);
}

void Image2::assign(const Image2& other)
{
    if (this == &other) {
        return;
    }
    if (!isSimilar(other) || frames.size() != other.frames.size() || !mapper_) {
        create(other.valueType_, other.size1_, other.size2_, other.size3_, other.samples_,
               other.channels_, other.timepoints_);
    }
    for (std::size_t c = 0; c < other.frames.size(); ++c) {
        for (std::size_t t = 0; t < other.frames[c].size(); ++t) {
            if (other.frames[c][t]) {
                std::memcpy(frames[c][t].get(), other.frames[c][t].get(), bytesPerFrame());
            }
        }
    }
    calibration_ = other.calibration_;
}

Vector<int> Image2::getSize() const
{
    Vector<int> size(dimension());
    size[0] = size1_;
    size[1] = size2_;
    if (dimension() == 3) {
        size[2] = size3_;
    }
    return size;
}

std::size_t Image2::bytesPerElement() const
{
    return count(samples_) * bytesPerSample();
}

std::size_t Image2::bytesPerLine() const
{
    return count(size2_) * bytesPerElement();
}

std::size_t Image2::bytesPerPlane() const
{
    return count(size1_) * bytesPerLine();
}

std::size_t Image2::bytesPerFrame() const
{
    return count(size3_) * bytesPerPlane();
}

std::size_t Image2::bytesPerChannel() const
{
    return count(timepoints_) * bytesPerFrame();
}

std::size_t Image2::bytes() const
{
    return count(channels_) * bytesPerChannel();
}

std::size_t Image2::numSubFiles() const
{
    return count(size3_) * count(channels_) * count(timepoints_);
}

std::size_t Image2::elementsPerFrame() const
{
    return count(size1_) * count(size2_) * count(size3_);
}

std::size_t Image2::numElements() const
{
    return elementsPerFrame() * count(channels_) * count(timepoints_);
}

BoundingBox<int> Image2::boundingBox(bool rowFirst) const
{
    Vector<int> first(dimension());
    first.setZeros();
    Vector<int> last(dimension());
    last[0] = (rowFirst ? size1_ : size2_) - 1;
    last[1] = (rowFirst ? size2_ : size1_) - 1;
    if (dimension() == 3) {
        last[2] = size3_ - 1;
    }
    return BoundingBox<int>(first, last);
}

void Image2::setCurrentChannel(int channel) const
{
    setCurrentChannelAndTimepoint(channel, currentTimepoint_);
}

void Image2::setCurrentTimepoint(int timepoint) const
{
    setCurrentChannelAndTimepoint(currentChannel_, timepoint);
}

void Image2::setCurrentChannelAndTimepoint(int channel, int timepoint) const
{
    if (channel < 0 || channel >= channels_ || timepoint < 0 || timepoint >= timepoints_) {
        raise<ValueError>("void Image2::setCurrentChannelAndTimepoint(const int, const int)",
                          "Bad value of channel or timepoint");
    }
    currentChannel_ = channel;
    currentTimepoint_ = timepoint;
}

bool Image2::isFrameSimilar(const Image2& other) const
{
    return valueType_ == other.valueType_ && size1_ == other.size1_ && size2_ == other.size2_ &&
           size3_ == other.size3_ && samples_ == other.samples_;
}

bool Image2::isSimilar(const Image2& other) const
{
    return isFrameSimilar(other) && channels_ == other.channels_ &&
           timepoints_ == other.timepoints_;
}

bool Image2::operator==(const Image2& other) const
{
    if (!isSimilar(other)) {
        return false;
    }
    for (int c = 0; c < channels_; ++c) {
        for (int t = 0; t < timepoints_; ++t) {
            const unsigned char* const mine = frame(c, t);
            const unsigned char* const theirs = other.frame(c, t);
            if (mine == nullptr || theirs == nullptr) {
                if (mine != theirs) {
                    return false;
                }
            } else if (std::memcmp(mine, theirs, bytesPerFrame()) != 0) {
                return false;
            }
        }
    }
    return true;
}

const unsigned char* Image2::frame(int channel, int timepoint) const
{
    const std::size_t c = count(channel);
    const std::size_t t = count(timepoint);
    return c < frames.size() && t < frames[c].size() ? frames[c][t].get() : nullptr;
}

unsigned char* Image2::frame(int channel, int timepoint)
{
    return const_cast<unsigned char*>(std::as_const(*this).frame(channel, timepoint));
}

void Image2::assignCurrentImage(const Image2& other)
{
    *this = other.getCurrentImage();
}

std::unique_ptr<Image2::Iterator> Image2::newIterator() const
{
    if (size3_ == 1) {
        return std::make_unique<MappedIterator2D>(*this);
    }
    return std::make_unique<MappedIterator3D>(*this);
}

void Image2::print() const
{
    const Vector<float> size = calibration_.getSize();
    std::printf("value-type: %d\nsize1: %d\nsize2: %d\nsize3: %d\nsamples: %d\nchannels: %d\n"
                "timepoints: %d\ncurrent channel: %d\ncurrent timepoint: %d\n",
                static_cast<int>(valueType_), size1_, size2_, size3_, samples_, channels_,
                timepoints_, currentChannel_, currentTimepoint_);
    std::printf("calibration %f %f %f\ncalibr unit %s\n", static_cast<double>(size[0]),
                static_cast<double>(size[1]), static_cast<double>(size[2]),
                calibration_.getLengthUnit().name().c_str());
    for (int c = 0; c < channels_; ++c) {
        for (int t = 0; t < timepoints_; ++t) {
            std::printf("data at %d,%d: %p\n", c, t, static_cast<const void*>(frame(c, t)));
        }
    }
}
