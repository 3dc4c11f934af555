#include "intake/slicecutter.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>

namespace {

constexpr int leastMargin = 30;
constexpr int freeBorder = 16;      // that a leaf keeps on an untouched photograph
constexpr double noticeable = 0.01; // area to that of the leaf, from which a thing matters

cv::Rect widened(const cv::Rect& box, int by)
{
    return {box.x - by, box.y - by, box.width + 2 * by, box.height + 2 * by};
}

/// The mask of an object in the pixels of a part of the photograph, widened by a few of them.
cv::Mat maskOn(const cv::Rect& part, const FoundObject& object, int factor, int by)
{
    cv::Mat mask = cv::Mat::zeros(part.size(), CV_8UC1);
    const cv::Rect own(object.reducedBox.x * factor, object.reducedBox.y * factor,
                       object.reducedBox.width * factor, object.reducedBox.height * factor);
    const cv::Rect common = own & part;
    if (common.empty()) {
        return mask;
    }
    cv::Mat large;
    cv::resize(object.mask, large, own.size(), 0.0, 0.0, cv::INTER_LINEAR);
    large = large > 100; // so that a thin diagonal does not break
    large(common - own.tl()).copyTo(mask(common - part.tl()));
    if (by > 0) {
        cv::dilate(mask, mask, cv::Mat::ones(2 * by + 1, 2 * by + 1, CV_8U));
    }
    return mask;
}

/// Takes the contrast of the slice's own pixels, and draws the region anew in them where it was found
/// on a reduced picture.
void sharpen(SliceCut& cut, const FoundLeaves& found, const FoundObject& leaf)
{
    cut.border = leaf.border;
    cut.contrast = found.contrastOf(cut.pixels, cut.part.tl());
    if (found.factor == 1) {
        return;
    }
    constexpr double nearlyAll = 0.97;
    cv::Mat near;
    const int reach = 2 * found.factor;
    cv::dilate(cut.region, near, cv::Mat::ones(2 * reach + 1, 2 * reach + 1, CV_8U));
    near &= cut.contrast > leaf.border;
    std::vector<std::vector<cv::Point>> outlines;
    cv::findContours(near, outlines, cv::RETR_EXTERNAL, cv::CHAIN_APPROX_NONE);
    std::size_t largest = 0;
    std::vector<double> areas;
    for (const std::vector<cv::Point>& outline : outlines) {
        areas.push_back(cv::contourArea(outline));
        largest = areas.back() > areas[largest] ? areas.size() - 1 : largest;
    }
    // A thin part may break in the finer grain; the coarse region then stays.
    if (!areas.empty() && areas[largest] > nearlyAll * cv::countNonZero(cut.region)) {
        cut.region.setTo(0);
        cv::drawContours(cut.region, outlines, int(largest), cv::Scalar(255), cv::FILLED);
    }
}

/// Gives the pixels that `where` says the background's colour.
void paintBackground(cv::Mat& pixels,
                     const cv::Mat& where,
                     cv::Point corner,
                     const FoundLeaves& found)
{
    std::vector<cv::Vec3f> colours(std::size_t(pixels.cols));
    cv::Mat lab(1, pixels.cols, CV_8UC3);
    cv::Mat rgb;
    for (int y = 0; y < pixels.rows; ++y) {
        if (cv::countNonZero(where.row(y)) == 0) {
            continue;
        }
        found.background.row((corner.y + y + 0.5) / found.size.height, corner.x, found.size.width,
                             pixels.cols, colours.data());
        for (int x = 0; x < pixels.cols; ++x) {
            const cv::Vec3f& colour = colours[std::size_t(x)];
            lab.at<cv::Vec3b>(0, x) = cv::Vec3b(cv::saturate_cast<uchar>(colour[0] * 2.55F),
                                                cv::saturate_cast<uchar>(colour[1] + 128.0F),
                                                cv::saturate_cast<uchar>(colour[2] + 128.0F));
        }
        cv::cvtColor(lab, rgb, cv::COLOR_Lab2RGB);
        rgb.copyTo(pixels.row(y), where.row(y));
    }
}

} // namespace

int SliceCutter::marginOf(const cv::Rect& box)
{
    return std::max(leastMargin, std::max(box.width, box.height) / 25);
}

bool SliceCutter::needsNothing(const FoundLeaves& found, const FoundObject& leaf)
{
    const cv::Rect whole(cv::Point(), found.size);
    if ((widened(leaf.box, freeBorder) & whole) != widened(leaf.box, freeBorder) ||
        (found.sheet & whole) != whole) {
        return false;
    }
    return std::none_of(found.objects.begin(), found.objects.end(), [&](const FoundObject& other) {
        return &other != &leaf && other.area > noticeable * leaf.area && other.verdict != "shadow";
    });
}

SliceCut SliceCutter::cut(const Photograph& photograph,
                          const FoundLeaves& found,
                          int object,
                          const std::optional<cv::Rect>& wished)
{
    const FoundObject& leaf = found.objects.at(std::size_t(object));
    const cv::Rect whole(cv::Point(), found.size);
    SliceCut result;
    result.isWhole = wished ? *wished == whole : needsNothing(found, leaf);
    if (result.isWhole) {
        result.part = whole;
        result.pixels = photograph.pixels();
        result.region = maskOn(whole, leaf, found.factor, 0);
        sharpen(result, found, leaf);
        return result;
    }
    const int margin = marginOf(leaf.box);
    // Beyond an edge that the leaf does not reach there is nothing to add.
    cv::Rect part = widened(leaf.box, margin);
    const cv::Rect needed = widened(leaf.box, freeBorder);
    const cv::Rect bounds = whole | needed;
    part = wished ? *wished : part & bounds;
    result.part = part;
    result.region = maskOn(part, leaf, found.factor, 0);
    result.pixels = cv::Mat::zeros(part.size(), CV_8UC3);
    cv::Mat painted(part.size(), CV_8UC1, cv::Scalar(255));
    const cv::Rect taken = part & found.sheet & whole;
    photograph.pixels()(taken).copyTo(result.pixels(taken - part.tl()));
    painted(taken - part.tl()).setTo(0);
    const int by = found.factor + 3;
    for (const FoundObject& other : found.objects) {
        if (&other != &leaf && !(widened(other.box, by) & part).empty()) {
            painted |= maskOn(part, other, found.factor, by);
        }
    }
    cv::Mat kept;
    cv::dilate(result.region, kept, cv::Mat::ones(2 * by + 1, 2 * by + 1, CV_8U));
    cv::Mat inside = cv::Mat::zeros(part.size(), CV_8UC1);
    inside(taken - part.tl()).setTo(255);
    painted.setTo(0, kept & inside);
    paintBackground(result.pixels, painted, part.tl(), found);
    sharpen(result, found, leaf);
    return result;
}
