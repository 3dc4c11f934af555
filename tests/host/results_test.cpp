#include "blade/landmarks/extractconvexpoints.h"
#include "blade/landmarks/extractpeak.h"
#include "blade/measures/leafanalysis.h"
#include "blade/process/blademessages.h"
#include "blade/project/projectconfig.h"
#include "host/document/lmxrootmediator.h"
#include "host/results/averageshapes.h"
#include "host/results/averagespage.h"
#include "host/results/measuretables.h"
#include "host/results/resultswindow.h"
#include "host/results/resulttableview.h"
#include "shape/curves/curve.h"
#include "stack/stackwriter.h"
#include "support/leaf.h"
#include "support/temporaryfolder.h"
#include "support/widgets.h"
#include "system/exception.h"

#include <QAction>
#include <QClipboard>
#include <QLabel>
#include <QListWidget>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTabWidget>
#include <QTest>

#include <cmath>
#include <limits>
#include <random>
#include <sstream>

namespace {

using Kind = MeasureTables::Kind;

leaf::Outline leafAt(double angleDegrees, int teethPerSide = 4)
{
    leaf::Shape shape;
    shape.toothHeight = 40.0;
    shape.teethPerSide = teethPerSide;
    shape.angleDegrees = angleDegrees;
    return leaf::draw(shape);
}

/// Leaves with sinuses and tips; the last one has no junctions, and two have the same name.
std::unique_ptr<LMXStack> analysedStack()
{
    auto stack = leaf::stackOf({leafAt(0.0), leafAt(12.0, 3), leafAt(-7.0, 4), leafAt(0.0)});
    ExtractConvexPoints sinuses;
    sinuses.setStack(*stack);
    sinuses.setNeigbourhood(25);
    sinuses.setThresholdAngle(145.0f);
    sinuses.createModels();
    ExtractPeak tips;
    tips.setStack(*stack);
    tips.setMethodToExtract(LocalCurvature);
    tips.setExcludeNeighbourhood(10);
    tips.createModels();
    for (int i = 0; i < 3; ++i) {
        sinuses.process(i);
        tips.process(i);
    }
    delete leaf::findItem(*stack, "Petiole", 3);
    stack->getSlice(2).setName(stack->getSlice(0).getName());
    return stack;
}

/// What the stage itself writes, with the parameters of a project that says nothing.
void runStage(LMXStack& stack, const TemporaryFolder& folder)
{
    const BladeMessages::Handler before = BladeMessages::setHandler([](const std::string&) {});
    LeafAnalysis analysis;
    analysis.setStack(stack);
    analysis.setStrength(1.0f);
    analysis.setInflection(1.0f);
    analysis.setScaling(1.0f);
    analysis.setOutputPath(QString::fromStdString(folder.path().string()));
    analysis.setPrefix("stage");
    analysis.run();
    BladeMessages::setHandler(before);
}

std::string bytes(const LMXStack& stack)
{
    std::ostringstream stream;
    StackWriter().writeModels(stack, stream);
    return stream.str();
}

std::string bytes(const DataSet& table)
{
    std::ostringstream stream;
    stream << table;
    return stream.str();
}

/// Distance of a point from an open or closed line.
double distanceTo(const QPolygonF& line, const QPointF& point)
{
    double least = std::numeric_limits<double>::max();
    for (int i = 0; i + 1 < line.size(); ++i) {
        const QPointF edge = line[i + 1] - line[i];
        const double square = QPointF::dotProduct(edge, edge);
        const double share = square > 0 ? QPointF::dotProduct(point - line[i], edge) / square : 0.0;
        const QPointF way = line[i] + edge * std::min(1.0, std::max(0.0, share)) - point;
        least = std::min(least, std::hypot(way.x(), way.y()));
    }
    return least;
}

class ResultsWindowTest : public ::testing::Test
{
protected:
    ResultsWindowTest()
        : window(mediator)
    {
        mediator.open(analysedStack());
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
    }

    ResultTableView& tableView(Kind kind)
    {
        return *window.findChild<ResultTableView*>(kind == Kind::Leaves ? "leaves" : "teeth");
    }

    void showTab(int tab) { window.findChild<QTabWidget*>()->setCurrentIndex(tab); }

    QString state() { return window.statusBar()->findChild<QLabel*>()->text(); }

