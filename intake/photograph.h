#pragma once

#include "image/values/pixelcalibration.h"

#include <opencv2/core.hpp>

#include <string>

class Image0;
class StackSlice;

/// The pixels of a photograph in memory, upright: rows from the top, 8 bits each of red, green and
/// blue, whatever the file holds. A grey picture has three equal samples.
class Photograph
{
public:
    Photograph() = default;

    /// Takes the pixels of an image as a slice shows them; 16-bit samples are scaled to 8 bits.
    explicit Photograph(const Image0& image);

    /// Reads the image of a slice. Errors as `StackSlice::load`.
    static Photograph ofSlice(const StackSlice& slice);

    /// Rows of red, green and blue (CV_8UC3). Copies of a `Photograph` share them.
    const cv::Mat& pixels() const { return pixels_; }

    int width() const { return pixels_.cols; }

    int height() const { return pixels_.rows; }

    bool isEmpty() const { return pixels_.empty(); }

    /// All pixels are grey.
    bool isGrey() const { return grey_; }

private:
    cv::Mat pixels_;
    bool grey_ = false;
};
