#include "interface/lmxchanneleditor.h"
#include "shell/pages/averagingconfigpage.h"
#include "shell/pages/extractcontourconfigeditor.h"
#include "shell/pages/extractpeaksconfigeditor.h"
#include "shell/pages/extractsinusconfigeditor.h"
#include "shell/pages/hierarchyconfigeditor.h"
#include "shell/pages/leafmeasuresconfigeditor.h"
#include "shell/project/newprojectdialog.h"
#include "shell/widgets/helpbrowser.h"
#include "shell/widgets/kineticparametersconfigeditor.h"
#include "shell/widgets/piechart.h"
#include "support/widgets.h"

#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPainter>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

namespace {

const ::testing::Environment* const environment = addApplication<QApplication>();

/// The widget in the row of a form with this label.
template <class Widget>
Widget& row(const QWidget& page, const QString& label)
{
    for (const QFormLayout* form : page.findChildren<QFormLayout*>()) {
        for (int i = 0; i < form->rowCount(); ++i) {
            QLayoutItem* text = form->itemAt(i, QFormLayout::LabelRole);
            const QLabel* shown = text ? qobject_cast<QLabel*>(text->widget()) : nullptr;
            if (shown && shown->text() == label) {
                return *qobject_cast<Widget*>(form->itemAt(i, QFormLayout::FieldRole)->widget());
            }
        }
    }
    throw std::runtime_error("no row " + label.toStdString());
}

QGroupBox& group(const QWidget& page, const QString& title)
{
    for (QGroupBox* box : page.findChildren<QGroupBox*>()) {
        if (box->title() == title) {
            return *box;
        }
    }
    throw std::runtime_error("no group " + title.toStdString());
}

} // namespace

TEST(StagePages, GiveBackTheValuesThatTheyWereGivenOrThatWereChosen)
{
    LMXChannelEditor channels;
    const QGroupBox& box = group(channels, "Channel selector ");
    EXPECT_FALSE(box.isEnabled());
    for (int content = 0; content <= 5; ++content) { // a choice only where nothing forces it
        channels.setChannel(static_cast<ImageColorContent>(content));
        EXPECT_EQ(box.isEnabled(), content >= 4) << content;
        EXPECT_EQ(static_cast<int>(channels.getChannel()), content < 4 ? content : 0);
    }
    withText<QRadioButton>(channels, "Blue channel").click();
    EXPECT_EQ(static_cast<int>(channels.getChannel()), 3);

    ExtractContourConfigEditor contour;
    EXPECT_EQ(contour.getFidelityValue(), 100);
    EXPECT_EQ(contour.getBackground(), DarkBackground);
    EXPECT_FALSE(contour.getImageType());
    for (const auto& [set, shown] : {std::pair{5, 10}, {55, 55}, {1000, 100}}) {
        contour.setFidelity(set);
        EXPECT_EQ(contour.getFidelityValue(), shown);
    }
    withText<QRadioButton>(contour, "Ligth Background").click();
    EXPECT_EQ(contour.getBackground(), LightBackground);
    contour.setBackground(DarkBackground);
    EXPECT_TRUE(withText<QRadioButton>(contour, "Dark Background").isChecked());
    contour.findChild<QCheckBox*>()->click();
    EXPECT_TRUE(contour.getImageType());

    ExtractSinusConfigEditor sinus;
    ExtractSinusLocalCurvatureConfig config;
    EXPECT_EQ(config.getNeigbourhood(), 25);
    EXPECT_EQ(config.getCurvatureAngle(), 145.0f);
    config.setNeighbourhood(31);
    config.setCurvatureAngle(120.9f);
    sinus.setConfig(config);
    EXPECT_EQ(sinus.getConfig().getNeigbourhood(), 31);
    EXPECT_EQ(sinus.getConfig().getCurvatureAngle(), 120.0f) << "truncated";

    ExtractPeaksConfigEditor peaks;
    EXPECT_EQ(peaks.getMethodToExtract(), LocalSymmetry);
    for (const int method : {int(LocalCurvature), 2}) { // what is no method changes nothing
        peaks.setMethodToExtract(static_cast<MethodExtractPeaks>(method));
        EXPECT_EQ(peaks.getMethodToExtract(), LocalCurvature);
    }
    withText<QRadioButton>(peaks, "Local Symmetry Maximun").click();
    EXPECT_EQ(peaks.getMethodToExtract(), LocalSymmetry);
    peaks.setExcludeNeighboorhood(1);
    EXPECT_EQ(peaks.getExcludeNeighboorhood(), 2);

    KineticParametersConfigEditor kinetic;
    QSignalSpy spy(&kinetic, &KineticParametersConfigEditor::kineticGroupBoxState);
    ProjectConfig project;
    project.setInflectionPoint(12.3457f);
    project.setScaling(52000.0f);
    project.setStrengthFactor(2.5f);
    project.setKineticEnabled(true);
    kinetic.setConfig(project);
    EXPECT_EQ(spy.count(), 0);
    EXPECT_NEAR(kinetic.getConfig().getInflectionPoint(), 12.3457f, 1e-4f);
    EXPECT_EQ(kinetic.getConfig().getScaling(), 52000.0f);
    EXPECT_EQ(kinetic.getConfig().getStrengthFactor(), 2.5f);
    EXPECT_TRUE(kinetic.getConfig().kineticIsEnabled());
    toggle(group(kinetic, "Kinetic Parameters"));
    EXPECT_EQ(spy.count(), 1);
    EXPECT_FALSE(kinetic.getConfig().kineticIsEnabled());
}

