#include "interface/lmxevent.h"
#include "interface/lmxeventserver.h"
#include "interface/lmxstack.h"
#include "interface/recorder.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/pose.h"
#include "stack/stackslice.h"
#include "support/errors.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <random>
#include <stdexcept>

namespace {

using Calls = Recorder::Calls;

LMXPreferencesEvent& preferences()
{
    static LMXPreferencesEvent event;
    return event;
}

/// An event of a number of its own.
class ForeignEvent : public LMXEvent
{
public:
    explicit ForeignEvent(int number)
        : number_(number)
    {}

    int type() const override { return number_; }

private:
    int number_;
};

/// The subjects of all events.
struct Subjects
{
    LMXStack stack;
    StackSlice slice;
    Model model;
    ModelItem item;
    Pose pose;
};

} // namespace

TEST(LMXEventClient, EachEventReachesItsOwnOperation)
{
    Subjects on;
    Calls calls;
    Recorder recorder(calls);
    int number = 0;
    const auto send = [&](LMXEvent&& event, const std::string& operation) {
        EXPECT_EQ(event.type(), number++);
        calls.clear();
        recorder.processEvent(event);
        EXPECT_EQ(calls, operation.empty() ? Calls() : Calls({operation}));
    };
    send(LMXStackOpenEvent(on.stack), "stackOpenEvent");
    send(LMXStackCloseEvent(on.stack), "stackCloseEvent");
    send(LMXStackNameEvent(on.stack), "stackNameEvent");
    send(LMXStackFileNameEvent(on.stack), "stackFileNameEvent");
    send(LMXStackModifyEvent(on.stack), "stackModifyEvent");
    send(LMXStackRegistrationEvent(on.stack), "stackRegistrationEvent");
    send(LMXStackSliceSpacingEvent(on.stack), "stackSliceSpacingEvent");
    send(LMXStackImageCalibrationEvent(on.stack), "stackImageCalibrationEvent");
    send(LMXSliceAnnotationEvent(on.slice), "sliceAnnotationEvent");
    send(LMXSliceLockEvent(on.slice), "sliceLockEvent");
    send(LMXSliceNameEvent(on.slice), "sliceNameEvent");
    send(LMXSliceSpacingEvent(on.slice), "sliceSpacingEvent");
    send(LMXSliceImageCalibrationEvent(on.slice), "sliceImageCalibrationEvent");
    send(LMXSliceItemSelectionEvent(on.slice), "sliceItemSelectionEvent");
    send(LMXModelCreateEvent(on.model), "modelCreateEvent");
    send(LMXModelDeleteEvent(on.model), "modelDeleteEvent");
    send(LMXModelPropertiesEvent(on.model), "modelPropertiesEvent");
    send(LMXModelItemCreateEvent(on.item), "modelItemCreateEvent");
    send(LMXModelItemDeleteEvent(on.item), "modelItemDeleteEvent");
    send(LMXModelItemVertexEvent(on.item), "modelItemVertexEvent");
    send(LMXModelItemAttributeEvent(on.item), "modelItemAttributeEvent");
    send(LMXModelItemTriangulationTagEvent(on.item), "");
    send(LMXModelItemSelectEvent(on.item), "modelItemSelectEvent");
    send(LMXModelItemConvertEvent(on.item), "modelItemConvertEvent");
    send(LMXPoseCreateEvent(on.pose), "poseCreateEvent");
    send(LMXPoseDeleteEvent(on.pose), "poseDeleteEvent");
    send(LMXPreferencesEvent(), "preferencesEvent");
    send(ForeignEvent(27), "");
    number = -1;
    send(ForeignEvent(-1), "");
}

TEST(LMXEvent, NeedsItsSubject)
{
    EXPECT_RAISES(ProgramError, "Model& LMXModelEvent::getModel()", "Model is null",
                  LMXModelDeleteEvent().getModel());
}

TEST(LMXEventServer, ServesAllClientsInOrderTheSenderToo)
{
    Calls calls;
    Recorder a(calls, "a.");
    Recorder b(calls, "b.");
    Recorder c(calls, "c.");
    LMXEventServer::attach(a);
    LMXPreferencesEvent event;
    EXPECT_EQ(event.getSender(), nullptr);
    b.notifyEvent(event);
    EXPECT_EQ(event.getSender(), &b);
    EXPECT_EQ(calls, Calls({"a.preferencesEvent", "b.preferencesEvent", "c.preferencesEvent"}));
    calls.clear();
    LMXEventServer::detach(b);
    LMXEventServer::detach(b);
    LMXEventServer::notifyEvent(event);
    EXPECT_EQ(calls, Calls({"a.preferencesEvent", "c.preferencesEvent"}));
}

