#pragma once

#include <QGroupBox>

class QCheckBox;

/// Says whether the photographs are binary already.
class ImageSelector : public QGroupBox
{
    Q_OBJECT

public:
    explicit ImageSelector(QWidget* parent = nullptr);

    void setImageType(bool binary);
    bool getImageType() const;

private:
    QCheckBox* binaryBox;
};
