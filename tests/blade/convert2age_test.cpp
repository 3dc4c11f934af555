#include "blade/convert2age.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

TEST(Convert2Age, AgeOfAHillLengthIsTheTime)
{
    std::mt19937 generator(7);
    std::uniform_real_distribution<float> days(0.5f, 30.0f);
    std::uniform_real_distribution<float> parts(0.1f, 2.0f);
    std::uniform_real_distribution<float> exponents(1.0f, 6.0f);
    Convert2Age convert;
    for (int k = 0; k < 500; ++k) {
        const float inflection = days(generator);
        const float t = parts(generator) * inflection;
        const float strength = exponents(generator);
        const float length = convert.computeHill(t, strength, inflection, 40.0f);
        // The nearer the length comes to the final one, the less its last digit says about time.
        const float rounding = 40.0f / (40.0f - length) * 1e-6f;
        EXPECT_NEAR(convert.computeAgeDay(length, strength, inflection, 40.0f) / t, 1.0f, rounding);
        EXPECT_NEAR(convert.computeAgeHours(length, strength, inflection, 40.0f),
                    24.0f * convert.computeAgeDay(length, strength, inflection, 40.0f),
                    24.0f * t * 2e-7f);
    }
}

TEST(Convert2Age, HalfTheFinalLengthIsReachedAtTheInflectionPoint)
{
    Convert2Age convert;
    EXPECT_EQ(convert.computeHill(9.0f, 3.0f, 9.0f, 50.0f), 25.0f);
    EXPECT_EQ(convert.computeAgeDay(25.0f, 3.0f, 9.0f, 50.0f), 9.0f);
    EXPECT_EQ(convert.computeAgeHours(25.0f, 3.0f, 9.0f, 50.0f), 216.0f);
}

TEST(Convert2Age, LengthsAtAndBeyondTheEndsAreTold)
{
    Convert2Age convert;
    EXPECT_EQ(convert.computeAgeDay(0.0f, 3.0f, 9.0f, 50.0f), 0.0f);
    EXPECT_EQ(convert.computeAgeDay(50.0f, 3.0f, 9.0f, 50.0f),
              std::numeric_limits<float>::infinity());
    EXPECT_TRUE(std::isnan(convert.computeAgeDay(51.0f, 3.0f, 9.0f, 50.0f)));
}