TEST(LMXEventServer, DeliversNestedEventsAtOnce)
{
    Calls calls;
    Recorder a(calls, "a.");
    Recorder b(calls, "b.");
    LMXStack stack;
    a.reaction = [&](LMXEvent& event) {
        if (event.type() == preferences().type()) {
            LMXStackOpenEvent open(stack);
            a.notifyEvent(open);
        }
    };
    LMXEventServer::notifyEvent(preferences());
    EXPECT_EQ(calls, Calls({"a.preferencesEvent", "a.stackOpenEvent", "b.stackOpenEvent",
                            "b.preferencesEvent"}));
}

TEST(LMXEventServer, AnErrorEndsTheDeliveryAndTheNextOneIsWhole)
{
    Calls calls;
    Recorder a(calls, "a.");
    Recorder b(calls, "b.");
    a.reaction = [](LMXEvent&) { throw std::runtime_error("no"); };
    EXPECT_THROW(LMXEventServer::notifyEvent(preferences()), std::runtime_error);
    EXPECT_EQ(calls, Calls({"a.preferencesEvent"}));
    a.reaction = nullptr;
    LMXEventServer::notifyEvent(preferences());
    EXPECT_EQ(calls, Calls({"a.preferencesEvent", "a.preferencesEvent", "b.preferencesEvent"}));
}

// The model is the plain list of clients with a mark at the next one to serve.
TEST(LMXEventServer, ClientsThatComeAndGoDuringADeliveryTakeNobodysTurn)
{
    std::mt19937 random(5);
    for (int round = 0; round < 300; ++round) {
        Calls calls;
        Calls expected;
        std::vector<std::pair<std::string, std::unique_ptr<Recorder>>> standing;
        std::size_t next = 0;
        int made = 0;
        int changesLeft = 20;
        std::function<void(LMXEvent&)> react;
        const auto comeIn = [&] {
            const std::string name = std::to_string(made++) + ".";
            standing.emplace_back(name, std::make_unique<Recorder>(calls, name));
            standing.back().second->reaction = react;
        };
        const auto goOut = [&](std::size_t place, std::size_t& reacting) {
            standing.erase(standing.begin() + static_cast<std::ptrdiff_t>(place));
            next -= place < next ? 1 : 0;
            reacting -= place < reacting ? 1 : 0;
        };
        react = [&](LMXEvent&) {
            ASSERT_LT(next, standing.size());
            expected.push_back(standing[next].first + "preferencesEvent");
            std::size_t reacting = next++;
            for (auto n = random() % 4; n > 0 && changesLeft > 0; --n, --changesLeft) {
                const std::size_t place = random() % standing.size();
                if (random() % 2 == 0) {
                    comeIn();
                } else if (place != reacting) {
                    goOut(place, reacting);
                }
            }
        };
        for (int i = 0; i < 6; ++i) {
            comeIn();
        }
        LMXEventServer::notifyEvent(preferences());
        EXPECT_EQ(calls, expected);
        EXPECT_EQ(next, standing.size());
    }
}

TEST(LMXEventClient, BatchesOpenAndEndInTurn)
{
    const std::string where = "void LMXEventClient::enableEventBatch(const bool)";
    Calls calls;
    Recorder a(calls, "a.");
    Recorder b(calls, "b.");
    EXPECT_FALSE(LMXEventClient::eventBatchEnabled());
    EXPECT_RAISES(UsageError, where, "There is no event sequence to end",
                  LMXEventClient::enableEventBatch(false));
    LMXEventClient::enableEventBatch(true);
    EXPECT_RAISES(UsageError, where, "An event sequence is already open",
                  LMXEventClient::enableEventBatch(true));
    EXPECT_TRUE(LMXEventClient::eventBatchEnabled());
    LMXEventServer::notifyEvent(preferences());
    EXPECT_EQ(calls.size(), 2u);
    calls.clear();
    LMXEventClient::enableEventBatch(false);
    EXPECT_FALSE(LMXEventClient::eventBatchEnabled());
    EXPECT_EQ(calls, Calls({"a.atEventBatchEnd", "b.atEventBatchEnd"}));
}

TEST(LMXEventClient, ActionsReachTheOperationOfTheirClass)
{
    Calls calls;
    Recorder recorder(calls);
    LMXStack stack;
    Model model;
    ModelItem item;
    item.setModel(model);
    StackSlice slice;
    slice.setStack(stack);
    LMXItemTriangulationTagAction tag(item);
    LMXSliceInsertionDeletionAction insertion(slice);
    LMXAction plain;
    LMXItemAction other(item);
    recorder.notifyAction(tag);
    recorder.notifyAction(insertion);
    recorder.notifyAction(plain);
    recorder.notifyAction(other);
    EXPECT_EQ(calls, Calls({"tag", "Insert slice"}));
}