    void click(ResultTableView& table, int row)
    {
        const QModelIndex index = table.model()->index(row, 1);
        table.scrollTo(index);
        QTest::mouseClick(table.viewport(), Qt::LeftButton, Qt::NoModifier,
                          table.visualRect(index).center());
    }

    QString file(const char* name) { return QString::fromStdString(folder.file(name)); }

    TemporaryFolder folder;
    LMXRootMediator mediator;
    ResultsWindow window;
};

} // namespace

TEST(ResultTableModel, ShowsTheTextOfTheFileAndSortsNumbersAsNumbers)
{
    std::mt19937 engine(3);
    DataSet table;
    const int rows = 60;
    table.setValue<std::string>("short", 1, "the cells below are empty");
    for (int row = 0; row < rows; ++row) {
        const int number = static_cast<int>(engine() % 40) - 20;
        table.setValue<std::string>("name", row, "leaf" + std::to_string(number));
        table.setValue<int>("count", row, number);
        const float size = std::ldexp(static_cast<float>(number), number);
        table.setValue<float>("size", row,
                              number == 7 ? std::numeric_limits<float>::quiet_NaN() : size);
    }
    ResultTableModel model;
    model.setColumns(tableColumns(table));
    std::vector<int> all(rows);
    for (int row = 0; row < rows; ++row) {
        all[static_cast<std::size_t>(row)] = row;
    }
    EXPECT_EQ(model.rowCount(), table.numRows());
    model.sort(-1, Qt::AscendingOrder);
    const QPersistentModelIndex kept = model.index(17, 0);
    for (int column = 0; column < 4; ++column) {
        for (const Qt::SortOrder order : {Qt::AscendingOrder, Qt::DescendingOrder}) {
            model.sort(column, order);
            const TableColumn& cells = model.columns()[static_cast<std::size_t>(column)];
            std::vector<bool> seen(rows, false);
            for (int row = 0; row < rows; ++row) {
                seen[static_cast<std::size_t>(model.tableRow(row))] = true;
                if (row == 0) {
                    continue;
                }
                const auto a = static_cast<std::size_t>(model.tableRow(row - 1));
                const auto b = static_cast<std::size_t>(model.tableRow(row));
                const auto& before = order == Qt::AscendingOrder ? a : b;
                const auto& after = order == Qt::AscendingOrder ? b : a;
                if (column < 2) {
                    ASSERT_FALSE(naturallyLess(cells.texts[after], cells.texts[before]));
                } else if (std::isnan(cells.numbers[a])) {
                    ASSERT_TRUE(std::isnan(cells.numbers[b])) << "no number comes last";
                } else if (!std::isnan(cells.numbers[b])) {
                    ASSERT_LE(cells.numbers[before], cells.numbers[after]);
                }
            }
            ASSERT_EQ(std::count(seen.begin(), seen.end(), true), rows);
            ASSERT_EQ(model.tableRow(kept.row()), 17) << "the selection goes with its row";
        }
    }
    model.sort(-1, Qt::AscendingOrder);
    EXPECT_EQ(model.text(all).toStdString(), bytes(table));
    EXPECT_TRUE(naturallyLess("leaf2", "Leaf10"));
    EXPECT_TRUE(naturallyLess("a007", "a8"));
    EXPECT_TRUE(naturallyLess("a", "a1"));
    EXPECT_FALSE(naturallyLess("a1", "a1"));
}

