#pragma once

#include <array>

class RandomGenerator;

/// Smooth random field: random values on a grid of 64 cells a side, repeated.
class CloudField
{
public:
    /// 0 everywhere.
    CloudField() = default;

    explicit CloudField(RandomGenerator& random);

    /// In [-1, 1]; features are about `size` pixels wide.
    double at(double x, double y, double size) const;

private:
    double node(double column, double row) const;

    std::array<double, 64 * 64> grid_{};
};
