#include "host/document/lmxrootmediator.h"
#include "host/editing/sliceeditor.h"
#include "host/view/editactions.h"
#include "host/view/sliceview.h"
#include "image/files/imagewriter.h"
#include "image/pixels/image0.h"
#include "image/sources/imagesourcefile.h"
#include "interface/lmxstack.h"
#include "support/leaf.h"
#include "support/temporaryfolder.h"
#include "support/widgets.h"
#include "system/exception.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>
#include <QToolBar>
#include <QWheelEvent>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>

namespace {

QPoint toPoint(leaf::Point point)
{
    return {static_cast<int>(std::lround(point.x)), static_cast<int>(std::lround(point.y))};
}

/// A view, with an editor, on two photographs of a leaf with all its landmarks; at first about a
/// screen pixel to a pixel.
class SliceViewTest : public ::testing::Test
{
protected:
    SliceViewTest()
        : editor(mediator)
    {
        auto made = leaf::stackOf({outline, outline});
        for (int i = 0; i < 2; ++i) {
            const std::string path = folder.file("leaf" + std::to_string(i) + ".tif");
            ImageWriter().write(leaf::toImage(leaf::photograph(outline, 860, 540,
                                                               200.0f - 60.0f * float(i), 30.0f)),
                                path, false);
            made->getSlice(i).setImageSource(ImageSourceFile(path));
        }
        leaf::addItem(*made, "Apex", PRIMITIVE_POLYPOINT, 0, {outline.apex});
        leaf::addItem(*made, "Primary Sinus", PRIMITIVE_POLYPOINT, 0, outline.sinuses);
        mediator.open(std::move(made));
        view.setEditor(&editor);
        view.resize(560, 880);
        view.showSlice(mediator.stack(), 0);
        view.show();
        view.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&view));
        view.setFocus();
    }

    LMXStack& stack() { return *mediator.stack(); }

    QPoint at(const QPoint& pixel) const
    {
        return view.imageToWidget().map(QPointF(pixel) + QPointF(0.5, 0.5)).toPoint();
    }

    QPoint vertex(const char* model, int index, int slice = 0)
    {
        return toPoint(leaf::vertices(stack(), model, slice).at(static_cast<std::size_t>(index)));
    }

    std::size_t count(const char* model, int slice = 0)
    {
        return leaf::vertices(stack(), model, slice).size();
    }

    VertexPlace place(const char* model, int index)
    {
        return {stack().getSlice(0).findItem(*leaf::findItem(stack(), model, 0)), index};
    }

    void mouse(QEvent::Type type,
               const QPoint& position,
               Qt::MouseButton button = Qt::LeftButton,
               Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        const bool held = type == QEvent::MouseButtonPress || type == QEvent::MouseMove;
        QMouseEvent event(type, position, view.mapToGlobal(position),
                          type == QEvent::MouseMove ? Qt::NoButton : button,
                          held ? button : Qt::NoButton, modifiers);
        QApplication::sendEvent(&view, &event);
    }

    void drag(const std::vector<QPoint>& way,
              Qt::KeyboardModifiers modifiers = Qt::NoModifier,
              Qt::MouseButton button = Qt::LeftButton)
    {
        mouse(QEvent::MouseButtonPress, way.front(), button, modifiers);
        for (const QPoint& point : way) {
            mouse(QEvent::MouseMove, point, button, modifiers);
        }
        mouse(QEvent::MouseButtonRelease, way.back(), button, modifiers);
    }

    void click(const QPoint& pixel, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::mouseClick(&view, Qt::LeftButton, modifiers, at(pixel));
    }

    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(&view, key, modifiers);
    }

    double distanceToContour(const QPoint& point)
    {
        return leaf::distanceToOutline(outline, {double(point.x()), double(point.y())});
    }

    /// A point of the contour that is far from all landmarks.
    QPoint onFreeContour()
    {
        for (const leaf::Point& point : outline.points) {
            const VertexPlaces places = view.landmarks();
            if (point.y < 650.0 &&
                std::all_of(places.begin(), places.end(), [&](const auto& place) {
                    const QPoint way = view.vertexAt(place) - toPoint(point);
                    return std::hypot(way.x(), way.y()) > 30.0;
                })) {
                return toPoint(point);
            }
        }
        throw std::runtime_error("no free place on the contour");
    }

    void TearDown() override
    {
        EXPECT_EQ(modals.boxes().join("|").toStdString(), "") << "no error is told";
    }

    Modals modals;
    leaf::Outline outline = leaf::draw(leaf::Shape());
    TemporaryFolder folder;
    LMXRootMediator mediator;
    SliceEditor editor;
    SliceView view;
};

} // namespace

