#include "intake/contrastmap.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

constexpr float lightnessUnit = 100.0F / 255.0F;
constexpr float lightnessWeight = 1.0F / 9.0F; // of its square
/// Cube root of the least share of the light that a shadow leaves.
constexpr float darkestShadow = 0.7F;
constexpr float blackLevel = 16.0F; // L + 16 is proportional to the cube root of the light

constexpr double leastLine = 9.0;
constexpr int widestLine = 7; // pixels
constexpr int shortestLine = 20;

} // namespace

cv::Mat ContrastMap::thinLines(const cv::Mat& counted, double noise)
{
    cv::Mat lines = counted > std::max(leastLine, 2.0 * noise);
    const cv::Mat disc =
        cv::getStructuringElement(cv::MORPH_ELLIPSE, cv::Size(widestLine + 2, widestLine + 2));
    cv::Mat broad;
    cv::morphologyEx(lines, broad, cv::MORPH_OPEN, disc);
    lines &= ~broad;
    cv::Mat labels;
    cv::Mat statistics;
    cv::Mat centres;
    const int number = cv::connectedComponentsWithStats(lines, labels, statistics, centres);
    for (int label = 1; label < number; ++label) {
        const int* line = statistics.ptr<int>(label);
        const cv::Rect box(line[cv::CC_STAT_LEFT], line[cv::CC_STAT_TOP], line[cv::CC_STAT_WIDTH],
                           line[cv::CC_STAT_HEIGHT]);
        if (std::max(box.width, box.height) < shortestLine) {
            lines(box).setTo(0, labels(box) == label);
        }
    }
    return lines;
}

cv::Mat ContrastMap::make(const cv::Mat& rgb,
                          const BackgroundSurface& background,
                          cv::Point corner,
                          cv::Size whole,
                          Shadows shadows)
{
    cv::Mat map(rgb.size(), CV_32F);
    std::vector<cv::Vec3f> colours(std::size_t(rgb.cols));
    cv::Mat lab;
    for (int y = 0; y < rgb.rows; ++y) {
        cv::cvtColor(rgb.row(y), lab, cv::COLOR_RGB2Lab);
        background.row((corner.y + y + 0.5) / whole.height, corner.x, whole.width, rgb.cols,
                       colours.data());
        const auto* pixels = lab.ptr<cv::Vec3b>();
        auto* target = map.ptr<float>(y);
        for (int x = 0; x < rgb.cols; ++x) {
            const float light = pixels[x][0] * lightnessUnit + blackLevel;
            const cv::Vec3f& own = colours[std::size_t(x)];
            float factor = 1.0F;
            if (shadows == Shadows::Ignored) {
                factor = std::clamp(light / (own[0] + blackLevel), darkestShadow, 1.0F);
            }
            const float l = light - factor * (own[0] + blackLevel);
            const float a = pixels[x][1] - 128.0F - factor * own[1];
            const float b = pixels[x][2] - 128.0F - factor * own[2];
            target[x] = std::sqrt(l * l * lightnessWeight + a * a + b * b);
        }
    }
    return map;
}
