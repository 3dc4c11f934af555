#pragma once

#include <QString>

#include <vector>

/// A range of numbers with ticks at round ones: steps of 1, 2 or 5 times a power of ten.
class PlotAxis
{
public:
    PlotAxis() = default;

    /// The least range with ticks at its ends that holds both numbers, which are finite. About
    /// `wanted` ticks, at least 2. Equal numbers get some room on both sides.
    PlotAxis(double least, double greatest, int wanted);

    /// Exactly from `low` to `high`, which differ, with the ticks of this step inside.
    static PlotAxis exactly(double low, double high, double step);

    double low() const { return low_; }

    double high() const { return high_; }

    double step() const { return step_; }

    std::vector<double> ticks() const;

    /// A tick with as many decimals as the step needs.
    QString label(double tick) const;

    /// The step for about `wanted` ticks over a range.
    static double roundStep(double range, int wanted);

private:
    double low_ = 0.0;
    double high_ = 1.0;
    double step_ = 0.2;
};
