#include "blade/averages/averageseries.h"
#include "blade/averages/averagevalues.h"
#include "blade/averages/averagingprocess.h"
#include "image/pixels/image2.h"
#include "stack/stackreader.h"
#include "support/stages.h"
#include "support/temporaryfolder.h"
#include "system/dataset.h"
#include "system/exception.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <iomanip>
#include <map>
#include <sstream>

namespace {

constexpr int teethPerSide = 3;
const std::string micro = "\xC2\xB5";

/// Leaves of the given blade lengths in pixels, alike in shape, with all landmarks, turned a bit.
struct Averages : leaf::Told
{
    explicit Averages(const std::vector<double>& lengths)
    {
        std::vector<leaf::Outline> outlines;
        for (const double length : lengths) {
            leaf::Shape shape;
            shape.length = length;
            shape.width = length * 0.45;
            shape.toothHeight = length * 0.06;
            shape.petioleLength = 40.0;
            shape.teethPerSide = teethPerSide;
            shape.angleDegrees = 90.0 + 8.0 * static_cast<double>(outlines.size() % 5);
            outlines.push_back(leaf::draw(shape));
        }
        stack = leaf::landmarkedStack(outlines);
        stack->setName("sample");
        for (int k = 0; k < stack->getNumSlices(); ++k) {
            leaf::setPixelWidth(*stack, k, 2.0f);
        }
    }

    /// Lengths in a mixed order.
    explicit Averages(int number)
        : Averages([number] {
            std::vector<double> lengths;
            for (int k = 0; k < number; ++k) {
                lengths.push_back(150.0 + (k * 37) % number * 12.0);
            }
            return lengths;
        }())
    {}

    /// A process with the folder, all landmarks and the leaves' whole range of keys.
    void prepare(AveragingProcess& process, int number, bool kinetic = false)
    {
        process.setStack(*stack);
        process.setOutPath(folder.path().string() + "/");
        process.setAveragesNumber(number);
        process.setResamplingPointsNumber(400);
        process.sinusIsEnabled(true);
        process.peakIsEnabled(true);
        process.setKineticParameters(kinetic);
        process.setStrength(2.5f);
        process.setInflection(9.0f);
        process.setScaling(1000.0f);
        Matrix<float> measures;
        process.initializationMeasure(measures);
        process.setMeasurement(measures);
        float smallest = 0.0f;
        float largest = 0.0f;
        ASSERT_TRUE(process.keyRange(smallest, largest));
        process.setBegin(smallest);
        process.setEnd(largest);
    }

    /// The stack that a run writes.
    std::unique_ptr<LMXStack> trajectory(AveragingProcess& process, bool bins = true) const
    {
        bins ? process.runHomogeousAveragingMethod() : process.runSlidingAveragingMethod();
        auto result = std::make_unique<LMXStack>();
        EXPECT_TRUE(StackReader().read(*result, folder.file("sample-trajectory.sdf")));
        return result;
    }

    Curve<float> curve(const std::string& name) const { return Curve<float>(folder.file(name)); }

    TemporaryFolder folder;
    std::unique_ptr<LMXStack> stack;
};

} // namespace

