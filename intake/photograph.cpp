#include "intake/photograph.h"

#include "image/pixels/image0.h"
#include "stack/stackslice.h"

#include <opencv2/imgproc.hpp>

Photograph::Photograph(const Image0& image)
{
    if (image.getWidth() < 1 || image.getHeight() < 1 || image.getData() == nullptr) {
        return;
    }
    const Image0* source = &image;
    Image0 converted;
    if (image.getDepth() == 16 || image.isIndexed()) {
        converted = image;
        if (image.getDepth() == 16) {
            converted.make8bitsGrayscale();
        } else {
            converted.make24bits();
        }
        source = &converted;
    }
    const int samples = source->bytesPerPixel();
    // OpenCV has no views of constant memory; the pixels are copied below and never written.
    const cv::Mat view(source->getHeight(), source->getWidth(), CV_8UC(samples),
                       const_cast<unsigned char*>(source->getData()));
    grey_ = samples == 1 || source->isGrayscale();
    switch (samples) {
    case 1:
        cv::cvtColor(view, pixels_, cv::COLOR_GRAY2RGB);
        break;
    case 4:
        cv::cvtColor(view, pixels_, cv::COLOR_RGBA2RGB);
        break;
    default:
        view.copyTo(pixels_);
    }
}

Photograph Photograph::ofSlice(const StackSlice& slice)
{
    Image0 image;
    slice.load(image);
    return Photograph(image);
}