TEST(PieChart, OpensUpwardsAsFarAsTheAngleSays)
{
    PieChart chart;
    chart.resize(45, 45);
    // The middle of the sector is the upper half of the vertical through (22.5, 22.5).
    for (const int degrees : {1, 60, 145, 179}) {
        chart.setSpanAngle(degrees);
        QImage image(45, 45, QImage::Format_RGB32);
        image.fill(Qt::white);
        chart.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
        int black = 0;
        for (int y = 0; y < 45; ++y) {
            for (int x = 0; x < 45; ++x) {
                const bool isBlack = qGray(image.pixel(x, y)) < 64;
                black += isBlack;
                EXPECT_TRUE(!isBlack || y <= 23) << degrees << ": " << x << ", " << y;
            }
        }
        const double sector = 3.14159265 * 17.5 * 17.5 * degrees / 360.0;
        EXPECT_NEAR(black, sector, 30.0) << degrees;
    }
}

TEST(LeafMeasuresConfigEditor, LocksThePrefixAndTakesAFolder)
{
    const QTemporaryDir folder;
    {
        NewProjectDialog dialog;
        const Modals cancelled({cancelDialog});
        EXPECT_FALSE(withText<QPushButton>(dialog, "Done").isEnabled());
        dialog.pathChooser();
        EXPECT_TRUE(withText<QPushButton>(dialog, "Done").isEnabled()) << "it was asked for";
        EXPECT_EQ(dialog.getOutputPath(), "");
    }
    LeafMeasuresConfigEditor page;
    QPushButton& process = withText<QPushButton>(page, "&Process");
    ProjectConfig project;
    project.setProjectName("oaks");
    page.setConfig(project);
    EXPECT_FALSE(process.isEnabled());

    const QList<QLineEdit*> edits = lineEdits(page);
    ASSERT_EQ(edits.size(), 2);
    EXPECT_FALSE(edits[0]->isEnabled());
    QToolButton& pencil = withText<QToolButton>(page, "Change prefix name");
    pencil.click();
    EXPECT_TRUE(edits[0]->isEnabled());
    QTest::keyClicks(edits[0], "-2");
    pencil.click();
    EXPECT_FALSE(edits[0]->isEnabled());
    EXPECT_EQ(page.getPrefix(), "oaks-2");

    Modals modals({cancelDialog, choosePath(folder.path())});
    page.dirSelection();
    EXPECT_FALSE(process.isEnabled());
    withText<QToolButton>(page, "Change directory").click();
    EXPECT_TRUE(process.isEnabled());
    EXPECT_EQ(page.getOutputPath(), folder.path());
    EXPECT_EQ(edits[1]->text(), folder.path());
}