TEST_F(SliceViewTest, LandmarksAreSelectedAndDragged)
{
    const QPoint apex = vertex("Apex", 0);
    click(apex + QPoint(3, 2));
    EXPECT_EQ(view.selection(), VertexPlaces({place("Apex", 0)}));

    // Free of the contour, near to it, and near to it with Ctrl.
    drag({at(apex), at({250, 300}), at({260, 420})});
    EXPECT_EQ(vertex("Apex", 0), QPoint(260, 420));
    EXPECT_EQ(view.selection().size(), 1u) << "stays selected";
    const QPoint beside = toPoint(outline.sinuses[0]) + QPoint(-4, 3);
    drag({at({260, 420}), at(beside)});
    EXPECT_LE(distanceToContour(vertex("Apex", 0)), 1.0);
    drag({at(vertex("Apex", 0)), at(apex), at(beside)}, Qt::ControlModifier);
    EXPECT_LE(distanceToContour(vertex("Apex", 0)), 1.0) << "Ctrl takes from the selection";
    EXPECT_TRUE(view.selection().empty());

    // A drag that is given up, and one that is ended by another change.
    const QPoint before = vertex("Apex", 0);
    mouse(QEvent::MouseButtonPress, at(before));
    mouse(QEvent::MouseMove, at(apex));
    key(Qt::Key_Escape);
    mouse(QEvent::MouseButtonRelease, at(apex));
    EXPECT_EQ(vertex("Apex", 0), before);
    mouse(QEvent::MouseButtonPress, at(before));
    mouse(QEvent::MouseMove, at(apex));
    editor.undo(0);
    const QPoint undone = vertex("Apex", 0);
    mouse(QEvent::MouseButtonRelease, at(apex));
    EXPECT_EQ(vertex("Apex", 0), undone);
}

TEST_F(SliceViewTest, SeveralAreSelectedByARectangleMovedAndDeleted)
{
    QSignalSpy changes(&view, &SliceView::selectionChanged);
    drag({QPoint(1, 1), QPoint(view.width() / 2, view.height() - 1)});
    const std::size_t left = view.selection().size();
    EXPECT_GT(left, 2u);
    EXPECT_EQ(changes.count(), 1);
    drag({QPoint(view.width() / 2, 1), QPoint(view.width() - 1, view.height() - 1)},
         Qt::ShiftModifier);
    EXPECT_EQ(view.selection().size(), view.landmarks().size());
    click(vertex("Apex", 0), Qt::ControlModifier);
    EXPECT_EQ(view.selection().size(), view.landmarks().size() - 1);

    const QPoint sinus = vertex("Primary Sinus", 0);
    drag({at(sinus), at(sinus + QPoint(10, 5)), at(sinus + QPoint(20, 10))});
    EXPECT_EQ(vertex("Primary Sinus", 0), sinus + QPoint(20, 10));
    EXPECT_EQ(vertex("Apex", 0), toPoint(outline.apex));
    EXPECT_EQ(editor.undoText(0), QString("Move %1 landmarks").arg(view.landmarks().size() - 1));
    key(Qt::Key_Delete);
    EXPECT_EQ(view.landmarks().size(), 1u);
    EXPECT_EQ(leaf::findItem(stack(), "Petiole", 0), nullptr);
    editor.undo(0);
    editor.undo(0);
    EXPECT_EQ(vertex("Primary Sinus", 0), sinus);

    // A line is taken as a whole.
    click(onFreeContour());
    ASSERT_EQ(view.selection().size(), 1u);
    EXPECT_TRUE(view.selection().front().isWholeItem());
    key(Qt::Key_Backspace);
    EXPECT_EQ(leaf::findItem(stack(), "Contour", 0), nullptr);
    click({20, 20});
    EXPECT_TRUE(view.selection().empty());
}

