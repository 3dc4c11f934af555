#pragma once

#include "intake/backgroundsurface.h"
#include "intake/photograph.h"

#include <opencv2/core.hpp>

#include <string>
#include <vector>

/// A thing on a photograph: a leaf, or something taken for none. In pixels of the photograph.
struct FoundObject
{
    bool isLeaf = false;
    /// In a few words why it is no leaf ("straight edges", "shadow", "small", ...); empty for a leaf.
    std::string verdict;
    cv::Rect box;
    std::vector<cv::Point> outline; ///< roughly, of its largest part
    double area = 0.0;
    /// Median distance of its colour to the background's, in CIE Lab with lightness weighed a third.
    double contrast = 0.0;
    /// The contrast at which it ends.
    double border = 0.0;
    /// It reaches the edge of the photograph.
    bool touchesEdge = false;
    /// 255 on the object, its holes filled, in the reduced picture: row and column of a pixel of the
    /// photograph, less those of `reducedBox` times the factor, divided by the factor.
    cv::Mat mask;
    cv::Rect reducedBox;
};

/// What was found on a photograph. Holds no pixels of it.
struct FoundLeaves
{
    cv::Size size;  ///< of the photograph
    int factor = 1; ///< pixels of the photograph to one of the reduced picture
    /// The part of the photograph that is the leaves' background, all of it or a sheet on a table.
    cv::Rect sheet;
    BackgroundSurface background;
    bool shadowsCount = false; ///< leaf and background differ in lightness alone
    cv::Mat thinLines;         ///< in the reduced picture, 255 where shadows count all the same
    std::vector<FoundObject> objects;
    /// The objects that are leaves, in reading order: rows from the top, each from left to right.
    std::vector<int> leaves;

    /// The contrast to the background (`ContrastMap`) of pixels that lie at `corner` of the photograph.
    cv::Mat contrastOf(const cv::Mat& rgb, cv::Point corner) const;

    /// Takes a thing for a leaf, or for none, and numbers the leaves anew.
    void setLeaf(int object, bool isLeaf);

    /// Adds a leaf by hand: what differs from the background in this part of the photograph, or the
    /// whole part where nothing does. Gives the place among the objects.
    int addLeaf(const Photograph& photograph, const cv::Rect& part);

    /// Sorts `leaves` again after the objects were changed.
    void order();
};

/// Finds the leaves on a photograph: background, contrast to it, objects, verdicts. Works on a
/// reduced picture of about a million pixels at most, so that time and memory hardly grow with the
/// photograph. Keeps nothing; may be called from several threads.
class LeafFinder
{
public:
    /// A photograph without a leaf gives no leaves; one without pixels nothing at all.
    static FoundLeaves find(const Photograph& photograph);
};