TEST(AveragingProcess, BinsHoldTheLeavesBetweenNearestRankLimits)
{
    Averages leaves(23);
    for (int number : {1, 2, 5, 10, 40}) {
        AveragingProcess process;
        leaves.prepare(process, number);
        const Vector<float> keys = process.getMeasurement()[0];
        std::vector<float> sorted = keys.toStlVector();
        std::sort(sorted.begin(), sorted.end());
        process.setBegin(sorted[2]);
        sorted.erase(sorted.begin(), sorted.begin() + 2);
        std::vector<float> limits = {sorted.front()};
        for (int i = 1; i < number; ++i) {
            limits.push_back(sorted[size_t(std::floor(20.0 * i / number + 0.5 + 1e-6))]);
        }
        limits.push_back(sorted.back());

        Vector<int> counts;
        counts.setZeros(number);
        Vector<float> centres;
        centres.setZeros(number);
        const Matrix<float> bins = process.sortingHomogeneousMeasures(
            process.buildHomogeneousMeasurementMatrix(), counts, centres);
        ASSERT_EQ(bins.getSize2(), 21) << "two leaves lie below begin";
        EXPECT_EQ(counts.sum(), 21);
        for (int j = 0; j < 21; ++j) {
            EXPECT_EQ(bins[1][j], sorted[size_t(j)]);
            EXPECT_EQ(keys[static_cast<int>(bins[0][j])], bins[1][j]);
            int bin = number - 1;
            while (limits[size_t(bin)] > bins[1][j]) {
                --bin;
            }
            EXPECT_EQ(bins[4][j], static_cast<float>(bin)) << number << " " << j;
            EXPECT_NEAR(centres[bin], 0.5f * (limits[size_t(bin)] + limits[size_t(bin) + 1]),
                        1e-3f);
        }
    }
}

TEST(AveragingProcess, UserLimitsReplaceTheBinsOfWhichThoseBelowTwoLeavesAreNamed)
{
    Averages leaves({150.0, 200.0, 250.0, 300.0});
    AveragingProcess process;
    leaves.prepare(process, 10);
    const Vector<float> keys = process.getMeasurement()[0];
    std::ostringstream limits;
    limits << std::setprecision(9) << keys[0] << "\n\n" << keys[1] << "\n" << keys[3] << "\r\n";
    process.setInputFileName(leaves.folder.write("limits.txt", limits.str()));
    const auto stack = leaves.trajectory(process);
    EXPECT_EQ(process.getAveragesNumber(), 2);
    ASSERT_EQ(leaves.texts.size(), 2u);
    EXPECT_EQ(leaves.texts[0], "Bins with fewer than two leaves, left out: 0");
    ASSERT_EQ(stack->getNumSlices(), 1);
    EXPECT_EQ(stack->getSlice(0).getName(), "sample-trajectory-ho-1") << "it keeps its number";
    EXPECT_FALSE(std::filesystem::exists(leaves.folder.file("sample-trajectory-ho-0.cv")));
    const Matrix<float> bins = process.buildHomogeneousMeasurementMatrix();
    EXPECT_EQ(bins[0].toStlVector(), (std::vector<float>{0, 1, 2})) << "below the upper limit";
    EXPECT_EQ(bins[4].toStlVector(), (std::vector<float>{0, 1, 1}));
}

TEST(AveragingProcess, BinRunWritesCurvesImagesAndAStack)
{
    Averages leaves(24);
    AveragingProcess process;
    leaves.prepare(process, 10);
    const auto stack = leaves.trajectory(process);
    EXPECT_EQ(leaves.texts, (std::vector<std::string>{"Averaging is complete"}));
    EXPECT_EQ(leaves.folder.fileCount(), 31);
    ASSERT_EQ(stack->getNumSlices(), 10);
    EXPECT_EQ(stack->getName(), "sample-trajectory");
    EXPECT_EQ(stack->getLengthUnit().getScale(), -6);
    for (int i = 0; i < 10; ++i) {
        const StackSlice& slice = stack->getSlice(i);
        const std::string name = "sample-trajectory-ho-0" + std::to_string(i);
        EXPECT_EQ(slice.getName(), name);
        EXPECT_TRUE(slice.width() == 1000 && slice.height() == 1000);
        EXPECT_EQ(Image2(leaves.folder.file(name + ".tif")).asVector<unsigned char>().max(), 0);

        const Curve<float> average = leaves.curve(name + ".cv");
        const Curve<float> sampled = leaves.curve(name + "-sampled.cv");
        ASSERT_EQ(average.getSize(), 400);
        EXPECT_TRUE(average.isOpen());
        const float f = slice.getPixelCalibration().getPixelWidth();
        float widest = 0.0f;
        for (int k = 0; k < 400; ++k) {
            EXPECT_NEAR(sampled[k][0] * f, average[k][0], 1e-2f);
            EXPECT_EQ(average[k][2], 0.0f);
            EXPECT_NEAR(average[k][0], average[399 - k][0], 1e-2f) << "symmetric";
            EXPECT_NEAR(average[k][1], -average[399 - k][1], 1e-2f) << "symmetric";
            widest = std::max(widest, sampled[k][0]);
        }
        EXPECT_NEAR(widest, 800.0f, 1.0f);
        ASSERT_EQ(leaf::vertices(*stack, "Contour", i).size(), 400u);
        EXPECT_GT(leaf::area(*leaf::findItem(*stack, "Contour", i)), 0.0);
        EXPECT_EQ(leaf::vertices(*stack, "Petiole", i).size(), 2u);
        EXPECT_TRUE(leaf::samePlaces(leaf::vertices(*stack, "Apex", i), {{900.0, 500.0}}, 2.0));
    }
}

