#pragma once

/// Shift in pixels and rotation in degrees of a slice against the previous one.
struct Registration
{
    int horShift = 0;
    int verShift = 0;
    float rotationAngle = 0.0f;

    bool isNull() const { return horShift == 0 && verShift == 0 && rotationAngle == 0.0f; }

    /// Field by field; one turn is then taken from or given to an angle outside [0, 360).
    Registration operator+(const Registration& other) const;
    Registration operator-(const Registration& other) const;

    bool operator==(const Registration& other) const;

    bool operator!=(const Registration& other) const { return !(*this == other); }
};
