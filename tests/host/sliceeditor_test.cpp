#include "blade/landmarks/extractconvexpoints.h"
#include "blade/landmarks/junctionplacing.h"
#include "host/document/lmxrootmediator.h"
#include "host/editing/contourline.h"
#include "host/editing/sliceeditor.h"
#include "image/files/imagewriter.h"
#include "image/pixels/image0.h"
#include "image/sources/imagesourcefile.h"
#include "interface/lmxeventserver.h"
#include "interface/lmxstack.h"
#include "stack/stackwriter.h"
#include "support/leaf.h"
#include "support/temporaryfolder.h"
#include "system/exception.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>
#include <stdexcept>

namespace {

constexpr double pi = 3.14159265358979323846;

/// An editor on three slices: a leaf with all its landmarks, one with contour and junctions, and a
/// photograph alone.
class SliceEditorTest : public ::testing::Test
{
protected:
    SliceEditorTest()
        : editor(mediator)
    {
        auto made = leaf::emptyStack(3);
        const Image0 image = leaf::toImage(leaf::photograph(outline, 860, 540, 200.0f, 30.0f));
        for (int i = 0; i < 3; ++i) {
            const std::string path = folder.file("leaf" + std::to_string(i) + ".tif");
            ImageWriter().write(image, path, false);
            made->getSlice(i).setImageSource(ImageSourceFile(path));
        }
        for (int i = 0; i < 2; ++i) {
            leaf::addItem(*made, "Contour", PRIMITIVE_POLYGON, i, pixels());
            leaf::addItem(*made, "Petiole", PRIMITIVE_POLYPOINT, i,
                          {outline.junctions[0], outline.junctions[1]});
        }
        leaf::addItem(*made, "Apex", PRIMITIVE_POLYPOINT, 0, {outline.apex});
        leaf::addItem(*made, "Primary Sinus", PRIMITIVE_POLYPOINT, 0, outline.sinuses);
        leaf::addItem(*made, "Primary Peak", PRIMITIVE_POLYPOINT, 0, outline.tips);
        mediator.open(std::move(made));
    }

    std::vector<leaf::Point> pixels() const
    {
        std::vector<leaf::Point> kept;
        for (std::size_t i = 0; i < outline.points.size(); i += 4) {
            kept.push_back(outline.points[i]);
        }
        return kept;
    }

    LMXStack& stack() { return *mediator.stack(); }

    /// The stack file, and the order of the items on their slices, which it does not hold.
    std::string state() { return std::to_string(std::hash<std::string>()(wholeState())); }

    std::string wholeState()
    {
        EXPECT_TRUE(StackWriter().write(stack(), folder.file("state.sdf")));
        std::string text = folder.read("state.sdf");
        for (int s = 0; s < stack().getNumSlices(); ++s) {
            const StackSlice& slice = stack().getSlice(s);
            for (int i = 0; i < slice.getNumItems(); ++i) {
                text += slice.getItem(i).getModel()->getName() + " " +
                        std::to_string(slice.getItem(i).getSize()) + "\n";
            }
        }
        return text;
    }

    int itemIndex(const std::string& name, int slice)
    {
        const ModelItem* item = leaf::findItem(stack(), name, slice);
        return item ? stack().getSlice(slice).findItem(*item) : -1;
    }

    QPoint onOutline(std::mt19937& random) const
    {
        const leaf::Point& point = outline.points[random() % outline.points.size()];
        return {static_cast<int>(point.x), static_cast<int>(point.y)};
    }

    VertexPlaces someLandmarks(std::mt19937& random, int slice)
    {
        VertexPlaces places;
        const StackSlice& owner = stack().getSlice(slice);
        for (int i = 0; i < owner.getNumItems(); ++i) {
            for (int k = 0; k < owner.getItem(i).getSize(); ++k) {
                if (owner.getItem(i).getModel()->getName() != "Contour" && random() % 4 == 0) {
                    places.push_back({i, k});
                }
            }
        }
        return places;
    }

    void editAtRandom(std::mt19937& random, int slice);

