#include "blade/blademessages.h"
#include "blade/extractconvexpoints.h"
#include "blade/extractpeak.h"
#include "blade/leafanalysis.h"
#include "support/leaf.h"
#include "support/temporaryfolder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using leaf::Point;

namespace {

class Measures : public LeafAnalysis
{
public:
    Measures(LMXStack& open, VenationType veins)
    {
        setStack(open);
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

    float leafValue(const std::string& column, int row) const
    {
        return getLeafTable().getValues<float>(column)[row];
    }

    float toothValue(const std::string& column, int row) const
    {
        return getPeakTable().getValues<float>(column)[row];
    }

    using LeafAnalysis::contour;
};

/// Sinuses and tips found on every slice, and each slice `pixelWidth` wide a pixel.
void prepare(LMXStack& stack, VenationType venation, float pixelWidth)
{
    PixelCalibration calibration;
    calibration.setPixelWidth(pixelWidth);
    calibration.setPixelHeight(pixelWidth);
    ExtractConvexPoints sinuses;
    sinuses.setStack(stack);
    sinuses.setNeigbourhood(25);
    sinuses.setThresholdAngle(145.0f);
    sinuses.createModels();
    ExtractPeak tips;
    tips.setStack(stack);
    tips.setMethodToExtract(LocalCurvature);
    tips.setExcludeNeighbourhood(10);
    tips.setVenationType(venation);
    tips.createModels();
    for (int i = 0; i < stack.getNumSlices(); ++i) {
        stack.getSlice(i).setPixelCalibration(calibration);
        sinuses.process(i);
        tips.process(i);
    }
}

leaf::Outline leafOf(int teethPerSide)
{
    leaf::Shape shape;
    shape.teethPerSide = teethPerSide;
    shape.toothHeight = 40.0;
    return leaf::draw(shape);
}

double polygonArea(const std::vector<Point>& points)
{
    double twice = 0.0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const Point& next = points[(i + 1) % points.size()];
        twice += points[i].x * next.y - points[i].y * next.x;
    }
    return twice / 2.0;
}

std::string firstLine(const std::string& text)
{
    return text.substr(0, text.find('\n'));
}

} // namespace

TEST(LeafAnalysis, TheLeafTableAgreesWithTheDrawing)
{
    const float w = 25.0f;
    const leaf::Outline outline = leafOf(4);
    const auto stack = leaf::stackOf({outline});
    prepare(*stack, PINNATE, w);
    Measures measures(*stack, PINNATE);
    measures.processAll();

    const double petioleArea = 120.0 * 14.0;
    const double area = (outline.area - petioleArea) * w * w;
    EXPECT_NEAR(measures.leafValue("Blade_Area", 0) / area, 1.0, 0.01);
    EXPECT_NEAR(measures.leafValue("Blade_Length", 0) / (600.0 * w), 1.0, 0.01);
    EXPECT_NEAR(measures.leafValue("Petiole_Width", 0) / (14.0 * w), 1.0, 0.15);
    EXPECT_GT(measures.leafValue("HullArea", 0), measures.leafValue("Blade_Area", 0));
    EXPECT_LT(measures.leafValue("HullPerimeter", 0), measures.leafValue("Blade_Perimeter", 0));
    const double length = measures.leafValue("Blade_Length", 0);
    EXPECT_NEAR(measures.leafValue("Age(day)", 0),
                12.0 * std::pow(length / (20000.0 - length), 1.0 / 3.0), 1e-3);
    EXPECT_FLOAT_EQ(measures.leafValue("Age(hours)", 0), 24.0f * measures.leafValue("Age(day)", 0));
    const double perimeter = measures.leafValue("Blade_Perimeter", 0);
    EXPECT_NEAR(measures.leafValue("LeafDI", 0),
                perimeter * perimeter / (4 * M_PI * measures.leafValue("Blade_Area", 0)), 1e-4);
    // Across the axis the widest points of both halves are tips, the deepest ones sinuses.
    EXPECT_GT(measures.leafValue("Blade_Width(BB)", 0), measures.leafValue("Blade_Width(IS)", 0));
    EXPECT_EQ(measures.getLeafTable().getValues<int>("Total_Peak_Number")[0], 8);
}

