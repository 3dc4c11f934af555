#include "interface/lmxaction.h"
#include "interface/lmxactionhistory.h"
#include "interface/lmxevent.h"
#include "interface/lmxitemconversionaction.h"
#include "interface/lmxitemverticeschangeaction.h"
#include "interface/lmxstack.h"
#include "interface/recorder.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"
#include "support/errors.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <sstream>

namespace {

using Calls = Recorder::Calls;

/// Notes what happens to it in a list.
class Noted : public LMXAction
{
public:
    Noted(Calls& calls, const std::string& name)
        : calls_(calls)
        , name_(name)
    {}

    ~Noted() override { calls_.push_back("delete " + name_); }

    void apply() override
    {
        LMXAction::apply();
        calls_.push_back("apply " + name_);
    }

    void revert() override
    {
        LMXAction::revert();
        calls_.push_back("revert " + name_);
    }

    QString description(bool) const override { return QString::fromStdString(name_); }

private:
    Calls& calls_;
    std::string name_;
};

/// Notes the signals of a history.
void noteSignals(LMXActionHistory& history, Calls& calls)
{
    const auto text = [](bool on) { return on ? " true" : " false"; };
    QObject::connect(&history, &LMXActionHistory::changed, [&] { calls.push_back("changed"); });
    QObject::connect(&history, &LMXActionHistory::undoEnabled,
                     [&, text](bool on) { calls.push_back(std::string("undo") + text(on)); });
    QObject::connect(&history, &LMXActionHistory::redoEnabled,
                     [&, text](bool on) { calls.push_back(std::string("redo") + text(on)); });
}

void addStep(LMXActionHistory& history, const std::vector<LMXAction*>& actions)
{
    history.openStep();
    for (LMXAction* action : actions) {
        history.push(action, true);
    }
    history.closeStep();
}

Vertices<int> randomVertices(std::mt19937& random)
{
    const int count = static_cast<int>(random() % 6);
    Vertices<int> vertices(2, count, 0, 1);
    for (int i = 0; i < count; ++i) {
        vertices[i][0] = static_cast<int>(random() % 100);
        vertices[i][1] = static_cast<int>(random() % 100);
    }
    return vertices;
}

/// A slice that tells of its death.
class MortalSlice : public StackSlice
{
public:
    explicit MortalSlice(std::set<std::string>& living)
        : living_(living)
    {}

    ~MortalSlice() override { living_.erase(getName()); }

private:
    std::set<std::string>& living_;
};

/// A live stack that random actions change, and its state as text.
class Workshop
{
public:
    explicit Workshop(unsigned seed)
        : random_(seed)
    {
        for (const char* name : {"A", "B", "C"}) {
            auto* model = new Model;
            model->setName(name);
            stack.addModel(*model);
        }
        for (int i = 0; i < 4; ++i) {
            StackSlice* slice = newSlice();
            stack.addSlice(*slice);
            newItem(*slice).attach();
        }
    }

    LMXAction* randomAction()
    {
        const int slices = stack.getNumSlices();
        if (slices == 0 || random_() % 5 == 0) {
            auto* insertion = new LMXSliceInsertionDeletionAction(*newSlice());
            newItem(insertion->getSlice()).attachToSlice();
            insertion->setSlicePosition(below(slices + 1));
            return insertion;
        }
        StackSlice& slice = stack.getSlice(below(slices));
        if (random_() % 5 == 0) {
            auto* deletion = new LMXSliceInsertionDeletionAction(slice);
            deletion->setDeletionMode();
            return deletion;
        }
        ModelItem& item = slice.getItem(0);
        if (random_() % 3 == 0) {
            auto* conversion = new LMXItemConversionAction(item);
            conversion->setModel(stack.getModel(below(3)));
            return conversion;
        }
        if (random_() % 2 == 0) {
            auto* tag = new LMXItemTriangulationTagAction(item);
            tag->setTriangulationTag(static_cast<CurveStackTriangulationContourTag>(below(3)));
            return tag;
        }
        auto* change = new LMXItemVerticesChangeAction(item);
        change->setVertices(randomVertices(random_));
        return change;
    }

    /// Slices in order with their items, then the items of each model.
    std::string text() const
    {
        std::ostringstream text;
        for (int i = 0; i < stack.getNumSlices(); ++i) {
            const StackSlice& slice = stack.getSlice(i);
            text << slice.getName() << "@" << stack.getReconstruction().getZMap()[i];
            for (int k = 0; k < slice.getNumItems(); ++k) {
                write(text, slice.getItem(k));
            }
            text << "\n";
        }
        for (int i = 0; i < stack.getNumModels(); ++i) {
            const Model& model = stack.getModel(i);
            std::set<std::string> slices;
            for (int k = 0; k < model.getNumItems(); ++k) {
                slices.insert(model.getItem(k).getSlice()->getName());
            }
            text << model.getName() << ":";
            for (const std::string& slice : slices) {
                text << " " << slice;
            }
            text << "\n";
        }
        return text.str();
    }

