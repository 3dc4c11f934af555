#include "shell/pages/extractsinuslocalcurvatureconfigeditor.h"

#include "shell/widgets/piechart.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QVBoxLayout>

ExtractSinusLocalCurvatureConfigEditor::ExtractSinusLocalCurvatureConfigEditor(QWidget* parent)
    : QWidget(parent)
    , group(new QGroupBox("Local Curvature Method"))
    , neighbourhoodBox(new QSpinBox)
    , angleBox(new QSpinBox)
{
    neighbourhoodBox->setRange(1, 200);
    neighbourhoodBox->setSuffix(" neighbourdhood size");
    neighbourhoodBox->setAlignment(Qt::AlignRight);
    angleBox->setRange(1, 179);
    angleBox->setSuffix(" degrees");
    angleBox->setAlignment(Qt::AlignRight);
    PieChart* chart = new PieChart;
    chart->setMinimumSize(45, 45); // the whole circle, in a narrow window too

    QHBoxLayout* angleRow = new QHBoxLayout;
    angleRow->addWidget(angleBox, 1);
    angleRow->addWidget(chart);
    QFormLayout* form = new QFormLayout(group);
    form->addRow("Half Neighbourhood:", neighbourhoodBox);
    form->addRow("Maximum Negative Curvature (angle):", angleRow);
    QVBoxLayout* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(group);

    connect(angleBox, QOverload<int>::of(&QSpinBox::valueChanged), chart, &PieChart::setSpanAngle);
    connect(group, &QGroupBox::clicked, this,
            &ExtractSinusLocalCurvatureConfigEditor::groupBoxLCState);
}

void ExtractSinusLocalCurvatureConfigEditor::setConfig(
    const ExtractSinusLocalCurvatureConfig& config)
{
    // Not through the slots: the chart beside the angle follows the signal of its box.
    neighbourhoodBox->setValue(config.getNeigbourhood());
    angleBox->setValue(static_cast<int>(config.getCurvatureAngle()));
    group->setChecked(config.isSettingsEnabled());
}

ExtractSinusLocalCurvatureConfig ExtractSinusLocalCurvatureConfigEditor::getConfig() const
{
    ExtractSinusLocalCurvatureConfig config;
    config.setCurvatureAngle(static_cast<float>(angleBox->value()));
    config.setNeighbourhood(neighbourhoodBox->value());
    config.setSettingsEnabled(group->isChecked());
    return config;
}

void ExtractSinusLocalCurvatureConfigEditor::neighbourhoudChange(int vertices)
{
    const QSignalBlocker blocker(neighbourhoodBox);
    neighbourhoodBox->setValue(vertices);
}

void ExtractSinusLocalCurvatureConfigEditor::curvatureAngleChange(int degrees)
{
    const QSignalBlocker blocker(angleBox);
    angleBox->setValue(degrees);
}

void ExtractSinusLocalCurvatureConfigEditor::changedState(bool other)
{
    group->setChecked(!other);
}
