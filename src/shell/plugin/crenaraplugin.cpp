#include "shell/plugin/crenaraplugin.h"

#include "interface/lmxstack.h"
#include "shell/window/crenarawindow.h"

#include <QMessageBox>

QString CrenaraPlugin::getPluginName()
{
    return "Crenara 1.16";
}

void CrenaraPlugin::setStack(LMXStack& live)
{
    stack = &live;
}

void CrenaraPlugin::setMediator(LMXRootMediator& root)
{
    mediator = &root;
}

void CrenaraPlugin::run()
{
    Q_INIT_RESOURCE(crenaraconfig);
    if (!stack) {
        QMessageBox::warning(nullptr, getPluginName(), "There is no stack to work on");
        return;
    }
    CrenaraWindow* opened = new CrenaraWindow;
    window = opened;
    window->setStack(*stack);
    window->setModal(false);
    addMonitor(*window);
    window->show();
}
