#pragma once

/// The normal distribution.
class Gauss
{
public:
    /// Density of the standard normal distribution.
    double pdf(double x) const;
    double pdf(double x, double mean, double sigma) const;

    /// Probability of a value up to `x`, within 7.5e-8: Abramowitz and Stegun, Handbook of
    /// Mathematical Functions, formula 26.2.17. With `sigma` 0 all of it lies at the mean: 0 below,
    /// 0.5 there, 1 above.
    double cdf(double x) const;
    double cdf(double x, double mean, double sigma) const;

    /// The first multiple of 0.001 on the way from 0 at which `cdf` reaches `p`. `RangeError`
    /// unless `p` lies in [0, 1].
    double invcdf(double p) const;
};
