#include "blade/geometry/convert2age.h"

#include <cmath>

namespace {

double inversePower(float length, float strength, float scaling)
{
    const float quotient = length / (scaling - length);
    const float exponent = static_cast<float>(1.0 / strength);
    return std::pow(static_cast<double>(quotient), static_cast<double>(exponent));
}

float power(float base, float exponent)
{
    return static_cast<float>(std::pow(static_cast<double>(base), static_cast<double>(exponent)));
}

} // namespace

float Convert2Age::computeAgeDay(float length, float strength, float inflection, float scaling)
{
    return static_cast<float>(inversePower(length, strength, scaling) * inflection);
}

float Convert2Age::computeAgeHours(float length, float strength, float inflection, float scaling)
{
    return static_cast<float>(inflection * inversePower(length, strength, scaling) * 24.0);
}

float Convert2Age::computeHill(float t, float strength, float inflection, float scaling) const
{
    const float growth = power(t, strength);
    return scaling * growth / (growth + power(inflection, strength));
}
