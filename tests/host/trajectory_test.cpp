#include "blade/averages/averagingprocess.h"
#include "blade/process/blademessages.h"
#include "host/deskapplication.h"
#include "host/deskwindow.h"
#include "host/document/lmxrootmediator.h"
#include "host/document/pixelsizedialog.h"
#include "host/panels/slicelistmodel.h"
#include "host/panels/slicepanel.h"
#include "host/stackplugin.h"
#include "host/view/sliceview.h"
#include "support/leaf.h"
#include "support/temporaryfolder.h"
#include "support/widgets.h"

#include <QTest>

namespace {

/// Writes the averages of three leaves at two lengths, as a stack of their own.
std::string writeTrajectory(const std::string& directory)
{
    std::vector<leaf::Outline> outlines;
    for (const double length : {300.0, 400.0, 500.0}) {
        leaf::Shape shape;
        shape.length = length;
        shape.width = length * 0.45;
        outlines.push_back(leaf::draw(shape));
    }
    const auto stack = leaf::stackOf(outlines);
    stack->setName("oaks");
    for (int i = 0; i < stack->getNumSlices(); ++i) {
        const leaf::Outline& outline = outlines[static_cast<std::size_t>(i)];
        leaf::addItem(*stack, "Apex", PRIMITIVE_POLYPOINT, i, {outline.apex});
        leaf::addItem(*stack, "Primary Sinus", PRIMITIVE_POLYPOINT, i, outline.sinuses);
        leaf::addItem(*stack, "Primary Peak", PRIMITIVE_POLYPOINT, i, outline.tips);
    }
    const TemporaryFolder targets;
    AveragingProcess process;
    process.setStack(*stack);
    process.setOutPath(directory + "/");
    process.setAlignment(AxisAlignment::SignedSine);
    process.sinusIsEnabled(true);
    process.peakIsEnabled(true);
    process.setkOptimaFile(targets.write("targets.txt", "350\n450\n"));
    const auto former = BladeMessages::setHandler([](const std::string&) {});
    process.runSlidingAveragingMethod();
    BladeMessages::setHandler(former);
    return directory + "/oaks-trajectory.sdf";
}

} // namespace

TEST(DeskTrajectory, AverageShapesOpenAsLeavesLikeAnyOther)
{
    const TemporaryFolder folder;
    const std::string file = writeTrajectory(folder.path().string());
    const std::string before = folder.read("oaks-trajectory.sdf");
    StackPlugin plugin;
    LMXRootMediator mediator;
    DeskWindow window(mediator, plugin);
    window.show();
    const Modals modals;
    window.openFiles({QString::fromStdString(file)});

    EXPECT_EQ(modals.boxes(), QStringList());
    EXPECT_EQ(window.findChild<PixelSizeDialog*>(), nullptr) << "the averages have their size";
    EXPECT_TRUE(window.windowTitle().startsWith("oaks-trajectory.sdf"));
    EXPECT_FALSE(window.isWindowModified());
    const SliceListModel& slices = window.findChild<SlicePanel*>()->slices();
    ASSERT_EQ(slices.rowCount(), 2);
    EXPECT_EQ(slices.index(0).data().toString(), "oaks-trajectory-sa-350µ0");
    for (int row = 0; row < 2; ++row) {
        const auto mark = [&] { return slices.index(row).data(SliceListModel::MarkRole).toInt(); };
        const int good = static_cast<int>(SliceListModel::Mark::Good);
        EXPECT_TRUE(QTest::qWaitFor([&] { return mark() == good; }, 3000))
            << slices.index(row).data(SliceListModel::RemarkRole).toString().toStdString();
        EXPECT_EQ(leaf::vertices(*mediator.stack(), "Primary Peak", row).size(), 8u);
    }

    // The blank image is there, and the outline on it.
    SliceView& view = *window.findChild<SliceView*>();
    const leaf::Point apex = leaf::vertices(*mediator.stack(), "Apex", 0).at(0);
    const QPoint place = view.imageToWidget().map(QPointF(apex.x, apex.y)).toPoint();
    EXPECT_TRUE(QTest::qWaitFor(
        [&] {
            const QImage shown = view.grab().toImage();
            return qBlue(shown.pixel(place)) > 150 &&
                   qGray(shown.pixel(place + QPoint(-60, 0))) == 0;
        },
        3000));

    EXPECT_TRUE(mediator.stack()->write(folder.file("again.sdf")));
    EXPECT_EQ(folder.read("again.sdf"), before);
}