TEST(MeasureTables, AreThoseOfTheStageAndKnowTheirSlices)
{
    const auto stack = analysedStack();
    const std::string before = bytes(*stack);
    MeasureTables tables;
    tables.measure(*stack, ProjectConfig());
    EXPECT_EQ(bytes(*stack), before);
    EXPECT_EQ(tables.table(Kind::Leaves).numRows(), 3);
    ASSERT_EQ(tables.leftOut().size(), 1u);
    EXPECT_EQ(tables.leftOut().front(), "leaf3");
    EXPECT_EQ(tables.lengthUnit(), "pixel");
    EXPECT_TRUE(tables.inPixels().empty()) << "all of them are";
    const TemporaryFolder folder;
    runStage(*stack, folder);
    for (const auto& [kind, name] : {std::pair(Kind::Leaves, "stage_LeafMeasures.data"),
                                     std::pair(Kind::Teeth, "stage_PeakMeasures.data")}) {
        EXPECT_EQ(bytes(tables.table(kind)), folder.read(name));
        std::vector<int> rowsOf(4, 0);
        for (int row = 0; row < tables.table(kind).numRows(); ++row) {
            ++rowsOf[static_cast<std::size_t>(tables.slice(kind, row, *stack))];
        }
        const Vector<int>& numTeeth =
            tables.table(Kind::Leaves).getValues<int>("Total_Peak_Number");
        for (int slice = 0; slice < 3; ++slice) {
            EXPECT_EQ(rowsOf[static_cast<std::size_t>(slice)],
                      kind == Kind::Leaves ? 1 : numTeeth[slice]);
        }

        MeasureTables read;
        EXPECT_EQ(read.load(folder.file(name)), kind);
        EXPECT_EQ(bytes(read.table(kind)), folder.read(name));
        EXPECT_EQ(read.slice(kind, read.table(kind).numRows() - 1, *stack), 0)
            << "a name alone tells the first one";
        EXPECT_EQ(read.slice(kind, read.table(kind).numRows(), *stack), -1);
    }
    EXPECT_THROW(tables.load(folder.write("other.data", "a\tb\n1\t2\n")), FileFormatError);
    EXPECT_THROW(tables.load(folder.file("none.data")), FileReadError);
    EXPECT_EQ(tables.table(Kind::Leaves).numRows(), 3);

    PixelCalibration calibration;
    calibration.setPixelWidth(84.6667f);
    calibration.setPixelHeight(84.6667f);
    stack->getSlice(1).setPixelCalibration(calibration);
    tables.measure(*stack, ProjectConfig());
    EXPECT_EQ(tables.lengthUnit(), stack->getLengthUnit().symbol());
    EXPECT_EQ(tables.inPixels(), std::vector<std::string>({"leaf0", "leaf0", "leaf3"}));
}

TEST(AverageShapes, LieInOneFrameHoweverTheLeafLay)
{
    const std::vector<double> angles = {0.0, 17.0, -40.0, 90.0, 180.0};
    std::vector<leaf::Outline> outlines;
    for (const double angle : angles) {
        outlines.push_back(leafAt(angle));
    }
    const auto stack = leaf::stackOf(outlines);
    // A contour may begin anywhere: here on the blade.
    ModelItem& item = *leaf::findItem(*stack, "Contour", 1);
    Vertices<int> vertices = item.getVertices();
    vertices.setOrigin(vertices.getSize() / 3);
    item.setVertices(vertices);
    for (int i = 0; i < stack->getNumSlices(); ++i) {
        leaf::addItem(*stack, "Apex", PRIMITIVE_POLYPOINT, i,
                      {outlines[static_cast<std::size_t>(i)].apex});
    }
    const std::vector<AverageShape> shapes = shapesOfStack(*stack);
    ASSERT_EQ(shapes.size(), angles.size());
    const QPolygonF& first = shapes.front().outline;
    const double length = leaf::distance(
        outlines[0].apex, {(outlines[0].junctions[0].x + outlines[0].junctions[1].x) / 2,
                           (outlines[0].junctions[0].y + outlines[0].junctions[1].y) / 2});
    for (const AverageShape& shape : shapes) {
        EXPECT_NEAR(shape.outline.boundingRect().right(), length, 2.5);
        double farthest = 0.0;
        for (const QPointF& point : shape.outline) {
            farthest = std::max(farthest, distanceTo(first, point));
        }
        // Two pixels of rounding on each of the two contours, and an axis off by as much.
        EXPECT_LT(farthest, 5.0) << shape.name.toStdString();
        EXPECT_GT(shape.outline.size(), 1000);
    }
    delete leaf::findItem(*stack, "Apex", 2);
    EXPECT_EQ(shapesOfStack(*stack).back().slice, 4);
    EXPECT_EQ(shapesOfStack(*stack).size(), angles.size() - 1);
}

