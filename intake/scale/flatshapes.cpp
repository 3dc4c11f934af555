#include "intake/scale/flatshapes.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>

namespace {

using Loop = std::vector<cv::Point2d>;

/// The longest side of the picture on which loops are sought; edges are fitted on the whole one.
constexpr int reducedSide = 1800;
constexpr double leastSquare = 24.0;
/// In grey levels: what an edge must differ by, and by how much more than noise and texture.
constexpr double leastContrast = 25.0;

double chroma(const cv::Scalar& colour)
{
    return std::max({colour[0], colour[1], colour[2]}) -
           std::min({colour[0], colour[1], colour[2]});
}

double lightness(const cv::Scalar& colour)
{
    return 0.299 * colour[0] + 0.587 * colour[1] + 0.114 * colour[2];
}

/// Bilinear; NaN outside.
double sample(const cv::Mat& grey, const cv::Point2d& at)
{
    const int x = static_cast<int>(std::floor(at.x));
    const int y = static_cast<int>(std::floor(at.y));
    if (x < 0 || y < 0 || x + 1 >= grey.cols || y + 1 >= grey.rows) {
        return std::nan("");
    }
    const double u = at.x - x;
    const double v = at.y - y;
    const auto* upper = grey.ptr<unsigned char>(y) + x;
    const auto* lower = grey.ptr<unsigned char>(y + 1) + x;
    return (upper[0] * (1 - u) + upper[1] * u) * (1 - v) + (lower[0] * (1 - u) + lower[1] * u) * v;
}

/// Where the grey value passes half way between inside and outside, on a line through `at` along
/// the outward normal; nothing without a clear step.
std::optional<cv::Point2d>
edgeAt(const cv::Mat& grey, const cv::Point2d& at, const cv::Point2d& outward, double reach)
{
    const int count = static_cast<int>(std::ceil(reach * 2.0));
    std::vector<double> values;
    for (int k = -count; k <= count; ++k) {
        values.push_back(sample(grey, at + outward * (0.5 * k)));
        if (std::isnan(values.back())) {
            return std::nullopt;
        }
    }
    const int rim = std::max(1, count / 3);
    const auto mean = [&](int from) {
        double sum = 0.0;
        for (int k = from; k < from + rim; ++k) {
            sum += values[static_cast<std::size_t>(k)];
        }
        return sum / rim;
    };
    const double inside = mean(0);
    const double outside = mean(static_cast<int>(values.size()) - rim);
    if (std::abs(outside - inside) < leastContrast) {
        return std::nullopt;
    }
    const double half = (inside + outside) / 2.0;
    std::optional<cv::Point2d> best;
    double nearest = reach + 1.0;
    for (std::size_t k = 0; k + 1 < values.size(); ++k) {
        const double a = values[k] - half;
        const double b = values[k + 1] - half;
        if ((a < 0.0) != (b < 0.0) && (b > a) == (outside > inside)) {
            const double where = 0.5 * (static_cast<double>(k) + a / (a - b) - count);
            if (std::abs(where) < nearest) {
                nearest = std::abs(where);
                best = at + outward * where;
            }
        }
    }
    return best;
}

double dot(const cv::Point2d& a, const cv::Point2d& b)
{
    return a.x * b.x + a.y * b.y;
}

cv::Point2d unit(const cv::Point2d& a)
{
    return a * (1.0 / std::max(1e-12, cv::norm(a)));
}

/// A straight edge.
struct Edge
{
    cv::Point2d at;
    cv::Point2d along;
};

std::optional<Edge> fitEdge(const cv::Mat& grey,
                            const cv::Point2d& a,
                            const cv::Point2d& b,
                            const cv::Point2d& middle,
                            double reach)
{
    const cv::Point2d along = unit(b - a);
    cv::Point2d outward(along.y, -along.x);
    if (dot(outward, (a + b) * 0.5 - middle) < 0.0) {
        outward = -outward;
    }
    const int count = std::clamp(static_cast<int>(cv::norm(b - a)), 16, 400);
    std::vector<cv::Point2f> points;
    for (int k = 0; k < count; ++k) {
        const double part = 0.1 + 0.8 * k / (count - 1);
        if (const auto edge = edgeAt(grey, a + (b - a) * part, outward, reach)) {
            points.push_back(*edge - middle);
        }
    }
    if (points.size() < 0.8 * count) {
        return std::nullopt;
    }
    cv::Vec4f line;
    cv::fitLine(points, line, cv::DIST_HUBER, 0.0, 0.001, 0.001);
    const Edge edge{{line[2] + middle.x, line[3] + middle.y}, {line[0], line[1]}};
    double squares = 0.0;
    for (const cv::Point2f& point : points) {
        const cv::Point2d from = cv::Point2d(point) + middle - edge.at;
        squares += std::pow(from.x * edge.along.y - from.y * edge.along.x, 2.0);
    }
    const double spread = std::sqrt(squares / static_cast<double>(points.size()));
    return spread <= std::max(0.5, 0.006 * cv::norm(b - a)) ? std::optional(edge) : std::nullopt;
}

cv::Point2d crossing(const Edge& a, const Edge& b)
{
    const double turn = a.along.x * b.along.y - a.along.y * b.along.x;
    const cv::Point2d between = b.at - a.at;
    return a.at + a.along * ((between.x * b.along.y - between.y * b.along.x) / turn);
}

/// Mean colour and spread of lightness of the pixels in a closed line, without those in another.
struct Tone
{
    cv::Scalar colour;
    double spread = 0.0;
};

Tone toneOf(const cv::Mat& photograph, const Loop& loop, const Loop& without = {})
{
    std::vector<cv::Point> outer;
    for (const cv::Point2d& point : loop) {
        outer.emplace_back(cvRound(point.x), cvRound(point.y));
    }
    const cv::Rect box = cv::boundingRect(outer) & cv::Rect(0, 0, photograph.cols, photograph.rows);
    if (box.empty()) {
        return {cv::Scalar(), 255.0};
    }
    cv::Mat mask = cv::Mat::zeros(box.size(), CV_8U);
    cv::fillPoly(mask, outer, cv::Scalar(255), cv::LINE_8, 0, -box.tl());
    if (!without.empty()) {
        std::vector<cv::Point> inner;
        for (const cv::Point2d& point : without) {
            inner.emplace_back(cvRound(point.x), cvRound(point.y));
        }
        cv::fillPoly(mask, inner, cv::Scalar(0), cv::LINE_8, 0, -box.tl());
    }
    cv::Scalar mean;
    cv::Scalar spread;
    cv::meanStdDev(photograph(box), mean, spread, mask);
    return {mean, lightness(spread)};
}

Loop grown(const Loop& loop, const cv::Point2d& middle, double factor)
{
    Loop result;
    for (const cv::Point2d& point : loop) {
        result.push_back(middle + (point - middle) * factor);
    }
    return result;
}

/// One colour inside, one other all around: each quarter of the surroundings differs alike.
bool standsOut(const cv::Mat& photograph, const Loop& loop, double size, FlatShape& shape)
{
    const double rim = std::max(1.5, 0.03 * size);
    const Tone inside = toneOf(photograph, grown(loop, shape.middle, 1.0 - 3.0 * rim / size));
    const Loop inner = grown(loop, shape.middle, 1.0 + 2.0 * rim / size);
    const Loop outer = grown(loop, shape.middle, 1.0 + 5.0 * rim / size);
    const Tone around = toneOf(photograph, outer, inner);
    shape.colour = inside.colour;
    shape.around = around.colour;
    const double contrast = std::abs(lightness(inside.colour) - lightness(around.colour));
    return contrast >= leastContrast && inside.spread <= std::max(7.0, 0.12 * contrast) &&
           around.spread <= std::max(10.0, 0.2 * contrast);
}

std::optional<FlatShape>
fitSquare(const cv::Mat& photograph, const cv::Mat& grey, Loop corners, double reach)
{
    FlatShape shape;
    for (int round = 0; round < 2; ++round) {
        shape.middle = (corners[0] + corners[1] + corners[2] + corners[3]) * 0.25;
        std::vector<Edge> edges;
        for (std::size_t k = 0; k < 4; ++k) {
            const auto edge = fitEdge(grey, corners[k], corners[(k + 1) % 4], shape.middle, reach);
            if (!edge) {
                return std::nullopt;
            }
            edges.push_back(*edge);
        }
        for (std::size_t k = 0; k < 4; ++k) {
            const Edge& before = edges[(k + 3) % 4];
            if (std::abs(dot(before.along, edges[k].along)) > 0.2) {
                return std::nullopt;
            }
            corners[k] = crossing(before, edges[k]);
        }
    }
    shape.corners = corners;
    shape.size = std::sqrt(loopArea(corners));
    shape.misfit = squareMisfit(corners);
    if (shape.size < leastSquare || !standsOut(photograph, corners, shape.size, shape)) {
        return std::nullopt;
    }
    return shape;
}

std::optional<FlatShape>
fitDisc(const cv::Mat& photograph, const cv::Mat& grey, cv::RotatedRect ellipse, double reach)
{
    FlatShape shape;
    double spread = 0.0;
    for (int round = 0; round < 2; ++round) {
        const double radius = (ellipse.size.width + ellipse.size.height) / 4.0;
        const cv::Point2d middle = ellipse.center;
        const double within = std::min(reach, 0.7 * radius);
        const int count = std::clamp(static_cast<int>(6.0 * radius), 32, 360);
        std::vector<cv::Point2f> points;
        for (int k = 0; k < count; ++k) {
            const double angle = 2.0 * CV_PI * k / count;
            const cv::Point2d outward(std::cos(angle), std::sin(angle));
            if (const auto edge = edgeAt(grey, middle + outward * radius, outward, within)) {
                points.push_back(*edge);
            }
        }
        if (points.size() < 0.85 * count) {
            return std::nullopt;
        }
        ellipse = cv::fitEllipse(points);
        const double turn = ellipse.angle * CV_PI / 180.0;
        double squares = 0.0;
        for (const cv::Point2f& point : points) {
            const cv::Point2d from = cv::Point2d(point) - cv::Point2d(ellipse.center);
            const double u = (from.x * std::cos(turn) + from.y * std::sin(turn)) * 2.0 /
                             static_cast<double>(ellipse.size.width);
            const double v = (from.y * std::cos(turn) - from.x * std::sin(turn)) * 2.0 /
                             static_cast<double>(ellipse.size.height);
            squares += std::pow(std::hypot(u, v) - 1.0, 2.0);
        }
        spread = std::sqrt(squares / static_cast<double>(points.size()));
    }
    const double least = std::min(ellipse.size.width, ellipse.size.height);
    const double most = std::max(ellipse.size.width, ellipse.size.height);
    shape.middle = ellipse.center;
    shape.size = std::sqrt(least * most);
    shape.misfit = 100.0 * (most / least - 1.0);
    if (spread > std::max(0.012, 0.7 / shape.size)) {
        return std::nullopt;
    }
    Loop rim;
    for (int k = 0; k < 36; ++k) {
        const double angle = k * CV_PI / 18.0;
        rim.push_back(shape.middle +
                      cv::Point2d(std::cos(angle), std::sin(angle)) * (shape.size / 2.0));
        if (k % 9 == 0) {
            shape.corners.push_back(rim.back());
        }
    }
    return standsOut(photograph, rim, shape.size, shape) ? std::optional(shape) : std::nullopt;
}

/// Adds a shape unless it was found already, from another level of lightness.
void addOnce(std::vector<FlatShape>& shapes, const FlatShape& shape)
{
    for (const FlatShape& other : shapes) {
        if (cv::norm(other.middle - shape.middle) < 0.1 * shape.size &&
            std::abs(other.size - shape.size) < 0.1 * shape.size) {
            return;
        }
    }
    shapes.push_back(shape);
}

} // namespace

