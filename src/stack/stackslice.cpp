#include "stack/stackslice.h"

#include "stack/stack.h"
#include "system/exception.h"

#include <iostream>

StackSlice::StackSlice(const StackSlice& other)
    : Slice(other)
    , thickness_(other.thickness_)
    , position_(other.position_)
    , relativePosition_(other.relativePosition_)
    , defaultPosition_(other.defaultPosition_)
    , registration_(other.registration_)
{}

StackSlice& StackSlice::operator=(const StackSlice& other)
{
    Slice::operator=(other);
    thickness_ = other.thickness_;
    position_ = other.position_;
    relativePosition_ = other.relativePosition_;
    defaultPosition_ = other.defaultPosition_;
    registration_ = other.registration_;
    return *this;
}

Stack& StackSlice::stack(const char* where) const
{
    if (stack_ == nullptr) {
        raise<ProgramError>(where, "This slice has no stack");
    }
    return *stack_;
}

int StackSlice::index(const char* where) const
{
    const int i = stack(where).findSlice(*this);
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
    return i == stack_->getNumSlices() - 1;
}

StackSlice& StackSlice::prevSlice() const
{
    return stack("StackSlice& StackSlice::prevSlice() const").getPreviousSlice(*this);
}

StackSlice& StackSlice::nextSlice() const
{
    return stack("StackSlice& StackSlice::nextSlice() const").getNextSlice(*this);
}

void StackSlice::setAbsolutePosition(float position)
{
    position_ = position;
    relativePosition_ = false;
    defaultPosition_ = false;
}

void StackSlice::setRelativePosition(float position)
{
    position_ = position;
    relativePosition_ = true;
    defaultPosition_ = false;
}

float StackSlice::getRelativePosition() const
{
    const char* where = "float StackSlice::getRelativePosition() const";
    if (defaultPosition_) {
        return stack(where).getDefaultRelativePosition();
    }
    if (relativePosition_) {
        return position_;
    }
    const int i = index(where);
    return i == 0 ? 0.0f : position_ - absolutePosition(*stack_, i - 1);
}

float StackSlice::getAbsolutePosition() const
{
    if (!relativePosition_) {
        return position_;
    }
    const int i = index("float StackSlice::getAbsolutePosition() const");
    return absolutePosition(*stack_, i);
}

// Adds up the distances from the last slice before that has a fixed place.
float StackSlice::absolutePosition(const Stack& stack, int index)
{
    int fixed = index;
    while (fixed > 0 && stack.getSlice(fixed).relativePosition_) {
        --fixed;
    }
    const StackSlice& start = stack.getSlice(fixed);
    float position = start.relativePosition_ ? 0.0f : start.position_;
    for (int i = fixed + 1; i <= index; ++i) {
        const StackSlice& slice = stack.getSlice(i);
        position += slice.defaultPosition_ ? stack.getDefaultRelativePosition() : slice.position_;
    }
    return position;
}

void StackSlice::print(const std::string& indent) const
{
    std::cout << indent << "Name = " << getName() << '\n';
    if (stack_ != nullptr && stack_->findSlice(*this) >= 0) {
        std::cout << indent << "  Prev = " << prevSlice().getName() << '\n'
                  << indent << "  Succ = " << nextSlice().getName() << '\n'
                  << indent << "  Rel/Abs position = " << getRelativePosition() << '/'
                  << getAbsolutePosition() << (relativePosition_ ? " [Relative]" : " [Absolute]")
                  << '\n';
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