TEST(AveragingProcess, LandmarksOfAveragesLieOnTheCornersOfTheirCurve)
{
    Averages leaves(9);
    AveragingProcess process;
    leaves.prepare(process, 2);
    process.setVenationType(PALMATE);
    const auto stack = leaves.trajectory(process);
    const auto height = [](leaf::Point p) { return std::fabs(p.y - 500.0); };
    for (int i = 0; i < 2; ++i) {
        const auto sinuses = leaf::vertices(*stack, "Primary Sinus", i);
        const auto tips = leaf::vertices(*stack, "Primary Peak", i);
        ASSERT_EQ(sinuses.size(), size_t(2 * teethPerSide + 2));
        ASSERT_EQ(tips.size(), size_t(2 * teethPerSide + 1)) << "with the apex of a palmate leaf";
        for (std::size_t k = 0; k + 1 < tips.size(); ++k) {
            const std::size_t s = k < teethPerSide ? k : k + 1;
            const double chord = std::max(height(sinuses[s]), height(sinuses[s + 1]));
            EXPECT_GT(height(tips[k]), std::min(height(sinuses[s]), height(sinuses[s + 1])));
            // The outermost vertex between two sinuses is the tip.
            double outermost = chord;
            const double low = std::min(sinuses[s].x, sinuses[s + 1].x) + 40.0;
            const double high = std::max(sinuses[s].x, sinuses[s + 1].x) - 40.0;
            for (const leaf::Point& p : leaf::vertices(*stack, "Contour", i)) {
                if ((p.y > 500.0) == (tips[k].y > 500.0) && p.x > low && p.x < high) {
                    outermost = std::max(outermost, height(p));
                }
            }
            EXPECT_NEAR(std::max(height(tips[k]), chord), outermost, 8.0) << i << " " << k;
        }
    }
}

TEST(AveragingProcess, LowTeethLoseTheirLandmarksAndNoneAreThereWithoutTheFlags)
{
    Averages leaves(6);
    for (const auto& [sinuses, peaks] : {std::pair(true, true), {true, false}, {false, true}}) {
        AveragingProcess process;
        leaves.prepare(process, 1);
        process.sinusIsEnabled(sinuses);
        process.peakIsEnabled(peaks);
        process.setMinimaToothHeight(1e6f);
        const auto stack = leaves.trajectory(process);
        EXPECT_EQ(stack->findModel("Primary Sinus") >= 0, sinuses);
        EXPECT_EQ(stack->findModel("Primary Peak") >= 0, sinuses && peaks);
        EXPECT_TRUE(leaf::vertices(*stack, "Primary Sinus", 0).empty());
        EXPECT_TRUE(leaf::vertices(*stack, "Primary Peak", 0).empty());
        EXPECT_EQ(leaf::vertices(*stack, "Contour", 0).size(), 400u);
    }
}

