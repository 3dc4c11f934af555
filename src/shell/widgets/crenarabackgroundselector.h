#pragma once

#include "blade/contour/backgroundvalue.h"

#include <QWidget>

class QRadioButton;

/// The choice between a light and a dark background of the photographs.
class CrenaraBackgroundSelector : public QWidget
{
    Q_OBJECT

public:
    explicit CrenaraBackgroundSelector(QWidget* parent = nullptr);

    void setBackground(BackgroundValue value);
    BackgroundValue getBackground() const;

private:
    QRadioButton* light;
    QRadioButton* dark;
};
