#include "numerics/vector.h"
#include "system/exception.h"
#include "system/randomgenerator.h"
#include "system/recommendedrandomengine.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <set>
#include <thread>

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

struct Moments
{
    double mean = 0.0;
    double variance = 0.0;
};

Moments moments(int count, const std::function<double()>& draw)
{
    double sum = 0.0;
    double squares = 0.0;
    for (int i = 0; i < count; ++i) {
        const double x = draw();
        sum += x;
        squares += x * x;
    }
    const double mean = sum / count;
    return {mean, squares / count - mean * mean};
}

} // namespace

// The words were computed with integers of unlimited size, reduced after each step.
TEST(RecommendedRandomEngine, GivesTheWordsOfItsFormula)
{
    struct Case
    {
        long seed;
        std::uint64_t first;
        std::uint64_t second;
        std::uint64_t last;
    };

    const Case cases[] = {
        {1, 17925598777506749664U, 7585103483612287758U, 3653309396730382075U},
        {20240309, 11661857901160301875U, 16680502124837281214U, 13441905365851901757U},
        {9223372036854775807, 1164634571264786880U, 14870275061830277811U, 10500285931814836774U},
    };
    for (const Case& c : cases) {
        RecommendedRandomEngine engine;
        EXPECT_EQ(engine.init(c.seed), c.seed);
        EXPECT_EQ(engine.uniformLL(), c.first);
        EXPECT_EQ(engine.uniformLL(), c.second);
        std::uint64_t last = 0;
        for (int i = 2; i < 10000; ++i) {
            last = engine.uniformLL();
        }
        EXPECT_EQ(last, c.last);
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
    std::vector<std::vector<std::uint64_t>> drawn(4);
    std::vector<std::thread> threads;
    for (auto& words : drawn) {
        threads.emplace_back([&shared, &words] {
            for (int i = 0; i < 1000; ++i) {
                words.push_back(shared.uniformLL());
            }
        });
    }
    std::set<std::uint64_t> all;
    for (std::size_t i = 0; i < threads.size(); ++i) {
        threads[i].join();
        all.insert(drawn[i].begin(), drawn[i].end());
    }
    EXPECT_EQ(all, expected);
}

TEST(RandomGenerator, TheSameSeedGivesTheSameSequence)
{
    RandomGenerator a;
    RandomGenerator b;
    a.gaussian();
    a.init(42);
    b.init(42);
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(a.uniformL(), b.uniformL());
        EXPECT_EQ(a.gaussian(2.0, 3.0), b.gaussian(2.0, 3.0));
        EXPECT_EQ(a.poisson(4.0F), b.poisson(4.0F));
    }
}

TEST(RandomGenerator, DistributionsHaveTheirMomentsAndRanges)
{
    RandomGenerator generator;
    generator.init(7);
    const int n = 200000;
    // Five standard errors of mean and variance at this count.
    const Moments normal = moments(n, [&] { return generator.gaussian(10.0, 2.0); });
    EXPECT_NEAR(normal.mean, 10.0, 5 * 2.0 / std::sqrt(n));
    EXPECT_NEAR(normal.variance, 4.0, 5 * 4.0 * std::sqrt(2.0 / n));
    const Moments counts = moments(n, [&] { return generator.poisson(6.0F); });
    EXPECT_NEAR(counts.mean, 6.0, 5 * std::sqrt(6.0 / n));
    EXPECT_NEAR(counts.variance, 6.0, 5 * std::sqrt((6.0 + 2 * 36.0) / n));
    const Moments trials = moments(n, [&] { return generator.bernoulli(0.3F); });
    EXPECT_NEAR(trials.mean, 0.3, 5 * std::sqrt(0.21 / n));
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
    Vector<int> weights(4);
    weights[0] = 0;
    weights[1] = 3;
    weights[2] = 0;
    weights[3] = 1;
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
