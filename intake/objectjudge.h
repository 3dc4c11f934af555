#pragma once

#include "intake/objectregions.h"

#include <opencv2/core.hpp>

#include <string>
#include <vector>

/// What an object looks like, as far as that tells leaves from other things.
struct ObjectLook
{
    double size = 0.0;       ///< area to that of the picture
    double fill = 0.0;       ///< area to that of the smallest rectangle around it, at any angle
    double elongation = 1.0; ///< long to short side of that rectangle
    double roundness = 0.0;  ///< area to that of the smallest circle around it
    double straight =
        0.0;           ///< share of the outline in long straight lines of one cross of directions
    double grey = 0.0; ///< share of pixels without colour
    double foreign = 0.0;   ///< share of pixels in colours that leaves don't have: blue to violet
    double spread = 0.0;    ///< mean distance of the pixels' colours from their mean
    cv::Vec3d colour;       ///< mean: L 0 to 100, a, b
    int sides = 0;          ///< of the picture that it touches
    bool alongSide = false; ///< it is narrow and lies along one of them
    double contrast = 0.0;  ///< to the background

    /// `lab` is the picture on which the object was found (CV_8UC3, as OpenCV has Lab).
    static ObjectLook of(const PictureObject& object, const cv::Mat& lab);

    /// How much it looks like a thing made by man, by itself: above 0 it does. Straight edges at
    /// right angles count most, then a full rectangle, patches of many colours, foreign colours, and
    /// that it runs over two sides of the picture.
    double artificiality() const;
};

/// Tells leaves from rulers, cards, labels, coins, shadows, dust and hands, by what they look like and
/// by what else lies on the picture: a grey thing is a leaf only where nothing has leaf colours, a
/// small thing only where nothing is much larger.
class ObjectJudge
{
public:
    /// The verdict on each object: empty for a leaf, else in a few words why it is none.
    static std::vector<std::string> judge(const std::vector<PictureObject>& objects,
                                          const cv::Mat& lab);
};
