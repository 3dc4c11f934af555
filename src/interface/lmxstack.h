#pragma once

#include "interface/lmxactionhistory.h"
#include "interface/lmxeventclient.h"
#include "stack/stack.h"
#include "stack/stackreconstruction.h"

#include <QObject>

#include <memory>
#include <string>

class LMXImageServer;
class LMXRawImageCache;
class LMXSlicePixmapCache;

/// The document as the host holds it live: the stack with its file, its modified flag, its undo
/// histories, its reconstruction and its image caches. It listens to events like any client, and so
/// knows when it was modified.
///
/// Use of one stack is for the GUI thread alone.
class LMXStack : public QObject, public LMXEventClient, public virtual Stack
{
    Q_OBJECT

public:
    LMXStack();
    ~LMXStack() override;

    /// The file that the stack was last read from or written to. A new name is told to all clients.
    void setFilename(const std::string& path);

    const std::string& getFilename() const { return filename; }

    /// Tells all clients, also where the value stays.
    void setModified(bool value);

    bool isModified() const { return modified_; }

    /// Writes the stack as a stack description file. On success the stack takes that file's name
    /// and is unmodified; else it stays as it was, and so does a file that stood there.
    bool write(const std::string& path);

    LMXActionHistory& history() { return *history_; }

    /// The slice's own history, made at the first request; it ends with the slice.
    LMXActionHistory& sliceHistory(StackSlice& slice);

    /// Forgets all steps of the stack and of its slices.
    void destroyHistory();

    /// Computes the maps into space anew. Slice actions and the events of a slice's spacing or
    /// calibration lead to it; who changes the list of slices or a registration directly calls it.
    void updateReconstruction();

    StackReconstruction<float>& getReconstruction() { return reconstruction; }

    const StackReconstruction<float>& getReconstruction() const { return reconstruction; }

    LMXImageServer& getPanoramaImageServer() { return *panoramaImageServer; }

    LMXRawImageCache& getRawImageCache() { return *rawImageCache; }

    LMXSlicePixmapCache& getSlicePixmapCache() { return *slicePixmapCache; }

    void beginRegistration() { inRegistration_ = true; }

    void endRegistration() { inRegistration_ = false; }

    bool inRegistration() const { return inRegistration_; }

    void stackNameEvent(LMXStackNameEvent& event) override;
    void stackSliceSpacingEvent(LMXStackSliceSpacingEvent& event) override;
    void stackImageCalibrationEvent(LMXStackImageCalibrationEvent& event) override;
    void sliceAnnotationEvent(LMXSliceAnnotationEvent& event) override;
    void sliceNameEvent(LMXSliceNameEvent& event) override;
    void sliceSpacingEvent(LMXSliceSpacingEvent& event) override;
    void sliceImageCalibrationEvent(LMXSliceImageCalibrationEvent& event) override;
    void modelCreateEvent(LMXModelCreateEvent& event) override;
    void modelDeleteEvent(LMXModelDeleteEvent& event) override;
    void modelItemCreateEvent(LMXModelItemCreateEvent& event) override;
    void modelItemDeleteEvent(LMXModelItemDeleteEvent& event) override;
    void modelItemVertexEvent(LMXModelItemVertexEvent& event) override;
    void modelItemAttributeEvent(LMXModelItemAttributeEvent& event) override;
    void modelItemConvertEvent(LMXModelItemConvertEvent& event) override;
    void poseCreateEvent(LMXPoseCreateEvent& event) override;
    void poseDeleteEvent(LMXPoseDeleteEvent& event) override;

signals:
    /// For the host to send; this library never does.
    void modified(bool value);

private:
    bool owns(const LMXStackEvent& event) const;
    bool owns(const LMXSliceEvent& event) const;
    bool owns(const LMXModelItemEvent& event) const;
    bool owns(const LMXPoseEvent& event) const;

    std::string filename;
    bool modified_ = false;
    StackReconstruction<float> reconstruction;
    std::unique_ptr<LMXActionHistory> history_;
    std::unique_ptr<LMXImageServer> panoramaImageServer;
    bool inRegistration_ = false;
    std::unique_ptr<LMXRawImageCache> rawImageCache;
    std::unique_ptr<LMXSlicePixmapCache> slicePixmapCache;
};
