#pragma once

#include <opencv2/core.hpp>

#include <vector>

/// A patch of one colour that stands out on its surroundings, in pixels of the photograph.
struct FlatShape
{
    /// Of a square: in order around it. Of a disc: four points of its rim, 90 degrees apart.
    std::vector<cv::Point2d> corners;
    cv::Point2d middle;
    /// Side or diameter: the root of the area's share of the ideal one.
    double size = 0.0;
    /// See `FoundScale::misfit`.
    double misfit = 0.0;
    cv::Scalar colour;
    cv::Scalar around;

    /// Black or dark grey on light ground, as markers are printed.
    bool isPrinted() const;
};

/// Looks for squares and discs of one colour with edges fitted to fractions of a pixel.
class FlatShapes
{
public:
    explicit FlatShapes(const cv::Mat& photograph);

    /// All squares of at least 24 pixels a side.
    std::vector<FlatShape> squares() const;

    /// All discs of at least `leastDiameter` pixels.
    std::vector<FlatShape> discs(double leastDiameter) const;

private:
    cv::Mat photograph_;
    cv::Mat grey_;
    /// Closed lines of equal lightness that may bound a shape, each once.
    std::vector<std::vector<cv::Point2d>> loops_;
};

/// By how much, in per cent, sides and diagonals of a four-cornered shape differ from those of the
/// square of the same area.
double squareMisfit(const std::vector<cv::Point2d>& corners);

/// The area enclosed by a closed line.
double loopArea(const std::vector<cv::Point2d>& loop);