TEST(AverageShapes, ComeFromCurveFilesToo)
{
    const TemporaryFolder folder;
    for (const char* name : {"s-ho-10.cv", "s-ho-9.cv", "s-ho-9-sampled.cv"}) {
        folder.write(name, "# 1\n# 3\n# 3\n0 -1 0\n5 0 0\n0 1 0\n");
    }
    folder.write("note.txt", "none");
    const std::vector<AverageShape> shapes = shapesOfFiles(curveFiles(folder.path().string()));
    ASSERT_EQ(shapes.size(), 2u);
    EXPECT_EQ(shapes[0].outline, QPolygonF({{0, -1}, {5, 0}, {0, 1}}));
    EXPECT_FALSE(shapes[0].closed);
    EXPECT_EQ(shortNames(shapes), std::vector<QString>({"9", "10"}));
    EXPECT_EQ(shortNames({shapes[0]}), std::vector<QString>({"s-ho-9"}));
    for (const char* bad :
         {"# 1\n# 3\n# 0\n", "# 0\n# 1\n# 2\n3\n4\n", "none", "# 1\n# 2\n# 1\nnan 0\n"}) {
        EXPECT_THROW(shapesOfFiles({folder.write("bad.cv", bad)}), FileError) << bad;
    }
    EXPECT_THROW(curveFiles(folder.file("none")), FileReadError);
}

TEST_F(ResultsWindowTest, LeadsFromRowsToLeavesAndBack)
{
    EXPECT_TRUE(state().startsWith("3 leaves"));
    EXPECT_TRUE(state().endsWith("; without contour, two junctions or apex: leaf3"));
    QSignalSpy chosen(&window, &ResultsWindow::sliceChosen);
    ResultTableView& leaves = tableView(Kind::Leaves);
    leaves.sortByColumn(2, Qt::DescendingOrder);
    for (const int row : {0, 1, 2}) {
        click(leaves, row);
        ASSERT_EQ(chosen.count(), 1);
        const int slice = leaves.tableModel().tableRow(row);
        EXPECT_EQ(chosen.takeFirst().first().toInt(), slice);
    }
    QTest::keyClick(&leaves, Qt::Key_Up);
    EXPECT_EQ(chosen.takeFirst().first().toInt(), leaves.tableModel().tableRow(1));
    window.showSlice(1);
    EXPECT_EQ(leaves.tableModel().tableRow(leaves.currentIndex().row()), 1);
    EXPECT_EQ(tableView(Kind::Teeth).currentIndex().row(), 8);
    EXPECT_EQ(chosen.count(), 0);

    leaves.copy();
    const QStringList lines = QGuiApplication::clipboard()->text().split('\n');
    ASSERT_EQ(lines.size(), 3) << "header, the selected row, and the end";
    EXPECT_TRUE(lines[0].startsWith("Slice_Name\tCalibration\t"));
    EXPECT_TRUE(lines[1].startsWith("leaf1\t"));
}

TEST_F(ResultsWindowTest, TellsThatTheDocumentChangedAndExportsWhatTheStageWrites)
{
    EXPECT_FALSE(state().contains("F5"));
    LMXStack& stack = *mediator.stack();
    stack.setModified(false);
    EXPECT_FALSE(state().contains("F5")) << "saved";
    delete leaf::findItem(stack, "Apex", 1);
    stack.setModified(true);
    EXPECT_TRUE(state().contains("F5"));
    QTest::keyClick(&window, Qt::Key_F5);
    EXPECT_TRUE(state().startsWith("2 leaves")) << state().toStdString();
    runStage(stack, folder);
    Modals modals({choosePath(file("leaves.data")), choosePath(file("teeth"))});
    window.exportTable();
    showTab(1);
    window.exportTable();
    EXPECT_EQ(folder.read("leaves.data"), folder.read("stage_LeafMeasures.data"));
    EXPECT_EQ(folder.read("teeth.data"), folder.read("stage_PeakMeasures.data"));
    EXPECT_TRUE(modals.stepsAreDone());

    showTab(3);
    QListWidget& names = *window.findChild<AveragesPage*>()->findChild<QListWidget*>();
    ASSERT_EQ(names.count(), 2);
    QSignalSpy chosen(&window, &ResultsWindow::sliceChosen);
    names.setCurrentRow(1);
    QTest::keyClick(&names, Qt::Key_Return);
    ASSERT_EQ(chosen.count(), 1);
    EXPECT_EQ(chosen.takeFirst().first().toInt(), 2);

    mediator.close();
    EXPECT_TRUE(state().startsWith("0 leaves"));
    EXPECT_EQ(names.count(), 0);
    window.measure();
    EXPECT_FALSE(window.grab().isNull());
}
