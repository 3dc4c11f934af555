#include "host/results/picturefile.h"
#include "host/results/plotaxis.h"
#include "host/results/plotdata.h"
#include "host/results/plotframe.h"
#include "host/results/plotview.h"
#include "support/temporaryfolder.h"
#include "system/exception.h"

#include <QImage>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <set>

namespace {

const double nan = std::numeric_limits<double>::quiet_NaN();

TableColumn numbers(const QString& name, const std::vector<double>& values)
{
    TableColumn column;
    column.name = name;
    column.numeric = true;
    column.numbers = values;
    for (const double value : values) {
        column.texts.push_back(QString::number(value));
    }
    return column;
}

TableColumn texts(const QString& name, const std::vector<QString>& values)
{
    TableColumn column;
    column.name = name;
    column.texts = values;
    column.numbers.assign(values.size(), nan);
    return column;
}

std::vector<TableColumn> teeth()
{
    return {texts("Slice_Name", {"leaf10", "leaf2", "leaf2", "leaf10"}),
            numbers("Tooth_Position", {2, 1, 10, 2}), numbers("Tooth_Width", {10, 20, 30, nan}),
            numbers("Tooth_Area", {5, 1, 3, 7})};
}

bool isRound(double step)
{
    const double mantissa = step / std::pow(10.0, std::floor(std::log10(step) + 1e-9));
    return std::min({std::fabs(mantissa - 1), std::fabs(mantissa - 2), std::fabs(mantissa - 5)}) <
           1e-6;
}

} // namespace

TEST(PlotAxis, TicksAreRoundCoverTheNumbersAndReadBack)
{
    std::mt19937 engine(5);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    for (int trial = 0; trial < 3000; ++trial) {
        const double size = std::pow(10.0, 12.0 * unit(engine));
        const double a = size * unit(engine);
        const double b = trial % 10 == 0 ? a : a + size * unit(engine);
        const int wanted = 2 + trial % 11;
        const PlotAxis axis(std::min(a, b), std::max(a, b), wanted);
        const std::vector<double> ticks = axis.ticks();
        ASSERT_TRUE(isRound(axis.step())) << a << " " << b << " " << axis.step();
        const double slack = 1e-6 * axis.step();
        ASSERT_LE(axis.low(), std::min(a, b) + slack);
        ASSERT_GE(axis.high(), std::max(a, b) - slack);
        ASSERT_GE(ticks.size(), 2u);
        ASSERT_LE(static_cast<int>(ticks.size()), 2 * wanted + 3);
        std::set<QString> labels;
        for (const double tick : ticks) {
            labels.insert(axis.label(tick));
            if (std::max(std::fabs(a), std::fabs(b)) < 1e5 * axis.step()) {
                ASSERT_NEAR(axis.label(tick).toDouble(), tick, 0.01 * axis.step() + 1e-300);
            }
        }
        if (std::max(std::fabs(a), std::fabs(b)) < 1e5 * axis.step()) {
            ASSERT_EQ(labels.size(), ticks.size());
        }
    }
    const PlotAxis fine(-0.1, 0.3, 5);
    EXPECT_EQ(fine.label(0.0), "0.0") << "not -0.0";
    for (const double alone : {0.0, 1e-300, 1e300, -7.0}) {
        const PlotAxis around(alone, alone, 5);
        EXPECT_LT(around.low(), around.high());
        EXPECT_LT(around.ticks().size(), 20u);
    }
}

TEST(PlotFrame, AnEqualScaleShowsAllOnBothAxesAlike)
{
    for (const QSizeF& size : {QSizeF(700, 300), QSizeF(300, 700), QSizeF(5, 5)}) {
        const PlotFrame frame(QRectF(QPointF(), size), {-30, 50, 1000, 1200},
                              PlotFrame::Scale::Equal, "x", "y", QFont());
        const QPointF origin = frame.place(0, 1100);
        EXPECT_NEAR(frame.place(10, 1100).x() - origin.x(), origin.y() - frame.place(0, 1110).y(),
                    1e-9);
        if (size.width() > 100) {
            for (const QPointF& corner : {frame.place(-30, 1000), frame.place(50, 1200)}) {
                EXPECT_TRUE(frame.area().adjusted(-0.1, -0.1, 0.1, 0.1).contains(corner));
            }
        }
    }
}

