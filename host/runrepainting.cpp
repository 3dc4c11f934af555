#include "host/runrepainting.h"

#include <QAbstractEventDispatcher>
#include <QWidget>

namespace {

// Milliseconds. Shorter than what a user takes for a stop, longer than a click takes.
constexpr int patience = 150;

} // namespace

RunRepainting::RunRepainting(QWidget& window)
    : QObject(&window)
    , window_(window)
{
    sinceLoop_.start();
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, this,
            [this] { sinceLoop_.restart(); });
}

void RunRepainting::repaint()
{
    if (window_.isVisible() && sinceLoop_.elapsed() > patience) {
        window_.repaint();
        sinceLoop_.restart();
    }
}
