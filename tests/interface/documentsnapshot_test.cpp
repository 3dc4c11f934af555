#include "interface/documentsnapshot.h"
#include "interface/lmxaction.h"
#include "interface/lmxactionhistory.h"
#include "interface/lmxeventserver.h"
#include "interface/lmxstack.h"
#include "interface/recorder.h"
#include "stack/stackwriter.h"
#include "support/stacks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace {

/// All that a snapshot keeps, as text.
std::string describe(const LMXStack& stack)
{
    std::ostringstream text;
    StackWriter().writeModels(stack, text);
    for (int s = 0; s < stack.getNumSlices(); ++s) {
        const StackSlice& slice = stack.getSlice(s);
        text << "slice " << s << ":";
        for (int i = 0; i < slice.getNumItems(); ++i) {
            const ModelItem& item = slice.getItem(i);
            text << ' ' << item.getModel()->getName() << '/' << item.getSize() << '/'
                 << item.selectedVertices().getSize();
        }
        text << '\n';
    }
    text << stack.getLastSegmentedSlice() << ' ' << stack.isModified();
    return text.str();
}

/// One change of some kind, announced or not, as processes make them.
void change(LMXStack& stack, stacks::Dice& dice)
{
    StackSlice& slice = stack.getSlice(dice.below(stack.getNumSlices()));
    const int kind = dice.below(5);
    if (kind == 0 || stack.getNumModels() == 0) {
        Model& model = stacks::addModel(stack, dice.name());
        LMXModelCreateEvent event(model);
        LMXEventServer::notifyEvent(event);
    } else if (kind == 1) {
        Model& model = stack.getModel(dice.below(stack.getNumModels()));
        ModelItem& item = stacks::addItem(model, slice, {{dice.below(99), 1}, {2, dice.below(9)}});
        LMXModelItemCreateEvent event(item);
        LMXEventServer::notifyEvent(event);
    } else if (kind == 2) {
        stack.deleteModel(dice.below(stack.getNumModels()));
    } else if (slice.getNumItems() > 0) {
        ModelItem& item = slice.getItem(dice.below(slice.getNumItems()));
        if (kind == 3) {
            item.translate(1, dice.below(3));
            item.getSelection().set(dice.coin());
        } else {
            item.detach();
            item.attach(); // goes to the end of both lists
        }
    }
}

} // namespace

TEST(DocumentSnapshot, RestoresWhatAnyChangesLeft)
{
    stacks::Dice dice(7);
    LMXStack stack;
    for (int i = 0; i < 4; ++i) {
        stacks::addSlice(stack, "s" + std::to_string(i), stacks::statedFile("/none.tif", 9, 9));
    }
    for (int round = 0; round < 60; ++round) {
        for (int n = dice.below(8); n > 0; --n) {
            change(stack, dice);
        }
        stack.setModified(dice.coin());
        const std::string before = describe(stack);
        DocumentSnapshot snapshot(stack);
        for (int n = dice.below(12); n > 0; --n) {
            change(stack, dice);
        }
        snapshot.restore(stack);
        ASSERT_EQ(describe(stack), before) << "round " << round;
    }
}

// A failed run once replaced all objects and lost the undo of all edits.
TEST(DocumentSnapshot, WhatIsAsItWasStaysAndTheRestIsPutBackWithItsEvents)
{
    LMXStack stack;
    std::vector<StackSlice*> slices;
    std::vector<ModelItem*> items;
    Model& model = stacks::addModel(stack, "m");
    for (int i = 0; i < 3; ++i) {
        slices.push_back(&stacks::addSlice(stack, "s", stacks::statedFile("/none.tif", 9, 9)));
        items.push_back(&stacks::addItem(model, *slices.back(), {{1, 2}, {i, 3}}));
    }
    const auto edit = [](LMXActionHistory& history) {
        history.openStep();
        history.push(new LMXAction, true);
        history.closeStep();
    };
    /// What is heard of when a change was undone, and which histories still have a step.
    const auto restored = [&](auto change) {
        edit(stack.history());
        std::for_each(slices.begin(), slices.end(),
                      [&](StackSlice* slice) { edit(stack.sliceHistory(*slice)); });
        const std::string before = describe(stack);
        DocumentSnapshot snapshot(stack);
        change();
        Recorder::Calls calls;
        {
            const Recorder recorder(calls);
            snapshot.restore(stack);
        }
        EXPECT_EQ(describe(stack), before);
        calls.erase(std::remove(calls.begin(), calls.end(), "stackModifyEvent"), calls.end());
        calls.push_back(stack.history().isUndoable() ? "stack" : "");
        for (StackSlice* slice : slices) {
            calls.back() += stack.sliceHistory(*slice).isUndoable() ? "+" : "-";
        }
        return calls;
    };
    using Calls = Recorder::Calls;
    EXPECT_EQ(restored([] {}), Calls{"stack+++"});
    const auto move = [&] { items[1]->translate(1, 1); };
    EXPECT_EQ(restored(move), (Calls{"modelItemVertexEvent", "stack+++"}));
    const auto reorder = [&] {
        items[0]->detach();
        items[0]->attach();
    };
    EXPECT_EQ(restored(reorder), Calls{"stack+++"});
    EXPECT_EQ(&model.getItem(0), items[0]);
    const auto add = [&] { stacks::addItem(stacks::addModel(stack, "n"), *slices[0], {{4, 4}}); };
    EXPECT_EQ(restored(add), (Calls{"modelItemDeleteEvent", "modelDeleteEvent", "stack+++"}));
    EXPECT_EQ(restored([&] { delete items[2]; }), (Calls{"modelItemCreateEvent", "++-"}));
    EXPECT_EQ(&model.getItem(0), items[0]);
    EXPECT_EQ(restored([&] { stack.deleteModel(0); }),
              (Calls{"modelCreateEvent", "modelItemCreateEvent", "modelItemCreateEvent",
                     "modelItemCreateEvent", "---"}));
}
