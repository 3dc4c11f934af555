#pragma once

#include "stack/slice.h"

class Stack;

/// An image of known values that a stack keeps apart from its slices.
class StandardImage : public Slice
{
public:
    /// Null until set. Not owned.
    Stack* getStack() const { return stack; }

    void setStack(Stack& owner) { stack = &owner; }

private:
    Stack* stack = nullptr;
};