TEST(AveragingProcess, LeavesWithoutAgeTakePartInNoAverage)
{
    Averages leaves({150.0, 170.0, 190.0, 210.0, 230.0, 600.0});
    for (bool bins : {true, false}) {
        leaves.texts.clear();
        AveragingProcess process;
        leaves.prepare(process, 2, true);
        EXPECT_FALSE(std::isfinite(process.getMeasurement()[1][5]));
        const auto stack = leaves.trajectory(process, bins);
        EXPECT_EQ(stack->getNumSlices(), 2);
        EXPECT_EQ(process.buildMeasurementMatrix().getSize2(), 5);
        ASSERT_EQ(leaves.texts.size(), 2u);
        EXPECT_EQ(leaves.texts[0], "Leaves without a finite age, left out: leaf5");
    }
}

TEST(AveragingProcess, SlidingRunWritesAveragesRanksAndBandwidths)
{
    Averages leaves(20);
    AveragingProcess process;
    leaves.prepare(process, 4);
    process.setAlignment(AxisAlignment::SignedSine);
    process.setkOptima(process.computeOptimaKnn());
    auto stack = leaves.trajectory(process, false);
    EXPECT_EQ(leaves.folder.fileCount(), 3 * 4 + 1 + 2);
    const DataSet optima(leaves.folder.file("optima.csv"));
    const DataSet bandwidths(leaves.folder.file("bandwidths.csv"));
    EXPECT_EQ(bandwidths.variableNames(),
              (std::vector<std::string>{"timePoint", "optima", "bandwidth"}));
    EXPECT_EQ(bandwidths.getValues<int>("optima"), optima.getValues<int>("optima"));
    ASSERT_EQ(stack->getNumSlices(), 4);
    float former = 0.0f;
    for (int i = 0; i < 4; ++i) {
        const float target = bandwidths.getValues<float>("timePoint")[i];
        const std::string& name = stack->getSlice(i).getName();
        EXPECT_EQ(name, "sample-trajectory-sa-" + keyLabel(target, micro));
        const float length = leaves.curve(name + ".cv")[199][0];
        // The weights bend towards the crowd, but the averages grow with their targets.
        EXPECT_NEAR(length, target, 0.15f * target);
        EXPECT_GT(length, former);
        former = length;
    }
    // Targets of a user's own ask for one average each.
    AveragingProcess own;
    leaves.prepare(own, 100);
    own.setkOptimaFile(leaves.folder.write("targets.txt", "400.54\n500\n400.51\n400.59\n"));
    stack = leaves.trajectory(own, false);
    ASSERT_EQ(stack->getNumSlices(), 4);
    const std::string labels[] = {"400" + micro + "5", "500" + micro + "0", "400" + micro + "5-2",
                                  "400" + micro + "5-3"};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(stack->getSlice(i).getName(), "sample-trajectory-sa-" + labels[i]);
    }
    EXPECT_EQ(DataSet(leaves.folder.file("optima.csv")).numRows(), 4);
}

