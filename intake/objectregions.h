#pragma once

#include <opencv2/core.hpp>

#include <string>
#include <vector>

/// A connected part of a picture that differs from the background, in pixels of the (reduced) picture
/// that it was found on.
struct PictureObject
{
    cv::Rect box;
    cv::Mat mask;                   ///< of the box's size, 255 on the object; its holes are filled
    std::vector<cv::Point> outline; ///< of the mask
    double area = 0.0;
    double contrast = 0.0; ///< median of the contrast map inside
    double border = 0.0;   ///< contrast at which it was cut off
};

/// Parts a contrast map into objects.
///
/// A pixel belongs to an object if its contrast is above the background's noise and the object has a
/// core well above it; faint borders of strong objects (blur, penumbra) are then cut at a share of
/// the object's own contrast. Parts with a gap of a few pixels are one object, so that the thin axis
/// of a compound leaf may be lost here and there.
class ObjectRegions
{
public:
    /// `noise` is that of the background's surface. Objects of less than a 10,000th of the picture
    /// are left out. From the largest to the smallest.
    static std::vector<PictureObject> find(const cv::Mat& contrast, double noise);

    /// Gives a leaf (an empty verdict) the part of its stalk that a pale stretch or a gleam has cut
    /// off: a thin object whose end lies near it. Takes that object from both lists.
    static void joinStalks(std::vector<PictureObject>& objects, std::vector<std::string>& verdicts);
};