bool FlatShape::isPrinted() const
{
    return chroma(colour) <= 30.0 && lightness(colour) <= 0.55 * lightness(around) &&
           chroma(around) <= 60.0;
}

double loopArea(const std::vector<cv::Point2d>& loop)
{
    double twice = 0.0;
    for (std::size_t k = 0; k < loop.size(); ++k) {
        const cv::Point2d& a = loop[k];
        const cv::Point2d& b = loop[(k + 1) % loop.size()];
        twice += a.x * b.y - a.y * b.x;
    }
    return std::abs(twice) / 2.0;
}

double squareMisfit(const std::vector<cv::Point2d>& corners)
{
    const double side = std::sqrt(loopArea(corners));
    double worst = 0.0;
    for (std::size_t k = 0; k < 4; ++k) {
        worst = std::max(worst, std::abs(cv::norm(corners[k] - corners[(k + 1) % 4]) / side - 1.0));
    }
    for (std::size_t k = 0; k < 2; ++k) {
        const double diagonal = cv::norm(corners[k] - corners[k + 2]) / std::sqrt(2.0);
        worst = std::max(worst, std::abs(diagonal / side - 1.0));
    }
    return 100.0 * worst;
}

FlatShapes::FlatShapes(const cv::Mat& photograph)
    : photograph_(photograph)
{
    cv::cvtColor(photograph, grey_, cv::COLOR_RGB2GRAY);
    const double factor =
        std::max(1.0, std::max(grey_.cols, grey_.rows) / static_cast<double>(reducedSide));
    cv::Mat reduced;
    cv::resize(grey_, reduced, cv::Size(), 1.0 / factor, 1.0 / factor, cv::INTER_AREA);
    cv::GaussianBlur(reduced, reduced, cv::Size(3, 3), 0.0);
    const double across = static_cast<double>(grey_.cols) / reduced.cols;
    const double down = static_cast<double>(grey_.rows) / reduced.rows;
    std::vector<std::vector<cv::Point>> contours;
    for (int level = 16; level <= 240; level += 14) {
        cv::findContours(reduced < level, contours, cv::RETR_LIST, cv::CHAIN_APPROX_NONE);
        for (const auto& contour : contours) {
            // Squares and discs fill their box by half at least, whichever way they are turned.
            const cv::Rect box = cv::boundingRect(contour);
            if (box.width < 5 || box.height < 5 || box.width > 1.2 * box.height ||
                box.height > 1.2 * box.width || cv::contourArea(contour) < 0.4 * box.area()) {
                continue;
            }
            Loop loop;
            for (const cv::Point& point : contour) {
                loop.emplace_back((point.x + 0.5) * across - 0.5, (point.y + 0.5) * down - 0.5);
            }
            loops_.push_back(std::move(loop));
        }
    }
}

