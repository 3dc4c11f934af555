#pragma once

/// Turns blade length into age, for leaves that grow along a Hill curve:
///
///     length(t) = scaling * t^strength / (t^strength + inflection^strength)
///
/// with `scaling` the final length in the unit of the lengths, `inflection` the time in days at
/// which half of it is reached, and `strength` the Hill exponent. Without state.
class Convert2Age
{
public:
    /// Age in days at length `length`: 0 at length 0, infinite at the final length, NaN beyond it
    /// (for a fractional 1 / strength).
    float computeAgeDay(float length, float strength, float inflection, float scaling);

    /// The same in hours, rounded to float once at the end.
    float computeAgeHours(float length, float strength, float inflection, float scaling);

    /// The length at time `t` in days.
    float computeHill(float t, float strength, float inflection, float scaling) const;
};
