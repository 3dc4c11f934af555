#include "stack/stackslice.h"

#include "stack/stack.h"
#include "system/exception.h"

#include <iostream>

StackSlice::StackSlice(const StackSlice& other)
    : Slice(other)
    , thickness(other.thickness)
    , position(other.position)
    , relativePosition(other.relativePosition)
    , defaultPosition(other.defaultPosition)
    , registration(other.registration)
{}

StackSlice& StackSlice::operator=(const StackSlice& other)
{
    Slice::operator=(other);
    thickness = other.thickness;
    position = other.position;
    relativePosition = other.relativePosition;
    defaultPosition = other.defaultPosition;
    registration = other.registration;
    return *this;
}

Stack& StackSlice::ownStack(const char* where) const
{
    if (stack == nullptr) {
        raise<ProgramError>(where, "This slice has no stack");
    }
    return *stack;
}

int StackSlice::index(const char* where) const
{
    const int i = ownStack(where).findSlice(*this);
    if (i < 0) {
        raise<ProgramError>(where, "This slice does not stand in its stack");
    }
    return i;
}

bool StackSlice::isFirstSlice() const
{
    return index("bool StackSlice::isFirstSlice() const") == 0;
}

bool StackSlice::isLastSlice() const
{
    const int i = index("bool StackSlice::isLastSlice() const");
    return i == stack->getNumSlices() - 1;
}

StackSlice& StackSlice::prevSlice() const
{
    return ownStack("StackSlice& StackSlice::prevSlice() const").getPreviousSlice(*this);
}

StackSlice& StackSlice::nextSlice() const
{
    return ownStack("StackSlice& StackSlice::nextSlice() const").getNextSlice(*this);
}

void StackSlice::setAbsolutePosition(float value)
{
    position = value;
    relativePosition = false;
    defaultPosition = false;
}

void StackSlice::setRelativePosition(float value)
{
    position = value;
    relativePosition = true;
    defaultPosition = false;
}

float StackSlice::getRelativePosition() const
{
    const char* where = "float StackSlice::getRelativePosition() const";
    if (defaultPosition) {
        return ownStack(where).getDefaultRelativePosition();
    }
    if (relativePosition) {
        return position;
    }
    const int i = index(where);
    return i == 0 ? 0.0f : position - absolutePosition(*stack, i - 1);
}

float StackSlice::getAbsolutePosition() const
{
    if (!relativePosition) {
        return position;
    }
    const int i = index("float StackSlice::getAbsolutePosition() const");
    return absolutePosition(*stack, i);
}

// Adds up the distances from the last slice before that has a fixed place.
float StackSlice::absolutePosition(const Stack& within, int i)
{
    int fixed = i;
    while (fixed > 0 && within.getSlice(fixed).relativePosition) {
        --fixed;
    }
    const StackSlice& start = within.getSlice(fixed);
    float sum = start.relativePosition ? 0.0f : start.position;
    for (int k = fixed + 1; k <= i; ++k) {
        const StackSlice& slice = within.getSlice(k);
        sum += slice.defaultPosition ? within.getDefaultRelativePosition() : slice.position;
    }
    return sum;
}

void StackSlice::print(const std::string& indent) const
{
    std::cout << indent << "Name = " << getName() << '\n';
    if (stack != nullptr && stack->findSlice(*this) >= 0) {
        std::cout << indent << "  Prev = " << prevSlice().getName() << '\n'
                  << indent << "  Succ = " << nextSlice().getName() << '\n'
                  << indent << "  Rel/Abs position = "
                  << (relativePosition ? getRelativePosition() : getAbsolutePosition())
                  << (relativePosition ? " [Relative]" : " [Absolute]") << '\n';
    }
    const PixelCalibration& calibration = getPixelCalibration();
    std::cout << indent << "  Aspect ratio = " << calibration.getAspectRatio() << '\n'
              << indent << "  Pixel width  = " << calibration.getPixelWidth() << '\n'
              << indent << "  Pixel height = " << calibration.getPixelHeight() << '\n';
    if (!isEmpty()) {
        std::cout << indent << "  Corrected width = " << width() << '\n'
                  << indent << "  Corrected height = " << height() << '\n';
    }
    std::cout << indent << "  Number of items = " << getNumItems() << '\n';
}