TEST(PlotData, PairsTheColumnsWithUnitsAndGroups)
{
    const PlotData byLeaf = PlotData::of(teeth(), "Tooth_Width", "Tooth_Area", "Slice_Name", "µm");
    EXPECT_EQ(byLeaf.xLabel, "Tooth_Width (µm)");
    EXPECT_EQ(byLeaf.yLabel, "Tooth_Area (µm²)");
    EXPECT_EQ(byLeaf.groups, QStringList({"leaf2", "leaf10"}));
    EXPECT_FALSE(byLeaf.ordered);
    EXPECT_EQ(byLeaf.leftOut, 1);
    ASSERT_EQ(byLeaf.points.size(), 3u);
    EXPECT_EQ(byLeaf.points[0].group, 1);
    EXPECT_EQ(byLeaf.points[2].row, 2);
    EXPECT_EQ(byLeaf.points[2].x, 30.0);

    const PlotData byRank =
        PlotData::of(teeth(), "Tooth_Width", "Tooth_Area", "Tooth_Position", "");
    EXPECT_EQ(byRank.xLabel, "Tooth_Width") << "without a unit that nobody knows";
    EXPECT_EQ(byRank.groups, QStringList({"1", "2", "10"}));
    EXPECT_TRUE(byRank.ordered);
    EXPECT_THROW(PlotData::of(teeth(), "Tooth_Width", "none", "", ""), NameError);
}

TEST(PlotView, PointsAreChosenByClicksAndKeys)
{
    PlotView view;
    view.resize(500, 400);
    view.setData(PlotData::of(teeth(), "Tooth_Width", "Tooth_Area", "Slice_Name", ""), {});
    view.show();
    QSignalSpy chosen(&view, &PlotView::rowChosen);
    for (const PlotData::Point& point : view.plotData().points) {
        QTest::mouseClick(&view, Qt::LeftButton, Qt::NoModifier,
                          view.place(point).toPoint() + QPoint(2, -2));
        ASSERT_EQ(chosen.count(), 1);
        EXPECT_EQ(chosen.takeFirst().first().toInt(), point.row);
    }
    QTest::mouseClick(&view, Qt::LeftButton, Qt::NoModifier, QPoint(3, 3));
    EXPECT_EQ(chosen.count(), 0);
    for (const int row : {0, 1, 2, 2}) { // the last point is the end of the walk
        QTest::keyClick(&view, Qt::Key_Right);
        QTest::keyClick(&view, Qt::Key_Return);
        EXPECT_EQ(chosen.takeFirst().first().toInt(), row);
    }
    view.setData(PlotData(), {});
    QTest::keyClick(&view, Qt::Key_Right);
    QTest::keyClick(&view, Qt::Key_Return);
    EXPECT_EQ(chosen.count(), 0);
    EXPECT_FALSE(view.grab().isNull());
}

TEST(PlotView, SavesPicturesThatHoldItsPoints)
{
    const TemporaryFolder folder;
    PlotView view;
    view.setData(PlotData::of(teeth(), "Tooth_Width", "Tooth_Area", "Slice_Name", "µm"), {});
    const auto file = [&](const char* name) { return QString::fromStdString(folder.file(name)); };
    view.save(file("plot.svg"));
    const QString svg = QString::fromStdString(folder.read("plot.svg"));
    EXPECT_EQ(svg.count("<circle") + svg.count("<ellipse"), 3);
    EXPECT_TRUE(svg.contains("Tooth_Width (µm)"));
    EXPECT_TRUE(svg.contains("leaf10"));
    view.save(file("plot.PNG"));
    QImage image(file("plot.PNG"));
    ASSERT_EQ(image.size(), QSize(1920, 1280));
    EXPECT_EQ(image.pixelColor(2, 2), QColor(Qt::white));

    EXPECT_THROW(view.save(file("plot.txt")), UsageError);
    EXPECT_THROW(view.save(file("none/plot.png")), FileWriteError);
    EXPECT_EQ(folder.fileCount(), 2);
}
