#include "stack/registration.h"

namespace {

float withinOneTurn(float degrees)
{
    if (degrees >= 360.0f) {
        return degrees - 360.0f;
    }
    return degrees < 0.0f ? degrees + 360.0f : degrees;
}

} // namespace

Registration Registration::operator+(const Registration& other) const
{
    return {horShift + other.horShift, verShift + other.verShift,
            withinOneTurn(rotationAngle + other.rotationAngle)};
}

Registration Registration::operator-(const Registration& other) const
{
    return {horShift - other.horShift, verShift - other.verShift,
            withinOneTurn(rotationAngle - other.rotationAngle)};
}

bool Registration::operator==(const Registration& other) const
{
    return horShift == other.horShift && verShift == other.verShift &&
           rotationAngle == other.rotationAngle;
}