TEST(LeafAnalysis, EachToothAgreesWithItsDrawing)
{
    const float w = 2.0f;
    const leaf::Outline outline = leafOf(4);
    const auto stack = leaf::stackOf({outline});
    prepare(*stack, PINNATE, w);
    Measures measures(*stack, PINNATE);
    measures.processAll();
    ASSERT_EQ(measures.getPeakTable().numRows(), 8);
    for (int row = 0; row < 8; ++row) {
        SCOPED_TRACE(row);
        const bool upper = row < 4;
        const int position = upper ? row + 1 : row - 3;
        EXPECT_EQ(measures.getPeakTable().getValues<std::string>("Side")[row],
                  upper ? "upper" : "lower");
        EXPECT_EQ(measures.toothValue("Tooth_Position", row), static_cast<float>(position));
        // Rows count from the apex; the drawing's teeth run along the outline.
        const std::size_t tooth = static_cast<std::size_t>(upper ? 4 - position : 3 + position);
        const std::size_t sinus = upper ? tooth : tooth + 1;
        const Point s0 = outline.sinuses[sinus];
        const Point s1 = outline.sinuses[sinus + 1];
        const Point tip = outline.tips[tooth];
        const double width = leaf::distance(s0, s1);
        const double area = std::fabs(polygonArea({s0, s1, tip}));
        const Point middle = {(s0.x + s1.x) / 2, (s0.y + s1.y) / 2};
        EXPECT_NEAR(measures.toothValue("Tooth_Width", row) / w, width, 5.0);
        EXPECT_NEAR(measures.toothValue("Tooth_Height (altitude)", row) / w, 2.0 * area / width,
                    3.5);
        EXPECT_NEAR(measures.toothValue("Tooth_Height (median)", row) / w,
                    leaf::distance(middle, tip), 4.0);
        EXPECT_NEAR(measures.toothValue("Tooth_Area", row) / (w * w * area), 1.0, 0.25);
        const double asymmetry = leaf::distance(s0, tip) / leaf::distance(tip, s1);
        EXPECT_NEAR(measures.toothValue("Tooth_Asymmetry", row), asymmetry, 0.35 * asymmetry);
        EXPECT_NEAR(measures.toothValue("Tooth_Position_From_The_Tip", row) +
                        measures.toothValue("Tooth_Position_From_The_Base", row),
                    100.0, 1e-4);
        EXPECT_NEAR(measures.toothValue("Tooth_Position_From_The_Tip", row),
                    15.0 + 17.5 * (position - 1), 1.5);
    }
}

TEST(LeafAnalysis, SkewnessAndAsymmetryFollowTheirDefinitions)
{
    // A slanted tooth on a horizontal chord: up in 30 steps to (30, 40), down to (90, 0).
    Curve<float> chain(2, 3, 0, 0, true);
    const float corners[3][2] = {{0, 0}, {30, 40}, {90, 0}};
    for (int i = 0; i < 3; ++i) {
        chain[i][0] = corners[i][0];
        chain[i][1] = corners[i][1];
    }
    const LeafAnalysis process;
    std::vector<double> places;
    const double flank = 50.0;
    const double total = flank + std::hypot(60.0, 40.0);
    for (int i = 0; i < 100; ++i) {
        const double s = total * i / 100.0;
        const double x = s < flank ? s / flank * 30.0 : 30.0 + (s - flank) / (total - flank) * 60.0;
        places.push_back(x / 90.0);
    }
    double mean = 0.0;
    double square = 0.0;
    for (const double place : places) {
        mean += place / 100.0;
    }
    for (const double place : places) {
        square += (place - mean) * (place - mean) / 100.0;
    }
    const double median = (places[49] + places[50]) / 2.0;
    EXPECT_NEAR(process.comptuteSkewness(chain), 3.0 * (mean - median) / std::sqrt(square), 1e-4);
    EXPECT_NEAR(process.comptuteAsymmetry(chain, 10, 12, 11), flank / (total - flank), 1e-6);
    EXPECT_TRUE(std::isnan(process.comptuteAsymmetry(chain, 10, 12, 13)));
    EXPECT_NEAR(process.computeReversedCircularity(2.0f * float(M_PI), float(M_PI)), 1.0, 1e-6);
}

