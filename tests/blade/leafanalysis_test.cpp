#include "blade/measures/leafanalysis.h"
#include "support/stages.h"
#include "support/temporaryfolder.h"
#include "support/vectors.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

using leaf::Point;

namespace {

/// Measures leaves on which sinuses and tips were found.
class Measures : public LeafAnalysis
{
public:
    Measures(const std::vector<leaf::Outline>& outlines, VenationType veins, float pixelWidth)
        : owned_(leaf::stackOf(outlines))
    {
        for (int i = 0; i < owned_->getNumSlices(); ++i) {
            leaf::setPixelWidth(*owned_, i, pixelWidth);
        }
        leaf::findSinuses(*owned_);
        leaf::findTips(*owned_, veins);
        setStack(*owned_);
        setVenationType(veins);
        setStrength(3.0f);
        setInflection(12.0f);
        setScaling(20000.0f);
    }

    void processAll()
    {
        for (int i = 0; i < stack->getNumSlices(); ++i) {
            process(i);
        }
    }

    float leafValue(const std::string& column) const
    {
        return getLeafTable().getValues<float>(column)[0];
    }

    int tips(int row) const { return getLeafTable().getValues<int>("Total_Peak_Number")[row]; }

    float tooth(const std::string& column, int row) const
    {
        return getPeakTable().getValues<float>(column)[row];
    }

    std::string side(int row) const { return getPeakTable().getValues<std::string>("Side")[row]; }

    using LeafAnalysis::stack;

private:
    std::unique_ptr<LMXStack> owned_;
};

leaf::Outline leafOf(int teethPerSide)
{
    return leaf::draw(teethPerSide, 40.0);
}

} // namespace

TEST(LeafAnalysis, TheLeafTableAgreesWithTheDrawing)
{
    const float w = 25.0f;
    const leaf::Outline outline = leafOf(4);
    Measures measures({outline}, PINNATE, w);
    measures.processAll();
    const double area = measures.leafValue("Blade_Area");
    const double length = measures.leafValue("Blade_Length");
    const double perimeter = measures.leafValue("Blade_Perimeter");
    EXPECT_NEAR(area / ((outline.area - 120.0 * 14.0) * w * w), 1.0, 0.01);
    EXPECT_NEAR(length / (600.0 * w), 1.0, 0.01);
    EXPECT_NEAR(measures.leafValue("Petiole_Width") / (14.0 * w), 1.0, 0.15);
    EXPECT_GT(measures.leafValue("HullArea"), area);
    EXPECT_LT(measures.leafValue("HullPerimeter"), perimeter);
    EXPECT_NEAR(measures.leafValue("LeafDI"), perimeter * perimeter / (4 * M_PI * area), 1e-4);
    const double days = measures.leafValue("Age(day)");
    EXPECT_NEAR(days, 12.0 * std::pow(length / (20000.0 - length), 1.0 / 3.0), 1e-3);
    EXPECT_FLOAT_EQ(measures.leafValue("Age(hours)"), 24.0f * float(days));
    // Across the axis the widest points of both halves are tips, the deepest ones sinuses.
    EXPECT_GT(measures.leafValue("Blade_Width(BB)"), measures.leafValue("Blade_Width(IS)"));
    EXPECT_EQ(measures.tips(0), 8);
}

TEST(LeafAnalysis, EachToothAgreesWithItsDrawing)
{
    const float w = 2.0f;
    const leaf::Outline outline = leafOf(4);
    Measures measures({outline}, PINNATE, w);
    measures.processAll();
    ASSERT_EQ(measures.getPeakTable().numRows(), 8);
    for (int row = 0; row < 8; ++row) {
        SCOPED_TRACE(row);
        const bool upper = row < 4;
        const int position = upper ? row + 1 : row - 3;
        const auto value = [&](const char* column) { return measures.tooth(column, row); };
        EXPECT_EQ(measures.side(row), upper ? "upper" : "lower");
        EXPECT_EQ(value("Tooth_Position"), static_cast<float>(position));
        const double length = value("Blade_Length");
        const double days = 12.0 * std::pow(length / (20000.0 - length), 1.0 / 3.0);
        EXPECT_NEAR(value("Age(hours)"), 24.0 * days, 24e-4);
        // Rows count from the apex; the drawing's teeth run along the outline.
        const std::size_t tooth = static_cast<std::size_t>(upper ? 4 - position : 3 + position);
        const std::size_t sinus = upper ? tooth : tooth + 1;
        const Point s0 = outline.sinuses[sinus];
        const Point s1 = outline.sinuses[sinus + 1];
        const Point tip = outline.tips[tooth];
        const double width = leaf::distance(s0, s1);
        const double area = std::fabs(leaf::polygonArea({s0, s1, tip}));
        const Point middle = {(s0.x + s1.x) / 2, (s0.y + s1.y) / 2};
        const double asymmetry = leaf::distance(s0, tip) / leaf::distance(tip, s1);
        EXPECT_NEAR(value("Tooth_Width") / w, width, 5.0);
        EXPECT_NEAR(value("Tooth_Height (altitude)") / w, 2.0 * area / width, 3.5);
        EXPECT_NEAR(value("Tooth_Height (median)") / w, leaf::distance(middle, tip), 4.0);
        EXPECT_NEAR(value("Tooth_Area") / (w * w * area), 1.0, 0.25);
        EXPECT_NEAR(value("Tooth_Asymmetry"), asymmetry, 0.35 * asymmetry);
        EXPECT_NEAR(value("Tooth_Position_From_The_Tip"), 15.0 + 17.5 * (position - 1), 1.5);
        EXPECT_NEAR(value("Tooth_Position_From_The_Base"),
                    100.0 - value("Tooth_Position_From_The_Tip"), 1e-4);
    }
}

