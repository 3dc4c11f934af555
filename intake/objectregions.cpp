#include "intake/objectregions.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace {

constexpr double leastContrast = 5.0;
constexpr double leastCore = 9.0;
constexpr double borderShare = 0.3; // of the object's contrast
constexpr double highestBorder = 12.0;
constexpr double leastArea = 1e-4; // of the picture
constexpr int leastPixels = 12;
constexpr int joiningGap = 2; // pixels
constexpr int widestThin = 7; // pixels

float medianInside(const cv::Mat& values, const cv::Mat& mask)
{
    std::vector<float> inside;
    for (int y = 0; y < values.rows; ++y) {
        for (int x = 0; x < values.cols; ++x) {
            if (mask.at<uchar>(y, x) != 0) {
                inside.push_back(values.at<float>(y, x));
            }
        }
    }
    if (inside.empty()) {
        return 0.0F;
    }
    const auto middle = inside.begin() + long(inside.size() / 2);
    std::nth_element(inside.begin(), middle, inside.end());
    return *middle;
}

std::vector<std::vector<cv::Point>> partsOf(const cv::Mat& mask)
{
    std::vector<std::vector<cv::Point>> outlines;
    cv::findContours(mask, outlines, cv::RETR_EXTERNAL, cv::CHAIN_APPROX_NONE);
    return outlines;
}

/// What a disc of this width does not fit into.
cv::Mat thinParts(const cv::Mat& mask)
{
    const cv::Mat disc =
        cv::getStructuringElement(cv::MORPH_ELLIPSE, cv::Size(widestThin + 2, widestThin + 2));
    cv::Mat padded;
    cv::copyMakeBorder(mask, padded, widestThin, widestThin, widestThin, widestThin,
                       cv::BORDER_CONSTANT, cv::Scalar(0));
    cv::Mat broad;
    cv::morphologyEx(padded, broad, cv::MORPH_OPEN, disc);
    const cv::Rect inner(cv::Point(widestThin, widestThin), mask.size());
    return mask & ~broad(inner);
}

/// Cuts the object at its own border and fills it; false if nothing is left. `gaps` are the pixels
/// that were taken in to join its parts.
bool shape(PictureObject& object,
           const cv::Mat& contrast,
           const cv::Mat& own,
           const cv::Mat& gaps,
           double least)
{
    const cv::Mat values = contrast(object.box);
    object.contrast = medianInside(values, own);
    const double border =
        std::clamp(borderShare * object.contrast, least, std::max(least, highestBorder));
    // Thin parts, stalks above all, are paler than the blade where the picture is not sharp.
    const cv::Mat body = own & (values > border);
    const std::vector<std::vector<cv::Point>> outlines = partsOf(body | thinParts(own | gaps));
    if (outlines.empty()) {
        return false;
    }
    object.border = border;
    object.mask = cv::Mat::zeros(own.size(), CV_8UC1);
    object.outline =
        *std::max_element(outlines.begin(), outlines.end(), [](const auto& one, const auto& other) {
            return cv::contourArea(one) < cv::contourArea(other);
        });
    const std::vector<std::vector<cv::Point>> one = {object.outline};
    cv::drawContours(object.mask, one, 0, cv::Scalar(255), cv::FILLED);
    for (cv::Point& point : object.outline) {
        point += object.box.tl();
    }
    object.area = cv::countNonZero(object.mask);
    return true;
}

/// Shrinks the box to the mask.
void trim(PictureObject& object)
{
    const cv::Rect inner = cv::boundingRect(object.mask);
    object.mask = object.mask(inner).clone();
    object.box = inner + object.box.tl();
}

/// Two points of two outlines, and how far they lie from each other.
struct Link
{
    cv::Point first;
    cv::Point second;
    double length = 1e9;
};

Link shortestLink(const std::vector<cv::Point>& one, const std::vector<cv::Point>& other)
{
    Link best;
    for (const cv::Point& first : one) {
        for (const cv::Point& second : other) {
            const double length = std::hypot(first.x - second.x, first.y - second.y);
            if (length < best.length) {
                best = {first, second, length};
            }
        }
    }
    return best;
}

bool isThin(const PictureObject& object)
{
    return cv::countNonZero(thinParts(object.mask)) > 0.9 * object.area;
}

