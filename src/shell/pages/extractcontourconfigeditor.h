#pragma once

#include "blade/contour/backgroundvalue.h"
#include "image/values/imagecolorcontent.h"
#include "shell/widgets/stagepage.h"

class CrenaraBackgroundSelector;
class CrenaraFidelityEditor;
class ImageSelector;
class LMXChannelEditor;

/// The page of the contour extraction.
class ExtractContourConfigEditor : public StagePage
{
    Q_OBJECT

public:
    explicit ExtractContourConfigEditor(QWidget* parent = nullptr);

    void setChannel(ImageColorContent content);
    ImageColorContent getChannel() const;
    void enableChannelSelector(bool enabled);
    void setBackground(BackgroundValue value);
    BackgroundValue getBackground() const;
    void setFidelity(int percent);
    int getFidelityValue() const;
    void setImageType(bool binary);
    bool getImageType() const;

signals:
    void processExtractContourClicked();

private:
    CrenaraBackgroundSelector* backgroundSelector;
    LMXChannelEditor* channelEditor;
    ImageSelector* imageSelector;
    CrenaraFidelityEditor* fidelityEditor;
};
