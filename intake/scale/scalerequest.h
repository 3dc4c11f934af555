#pragma once

#include <opencv2/core.hpp>

#include <string>
#include <vector>

/// What tells the scale of a photograph: one thing of a known size that lies on it.
struct ScaleRequest
{
    /// `Dots` are four at the corners of a square.
    enum class Kind { None, Square, Disc, Dots, Ruler };
    enum class Unit { Millimetre, Centimetre, Inch };

    Kind kind = Kind::None;
    /// Of a marker, in millimetres: the side of the square, the diameter of the disc, or the
    /// distance of the dots' middles along the sides of their square.
    double length = 0.0;
    /// Of a ruler.
    Unit unit = Unit::Millimetre;

    /// Reads "square:20mm", "disc:2.5cm" or "dots:70mm" (mm, cm or inch). Raises `UsageError`.
    static ScaleRequest marker(const std::string& text);

    /// Reads "mm", "cm" or "inch". Raises `UsageError`.
    static ScaleRequest ruler(const std::string& text);

    /// As it stands in tables: "marker square 20 mm", "ruler mm", "none".
    std::string text() const;
};

/// The scale found on a photograph, or why there is none.
struct FoundScale
{
    bool found = false;
    /// The side of a pixel in millimetres.
    double pixelSize = 0.0;
    /// How far what was found is from its ideal shape, in per cent: sides and diagonals of a square,
    /// the axes of a disc, or the distance of ticks at both ends of a ruler.
    double misfit = 0.0;
    /// Around what was found, in pixels of the photograph (0 at the middle of the upper left one).
    std::vector<cv::Point2d> place;
    /// Why nothing was found: "no square", "more than one disc".
    std::string reason;

    static FoundScale none(const std::string& why)
    {
        FoundScale result;
        result.reason = why;
        return result;
    }
};

/// Looks for what is requested on a photograph of red, green and blue (CV_8UC3), upright. Gives
/// "not found" rather than a guess: nothing of that kind, more than one, or one that is too far from
/// its shape. Keeps nothing; may be called from several threads.
FoundScale findScale(const cv::Mat& photograph, const ScaleRequest& request);
