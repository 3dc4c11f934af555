#include "samples/cloudfield.h"

#include "system/randomgenerator.h"

#include <cmath>
#include <cstddef>

namespace {

double smooth(double t)
{
    return t * t * (3.0 - 2.0 * t);
}

} // namespace

CloudField::CloudField(RandomGenerator& random)
{
    for (double& value : grid_) {
        value = random.uniformLF(-1.0, 1.0);
    }
}

double CloudField::at(double x, double y, double size) const
{
    const double column = std::floor(x / size);
    const double row = std::floor(y / size);
    const double fx = smooth(x / size - column);
    const double fy = smooth(y / size - row);
    const double upper = node(column, row) * (1 - fx) + node(column + 1, row) * fx;
    const double lower = node(column, row + 1) * (1 - fx) + node(column + 1, row + 1) * fx;
    return upper * (1 - fy) + lower * fy;
}

double CloudField::node(double column, double row) const
{
    const auto wrap = [](double value) {
        return static_cast<std::size_t>(static_cast<long>(value) & 63);
    };
    return grid_[wrap(row) * 64 + wrap(column)];
}
