#pragma once

#include "image/values/imagecolorcontent.h"

#include <QWidget>

class QGroupBox;
class QRadioButton;

/// The choice of the channel that a process works on. Open to the user only if the slices mix
/// colours or their colours can't be told; else the content of the stack forces the choice.
class LMXChannelEditor : public QWidget
{
    Q_OBJECT

public:
    explicit LMXChannelEditor(QWidget* parent = nullptr);

    /// Checks the channel of the content; a mixed or unknown content opens the choice, at the
    /// intensity.
    void setChannel(ImageColorContent content);
    /// Grey for the intensity, else one of the three colours.
    ImageColorContent getChannel() const;
    /// Opens or closes the choice.
    void setEnabled(bool enabled);

private:
    QGroupBox* group;
    QRadioButton* intensity;
    QRadioButton* red;
    QRadioButton* green;
    QRadioButton* blue;
};
