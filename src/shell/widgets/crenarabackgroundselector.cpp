#include "shell/widgets/crenarabackgroundselector.h"

#include <QGroupBox>
#include <QRadioButton>
#include <QVBoxLayout>

CrenaraBackgroundSelector::CrenaraBackgroundSelector(QWidget* parent)
    : QWidget(parent)
    , light(new QRadioButton("Ligth Background"))
    , dark(new QRadioButton("Dark Background"))
{
    QGroupBox* group = new QGroupBox("Background Selector");
    QVBoxLayout* choices = new QVBoxLayout(group);
    choices->setSpacing(5);
    choices->addWidget(light);
    choices->addWidget(dark);
    QVBoxLayout* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(group);
}

void CrenaraBackgroundSelector::setBackground(BackgroundValue value)
{
    (value == LightBackground ? light : dark)->setChecked(true);
}

BackgroundValue CrenaraBackgroundSelector::getBackground() const
{
    return light->isChecked() ? LightBackground : DarkBackground;
}
