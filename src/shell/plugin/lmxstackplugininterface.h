#pragma once

#include "shell/plugin/lmxplugininterface.h"

#include <QtPlugin>

class LMXRootMediator;
class LMXStack;

/// A plug-in that works on the host's live stack.
class LMXStackPluginInterface : public LMXPluginInterface
{
public:
    /// To be called before `run`; the stack stays the host's and outlives every window on it.
    virtual void setStack(LMXStack& stack) = 0;
    virtual void setMediator(LMXRootMediator& mediator) = 0;
};

/// The identifier by which the host casts the plug-in; it must equal the host's to the letter.
#define LMXStackPluginInterface_iid CRENARA_INTERFACE_PREFIX ".lamelis.LMXStackPluginInterface/1.0"

Q_DECLARE_INTERFACE(LMXStackPluginInterface, LMXStackPluginInterface_iid)
