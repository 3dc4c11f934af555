#include "interface/lmxstack.h"

#include "interface/lmximageserver.h"
#include "interface/lmxrawimagecache.h"
#include "interface/lmxslicepixmapcache.h"
#include "stack/modelitem.h"
#include "stack/pose.h"
#include "stack/stackslice.h"
#include "stack/stackwriter.h"

#include <QSize>

LMXStack::LMXStack()
    : history_(new LMXActionHistory)
    , panoramaImageServer(new LMXImageServer)
    , rawImageCache(new LMXRawImageCache)
    , slicePixmapCache(new LMXSlicePixmapCache)
{
    reconstruction.setStack(*this);
    panoramaImageServer->setAutoDelete(false);
    panoramaImageServer->setBaseSize(QSize(256, 256));
}

LMXStack::~LMXStack()
{
    destroyHistory();
}

void LMXStack::setFilename(const std::string& path)
{
    if (path == filename) {
        return;
    }
    filename = path;
    LMXStackFileNameEvent event(*this);
    notifyEvent(event);
}

void LMXStack::setModified(bool value)
{
    modified_ = value;
    LMXStackModifyEvent event(*this);
    notifyEvent(event);
}

bool LMXStack::write(const std::string& path)
{
    StackWriter writer;
    const bool written = writer.write(*this, path);
    if (written) {
        setModified(false);
        setFilename(path);
    }
    return written;
}

LMXActionHistory& LMXStack::sliceHistory(StackSlice& slice)
{
    if (!slice.getCompanion()) {
        slice.setCompanion(std::make_unique<LMXActionHistory>());
    }
    return dynamic_cast<LMXActionHistory&>(*slice.getCompanion());
}

void LMXStack::destroyHistory()
{
    history_->clear();
    for (int i = 0; i < getNumSlices(); ++i) {
        getSlice(i).setCompanion(nullptr);
    }
}

void LMXStack::updateReconstruction()
{
    reconstruction.computeMaps();
}

bool LMXStack::owns(const LMXStackEvent& event) const
{
    return &event.getStack() == this;
}

bool LMXStack::owns(const LMXSliceEvent& event) const
{
    return event.getSlice().getStack() == this;
}

bool LMXStack::owns(const LMXModelItemEvent& event) const
{
    const StackSlice* slice = event.getItem().getSlice();
    return slice && slice->getStack() == this;
}

bool LMXStack::owns(const LMXPoseEvent& event) const
{
    return event.getPose().getStack() == this;
}

void LMXStack::stackNameEvent(LMXStackNameEvent& event)
{
    if (owns(event)) {
        setModified(true);
    }
}

void LMXStack::stackSliceSpacingEvent(LMXStackSliceSpacingEvent& event)
{
    if (owns(event)) {
        setModified(true);
    }
}

void LMXStack::stackImageCalibrationEvent(LMXStackImageCalibrationEvent& event)
{
    if (owns(event)) {
        setModified(true);
    }
}

void LMXStack::sliceAnnotationEvent(LMXSliceAnnotationEvent& event)
{
    if (owns(event)) {
        setModified(true);
    }
}

void LMXStack::sliceNameEvent(LMXSliceNameEvent& event)
{
    if (owns(event)) {
        setModified(true);
    }
}

void LMXStack::sliceSpacingEvent(LMXSliceSpacingEvent& event)
{
    if (owns(event)) {
        updateReconstruction();
        LMXStackSliceSpacingEvent spacing(*this);
        notifyEvent(spacing);
    }
}

void LMXStack::sliceImageCalibrationEvent(LMXSliceImageCalibrationEvent& event)
{
    if (owns(event)) {
        updateReconstruction();
        LMXStackImageCalibrationEvent calibration(*this);
        notifyEvent(calibration);
    }
}

void LMXStack::modelCreateEvent(LMXModelCreateEvent& event)
{
    if (findModel(event.getModel()) >= 0) {
        setModified(true);
    }
}

void LMXStack::modelDeleteEvent(LMXModelDeleteEvent& event)
{
    if (findModel(event.getModel()) >= 0) {
        setModified(true);
    }
}

void LMXStack::modelItemCreateEvent(LMXModelItemCreateEvent& event)
{
    if (owns(event)) {
        setModified(true);
        setLastSegmentedSlice(event.getItem().getSlice()->getName());
    }
}

void LMXStack::modelItemDeleteEvent(LMXModelItemDeleteEvent& event)
{
    if (owns(event)) {
        setModified(true);
    }
}

void LMXStack::modelItemVertexEvent(LMXModelItemVertexEvent& event)
{
    if (owns(event)) {
        setModified(true);
    }
}

void LMXStack::modelItemAttributeEvent(LMXModelItemAttributeEvent& event)
{
    if (owns(event)) {
        setModified(true);
    }
}

void LMXStack::modelItemConvertEvent(LMXModelItemConvertEvent& event)
{
    if (owns(event)) {
        setModified(true);
    }
}

void LMXStack::poseCreateEvent(LMXPoseCreateEvent& event)
{
    if (owns(event)) {
        setModified(true);
    }
}

void LMXStack::poseDeleteEvent(LMXPoseDeleteEvent& event)
{
    if (owns(event)) {
        setModified(true);
    }
}