std::vector<FlatShape> FlatShapes::squares() const
{
    const double reach =
        3.0 + 2.0 * std::max(grey_.cols, grey_.rows) / static_cast<double>(reducedSide);
    std::vector<FlatShape> shapes;
    for (const Loop& loop : loops_) {
        std::vector<cv::Point2f> points(loop.begin(), loop.end());
        std::vector<cv::Point2f> corners;
        cv::approxPolyDP(points, corners, 0.04 * cv::arcLength(points, true), true);
        if (corners.size() != 4 || !cv::isContourConvex(corners)) {
            continue;
        }
        const Loop square(corners.begin(), corners.end());
        if (loopArea(square) < 0.6 * leastSquare * leastSquare || squareMisfit(square) > 14.0) {
            continue;
        }
        if (const auto shape = fitSquare(photograph_, grey_, square, reach)) {
            addOnce(shapes, *shape);
        }
    }
    return shapes;
}

std::vector<FlatShape> FlatShapes::discs(double leastDiameter) const
{
    const double reach =
        3.0 + 2.0 * std::max(grey_.cols, grey_.rows) / static_cast<double>(reducedSide);
    std::vector<FlatShape> shapes;
    for (const Loop& loop : loops_) {
        const std::vector<cv::Point2f> points(loop.begin(), loop.end());
        const cv::RotatedRect ellipse = cv::fitEllipse(points);
        const double least = std::min(ellipse.size.width, ellipse.size.height);
        const double most = std::max(ellipse.size.width, ellipse.size.height);
        const double filled = cv::contourArea(points) / (CV_PI * least * most / 4.0);
        if (most < 0.9 * leastDiameter || least < 0.8 * most || filled < 0.75 || filled > 1.1) {
            continue;
        }
        const auto shape = fitDisc(photograph_, grey_, ellipse, reach);
        if (shape && shape->size >= leastDiameter) {
            addOnce(shapes, *shape);
        }
    }
    return shapes;
}
