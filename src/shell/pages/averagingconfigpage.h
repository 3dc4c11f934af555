#pragma once

#include "numerics/matrix.h"
#include "shell/widgets/stagepage.h"

class AveragingEditor;
class AveragingFile;
class LeafResamplingEditor;
class OptionsEditor;
class QCheckBox;
class QLineEdit;

/// The page of the average shapes.
class AveragingConfigPage : public StagePage
{
    Q_OBJECT

public:
    explicit AveragingConfigPage(QWidget* parent = nullptr);

    /// Bins (even) or sliding (odd), by the page's numbers (0, 1) or by a file (2, 3).
    int getMethodAveraging() const;

    const Matrix<float>& getMeasurement() const { return measurement; }

    float getBegin() const;
    float getEnd() const;
    float getStepsNumber() const;
    int getAveragesNumber() const;
    QString getFile() const;

    bool getPrimarySinusCheck() const { return primarySinus; }

    bool getPrimaryPeaksCheck() const { return primaryPeaks; }

    QString getOutputPath() const { return outputPath; }

    bool getBladeSymmetrization() const { return bladeSymmetrization; }

    int getResamplingPointsNumber() const;
    float getMinimaToothHeight() const;

    void setAveragesNumber(int number);
    void setMinimun(float value);
    void setMaximun(float value);
    void setUnity(const QString& unit);
    void setStepsNumber();
    void setPath(const QString& path);
    void setFile(const QString& name);
    void setResamplingPointsNumber(int number);
    void setMinimaToothHeight(float height);

    /// A row of blade lengths or ages and a row of slice indices, one column a slice; copied.
    void setMeasurement(const Matrix<float>& measures) { measurement = measures; }

signals:
    void averagingClicked();
    void binsCheckBoxModify(bool checked);
    void slidingCheckBoxModify(bool checked);
    void userdefinedMethodModified(bool checked);
    void kOptimaMethodModified(bool checked);

public slots:
    void binCheckBoxChanged(bool checked);
    void slidingCheckBoxChanged(bool checked);
    void userdefinedMethodSelected(bool checked);
    void kOptimaMethodSelected(bool checked);

    void primarySinusChecked(bool checked) { primarySinus = checked; }

    void primaryPeaksChecked(bool checked) { primaryPeaks = checked; }

    void leafsymmetrizationChecked(bool checked) { bladeSymmetrization = checked; }

    void dirSelection();

private:
    void layOut();
    void connectControls();
    void openProcess();

    LeafResamplingEditor* resamplingEditor;
    QCheckBox* binsBox;
    QCheckBox* slidingBox;
    AveragingEditor* averagingEditor;
    AveragingFile* averagingFile;
    OptionsEditor* optionsEditor;
    QLineEdit* pathEdit;

    bool primarySinus = false;
    bool primaryPeaks = false;
    bool bladeSymmetrization = true;
    float minimum = 0.0f;
    float maximum = 0.0f;
    Matrix<float> measurement;
    QString outputPath;
};
