#pragma once

#include <QGroupBox>

class QCheckBox;

/// The landmarks between which contours are resampled: apex and junctions always, sinuses and, with
/// them, tips by choice.
class LeafResamplingEditor : public QGroupBox
{
    Q_OBJECT

public:
    explicit LeafResamplingEditor(QWidget* parent = nullptr);

signals:
    void primarySinusCheckBoxChangedState(bool checked);
    void primaryPeakCheckBoxChangedState(bool checked);

public slots:
    /// Opens the tips with the sinuses; without sinuses there are no tips either.
    void primarySinusChangedState(bool checked);

private:
    QCheckBox* sinusBox;
    QCheckBox* peakBox;
};
