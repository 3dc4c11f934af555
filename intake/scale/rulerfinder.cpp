#include "intake/scale/rulerfinder.h"

#include "intake/scale/tickcomb.h"
#include "intake/scale/tickstrips.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <optional>

namespace {

constexpr double mostMisfit = 5.0;
constexpr double mostError = 0.002;
constexpr double leastPeriod = 2.4;
constexpr double mostPeriod = 60.0;
constexpr int leastTicks = 5;
/// Of ticks of one length, if they shall be millimetres.
constexpr int leastEvenMillimetres = 20;

/// A comb on the photograph.
struct RulerEdge
{
    cv::Point2d from;
    cv::Point2d to;
    double period = 0.0;
    double tickLength = 0.0;
    TickComb comb;
    TickPattern pattern;
    /// Nothing else stands between the ticks.
    bool clear = false;
    std::vector<cv::Point2d> place;

    cv::Point2d axis() const { return (to - from) * (1.0 / cv::norm(to - from)); }
};

double medianOf(std::vector<double> values)
{
    if (values.empty()) {
        return 0.0;
    }
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// The picture beside a comb, with what its ticks look like there.
class TickPicture
{
public:
    /// `offset` is the comb's distance below the strip's middle line, in pixels.
    TickPicture(const cv::Mat& grey, const TickStrip& strip, const TickComb& comb, double offset)
        : comb_(comb)
        , rowStep_(std::max(0.5, comb.period / 12.0))
    {
        const cv::Point2d axis = (strip.to - strip.from) * (1.0 / strip.length());
        const cv::Point2d down = cv::Point2d(-axis.y, axis.x) * offset;
        pixels_ = straightened(grey, {strip.from + down, strip.to + down}, middle, rowStep_);
        std::vector<double> depths;
        for (const double place : comb.places) {
            depths.push_back(darkness(place, middle));
        }
        contrast_ = medianOf(depths);
    }

    /// The rows over which each tick is dark, both included.
    void measure()
    {
        for (const double place : comb_.places) {
            tops_.push_back(middle - reach(place, -1));
            ends_.push_back(middle + reach(place, 1));
        }
    }

    std::vector<double> lengths() const
    {
        std::vector<double> result;
        for (std::size_t k = 0; k < tops_.size(); ++k) {
            result.push_back((ends_[k] - tops_[k] + 1) * rowStep_);
        }
        return result;
    }

    double topOffset() const { return (medianOf(tops_) - middle) * rowStep_; }

    double endOffset() const { return (medianOf(ends_) - middle) * rowStep_; }

    double contrast() const { return contrast_; }

    /// Thin lines on one ground that goes on beyond one of their ends: no patches of different
    /// colours, whose borders end at other borders, and no ticks between that are too fine to be
    /// seen one by one. Two rows at each end are left out.
    bool isClear() const
    {
        const int top = static_cast<int>(medianOf(tops_));
        const int end = static_cast<int>(medianOf(ends_));
        const int beyond = 3 + (end - top) / 3;
        std::vector<double> lengthwise;
        for (int row = top + 2; row <= end - 2; ++row) {
            std::vector<double> values = between(row);
            lengthwise.push_back(medianOf(values));
            std::sort(values.begin(), values.end());
            const std::size_t tenth = values.size() / 10;
            if (values.empty() ||
                values[values.size() - 1 - tenth] - values[tenth] > 0.4 * contrast_) {
                return false;
            }
        }
        if (lengthwise.size() < 3 || comb_.tickWidth > 0.35) {
            return false;
        }
        const auto [lowest, highest] = std::minmax_element(lengthwise.begin(), lengthwise.end());
        const auto goesOn = [&](int from, int to) {
            double darkest = 255.0;
            for (int row = from; row <= to; ++row) {
                darkest = std::min(darkest, medianOf(between(row)));
            }
            return darkest >= *lowest - 0.15 * contrast_;
        };
        return *highest - *lowest <= 0.12 * contrast_ &&
               (goesOn(top - beyond, top) || goesOn(end, end + beyond));
    }

private:
    static constexpr int middle = 110;

    double at(int row, double place) const
    {
        const int column = std::clamp(cvRound(2.0 * place), 0, pixels_.cols - 1);
        return pixels_.at<float>(std::clamp(row, 0, pixels_.rows - 1), column);
    }

    /// How light it is between neighbouring ticks.
    std::vector<double> between(int row) const
    {
        std::vector<double> values;
        for (std::size_t k = 0; k + 1 < comb_.places.size(); ++k) {
            if (comb_.numbers[k + 1] == comb_.numbers[k] + 1) {
                values.push_back(least(row, comb_.places[k] + 0.25 * comb_.period,
                                       comb_.places[k + 1] - 0.25 * comb_.period));
            }
        }
        return values;
    }

    double least(int row, double from, double to) const
    {
        double value = 255.0;
        for (double place = from; place <= to; place += 0.5) {
            value = std::min(value, at(row, place));
        }
        return value;
    }

    double darkness(double place, int row) const
    {
        const double half = comb_.period / 2.0;
        const double light = (at(row, place - half) + at(row, place + half)) / 2.0;
        return light - least(row, place - 0.2 * comb_.period, place + 0.2 * comb_.period);
    }

    double reach(double place, int step) const
    {
        int row = middle;
        while (row > 1 && row < pixels_.rows - 2 &&
               (darkness(place, row + step) >= 0.5 * contrast_ ||
                darkness(place, row + 2 * step) >= 0.5 * contrast_)) {
            row += step;
        }
        return std::abs(row - middle);
    }

    const TickComb& comb_;
    double rowStep_;
    double contrast_ = 0.0;
    cv::Mat pixels_;
    std::vector<double> tops_;
    std::vector<double> ends_;
};

/// All combs beside a strip of one level of the pyramid; `scale` is that level's pixel.
void addEdges(std::vector<RulerEdge>& edges, const cv::Mat& grey, TickStrip strip, double scale)
{
    constexpr int rows = 24;
    constexpr int thick = 5;
    const cv::Point2d axis = (strip.to - strip.from) * (1.0 / strip.length());
    const cv::Point2d down(-axis.y, axis.x);
    strip.from -= axis * 16.0;
    strip.to += axis * 16.0;
    const cv::Mat pixels = straightened(grey, strip, rows, 1.0);
    for (int row = 0; row + thick <= pixels.rows; row += 3) {
        cv::Mat mean;
        cv::reduce(pixels.rowRange(row, row + thick), mean, 0, cv::REDUCE_AVG);
        const auto comb = findTickComb(mean, leastTicks);
        if (!comb || comb->period < leastPeriod || comb->period > mostPeriod) {
            continue;
        }
        const double offset = row + thick / 2 - rows;
        TickPicture ticks(grey, strip, *comb, offset);
        if (ticks.contrast() < 8.0) {
            continue;
        }
        ticks.measure();
        RulerEdge edge;
        edge.comb = *comb;
        edge.pattern = tickPattern(*comb, ticks.lengths());
        edge.clear = ticks.isClear();
        edge.period = comb->period * scale;
        edge.tickLength = medianOf(ticks.lengths()) * scale;
        const auto place = [&](double along, double across) {
            return (strip.from + axis * along + down * across) * scale;
        };
        const double first = comb->places.front();
        const double last = comb->places.back();
        edge.from = place(first, offset);
        edge.to = place(last, offset);
        const double top = offset + ticks.topOffset();
        const double end = offset + ticks.endOffset();
        edge.place = {place(first, top), place(last, top), place(last, end), place(first, end)};
        edges.push_back(edge);
    }
}

std::vector<RulerEdge> rulerEdges(const cv::Mat& photograph)
{
    cv::Mat grey;
    cv::cvtColor(photograph, grey, cv::COLOR_RGB2GRAY);
    std::vector<RulerEdge> edges;
    for (double scale = 1.0; std::min(grey.cols, grey.rows) >= 64; scale *= 2.0) {
        for (const TickStrip& strip : findTickStrips(grey)) {
            addEdges(edges, grey, strip, scale);
        }
        cv::Mat smaller;
        cv::pyrDown(grey, smaller);
        grey = smaller;
    }
    return edges;
}

/// Finer ticks stand along the same line.
bool hasFiner(const RulerEdge& edge, const std::vector<RulerEdge>& edges)
{
    const cv::Point2d axis = edge.axis();
    const double length = cv::norm(edge.to - edge.from);
    const auto along = [&](const cv::Point2d& at) { return (at - edge.from).dot(axis); };
    return std::any_of(edges.begin(), edges.end(), [&](const RulerEdge& other) {
        const double across = std::abs((other.from + other.to - 2.0 * edge.from).cross(axis)) / 2.0;
        const double from = std::min(along(other.from), along(other.to));
        const double to = std::max(along(other.from), along(other.to));
        return other.period < 0.7 * edge.period && std::abs(other.axis().dot(axis)) > 0.99 &&
               across <= 2.0 * edge.tickLength + 2.0 * edge.period &&
               std::min(to, length) - std::max(from, 0.0) > 0.3 * length;
    });
}

/// Pixels a millimetre if the edge is one of the unit's; 0 if not.
double pixelsPerMillimetre(const RulerEdge& edge,
                           ScaleRequest::Unit unit,
                           const std::vector<RulerEdge>& edges)
{
    const TickOrder order = edge.pattern.order;
    const bool inches = unit == ScaleRequest::Unit::Inch;
    if (order == TickOrder::Decimal && !inches) {
        return edge.period;
    }
    if (order == TickOrder::Binary && inches && edge.pattern.division >= 8) {
        return edge.period * edge.pattern.division / 25.4;
    }
    if (order != TickOrder::Even || !edge.clear || hasFiner(edge, edges)) {
        return 0.0;
    }
    if (unit == ScaleRequest::Unit::Millimetre) {
        return edge.comb.span() >= leastEvenMillimetres ? edge.period : 0.0;
    }
    return edge.period / (inches ? 25.4 : 10.0);
}

/// An edge that tells the scale.
struct Reading
{
    const RulerEdge* edge = nullptr;
    double pixelsPerMillimetre = 0.0;
};

std::vector<Reading> readings(const std::vector<RulerEdge>& edges, ScaleRequest::Unit unit)
{
    std::vector<Reading> result;
    for (const RulerEdge& edge : edges) {
        if (edge.comb.error <= mostError) {
            const double scale = pixelsPerMillimetre(edge, unit, edges);
            if (scale > 0.0) {
                result.push_back({&edge, scale});
            }
        }
    }
    return result;
}

bool disagree(const std::vector<Reading>& some, double scale, double tolerance)
{
    return std::any_of(some.begin(), some.end(), [&](const Reading& reading) {
        return std::abs(reading.pixelsPerMillimetre / scale - 1.0) > tolerance;
    });
}

} // namespace

FoundScale findRuler(const cv::Mat& photograph, ScaleRequest::Unit unit)
{
    const std::vector<RulerEdge> edges = rulerEdges(photograph);
    std::vector<Reading> found = readings(edges, unit);
    const auto isOrdered = [](const Reading& reading) {
        return reading.edge->pattern.order != TickOrder::Even;
    };
    if (std::any_of(found.begin(), found.end(), isOrdered)) {
        found.erase(std::remove_if(found.begin(), found.end(),
                                   [&](const Reading& reading) { return !isOrdered(reading); }),
                    found.end());
    }
    if (found.empty()) {
        return FoundScale::none("no ruler");
    }
    const Reading best =
        *std::min_element(found.begin(), found.end(), [](const Reading& a, const Reading& b) {
            return a.edge->comb.error < b.edge->comb.error;
        });
    std::vector<Reading> others =
        readings(edges, unit == ScaleRequest::Unit::Inch ? ScaleRequest::Unit::Millimetre
                                                         : ScaleRequest::Unit::Inch);
    others.erase(std::remove_if(others.begin(), others.end(),
                                [&](const Reading& reading) { return !isOrdered(reading); }),
                 others.end());
    if (disagree(found, best.pixelsPerMillimetre, 0.02) ||
        (isOrdered(best) && disagree(others, best.pixelsPerMillimetre, 0.03))) {
        return FoundScale::none("rulers that disagree");
    }
    if (best.edge->comb.misfit > mostMisfit) {
        return FoundScale::none("the ruler is seen too much from the side");
    }
    FoundScale result;
    result.found = true;
    result.pixelSize = 1.0 / best.pixelsPerMillimetre;
    result.misfit = best.edge->comb.misfit;
    result.place = best.edge->place;
    return result;
}
