#include "host/results/plotaxis.h"

#include <algorithm>
#include <cmath>

namespace {

/// Ticks beyond this ratio of size to step can't be told apart in double precision.
constexpr double leastRelativeRange = 1e-9;

int decimalsOf(double step)
{
    return std::max(0, static_cast<int>(-std::floor(std::log10(step) + 1e-9)));
}

} // namespace

double PlotAxis::roundStep(double range, int wanted)
{
    const double raw = range / std::max(wanted - 1, 1);
    const double power = std::pow(10.0, std::floor(std::log10(raw)));
    const double factor = raw / power;
    return (factor < 1.5 ? 1.0 : factor < 3.5 ? 2.0 : factor < 7.5 ? 5.0 : 10.0) * power;
}

PlotAxis::PlotAxis(double least, double greatest, int wanted)
{
    const double size = std::max(std::fabs(least), std::fabs(greatest));
    double room = greatest - least;
    if (!(room > size * leastRelativeRange)) {
        room = size > 0.0 ? size * 0.1 : 1.0;
        const double middle = least / 2.0 + greatest / 2.0;
        least = middle - room / 2.0;
        greatest = middle + room / 2.0;
    }
    step_ = roundStep(room, wanted);
    low_ = std::floor(least / step_ + 1e-9) * step_;
    high_ = std::ceil(greatest / step_ - 1e-9) * step_;
}

PlotAxis PlotAxis::exactly(double low, double high, double step)
{
    PlotAxis axis;
    axis.low_ = low;
    axis.high_ = high;
    axis.step_ = step;
    return axis;
}

std::vector<double> PlotAxis::ticks() const
{
    std::vector<double> ticks;
    const double first = std::ceil(low_ / step_ - 1e-6);
    const double last = std::floor(high_ / step_ + 1e-6);
    for (double k = first; k <= last; k += 1.0) {
        ticks.push_back(k * step_);
    }
    return ticks;
}

QString PlotAxis::label(double tick) const
{
    const double greatest = std::max(std::fabs(low_), std::fabs(high_));
    if (greatest >= 1e7 || greatest < 1e-4) {
        return QString::number(tick, 'g', 6);
    }
    const QString text = QString::number(tick, 'f', decimalsOf(step_));
    return text.startsWith('-') && text.toDouble() == 0.0 ? text.mid(1) : text;
}
