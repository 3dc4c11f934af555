#pragma once

#include <QGroupBox>

class QDoubleSpinBox;
class QSpinBox;

/// Range, step and number of the averages; the four follow each other: the number is the range over
/// the step, the step the range over the number.
class AveragingEditor : public QGroupBox
{
    Q_OBJECT

public:
    explicit AveragingEditor(QWidget* parent = nullptr);

    /// The lower limit becomes the begin, and the least of begin and end.
    void setMin(double value);
    /// The upper limit becomes the end, and the greatest of begin and end.
    void setMax(double value);
    void setBegin(double value);
    double getBegin() const;
    void setEnd(double value);
    double getEnd() const;
    /// Computes the step from range and number.
    void setSteps();
    double getStepsNumber() const;
    void setAveragesNumber(int number);
    int getAveragesNumber() const;
    /// The unit behind begin, end and step.
    void setUnity(const QString& unit);
    /// Closes the step to the user, or opens it.
    void updateStepSpinBox(bool closed);

public slots:
    void beginModify(double value);
    void endModify(double value);
    void stepsNumberModify(double value);
    void averagesNumberModify(int number);

private:
    void setQuietly(QDoubleSpinBox* box, double value);
    void updateNumber();

    QDoubleSpinBox* beginBox;
    QDoubleSpinBox* endBox;
    QDoubleSpinBox* stepsBox;
    QSpinBox* numberBox;
};
