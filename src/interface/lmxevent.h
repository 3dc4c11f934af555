#pragma once

#include "stack/modelitemproperties.h"
#include "stack/modelproperties.h"
#include "stack/stacksliceselectioninfo.h"

class LMXEventClient;
class LMXStack;
class Model;
class ModelItem;
class Pose;
class StackSlice;

/// What happened to the document or to the host's settings.
///
/// Events are small objects that the sender makes on its own stack, delivers and destroys; no
/// client keeps one, and none owns its subject.
class LMXEvent
{
public:
    virtual ~LMXEvent();

    /// The number by which clients tell events apart.
    virtual int type() const = 0;

    /// The client that sent the event; null if nobody in particular did.
    void setSender(LMXEventClient* client) { sender = client; }

    LMXEventClient* getSender() const { return sender; }

private:
    LMXEventClient* sender = nullptr;
};

/// Something happened to a live stack.
class LMXStackEvent : public LMXEvent
{
public:
    explicit LMXStackEvent(LMXStack& stack)
        : stack_(&stack)
    {}

    LMXStack& getStack() const { return *stack_; }

private:
    LMXStack* stack_;
};

/// Something happened to a slice.
class LMXSliceEvent : public LMXEvent
{
public:
    explicit LMXSliceEvent(StackSlice& slice)
        : slice_(&slice)
    {}

    StackSlice& getSlice() const { return *slice_; }

private:
    StackSlice* slice_;
};

/// Something happened to a model.
class LMXModelEvent : public LMXEvent
{
public:
    LMXModelEvent() = default;

    explicit LMXModelEvent(Model& model)
        : model_(&model)
    {}

    /// Raises `ProgramError` for an event that was made without a model.
    Model& getModel() const;

private:
    Model* model_ = nullptr;
};

/// Something happened to an item of a model.
class LMXModelItemEvent : public LMXEvent
{
public:
    explicit LMXModelItemEvent(ModelItem& item)
        : item_(&item)
    {}

    ModelItem& getItem() const { return *item_; }

private:
    ModelItem* item_;
};

/// Something happened to a pose.
class LMXPoseEvent : public LMXEvent
{
public:
    explicit LMXPoseEvent(Pose& pose)
        : pose_(&pose)
    {}

    Pose& getPose() const { return *pose_; }

private:
    Pose* pose_;
};

/// An event of a group with its number. The numbers are part of the contract with the host: do not
/// change them.
template <class Group, int Code>
class LMXNumberedEvent : public Group
{
public:
    static constexpr int code = Code;

    using Group::Group;

    int type() const override { return Code; }
};

class LMXStackOpenEvent : public LMXNumberedEvent<LMXStackEvent, 0>
{
public:
    using LMXNumberedEvent::LMXNumberedEvent;
};

class LMXStackCloseEvent : public LMXNumberedEvent<LMXStackEvent, 1>
{
public:
    using LMXNumberedEvent::LMXNumberedEvent;
};

class LMXStackNameEvent : public LMXNumberedEvent<LMXStackEvent, 2>
{
public:
    using LMXNumberedEvent::LMXNumberedEvent;
};

class LMXStackFileNameEvent : public LMXNumberedEvent<LMXStackEvent, 3>
{
public:
    using LMXNumberedEvent::LMXNumberedEvent;
};

class LMXStackModifyEvent : public LMXNumberedEvent<LMXStackEvent, 4>
{
public:
    using LMXNumberedEvent::LMXNumberedEvent;
};

class LMXStackRegistrationEvent : public LMXNumberedEvent<LMXStackEvent, 5>
{
public:
    using LMXNumberedEvent::LMXNumberedEvent;
};

class LMXStackSliceSpacingEvent : public LMXNumberedEvent<LMXStackEvent, 6>
{
public:
    using LMXNumberedEvent::LMXNumberedEvent;
};

class LMXStackImageCalibrationEvent : public LMXNumberedEvent<LMXStackEvent, 7>
{
public:
    using LMXNumberedEvent::LMXNumberedEvent;
};

class LMXSliceAnnotationEvent : public LMXNumberedEvent<LMXSliceEvent, 8>
{
public:
    using LMXNumberedEvent::LMXNumberedEvent;
};

/// The host began or ended to work on a slice exclusively.
class LMXSliceLockEvent : public LMXNumberedEvent<LMXSliceEvent, 9>
{
public:
    using LMXNumberedEvent::LMXNumberedEvent;

    void setLockOn(bool on) { lockOn = on; }

