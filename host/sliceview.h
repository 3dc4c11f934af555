#pragma once

#include "interface/lmxeventclient.h"

#include <QPoint>
#include <QString>
#include <QTransform>
#include <QWidget>

#include <optional>

class LMXStack;
class QPixmap;
class StackSlice;

/// The picture of one slice with its items drawn, as large as the widget allows. It repaints itself
/// when something happens to the items.
///
/// A view may ask for pairs of points: the user then clicks twice on the picture.
class SliceView : public QWidget, public LMXEventClient
{
    Q_OBJECT

public:
    explicit SliceView(QWidget* parent = nullptr);

    /// Shows slice `index` of the stack; nothing without a stack or with an index out of it.
    void showSlice(LMXStack* stack, int index);

    /// From pixels of the image, (0, 0) being the corner of the first one, to the widget's.
    QTransform imageToWidget() const;

    QSize sizeHint() const override { return {700, 600}; }

    void stackCloseEvent(LMXStackCloseEvent& event) override;

    void sliceImageCalibrationEvent(LMXSliceImageCalibrationEvent&) override { update(); }

    void sliceItemSelectionEvent(LMXSliceItemSelectionEvent&) override { update(); }

    void modelCreateEvent(LMXModelCreateEvent&) override { update(); }

    void modelDeleteEvent(LMXModelDeleteEvent&) override { update(); }

    void modelPropertiesEvent(LMXModelPropertiesEvent&) override { update(); }

    void modelItemCreateEvent(LMXModelItemCreateEvent&) override { update(); }

    void modelItemDeleteEvent(LMXModelItemDeleteEvent&) override { update(); }

    void modelItemVertexEvent(LMXModelItemVertexEvent&) override { update(); }

    void modelItemAttributeEvent(LMXModelItemAttributeEvent&) override { update(); }

    void modelItemSelectEvent(LMXModelItemSelectEvent&) override { update(); }

    void modelItemConvertEvent(LMXModelItemConvertEvent&) override { update(); }

public slots:
    /// Asks for pairs of points, or no longer.
    void askForPairs(bool ask);

signals:
    /// Two pixels of the slice were clicked on.
    void pairClicked(const QPoint& first, const QPoint& second);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    StackSlice* slice() const;
    const QPixmap* picture();
    void paintPendingPoint(QPainter& painter) const;

    LMXStack* stack_ = nullptr;
    int index_ = -1;
    QSize imageSize_;
    QString fault_; // why the slice has no picture
    bool asking_ = false;
    std::optional<QPoint> firstPoint_;
};
