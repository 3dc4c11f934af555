#include "intake/outlinechoice.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr double goodMerit = 0.985; // of a channel: nothing else is tried
constexpr double worthTrying = 0.9; // separation of a channel
constexpr double leastMerit = 0.93; // below it the region itself is shown
constexpr double harmlessReach = 0.01;
constexpr int reachSide = 512;     // pixels of the pictures on which the reach is measured
constexpr int surroundings = 15;   // pixels around the leaf that the contrast picture shows
constexpr double whiteLevel = 1.8; // of the contrast at the leaf's border

using Channel = ChosenOutline::Channel;

constexpr std::array<const char*, 6> channelNames = {"grey", "red",      "green",
                                                     "blue", "contrast", "region"};

/// The plane that the stage gets for a channel of the photograph.
cv::Mat plane(const cv::Mat& rgb, Channel channel)
{
    cv::Mat result;
    if (channel != ChosenOutline::Grey) {
        cv::extractChannel(rgb, result, channel - 1);
        return result;
    }
    result.create(rgb.size(), CV_8UC1);
    for (int y = 0; y < rgb.rows; ++y) {
        const auto* pixels = rgb.ptr<cv::Vec3b>(y);
        uchar* target = result.ptr(y);
        for (int x = 0; x < rgb.cols; ++x) {
            target[x] = static_cast<uchar>((pixels[x][0] + pixels[x][1] + pixels[x][2]) / 3);
        }
    }
    return result;
}

PixelMatrix<float> toMatrix(const cv::Mat& grey)
{
    PixelMatrix<float> matrix(grey.rows, grey.cols);
    for (int y = 0; y < grey.rows; ++y) {
        const uchar* from = grey.ptr(y);
        Vector<float>& to = matrix[y];
        for (int x = 0; x < grey.cols; ++x) {
            to[x] = from[x];
        }
    }
    return matrix;
}

double common(const cv::Mat& one, const cv::Mat& other)
{
    const double both = cv::countNonZero(one & other);
    return both / std::max(1.0, cv::countNonZero(one) + cv::countNonZero(other) - both);
}

struct Candidate
{
    Channel channel;
    BackgroundValue background;
    double separation; ///< overlap of the part above the stage's threshold and the region
};

/// How well the threshold of the stage alone parts leaf and background.
Candidate candidate(const cv::Mat& rgb,
                    const cv::Mat& region,
                    Channel channel,
                    std::optional<BackgroundValue> background)
{
    cv::Mat grey = plane(rgb, channel);
    BackgroundValue value = DarkBackground;
    if (background) {
        value = *background;
    } else if (cv::mean(grey, region)[0] < cv::mean(grey, ~region)[0]) {
        value = LightBackground;
    }
    if (value == LightBackground) {
        grey = ~grey;
    }
    cv::Mat bright;
    const double threshold = cv::threshold(grey, bright, 0.0, 255.0, cv::THRESH_OTSU);
    bright = grey >= 0.9 * threshold;
    return {channel, value, common(bright, region)};
}

/// White from a contrast well above the leaf's border on, black far from the leaf.
cv::Mat contrastPicture(const SliceCut& cut)
{
    cv::Mat picture;
    cut.contrast.convertTo(picture, CV_8UC1, 255.0 / (whiteLevel * cut.border));
    cv::Mat near;
    cv::dilate(cut.region, near, cv::Mat::ones(2 * surroundings + 1, 2 * surroundings + 1, CV_8U));
    picture.setTo(0, ~near);
    return picture;
}

cv::Mat insideOf(const Curve<int>& outline, const cv::Size& size)
{
    cv::Mat inside = cv::Mat::zeros(size, CV_8UC1);
    std::vector<std::vector<cv::Point>> polygon(1);
    for (int i = 0; i < outline.getSize(); ++i) {
        polygon[0].emplace_back(outline[i][0], outline[i][1]);
    }
    if (polygon[0].size() >= 3) {
        cv::fillPoly(inside, polygon, cv::Scalar(255));
    }
    return inside;
}

/// The largest distance of a pixel of `other` to the nearest one of `one`.
double farthest(const cv::Mat& one, const cv::Mat& other)
{
    cv::Mat distance;
    cv::distanceTransform(~one, distance, cv::DIST_L2, 3);
    double most = 0.0;
    cv::minMaxLoc(distance, nullptr, &most, nullptr, nullptr, other);
    return most;
}

