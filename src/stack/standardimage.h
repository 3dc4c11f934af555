#pragma once

#include "stack/calibrationcurve.h"
#include "stack/slice.h"

#include <memory>

class Stack;

/// An image of known values that a stack keeps apart from its slices, with the curve that was
/// fitted to them.
class StandardImage : public Slice
{
public:
    StandardImage() = default;

    /// The copy has no stack; a curve is copied with the image.
    StandardImage(const StandardImage& other);
    StandardImage& operator=(const StandardImage&) = delete;

    /// Null until set. Not owned.
    Stack* getStack() const { return stack; }

    void setStack(Stack& owner) { stack = &owner; }

    /// The image's curve, or null.
    CalibrationCurve* getCalibrationCurve() const { return calibrationCurve.get(); }

    /// Takes a curve from `new` in place of the old one, which is destroyed.
    void setCalibrationCurve(CalibrationCurve& curve);

    /// Destroys the curve, if any.
    void deleteCalibrationCurve() { calibrationCurve.reset(); }

private:
    std::unique_ptr<CalibrationCurve> calibrationCurve;
    Stack* stack = nullptr;
};
