#pragma once

#include "interface/lmxaction.h"
#include "interface/lmxeventclient.h"
#include "interface/lmxitemtriangulationtagaction.h"
#include "interface/lmxsliceinsertiondeletionaction.h"

#include <functional>
#include <string>
#include <vector>

/// A client that notes the name of each operation as it is called. Several may share one list.
class Recorder : public LMXEventClient
{
public:
    using Calls = std::vector<std::string>;

    explicit Recorder(Calls& calls, const std::string& name = "")
        : calls_(calls)
        , name_(name)
    {}

    // clang-format off
    void stackOpenEvent(LMXStackOpenEvent& e) override { note("stackOpenEvent", e); }
    void stackCloseEvent(LMXStackCloseEvent& e) override { note("stackCloseEvent", e); }
    void stackFileNameEvent(LMXStackFileNameEvent& e) override { note("stackFileNameEvent", e); }
    void stackNameEvent(LMXStackNameEvent& e) override { note("stackNameEvent", e); }
    void stackModifyEvent(LMXStackModifyEvent& e) override { note("stackModifyEvent", e); }
    void stackRegistrationEvent(LMXStackRegistrationEvent& e) override { note("stackRegistrationEvent", e); }
    void stackSliceSpacingEvent(LMXStackSliceSpacingEvent& e) override { note("stackSliceSpacingEvent", e); }
    void stackImageCalibrationEvent(LMXStackImageCalibrationEvent& e) override { note("stackImageCalibrationEvent", e); }
    void sliceAnnotationEvent(LMXSliceAnnotationEvent& e) override { note("sliceAnnotationEvent", e); }
    void sliceLockEvent(LMXSliceLockEvent& e) override { note("sliceLockEvent", e); }
    void sliceNameEvent(LMXSliceNameEvent& e) override { note("sliceNameEvent", e); }
    void sliceSpacingEvent(LMXSliceSpacingEvent& e) override { note("sliceSpacingEvent", e); }
    void sliceImageCalibrationEvent(LMXSliceImageCalibrationEvent& e) override { note("sliceImageCalibrationEvent", e); }
    void sliceItemSelectionEvent(LMXSliceItemSelectionEvent& e) override { note("sliceItemSelectionEvent", e); }
    void modelCreateEvent(LMXModelCreateEvent& e) override { note("modelCreateEvent", e); }
    void modelDeleteEvent(LMXModelDeleteEvent& e) override { note("modelDeleteEvent", e); }
    void modelPropertiesEvent(LMXModelPropertiesEvent& e) override { note("modelPropertiesEvent", e); }
    void modelItemCreateEvent(LMXModelItemCreateEvent& e) override { note("modelItemCreateEvent", e); }
    void modelItemDeleteEvent(LMXModelItemDeleteEvent& e) override { note("modelItemDeleteEvent", e); }
    void modelItemVertexEvent(LMXModelItemVertexEvent& e) override { note("modelItemVertexEvent", e); }
    void modelItemAttributeEvent(LMXModelItemAttributeEvent& e) override { note("modelItemAttributeEvent", e); }
    void modelItemSelectEvent(LMXModelItemSelectEvent& e) override { note("modelItemSelectEvent", e); }
    void modelItemConvertEvent(LMXModelItemConvertEvent& e) override { note("modelItemConvertEvent", e); }
    void poseCreateEvent(LMXPoseCreateEvent& e) override { note("poseCreateEvent", e); }
    void poseDeleteEvent(LMXPoseDeleteEvent& e) override { note("poseDeleteEvent", e); }
    void preferencesEvent(LMXPreferencesEvent& e) override { note("preferencesEvent", e); }

    // clang-format on

    void processSliceInsertionDeletionAction(LMXSliceInsertionDeletionAction& action) override
    {
        calls_.push_back(name_ + action.description(false).toStdString());
    }

    void processModelItemTriangulationTagAction(LMXItemTriangulationTagAction&) override
    {
        calls_.push_back(name_ + "tag");
    }

    void atEventBatchEnd() override { calls_.push_back(name_ + "atEventBatchEnd"); }

    /// What the client does beside noting an event, if anything.
    std::function<void(LMXEvent&)> reaction;

private:
    void note(const std::string& operation, LMXEvent& event)
    {
        calls_.push_back(name_ + operation);
        if (reaction) {
            reaction(event);
        }
    }

    Calls& calls_;
    std::string name_;
};