TEST_F(SliceViewTest, TheKeyboardAloneDoesAll)
{
    const VertexPlaces all = view.landmarks();
    for (const VertexPlace& landmark : all) {
        key(Qt::Key_Tab);
        ASSERT_EQ(view.selection(), VertexPlaces({landmark}));
    }
    key(Qt::Key_Backtab);
    EXPECT_EQ(view.selection().front(), all[all.size() - 2]);
    const QPoint before = view.vertexAt(view.selection().front());
    key(Qt::Key_Right);
    key(Qt::Key_Up, Qt::ShiftModifier);
    EXPECT_EQ(view.vertexAt(view.selection().front()), before + QPoint(1, -10));
    // A key that is held makes one step.
    QTest::keyPress(&view, Qt::Key_Left);
    QTest::keyPress(&view, Qt::Key_Left);
    QTest::keyRelease(&view, Qt::Key_Left);
    EXPECT_EQ(view.vertexAt(view.selection().front()), before + QPoint(-1, -10));
    ASSERT_TRUE(editor.undo(0) && editor.undo(0) && editor.undo(0));
    EXPECT_FALSE(editor.canUndo(0));

    // Two junctions, by the tool's pointer, which starts in the middle.
    view.showSlice(&stack(), 1);
    stack().deleteModel(stack().findModel("Contour"));
    view.setTool(SliceView::Tool::DrawJunctions);
    key(Qt::Key_Left);
    key(Qt::Key_Return);
    key(Qt::Key_Right, Qt::ShiftModifier);
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    EXPECT_EQ(vertex("Petiole", 0, 1), QPoint(270, 430));
    EXPECT_EQ(vertex("Petiole", 1, 1), QPoint(280, 431));
    // A contour of three corners.
    view.setTool(SliceView::Tool::RedrawContour);
    key(Qt::Key_Left);
    key(Qt::Key_Return);
    for (const Qt::Key direction : {Qt::Key_Right, Qt::Key_Down}) {
        key(direction, Qt::ShiftModifier);
        key(Qt::Key_Return);
    }
    key(Qt::Key_Return);
    EXPECT_EQ(count("Contour", 1), 30u);
    // Escape leaves the pointer, then the tool.
    key(Qt::Key_Escape);
    EXPECT_EQ(view.tool(), SliceView::Tool::RedrawContour);
    key(Qt::Key_Escape);
    EXPECT_EQ(view.tool(), SliceView::Tool::Select);
}

TEST_F(SliceViewTest, ClicksDrawJunctionsAndAddLandmarksOnTheContour)
{
    view.setTool(SliceView::Tool::DrawJunctions);
    const QPoint first = toPoint(outline.junctions[0]);
    click(first + QPoint(-9, 0));
    key(Qt::Key_Escape);
    click(first + QPoint(-9, 0));
    QTest::mouseClick(&view, Qt::LeftButton, Qt::NoModifier, QPoint(1, 1)); // beside the picture
    EXPECT_FALSE(editor.canUndo(0));
    click(toPoint(outline.junctions[1]) + QPoint(9, 0));
    EXPECT_EQ(editor.undoText(0), "Draw junctions");
    EXPECT_EQ(count("Petiole"), 2u);
    EXPECT_LE(distanceToContour(vertex("Petiole", 0)), 1.0);
    EXPECT_LE(distanceToContour(vertex("Petiole", 1)), 1.0);
    EXPECT_LT(vertex("Petiole", 0).x(), vertex("Petiole", 1).x());

    view.setTool(SliceView::Tool::AddLandmark);
    const std::size_t before = count("Primary Sinus");
    click(toPoint(outline.tips[1]) + QPoint(7, -7));
    ASSERT_EQ(count("Primary Sinus"), before + 1);
    EXPECT_LE(distanceToContour(vertex("Primary Sinus", int(before))), 1.0);
    EXPECT_EQ(view.selection(), VertexPlaces({place("Primary Sinus", int(before))}));
    view.setLandmarkModel("Secondary Peak");
    click(toPoint(outline.tips[0]));
    EXPECT_EQ(count("Secondary Peak"), 1u);
}

