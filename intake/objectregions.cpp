#include "intake/objectregions.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>

namespace {

constexpr double leastContrast = 5.0;
constexpr double leastCore = 9.0;
constexpr double borderShare = 0.3; // of the object's contrast
constexpr double highestBorder = 12.0;
constexpr double leastArea = 1e-4; // of the picture
constexpr int leastPixels = 12;
constexpr int joiningGap = 2; // pixels

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

/// Cuts the object at its own border and fills it; false if nothing is left.
bool shape(PictureObject& object, const cv::Mat& contrast, cv::Mat own, double least)
{
    const cv::Mat values = contrast(object.box);
    object.contrast = medianInside(values, own);
    const double border =
        std::clamp(borderShare * object.contrast, least, std::max(least, highestBorder));
    own &= values > border;
    std::vector<std::vector<cv::Point>> outlines;
    cv::findContours(own, outlines, cv::RETR_EXTERNAL, cv::CHAIN_APPROX_NONE);
    if (outlines.empty()) {
        return false;
    }
    object.mask = cv::Mat::zeros(own.size(), CV_8UC1);
    cv::drawContours(object.mask, outlines, -1, cv::Scalar(255), cv::FILLED);
    object.outline =
        *std::max_element(outlines.begin(), outlines.end(), [](const auto& one, const auto& other) {
            return cv::contourArea(one) < cv::contourArea(other);
        });
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
        cv::Mat own = (labels(object.box) == label) & above(object.box);
        double highest = 0.0;
        cv::minMaxLoc(contrast(object.box), nullptr, &highest, nullptr, nullptr, own);
        if (highest < core || !shape(object, contrast, own, least) || object.area < smallest) {
            continue;
        }
        trim(object);
        objects.push_back(std::move(object));
    }
    std::sort(objects.begin(), objects.end(),
              [](const auto& one, const auto& other) { return one.area > other.area; });
    return objects;
}
