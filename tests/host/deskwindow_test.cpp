#include "host/deskapplication.h"
#include "host/deskwindow.h"
#include "host/document/desksettings.h"
#include "host/document/documentcontrol.h"
#include "host/document/lmxrootmediator.h"
#include "host/document/pixelsizedialog.h"
#include "host/panels/slicelistmodel.h"
#include "host/panels/slicepanel.h"
#include "host/stackplugin.h"
#include "host/view/sliceview.h"
#include "image/files/imagewriter.h"
#include "image/pixels/image0.h"
#include "interface/lmxeventserver.h"
#include "interface/lmxstack.h"
#include "support/leaf.h"
#include "support/temporaryfolder.h"
#include "support/userfolders.h"
#include "support/widgets.h"
#include "system/exception.h"

#include <QAction>
#include <QComboBox>
#include <QDockWidget>
#include <QDoubleSpinBox>
#include <QDropEvent>
#include <QMenu>
#include <QMimeData>
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
        clearUserFolders();
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
        delete window.findChild<PixelSizeDialog*>();
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

    SlicePanel& slices() { return *window.findChild<SlicePanel*>(); }

    int sliceCount() { return slices().slices().rowCount(); }

    QString sliceName(int row) { return slices().slices().index(row).data().toString(); }

    DocumentControl& control() { return window.documentControl(); }

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
    EXPECT_EQ(sliceCount(), 2);
    EXPECT_EQ(sliceName(1), "b");
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
    EXPECT_FALSE(control().save());
    EXPECT_TRUE(window.isWindowModified());
    EXPECT_TRUE(control().save()) << "asks for a file once";
    EXPECT_FALSE(window.isWindowModified());
    EXPECT_TRUE(window.windowTitle().startsWith("kept.sdf"));
    mediator.stack()->setModified(true);
    EXPECT_TRUE(control().save()) << "and writes to it from then on";

    window.openFiles({file("kept.sdf")});
    EXPECT_EQ(sliceCount(), 2);
    EXPECT_FALSE(window.isWindowModified());
    EXPECT_EQ(leaf::vertices(*mediator.stack(), "Contour", 1).size(), 3u);
    EXPECT_TRUE(modals.stepsAreDone());
}

TEST_F(DeskWindowTest, AFailureToSaveIsToldAndNothingIsLost)
{
    openPhotographs();
    Modals modals({choosePath(file("kept.sdf"))});
    ASSERT_TRUE(control().saveAs());
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

TEST_F(DeskWindowTest, ListsWhatEachSliceLacksAsItemsComeAndGo)
{
    openPhotographs();
    LMXStack& stack = *mediator.stack();
    const auto remark = [this](int row) {
        QTest::qWait(20);
        return slices().slices().index(row).data(SliceListModel::RemarkRole).toString();
    };
    const auto mark = [this](int row) {
        return static_cast<SliceListModel::Mark>(
            slices().slices().index(row).data(SliceListModel::MarkRole).toInt());
    };
    EXPECT_EQ(remark(0), "No contour, junctions, apex");
    const auto add = [&](const char* name, MPrimitive geometry, std::vector<leaf::Point> points) {
        LMXModelItemCreateEvent event(leaf::addItem(stack, name, geometry, 0, points));
        LMXEventServer::notifyEvent(event);
    };
    add("Contour", PRIMITIVE_POLYGON, outline.points);
    add("Petiole", PRIMITIVE_POLYPOINT, {outline.junctions[0]});
    EXPECT_EQ(remark(0), "No apex; 1 of 2 junctions");
    EXPECT_EQ(remark(1), "No contour, junctions, apex");
    leaf::findItem(stack, "Petiole", 0)
        ->appendVertex(leaf::findItem(stack, "Petiole", 0)->getVertices()[0]);
    leaf::findItem(stack, "Petiole", 0)->translate(0, 1);
    add("Apex", PRIMITIVE_POLYPOINT, {outline.apex});
    EXPECT_EQ(remark(0), "");

    // The check of the leaf comes after a moment. It works on a copy: nothing moves.
    add("Primary Sinus", PRIMITIVE_POLYPOINT, outline.sinuses);
    add("Primary Peak", PRIMITIVE_POLYPOINT, {outline.tips[0]});
    const auto petiole = leaf::vertices(stack, "Petiole", 0);
    for (int i = 0; i < 100 && remark(0).isEmpty(); ++i) {
    }
    EXPECT_TRUE(remark(0).startsWith("wrong number for Sinus and Peaks"))
        << remark(0).toStdString();
    EXPECT_EQ(mark(0), SliceListModel::Mark::Suspicious);
    EXPECT_EQ(leaf::vertices(stack, "Petiole", 0)[1].y, petiole[1].y);
    EXPECT_EQ(leaf::vertices(stack, "Contour", 0).size(), outline.points.size());

    LMXModelItemDeleteEvent gone(*leaf::findItem(stack, "Apex", 0));
    LMXEventServer::notifyEvent(gone);
    delete leaf::findItem(stack, "Apex", 0);
    EXPECT_EQ(remark(0), "No apex");
    EXPECT_EQ(mark(0), SliceListModel::Mark::Missing);
}

TEST_F(DeskWindowTest, MakesSmallPicturesInTheBackground)
{
    openPhotographs();
    const auto picture = [this](int row) {
        return slices().slices().index(row).data(Qt::DecorationRole).value<QPixmap>();
    };
    for (int i = 0; i < 500 && (picture(0).isNull() || picture(1).isNull()); ++i) {
        QTest::qWait(2);
    }
    const QImage small = picture(1).toImage();
    ASSERT_FALSE(small.isNull());
    EXPECT_EQ(small.height(), 64);
    EXPECT_GT(qGray(small.pixel(small.width() * 260 / 540, 64 * 420 / 860)), 180);
    EXPECT_LT(qGray(small.pixel(1, 1)), 60);
}

TEST_F(DeskWindowTest, KeysGoToTheNextSliceAndBack)
{
    openPhotographs();
    EXPECT_EQ(slices().currentSlice(), 0);
    for (const int expected : {1, 1}) {
        QTest::keyClick(&window, Qt::Key_PageDown);
        EXPECT_EQ(slices().currentSlice(), expected);
        EXPECT_EQ(view().sliceIndex(), expected);
    }
    QTest::keyClick(&window, Qt::Key_Left, Qt::ControlModifier);
    EXPECT_EQ(view().sliceIndex(), 0);
}

TEST_F(DeskWindowTest, RepaintsWhileARunHoldsTheEventLoop)
{
    openPhotographs();
    QTest::qWait(20);

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
    ModelItem& item =
        leaf::addItem(*mediator.stack(), "Contour", PRIMITIVE_POLYGON, 0, outline.points);
    const auto tell = [&item] {
        LMXModelItemCreateEvent event(item);
        LMXEventServer::notifyEvent(event);
    };
    tell();
    EXPECT_EQ(paints.count, 0) << "a click is too short for it";
    QTest::qSleep(200);
    tell();
    tell();
    EXPECT_EQ(paints.count, 1);
}

TEST_F(DeskWindowTest, OpensFilesThatAreDroppedOnIt)
{
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(file("a.tif")), QUrl::fromLocalFile(file("b.tif"))});
    QDragEnterEvent enter(QPoint(9, 9), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window, &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop(QPointF(9, 9), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window, &drop);
    EXPECT_EQ(mediator.stack(), nullptr) << "only once the drop is over";
    QTest::qWait(20);
    EXPECT_EQ(sliceCount(), 2);
}

