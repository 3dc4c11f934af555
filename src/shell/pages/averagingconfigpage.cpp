#include "shell/pages/averagingconfigpage.h"

#include "shell/pages/averagingeditor.h"
#include "shell/widgets/averagingfile.h"
#include "shell/widgets/folderchoice.h"
#include "shell/widgets/leafresamplingeditor.h"
#include "shell/widgets/optionseditor.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

#include <cmath>

namespace {

/// The bound itself where a box shows it, rounded to two decimals: else the leaf that gave it could
/// lie outside.
float unrounded(double shown, float bound)
{
    const double exact = static_cast<double>(bound);
    return std::fabs(shown - exact) <= 0.005 * (1.0 + 1e-6) ? bound : static_cast<float>(shown);
}

} // namespace

AveragingConfigPage::AveragingConfigPage(QWidget* parent)
    : StagePage("qrc:/html/normalization.html", 180, "qrc:/html/index.html#normalization", parent)
    , resamplingEditor(new LeafResamplingEditor)
    , binsBox(new QCheckBox("based on bins"))
    , slidingBox(new QCheckBox("sliding averaging"))
    , averagingEditor(new AveragingEditor)
    , averagingFile(new AveragingFile)
    , optionsEditor(new OptionsEditor)
    , pathEdit(displayLine())
{
    processButton()->setEnabled(false);
    layOut();
    connectControls();
}

void AveragingConfigPage::layOut()
{
    QGroupBox* methods = new QGroupBox("2: Normalization Methods");
    QHBoxLayout* choices = new QHBoxLayout;
    choices->addWidget(binsBox);
    choices->addWidget(slidingBox);
    QVBoxLayout* methodsLayout = new QVBoxLayout(methods);
    methodsLayout->addLayout(choices);
    methodsLayout->addWidget(averagingEditor);
    methodsLayout->addWidget(averagingFile);

    QGroupBox* output = new QGroupBox("4: Output path");
    QToolButton* pathButton = iconButton(":/images/inode-directory-32.png", "Change directory");
    QHBoxLayout* outputLayout = new QHBoxLayout(output);
    outputLayout->addWidget(pathEdit);
    outputLayout->addWidget(pathButton);
    connect(pathButton, &QToolButton::clicked, this, &AveragingConfigPage::dirSelection);

    QGridLayout* grid = new QGridLayout(controls());
    grid->addWidget(resamplingEditor, 0, 0);
    grid->addWidget(optionsEditor, 0, 1);
    grid->addWidget(methods, 1, 0, 1, 2);
    grid->addWidget(output, 2, 0, 1, 2);
}

void AveragingConfigPage::connectControls()
{
    connect(resamplingEditor, &LeafResamplingEditor::primarySinusCheckBoxChangedState, this,
            &AveragingConfigPage::primarySinusChecked);
    connect(resamplingEditor, &LeafResamplingEditor::primaryPeakCheckBoxChangedState, this,
            &AveragingConfigPage::primaryPeaksChecked);
    connect(optionsEditor, &OptionsEditor::leafSymmetrizationChanged, this,
            &AveragingConfigPage::leafsymmetrizationChecked);
    connect(binsBox, &QCheckBox::clicked, this, &AveragingConfigPage::binsCheckBoxModify);
    connect(slidingBox, &QCheckBox::clicked, this, &AveragingConfigPage::slidingCheckBoxModify);
    connect(this, &AveragingConfigPage::binsCheckBoxModify, this,
            &AveragingConfigPage::binCheckBoxChanged);
    connect(this, &AveragingConfigPage::slidingCheckBoxModify, this,
            &AveragingConfigPage::slidingCheckBoxChanged);
    connect(averagingEditor, &QGroupBox::clicked, this,
            &AveragingConfigPage::userdefinedMethodSelected);
    connect(averagingEditor, &QGroupBox::clicked, this,
            &AveragingConfigPage::userdefinedMethodModified);
    connect(averagingFile, &AveragingFile::groupBoxAveragingFileState, this,
            &AveragingConfigPage::kOptimaMethodSelected);
    connect(averagingFile, &AveragingFile::groupBoxAveragingFileState, this,
            &AveragingConfigPage::kOptimaMethodModified);
    connect(processButton(), &QPushButton::clicked, this, &AveragingConfigPage::averagingClicked);
}

