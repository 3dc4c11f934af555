#include "host/document/lmxrootmediator.h"

#include "interface/lmxevent.h"
#include "interface/lmxeventserver.h"

LMXRootMediator::~LMXRootMediator()
{
    close();
}

void LMXRootMediator::open(std::unique_ptr<LMXStack> stack)
{
    close();
    stack_ = std::move(stack);
    LMXStackOpenEvent event(*stack_);
    LMXEventServer::notifyEvent(event);
}

void LMXRootMediator::close()
{
    if (stack_) {
        LMXStackCloseEvent event(*stack_);
        LMXEventServer::notifyEvent(event);
        stack_.reset();
    }
}
