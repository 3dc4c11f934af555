#pragma once

#include "shell/plugin/lmxstackplugininterface.h"
#include "system/progresssubject.h"

#include <QObject>
#include <QPointer>

class CrenaraWindow;

/// The plug-in as the host sees it: holds what the host hands over and opens the workflow window
/// on it. Nothing is owned, not even the windows: they are closed by hand and live as long as the
/// host.
class CrenaraPlugin : public QObject, public LMXStackPluginInterface, public ProgressSubject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "lamelis.plugins.LMXStackPluginInterface" FILE "crenaraplugin.json")
    Q_INTERFACES(LMXStackPluginInterface)

public:
    QString getPluginName() override;
    void setStack(LMXStack& live) override;
    void setMediator(LMXRootMediator& root) override;

    /// Opens a further window on the stack, beside those that are open. Without a stack there is
    /// nothing to work on: a warning box says so, and no window opens.
    void run() override;

    /// The window opened last; null before the first.
    CrenaraWindow* getWindow() const { return window; }

private:
    QPointer<LMXStack> stack; // null again once the host has destroyed it
    LMXRootMediator* mediator = nullptr;
    CrenaraWindow* window = nullptr;
};