TEST(LeafAnalysis, ColumnsFollowTheVenationAndTheFirstLeaf)
{
    const std::string toCounts =
        "Slice_Name\tCalibration\tBlade_Length\tAge(day)\tAge(hours)\tBlade_Width(BB)\tBlade_Area\t"
        "Blade_Perimeter\tHullPerimeter\tHullArea\tPetiole_Width\tLeafDI\taHullDI\tDI\t"
        "Upper_Peak_Number\tLower_Peak_Number\t";

    struct Case
    {
        int firstTeeth;
        VenationType venation;
        std::string end;
    };

    const Case cases[] = {
        {4, PINNATE, "Blade_Width(IS)\tTotal_Peak_Number"},
        {0, PINNATE, "Total_Peak_Number\tBlade_Width(IS)"},
        {4, PALMATE, "Blade_Width(IS)\tTerminal_Peak_Number\tTotal_Peak_Number"},
        {0, PALMATE, "Terminal_Peak_Number\tTotal_Peak_Number\tBlade_Width(IS)"},
    };
    for (const Case& example : cases) {
        const auto stack = leaf::stackOf({leafOf(example.firstTeeth), leafOf(3)});
        prepare(*stack, example.venation, 1.0f);
        Measures measures(*stack, example.venation);
        measures.processAll();
        std::ostringstream text;
        text << measures.getLeafTable();
        EXPECT_EQ(firstLine(text.str()), toCounts + example.end);
        const int terminal = example.venation == PALMATE ? 1 : 0;
        EXPECT_EQ(measures.getLeafTable().getValues<int>("Total_Peak_Number")[1], 6 + terminal);
        EXPECT_EQ(measures.getLeafTable().getValues<int>("Total_Peak_Number")[0],
                  example.firstTeeth == 0 ? 0 : 8 + terminal);
    }
}

TEST(LeafAnalysis, APalmateLeafHasATerminalToothWithoutASide)
{
    const auto stack = leaf::stackOf({leafOf(3)});
    prepare(*stack, PALMATE, 1.0f);
    Measures measures(*stack, PALMATE);
    measures.processAll();
    ASSERT_EQ(measures.getPeakTable().numRows(), 7);
    EXPECT_EQ(measures.toothValue("Tooth_Position", 3), 0.0f);
    EXPECT_EQ(measures.getPeakTable().getValues<std::string>("Side")[3], "");
    // Each half keeps its own tips, though the terminal tip lies among them.
    for (const int row : {0, 1, 2, 4, 5, 6}) {
        EXPECT_NEAR(measures.toothValue("Tooth_Asymmetry", row), 1.0, 0.9);
    }
}

TEST(LeafAnalysis, AToothWithoutATipHasNoMedianHeightAndNoAsymmetry)
{
    const leaf::Outline outline = leafOf(4);
    const auto stack = leaf::stackOf({outline});
    prepare(*stack, PINNATE, 1.0f);
    delete leaf::findItem(*stack, "Primary Peak", 0);
    leaf::addItem(*stack, "Primary Peak", PRIMITIVE_POLYPOINT, 0,
                  {outline.tips[0], outline.tips[3], outline.tips[4], outline.tips[7]});
    Measures measures(*stack, PINNATE);
    measures.processAll();
    const bool hasTip[] = {true, false, false, true, true, false, false, true};
    for (int row = 0; row < 8; ++row) {
        SCOPED_TRACE(row);
        EXPECT_EQ(measures.toothValue("Tooth_Height (median)", row) > 0.0f, hasTip[row]);
        EXPECT_EQ(std::isnan(measures.toothValue("Tooth_Asymmetry", row)), !hasTip[row]);
    }
}

TEST(LeafAnalysis, SinusesOnOneHalfGiveTheTeethOfThatHalfAndNoWidth)
{
    const leaf::Outline outline = leafOf(4);
    const auto stack = leaf::stackOf({outline, leafOf(0)});
    prepare(*stack, PINNATE, 1.0f);
    delete leaf::findItem(*stack, "Primary Sinus", 0);
    leaf::addItem(*stack, "Primary Sinus", PRIMITIVE_POLYPOINT, 0,
                  {outline.sinuses[0], outline.sinuses[1], outline.sinuses[2]});
    TemporaryFolder folder;
    Measures measures(*stack, PINNATE);
    measures.setOutputPath(QString::fromStdString(folder.path().string()));
    measures.setPrefix("p");
    std::vector<std::string> messages;
    const auto former =
        BladeMessages::setHandler([&](const std::string& text) { messages.push_back(text); });
    measures.run();
    BladeMessages::setHandler(former);
    EXPECT_EQ(messages, std::vector<std::string>{"Analysis is complete"});
    EXPECT_TRUE(measures.isSaved());
    EXPECT_EQ(measures.getPeakTable().numRows(), 2);
    EXPECT_TRUE(std::isnan(measures.leafValue("Blade_Width(IS)", 0)));
    const std::string table = folder.read("p_LeafMeasures.data");
    EXPECT_NE(table.find("\t2\t0\tnan\t2\n"), std::string::npos) << table;
    EXPECT_NE(table.find("\t0\t0\tnan\t0\n"), std::string::npos) << table;
    EXPECT_EQ(folder.fileCount(), 2);
}
