#pragma once

#include <QGroupBox>

class QSpinBox;

/// How closely the extracted outline follows the pixels, in per cent from 10 to 100.
class CrenaraFidelityEditor : public QGroupBox
{
    Q_OBJECT

public:
    explicit CrenaraFidelityEditor(QWidget* parent = nullptr);

    /// A value outside the range counts as its nearer end.
    void setFidelity(int percent);
    int getFidelity() const;

private:
    QSpinBox* fidelityBox;
};
