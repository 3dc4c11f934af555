#pragma once

#include <opencv2/core.hpp>

#include <optional>
#include <vector>

/// Dark ticks at equal distances along a straight line.
struct TickComb
{
    /// Positions along the line, in pixels, and their numbers: one more from tick to tick, more
    /// where a tick isn't seen.
    std::vector<double> places;
    std::vector<int> numbers;
    double period = 0.0;
    /// Standard error of the period, as a share of it.
    double error = 0.0;
    /// Periods of the two halves against each other, in per cent.
    double misfit = 0.0;
    /// How wide a tick is, as a share of the period.
    double tickWidth = 0.0;

    /// How many ticks there would be if all were seen.
    int span() const { return numbers.back() - numbers.front() + 1; }
};

/// Finds the longest even comb of dark ticks in a profile with two values a pixel. Nothing if there
/// are fewer than `least`, or some between them that don't fit, or many missing.
std::optional<TickComb> findTickComb(const std::vector<float>& profile, int least);

/// How the ticks' lengths are ordered.
enum class TickOrder {
    None,
    /// All alike.
    Even,
    /// Each tenth is longer; so may be the fifths.
    Decimal,
    /// Longer at each halving.
    Binary
};

struct TickPattern
{
    TickOrder order = TickOrder::None;
    /// Of `Binary`: how many ticks stand for the whole unit.
    int division = 1;
};

/// Tells the order of ticks from their lengths, one for each tick of the comb.
TickPattern tickPattern(const TickComb& comb, const std::vector<double>& lengths);
