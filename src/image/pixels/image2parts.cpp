// Part of `Image2`: copying whole frames, planes and samples between images.

#include "image/pixels/image2.h"
#include "system/exception.h"

#include <omp.h>

#include <algorithm>
#include <cstring>

namespace {

/// Copies a sample of `bytes` bytes from every element of one block to every element of another,
/// where elements lie `fromStep` and `toStep` bytes apart.
template <std::size_t bytes>
void copySamples(unsigned char* to,
                 std::size_t toStep,
                 const unsigned char* from,
                 std::size_t fromStep,
                 std::size_t elements)
{
    for (std::size_t e = 0; e < elements; ++e, to += toStep, from += fromStep) {
        std::memcpy(to, from, bytes);
    }
}

void copySamples(std::size_t bytes,
                 unsigned char* to,
                 std::size_t toStep,
                 const unsigned char* from,
                 std::size_t fromStep,
                 std::size_t elements)
{
    switch (bytes) {
    case 1:
        return copySamples<1>(to, toStep, from, fromStep, elements);
    case 2:
        return copySamples<2>(to, toStep, from, fromStep, elements);
    case 4:
        return copySamples<4>(to, toStep, from, fromStep, elements);
    default:
        return copySamples<8>(to, toStep, from, fromStep, elements);
    }
}

/// Converts `count` samples in parallel, in equal stretches; the first `count % threads` threads
/// take one sample more.
template <class From, class To>
void castSamples(const From* from, To* to, std::size_t count)
{
#pragma omp parallel
    {
        const std::size_t threads = static_cast<std::size_t>(omp_get_num_threads());
        const std::size_t thread = static_cast<std::size_t>(omp_get_thread_num());
        const std::size_t length = count / threads;
        const std::size_t longer = count % threads;
        const std::size_t first = thread * length + std::min(thread, longer);
        const std::size_t last = first + length + (thread < longer ? 1 : 0);
        for (std::size_t s = first; s < last; ++s) {
            to[s] = static_cast<To>(from[s]);
        }
    }
}

[[noreturn]] void refuseValueType(const char* where)
{
    raise<FatalError>(where, "unknown value type");
}

void castBlock(const unsigned char* from,
               ValueType fromType,
               unsigned char* to,
               ValueType toType,
               std::size_t count,
               const char* where)
{
    const auto refuse = [where] { refuseValueType(where); };
    withValueType(
        fromType,
        [&](auto fromSample) {
            using From = typename decltype(fromSample)::type;
            withValueType(
                toType,
                [&](auto toSample) {
                    using To = typename decltype(toSample)::type;
                    castSamples(reinterpret_cast<const From*>(from), reinterpret_cast<To*>(to),
                                count);
                },
                refuse);
        },
        refuse);
}

} // namespace

void Image2::assignCurrentValues(const Image2& other)
{
    if (!isFrameSimilar(other)) {
        raise<UsageError>("void Image2::assignCurrentValues(const Image2&)",
                          "The two images are not frame-similar");
    }
    unsigned char* const to = frame(currentChannel_, currentTimepoint_);
    const unsigned char* const from = other.frame(other.currentChannel_, other.currentTimepoint_);
    if (to != nullptr && from != nullptr && to != from) {
        std::memcpy(to, from, bytesPerFrame());
    }
}

void Image2::castAssignCurrentValues(const Image2& other)
{
    const char* const where = "void Image2::castAssignCurrentValues(const Image2&)";
    if (size1_ != other.size1_ || size2_ != other.size2_ || size3_ != other.size3_ ||
        samples_ != other.samples_) {
        raise<UsageError>(where, "The two images are not frame-similar");
    }
    unsigned char* const to = frame(currentChannel_, currentTimepoint_);
    const unsigned char* const from = other.frame(other.currentChannel_, other.currentTimepoint_);
    if (to != nullptr && from != nullptr) {
        castBlock(from, other.valueType_, to, valueType_,
                  elementsPerFrame() * static_cast<std::size_t>(samples_), where);
    }
}

template <class T>
void Image2::convertToType()
{
    const char* const where = "void Image2::convertToType()";
    if (valueType_ == valueTypeOf<T>()) {
        return;
    }
    Image2 converted(valueTypeOf<T>(), size1_, size2_, size3_, samples_, channels_, timepoints_);
    converted.calibration_ = calibration_;
    const std::size_t count = elementsPerFrame() * static_cast<std::size_t>(samples_);
    for (int c = 0; c < channels_; ++c) {
        for (int t = 0; t < timepoints_; ++t) {
            if (frame(c, t) != nullptr) {
                castBlock(frame(c, t), valueType_, converted.frame(c, t), converted.valueType_,
                          count, where);
            }
        }
    }
    converted.currentChannel_ = currentChannel_;
    converted.currentTimepoint_ = currentTimepoint_;
    swap(converted);
}

Image2 Image2::getCurrentImage() const
{
    Image2 image(valueType_, size1_, size2_, size3_, samples_, 1, 1);
    image.assignCurrentValues(*this);
    image.calibration_ = calibration_;
    return image;
}