TEST(AveragingProcess, BadInputRaisesAMessageAndWritesNothing)
{
    Averages leaves(6);
    const auto expectRefused = [&](const char* what, auto change) {
        AveragingProcess process;
        leaves.prepare(process, 2);
        change(process);
        EXPECT_THROW(process.runHomogeousAveragingMethod(), ValueError) << what;
        EXPECT_THROW(process.runSlidingAveragingMethod(), ValueError) << what;
        EXPECT_EQ(leaves.folder.fileCount(), 0) << what;
        EXPECT_TRUE(leaves.texts.empty()) << what;
    };
    expectRefused("begin above end", [](auto& p) { p.setBegin(p.getEnd() + 1.0f); });
    expectRefused("no number", [](auto& p) { p.setEnd(std::nanf("")); });
    expectRefused("no averages", [](auto& p) { p.setAveragesNumber(0); });
    for (const char* name : {"a/b", "a \"b\""}) {
        leaves.stack->setName(name);
        expectRefused(name, [](auto&) {});
    }
    Averages two({150.0, 300.0});
    AveragingProcess single;
    two.prepare(single, 2);
    EXPECT_THROW(single.runHomogeousAveragingMethod(), ValueError) << "each leaf is alone";
    single.setBegin(single.getEnd() + 1.0f);
    single.setEnd(single.getEnd() + 2.0f);
    EXPECT_THROW(single.runHomogeousAveragingMethod(), ValueError) << "no leaf in the range";
    EXPECT_EQ(two.folder.fileCount(), 0);

    // Leaves of one length are a closed range of no width, and no neighbours follow from it.
    Averages equal(3);
    AveragingProcess closed;
    equal.prepare(closed, 2);
    Matrix<float> lengths(2, 3);
    lengths.fill(400.0f);
    closed.setMeasurement(lengths);
    closed.setBegin(400.0f);
    closed.setEnd(400.0f);
    EXPECT_THROW(closed.runSlidingAveragingMethod(), ValueError);
    EXPECT_EQ(equal.trajectory(closed)->getNumSlices(), 1);

    leaves.stack->setName("b\xC3\xA9 ta; 'x'");
    AveragingProcess process;
    leaves.prepare(process, 2);
    const std::string folder = leaves.folder.file("a b/c; 'd'/\xC3\xA9/");
    process.setOutPath(folder);
    process.runHomogeousAveragingMethod();
    EXPECT_TRUE(std::filesystem::exists(folder + "b\xC3\xA9 ta; 'x'-trajectory.sdf"));
    process.setOutPath(leaves.folder.write("file", "") + "/below/");
    EXPECT_THROW(process.runHomogeousAveragingMethod(), FileWriteError);
    delete leaf::findItem(*leaves.stack, "Apex", 3);
    Matrix<float> measures;
    EXPECT_THROW(process.initializationMeasure(measures), Exception);
}

TEST(AverageSeries, LabelsAreCutBehindTheSign)
{
    EXPECT_EQ(keyLabel(12.5f, "h"), "12h50");
    EXPECT_EQ(keyLabel(123.456f, micro), "123" + micro + "4");
    EXPECT_EQ(numberLabels(10).front() + numberLabels(10).back(), "0009");
    EXPECT_EQ(numberLabels(9).back(), "8");
}

TEST(AverageValues, FilesOfAUsersOwnAreReadOrRefusedWithTheirLine)
{
    const TemporaryFolder folder;
    const std::string good = folder.write("good", "\n 200\t\r\n5e2\n\n1000.5");
    EXPECT_EQ(readBinLimits(good).toStlVector(), (std::vector<float>{200.0f, 500.0f, 1000.5f}));
    const std::string falling = folder.write("falling", "3\n1\n1\n");
    EXPECT_EQ(readAverageTargets(falling).toStlVector(), (std::vector<float>{3, 1, 1}));
    EXPECT_THROW(readBinLimits(folder.file("missing")), FileReadError);
    EXPECT_THROW(readBinLimits(folder.path().string()), FileReadError);
    const std::map<std::string, std::string> bad = {{"", "Line 0: "},
                                                    {"200\n", "Line 1: "},
                                                    {"200\nx\n", "Line 2: 'x' "},
                                                    {"1 2\n3\n", "Line 1: '1 2' "},
                                                    {"1\n\n1\n", "Line 3: '1' "},
                                                    {"1\n2,5\n", "Line 2: '2,5' "},
                                                    {"1\ninf\n", "Line 2: 'inf' "},
                                                    {"nan\n2\n", "Line 1: 'nan' "}};
    for (const auto& [text, begin] : bad) {
        const std::string file = folder.write("bad", text);
        try {
            readBinLimits(file);
            ADD_FAILURE() << "read: " << text;
        } catch (const FileFormatError& error) {
            EXPECT_EQ(error.getFilename(), file);
            EXPECT_EQ(error.getWhat().substr(0, begin.size()), begin) << error.getWhat();
        }
    }
}
