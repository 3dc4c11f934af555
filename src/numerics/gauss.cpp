#include "numerics/gauss.h"

#include "system/exception.h"

#include <cmath>

namespace {

constexpr double pi = 3.141592653589793;
constexpr double rootOfTwoPi = 2.5066282746310002;

} // namespace

double Gauss::pdf(double x) const
{
    return std::exp(-0.5 * x * x) / rootOfTwoPi;
}

double Gauss::pdf(double x, double mean, double sigma) const
{
    const double twiceVariance = 2 * sigma * sigma;
    return std::exp(-(x - mean) * (x - mean) / twiceVariance) / std::sqrt(twiceVariance * pi);
}

double Gauss::cdf(double x) const
{
    if (x < 0) {
        return 1 - cdf(-x);
    }
    const double t = 1 / (1 + 0.2316419 * x);
    const double polynomial =
        0.31938153 + t * (-0.356563782 + t * (1.781477937 + t * (-1.821255978 + t * 1.330274429)));
    return 1 - pdf(x) * t * polynomial;
}

double Gauss::cdf(double x, double mean, double sigma) const
{
    if (sigma == 0) {
        return x < mean ? 0 : x > mean ? 1 : 0.5;
    }
    return cdf((x - mean) / sigma);
}

double Gauss::invcdf(double p) const
{
    if (!(p >= 0 && p <= 1)) {
        raise<RangeError>("double Gauss::invcdf(double) const",
                          "A probability lies between 0 and 1");
    }
    const double step = 0.001;
    double x = 0;
    if (p > 0.5) {
        while (cdf(x) < p) {
            x += step;
        }
    } else if (p < 0.5) {
        while (cdf(x) > p) {
            x -= step;
        }
    }
    return x;
}
