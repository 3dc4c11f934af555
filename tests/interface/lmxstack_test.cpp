#include "image/sources/imagesourcefile.h"
#include "interface/lmxactionhistory.h"
#include "interface/lmxevent.h"
#include "interface/lmxeventserver.h"
#include "interface/lmximageserver.h"
#include "interface/lmxstack.h"
#include "interface/recorder.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/pose.h"
#include "stack/stackslice.h"
#include "support/filesizelimit.h"
#include "support/stacks.h"
#include "support/temporaryfolder.h"

#include <QPointer>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using Calls = Recorder::Calls;

/// A live stack of two slices, a model with an item on the second one, and a pose.
struct Document
{
    Document()
    {
        for (const char* name : {"first", "second"}) {
            auto* slice = new StackSlice;
            slice->setName(name);
            slice->setStack(stack);
            stack.addSlice(*slice);
        }
        stack.addModel(*new Model);
        stacks::addItem(model(), slice(), {});
        stacks::addPose(stack, "view");
    }

    StackSlice& slice() { return stack.getSlice(1); }

    Model& model() { return stack.getModel(0); }

    ModelItem& item() { return model().getItem(0); }

    Pose& pose() { return stack.getPose(0); }

    LMXStack stack;
};

/// Sends the event; whether it marked `stack` as modified.
bool modifies(LMXStack& stack, LMXEvent&& event)
{
    stack.setModified(false);
    LMXEventServer::notifyEvent(event);
    const bool modified = stack.isModified();
    stack.setModified(false);
    return modified;
}

} // namespace

TEST(LMXStack, BecomesModifiedByEventsAboutItsOwnPartsAlone)
{
    for (const bool own : {true, false}) {
        Document watched;
        Document other;
        Document& on = own ? watched : other;
        const auto check = [&](LMXEvent&& event) {
            const int type = event.type();
            EXPECT_EQ(modifies(watched.stack, std::move(event)), own) << type;
        };
        check(LMXStackNameEvent(on.stack));
        check(LMXStackSliceSpacingEvent(on.stack));
        check(LMXStackImageCalibrationEvent(on.stack));
        check(LMXSliceNameEvent(on.slice()));
        check(LMXSliceAnnotationEvent(on.slice()));
        check(LMXSliceSpacingEvent(on.slice()));
        check(LMXSliceImageCalibrationEvent(on.slice()));
        check(LMXModelCreateEvent(on.model()));
        check(LMXModelDeleteEvent(on.model()));
        check(LMXModelItemCreateEvent(on.item()));
        check(LMXModelItemDeleteEvent(on.item()));
        check(LMXModelItemVertexEvent(on.item()));
        check(LMXModelItemAttributeEvent(on.item()));
        check(LMXModelItemConvertEvent(on.item()));
        check(LMXPoseCreateEvent(on.pose()));
        check(LMXPoseDeleteEvent(on.pose()));
        EXPECT_EQ(watched.stack.getLastSegmentedSlice(), own ? "second" : "");
    }
}

TEST(LMXStack, TellsItsChangesOfNameAndState)
{
    LMXStack stack;
    Calls calls;
    Recorder recorder(calls);
    stack.setModified(false);
    stack.setModified(true);
    stack.setModified(true);
    EXPECT_EQ(calls, Calls(3, "stackModifyEvent"));
    EXPECT_TRUE(stack.isModified());
    calls.clear();
    stack.setFilename("");
    stack.setFilename("a.sdf");
    stack.setFilename("a.sdf");
    EXPECT_EQ(calls, Calls({"stackFileNameEvent"}));
    EXPECT_EQ(stack.getFilename(), "a.sdf");
}