    int below(int n) { return static_cast<int>(random_() % static_cast<unsigned>(n)); }

    std::set<std::string> living;
    LMXStack stack;

private:
    static void write(std::ostream& text, const ModelItem& item)
    {
        text << " [" << item.getModel()->getName() << " "
             << static_cast<int>(item.getTriangulationTag());
        for (int i = 0; i < item.getVertices().getSize(); ++i) {
            text << " " << item.getVertices()[i][0] << "," << item.getVertices()[i][1];
        }
        text << "]";
    }

    StackSlice* newSlice()
    {
        auto* slice = new MortalSlice(living);
        slice->setName("slice" + std::to_string(made_++));
        slice->setStack(stack);
        slice->setAbsolutePosition(static_cast<float>(below(1000)));
        living.insert(slice->getName());
        return slice;
    }

    ModelItem& newItem(StackSlice& slice)
    {
        auto* item = new ModelItem;
        item->setModel(stack.getModel(0));
        item->setSlice(slice);
        item->setVertices(randomVertices(random_));
        return *item;
    }

    std::mt19937 random_;
    int made_ = 0;
};

} // namespace

TEST(LMXActionHistory, StepsOpenAndCloseInTurn)
{
    LMXActionHistory history;
    Calls calls;
    Noted loose(calls, "loose");
    EXPECT_RAISES(UsageError, "void LMXActionHistory::closeStep()", "No open step to close",
                  history.closeStep());
    EXPECT_RAISES(UsageError, "void LMXActionHistory::push(LMXAction*, const bool)",
                  "No step was open prior to action insertion", history.push(&loose, true));
    EXPECT_TRUE(calls.empty());
    noteSignals(history, calls);
    history.openStep();
    EXPECT_RAISES(UsageError, "void LMXActionHistory::openStep()", "A step is already open",
                  history.openStep());
    history.closeStep();
    EXPECT_FALSE(history.isUndoable());
    history.undo();
    history.redo();
    EXPECT_TRUE(calls.empty());
    EXPECT_EQ(history.getUndoDescription(false), "(Nothing to undo)");
    EXPECT_EQ(history.getRedoDescription(true), "(Nothing to redo)");
}

TEST(LMXActionHistory, RevertsAStepBackwardsAndTellsItInOrder)
{
    Calls calls;
    LMXActionHistory history;
    addStep(history, {new Noted(calls, "a"), new Noted(calls, "b")});
    addStep(history, {new Noted(calls, "c")});
    calls.clear();
    noteSignals(history, calls);
    EXPECT_EQ(history.getUndoDescription(false), "c");
    history.undo();
    EXPECT_EQ(calls, Calls({"revert c", "changed", "redo true", "undo true"}));
    calls.clear();
    EXPECT_EQ(history.getUndoDescription(false), "a");
    history.undo();
    EXPECT_EQ(calls, Calls({"revert b", "revert a", "changed", "redo true", "undo false"}));
    calls.clear();
    EXPECT_EQ(history.getRedoDescription(false), "a");
    history.redo();
    EXPECT_EQ(calls, Calls({"apply a", "apply b", "changed", "undo true", "redo true"}));
    calls.clear();
    history.redo();
    EXPECT_EQ(calls, Calls({"apply c", "changed", "undo true", "redo false"}));
}

TEST(LMXActionHistory, APushEndsTheRedoBranchEvenWithoutApplyingAndClearingDestroysAll)
{
    Calls calls;
    LMXActionHistory history;
    addStep(history, {new Noted(calls, "a")});
    history.undo();
    history.openStep();
    EXPECT_TRUE(history.isRedoable());
    calls.clear();
    noteSignals(history, calls);
    auto* action = new Noted(calls, "b");
    history.push(action, false);
    EXPECT_EQ(calls, Calls({"delete a", "redo false"}));
    EXPECT_FALSE(history.isRedoable());
    EXPECT_FALSE(action->reverted());
    calls.clear();
    history.closeStep();
    EXPECT_EQ(calls, Calls({"changed", "undo true"}));
    calls.clear();
    history.clear();
    EXPECT_EQ(calls, Calls({"delete b", "changed"}));
    EXPECT_FALSE(history.isUndoable() || history.isRedoable());
}

