#pragma once

/// Source of uniformly distributed numbers.
class RandomEngine
{
public:
    virtual ~RandomEngine();

    /// Starts the sequence of this seed; a seed below 1 is replaced by the clock. Returns the seed
    /// used.
    virtual long init(long seed) = 0;

    /// From 0 to the largest `long`.
    virtual long uniformL() = 0;

    /// In [0, 1).
    virtual double uniformLF() = 0;
};