TEST(LMXStack, HasItsMapsUpToDateBeforeAnybodyHearsOfAChange)
{
    Document on;
    Calls calls;
    Recorder recorder(calls);
    float heard = 0.0f;
    recorder.reaction = [&](LMXEvent& event) {
        if (event.type() == LMXStackSliceSpacingEvent::code) {
            heard = on.stack.getReconstruction().getZMap()[1];
            EXPECT_EQ(event.getSender(), &on.stack);
        } else if (event.type() == LMXStackImageCalibrationEvent::code) {
            heard = on.stack.getReconstruction().getMaps()[1][0];
        }
    };
    on.stack.updateReconstruction();
    EXPECT_EQ(on.stack.getReconstruction().getZMap().getSize(), 2);
    on.slice().setRelativePosition(7.5f);
    LMXSliceSpacingEvent spacing(on.slice());
    LMXEventServer::notifyEvent(spacing);
    EXPECT_EQ(heard, 7.5f);
    PixelCalibration calibration;
    calibration.setPixelWidth(0.25f);
    on.slice().setPixelCalibration(calibration);
    LMXSliceImageCalibrationEvent calibrated(on.slice());
    LMXEventServer::notifyEvent(calibrated);
    EXPECT_EQ(heard, 0.25f);
    EXPECT_TRUE(on.stack.isModified());
}

TEST(LMXStack, WritingMakesItUnmodifiedAndGivesItTheName)
{
    const TemporaryFolder folder;
    LMXStack stack;
    stack.setName("oaks");
    stack.setModified(true);
    Calls calls;
    Recorder recorder(calls);
    EXPECT_FALSE(stack.write(folder.file("missing/oaks.sdf")));
    EXPECT_TRUE(calls.empty());
    EXPECT_TRUE(stack.isModified());
    EXPECT_EQ(stack.getFilename(), "");
    EXPECT_TRUE(stack.write(folder.file("oaks.sdf")));
    EXPECT_EQ(calls, Calls({"stackModifyEvent", "stackFileNameEvent"}));
    EXPECT_FALSE(stack.isModified());
    EXPECT_EQ(stack.getFilename(), folder.file("oaks.sdf"));
    EXPECT_NE(folder.read("oaks.sdf").find("STACK \"oaks\";\n"), std::string::npos);
}

TEST(LMXStack, AFailedWriteLeavesStackAndOldFileAsTheyWere)
{
    const TemporaryFolder folder;
    const std::string path = folder.write("oaks.sdf", "what was there");
    Document on;
    on.stack.setFilename("before.sdf");
    on.stack.setModified(true);
    EXPECT_THROW(on.stack.write(path), ProgramError); // its slices have no images
    {
        const FileSizeLimit fullDisk(10);
        EXPECT_THROW(LMXStack().write(path), FileWriteError);
    }
    EXPECT_TRUE(on.stack.isModified());
    EXPECT_EQ(on.stack.getFilename(), "before.sdf");
    EXPECT_EQ(folder.read("oaks.sdf"), "what was there");
    EXPECT_EQ(folder.fileCount(), 1);
}

TEST(LMXStack, KeepsOneHistoryForItselfAndOneForEachSlice)
{
    Document on;
    LMXActionHistory& ofSlice = on.stack.sliceHistory(on.slice());
    EXPECT_EQ(&on.stack.sliceHistory(on.slice()), &ofSlice);
    EXPECT_NE(&on.stack.sliceHistory(on.stack.getFirstSlice()), &ofSlice);
    EXPECT_NE(&on.stack.history(), &ofSlice);
    for (LMXActionHistory* history : {&on.stack.history(), &ofSlice}) {
        history->openStep();
        history->push(new LMXAction, true);
        history->closeStep();
    }
    on.stack.destroyHistory();
    EXPECT_FALSE(on.stack.history().isUndoable());
    EXPECT_FALSE(on.stack.sliceHistory(on.slice()).isUndoable());

    // A history outlived its slice, and the next slice at that address got it.
    const QPointer<LMXActionHistory> ended = &on.stack.sliceHistory(on.slice());
    on.stack.deleteSlice(1);
    EXPECT_TRUE(ended.isNull());
}
