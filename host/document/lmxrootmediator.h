#pragma once

#include "interface/lmxstack.h"

#include <memory>

/// The one object through which the host's parts and its plug-ins reach the open document.
///
/// It owns the stack. Opening and closing are told to all clients, so that no view keeps a stack
/// that is gone.
class LMXRootMediator
{
public:
    LMXRootMediator() = default;
    ~LMXRootMediator();
    LMXRootMediator(const LMXRootMediator&) = delete;
    LMXRootMediator& operator=(const LMXRootMediator&) = delete;

    /// Closes the open document, if there is one, and opens this one.
    void open(std::unique_ptr<LMXStack> stack);

    void close();

    /// The open document, or null.
    LMXStack* stack() const { return stack_.get(); }

private:
    std::unique_ptr<LMXStack> stack_;
};