TEST_F(DeskWindowTest, AsksForThePixelSizeOfPhotographsThatStateNone)
{
    window.openFiles({file("a.tif"), file("b.tif")});
    const auto dialog = [this] { return window.findChild<PixelSizeDialog*>(); };
    const auto width = [this](int slice) {
        return mediator.stack()->getSlice(slice).getPixelCalibration().getPixelWidth();
    };
    ASSERT_NE(dialog(), nullptr);
    dialog()->findChild<QDoubleSpinBox*>()->setValue(300.0);
    dialog()->findChild<QComboBox*>()->setCurrentIndex(2); // pixels per inch
    dialog()->accept();
    EXPECT_FLOAT_EQ(width(0), 84.6667f);
    EXPECT_FLOAT_EQ(width(1), 84.6667f);

    // A line over a scale bar of 10 mm, for slices that have a size already.
    window.askPixelSize();
    EXPECT_EQ(dialog()->pixelWidth(), std::nullopt) << "what the files state may stay";
    dialog()->setBarLength(412.5);
    EXPECT_EQ(view().tool(), SliceView::Tool::MeasureScale);
    dialog()->accept();
    EXPECT_EQ(view().tool(), SliceView::Tool::Select);
    EXPECT_FLOAT_EQ(width(1), 24.2424f);
    Modals modals({choosePath(file("kept.sdf"))});
    ASSERT_TRUE(control().saveAs());
    window.openFiles({file("kept.sdf")});
    EXPECT_FLOAT_EQ(width(1), 24.2424f);
    EXPECT_EQ(dialog(), nullptr);
}

TEST_F(DeskWindowTest, RemembersFilesFolderAndLayout)
{
    openPhotographs();
    Modals modals({choosePath(file("kept.sdf"))});
    ASSERT_TRUE(control().saveAs());
    window.resize(901, 702);
    window.findChild<QDockWidget*>("Models")->hide();
    ASSERT_TRUE(window.close());

    DeskWindow next(mediator, plugin);
    EXPECT_EQ(next.size(), QSize(901, 702));
    EXPECT_TRUE(next.findChild<QDockWidget*>("Models")->isHidden());
    EXPECT_EQ(next.documentControl().recentFiles().files(), QStringList(file("kept.sdf")));
    EXPECT_EQ(DeskSettings().lastFolder(), QFileInfo(file("kept.sdf")).path());
    QFile::remove(file("kept.sdf"));
    QMenu menu;
    next.documentControl().recentFiles().showIn(menu);
    EXPECT_TRUE(menu.actions().first()->text().endsWith("kept.sdf"));
    EXPECT_FALSE(menu.actions().first()->isEnabled()) << "the file is away";
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
        EXPECT_EQ(sliceCount(), 2);
    }
}

TEST_F(DeskWindowTest, AMissingImageLeavesTheSliceWithAMessage)
{
    openPhotographs();
    Modals modals({choosePath(file("kept.sdf"))});
    ASSERT_TRUE(control().saveAs());
    QFile::remove(file("a.tif"));
    window.openFiles({file("kept.sdf")});
    QTest::qWait(20);
    ASSERT_EQ(modals.boxes().size(), 1);
    EXPECT_TRUE(modals.boxes().first().contains("a.tif"));
    EXPECT_EQ(sliceCount(), 2);
    EXPECT_FALSE(view().grab().toImage().isNull());
    const auto remark = [this] {
        return slices().slices().index(0).data(SliceListModel::RemarkRole).toString();
    };
    for (int i = 0; i < 500 && remark() != "No image"; ++i) {
        QTest::qWait(2);
    }
    EXPECT_EQ(remark(), "No image");
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
