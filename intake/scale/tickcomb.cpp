#include "intake/scale/tickcomb.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

double medianOf(std::vector<double> values)
{
    if (values.empty()) {
        return 0.0;
    }
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// A dark place of a profile: where, how much darker than the lighter of the two maxima beside it
/// that is the darker, and how wide.
struct Notch
{
    double place = 0.0;
    double depth = 0.0;
    double width = 0.0;
};

/// All minima with the depth below both neighbouring maxima; `least` leaves out noise.
std::vector<Notch> notches(const std::vector<float>& profile, float least)
{
    std::vector<Notch> found;
    const std::size_t count = profile.size();
    std::size_t peak = 0; // the last maximum
    std::size_t pit = 0;  // the minimum after it
    const auto close = [&](std::size_t nextPeak) {
        const float depth = std::min(profile[peak], profile[nextPeak]) - profile[pit];
        // Middle of what lies below half of the depth.
        const float half = profile[pit] + depth / 2.0F;
        const auto cross = [&](std::size_t from, int step) {
            std::size_t at = from;
            while (profile[at] < half) {
                at = static_cast<std::size_t>(static_cast<long>(at) + step);
            }
            const std::size_t before = static_cast<std::size_t>(static_cast<long>(at) - step);
            const float part = (half - profile[before]) / (profile[at] - profile[before]);
            return static_cast<double>(before) + step * static_cast<double>(part);
        };
        const double left = cross(pit, -1);
        const double right = cross(pit, 1);
        found.push_back({(left + right) / 4.0, depth, (right - left) / 2.0});
    };
    bool falling = false;
    for (std::size_t k = 1; k < count; ++k) {
        if (!falling) {
            if (profile[k] > profile[peak]) {
                peak = k;
            } else if (profile[k] < profile[peak] - least) {
                falling = true;
                pit = k;
            }
        } else if (profile[k] < profile[pit]) {
            pit = k;
        } else if (profile[k] > profile[pit] + least) {
            // Rising: on to the next maximum.
            std::size_t top = k;
            std::size_t next = k;
            while (next + 1 < count && profile[next + 1] > profile[top] - least) {
                ++next;
                top = profile[next] > profile[top] ? next : top;
            }
            close(top);
            peak = top;
            falling = false;
            k = top;
        }
    }
    return found;
}

/// From one notch to the next at nearly the same distance, as far as it goes.
std::vector<std::size_t> chainFrom(const std::vector<Notch>& notches,
                                   std::size_t first,
                                   double distance,
                                   std::vector<int>& numbers)
{
    std::vector<std::size_t> chain = {first};
    numbers = {0};
    double step = distance;
    std::size_t at = first;
    while (true) {
        bool found = false;
        for (int skip = 1; skip <= 2 && !found; ++skip) {
            const double target = notches[at].place + skip * step;
            std::size_t nearest = at;
            for (std::size_t k = at + 1;
                 k < notches.size() && notches[k].place < target + 0.25 * step; ++k) {
                if (std::abs(notches[k].place - target) <= 0.22 * step &&
                    (nearest == at || std::abs(notches[k].place - target) <
                                          std::abs(notches[nearest].place - target))) {
                    nearest = k;
                }
            }
            if (nearest != at) {
                step = 0.85 * step + 0.15 * (notches[nearest].place - notches[at].place) / skip;
                at = nearest;
                chain.push_back(at);
                numbers.push_back(numbers.back() + skip);
                found = true;
            }
        }
        if (!found) {
            return chain;
        }
    }
}

/// A straight line through (number, place) of the ticks from `from` to `to`; gives the slope, and
/// the spread of the places about it.
double fitPeriod(const TickComb& comb, std::size_t from, std::size_t to, double& spread)
{
    const double count = static_cast<double>(to - from);
    double meanX = 0.0;
    double meanY = 0.0;
    for (std::size_t k = from; k < to; ++k) {
        meanX += comb.numbers[k] / count;
        meanY += comb.places[k] / count;
    }
    double xx = 0.0;
    double xy = 0.0;
    for (std::size_t k = from; k < to; ++k) {
        xx += (comb.numbers[k] - meanX) * (comb.numbers[k] - meanX);
        xy += (comb.numbers[k] - meanX) * (comb.places[k] - meanY);
    }
    const double slope = xy / xx;
    double squares = 0.0;
    for (std::size_t k = from; k < to; ++k) {
        const double rest = comb.places[k] - meanY - slope * (comb.numbers[k] - meanX);
        squares += rest * rest;
    }
    spread = std::sqrt(squares / count);
    return slope;
}

std::optional<TickComb> combOf(const std::vector<Notch>& notches,
                               const std::vector<std::size_t>& chain,
                               const std::vector<int>& numbers)
{
    TickComb comb;
    comb.numbers = numbers;
    std::vector<double> widths;
    for (const std::size_t k : chain) {
        comb.places.push_back(notches[k].place);
        widths.push_back(notches[k].width);
    }
    const double seen = static_cast<double>(chain.size());
    const double extras = static_cast<double>(chain.back() - chain.front() + 1) - seen;
    if (extras > 0.08 * seen || seen < 0.85 * comb.span()) {
        return std::nullopt;
    }
    double spread = 0.0;
    comb.period = fitPeriod(comb, 0, chain.size(), spread);
    if (!(comb.period > 0.0) || spread > 0.12 * comb.period + 0.05) {
        return std::nullopt;
    }
    comb.error = spread * std::sqrt(12.0) / (std::pow(seen, 1.5) * comb.period);
    double unused = 0.0;
    const double first = fitPeriod(comb, 0, chain.size() / 2, unused);
    const double second = fitPeriod(comb, chain.size() / 2, chain.size(), unused);
    comb.misfit = 100.0 * std::abs(second / first - 1.0);
    comb.tickWidth = medianOf(widths) / comb.period;
    return comb;
}

} // namespace

