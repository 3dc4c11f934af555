#pragma once

#include "interface/lmxeventclient.h"

#include <QTimer>
#include <QWidget>

class LMXRootMediator;
class Model;
class QTreeWidget;
class QTreeWidgetItem;

/// The models of the open document: colour and symbol, visibility, and the number of vertices on the
/// chosen slice and of items in the whole stack.
class ModelPanel : public QWidget, public LMXEventClient
{
    Q_OBJECT

public:
    explicit ModelPanel(LMXRootMediator& mediator, QWidget* parent = nullptr);

    QSize sizeHint() const override { return {290, 300}; }

    void stackOpenEvent(LMXStackOpenEvent&) override { refreshLater(); }

    void stackCloseEvent(LMXStackCloseEvent&) override;

    void modelCreateEvent(LMXModelCreateEvent&) override { refreshLater(); }

    void modelDeleteEvent(LMXModelDeleteEvent&) override { refreshLater(); }

    void modelPropertiesEvent(LMXModelPropertiesEvent&) override { refreshLater(); }

    void modelItemCreateEvent(LMXModelItemCreateEvent&) override { refreshLater(); }

    void modelItemDeleteEvent(LMXModelItemDeleteEvent&) override { refreshLater(); }

    void modelItemVertexEvent(LMXModelItemVertexEvent&) override { refreshLater(); }

    void modelItemConvertEvent(LMXModelItemConvertEvent&) override { refreshLater(); }

public slots:
    /// The slice whose vertices are counted.
    void setSlice(int index);

private:
    void refreshLater();
    void refresh();
    void showModel(QTreeWidgetItem& row, int index);
    void toggleVisibility(QTreeWidgetItem* row, int column);

    LMXRootMediator& mediator_;
    QTreeWidget* tree_;
    QTimer refresh_;
    int slice_ = -1;
};