TEST(HierarchyConfigEditor, AtMostOneOfTheThreeChoicesIsCheckedAndKeepsItsParameters)
{
    HierarchyConfigEditor page;
    QGroupBox* const groups[] = {&group(page, "Hierarchy Recursive Method (Arabodipsis)"),
                                 &group(page, "Hierarchy Iterative Method"),
                                 &group(page, "No Hierarchy")};
    const auto choices = [&] {
        return QList<bool>({page.getConfigHierarchyArabidoMethod().isSettingsEnabled(),
                            page.getConfigHierarchyIterativeMethod().isSettingsEnabled(),
                            page.getConfigNoHierarchyMethod().isSettingsEnabled()});
    };
    EXPECT_EQ(choices(), QList<bool>({false, false, false}));
    for (int k : {0, 1, 2, 0, 2, 1}) {
        toggle(*groups[k]);
        EXPECT_EQ(choices(), QList<bool>({k == 0, k == 1, k == 2}));
    }
    toggle(*groups[1]);
    EXPECT_EQ(choices(), QList<bool>({false, false, false}));
    QSignalSpy spy(&page, &HierarchyConfigEditor::processHierarchyClicked);
    withText<QPushButton>(page, "&Process").click();
    EXPECT_EQ(spy.count(), 1);

    EXPECT_EQ(page.getConfigHierarchyArabidoMethod().getAngleLimit(), 45);
    EXPECT_EQ(page.getConfigHierarchyIterativeMethod().getTolerance(), 0.3f);
    HierarchyArabidoConfig recursive;
    recursive.setAngleLimit(300);
    recursive.setEnableDistalTeeth(true);
    recursive.setSettingsEnabled(true);
    page.setConfigHierarchyArabidoMethod(recursive);
    EXPECT_EQ(page.getConfigHierarchyArabidoMethod().getAngleLimit(), 179);
    EXPECT_TRUE(page.getConfigHierarchyArabidoMethod().getEnabledDistalTeeth());
    QSpinBox& angle = row<QSpinBox>(page, "Limit angle (degres):");
    angle.setValue(60);
    angle.stepUp();
    withText<QCheckBox>(page, "Enable distal teeth detection").click();
    EXPECT_EQ(page.getConfigHierarchyArabidoMethod().getAngleLimit(), 62);
    EXPECT_FALSE(page.getConfigHierarchyArabidoMethod().getEnabledDistalTeeth());
    QDoubleSpinBox& factor = row<QDoubleSpinBox>(page, "Stringency factor :");
    factor.setValue(0.0);
    factor.stepUp();
    EXPECT_EQ(page.getConfigHierarchyIterativeMethod().getTolerance(), 0.07f);
}

TEST(AveragingConfigPage, KeepsStepsAndNumberInStep)
{
    AveragingConfigPage page;
    page.setMinimun(0.0f);
    page.setMaximun(100.0f);
    page.setAveragesNumber(10);
    EXPECT_EQ(page.getStepsNumber(), 10.0f);
    QDoubleSpinBox& steps = row<QDoubleSpinBox>(page, "Steps :");
    steps.setValue(30.0);
    EXPECT_EQ(page.getAveragesNumber(), 3);
    EXPECT_NEAR(page.getStepsNumber(), 33.33f, 1e-4f);
    row<QSpinBox>(page, "Averages number :").setValue(7);
    EXPECT_EQ(page.getAveragesNumber(), 7);
    EXPECT_NEAR(page.getStepsNumber(), 14.29f, 1e-4f);
    row<QDoubleSpinBox>(page, "Max :").setValue(50.0);
    EXPECT_EQ(page.getAveragesNumber(), 3);
    page.setUnity(" µm");
    EXPECT_TRUE(steps.text().endsWith(" µm"));
    // Limits that leave no room between them.
    page.setMinimun(20.0f);
    page.setMaximun(20.0f);
    EXPECT_EQ(page.getBegin(), page.getEnd());
    steps.setValue(1.0);
    EXPECT_EQ(page.getAveragesNumber(), 1);
}

