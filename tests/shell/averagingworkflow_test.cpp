// Average shapes from the window that the plug-in opens, by clicks, against those of the command.

#include "image/sources/imagesourcefile.h"
#include "interface/lmxstack.h"
#include "shell/pluginwindow.h"
#include "stack/stackslice.h"
#include "support/leaf.h"
#include "support/stacks.h"
#include "support/temporaryfolder.h"

#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QGroupBox>
#include <QSpinBox>
#include <QToolButton>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>

namespace {

namespace fs = std::filesystem;

constexpr int averagingRow = 6;

/// Seven leaves with all landmarks, as a stack file and as an open stack.
class LandmarkedLeaves
{
public:
    LandmarkedLeaves()
    {
        std::vector<leaf::Outline> outlines;
        for (int i = 0; i < 7; ++i) {
            leaf::Shape shape;
            shape.length = 300.0 + 31.7 * i;
            shape.teethPerSide = 2;
            shape.angleDegrees = 80.0 + 3.0 * i;
            outlines.push_back(leaf::draw(shape));
        }
        stack = leaf::landmarkedStack(outlines);
        stack->setName("oaks");
        fs::create_directory(folder.file("out"));
        stacks::writeImage(folder.file("blank.tif"), 10, 10);
        for (int i = 0; i < 7; ++i) {
            stack->getSlice(i).setImageSource(ImageSourceFile(folder.file("blank.tif")));
            stack->getSlice(i).setPixelCalibration(stacks::calibration(0.25f, 1.0f));
        }
        EXPECT_TRUE(stack->write(folder.file("oaks.sdf")));
    }

    /// Moves what stands in "out" out of the way and gives the bytes of its files.
    std::map<std::string, std::string> takeOutput() const
    {
        std::map<std::string, std::string> files;
        for (const auto& entry : fs::directory_iterator(folder.file("out"))) {
            const std::string name = entry.path().filename().string();
            if (name.front() != '.') { // the command notes what it wrote
                files[name] = folder.read("out/" + name);
            }
        }
        fs::remove_all(folder.file("out"));
        fs::create_directory(folder.file("out"));
        return files;
    }

    std::map<std::string, std::string> averagesOfTheCommand(const QStringList& options) const
    {
        crenara(
            QStringList{"average", path("oaks.sdf"), "--sinuses", "--peaks", "--out", path("out")} +
            options);
        return takeOutput();
    }

    QString path(const std::string& name) const
    {
        return QString::fromStdString(folder.file(name));
    }

    TemporaryFolder folder;
    std::unique_ptr<LMXStack> stack;
};

void choose(const QWidget& page, const QString& buttonText, const QString& path)
{
    const Modals chooser({choosePath(path)});
    withText<QToolButton>(page, buttonText).click();
    EXPECT_TRUE(chooser.stepsAreDone());
}

void setNumber(const QWidget& page, int number)
{
    for (QSpinBox* box : page.findChildren<QSpinBox*>()) {
        if (box->toolTip() == "choice a number of averages (blades)") {
            box->setValue(number);
        }
    }
}

/// Clicks "&Process" and gives the boxes that came up. Of two watchers the wrong one might meet a
/// dialog, so each stretch of clicks has its own.
QStringList processOn(PluginWindow& window)
{
    const Modals modals;
    window.clickButton("&Process");
    return modals.boxes();
}

/// A window on the page of averages, and the boxes that came up on the way to it.
class AveragingWindow : public PluginWindow
{
public:
    explicit AveragingWindow(LMXStack& stack)
        : PluginWindow(stack)
    {
        openRows();
        EXPECT_EQ(open(), QStringList());
    }

    QStringList open()
    {
        const Modals modals;
        clickRow(averagingRow);
        return modals.boxes();
    }
};

} // namespace

TEST(CrenaraWindow, AveragesByAllFourMethodsLikeTheCommand)
{
    const LandmarkedLeaves leaves;
    leaves.folder.write("limits.txt", "70\n98\n113\n1000\n");
    leaves.folder.write("targets.txt", "100\n82.5\n");
    AveragingWindow window(*leaves.stack);
    QWidget& page = window.page();
    withText<QCheckBox>(page, "Primary Sinuses").click();
    withText<QCheckBox>(page, "Primary Peaks").click();
    QCheckBox& bins = withText<QCheckBox>(page, "based on bins");
    QCheckBox& sliding = withText<QCheckBox>(page, "sliding averaging");
    choose(page, "Change directory", leaves.path("out"));
    setNumber(page, 3);

    const auto run = [&](const char* what, const QStringList& options, std::size_t files) {
        EXPECT_EQ(processOn(window), QStringList(": Averaging is complete")) << what;
        const auto ours = leaves.takeOutput();
        EXPECT_EQ(ours.size(), files) << what;
        EXPECT_EQ(ours, leaves.averagesOfTheCommand(options)) << what;
    };
    bins.click();
    run("bins", {"bins", "--number", "3"}, 10);
    sliding.click();
    run("sliding", {"sliding", "--number", "3"}, 12);

    auto& file = *qobject_cast<QGroupBox*>(withText<QToolButton>(page, "Upload file :").parent());
    toggle(file);
    EXPECT_EQ(processOn(window), QStringList("Averaging: Please upload a file first"));
    choose(page, "Upload file :", leaves.path("targets.txt"));
    run("targets", {"sliding", "--targets", leaves.path("targets.txt")}, 9);
    bins.click();
    choose(page, "Upload file :", leaves.path("limits.txt"));
    run("limits", {"bins", "--limits", leaves.path("limits.txt")}, 10);

    leaves.folder.write("limits.txt", "100\nx\n");
    const QStringList faults = processOn(window);
    ASSERT_EQ(faults.size(), 1);
    EXPECT_TRUE(faults.first().contains("limits.txt: Line 2: 'x'"));
    EXPECT_TRUE(fs::is_empty(leaves.folder.file("out")));
}

TEST(CrenaraWindow, AveragingPageShowsTheRangeOfTheLeaves)
{
    const LandmarkedLeaves leaves;
    AveragingWindow window(*leaves.stack);
    const QList<QDoubleSpinBox*> boxes = window.page().findChildren<QDoubleSpinBox*>();
    ASSERT_GE(boxes.size(), 3);
    const auto shows = [&](double value) {
        return std::any_of(boxes.begin(), boxes.end(), [&](const QDoubleSpinBox* box) {
            return std::fabs(box->value() - value) < 1.0;
        });
    };
    EXPECT_TRUE(shows(300.0 / 4.0));
    EXPECT_TRUE(shows((300.0 + 31.7 * 6) / 4.0));

    delete leaf::findItem(*leaves.stack, "Apex", 4);
    window.clickRow(1);
    EXPECT_EQ(window.open(),
              QStringList("Averaging: Slice leaf4 lacks contour, two junctions or apex"));
    EXPECT_FALSE(window.page().isEnabled());
}

TEST(CrenaraWindow, SlidingAveragesNeedFourSlices)
{
    const LandmarkedLeaves leaves;
    while (leaves.stack->getNumSlices() > 3) {
        leaves.stack->deleteSlice(3);
    }
    AveragingWindow window(*leaves.stack);
    choose(window.page(), "Change directory", leaves.path("out"));
    withText<QCheckBox>(window.page(), "sliding averaging").click();
    EXPECT_EQ(processOn(window), QStringList(": Average aborted \n insufficient number of leaves"));
    EXPECT_TRUE(fs::is_empty(leaves.folder.file("out")));
}
