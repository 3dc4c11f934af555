#pragma once

#include <QWidget>

/// A black sector, centred on the vertical, that shows how wide an angle is.
class PieChart : public QWidget
{
    Q_OBJECT

public:
    explicit PieChart(QWidget* parent = nullptr);

    QSize sizeHint() const override;

    // Both in sixteenths of a degree, as QPainter takes them.
    int getStartAngle() const { return startAngle; }

    int getSpanAngle() const { return spanAngle; }

public slots:
    /// Opens the sector to an angle in degrees.
    void setSpanAngle(int degrees);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int spanAngle = 2400;
    int startAngle = 480;
};