// The model of a history is the list of all states as text, with a place in it.
TEST(LMXActionHistory, RandomScriptsAreUndoneToTheStartAndRedoneToTheEnd)
{
    for (unsigned seed = 0; seed < 40; ++seed) {
        Workshop workshop(seed);
        LMXActionHistory& history = workshop.stack.history();
        workshop.stack.updateReconstruction();
        std::vector<std::string> states = {workshop.text()};
        std::size_t place = 0;
        const auto step = [&](bool back) {
            back ? history.undo() : history.redo();
            place += back ? -1 : 1;
            ASSERT_EQ(workshop.text(), states[place]) << seed;
        };
        for (int i = 0; i < 120; ++i) {
            const int choice = workshop.below(5);
            if (choice == 0 && place > 0) {
                step(true);
            } else if (choice == 1 && place + 1 < states.size()) {
                step(false);
            } else {
                history.openStep();
                for (int n = 1 + workshop.below(3); n > 0; --n) {
                    history.push(workshop.randomAction(), true);
                }
                history.closeStep();
                states.resize(++place);
                states.push_back(workshop.text());
            }
            EXPECT_EQ(history.isUndoable(), place > 0);
            EXPECT_EQ(history.isRedoable(), place + 1 < states.size());
        }
        while (place > 0) {
            step(true);
        }
        while (place + 1 < states.size()) {
            step(false);
        }
        // What is out of the stack now goes with the history, the rest stays.
        workshop.stack.destroyHistory();
        EXPECT_EQ(workshop.living.size(), static_cast<std::size_t>(workshop.stack.getNumSlices()));
        EXPECT_EQ(workshop.text(), states[place]);
    }
}

TEST(LMXSliceInsertionDeletionAction, RefusesAPlaceWhereTheSliceIsNot)
{
    const std::string where = "void LMXSliceInsertionDeletionAction::apply()";
    Workshop workshop(1);
    const std::string before = (workshop.stack.updateReconstruction(), workshop.text());
    {
        LMXSliceInsertionDeletionAction deletion(workshop.stack.getSlice(1));
        deletion.setDeletionMode();
        deletion.setSlicePosition(2);
        EXPECT_RAISES(RangeError, where, "The slice does not stand at this position",
                      deletion.apply());
        auto* slice = new StackSlice;
        LMXSliceInsertionDeletionAction homeless(*slice);
        EXPECT_RAISES(UsageError, where, "The slice has no stack", homeless.apply());
        slice->setStack(workshop.stack);
        homeless.setSlicePosition(9);
        EXPECT_RAISES(RangeError, where, "The slice can't be inserted outside the stack",
                      homeless.apply());
        delete slice;
    }
    EXPECT_EQ(workshop.text(), before);
}

TEST(LMXItemActions, TellTheClientsBothWays)
{
    Workshop workshop(3);
    ModelItem& item = workshop.stack.getSlice(0).getItem(0);
    Calls calls;
    Recorder recorder(calls);
    Model* source = nullptr;
    Model* destination = nullptr;
    recorder.reaction = [&](LMXEvent& event) {
        if (event.type() == LMXModelItemConvertEvent::code) {
            source = static_cast<LMXModelItemConvertEvent&>(event).getSourceModel();
            destination = static_cast<LMXModelItemConvertEvent&>(event).getDestinationModel();
        }
    };
    LMXItemConversionAction conversion(item);
    conversion.apply();
    conversion.revert();
    EXPECT_TRUE(calls.empty());
    EXPECT_TRUE(conversion.reverted());
    conversion.setModel(workshop.stack.getModel(2));
    conversion.apply();
    EXPECT_FALSE(conversion.reverted());
    item.getProperties().setLineWidth(5.0f);
    calls.clear();
    conversion.revert();
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "modelItemConvertEvent"), 1);
    EXPECT_EQ(source, &workshop.stack.getModel(0));
    EXPECT_EQ(destination, &workshop.stack.getModel(2));
    EXPECT_FALSE(item.getProperties().definesLineWidth());

    LMXItemVerticesChangeAction change(item);
    calls.clear();
    change.apply();
    EXPECT_TRUE(item.getSelection().isComplete());
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "modelItemVertexEvent"), 1);

    LMXItemTriangulationTagAction tag(item);
    tag.setTriangulationTag(CurveStackTriangulationContourTag::End);
    workshop.stack.setModified(false);
    calls.clear();
    tag.apply();
    EXPECT_TRUE(workshop.stack.isModified());
    EXPECT_EQ(calls, Calls({"tag", "stackModifyEvent"}));
    workshop.stack.setModified(false);
    calls.clear();
    tag.revert();
    EXPECT_FALSE(tag.reverted());
    EXPECT_FALSE(workshop.stack.isModified());
    EXPECT_EQ(calls, Calls({"tag"}));
    EXPECT_EQ(item.getTriangulationTag(), CurveStackTriangulationContourTag::None);
}
