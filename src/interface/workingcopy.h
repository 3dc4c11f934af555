#pragma once

#include <memory>

class LMXStack;
class Stack;
class StackSlice;

/// Stacks of copies of slices with their items, for a process that must not touch the document: the
/// check of leaves, for one, puts landmarks and contours in order as it goes.
///
/// A copy has the models' names and geometry. Its events name its own items, so that no view of the
/// document takes them for its own.
class WorkingCopy
{
public:
    /// All slices, in their order.
    static std::unique_ptr<LMXStack> of(const Stack& stack);

    /// A stack of this one slice.
    static std::unique_ptr<LMXStack> of(const StackSlice& slice);
};