TEST(AveragingConfigPage, TheMethodOpensProcessAndNamesTheFileGroup)
{
    AveragingConfigPage page;
    QPushButton& process = withText<QPushButton>(page, "&Process");
    QCheckBox& bins = withText<QCheckBox>(page, "based on bins");
    QCheckBox& sliding = withText<QCheckBox>(page, "sliding averaging");
    QGroupBox& user = group(page, "User defined parameters");
    QGroupBox& file = group(page, "Choice a method");
    const auto expectState = [&](int method, bool open, bool own, bool both) {
        EXPECT_EQ(page.getMethodAveraging(), method);
        EXPECT_EQ(process.isEnabled(), open) << method;
        EXPECT_TRUE(file.isChecked() == own && !(own && user.isChecked())) << method;
        EXPECT_EQ(bins.isChecked() != sliding.isChecked(), both) << method;
    };
    expectState(1, false, file.isChecked(), false);
    toggle(user);
    bins.click();
    expectState(2, false, false, true); // no group is checked
    EXPECT_EQ(file.title(), "User-defined neighborhood bins");
    toggle(file);
    sliding.click();
    expectState(3, true, true, true);
    EXPECT_EQ(file.title(), "User-defined ranks");
    toggle(user);
    expectState(1, true, false, true);
    const QDoubleSpinBox& steps = row<QDoubleSpinBox>(page, "Steps :");
    EXPECT_TRUE(steps.isEnabled());
    bins.click();
    expectState(0, true, false, true);
    EXPECT_FALSE(steps.isEnabled());
    bins.click();
    expectState(page.getMethodAveraging(), true, false, false);

    // Peaks depend on sinuses.
    QCheckBox& sinuses = withText<QCheckBox>(page, "Primary Sinuses");
    QCheckBox& peaks = withText<QCheckBox>(page, "Primary Peaks");
    EXPECT_FALSE(peaks.isEnabled());
    sinuses.click();
    peaks.click();
    EXPECT_TRUE(page.getPrimarySinusCheck() && page.getPrimaryPeaksCheck());
    sinuses.click();
    EXPECT_FALSE(peaks.isEnabled() || peaks.isChecked());
    EXPECT_FALSE(page.getPrimarySinusCheck());
    EXPECT_TRUE(page.getPrimaryPeaksCheck()) << "the last value that a click on it gave";
    EXPECT_TRUE(page.getBladeSymmetrization());
    withText<QCheckBox>(page, "Leaf Symmetrization").click();
    EXPECT_FALSE(page.getBladeSymmetrization());
}

TEST(StagePage, EachHelpOpensAWindowOfItsOwnThatEscapeEnds)
{
    Q_INIT_RESOURCE(crenaraconfig);
    ExtractSinusConfigEditor page;
    const auto windows = [] {
        QList<HelpBrowser*> found;
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* browser = qobject_cast<HelpBrowser*>(widget)) {
                found.append(browser);
            }
        }
        return found;
    };
    QPushButton& help = withText<QPushButton>(page, "Help");
    help.click();
    help.click();
    ASSERT_EQ(windows().size(), 2);
    HelpBrowser* first = windows().first();
    EXPECT_EQ(first->size(), QSize(500, 400));
    withText<QPushButton>(*first, "home").click();
    EXPECT_TRUE(first->windowTitle().startsWith("Help: "));
    EXPECT_GT(first->windowTitle().size(), 6) << "the guide has a title";
    for (HelpBrowser* window : windows()) {
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window));
        QTest::keyClick(window, Qt::Key_Escape);
    }
    EXPECT_TRUE(QTest::qWaitFor([&] { return windows().isEmpty(); }, 2000));
}
