#pragma once

#include "system/randomengine.h"

#include <cstdint>

/// Three generators of 64 bits combined (linear congruential, xorshift, multiply with carry), with
/// a period of about 3e57. Source: Press et al., Numerical Recipes, 3rd edition, section 7.1.1.
///
/// Several threads may draw from one engine: drawing is a critical section.
class RecommendedRandomEngine : public RandomEngine
{
public:
    long init(long seed) override;
    long uniformL() override;
    double uniformLF() override;

    /// All 64 bits of the next word.
    std::uint64_t uniformLL();

private:
    std::uint64_t u = 0;
    std::uint64_t v = 0;
    std::uint64_t w = 0;
};