TEST(LeafAnalysis, SkewnessAndAsymmetryFollowTheirDefinitions)
{
    // A slanted tooth on a horizontal chord: up to (30, 40), down to (90, 0).
    Curve<float> chain(2, 3, 0, 0, true);
    chain[0] = vectorOf<float>({0, 0});
    chain[1] = vectorOf<float>({30, 40});
    chain[2] = vectorOf<float>({90, 0});
    const LeafAnalysis process;
    const double flank = 50.0;
    const double other = std::hypot(60.0, 40.0);
    std::vector<double> places;
    double mean = 0.0;
    double square = 0.0;
    for (int i = 0; i < 100; ++i) {
        const double s = (flank + other) * i / 100.0;
        places.push_back((s < flank ? s / flank * 30.0 : 30.0 + (s - flank) / other * 60.0) / 90.0);
        mean += places.back() / 100.0;
        square += places.back() * places.back() / 100.0;
    }
    const double median = (places[49] + places[50]) / 2.0;
    EXPECT_NEAR(process.comptuteSkewness(chain),
                3.0 * (mean - median) / std::sqrt(square - mean * mean), 1e-4);
    EXPECT_TRUE(std::isnan(process.comptuteAsymmetry(chain, 10, 12, 13)));
    EXPECT_NEAR(process.comptuteAsymmetry(chain, 10, 12, 11), flank / other, 1e-6);
    EXPECT_NEAR(process.computeReversedCircularity(2.0f * float(M_PI), float(M_PI)), 1.0, 1e-6);
}

TEST(LeafAnalysis, ColumnsFollowTheVenationAndTheFirstLeaf)
{
    const std::string toCounts =
        "Slice_Name\tCalibration\tBlade_Length\tAge(day)\tAge(hours)\tBlade_Width(BB)\tBlade_Area\t"
        "Blade_Perimeter\tHullPerimeter\tHullArea\tPetiole_Width\tLeafDI\taHullDI\tDI\t"
        "Upper_Peak_Number\tLower_Peak_Number\t";
    for (const VenationType venation : {PINNATE, PALMATE}) {
        for (const int teeth : {4, 0}) {
            const int terminal = venation == PALMATE ? 1 : 0;
            const std::string width = "Blade_Width(IS)";
            const std::string counts =
                std::string(terminal ? "Terminal_Peak_Number\t" : "") + "Total_Peak_Number";
            Measures measures({leafOf(teeth), leafOf(3)}, venation, 1.0f);
            measures.processAll();
            std::ostringstream text;
            text << measures.getLeafTable();
            EXPECT_EQ(text.str().substr(0, text.str().find('\n')),
                      toCounts + (teeth > 0 ? width + "\t" + counts : counts + "\t" + width));
            EXPECT_EQ(measures.tips(0), teeth > 0 ? 8 + terminal : 0);
            EXPECT_EQ(measures.tips(1), 6 + terminal);
        }
    }
}

TEST(LeafAnalysis, APalmateLeafHasATerminalToothWithoutASide)
{
    Measures measures({leafOf(3)}, PALMATE, 1.0f);
    measures.processAll();
    ASSERT_EQ(measures.getPeakTable().numRows(), 7);
    EXPECT_EQ(measures.tooth("Tooth_Position", 3), 0.0f);
    EXPECT_EQ(measures.side(3), "");
    // Each half keeps its own tips, though the terminal tip lies among them.
    for (const int row : {0, 1, 2, 4, 5, 6}) {
        EXPECT_NEAR(measures.tooth("Tooth_Asymmetry", row), 1.0, 0.9);
    }
}

TEST(LeafAnalysis, AToothWithoutATipHasNoMedianHeightAndNoAsymmetry)
{
    const leaf::Outline outline = leafOf(4);
    Measures measures({outline}, PINNATE, 1.0f);
    const auto& t = outline.tips;
    leaf::remark(*measures.stack, "Primary Peak", 0, {t[0], t[3], t[4], t[7]});
    measures.processAll();
    for (int row = 0; row < 8; ++row) {
        const bool hasTip = row % 4 == 0 || row % 4 == 3;
        const float median = measures.tooth("Tooth_Height (median)", row);
        EXPECT_TRUE(hasTip ? median > 0.0f : median == 0.0f) << row;
        EXPECT_EQ(std::isnan(measures.tooth("Tooth_Asymmetry", row)), !hasTip) << row;
    }
}

TEST(LeafAnalysis, SinusesOnOneHalfGiveTheTeethOfThatHalfAndNoWidth)
{
    const leaf::Outline outline = leafOf(4);
    Measures measures({outline, leafOf(0)}, PINNATE, 1.0f);
    const auto& s = outline.sinuses;
    leaf::remark(*measures.stack, "Primary Sinus", 0, {s[0], s[1], s[2]});
    TemporaryFolder folder;
    measures.setOutputPath(QString::fromStdString(folder.path().string()));
    measures.setPrefix("p");
    EXPECT_EQ(leaf::run(measures), std::vector<std::string>{"Analysis is complete"});
    EXPECT_TRUE(measures.isSaved());
    EXPECT_EQ(measures.getPeakTable().numRows(), 2);
    EXPECT_TRUE(std::isnan(measures.leafValue("Blade_Width(IS)")));
    const std::string table = folder.read("p_LeafMeasures.data");
    EXPECT_NE(table.find("\t2\t0\tnan\t2\n"), std::string::npos) << table;
    EXPECT_NE(table.find("\t0\t0\tnan\t0\n"), std::string::npos) << table;
    EXPECT_EQ(folder.fileCount(), 2);
}
