#include "interface/lmxchanneleditor.h"

#include <QGroupBox>
#include <QRadioButton>
#include <QVBoxLayout>

LMXChannelEditor::LMXChannelEditor(QWidget* parent)
    : QWidget(parent)
    , group(new QGroupBox("Channel selector "))
    , intensity(new QRadioButton("Intensity"))
    , red(new QRadioButton("Red channel"))
    , green(new QRadioButton("Green channel"))
    , blue(new QRadioButton("Blue channel"))
{
    group->setEnabled(false);
    QVBoxLayout* choices = new QVBoxLayout(group);
    choices->setSpacing(5);
    for (QRadioButton* radio : {intensity, red, green, blue}) {
        choices->addWidget(radio);
    }
    QVBoxLayout* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(group);
}

void LMXChannelEditor::setChannel(ImageColorContent content)
{
    const bool open = content == ImageColorContent::Mixed || content == ImageColorContent::Unknown;
    group->setEnabled(open);
    switch (content) {
    case ImageColorContent::Red:
        red->setChecked(true);
        break;
    case ImageColorContent::Green:
        green->setChecked(true);
        break;
    case ImageColorContent::Blue:
        blue->setChecked(true);
        break;
    default:
        intensity->setChecked(true);
    }
}

ImageColorContent LMXChannelEditor::getChannel() const
{
    if (red->isChecked()) {
        return ImageColorContent::Red;
    }
    if (green->isChecked()) {
        return ImageColorContent::Green;
    }
    return blue->isChecked() ? ImageColorContent::Blue : ImageColorContent::Gray;
}

void LMXChannelEditor::setEnabled(bool enabled)
{
    group->setEnabled(enabled);
}
