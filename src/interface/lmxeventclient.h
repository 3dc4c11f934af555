#pragma once

#include "interface/lmxevent.h"

class LMXAction;
class LMXItemAction;
class LMXItemTriangulationTagAction;
class LMXSliceAction;
class LMXSliceInsertionDeletionAction;

/// Somebody who wants to know what happens: a view, the live stack, a process.
///
/// A client is in the server's list from the end of its base constructor to the start of its base
/// destructor, and gets every event, its own included, synchronously. All operations do nothing
/// unless told otherwise: a client overrides what it wants.
class LMXEventClient
{
public:
    LMXEventClient();
    virtual ~LMXEventClient();
    LMXEventClient(const LMXEventClient&) = delete;
    LMXEventClient& operator=(const LMXEventClient&) = delete;

    virtual void stackOpenEvent(LMXStackOpenEvent&) {}

    virtual void stackCloseEvent(LMXStackCloseEvent&) {}

    virtual void stackFileNameEvent(LMXStackFileNameEvent&) {}

    virtual void stackNameEvent(LMXStackNameEvent&) {}

    virtual void stackModifyEvent(LMXStackModifyEvent&) {}

    virtual void stackRegistrationEvent(LMXStackRegistrationEvent&) {}

    virtual void stackSliceSpacingEvent(LMXStackSliceSpacingEvent&) {}

    virtual void stackImageCalibrationEvent(LMXStackImageCalibrationEvent&) {}

    virtual void sliceAnnotationEvent(LMXSliceAnnotationEvent&) {}

    /// Passes an insertion or deletion on to the next operation.
    virtual void processSliceAction(LMXSliceAction& action);

    virtual void processSliceInsertionDeletionAction(LMXSliceInsertionDeletionAction&) {}

    virtual void sliceLockEvent(LMXSliceLockEvent&) {}

    virtual void sliceNameEvent(LMXSliceNameEvent&) {}

    virtual void sliceSpacingEvent(LMXSliceSpacingEvent&) {}

    virtual void sliceImageCalibrationEvent(LMXSliceImageCalibrationEvent&) {}

    virtual void sliceItemSelectionEvent(LMXSliceItemSelectionEvent&) {}

    virtual void modelCreateEvent(LMXModelCreateEvent&) {}

    virtual void modelDeleteEvent(LMXModelDeleteEvent&) {}

    virtual void modelPropertiesEvent(LMXModelPropertiesEvent&) {}

    virtual void modelItemCreateEvent(LMXModelItemCreateEvent&) {}

    virtual void modelItemDeleteEvent(LMXModelItemDeleteEvent&) {}

    virtual void modelItemVertexEvent(LMXModelItemVertexEvent&) {}

    virtual void modelItemAttributeEvent(LMXModelItemAttributeEvent&) {}

    virtual void modelItemSelectEvent(LMXModelItemSelectEvent&) {}

    virtual void modelItemConvertEvent(LMXModelItemConvertEvent&) {}

    /// Passes a change of a triangulation tag on to the next operation.
    virtual void processModelItemAction(LMXItemAction& action);

    virtual void processModelItemTriangulationTagAction(LMXItemTriangulationTagAction&) {}

    virtual void poseCreateEvent(LMXPoseCreateEvent&) {}

    virtual void poseDeleteEvent(LMXPoseDeleteEvent&) {}

    virtual void preferencesEvent(LMXPreferencesEvent&) {}

    /// An event batch was closed: the time for work that was put off.
    virtual void atEventBatchEnd() {}

    /// Sends an event to all clients, with this one as its sender.
    void notifyEvent(LMXEvent& event);

    /// Tells all clients of an action that was applied or reverted.
    void notifyAction(LMXAction& action);

    /// Calls the operation that the event's number selects; a number without one is ignored.
    void processEvent(LMXEvent& event);

    /// Calls the operation that the action's class selects.
    void processAction(LMXAction& action);

    static bool eventBatchEnabled() { return batchEnabled_; }

    /// Opens or closes a batch, in which clients may put off expensive reactions. Delivery stays as
    /// it is; closing calls `atEventBatchEnd` of every client in list order. Raises `UsageError`
    /// for a batch that is open already, or that was never opened.
    static void enableEventBatch(bool enable);

private:
    static bool batchEnabled_;
};
