#pragma once

#include <QString>

/// What every plug-in of the host answers.
class LMXPluginInterface
{
public:
    virtual ~LMXPluginInterface() = default;

    /// The text of the host's menu entry.
    virtual QString getPluginName() = 0;

    /// Starts the plug-in; returns to the host's event loop at once.
    virtual void run() = 0;
};