/// The link leaves the thin object at one of its ends, not at its side.
bool leavesAtEnd(const PictureObject& thin, const Link& link)
{
    const cv::Point middle = (thin.box.tl() + thin.box.br()) / 2;
    const double length = std::hypot(thin.box.width, thin.box.height);
    return std::hypot(link.first.x - middle.x, link.first.y - middle.y) > 0.35 * length;
}

void join(PictureObject& object, const PictureObject& other, const Link& link)
{
    const cv::Rect box = object.box | other.box;
    cv::Mat mask = cv::Mat::zeros(box.size(), CV_8UC1);
    object.mask.copyTo(mask(object.box - box.tl()));
    cv::Mat part = mask(other.box - box.tl());
    part |= other.mask;
    cv::line(mask, link.first - box.tl(), link.second - box.tl(), cv::Scalar(255), 2);
    const std::vector<std::vector<cv::Point>> outlines = partsOf(mask);
    object.outline =
        *std::max_element(outlines.begin(), outlines.end(), [](const auto& one, const auto& two) {
            return cv::contourArea(one) < cv::contourArea(two);
        });
    for (cv::Point& point : object.outline) {
        point += box.tl();
    }
    object.mask = mask;
    object.box = box;
    object.area = cv::countNonZero(mask);
}

} // namespace

std::vector<PictureObject> ObjectRegions::find(const cv::Mat& contrast, double noise)
{
    const double least = std::max(leastContrast, 1.1 * noise);
    const double core = std::max(leastCore, 2.0 * noise);
    const cv::Mat above = contrast > least;
    cv::Mat joined;
    const cv::Mat gap = cv::getStructuringElement(cv::MORPH_ELLIPSE,
                                                  cv::Size(2 * joiningGap + 1, 2 * joiningGap + 1));
    cv::morphologyEx(above, joined, cv::MORPH_CLOSE, gap);
    cv::Mat labels;
    cv::Mat statistics;
    cv::Mat centres;
    const int number = cv::connectedComponentsWithStats(joined, labels, statistics, centres);
    const double smallest = std::max(double(leastPixels), leastArea * double(contrast.total()));
    std::vector<PictureObject> objects;
    for (int label = 1; label < number; ++label) {
        const int* line = statistics.ptr<int>(label);
        if (line[cv::CC_STAT_AREA] < smallest) {
            continue;
        }
        PictureObject object;
        object.box = cv::Rect(line[cv::CC_STAT_LEFT], line[cv::CC_STAT_TOP],
                              line[cv::CC_STAT_WIDTH], line[cv::CC_STAT_HEIGHT]);
        const cv::Mat whole = labels(object.box) == label;
        const cv::Mat own = whole & above(object.box);
        double highest = 0.0;
        cv::minMaxLoc(contrast(object.box), nullptr, &highest, nullptr, nullptr, own);
        if (highest < core || !shape(object, contrast, own, whole & ~above(object.box), least) ||
            object.area < smallest) {
            continue;
        }
        trim(object);
        objects.push_back(std::move(object));
    }
    std::sort(objects.begin(), objects.end(),
              [](const auto& one, const auto& other) { return one.area > other.area; });
    return objects;
}

void ObjectRegions::joinStalks(std::vector<PictureObject>& objects,
                               std::vector<std::string>& verdicts)
{
    constexpr int largestGap = 50; // pixels; it is no longer than the part itself either
    constexpr double smallShare = 0.25;
    for (std::size_t i = objects.size(); i-- > 1;) {
        const PictureObject thin = objects[i];
        const double length = std::hypot(thin.box.width, thin.box.height);
        if (length < 20.0 || !isThin(thin)) {
            continue;
        }
        std::size_t nearest = i;
        Link best;
        for (std::size_t j = 0; j < i; ++j) {
            const cv::Rect& box = objects[j].box;
            const cv::Rect around(box.x - largestGap, box.y - largestGap,
                                  box.width + 2 * largestGap, box.height + 2 * largestGap);
            if (!verdicts[j].empty() || thin.area > smallShare * objects[j].area ||
                (around & thin.box).empty()) {
                continue;
            }
            const Link link = shortestLink(thin.outline, objects[j].outline);
            if (link.length < best.length) {
                best = link;
                nearest = j;
            }
        }
        if (best.length <= std::min(double(largestGap), length) && leavesAtEnd(thin, best)) {
            join(objects[nearest], thin, best);
            objects.erase(objects.begin() + long(i));
            verdicts.erase(verdicts.begin() + long(i));
        }
    }
}