    leaf::Outline outline = leaf::draw(leaf::Shape());
    TemporaryFolder folder;
    LMXRootMediator mediator;
    SliceEditor editor;
};

/// May find nothing to do, or be refused.
void SliceEditorTest::editAtRandom(std::mt19937& random, int slice)
{
    const auto near = [&](const QPoint& point) {
        return point +
               QPoint(static_cast<int>(random() % 9) - 4, static_cast<int>(random() % 9) - 4);
    };
    const std::vector<std::string> models = editor.landmarkModels();
    const std::string& model = models[random() % models.size()];
    const VertexPlaces places = someLandmarks(random, slice);
    const int items = stack().getSlice(slice).getNumItems();
    switch (random() % 8) {
    case 0:
        editor.drawJunctions(slice, near(onOutline(random)), near(onOutline(random)));
        break;
    case 1:
        editor.moveVertices(slice, places, QPoint(3, -2));
        break;
    case 2:
        editor.addLandmark(slice, model, near(onOutline(random)));
        break;
    case 3:
        editor.remove(slice, places);
        break;
    case 4:
        editor.moveToModel(slice, places, model);
        break;
    case 5:
        editor.redrawContour(slice,
                             QPolygon({onOutline(random), QPoint(260, 420), onOutline(random)}));
        break;
    case 6:
        if (items > 0) {
            editor.remove(slice, {{static_cast<int>(random() % unsigned(items))}});
        }
        break;
    default:
        if (random() % 4 == 0) {
            editor.deleteContour(slice);
        }
        break;
    }
}

} // namespace

TEST_F(SliceEditorTest, RandomEditsUndoneAndRedoneGiveTheSameBytes)
{
    std::mt19937 random(20);
    std::vector<std::string> states = {state()};
    std::vector<int> slices;
    for (int round = 0; round < 200; ++round) {
        const int slice = static_cast<int>(random() % 3);
        const QString former = editor.undoText(slice);
        try {
            editAtRandom(random, slice);
        } catch (const ValueError&) {
            ASSERT_EQ(state(), states.back()) << "refused, but something was done";
        }
        const std::string now = state();
        if (now == states.back()) {
            ASSERT_EQ(editor.undoText(slice), former);
            continue;
        }
        ASSERT_TRUE(editor.undo(slice));
        ASSERT_EQ(state(), states.back()) << editor.redoText(slice).toStdString();
        ASSERT_EQ(editor.undoText(slice), former);
        ASSERT_TRUE(editor.redo(slice));
        ASSERT_EQ(state(), now) << editor.undoText(slice).toStdString();
        states.push_back(now);
        slices.push_back(slice);
    }
    ASSERT_GT(slices.size(), 60u);
    for (std::size_t i = slices.size(); i-- > 0;) {
        ASSERT_TRUE(editor.undo(slices[i]));
        ASSERT_EQ(state(), states[i]);
    }
    for (std::size_t i = 0; i < slices.size(); ++i) {
        ASSERT_TRUE(editor.redo(slices[i]));
        ASSERT_EQ(state(), states[i + 1]);
    }
    // Slices have histories of their own: back and forth on any of them, each step leads back to
    // where it came from.
    for (int round = 0; round < 100; ++round) {
        const int slice = static_cast<int>(random() % 3);
        const std::string before = state();
        const bool back = random() % 3 > 0;
        if (back ? editor.undo(slice) : editor.redo(slice)) {
            ASSERT_TRUE(back ? editor.redo(slice) : editor.undo(slice));
            ASSERT_EQ(state(), before);
            ASSERT_TRUE(back ? editor.undo(slice) : editor.redo(slice));
        }
    }
}

