#pragma once

#include <opencv2/core.hpp>

#include <array>

/// The colour of a photograph's background as a smooth surface: each channel of CIE Lab is a
/// polynomial of second degree in the place, which follows uneven light and vignetting.
///
/// It is fitted from the commonest colour of the picture's frame. All pixels near that colour give a
/// first surface, those near the surface the next one of higher degree, until the pixels that differ
/// (leaves, cards, the table beside the paper) have no part in it. Lightness counts a third in all
/// distances: light varies over a sheet of paper, its colour does not.
///
/// Colours are 8-bit Lab as OpenCV has them: L 0 to 255 for 0 to 100, a and b with 128 for 0.
class BackgroundSurface
{
public:
    BackgroundSurface() = default;

    /// `lab` is a picture (CV_8UC3), or a part of one of the size `whole`; it may be a reduced one,
    /// since places are relative.
    BackgroundSurface(const cv::Mat& lab, const cv::Rect& part, const cv::Size& whole);

    /// L 0 to 100, a, b at a place given in parts of the whole picture's width and height, 0 to 1.
    /// Beyond the part on which it was fitted the colour at its nearest edge.
    cv::Vec3d colourAt(double x, double y) const;

    /// Red, green and blue there.
    cv::Vec3b rgbAt(double x, double y) const;

    /// The colours along a row of pixels (`count` of them, centres at (first + k + 0.5) / width), as
    /// L 0 to 100, a, b.
    void row(double y, double first, double width, int count, cv::Vec3f* colours) const;

    /// How far the background's own pixels lie from the surface: the distance that 99 of 100 keep.
    double noise() const { return noise_; }

    /// Share of the picture's pixels that belong to the background, 0 to 1.
    double share() const { return share_; }

private:
    static constexpr int terms = 6;
    using Coefficients = std::array<double, terms>;

    static Coefficients termsAt(double u, double v);
    double across(double x) const;
    double down(double y) const;
    cv::Vec3d valueAt(double u, double v) const;
    void fit(const cv::Mat& lab, const cv::Mat& belongs, int degree);
    cv::Mat near(const cv::Mat& lab, double radius) const;
    double quantile(const cv::Mat& lab, const cv::Mat& belongs, double part) const;

    std::array<Coefficients, 3> surface_{};
    cv::Rect2d part_{0.0, 0.0, 1.0, 1.0};
    double noise_ = 0.0;
    double share_ = 0.0;
};

/// The squared distance of two colours (L 0 to 100, a, b) with lightness weighed a third.
double squaredColourDistance(const cv::Vec3d& one, const cv::Vec3d& other);
