#include "intake/scale/scalerequest.h"
#include "samples/scanpicture.h"
#include "system/exception.h"
#include "system/randomgenerator.h"

#include <gtest/gtest.h>
#include <opencv2/imgproc.hpp>

#include <cmath>

namespace {

constexpr double degree = CV_PI / 180.0;

/// What lies on a scan, and where it is turned to.
struct Laid
{
    RulerUnit ruler = RulerUnit::None;
    MarkerPlan marker;
    double angle = 0.0;
    double resolution = 110.0;
    Paper paper = Paper::White;
    long seed = 1;
};

/// A scan with a leaf, a colour card, a grey card and a label, and what shall be found at its right.
cv::Mat scanWith(const Laid& laid)
{
    ScanOptions options;
    options.leaves = 1;
    options.resolution = laid.resolution;
    options.ruler = RulerUnit::None;
    options.marker.kind = MarkerKind::None;
    options.paper = laid.paper;
    ScanPlan scan = planScan(options, 0, laid.seed);
    const double unit = scan.pixelsPerMillimetre;
    const Point middle{scan.width + 86.3 * unit, scan.height / 2.0 + 0.4};
    scan.width += static_cast<int>(175.0 * unit);
    RandomGenerator random;
    random.init(laid.seed);
    if (laid.ruler != RulerUnit::None) {
        scan.objects.push_back(
            placed(drawRuler(laid.ruler, random), middle, laid.angle * degree, unit));
    }
    if (laid.marker.kind != MarkerKind::None) {
        scan.objects.push_back(placed(drawMarker(laid.marker), middle, laid.angle * degree, unit));
    }
    const Picture picture = drawScan(scan);
    cv::Mat pixels(picture.height, picture.width, CV_8UC3);
    std::copy(picture.bytes.begin(), picture.bytes.end(), pixels.data);
    return pixels;
}

ScaleRequest requestFor(const std::string& text)
{
    return text.find(':') == std::string::npos ? ScaleRequest::ruler(text)
                                               : ScaleRequest::marker(text);
}

void expectFound(const Laid& laid, const std::string& text)
{
    const FoundScale scale = findScale(scanWith(laid), requestFor(text));
    ASSERT_TRUE(scale.found) << text << " at " << laid.angle << ": " << scale.reason;
    const double truth = 25.4 / laid.resolution;
    EXPECT_NEAR(scale.pixelSize, truth, 0.005 * truth) << text << " at " << laid.angle;
    EXPECT_LT(scale.misfit, 0.5) << text << " at " << laid.angle;
}

} // namespace

TEST(FindScale, FindsMarkersTurnedAnyWay)
{
    long seed = 1;
    for (const double angle : {0.0, 11.0, 45.0, 72.0}) {
        expectFound(
            {RulerUnit::None, {MarkerKind::Square, 20.0}, angle, 110.0, Paper::Grey, ++seed},
            "square:20mm");
        expectFound({RulerUnit::None, {MarkerKind::Disc, 25.0}, angle, 90.0, Paper::Blue, ++seed},
                    "disc:2.5cm");
        expectFound({RulerUnit::None, {MarkerKind::Dots, 70.0}, angle, 130.0, Paper::White, ++seed},
                    "dots:70mm");
    }
}

TEST(FindScale, FindsRulersTurnedAnyWay)
{
    long seed = 20;
    for (const double angle : {2.0, 45.0, 118.0}) {
        expectFound({RulerUnit::Millimetre, {}, angle, 100.0, Paper::Black, ++seed}, "mm");
        expectFound({RulerUnit::Centimetre, {}, angle, 140.0, Paper::White, ++seed}, "cm");
        expectFound({RulerUnit::Inch, {}, angle, 120.0, Paper::Blue, ++seed}, "inch");
    }
    // A ruler in millimetres is one in centimetres, too, and has inches at its other edge.
    const cv::Mat both = scanWith({RulerUnit::Millimetre, {}, 31.0, 120.0});
    for (const char* unit : {"mm", "cm", "inch"}) {
        const FoundScale scale = findScale(both, ScaleRequest::ruler(unit));
        ASSERT_TRUE(scale.found) << unit << ": " << scale.reason;
        EXPECT_NEAR(scale.pixelSize, 25.4 / 120.0, 0.001) << unit;
    }
}

TEST(FindScale, GuessesNothing)
{
    // Cards, a label and a leaf, but nothing of a known size; then two squares; then a square seen
    // from the side, a little and too much.
    cv::Mat scan = scanWith({});
    for (const char* text : {"square:20mm", "disc:25mm", "dots:70mm", "mm", "cm", "inch"}) {
        EXPECT_FALSE(findScale(scan, requestFor(text)).found) << text;
    }
    for (const char* text : {"square:20mm", "mm"}) {
        EXPECT_FALSE(findScale(cv::Mat(), requestFor(text)).found);
        EXPECT_FALSE(findScale(cv::Mat(1, 1, CV_8UC3), requestFor(text)).found);
    }
    const auto square = [&](int x, int y, int width, int height) {
        cv::rectangle(scan, cv::Rect(x, y, width, height), cv::Scalar(20, 20, 20), cv::FILLED);
    };
    square(scan.cols - 300, 200, 100, 103);
    const FoundScale skewed = findScale(scan, requestFor("square:20mm"));
    EXPECT_TRUE(skewed.found) << skewed.reason;
    EXPECT_NEAR(skewed.misfit, 1.5, 0.2);
    EXPECT_NEAR(skewed.pixelSize, 20.0 / std::sqrt(100.0 * 103.0), 2e-4);
    square(scan.cols - 300, 500, 60, 60);
    EXPECT_EQ(findScale(scan, requestFor("square:20mm")).reason, "more than one square");
    scan = scanWith({});
    square(scan.cols - 300, 200, 100, 112);
    EXPECT_FALSE(findScale(scan, requestFor("square:20mm")).found);
}

TEST(ScaleRequest, TakesWhatItWritesAndRefusesTheRest)
{
    EXPECT_EQ(ScaleRequest::marker("square:20mm").text(), "marker square 20 mm");
    EXPECT_EQ(ScaleRequest::marker("disc:1inch").text(), "marker disc 25.4 mm");
    EXPECT_EQ(ScaleRequest::marker("dots:7.5cm").text(), "marker dots 75 mm");
    EXPECT_EQ(ScaleRequest::ruler("inch").text(), "ruler inch");
    for (const char* text :
         {"", "square", "square:", "square:20", "square:-2mm", "square:0mm", "square:20mm x",
          "ring:20mm", "disc:nanmm", "disc:1e30mm", "square:20km", ":20mm"}) {
        EXPECT_THROW(ScaleRequest::marker(text), UsageError) << text;
    }
    EXPECT_THROW(ScaleRequest::ruler("m"), UsageError);
}
