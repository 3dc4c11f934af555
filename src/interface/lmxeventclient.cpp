#include "interface/lmxeventclient.h"

#include "interface/lmxeventserver.h"
#include "interface/lmxitemtriangulationtagaction.h"
#include "interface/lmxsliceinsertiondeletionaction.h"
#include "system/exception.h"

bool LMXEventClient::batchEnabled_ = false;

namespace {

/// Hands the event, as what its number says it is, to an operation of the client.
template <class Event>
void deliver(LMXEventClient& client, void (LMXEventClient::*operation)(Event&), LMXEvent& event)
{
    (client.*operation)(static_cast<Event&>(event));
}

} // namespace

LMXEventClient::LMXEventClient()
{
    LMXEventServer::attach(*this);
}

LMXEventClient::~LMXEventClient()
{
    LMXEventServer::detach(*this);
}

void LMXEventClient::processSliceAction(LMXSliceAction& action)
{
    if (auto* insertion = dynamic_cast<LMXSliceInsertionDeletionAction*>(&action)) {
        processSliceInsertionDeletionAction(*insertion);
    }
}

void LMXEventClient::processModelItemAction(LMXItemAction& action)
{
    if (auto* tagging = dynamic_cast<LMXItemTriangulationTagAction*>(&action)) {
        processModelItemTriangulationTagAction(*tagging);
    }
}

void LMXEventClient::notifyEvent(LMXEvent& event)
{
    event.setSender(this);
    LMXEventServer::notifyEvent(event);
}

void LMXEventClient::notifyAction(LMXAction& action)
{
    LMXEventServer::notifyAction(action);
}

void LMXEventClient::processEvent(LMXEvent& event)
{
    using Client = LMXEventClient;
    switch (event.type()) {
    case LMXStackOpenEvent::code:
        return deliver(*this, &Client::stackOpenEvent, event);
    case LMXStackCloseEvent::code:
        return deliver(*this, &Client::stackCloseEvent, event);
    case LMXStackNameEvent::code:
        return deliver(*this, &Client::stackNameEvent, event);
    case LMXStackFileNameEvent::code:
        return deliver(*this, &Client::stackFileNameEvent, event);
    case LMXStackModifyEvent::code:
        return deliver(*this, &Client::stackModifyEvent, event);
    case LMXStackRegistrationEvent::code:
        return deliver(*this, &Client::stackRegistrationEvent, event);
    case LMXStackSliceSpacingEvent::code:
        return deliver(*this, &Client::stackSliceSpacingEvent, event);
    case LMXStackImageCalibrationEvent::code:
        return deliver(*this, &Client::stackImageCalibrationEvent, event);
    case LMXSliceAnnotationEvent::code:
        return deliver(*this, &Client::sliceAnnotationEvent, event);
    case LMXSliceLockEvent::code:
        return deliver(*this, &Client::sliceLockEvent, event);
    case LMXSliceNameEvent::code:
        return deliver(*this, &Client::sliceNameEvent, event);
    case LMXSliceSpacingEvent::code:
        return deliver(*this, &Client::sliceSpacingEvent, event);
    case LMXSliceImageCalibrationEvent::code:
        return deliver(*this, &Client::sliceImageCalibrationEvent, event);
    case LMXSliceItemSelectionEvent::code:
        return deliver(*this, &Client::sliceItemSelectionEvent, event);
    case LMXModelCreateEvent::code:
        return deliver(*this, &Client::modelCreateEvent, event);
    case LMXModelDeleteEvent::code:
        return deliver(*this, &Client::modelDeleteEvent, event);
    case LMXModelPropertiesEvent::code:
        return deliver(*this, &Client::modelPropertiesEvent, event);
    case LMXModelItemCreateEvent::code:
        return deliver(*this, &Client::modelItemCreateEvent, event);
    case LMXModelItemDeleteEvent::code:
        return deliver(*this, &Client::modelItemDeleteEvent, event);
    case LMXModelItemVertexEvent::code:
        return deliver(*this, &Client::modelItemVertexEvent, event);
    case LMXModelItemAttributeEvent::code:
        return deliver(*this, &Client::modelItemAttributeEvent, event);
    case LMXModelItemSelectEvent::code:
        return deliver(*this, &Client::modelItemSelectEvent, event);
    case LMXModelItemConvertEvent::code:
        return deliver(*this, &Client::modelItemConvertEvent, event);
    case LMXPoseCreateEvent::code:
        return deliver(*this, &Client::poseCreateEvent, event);
    case LMXPoseDeleteEvent::code:
        return deliver(*this, &Client::poseDeleteEvent, event);
    case LMXPreferencesEvent::code:
        return deliver(*this, &Client::preferencesEvent, event);
    default:
        return;
    }
}

void LMXEventClient::processAction(LMXAction& action)
{
    if (auto* sliceAction = dynamic_cast<LMXSliceAction*>(&action)) {
        processSliceAction(*sliceAction);
    } else if (auto* itemAction = dynamic_cast<LMXItemAction*>(&action)) {
        processModelItemAction(*itemAction);
    }
}

void LMXEventClient::enableEventBatch(bool enable)
{
    if (enable == batchEnabled_) {
        raise<UsageError>("void LMXEventClient::enableEventBatch(const bool)",
                          enable ? "An event sequence is already open"
                                 : "There is no event sequence to end");
    }
    batchEnabled_ = enable;
    if (!enable) {
        LMXEventServer::atEventBatchEnd();
    }
}
