#include "image/filters/imageprocessing.h"

#include "image/pixels/image2.h"
#include "system/exception.h"

#include <chrono>

namespace {

using Implementation = ImageProcessing::AbstractImplementation;

void applyInplace(Image2& image, Implementation& implementation)
{
    for (int k = 0; k < image.samplesPerElement(); ++k) {
        const ColorChannel channel = static_cast<ColorChannel>(k);
        Image2 sample = image.getColorChannel(channel);
        implementation.apply(sample);
        image.setColorChannel(channel, sample);
    }
}

void applyToNewImage(Image2& image, Implementation& implementation)
{
    const int samples = image.samplesPerElement();
    Image2 result;
    for (int k = 0; k < samples; ++k) {
        const ColorChannel channel = static_cast<ColorChannel>(k);
        Image2 sample = image.getColorChannel(channel);
        implementation.apply(sample);
        if (k == 0) {
            result.create(sample.getValueType(), sample.getSize(), samples, 1, 1);
            result.setSpatialCalibration(sample.getSpatialCalibration());
        }
        result.setColorChannel(channel, sample);
    }
    image.swap(result);
}

} // namespace

ImageProcessing::AbstractImplementation::~AbstractImplementation() = default;

ImageProcessing::ImageProcessing() = default;

ImageProcessing::~ImageProcessing()
{
    destroyImplementations();
}

void ImageProcessing::destroyImplementations()
{
    for (const auto& entry : implementations) {
        delete entry.second;
    }
    implementations.clear();
}

bool ImageProcessing::canProcess(const Image2&) const
{
    return true;
}

bool ImageProcessing::canProcessInplace(const Image2&) const
{
    return true;
}

void ImageProcessing::apply(Image2& image)
{
    const auto entry = implementations.find(image.getValueType());
    if (entry == implementations.end()) {
        raise<UsageError>("void ImageProcessing::apply(Image2&)",
                          "no implementation found for the given image");
    }
    const auto start = std::chrono::steady_clock::now();
    if (image.samplesPerElement() == 1) {
        entry->second->apply(image);
    } else if (canProcessInplace(image)) {
        applyInplace(image, *entry->second);
    } else {
        applyToNewImage(image, *entry->second);
    }
    const std::chrono::nanoseconds passed = std::chrono::steady_clock::now() - start;
    duration = static_cast<long>(passed.count() / 1000000);
}