ChosenOutline trace(const cv::Mat& grey,
                    const SliceCut& cut,
                    Channel channel,
                    BackgroundValue background,
                    bool binary,
                    int fidelity)
{
    ExtractContour stage;
    stage.setBackground(background);
    stage.setBinaryImage(binary);
    stage.setFidelity(fidelity);
    ChosenOutline result;
    result.channel = channel;
    result.background = background;
    result.outline = stage.outlineOf(toMatrix(grey));
    result.overlap = OutlineChoice::overlap(result.outline, cut.region);
    return result;
}

/// A stalk or a lobe that is lost is a small part of the area, but reaches far.
double meritOf(const ChosenOutline& outline, const SliceCut& cut)
{
    const double reach = OutlineChoice::reach(outline.outline, cut.region);
    return outline.overlap - 2.0 * std::max(0.0, reach - harmlessReach);
}

/// The channel that separates best, of those that the wish leaves.
Candidate bestCandidate(const SliceCut& cut, const OutlineWish& wish)
{
    std::vector<Candidate> candidates;
    for (const Channel channel :
         {ChosenOutline::Grey, ChosenOutline::Red, ChosenOutline::Green, ChosenOutline::Blue}) {
        if (!wish.channel || *wish.channel == channel) {
            candidates.push_back(candidate(cut.pixels, cut.region, channel, wish.background));
        }
    }
    return *std::max_element(candidates.begin(), candidates.end(),
                             [](const Candidate& one, const Candidate& other) {
                                 return one.separation < other.separation;
                             });
}

} // namespace

std::string ChosenOutline::nameOf(Channel channel)
{
    return channelNames[channel];
}

std::optional<ChosenOutline::Channel> ChosenOutline::channelOf(const std::string& name)
{
    const auto place = std::find(channelNames.begin(), channelNames.end(), name);
    if (place == channelNames.end()) {
        return std::nullopt;
    }
    return static_cast<Channel>(place - channelNames.begin());
}

double OutlineChoice::overlap(const Curve<int>& outline, const cv::Mat& region)
{
    return common(insideOf(outline, region.size()), region);
}

double OutlineChoice::reach(const Curve<int>& outline, const cv::Mat& region)
{
    const cv::Mat inside = insideOf(outline, region.size());
    const double factor = std::max(1.0, std::max(region.cols, region.rows) / double(reachSide));
    const cv::Size size(std::max(1, int(region.cols / factor)),
                        std::max(1, int(region.rows / factor)));
    cv::Mat one;
    cv::Mat other;
    cv::resize(inside, one, size, 0.0, 0.0, cv::INTER_NEAREST);
    cv::resize(region, other, size, 0.0, 0.0, cv::INTER_NEAREST);
    if (cv::countNonZero(one) == 0 || cv::countNonZero(other) == 0) {
        return 1.0;
    }
    const cv::Rect box = cv::boundingRect(other);
    return std::max(farthest(one, other), farthest(other, one)) / std::hypot(box.width, box.height);
}

ChosenOutline OutlineChoice::choose(const SliceCut& cut, const OutlineWish& wish)
{
    const bool free = !wish.channel && !wish.background && !wish.binary;
    ChosenOutline best;
    double merit = -1.0;
    const auto consider = [&](const ChosenOutline& other) {
        const double own = meritOf(other, cut);
        if (own > merit) {
            best = other;
            merit = own;
        }
    };
    if (!wish.channel || *wish.channel <= ChosenOutline::Blue) {
        const Candidate what = bestCandidate(cut, wish);
        if (!free || what.separation > worthTrying) {
            consider(trace(plane(cut.pixels, what.channel), cut, what.channel, what.background,
                           wish.binary, wish.fidelity));
        }
        if (!free || merit > goodMerit) {
            return best;
        }
    }
    if (!wish.channel || *wish.channel == ChosenOutline::Contrast) {
        consider(trace(contrastPicture(cut), cut, ChosenOutline::Contrast, DarkBackground, false,
                       wish.fidelity));
    }
    if (wish.channel == ChosenOutline::Region || (free && merit < leastMerit)) {
        ChosenOutline region =
            trace(cut.region, cut, ChosenOutline::Region, DarkBackground, true, wish.fidelity);
        if (region.outline.getSize() > 0) {
            // The region agrees with itself; what tells of doubt is the outline that did not.
            region.overlap = wish.channel ? region.overlap : best.overlap;
            best = region;
        }
    }
    return best;
}
