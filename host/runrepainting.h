#pragma once

#include "interface/lmxeventclient.h"

#include <QElapsedTimer>
#include <QObject>

class QWidget;

/// Repaints a window while a long run holds the event loop: whenever an event tells of a change and
/// the loop has not turned for a while. What the run has found so far is seen, and the window does not
/// stay blank where another one was moved away from it.
class RunRepainting : public QObject, public LMXEventClient
{
    Q_OBJECT

public:
    /// The window is not owned.
    explicit RunRepainting(QWidget& window);

    void modelCreateEvent(LMXModelCreateEvent&) override { repaint(); }

    void modelItemCreateEvent(LMXModelItemCreateEvent&) override { repaint(); }

    void modelItemDeleteEvent(LMXModelItemDeleteEvent&) override { repaint(); }

    void modelItemVertexEvent(LMXModelItemVertexEvent&) override { repaint(); }

private:
    void repaint();

    QWidget& window_;
    QElapsedTimer sinceLoop_;
};
