#include "host/deskapplication.h"
#include "host/deskwindow.h"
#include "host/lmxrootmediator.h"
#include "host/sliceview.h"
#include "host/stackplugin.h"
#include "image/image0.h"
#include "image/imagewriter.h"
#include "interface/lmxeventserver.h"
#include "interface/lmxstack.h"
#include "support/leaf.h"
#include "support/temporaryfolder.h"
#include "support/widgets.h"
#include "system/exception.h"

#include <QAction>
#include <QListWidget>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>

namespace {

const ::testing::Environment* const environment = addApplication<DeskApplication>();

/// A desk on its own folder of two photographs, without a plug-in.
class DeskWindowTest : public ::testing::Test
{
protected:
    DeskWindowTest()
        : window(mediator, plugin)
    {
        outline = leaf::draw(leaf::Shape());
        for (const char* name : {"a.tif", "b.tif"}) {
            ImageWriter().write(leaf::toImage(leaf::photograph(outline, 860, 540, 200.0f, 30.0f)),
                                folder.file(name), false);
        }
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    QString file(const char* name) const { return QString::fromStdString(folder.file(name)); }

    void openPhotographs()
    {
        Modals modals;
        window.openFiles({file("a.tif"), file("b.tif")});
        QTest::qWait(20); // the note on the pixel sizes
    }

    QAction& action(const QString& text)
    {
        for (QAction* found : window.findChildren<QAction*>()) {
            if (found->text() == text) {
                return *found;
            }
        }
        throw std::runtime_error("no entry " + text.toStdString());
    }

    SliceView& view() { return *window.findChild<SliceView*>(); }

    QListWidget& slices() { return *window.findChild<QListWidget*>(); }

    void clickPixel(leaf::Point point)
    {
        const QPointF place =
            view().imageToWidget().map(QPointF(point.x, point.y) + QPointF(0.5, 0.5));
        QTest::mouseClick(&view(), Qt::LeftButton, Qt::NoModifier, place.toPoint());
    }

    std::size_t junctions(int slice)
    {
        return leaf::vertices(*mediator.stack(), "Petiole", slice).size();
    }

    TemporaryFolder folder;
    leaf::Outline outline;
    StackPlugin plugin;
    LMXRootMediator mediator;
    DeskWindow window;
};

} // namespace

TEST_F(DeskWindowTest, ShowsPhotographsAsAStackThatIsNotSaved)
{
    EXPECT_FALSE(action("&Save").isEnabled());
    openPhotographs();
    ASSERT_NE(mediator.stack(), nullptr);
    EXPECT_EQ(slices().count(), 2);
    EXPECT_EQ(slices().item(1)->text(), "b");
    EXPECT_TRUE(window.isWindowModified());
    EXPECT_TRUE(action("&Save").isEnabled());
    const QImage shown = view().grab().toImage();
    const auto brightness = [&](leaf::Point point) {
        return qGray(shown.pixel(view().imageToWidget().map(QPointF(point.x, point.y)).toPoint()));
    };
    EXPECT_GT(brightness({260, 420}), 180);
    EXPECT_LT(brightness({20, 20}), 60);
}

TEST_F(DeskWindowTest, SavesAndOpensAgain)
{
    openPhotographs();
    leaf::addItem(*mediator.stack(), "Contour", PRIMITIVE_POLYGON, 1, {{9, 9}, {99, 9}, {9, 99}});
    Modals modals({cancelDialog, choosePath(file("kept"))});
    EXPECT_FALSE(window.save());
    EXPECT_TRUE(window.isWindowModified());
    EXPECT_TRUE(window.save()) << "asks for a file once";
    EXPECT_FALSE(window.isWindowModified());
    EXPECT_TRUE(window.windowTitle().startsWith("kept.sdf"));
    mediator.stack()->setModified(true);
    EXPECT_TRUE(window.save()) << "and writes to it from then on";

    window.openFiles({file("kept.sdf")});
    EXPECT_EQ(slices().count(), 2);
    EXPECT_FALSE(window.isWindowModified());
    EXPECT_EQ(leaf::vertices(*mediator.stack(), "Contour", 1).size(), 3u);
    EXPECT_TRUE(modals.stepsAreDone());
}

TEST_F(DeskWindowTest, AFailureToSaveIsToldAndNothingIsLost)
{
    openPhotographs();
    Modals modals({choosePath(file("kept.sdf"))});
    ASSERT_TRUE(window.saveAs());
    const std::string before = folder.read("kept.sdf");
    mediator.stack()->setFilename(folder.file("none/kept.sdf"));
    mediator.stack()->setModified(true);
    QMetaObject::invokeMethod(&action("&Save"), "trigger", Qt::QueuedConnection);
    QTest::qWait(20);
    ASSERT_FALSE(modals.boxes().isEmpty());
    EXPECT_TRUE(modals.takeBoxes().last().contains("none/kept.sdf"));
    EXPECT_TRUE(window.isWindowModified());
    EXPECT_EQ(folder.read("kept.sdf"), before);

    // Nor is it closed by a save that fails.
    modals.setAnswer(QMessageBox::Save);
    EXPECT_FALSE(window.close());
    EXPECT_EQ(modals.boxes().size(), 2);
    EXPECT_NE(mediator.stack(), nullptr);
}

TEST_F(DeskWindowTest, ClosingAsksWhileThereAreChanges)
{
    openPhotographs();
    QSignalSpy closed(&window, &DeskWindow::closed);
    Modals modals;
    modals.setAnswer(QMessageBox::Cancel);
    EXPECT_FALSE(window.close());
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(modals.takeBoxes().size(), 1);
    modals.setAnswer(QMessageBox::Discard);
    EXPECT_TRUE(window.close());
    EXPECT_EQ(modals.takeBoxes().size(), 1);
    EXPECT_EQ(mediator.stack(), nullptr);
    EXPECT_EQ(closed.count(), 1);
}

TEST_F(DeskWindowTest, TwoClicksDrawTheJunctionsOfTheSlice)
{
    openPhotographs();
    mediator.stack()->setModified(false);
    slices().setCurrentRow(1);
    clickPixel(outline.junctions[0]);
    clickPixel(outline.junctions[1]);
    EXPECT_EQ(junctions(1), 0u) << "not in the mode";

    action("Draw &junctions").trigger();
    clickPixel(outline.junctions[0]);
    slices().setCurrentRow(0); // a single point belongs to no other slice
    clickPixel(outline.junctions[0]);
    EXPECT_EQ(junctions(0) + junctions(1), 0u);
    QTest::mouseClick(&view(), Qt::LeftButton, Qt::NoModifier, QPoint(1, 1)); // beside the picture
    clickPixel(outline.junctions[1]);
    EXPECT_EQ(junctions(0), 2u);
    EXPECT_EQ(junctions(1), 0u);
    EXPECT_TRUE(window.isWindowModified());

    // The next pair takes their place; a click meets its pixel as far as the screen can tell them
    // apart.
    clickPixel({100, 200});
    clickPixel({160, 240});
    const std::vector<leaf::Point> points = leaf::vertices(*mediator.stack(), "Petiole", 0);
    ASSERT_EQ(points.size(), 2u);
    EXPECT_LE(leaf::distance(points[0], {100, 200}), 2.0);
    EXPECT_LE(leaf::distance(points[1], {160, 240}), 2.0);
}

TEST_F(DeskWindowTest, JunctionsFarFromTheContourAreRefused)
{
    openPhotographs();
    leaf::addItem(*mediator.stack(), "Contour", PRIMITIVE_POLYGON, 0, outline.points);
    action("Draw &junctions").trigger();
    Modals modals;
    clickPixel({30, 30});
    clickPixel({40, 40});
    ASSERT_EQ(modals.boxes().size(), 1);
    EXPECT_TRUE(modals.boxes().first().contains("Slice a: junction 1 lies "));
    EXPECT_EQ(junctions(0), 0u);
    clickPixel(outline.junctions[0]);
    clickPixel(outline.junctions[1]);
    EXPECT_EQ(junctions(0), 2u);
}

TEST_F(DeskWindowTest, TheViewFollowsTheItems)
{
    openPhotographs();
    const QImage before = view().grab().toImage();
    QTest::qWait(20);
    ModelItem& item =
        leaf::addItem(*mediator.stack(), "Contour", PRIMITIVE_POLYGON, 0, outline.points);

    class Paints : public QObject
    {
    public:
        bool eventFilter(QObject*, QEvent* event) override
        {
            count += event->type() == QEvent::Paint;
            return false;
        }

        int count = 0;
    } paints;

    view().installEventFilter(&paints);
    LMXModelItemCreateEvent event(item);
    LMXEventServer::notifyEvent(event);
    EXPECT_EQ(paints.count, 0) << "only scheduled";
    QTest::qWait(20);
    EXPECT_EQ(paints.count, 1);
    EXPECT_NE(view().grab().toImage(), before);
}

TEST_F(DeskWindowTest, FilesThatCannotBeOpenedLeaveTheDocument)
{
    openPhotographs();
    mediator.stack()->setModified(false);
    folder.write("damaged.sdf", "Stack Description File\nslice {");
    folder.write("noimage.tif", "II*");
    for (const QStringList& paths :
         {QStringList(file("damaged.sdf")), QStringList(file("none.sdf")),
          QStringList(file("noimage.tif")), QStringList({file("a.tif"), file("kept.sdf")})}) {
        EXPECT_THROW(window.openFiles(paths), Exception) << paths.first().toStdString();
        ASSERT_NE(mediator.stack(), nullptr);
        EXPECT_EQ(slices().count(), 2);
    }
}

TEST_F(DeskWindowTest, AMissingImageLeavesTheSliceWithAMessage)
{
    openPhotographs();
    Modals modals({choosePath(file("kept.sdf"))});
    ASSERT_TRUE(window.saveAs());
    QFile::remove(file("a.tif"));
    window.openFiles({file("kept.sdf")});
    QTest::qWait(20);
    ASSERT_EQ(modals.boxes().size(), 1);
    EXPECT_TRUE(modals.boxes().first().contains("a.tif"));
    EXPECT_EQ(slices().count(), 2);
    EXPECT_FALSE(view().grab().toImage().isNull());
}

TEST(DeskApplication, TellsWhatASlotLetsThroughAndGoesOn)
{
    QPushButton button;
    const auto thrown = [&](std::function<void()> slot) {
        Modals modals;
        const auto connection = QObject::connect(&button, &QPushButton::clicked, slot);
        QTest::mouseClick(&button, Qt::LeftButton);
        QObject::disconnect(connection);
        return modals.boxes().join("|");
    };
    EXPECT_TRUE(thrown([] {
                    raiseFile<FileReadError>("f()", "No way", "/d/x.tif");
                }).endsWith(": /d/x.tif: No way"));
    EXPECT_TRUE(thrown([] { raise<SizeError>("f()", "Too small"); }).endsWith(": Too small"));
    EXPECT_TRUE(thrown([] { throw std::runtime_error("plain"); }).endsWith(": plain"));
    EXPECT_TRUE(thrown([] { throw 1; }).contains("unknown"));
    EXPECT_EQ(thrown([] {}), "");
}

TEST(StackPlugin, AFileThatIsNoPluginIsRefusedWithAReason)
{
    const TemporaryFolder folder;
    folder.write("x.so", "no library");
    StackPlugin plugin;
    EXPECT_FALSE(plugin.load({QString::fromStdString(folder.file("none.so"))}));
    EXPECT_TRUE(plugin.getFault().contains("none.so"));
    EXPECT_FALSE(plugin.load({QString::fromStdString(folder.file("x.so"))}));
    EXPECT_TRUE(plugin.getFault().contains("x.so"));
    EXPECT_EQ(plugin.get(), nullptr);

    // The menu shows a closed entry in its place.
    LMXRootMediator mediator;
    const DeskWindow window(mediator, plugin);
    bool found = false;
    for (const QAction* action : window.findChildren<QAction*>()) {
        found = found || (action->text() == "No plug-in" && !action->isEnabled());
    }
    EXPECT_TRUE(found);
}
