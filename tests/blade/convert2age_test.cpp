#include "blade/geometry/convert2age.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

TEST(Convert2Age, AgeOfAHillLengthIsTheTimeAndLengthsAtTheEndsAreTold)
{
    std::mt19937 generator(7);
    const auto between = [&](float low, float high) {
        return std::uniform_real_distribution<float>(low, high)(generator);
    };
    Convert2Age convert;
    for (int k = 0; k < 500; ++k) {
        const float inflection = between(0.5f, 30.0f);
        const float t = between(0.1f, 2.0f) * inflection;
        const float strength = between(1.0f, 6.0f);
        const float length = convert.computeHill(t, strength, inflection, 40.0f);
        // The nearer the length comes to the final one, the less its last digit says about time.
        const float rounding = 40.0f / (40.0f - length) * 1e-6f;
        const float days = convert.computeAgeDay(length, strength, inflection, 40.0f);
        EXPECT_NEAR(days / t, 1.0f, rounding);
        EXPECT_NEAR(convert.computeAgeHours(length, strength, inflection, 40.0f), 24.0f * days,
                    24.0f * t * 2e-7f);
    }
    EXPECT_EQ(convert.computeHill(9.0f, 3.0f, 9.0f, 50.0f), 25.0f) << "half at the inflection";
    EXPECT_EQ(convert.computeAgeDay(0.0f, 3.0f, 9.0f, 50.0f), 0.0f);
    EXPECT_TRUE(std::isinf(convert.computeAgeDay(50.0f, 3.0f, 9.0f, 50.0f)));
    EXPECT_TRUE(std::isnan(convert.computeAgeDay(51.0f, 3.0f, 9.0f, 50.0f)));
}