TEST_F(SliceEditorTest, AModelThatEditsMadeStaysAsLongAsOneNeedsIt)
{
    const auto models = [this] { return stack().getNumModels(); };
    const int before = models();
    const std::string initial = state();
    editor.addLandmark(0, "Secondary Peak", {260, 420});
    editor.addLandmark(1, "Secondary Peak", {260, 420});
    EXPECT_EQ(models(), before + 1);
    ASSERT_TRUE(editor.undo(0)); // the one that made it
    EXPECT_EQ(models(), before + 1);
    EXPECT_EQ(leaf::vertices(stack(), "Secondary Peak", 1).size(), 1u);
    ASSERT_TRUE(editor.undo(1));
    EXPECT_EQ(models(), before);
    EXPECT_EQ(state(), initial);

    // While it is out, an edit on a third slice finds the same one again.
    editor.addLandmark(2, "Secondary Peak", {260, 420});
    ASSERT_TRUE(editor.redo(0));
    ASSERT_TRUE(editor.redo(1));
    EXPECT_EQ(models(), before + 1);
    EXPECT_EQ(stack().getModel(before).getNumItems(), 3);
}

TEST_F(SliceEditorTest, ForeignChangesEndTheHistoriesConcerned)
{
    const auto edit = [this] {
        editor.drawJunctions(2, {10, 10}, {20, 20});
        editor.moveVertex(0, {itemIndex("Apex", 0), 0}, {100, 100});
        editor.moveVertex(1, {itemIndex("Petiole", 1), 0}, {100, 100});
        editor.addLandmark(1, "Secondary Sinus", {100, 100});
        editor.remove(1, {{itemIndex("Secondary Sinus", 1)}});
        ASSERT_TRUE(editor.canUndo(0) && editor.canUndo(1) && editor.canUndo(2));
    };
    const auto expectEnded = [this](std::initializer_list<int> slices, const char* by) {
        for (const int slice : slices) {
            const std::string before = state();
            EXPECT_FALSE(editor.undo(slice)) << by << ", slice " << slice;
            EXPECT_FALSE(editor.redo(slice)) << by << ", slice " << slice;
            EXPECT_FALSE(editor.canUndo(slice));
            EXPECT_EQ(state(), before);
        }
    };
    edit();
    JunctionPlacing placing;
    placing.setStack(stack());
    placing.place({{30, 60}, {30, 60}}, 2);
    expectEnded({2}, "an item told");
    EXPECT_TRUE(editor.undo(0));
    EXPECT_TRUE(editor.undo(1));
    EXPECT_TRUE(editor.redo(1));

    edit();
    editor.undo(1);
    ExtractConvexPoints stage;
    stage.setStack(stack());
    stage.createModels();
    stage.process(0);
    expectEnded({0, 1, 2}, "a stage");

    edit();
    stack().deleteModel(stack().findModel("Petiole"));
    expectEnded({0, 1, 2}, "a model that went without a word");
    leaf::addItem(stack(), "Petiole", PRIMITIVE_POLYPOINT, 1, {{9, 9}});
    editor.moveVertex(1, {itemIndex("Petiole", 1), 0}, {100, 100});
    delete leaf::findItem(stack(), "Petiole", 1);
    expectEnded({1}, "an item that went without a word");

    // The slice had the same items at the same addresses again, and the change went unseen.
    editor.addLandmark(0, "Secondary Peak", {100, 100});
    ModelItem& last = stack().getSlice(0).getItem(stack().getSlice(0).getNumItems() - 1);
    last.detach();
    last.removeVertex(0);
    last.attach();
    expectEnded({0}, "an item that changed without a word");

    editor.addLandmark(0, "Secondary Peak", {100, 100});
    editor.undo(0);
    mediator.close();
    EXPECT_FALSE(editor.undo(0));
}

