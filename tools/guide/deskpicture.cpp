// The picture of the desk.

#include "guide/figures.h"
#include "host/deskwindow.h"
#include "host/document/documentcontrol.h"
#include "host/document/lmxrootmediator.h"
#include "host/stackplugin.h"

#include <QApplication>
#include <QEventLoop>
#include <QTimer>

void addDeskPicture(Figures& figures, const QString& folder)
{
    LMXRootMediator mediator;
    StackPlugin plugin;
    DeskWindow window(mediator, plugin);
    window.resize(880, 640);
    window.show();
    window.openFiles({folder + "/serrate-tips.sdf"});
    // The photograph and the small pictures are read in the background.
    QEventLoop loop;
    QTimer::singleShot(4000, &loop, &QEventLoop::quit);
    loop.exec();
    figures["guide-desk.png"] =
        window.grab().toImage().scaledToWidth(450, Qt::SmoothTransformation);
    window.documentControl().close();
}