    bool isLockOn() const { return lockOn; }

private:
    bool lockOn = false;
};

class LMXSliceNameEvent : public LMXNumberedEvent<LMXSliceEvent, 10>
{
public:
    using LMXNumberedEvent::LMXNumberedEvent;
};

class LMXSliceSpacingEvent : public LMXNumberedEvent<LMXSliceEvent, 11>
{
public:
    using LMXNumberedEvent::LMXNumberedEvent;
};

class LMXSliceImageCalibrationEvent : public LMXNumberedEvent<LMXSliceEvent, 12>
{
public:
    using LMXNumberedEvent::LMXNumberedEvent;
};

/// The selection on a slice changed; what is selected now comes with the event.
class LMXSliceItemSelectionEvent : public LMXNumberedEvent<LMXSliceEvent, 13>
{
public:
    using LMXNumberedEvent::LMXNumberedEvent;

    void setSelectionInfo(const StackSliceSelectionInfo& info) { selectionInfo = info; }

    const StackSliceSelectionInfo& getSelectionInfo() const { return selectionInfo; }

private:
    StackSliceSelectionInfo selectionInfo;
};

class LMXModelCreateEvent : public LMXNumberedEvent<LMXModelEvent, 14>
{
public:
    using LMXNumberedEvent::LMXNumberedEvent;
};

class LMXModelDeleteEvent : public LMXNumberedEvent<LMXModelEvent, 15>
{
public:
    using LMXNumberedEvent::LMXNumberedEvent;
};

/// A model's properties changed; the old ones come with the event.
class LMXModelPropertiesEvent : public LMXNumberedEvent<LMXModelEvent, 16>
{
public:
    using LMXNumberedEvent::LMXNumberedEvent;

    void setOldProperties(const ModelProperties& properties) { oldProperties = properties; }

    const ModelProperties& getOldProperties() const { return oldProperties; }

    void setOldItemProperties(const ModelItemProperties& properties)
    {
        oldItemProperties = properties;
    }

    const ModelItemProperties& getOldItemProperties() const { return oldItemProperties; }

private:
    ModelProperties oldProperties;
    ModelItemProperties oldItemProperties;
};

class LMXModelItemCreateEvent : public LMXNumberedEvent<LMXModelItemEvent, 17>
{
public:
    using LMXNumberedEvent::LMXNumberedEvent;
};

class LMXModelItemDeleteEvent : public LMXNumberedEvent<LMXModelItemEvent, 18>
{
public:
    using LMXNumberedEvent::LMXNumberedEvent;
};

class LMXModelItemVertexEvent : public LMXNumberedEvent<LMXModelItemEvent, 19>
{
public:
    using LMXNumberedEvent::LMXNumberedEvent;
};

class LMXModelItemAttributeEvent : public LMXNumberedEvent<LMXModelItemEvent, 20>
{
public:
    using LMXNumberedEvent::LMXNumberedEvent;
};

/// Reaches no operation of the clients: changes of a tag are told as actions.
class LMXModelItemTriangulationTagEvent : public LMXNumberedEvent<LMXModelItemEvent, 21>
{
public:
    using LMXNumberedEvent::LMXNumberedEvent;
};

class LMXModelItemSelectEvent : public LMXNumberedEvent<LMXModelItemEvent, 22>
{
public:
    using LMXNumberedEvent::LMXNumberedEvent;
};

/// An item moved from one model to another.
class LMXModelItemConvertEvent : public LMXNumberedEvent<LMXModelItemEvent, 23>
{
public:
    using LMXNumberedEvent::LMXNumberedEvent;

    void setSourceModel(Model* model) { sourceModel = model; }

    Model* getSourceModel() const { return sourceModel; }

    void setDestinationModel(Model* model) { destinationModel = model; }

    Model* getDestinationModel() const { return destinationModel; }

private:
    Model* sourceModel = nullptr;
    Model* destinationModel = nullptr;
};

class LMXPoseCreateEvent : public LMXNumberedEvent<LMXPoseEvent, 24>
{
public:
    using LMXNumberedEvent::LMXNumberedEvent;
};

class LMXPoseDeleteEvent : public LMXNumberedEvent<LMXPoseEvent, 25>
{
public:
    using LMXNumberedEvent::LMXNumberedEvent;
};

/// The host's settings changed.
class LMXPreferencesEvent : public LMXNumberedEvent<LMXEvent, 26>
{
public:
    using LMXNumberedEvent::LMXNumberedEvent;
};
