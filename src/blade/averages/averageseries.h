#pragma once

#include "numerics/vector.h"

#include <set>
#include <string>
#include <vector>

/// What tells the averages of one run apart.
struct AverageSeries
{
    /// Between the name of the stack and the labels.
    std::string infix;
    std::vector<std::string> labels;
    /// The sort keys: centres of bins, or targets.
    Vector<float> positions;
};

/// A key with six decimals of which two bytes are left behind the sign that stands for the point:
/// 12.5 with "h" is "12h50". A sign of two bytes leaves one digit.
std::string keyLabel(float key, const std::string& sign);

/// The numbers 0 to `count` - 1, with as many digits as `count` has.
std::vector<std::string> numberLabels(int count);

/// The names of one run's averages, each of which differs from all before: where labels repeat, the
/// second gets "-2" behind it, the third "-3".
class AverageNames
{
public:
    explicit AverageNames(const std::string& prefix)
        : prefix_(prefix)
    {}

    std::string next(const std::string& label);

private:
    std::string prefix_;
    std::set<std::string> used_;
};
