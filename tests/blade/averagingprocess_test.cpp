#include "blade/averageseries.h"
#include "blade/averagevalues.h"
#include "blade/averagingprocess.h"
#include "blade/blademessages.h"
#include "image/image2.h"
#include "stack/stackreader.h"
#include "support/errors.h"
#include "support/leaf.h"
#include "support/temporaryfolder.h"
#include "system/dataset.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <iomanip>
#include <limits>
#include <map>
#include <sstream>

namespace {

constexpr float pixelWidth = 2.0f;
constexpr int teethPerSide = 3;

/// Leaves of the given blade lengths in pixels, alike in shape, with all landmarks, turned a bit.
struct Averages
{
    explicit Averages(const std::vector<double>& lengths)
    {
        std::vector<leaf::Outline> outlines;
        for (std::size_t k = 0; k < lengths.size(); ++k) {
            leaf::Shape shape;
            shape.length = lengths[k];
            shape.width = lengths[k] * 0.45;
            shape.toothHeight = lengths[k] * 0.06;
            shape.petioleLength = 40.0;
            shape.teethPerSide = teethPerSide;
            shape.angleDegrees = 90.0 + 8.0 * static_cast<double>(k % 5);
            outlines.push_back(leaf::draw(shape));
        }
        stack = leaf::stackOf(outlines);
        stack->setName("sample");
        for (std::size_t k = 0; k < lengths.size(); ++k) {
            const int slice = static_cast<int>(k);
            PixelCalibration calibration;
            calibration.setPixelWidth(pixelWidth);
            stack->getSlice(slice).setPixelCalibration(calibration);
            leaf::addItem(*stack, "Apex", PRIMITIVE_POLYPOINT, slice, {outlines[k].apex});
            leaf::addItem(*stack, "Primary Sinus", PRIMITIVE_POLYPOINT, slice, outlines[k].sinuses);
            leaf::addItem(*stack, "Primary Peak", PRIMITIVE_POLYPOINT, slice, outlines[k].tips);
        }
        former = BladeMessages::setHandler(
            [this](const std::string& text) { messages.push_back(text); });
    }

    ~Averages() { BladeMessages::setHandler(former); }

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

    std::map<std::string, std::string> files() const
    {
        std::map<std::string, std::string> bytes;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
            const std::string name = entry.path().filename().string();
            bytes[name] = folder.read(name);
        }
        return bytes;
    }

    std::unique_ptr<LMXStack> trajectory() const
    {
        auto result = std::make_unique<LMXStack>();
        StackReader reader;
        EXPECT_TRUE(reader.read(*result, folder.file("sample-trajectory.sdf")));
        return result;
    }

    Curve<float> curve(const std::string& name) const { return Curve<float>(folder.file(name)); }

    TemporaryFolder folder;
    std::unique_ptr<LMXStack> stack;
    std::vector<std::string> messages;
    BladeMessages::Handler former;
};

std::vector<double> lengthsOf(int number)
{
    std::vector<double> lengths;
    for (int k = 0; k < number; ++k) {
        lengths.push_back(150.0 + (k * 37) % number * 12.0);
    }
    return lengths;
}

} // namespace

