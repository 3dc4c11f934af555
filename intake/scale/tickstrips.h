#pragma once

#include <opencv2/core.hpp>

#include <vector>

/// A straight stretch of a picture along which many short lines stand side by side.
struct TickStrip
{
    cv::Point2d from;
    cv::Point2d to;

    double length() const { return cv::norm(to - from); }
};

/// Finds stretches of parallel short lines, as the ticks of a ruler are: the picture's blocks of 8
/// by 8 pixels in which grey values change in one direction, gathered along that direction. Lines
/// may be up to some 50 pixels apart. The strongest come first.
std::vector<TickStrip> findTickStrips(const cv::Mat& grey);

/// The picture along a strip: a column each half pixel, `rows` rows on either side of the middle one,
/// `rowStep` pixels apart, turned so that the strip runs from left to right (CV_32F).
cv::Mat straightened(const cv::Mat& grey, const TickStrip& strip, int rows, double rowStep);
