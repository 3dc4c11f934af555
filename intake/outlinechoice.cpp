#include "intake/outlinechoice.h"

#include "intake/contrastmap.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr double goodOverlap = 0.985; // of a channel: nothing else is tried
constexpr double worthTrying = 0.9;   // separation of a channel
constexpr double leastOverlap = 0.9;  // below it the region itself is shown
constexpr int reach = 15;             // pixels around the leaf that the contrast picture shows
constexpr double whitePart = 0.3;     // of the leaf that may be darker than white

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

cv::Mat contrastPicture(const SliceCut& cut, const FoundLeaves& found)
{
    const cv::Mat map = ContrastMap::make(cut.pixels, found.background, cut.part.tl(), found.size,
                                          found.shadowsCount ? ContrastMap::Shadows::Counted
                                                             : ContrastMap::Shadows::Ignored);
    std::vector<float> inside;
    for (int y = 0; y < map.rows; ++y) {
        for (int x = 0; x < map.cols; ++x) {
            if (cut.region.at<uchar>(y, x) != 0) {
                inside.push_back(map.at<float>(y, x));
            }
        }
    }
    cv::Mat picture;
    if (inside.empty()) {
        return cv::Mat::zeros(map.size(), CV_8UC1);
    }
    const auto place = inside.begin() + long(whitePart * double(inside.size() - 1));
    std::nth_element(inside.begin(), place, inside.end());
    map.convertTo(picture, CV_8UC1, 255.0 / std::max(1.0F, *place));
    cv::Mat near;
    cv::dilate(cut.region, near, cv::Mat::ones(2 * reach + 1, 2 * reach + 1, CV_8U));
    picture.setTo(0, ~near);
    return picture;
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
    if (outline.getSize() < 3) {
        return 0.0;
    }
    std::vector<std::vector<cv::Point>> polygon(1);
    for (int i = 0; i < outline.getSize(); ++i) {
        polygon[0].emplace_back(outline[i][0], outline[i][1]);
    }
    cv::Mat inside = cv::Mat::zeros(region.size(), CV_8UC1);
    cv::fillPoly(inside, polygon, cv::Scalar(255));
    return common(inside, region);
}

ChosenOutline
OutlineChoice::choose(const SliceCut& cut, const FoundLeaves& found, const OutlineWish& wish)
{
    const auto traced = [&](const Candidate& what) {
        return trace(plane(cut.pixels, what.channel), cut, what.channel, what.background,
                     wish.binary, wish.fidelity);
    };
    std::vector<Candidate> candidates;
    for (const Channel channel :
         {ChosenOutline::Grey, ChosenOutline::Red, ChosenOutline::Green, ChosenOutline::Blue}) {
        if (!wish.channel || *wish.channel == channel) {
            candidates.push_back(candidate(cut.pixels, cut.region, channel, wish.background));
        }
    }
    std::stable_sort(candidates.begin(), candidates.end(),
                     [](const Candidate& one, const Candidate& other) {
                         return one.separation > other.separation;
                     });
    const bool free = !wish.channel && !wish.background && !wish.binary;
    ChosenOutline best;
    if (!candidates.empty() && (!free || candidates.front().separation > worthTrying)) {
        best = traced(candidates.front());
    }
    if ((!free && wish.channel != ChosenOutline::Contrast &&
         wish.channel != ChosenOutline::Region) ||
        best.overlap > goodOverlap) {
        return best;
    }
    if (wish.channel != ChosenOutline::Region) {
        const ChosenOutline other = trace(contrastPicture(cut, found), cut, ChosenOutline::Contrast,
                                          DarkBackground, false, wish.fidelity);
        best = other.overlap > best.overlap || best.outline.getSize() == 0 ? other : best;
    }
    if (wish.channel == ChosenOutline::Region || (free && best.overlap < leastOverlap)) {
        const ChosenOutline other =
            trace(cut.region, cut, ChosenOutline::Region, DarkBackground, true, wish.fidelity);
        best = other.overlap > best.overlap ? other : best;
    }
    return best;
}
