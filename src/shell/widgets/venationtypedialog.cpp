#include "shell/widgets/venationtypedialog.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>

VenationTypeDialog::VenationTypeDialog(QWidget* parent)
    : QWidget(parent)
    , buttons(new QButtonGroup(this))
{
    QHBoxLayout* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(new QLabel("Venation Type"));
    layout->addStretch();
    const auto addChoice = [&](VenationType type, const char* icon, const char* toolTip) {
        QRadioButton* button = new QRadioButton;
        button->setIcon(QIcon(icon));
        button->setIconSize(QSize(32, 32));
        button->setToolTip(toolTip);
        buttons->addButton(button, type);
        layout->addWidget(button);
    };
    // The pictures have no text beside them.
    addChoice(PINNATE, ":/images/pinnate.png", "Pinnate");
    addChoice(PALMATE, ":/images/palmate.png", "Palmate");
    buttons->setExclusive(true);
    connect(buttons, &QButtonGroup::idClicked, this, &VenationTypeDialog::venationTypeChanged);
}

void VenationTypeDialog::setVenationType(VenationType type)
{
    venationType = type; // like a click: what is shown as checked is what is chosen
    if (QAbstractButton* button = buttons->button(type)) {
        button->setChecked(true);
    }
}

void VenationTypeDialog::venationTypeChanged(int id)
{
    venationType = static_cast<VenationType>(id);
}