TEST_F(SliceViewTest, AStrokeOrCornersRedrawThePieceBetween)
{
    view.setTool(SliceView::Tool::RedrawContour);
    const double area = leaf::area(*leaf::findItem(stack(), "Contour", 0));
    const std::size_t n = outline.points.size();
    const QPoint from = toPoint(outline.points[n / 5]);
    const QPoint to = toPoint(outline.points[n * 3 / 10]);
    const QPoint outside(20, (from.y() + to.y()) / 2);
    drag({at(from), at(outside), at(to)});
    EXPECT_EQ(editor.undoText(0), "Redraw contour");
    const double larger = leaf::area(*leaf::findItem(stack(), "Contour", 0));
    EXPECT_GT(larger, area + 1000.0);

    ASSERT_TRUE(editor.undo(0));
    click(from);
    click({300, 300});
    key(Qt::Key_Backspace);
    click(outside);
    click(to);
    EXPECT_FALSE(editor.canUndo(0));
    key(Qt::Key_Return);
    EXPECT_NEAR(leaf::area(*leaf::findItem(stack(), "Contour", 0)), larger, 20.0);
}

TEST_F(SliceViewTest, AScaleBarIsMeasuredAtAnyZoom)
{
    QSignalSpy measured(&view, &SliceView::scaleMeasured);
    view.setTool(SliceView::Tool::MeasureScale);
    drag({at({100, 400}), at({250, 500}), at({400, 800})});
    ASSERT_EQ(measured.count(), 1);
    EXPECT_NEAR(measured.takeFirst()[0].toDouble(), 500.0, 1.5);
    view.zoomToPixels();
    view.zoomIn();
    click({200, 400});
    EXPECT_EQ(measured.count(), 0);
    click({230, 440});
    ASSERT_EQ(measured.count(), 1);
    EXPECT_NEAR(measured.takeFirst()[0].toDouble(), 50.0, 1.5);
    EXPECT_FALSE(editor.canUndo(0));
}

TEST_F(SliceViewTest, AProposalIsDraggedAcceptedOrGivenUp)
{
    const QPoint first = toPoint(outline.junctions[0]);
    const QPoint second = toPoint(outline.junctions[1]);
    const JunctionPoints points = {{first.x(), second.x()}, {first.y() + 40, second.y() + 40}};
    view.setProposal(points);
    key(Qt::Key_Escape);
    EXPECT_FALSE(view.proposal());
    EXPECT_FALSE(editor.canUndo(0));

    view.setProposal(points);
    drag({at(first + QPoint(0, 40)), at(first), at(first)});
    EXPECT_EQ(view.proposal()->y[0], first.y());
    EXPECT_FALSE(editor.canUndo(0));
    key(Qt::Key_Return);
    EXPECT_FALSE(view.proposal());
    EXPECT_EQ(editor.undoText(0), "Draw junctions");
    EXPECT_LE(leaf::distance(leaf::vertices(stack(), "Petiole", 0)[0], outline.junctions[0]), 2.0);

    view.setProposal(points);
    view.showSlice(&stack(), 1);
    EXPECT_FALSE(view.proposal());
}