TEST(AveragingProcess, BinsHoldTheLeavesBetweenNearestRankLimits)
{
    Averages leaves(lengthsOf(23));
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

TEST(AveragingProcess, UserLimitsReplaceTheBinsAndLeaveTheUpperOneOut)
{
    Averages leaves({150.0, 200.0, 250.0, 300.0});
    AveragingProcess process;
    leaves.prepare(process, 10);
    const Vector<float> keys = process.getMeasurement()[0];
    std::ostringstream limits;
    limits << std::setprecision(9);
    limits << keys[0] << "\n\n" << keys[1] << "\n" << keys[3] << "\r\n";
    process.setInputFileName(leaves.folder.write("limits.txt", limits.str()));
    process.runHomogeousAveragingMethod();
    EXPECT_EQ(process.getAveragesNumber(), 2);
    EXPECT_EQ(leaves.trajectory()->getNumSlices(), 1) << "leaf 0 is alone";
    const Matrix<float> bins = process.buildHomogeneousMeasurementMatrix();
    EXPECT_EQ(bins[0].toStlVector(), (std::vector<float>{0, 1, 2}));
    EXPECT_EQ(bins[4].toStlVector(), (std::vector<float>{0, 1, 1}));
}

TEST(AveragingProcess, BinRunWritesCurvesImagesAndAStack)
{
    Averages leaves(lengthsOf(24));
    AveragingProcess process;
    leaves.prepare(process, 10);
    process.runHomogeousAveragingMethod();
    EXPECT_EQ(leaves.messages, (std::vector<std::string>{"Averaging is complete"}));
    EXPECT_EQ(leaves.folder.fileCount(), 31);

    const auto stack = leaves.trajectory();
    ASSERT_EQ(stack->getNumSlices(), 10);
    EXPECT_EQ(stack->getName(), "sample-trajectory");
    EXPECT_EQ(stack->getLengthUnit().getScale(), -6);
    for (int i = 0; i < 10; ++i) {
        const StackSlice& slice = stack->getSlice(i);
        const std::string name = "sample-trajectory-ho-0" + std::to_string(i);
        EXPECT_EQ(slice.getName(), name);
        EXPECT_EQ(slice.width(), 1000);
        EXPECT_EQ(slice.height(), 1000);
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
        const auto outline = leaf::vertices(*stack, "Contour", i);
        ASSERT_EQ(outline.size(), 400u);
        EXPECT_GT(leaf::area(*leaf::findItem(*stack, "Contour", i)), 0.0);
        EXPECT_EQ(leaf::vertices(*stack, "Petiole", i).size(), 2u);
        const auto apex = leaf::vertices(*stack, "Apex", i);
        ASSERT_EQ(apex.size(), 1u);
        EXPECT_NEAR(apex[0].x, 900.0, 1.5);
        EXPECT_NEAR(apex[0].y, 500.0, 1.5);
    }
}

TEST(AveragingProcess, LandmarksOfAveragesLieOnTheCornersOfTheirCurve)
{
    Averages leaves(lengthsOf(9));
    AveragingProcess process;
    leaves.prepare(process, 2);
    process.setVenationType(PALMATE);
    process.runHomogeousAveragingMethod();
    const auto stack = leaves.trajectory();
    for (int i = 0; i < 2; ++i) {
        const auto sinuses = leaf::vertices(*stack, "Primary Sinus", i);
        auto tips = leaf::vertices(*stack, "Primary Peak", i);
        ASSERT_EQ(sinuses.size(), size_t(2 * teethPerSide + 2));
        ASSERT_EQ(tips.size(), size_t(2 * teethPerSide + 1)) << "with the apex of a palmate leaf";
        tips.pop_back();
        const auto height = [](leaf::Point p) { return std::fabs(p.y - 500.0); };
        for (std::size_t k = 0; k < tips.size(); ++k) {
            const std::size_t s = k < teethPerSide ? k : k + 1;
            const double chord = std::max(height(sinuses[s]), height(sinuses[s + 1]));
            EXPECT_GT(height(tips[k]), std::min(height(sinuses[s]), height(sinuses[s + 1])));
            // The outermost vertex between two sinuses is the tip.
            double outermost = chord;
            const double low = std::min(sinuses[s].x, sinuses[s + 1].x);
            const double high = std::max(sinuses[s].x, sinuses[s + 1].x);
            for (const leaf::Point& p : leaf::vertices(*stack, "Contour", i)) {
                const bool sameSide = (p.y > 500.0) == (tips[k].y > 500.0);
                if (sameSide && p.x > low + 40.0 && p.x < high - 40.0) {
                    outermost = std::max(outermost, height(p));
                }
            }
            EXPECT_NEAR(std::max(height(tips[k]), chord), outermost, 8.0) << i << " " << k;
        }
    }
}

TEST(AveragingProcess, LowTeethLoseTheirLandmarksAndNoneAreThereWithoutTheFlags)
{
    Averages leaves(lengthsOf(6));
    for (const auto& [sinuses, peaks] : {std::pair(true, true), {true, false}, {false, true}}) {
        AveragingProcess process;
        leaves.prepare(process, 1);
        process.sinusIsEnabled(sinuses);
        process.peakIsEnabled(peaks);
        process.setMinimaToothHeight(1e6f);
        process.runHomogeousAveragingMethod();
        const auto stack = leaves.trajectory();
        EXPECT_EQ(stack->findModel("Primary Sinus") >= 0, sinuses);
        EXPECT_EQ(stack->findModel("Primary Peak") >= 0, sinuses && peaks);
        EXPECT_TRUE(leaf::vertices(*stack, "Primary Sinus", 0).empty());
        EXPECT_TRUE(leaf::vertices(*stack, "Primary Peak", 0).empty());
        EXPECT_EQ(leaf::vertices(*stack, "Contour", 0).size(), 400u);
    }
}

TEST(AveragingProcess, BinsOfFewerThanTwoLeavesAreNamedAndKeepTheirNumbers)
{
    Averages leaves({150.0, 152.0, 250.0, 300.0, 302.0});
    AveragingProcess process;
    leaves.prepare(process, 3);
    process.setInputFileName(leaves.folder.write("limits.txt", "0\n400\n550\n1000\n"));
    process.runHomogeousAveragingMethod();
    ASSERT_EQ(leaves.messages.size(), 2u);
    EXPECT_EQ(leaves.messages[0], "Bins with fewer than two leaves, left out: 1");
    const auto stack = leaves.trajectory();
    ASSERT_EQ(stack->getNumSlices(), 2);
    EXPECT_EQ(stack->getSlice(1).getName(), "sample-trajectory-ho-2");
    EXPECT_EQ(leaf::vertices(*stack, "Contour", 1).size(), 400u);
    EXPECT_FALSE(std::filesystem::exists(leaves.folder.file("sample-trajectory-ho-1.cv")));
}

TEST(AveragingProcess, RunWithoutAnyAverageWritesNothing)
{
    Averages leaves({150.0, 300.0});
    AveragingProcess process;
    leaves.prepare(process, 2);
    EXPECT_THROW(process.runHomogeousAveragingMethod(), ValueError);
    process.setBegin(process.getEnd() + 1.0f);
    process.setEnd(process.getEnd() + 2.0f);
    EXPECT_THROW(process.runHomogeousAveragingMethod(), ValueError) << "no leaf in the range";
    EXPECT_EQ(leaves.folder.fileCount(), 0);
    EXPECT_TRUE(leaves.messages.empty());
}

TEST(AveragingProcess, LeavesWithoutAgeTakePartInNoAverage)
{
    Averages leaves({150.0, 170.0, 190.0, 210.0, 230.0, 600.0});
    for (bool bins : {true, false}) {
        leaves.messages.clear();
        AveragingProcess process;
        leaves.prepare(process, 2, true);
        EXPECT_FALSE(std::isfinite(process.getMeasurement()[1][5]));
        if (bins) {
            process.runHomogeousAveragingMethod();
        } else {
            process.runSlidingAveragingMethod();
            EXPECT_EQ(process.buildMeasurementMatrix().getSize2(), 5);
        }
        ASSERT_EQ(leaves.messages.size(), 2u);
        EXPECT_EQ(leaves.messages[0], "Leaves without a finite age, left out: leaf5");
        const auto stack = leaves.trajectory();
        ASSERT_EQ(stack->getNumSlices(), 2);
        EXPECT_NE(stack->getSlice(0).getName().find('h'), std::string::npos);
    }
}

TEST(AveragingProcess, SlidingRunWritesAveragesRanksAndBandwidths)
{
    Averages leaves(lengthsOf(20));
    AveragingProcess process;
    leaves.prepare(process, 4);
    process.setAlignment(AxisAlignment::SignedSine);
    process.setkOptima(process.computeOptimaKnn());
    process.runSlidingAveragingMethod();
    EXPECT_EQ(leaves.folder.fileCount(), 3 * 4 + 1 + 2);
    const DataSet optima(leaves.folder.file("optima.csv"));
    const DataSet bandwidths(leaves.folder.file("bandwidths.csv"));
    EXPECT_EQ(bandwidths.variableNames(),
              (std::vector<std::string>{"timePoint", "optima", "bandwidth"}));
    EXPECT_EQ(bandwidths.getValues<int>("optima"), optima.getValues<int>("optima"));
    const auto stack = leaves.trajectory();
    ASSERT_EQ(stack->getNumSlices(), 4);
    float former = 0.0f;
    for (int i = 0; i < 4; ++i) {
        const float target = bandwidths.getValues<float>("timePoint")[i];
        const std::string& name = stack->getSlice(i).getName();
        EXPECT_EQ(name, "sample-trajectory-sa-" + keyLabel(target, "\xC2\xB5"));
        const Curve<float> average = leaves.curve(name + ".cv");
        // The weights bend towards the crowd, but the averages grow with their targets.
        EXPECT_NEAR(average[199][0], target, 0.15f * target);
        EXPECT_GT(average[199][0], former);
        former = average[199][0];
    }
}

TEST(AveragingProcess, UserTargetsAskForOneSlidingAverageEach)
{
    Averages leaves(lengthsOf(12));
    AveragingProcess process;
    leaves.prepare(process, 100);
    process.setkOptimaFile(leaves.folder.write("targets.txt", "400.54\n500\n400.51\n400.59\n"));
    process.runSlidingAveragingMethod();
    const auto stack = leaves.trajectory();
    std::vector<std::string> names;
    for (int i = 0; i < stack->getNumSlices(); ++i) {
        names.push_back(stack->getSlice(i).getName());
    }
    const std::string prefix = "sample-trajectory-sa-";
    EXPECT_EQ(names, (std::vector<std::string>{prefix + "400\xC2\xB5"
                                                        "5",
                                               prefix + "500\xC2\xB5"
                                                        "0",
                                               prefix + "400\xC2\xB5"
                                                        "5-2",
                                               prefix + "400\xC2\xB5"
                                                        "5-3"}));
    EXPECT_EQ(DataSet(leaves.folder.file("optima.csv")).numRows(), 4);
}

TEST(AveragingProcess, RunRepeatedGivesTheSameBytes)
{
    Averages leaves(lengthsOf(10));
    std::map<std::string, std::string> first;
    for (int round = 0; round < 2; ++round) {
        AveragingProcess bins;
        leaves.prepare(bins, 3);
        bins.runHomogeousAveragingMethod();
        const std::string stackFile = leaves.folder.read("sample-trajectory.sdf");
        AveragingProcess sliding;
        leaves.prepare(sliding, 3);
        sliding.runSlidingAveragingMethod();
        auto files = leaves.files();
        files["bins"] = stackFile;
        if (round == 0) {
            first = files;
        }
        EXPECT_EQ(files, first);
    }
}

TEST(AveragingProcess, BadInputRaisesAMessageAndWritesNothing)
{
    Averages leaves(lengthsOf(6));
    const auto expectRefused = [&](const char* what, auto change) {
        AveragingProcess process;
        leaves.prepare(process, 2);
        change(process);
        EXPECT_THROW(process.runHomogeousAveragingMethod(), ValueError) << what;
        EXPECT_THROW(process.runSlidingAveragingMethod(), ValueError) << what;
        EXPECT_EQ(leaves.folder.fileCount(), 0) << what;
    };
    expectRefused("begin at end", [](auto& p) { p.setBegin(p.getEnd()); });
    expectRefused("begin above end", [](auto& p) { p.setBegin(p.getEnd() + 1.0f); });
    expectRefused("no number", [](auto& p) { p.setEnd(std::nanf("")); });
    expectRefused("no averages", [](auto& p) { p.setAveragesNumber(0); });
    leaves.stack->setName("a/b");
    expectRefused("slash", [](auto&) {});
    leaves.stack->setName("a \"b\"");
    expectRefused("double quote", [](auto&) {});

    leaves.stack->setName("b\xC3\xA9 ta; 'x'");
    AveragingProcess process;
    leaves.prepare(process, 2);
    const std::string folder = leaves.folder.file("a b/c; 'd'/\xC3\xA9/");
    process.setOutPath(folder);
    process.runHomogeousAveragingMethod();
    EXPECT_TRUE(std::filesystem::exists(folder + "b\xC3\xA9 ta; 'x'-trajectory.sdf"));

    const std::string file = leaves.folder.write("file", "");
    process.setOutPath(file + "/below/");
    EXPECT_THROW(process.runHomogeousAveragingMethod(), FileWriteError);
    delete leaf::findItem(*leaves.stack, "Apex", 3);
    Matrix<float> measures;
    EXPECT_THROW(process.initializationMeasure(measures), Exception);
}

TEST(AverageSeries, LabelsAreCutBehindTheSign)
{
    EXPECT_EQ(keyLabel(12.5f, "h"), "12h50");
    EXPECT_EQ(keyLabel(123.456f, "\xC2\xB5"), "123\xC2\xB5"
                                              "4");
    EXPECT_EQ(numberLabels(10), (std::vector<std::string>{"00", "01", "02", "03", "04", "05", "06",
                                                          "07", "08", "09"}));
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
