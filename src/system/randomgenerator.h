#pragma once

#include "system/randomengine.h"

#include <memory>

template <class T>
class Vector;

/// Random numbers of the usual distributions, drawn from an engine that it owns. The same seed gives
/// the same sequence. Not copied: two copies would go on with the same numbers.
class RandomGenerator
{
public:
    /// A `RecommendedRandomEngine` with a seed from the clock.
    RandomGenerator();
    ~RandomGenerator();
    RandomGenerator(const RandomGenerator&) = delete;
    RandomGenerator& operator=(const RandomGenerator&) = delete;

    /// Deletes the former engine and owns the new one; drops the gaussian number held back, which the
    /// former engine has made, as `init` does. Raises `ValueError` for null.
    void setRandomEngine(RandomEngine* newEngine);

    /// Starts the sequence of this seed; a seed below 1 is replaced by the clock. Returns the seed
    /// used.
    long init(long seed);

    /// From 0 to the largest `long`.
    long uniformL();

    /// From 0 to `n - 1`.
    long uniformL(long n);

    /// From `a` to `b`, both included.
    long uniformL(long a, long b);

    /// In [0, 1), [0, x) and [a, b).
    double uniformLF();
    double uniformLF(double x);
    double uniformLF(double a, double b);

    /// An index drawn with a probability proportional to its weight; any index if the weights add up
    /// to less than 1. Raises `SizeError` for no weights.
    int draw(const Vector<int>& weights);

    /// True with probability `p`.
    bool bernoulli(float p);

    /// Polar method: two numbers from one pair of draws, the second kept for the next call.
    /// Source: Marsaglia and Bray, A convenient method for generating normal variables, 1964.
    double gaussian();
    double gaussian(double sigma);
    double gaussian(double mean, double sigma);

    /// Product method; the time grows with `lambda`, and `lambda` above 103 counts as about that,
    /// where `exp(-lambda)` is 0 in `float`.
    int poisson(float lambda);

private:
    bool hasSpare = false;
    double spare = 0.0;
    std::unique_ptr<RandomEngine> engine;
};