TEST_F(SliceViewTest, ZoomKeepsThePlaceUnderThePointer)
{
    const auto turn = [this](const QPoint& position, int notches) {
        QWheelEvent event(position, view.mapToGlobal(position), QPoint(), QPoint(0, 120 * notches),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&view, &event);
    };
    const auto brightness = [this](const QPoint& position) {
        return qGray(view.grab().toImage().pixel(position));
    };
    const double fitted = view.imageToWidget().m11();
    const QPoint position = at({260, 420});
    for (const int notches : {3, 5, 30, -4, -60}) {
        turn(position, notches);
        const QPointF kept = view.imageToWidget().map(QPointF(260.5, 420.5));
        const double tolerance = std::max(1.0, view.imageToWidget().m11() / fitted);
        EXPECT_LE(std::hypot(kept.x() - position.x(), kept.y() - position.y()), tolerance);
        EXPECT_GT(brightness(position), 180) << "the leaf, at " << view.imageToWidget().m11();
    }
    view.zoomToPixels();
    EXPECT_EQ(view.imageToWidget().m11(), 1.0);
    const QTransform before = view.imageToWidget();
    drag({QPoint(100, 100), QPoint(130, 80)}, Qt::NoModifier, Qt::MiddleButton);
    EXPECT_EQ(view.imageToWidget().dx(), before.dx() + 30.0);
    QTest::keyPress(&view, Qt::Key_Space);
    drag({QPoint(100, 100), QPoint(70, 120)});
    QTest::keyRelease(&view, Qt::Key_Space);
    EXPECT_EQ(view.imageToWidget(), before);
    EXPECT_TRUE(view.selection().empty());
    view.zoomToFit();
    EXPECT_DOUBLE_EQ(view.imageToWidget().m11(), fitted);
}

TEST_F(SliceViewTest, WhatIsHiddenIsNeitherDrawnNorPicked)
{
    const QPoint apex = vertex("Apex", 0);
    const QImage before = view.grab().toImage();
    click(apex);
    Model& model = *leaf::findItem(stack(), "Apex", 0)->getModel();
    model.getItemProperties().setRenderingVisibility(false);
    LMXModelPropertiesEvent event(model);
    stack().notifyEvent(event);
    EXPECT_TRUE(view.selection().empty());
    EXPECT_NE(view.grab().toImage(), before);
    click(apex);
    EXPECT_TRUE(view.selection().empty() || view.selection().front().isWholeItem());
}

TEST_F(SliceViewTest, ItemsThatGoWithoutAWordDoNoHarm)
{
    view.selectAll();
    mouse(QEvent::MouseButtonPress, at(vertex("Apex", 0)));
    mouse(QEvent::MouseMove, at({260, 420}));
    while (stack().getNumModels() > 0) {
        stack().deleteModel(0);
    }
    view.grab();
    mouse(QEvent::MouseMove, at({200, 420}));
    mouse(QEvent::MouseButtonRelease, at({200, 420}));
    key(Qt::Key_Right);
    key(Qt::Key_Tab);
    EXPECT_TRUE(view.selection().empty());
    mediator.close();
    view.grab();
    key(Qt::Key_Tab);
    EXPECT_EQ(view.slice(), nullptr);
}

TEST_F(SliceViewTest, LargePicturesComeLaterAndMissingOnesLeaveAText)
{
    constexpr int side = 2300;
    constexpr int slices = 6;
    auto made = leaf::emptyStack(slices);
    for (int i = 0; i < slices; ++i) {
        Image0 image(side, side, 8);
        for (int row = 0; row < side; ++row) {
            std::fill_n(image.getPixels()[row], side, static_cast<unsigned char>(60 + 30 * i));
        }
        const std::string path = folder.file("large" + std::to_string(i) + ".tif");
        ImageWriter().write(image, path, false);
        made->getSlice(i).setImageSource(ImageSourceFile(path));
    }
    QFile::remove(QString::fromStdString(folder.file("large5.tif")));
    mediator.open(std::move(made));
    const auto middle = [this] { return qGray(view.grab().toImage().pixel(view.rect().center())); };
    for (int i = 0; i < slices; ++i) { // faster than they come
        view.showSlice(&stack(), i);
        view.grab();
    }
    view.showSlice(&stack(), 3);
    ASSERT_TRUE(QTest::qWaitFor([&] { return middle() == 150; }));
    view.showSlice(&stack(), 1);
    EXPECT_NE(middle(), 90) << "on its way";
    ASSERT_TRUE(QTest::qWaitFor([&] { return middle() == 90; }));
    view.showSlice(&stack(), 3);
    EXPECT_EQ(middle(), 150) << "the last one is kept";

    view.showSlice(&stack(), 5);
    const QImage loading = view.grab().toImage();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !view.isLoading(); }));
    const QImage text = view.grab().toImage();
    EXPECT_NE(text, loading);
    ASSERT_TRUE(QFile::copy(QString::fromStdString(folder.file("large4.tif")),
                            QString::fromStdString(folder.file("large5.tif"))));
    view.showSlice(&stack(), 5); // the file is back
    ASSERT_TRUE(QTest::qWaitFor([&] { return middle() == 180; }));
    view.showSlice(&stack(), 2);
    view.grab(); // on its way while all is closed
    mediator.close();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !view.isLoading(); }));
}

