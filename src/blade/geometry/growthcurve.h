#pragma once

/// The growth curve that turns the length of a blade into an age, see `Convert2Age`.
struct GrowthCurve
{
    /// Hill exponent.
    float strength = 0.0f;

    /// Time in days at which a leaf has half its final length.
    float inflection = 0.0f;

    /// Final length, in the stack's unit.
    float scaling = 0.0f;
};
