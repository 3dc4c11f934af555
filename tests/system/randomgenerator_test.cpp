#include "support/vectors.h"
#include "system/exception.h"
#include "system/randomgenerator.h"
#include "system/recommendedrandomengine.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <set>
#include <tuple>

namespace {

/// Gives out a list of numbers, over and over, and counts.
class ListEngine : public RandomEngine
{
public:
    explicit ListEngine(std::vector<double> numbers)
        : numbers_(std::move(numbers))
    {}

    long init(long seed) override { return seed; }

    long uniformL() override { return drawn++; }

    double uniformLF() override
    {
        return numbers_[static_cast<std::size_t>(drawn++) % numbers_.size()];
    }

    int drawn = 0;

private:
    std::vector<double> numbers_;
};

/// Expects mean and variance of many draws within five standard errors, that of the variance given
/// in multiples of itself.
void expectMoments(double mean, double variance, double error, const std::function<double()>& draw)
{
    constexpr int n = 200000;
    double sum = 0.0;
    double squares = 0.0;
    for (int i = 0; i < n; ++i) {
        const double x = draw() - mean;
        sum += x;
        squares += x * x;
    }
    EXPECT_NEAR(sum / n, 0.0, 5 * std::sqrt(variance / n));
    EXPECT_NEAR(squares / n, variance, 5 * error * variance / std::sqrt(n));
}

} // namespace

// The words were computed with integers of unlimited size, reduced after each step.
TEST(RecommendedRandomEngine, GivesTheWordsOfItsFormula)
{
    const std::tuple<long, std::uint64_t, std::uint64_t, std::uint64_t> cases[] = {
        {1, 17925598777506749664U, 7585103483612287758U, 3653309396730382075U},
        {20240309, 11661857901160301875U, 16680502124837281214U, 13441905365851901757U},
        {9223372036854775807, 1164634571264786880U, 14870275061830277811U, 10500285931814836774U},
    };
    for (const auto& [seed, first, second, tenThousandth] : cases) {
        RecommendedRandomEngine engine;
        EXPECT_EQ(engine.init(seed), seed);
        EXPECT_EQ(engine.uniformLL(), first);
        EXPECT_EQ(engine.uniformLL(), second);
        for (int i = 3; i < 10000; ++i) {
            engine.uniformLL();
        }
        EXPECT_EQ(engine.uniformLL(), tenThousandth);
    }
}

TEST(RecommendedRandomEngine, FoldsTheTopBitAndScalesToOne)
{
    RecommendedRandomEngine engine;
    engine.init(1);
    EXPECT_EQ(engine.uniformL(), 8702226740651973857); // 17925598777506749664 - (2^63 - 1)
    EXPECT_EQ(engine.uniformL(), 7585103483612287758);
    engine.init(1);
    EXPECT_DOUBLE_EQ(engine.uniformLF(), 17925598777506749664.0 / std::ldexp(1.0, 64));
    EXPECT_GE(engine.init(0), 1700000000);
    EXPECT_GE(engine.init(-7), 1700000000);
}

TEST(RecommendedRandomEngine, ThreadsShareOneSequence)
{
    RecommendedRandomEngine serial;
    serial.init(5);
    std::set<std::uint64_t> expected;
    for (int i = 0; i < 4000; ++i) {
        expected.insert(serial.uniformLL());
    }
    RecommendedRandomEngine shared;
    shared.init(5);
    std::set<std::uint64_t> all;
#pragma omp parallel for num_threads(4)
    for (int i = 0; i < 4000; ++i) {
        const std::uint64_t word = shared.uniformLL();
#pragma omp critical
        all.insert(word);
    }
    EXPECT_EQ(all, expected);
}

TEST(RandomGenerator, DistributionsHaveTheirMomentsAndRanges)
{
    RandomGenerator generator;
    generator.init(7);
    expectMoments(10.0, 4.0, std::sqrt(2.0), [&] { return generator.gaussian(10.0, 2.0); });
    expectMoments(6.0, 6.0, std::sqrt(2.0 + 1 / 6.0), [&] { return generator.poisson(6.0F); });
    expectMoments(0.3, 0.21, 1.0, [&] { return generator.bernoulli(0.3F); });
    std::set<long> seen;
    for (int i = 0; i < 1000; ++i) {
        seen.insert(generator.uniformL(-2, 3));
        const double x = generator.uniformLF(5.0, 6.0);
        EXPECT_TRUE(x >= 5.0 && x < 6.0);
    }
    EXPECT_EQ(seen, (std::set<long>{-2, -1, 0, 1, 2, 3}));
}

TEST(RandomGenerator, DrawsByWeight)
{
    RandomGenerator generator;
    generator.init(9);
    Vector<int> weights = vectorOf<int>({0, 3, 0, 1});
    int hits[4] = {};
    for (int i = 0; i < 40000; ++i) {
        ++hits[generator.draw(weights)];
    }
    EXPECT_EQ(hits[0] + hits[2], 0);
    EXPECT_NEAR(hits[1], 30000, 5 * std::sqrt(40000 * 0.75 * 0.25));

    weights.fill(0);
    std::set<int> seen;
    for (int i = 0; i < 200; ++i) {
        seen.insert(generator.draw(weights));
    }
    EXPECT_EQ(seen.size(), 4U);
    EXPECT_THROW(generator.draw(Vector<int>()), SizeError);
}

TEST(RandomGenerator, OnePairOfDrawsMakesTwoNormalNumbers)
{
    RandomGenerator generator;
    auto* engine = new ListEngine({0.75, 0.25});
    generator.setRandomEngine(engine);
    // a = 0.5, b = -0.5, s = 0.5
    const double f = std::sqrt(-2.0 * std::log(0.5) / 0.5);
    EXPECT_DOUBLE_EQ(generator.gaussian(), -0.5 * f);
    EXPECT_DOUBLE_EQ(generator.gaussian(2.0), 0.5 * f * 2.0);
    EXPECT_EQ(engine->drawn, 2);
    generator.gaussian();
    EXPECT_EQ(engine->drawn, 4);
    EXPECT_THROW(generator.setRandomEngine(nullptr), ValueError);
    EXPECT_EQ(generator.uniformL(), 4);
}