TEST_F(SliceEditorTest, AnErrorOfAClientLeavesTheDocument)
{
    class Failing : public LMXEventClient
    {
    public:
        void modelItemCreateEvent(LMXModelItemCreateEvent&) override { fail(); }

        void modelItemDeleteEvent(LMXModelItemDeleteEvent&) override { fail(); }

        void modelItemVertexEvent(LMXModelItemVertexEvent&) override { fail(); }

        void fail()
        {
            if (left > 0 && --left == 0) {
                throw std::runtime_error("a client");
            }
        }

        int left = 0;
    } failing;

    const std::string before = state();
    const VertexPlaces all = {{itemIndex("Petiole", 0), 0},
                              {itemIndex("Petiole", 0), 1},
                              {itemIndex("Primary Sinus", 0), 1}};
    for (const int event : {1, 2, 3}) {
        failing.left = event;
        EXPECT_THROW(editor.moveToModel(0, all, "Secondary Peak"), std::runtime_error);
        EXPECT_EQ(state(), before);
        EXPECT_FALSE(editor.canUndo(0));
    }
    failing.left = 4;
    EXPECT_NO_THROW(editor.moveToModel(0, all, "Secondary Peak"));
    ASSERT_TRUE(editor.canUndo(0));
    failing.left = 1;
    EXPECT_THROW(editor.undo(0), std::runtime_error);
    EXPECT_FALSE(editor.redo(0)) << "half undone, the history is ended";
}

TEST_F(SliceEditorTest, BadInputIsRefusedAndChangesNothing)
{
    const std::string before = state();
    const int apex = itemIndex("Apex", 0);
    const int contour = itemIndex("Contour", 0);
    const std::vector<std::function<void()>> inputs = {
        [&] {
            editor.drawJunctions(0, {1, 1}, {5, 5});
        }, // far from the contour
        [&] {
            editor.drawJunctions(2, {10, 10}, {10, 10});
        }, // one point
        [&] {
            editor.drawJunctions(2, {10, 10}, {10, 900});
        }, // outside the image
        [&] {
            editor.moveVertex(0, {apex, 1}, {5, 5});
        }, // no such vertex
        [&] {
            editor.moveVertices(0, {{99, 0}}, {5, 5});
        }, // no such item
        [&] {
            editor.remove(0, {{-1, 0}});
        },
        [&] {
            editor.addLandmark(0, "Contour", {5, 5});
        }, // no model of points
        [&] {
            editor.addLandmark(2, "No Such", {5, 5});
        },
        [&] {
            editor.moveToModel(0, {{contour, 0}}, "Apex");
        }, // no landmark
        [&] {
            editor.moveToModel(0, {{itemIndex("Petiole", 0), 0}}, "Apex");
        }, // a second one
        [&] {
            editor.redrawContour(0, QPolygon(QVector<QPoint>{{7, 7}, {7, 7}}));
        },
        [&] {
            editor.redrawContour(0, QPolygon(QVector<QPoint>{{1, 1}, {539, 1}}));
        }, // far from the contour
        [&] { editor.deleteContour(2); },
    };
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        EXPECT_THROW(inputs[i](), ValueError) << i;
        EXPECT_EQ(state(), before) << i;
        EXPECT_FALSE(editor.canUndo(0) || editor.canUndo(2)) << i;
    }
    // Beyond the edge a point stays in the image; a leaf keeps one apex.
    editor.moveVertex(0, {apex, 0}, {-50, 9000});
    EXPECT_EQ(leaf::vertices(stack(), "Apex", 0)[0].y, 859.0);
    editor.addLandmark(0, "Apex", {260, 420});
    EXPECT_EQ(leaf::vertices(stack(), "Apex", 0).size(), 1u);
    EXPECT_EQ(editor.undoText(0), "Move Apex");
}

TEST_F(SliceEditorTest, UndoneToTheSavedStateTheStackIsUnmodified)
{
    const std::string file = folder.file("kept.sdf");
    editor.moveVertex(0, {itemIndex("Apex", 0), 0}, {100, 100});
    EXPECT_TRUE(stack().isModified());
    ASSERT_TRUE(stack().write(file));
    editor.addLandmark(1, "Primary Peak", {260, 420});
    editor.undo(0);
    EXPECT_TRUE(stack().isModified());
    editor.undo(1);
    EXPECT_TRUE(stack().isModified()) << "the saved edit is undone";
    editor.redo(0);
    EXPECT_FALSE(stack().isModified());
    ASSERT_TRUE(StackWriter().write(stack(), folder.file("again.sdf")));
    EXPECT_EQ(folder.read("again.sdf"), folder.read("kept.sdf"));

    // A new edit in place of the saved one leaves no way back to it.
    editor.undo(0);
    editor.moveVertex(0, {itemIndex("Apex", 0), 0}, {200, 100});
    editor.undo(0);
    EXPECT_TRUE(stack().isModified());
    // Nor does a change that is nobody's edit.
    ASSERT_TRUE(stack().write(file));
    editor.addLandmark(1, "Primary Peak", {260, 420});
    stack().setName("another");
    stack().setModified(true);
    editor.undo(1);
    EXPECT_TRUE(stack().isModified());
}

