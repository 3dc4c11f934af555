#include "system/recommendedrandomengine.h"

#include <algorithm>
#include <ctime>
#include <limits>

long RecommendedRandomEngine::init(long seed)
{
    const long used = seed < 1 ? static_cast<long>(std::time(nullptr)) : seed;
    w = 1;
    v = 4101842887655102017U;
    u = static_cast<std::uint64_t>(used) ^ v;
    uniformLL();
    v = u;
    uniformLL();
    w = v;
    uniformLL();
    return used;
}

long RecommendedRandomEngine::uniformL()
{
    const std::uint64_t largest = std::numeric_limits<long>::max();
    const std::uint64_t word = uniformLL();
    return static_cast<long>(word > largest ? word % largest : word);
}

double RecommendedRandomEngine::uniformLF()
{
    // The largest words round up to 2^64 as a double.
    const double belowOne = 1.0 - std::numeric_limits<double>::epsilon() / 2.0;
    return std::min(static_cast<double>(uniformLL()) * 5.421010862427522e-20, belowOne);
}

std::uint64_t RecommendedRandomEngine::uniformLL()
{
    std::uint64_t word = 0;
#pragma omp critical(recommended_random_engine_uniform_ll)
    {
        u = u * 2862933555777941757U + 7046029254386353087U;
        v ^= v >> 17;
        v ^= v << 31;
        v ^= v >> 8;
        w = 4294957665U * (w & 0xffffffffU) + (w >> 32);
        std::uint64_t x = u ^ (u << 21);
        x ^= x >> 35;
        x ^= x << 4;
        word = (x + v) ^ w;
    }
    return word;
}