TEST_F(SliceViewTest, ActionsFollowWhatIsPossible)
{
    EditActions actions(editor, view);
    QMenu menu;
    QMenu zoom;
    QToolBar bar;
    actions.addToEditMenu(menu);
    actions.addToViewMenu(zoom);
    actions.addToToolBar(bar);
    const auto find = [](const QMenu& in, const QString& text) -> QAction& {
        for (QAction* action : in.actions()) {
            if (action->text().remove('&').startsWith(text)) {
                return *action;
            }
        }
        throw std::runtime_error("no action " + text.toStdString());
    };
    EXPECT_FALSE(find(menu, "Undo").isEnabled());
    EXPECT_FALSE(find(menu, "Delete").isEnabled());
    EXPECT_FALSE(find(menu, "Move to model").isEnabled());
    EXPECT_FALSE(find(menu, "Accept").isEnabled());
    EXPECT_TRUE(find(menu, "Propose").isEnabled());

    click(vertex("Primary Sinus", 0));
    QMenu& move = *find(menu, "Move to model").menu();
    ASSERT_TRUE(find(menu, "Move to model").isEnabled());
    QMetaObject::invokeMethod(&move, "aboutToShow");
    find(move, "4 Primary Peak").trigger();
    EXPECT_EQ(count("Primary Peak"), 1u);
    EXPECT_EQ(view.selection(), VertexPlaces({place("Primary Peak", 0)}));
    EXPECT_EQ(find(menu, "Undo").text().remove('&'), "Undo \"Move Primary Sinus to Primary Peak\"");
    find(menu, "Undo").trigger();
    EXPECT_EQ(count("Primary Peak"), 0u);
    EXPECT_FALSE(find(menu, "Undo").isEnabled());
    EXPECT_TRUE(find(menu, "Redo").isEnabled());

    QMenu& add = *find(menu, "Add landmark of").menu();
    QMetaObject::invokeMethod(&add, "aboutToShow");
    find(add, "6 Secondary Peak").trigger();
    EXPECT_EQ(view.tool(), SliceView::Tool::AddLandmark);
    EXPECT_TRUE(find(menu, "Add landmarks").isChecked());
    EXPECT_EQ(view.landmarkModel(), "Secondary Peak");
    find(menu, "Propose").trigger();
    ASSERT_TRUE(view.proposal());
    EXPECT_EQ(view.tool(), SliceView::Tool::Select);
    find(menu, "Accept").trigger();
    EXPECT_LE(leaf::distance(leaf::vertices(stack(), "Petiole", 0)[0], outline.junctions[0]), 12.0);

    find(menu, "Delete contour").trigger();
    EXPECT_FALSE(find(menu, "Delete contour").isEnabled());
    EXPECT_FALSE(find(menu, "Propose").isEnabled());
    mediator.close();
    for (const QMenu* each : {&menu, &zoom}) {
        for (const QAction* action : each->actions()) {
            EXPECT_TRUE(action->isSeparator() || !action->isEnabled())
                << action->text().toStdString();
        }
    }
}
