#pragma once

#include "stack/modelitemowner.h"
#include "stack/registration.h"
#include "stack/slice.h"

#include <memory>
#include <string>
#include <utility>

class CalibrationCurve;
class Stack;

/// What somebody keeps with a slice, and what ends with it: the history of its edits.
class SliceCompanion
{
public:
    virtual ~SliceCompanion() = default;
};

/// One image of a stack, with the items drawn on it and its place among the other slices.
///
/// A slice knows its stack, which the caller tells it by `setStack`, and asks it for its
/// neighbours; there are no links between slices. The operations on neighbours and positions raise
/// `ProgramError` for a slice that has no stack or does not stand in it.
class StackSlice : public Slice, public ModelItemOwner
{
public:
    StackSlice() = default;

    /// The copy has no stack, no items and no companion; all else is copied.
    StackSlice(const StackSlice& other);

    /// Keeps the stack, the items and the companion of this slice, takes all else.
    StackSlice& operator=(const StackSlice& other);

    /// Null until set. Not owned.
    Stack* getStack() const { return stack; }

    void setStack(Stack& owner) { stack = &owner; }

    /// Here and below a slice that stands in no stack raises `ProgramError`: it has no neighbours, and
    /// a walk to the last slice would not end.
    bool isFirstSlice() const;
    bool isLastSlice() const;

    /// The slice before this one; the first slice gives itself.
    StackSlice& prevSlice() const;

    /// The slice behind this one; the last slice gives itself, so a walk stops by `isLastSlice`.
    StackSlice& nextSlice() const;

    const Registration& getRegistration() const { return registration; }

    void setRegistration(const Registration& value) { registration = value; }

    float getThickness() const { return thickness; }

    void setThickness(float value) { thickness = value; }

    /// The slice stays at this position, whatever the others do.
    void setAbsolutePosition(float value);

    /// The slice keeps this distance to the previous one, in place of the stack's default.
    void setRelativePosition(float value);

    /// The position is the distance to the previous slice, its own or the stack's default.
    bool useRelativePosition() const { return relativePosition; }

    /// Distance to the previous slice; of a first slice with an absolute position 0.
    float getRelativePosition() const;

    /// Position along the stack, in time linear in the number of slices.
    float getAbsolutePosition() const;

    /// A slice has no calibration curve of its own: always null, and nothing happens in the two
    /// operations below.
    CalibrationCurve* getCalibrationCurve() const { return nullptr; }

    void setCalibrationCurve(CalibrationCurve&) {}

    void removeCalibrationCurve() {}

    /// Null until set. Destroyed with the slice, before its items.
    SliceCompanion* getCompanion() const { return companion.get(); }

    void setCompanion(std::unique_ptr<SliceCompanion> value) { companion = std::move(value); }

    /// Writes a summary to the standard output, for debugging.
    void print(const std::string& indent = "") const;

private:
    friend class Stack;

    Stack& ownStack(const char* where) const;
    int index(const char* where) const;
    static float absolutePosition(const Stack& within, int i);

    Stack* stack = nullptr;
    float thickness = 0.0f;
    float position = 0.0f;
    bool relativePosition = true;
    bool defaultPosition = true;
    Registration registration;
    std::unique_ptr<SliceCompanion> companion;
};