TEST(ContourLine, ADrawnLineTakesThePlaceOfThePieceThatItRetraces)
{
    // A circle; lines a little outside of it, drawn either way, over less and more than a half.
    constexpr int count = 720;
    constexpr double radius = 200.0;
    const auto at = [](double angle, double r) {
        return QPoint(static_cast<int>(std::lround(300.0 + r * std::cos(angle))),
                      static_cast<int>(std::lround(300.0 + r * std::sin(angle))));
    };
    Vertices<int> circle(2, count, 0, 0);
    for (int i = 0; i < count; ++i) {
        const QPoint point = at(2.0 * pi * i / count, radius);
        circle[i][0] = point.x();
        circle[i][1] = point.y();
    }
    const auto angleOf = [](const QPoint& point) {
        const double angle = std::atan2(point.y() - 300, point.x() - 300);
        return angle < 0.0 ? angle + 2.0 * pi : angle;
    };
    std::mt19937 random(3);
    std::uniform_real_distribution<double> anywhere(0.0, 2.0 * pi);
    for (int round = 0; round < 40; ++round) {
        const double begin = anywhere(random);
        const double width = 0.3 + 5.0 * (anywhere(random) / (2.0 * pi));
        std::vector<QPoint> drawn;
        for (int part = 0; part <= 50; ++part) {
            drawn.push_back(at(begin + part / 50.0 * width, radius + 12.0));
        }
        if (round % 2 == 0) {
            std::reverse(drawn.begin(), drawn.end());
        }
        const std::vector<QPoint> result = ContourLine(circle).redrawn(drawn);
        // The nearest place is uncertain where pixels make steps.
        constexpr double slack = 0.08;
        double turned = 0.0;
        for (std::size_t i = 0; i < result.size(); ++i) {
            const QPoint& point = result[i];
            const QPoint& next = result[(i + 1) % result.size()];
            ASSERT_NE(point, next);
            turned += std::remainder(angleOf(next) - angleOf(point), 2.0 * pi);
            double ahead = angleOf(point) - begin;
            ahead += ahead < 0.0 ? 2.0 * pi : 0.0;
            const double r = std::hypot(point.x() - 300, point.y() - 300);
            if (ahead > slack && ahead < width - slack) {
                ASSERT_NEAR(r, radius + 12.0, 2.0) << "round " << round;
            } else if (ahead > width + slack && ahead < 2.0 * pi - slack) {
                ASSERT_NEAR(r, radius, 1.0) << "round " << round;
            }
        }
        ASSERT_NEAR(turned, 2.0 * pi, 1e-6) << "the sense stays, round " << round;
        ASSERT_LT(std::abs(std::remainder(angleOf(result.front()), 2.0 * pi)), slack)
            << "vertex 0 stays, round " << round;
    }

    // A chord over a spur, whose ends are as near to the one piece as to the other, cuts it off.
    const std::vector<QPoint> corners = {{0, 0},    {100, 0},  {100, 45},  {180, 45},
                                         {180, 55}, {100, 55}, {100, 100}, {0, 100}};
    Vertices<int> spurred(2, 8, 0, 0);
    for (int i = 0; i < 8; ++i) {
        spurred[i][0] = corners[static_cast<std::size_t>(i)].x();
        spurred[i][1] = corners[static_cast<std::size_t>(i)].y();
    }
    for (const QPoint& point : ContourLine(spurred).redrawn({{100, 44}, {100, 56}})) {
        EXPECT_LE(point.x(), 100);
    }
}