std::optional<TickComb> findTickComb(const std::vector<float>& profile, int least)
{
    // Depths first, to tell ticks from noise.
    std::vector<double> depths;
    for (const Notch& notch : notches(profile, 2.0F)) {
        depths.push_back(notch.depth);
    }
    if (static_cast<int>(depths.size()) < least) {
        return std::nullopt;
    }
    std::sort(depths.begin(), depths.end());
    const double typical = depths[depths.size() * 4 / 5];
    if (typical < 6.0) {
        return std::nullopt;
    }
    const std::vector<Notch> ticks = notches(profile, static_cast<float>(0.35 * typical));
    if (static_cast<int>(ticks.size()) < least) {
        return std::nullopt;
    }
    std::vector<double> steps;
    for (std::size_t k = 0; k + 1 < ticks.size(); ++k) {
        steps.push_back(ticks[k + 1].place - ticks[k].place);
    }
    const double step = medianOf(steps);
    std::vector<std::size_t> best;
    std::vector<int> bestNumbers;
    for (std::size_t first = 0; first < ticks.size(); ++first) {
        if (!best.empty() && std::find(best.begin(), best.end(), first) != best.end()) {
            continue;
        }
        std::vector<int> numbers;
        std::vector<std::size_t> chain = chainFrom(ticks, first, step, numbers);
        if (chain.size() > best.size()) {
            best = chain;
            bestNumbers = numbers;
        }
    }
    if (static_cast<int>(best.size()) < least) {
        return std::nullopt;
    }
    return combOf(ticks, best, bestNumbers);
}

namespace {

/// The lengths of ticks whose number leaves this remainder.
std::vector<double>
ofClass(const TickComb& comb, const std::vector<double>& lengths, int modulus, int remainder)
{
    std::vector<double> chosen;
    for (std::size_t k = 0; k < lengths.size(); ++k) {
        if (((comb.numbers[k] - remainder) % modulus + modulus) % modulus == 0) {
            chosen.push_back(lengths[k]);
        }
    }
    return chosen;
}

double share(const std::vector<double>& values, double above)
{
    return values.empty()
               ? 0.0
               : static_cast<double>(std::count_if(values.begin(), values.end(),
                                                   [&](double v) { return v > above; })) /
                     static_cast<double>(values.size());
}

bool isDecimal(const TickComb& comb, const std::vector<double>& lengths)
{
    int longest = 0;
    double most = -1.0;
    for (int r = 0; r < 10; ++r) {
        const std::vector<double> chosen = ofClass(comb, lengths, 10, r);
        const double median =
            chosen.empty() ? 0.0 : *std::min_element(chosen.begin(), chosen.end());
        if (median > most) {
            most = median;
            longest = r;
        }
    }
    std::vector<double> others;
    for (int r = 1; r < 10; ++r) {
        if (r != 5) {
            const std::vector<double> chosen = ofClass(comb, lengths, 10, longest + r);
            others.insert(others.end(), chosen.begin(), chosen.end());
        }
    }
    const double base = medianOf(others);
    const std::vector<double> tens = ofClass(comb, lengths, 10, longest);
    const std::vector<double> fives = ofClass(comb, lengths, 10, longest + 5);
    return comb.span() >= 14 && base > 0.0 && medianOf(tens) >= 1.25 * base &&
           share(tens, 1.15 * base) >= 0.75 && share(fives, 1.1 * base) >= 0.7 &&
           share(others, 1.12 * base) <= 0.15;
}

/// The number of ticks between the longest, if each halving has longer ticks; else 1. A stretch too
/// short to tell whether the longest are alike gives 1, too.
int binaryDivision(const TickComb& comb, const std::vector<double>& lengths)
{
    int division = 1;
    int remainder = 0;
    while (division < 64) {
        const int next = 2 * division;
        if (comb.span() < 2 * next) {
            return 1;
        }
        const std::vector<double> one = ofClass(comb, lengths, next, remainder);
        const std::vector<double> other = ofClass(comb, lengths, next, remainder + division);
        const double a = medianOf(one);
        const double b = medianOf(other);
        const double lower = std::min(a, b);
        const auto& upper = a > b ? one : other;
        const auto& below = a > b ? other : one;
        if (std::max(a, b) < 1.12 * lower || share(upper, 1.06 * lower) < 0.8 ||
            share(below, 1.12 * lower) > 0.2) {
            return division;
        }
        remainder = a > b ? remainder : remainder + division;
        division = next;
    }
    return 1;
}

bool isEven(const TickComb& comb, const std::vector<double>& lengths)
{
    const double median = medianOf(lengths);
    return comb.numbers.size() >= 5 && median > 0.0 && share(lengths, 1.12 * median) <= 0.05 &&
           share(lengths, 0.88 * median) >= 0.95;
}

} // namespace

TickPattern tickPattern(const TickComb& comb, const std::vector<double>& lengths)
{
    if (isDecimal(comb, lengths)) {
        return {TickOrder::Decimal, 10};
    }
    const int division = binaryDivision(comb, lengths);
    if (division >= 4) {
        return {TickOrder::Binary, division};
    }
    if (isEven(comb, lengths)) {
        return {TickOrder::Even, 1};
    }
    return {};
}
