#pragma once

#include "blade/process/venationtype.h"

#include <QWidget>

class QButtonGroup;

/// The choice between pinnate and palmate leaves, by two pictures.
class VenationTypeDialog : public QWidget
{
    Q_OBJECT

public:
    explicit VenationTypeDialog(QWidget* parent = nullptr);

    /// Checks the button of the type.
    void setVenationType(VenationType type);

    VenationType getVenationType() const { return venationType; }

public slots:
    void venationTypeChanged(int id);

private:
    QButtonGroup* buttons;
    VenationType venationType = PINNATE;
};
