#include "shell/widgets/imageselector.h"

#include <QCheckBox>
#include <QFormLayout>

ImageSelector::ImageSelector(QWidget* parent)
    : QGroupBox("Image type", parent)
    , binaryBox(new QCheckBox)
{
    QFormLayout* form = new QFormLayout(this);
    form->addRow("Binary :", binaryBox);
}

void ImageSelector::setImageType(bool binary)
{
    binaryBox->setChecked(binary);
}

bool ImageSelector::getImageType() const
{
    return binaryBox->isChecked();
}
