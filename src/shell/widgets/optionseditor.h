#pragma once

#include <QGroupBox>

class QDoubleSpinBox;
class QSpinBox;

/// Options of the averages: symmetry, density of the contours, least height of a tooth.
class OptionsEditor : public QGroupBox
{
    Q_OBJECT

public:
    explicit OptionsEditor(QWidget* parent = nullptr);

    void setResamplingPointsNumber(int number);
    int getResamplingPointsNumber() const;
    void setMinimaToothHeight(float height);
    float getMinimaToothHeight() const;

signals:
    void leafSymmetrizationChanged(bool checked);

public slots:
    // Each sets its control without any signal of it.
    void resamplingPointsChanged(int number);
    void toothHeightChanged(double height);

private:
    QSpinBox* pointsBox;
    QDoubleSpinBox* heightBox;
};