Image2 Image2::channel(int channel) const
{
    if (channel < 0 || channel >= channels_) {
        raise<ValueError>("Image2 Image2::channel(const int) const", "invalid channel value");
    }
    Image2 image(valueType_, size1_, size2_, size3_, samples_, 1, timepoints_);
    for (int t = 0; t < timepoints_; ++t) {
        if (frame(channel, t) != nullptr) {
            std::memcpy(image.frame(0, t), frame(channel, t), bytesPerFrame());
        }
    }
    image.calibration_ = calibration_;
    return image;
}

Image2 Image2::timepoint(int timepoint) const
{
    if (timepoint < 0 || timepoint >= timepoints_) {
        raise<ValueError>("Image2 Image2::timepoint(const int) const", "invalid timepoint value");
    }
    Image2 image(valueType_, size1_, size2_, size3_, samples_, channels_, 1);
    for (int c = 0; c < channels_; ++c) {
        if (frame(c, timepoint) != nullptr) {
            std::memcpy(image.frame(c, 0), frame(c, timepoint), bytesPerFrame());
        }
    }
    image.calibration_ = calibration_;
    return image;
}

Image2 Image2::plane(int plane) const
{
    if (plane < 0 || plane >= size3_) {
        raise<ValueError>("Image2 Image2::plane(const int) const", "out-of-range plane index");
    }
    Image2 image(valueType_, size1_, size2_, 1, samples_, channels_, timepoints_);
    const std::size_t offset = static_cast<std::size_t>(plane) * bytesPerPlane();
    for (int c = 0; c < channels_; ++c) {
        for (int t = 0; t < timepoints_; ++t) {
            if (frame(c, t) != nullptr) {
                std::memcpy(image.frame(c, t), frame(c, t) + offset, bytesPerPlane());
            }
        }
    }
    image.calibration_ = calibration_;
    return image;
}

Image2 Image2::currentSample(int sample) const
{
    if (sample < 0 || sample >= samples_) {
        raise<RangeError>("Image2 Image2::currentSample(const int) const", "invalid sample value");
    }
    Image2 image(valueType_, size1_, size2_, size3_, 1, 1, 1);
    image.calibration_ = calibration_;
    const unsigned char* const from = frame(currentChannel_, currentTimepoint_);
    if (from != nullptr) {
        copySamples(bytesPerSample(), image.frame(0, 0), bytesPerSample(),
                    from + static_cast<std::size_t>(sample) * bytesPerSample(), bytesPerElement(),
                    elementsPerFrame());
    }
    return image;
}

Image2 Image2::getColorChannel(ColorChannel channel) const
{
    return currentSample(static_cast<int>(channel));
}

void Image2::setCurrentSample(int sample, const Image2& source)
{
    const char* const where = "Image2::setSample(const int,const Image2&) const";
    if (sample < 0 || sample >= samples_) {
        raise<RangeError>(where, "invalid sample value");
    }
    if (source.samples_ != 1) {
        raise<ValueError>(where, "too many samples per pixel/voxel in the source image");
    }
    if (valueType_ != source.valueType_ || size1_ != source.size1_ || size2_ != source.size2_ ||
        size3_ != source.size3_) {
        raise<UsageError>(where, "the source image has another size or value type");
    }
    unsigned char* const to = frame(currentChannel_, currentTimepoint_);
    const unsigned char* const from =
        source.frame(source.currentChannel_, source.currentTimepoint_);
    if (to != nullptr && from != nullptr) {
        copySamples(bytesPerSample(), to + static_cast<std::size_t>(sample) * bytesPerSample(),
                    bytesPerElement(), from, bytesPerSample(), elementsPerFrame());
    }
}

void Image2::setColorChannel(ColorChannel channel, const Image2& source)
{
    setCurrentSample(static_cast<int>(channel), source);
}

void Image2::setSlice(int channel, int timepoint, int plane, const Image2& source)
{
    const char* const where =
        "void Image2::setSlice(const int, const int, const int, const Image2&)";
    if (channel < 0 || channel >= channels_ || timepoint < 0 || timepoint >= timepoints_ ||
        plane < 0 || plane >= size3_) {
        raise<ValueError>(where, "out-of-range channel, timepoint or plane");
    }
    if (valueType_ != source.valueType_ || size1_ != source.size1_ || size2_ != source.size2_ ||
        source.size3_ != 1 || samples_ != source.samples_) {
        raise<UsageError>(where, "the source image has another size or value type");
    }
    unsigned char* const to = frame(channel, timepoint);
    const unsigned char* const from =
        source.frame(source.currentChannel_, source.currentTimepoint_);
    if (to != nullptr && from != nullptr) {
        std::memcpy(to + static_cast<std::size_t>(plane) * bytesPerPlane(), from, bytesPerPlane());
    }
}

template void Image2::convertToType<unsigned char>();
template void Image2::convertToType<unsigned short>();
template void Image2::convertToType<short>();
template void Image2::convertToType<int>();
template void Image2::convertToType<unsigned int>();
template void Image2::convertToType<float>();
template void Image2::convertToType<double>();
