#include "shell/pages/extractcontourconfigeditor.h"

#include "interface/lmxchanneleditor.h"
#include "shell/widgets/crenarabackgroundselector.h"
#include "shell/widgets/crenarafidelityeditor.h"
#include "shell/widgets/imageselector.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QPushButton>

ExtractContourConfigEditor::ExtractContourConfigEditor(QWidget* parent)
    : StagePage("qrc:/html/extractContour.html", 300, "qrc:/html/index.html#extractcontour", parent)
    , backgroundSelector(new CrenaraBackgroundSelector)
    , channelEditor(new LMXChannelEditor)
    , imageSelector(new ImageSelector)
    , fidelityEditor(new CrenaraFidelityEditor)
{
    QGridLayout* grid = new QGridLayout(controls());
    grid->addWidget(backgroundSelector, 0, 0);
    grid->addWidget(channelEditor, 0, 1);
    grid->addWidget(imageSelector, 1, 0);
    grid->addWidget(fidelityEditor, 1, 1);
    connect(processButton(), &QPushButton::clicked, this,
            &ExtractContourConfigEditor::processExtractContourClicked);
}

void ExtractContourConfigEditor::setChannel(ImageColorContent content)
{
    channelEditor->setChannel(content);
}

ImageColorContent ExtractContourConfigEditor::getChannel() const
{
    return channelEditor->getChannel();
}

void ExtractContourConfigEditor::enableChannelSelector(bool enabled)
{
    channelEditor->setEnabled(enabled);
}

void ExtractContourConfigEditor::setBackground(BackgroundValue value)
{
    backgroundSelector->setBackground(value);
}

BackgroundValue ExtractContourConfigEditor::getBackground() const
{
    return backgroundSelector->getBackground();
}

void ExtractContourConfigEditor::setFidelity(int percent)
{
    fidelityEditor->setFidelity(percent);
}

int ExtractContourConfigEditor::getFidelityValue() const
{
    return fidelityEditor->getFidelity();
}

void ExtractContourConfigEditor::setImageType(bool binary)
{
    imageSelector->setImageType(binary);
}

bool ExtractContourConfigEditor::getImageType() const
{
    return imageSelector->getImageType();
}