int AveragingConfigPage::getMethodAveraging() const
{
    const int method = binsBox->isChecked() ? 0 : 1;
    return averagingEditor->isChecked() ? method : method + 2;
}

float AveragingConfigPage::getBegin() const
{
    return unrounded(averagingEditor->getBegin(), minimum);
}

float AveragingConfigPage::getEnd() const
{
    return unrounded(averagingEditor->getEnd(), maximum);
}

float AveragingConfigPage::getStepsNumber() const
{
    return static_cast<float>(averagingEditor->getStepsNumber());
}

int AveragingConfigPage::getAveragesNumber() const
{
    return averagingEditor->getAveragesNumber();
}

QString AveragingConfigPage::getFile() const
{
    return averagingFile->getFile();
}

int AveragingConfigPage::getResamplingPointsNumber() const
{
    return optionsEditor->getResamplingPointsNumber();
}

float AveragingConfigPage::getMinimaToothHeight() const
{
    return optionsEditor->getMinimaToothHeight();
}

void AveragingConfigPage::setAveragesNumber(int number)
{
    averagingEditor->setAveragesNumber(number);
}

void AveragingConfigPage::setMinimun(float value)
{
    minimum = value;
    averagingEditor->setMin(value);
    averagingEditor->setBegin(value);
}

void AveragingConfigPage::setMaximun(float value)
{
    maximum = value;
    averagingEditor->setMax(value);
    averagingEditor->setEnd(value);
}

void AveragingConfigPage::setUnity(const QString& unit)
{
    averagingEditor->setUnity(unit);
}

void AveragingConfigPage::setStepsNumber()
{
    averagingEditor->setSteps();
}

void AveragingConfigPage::setPath(const QString& path)
{
    outputPath = path;
    averagingFile->setPath(path);
    pathEdit->setText(path);
}

void AveragingConfigPage::setFile(const QString& name)
{
    averagingFile->setFile(name);
}

void AveragingConfigPage::setResamplingPointsNumber(int number)
{
    optionsEditor->setResamplingPointsNumber(number);
}

void AveragingConfigPage::setMinimaToothHeight(float height)
{
    optionsEditor->setMinimaToothHeight(height);
}

void AveragingConfigPage::binCheckBoxChanged(bool checked)
{
    if (!binsBox->isChecked()) {
        return;
    }
    averagingFile->setTitle("User-defined neighborhood bins");
    averagingEditor->updateStepSpinBox(checked);
    slidingBox->setChecked(!checked);
    openProcess();
}

void AveragingConfigPage::slidingCheckBoxChanged(bool checked)
{
    if (!slidingBox->isChecked()) {
        return;
    }
    averagingFile->setTitle("User-defined ranks");
    averagingEditor->updateStepSpinBox(!checked);
    binsBox->setChecked(!checked);
    openProcess();
}

void AveragingConfigPage::userdefinedMethodSelected(bool checked)
{
    if (averagingEditor->isChecked()) {
        averagingFile->setChecked(!checked);
    }
}

void AveragingConfigPage::kOptimaMethodSelected(bool checked)
{
    if (averagingFile->isChecked()) {
        averagingEditor->setChecked(!checked);
    }
}

void AveragingConfigPage::dirSelection()
{
    chooseFolder(outputPath);
    if (!outputPath.isEmpty()) {
        pathEdit->setText(outputPath);
    }
}

void AveragingConfigPage::openProcess()
{
    if (averagingEditor->isChecked() || averagingFile->isChecked()) {
        processButton()->setEnabled(true);
    }
}
