#include "blade/contour/extractcontour.h"
#include "samples/canvas.h"
#include "samples/labelcomparison.h"
#include "samples/leafoutline.h"
#include "samples/leafpicture.h"
#include "samples/samplefiles.h"
#include "samples/scanfiles.h"
#include "samples/scanpicture.h"
#include "support/stages.h"
#include "support/temporaryfolder.h"
#include "system/dataset.h"
#include "system/exception.h"

#include <gtest/gtest.h>
#include <tiffio.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>
#include <set>
#include <sstream>

namespace {

constexpr int width = 900;
constexpr int height = 1300;

/// Notches on the two halves.
using Notches = std::pair<int, int>;

/// As many notches as teeth and one more on a half with teeth, none on a half without.
Notches expectedNotches(const LeafPlan& plan)
{
    const auto notches = [](int teeth) { return teeth > 0 ? teeth + 1 : 0; };
    return {notches(plan.upperTeeth), notches(plan.lowerTeeth)};
}

/// What the stage of sinuses finds on the contour of slice 0.
Notches foundNotches(LMXStack& stack, const LeafOutline& leaf)
{
    leaf::remark(
        stack, "Petiole", 0,
        {{leaf.leftJunction.x, leaf.leftJunction.y}, {leaf.rightJunction.x, leaf.rightJunction.y}});
    leaf::findSinuses(stack);
    Notches found;
    for (const leaf::Point& sinus : leaf::vertices(stack, "Primary Sinus", 0)) {
        ++(leaf.frame.toLeaf({sinus.x, sinus.y}).x < 0.0 ? found.first : found.second);
    }
    return found;
}

} // namespace

TEST(AddCoverage, EnclosesTheAreaOfThePolygon)
{
    std::mt19937 random(4);
    std::uniform_real_distribution<double> radius(5.0, 40.0);
    for (int round = 0; round < 50; ++round) {
        Polyline star;
        for (int k = 0; k < 30; ++k) {
            const double angle = k * 6.283185307179586 / 30;
            star.push_back(Point{50.3, 49.6} +
                           Point{std::cos(angle), std::sin(angle)} * radius(random));
        }
        Plane plane(100, 100);
        addCoverage(plane, star);
        const double sum = std::accumulate(plane.values.begin(), plane.values.end(), 0.0);
        // Across the lines of samples the area is a sum over midpoints, a quarter pixel apart.
        EXPECT_NEAR(sum, area(star), 4.0);
        EXPECT_LE(*std::max_element(plane.values.begin(), plane.values.end()), 1.0001F);
    }
}

TEST(AddCoverage, LeavesOutWhatLiesOutsideOfThePlane)
{
    Plane plane(10, 10);
    addCoverage(plane, {{-5.0, -5.0}, {5.5, -5.0}, {5.5, 20.0}, {-5.0, 20.0}});
    for (int y = 0; y < 10; ++y) {
        EXPECT_FLOAT_EQ(plane.at(4, y), 1.0F);
        EXPECT_FLOAT_EQ(plane.at(5, y), 0.5F);
        EXPECT_FLOAT_EQ(plane.at(6, y), 0.0F);
    }
}

TEST(LeafFrame, PlacesCanBeTakenBack)
{
    for (int index = 0; index < 8; ++index) {
        LeafFrame frame(planLeaf(index, 3));
        frame.shift({450.0, 1100.0});
        for (double x = -300.0; x <= 300.0; x += 75.0) {
            for (double y = -150.0; y <= 900.0; y += 75.0) {
                const Point back = frame.toLeaf(frame.toPicture({x, y}));
                EXPECT_NEAR(back.x, x, 1e-9);
                EXPECT_NEAR(back.y, y, 1e-9);
            }
        }
    }
}

TEST(PlanLeaf, HalfOfTheLeavesArePlainAndAllCombinationsOccur)
{
    int plain = 0;
    std::set<std::string> names;
    std::set<std::pair<bool, bool>> combinations;
    for (int index = 0; index < 14; ++index) {
        const LeafPlan plan = planLeaf(index, 1);
        names.insert(plan.name);
        if (plan.kind == LeafKind::Plain) {
            ++plain;
            combinations.insert({plan.colour, plan.lightBackground});
        }
    }
    EXPECT_GE(plain, 6);
    EXPECT_EQ(names.size(), 14U);
    EXPECT_EQ(combinations.size(), 4U);
}

TEST(MakeOutline, EveryNotchCanBeFoundAndNoOther)
{
    for (long seed = 1; seed <= 30; ++seed) {
        for (int index = 0; index < 16; ++index) {
            const LeafPlan plan = planLeaf(index, seed);
            if (plan.kind == LeafKind::TeethOnTeeth) {
                continue;
            }
            const LeafOutline leaf = makeOutline(plan, width, height);
            const auto stack = leaf::emptyStack(1);
            std::vector<leaf::Point> points;
            for (const Point& point : leaf.outline) {
                points.push_back({point.x, point.y});
            }
            leaf::addItem(*stack, "Contour", PRIMITIVE_POLYGON, 0, points);
            EXPECT_EQ(foundNotches(*stack, leaf), expectedNotches(plan))
                << plan.name << " of series " << seed;
        }
    }
}

TEST(MakeOutline, LeavesLieInsideTheirPictureAndJunctionsOnTheirOutline)
{
    for (long seed = 1; seed <= 30; ++seed) {
        for (int index = 0; index < 16; ++index) {
            const LeafOutline leaf = makeOutline(planLeaf(index, seed), width, height);
            EXPECT_GT(leaf.bladeArea, 100000.0);
            EXPECT_GT(area(leaf.outline), leaf.bladeArea);
            EXPECT_LT(leaf.leftJunction.x, leaf.rightJunction.x);
            EXPECT_NEAR(length(leaf.leftJunction - leaf.rightJunction), 35.0, 15.0);
            for (const Point& point : leaf.outline) {
                ASSERT_TRUE(point.x > 30 && point.x < width - 30) << index << " of " << seed;
                ASSERT_TRUE(point.y > 30 && point.y < height - 30) << index << " of " << seed;
            }
        }
    }
}

TEST(DrawLeaf, ThePictureShowsTheNotchesOfThePlan)
{
    for (int index = 0; index < 14; ++index) {
        const LeafPlan plan = planLeaf(index, 1);
        const LeafOutline leaf = makeOutline(plan, width, height);
        const Picture picture = drawLeaf(plan, leaf, width, height);
        EXPECT_EQ(picture.bytes.size(),
                  static_cast<std::size_t>(width * height * (plan.colour ? 3 : 1)));
        PixelMatrix<float> image(height, width);
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                const std::size_t at = static_cast<std::size_t>((y * width + x) * picture.samples);
                const auto* first = picture.bytes.data() + at;
                image[y][x] = std::accumulate(first, first + picture.samples, 0.0F) /
                              static_cast<float>(picture.samples);
            }
        }
        const auto stack = leaf::emptyStack(1);
        ExtractContour process;
        process.setStack(*stack);
        process.setBackground(plan.lightBackground ? LightBackground : DarkBackground);
        process.createModels();
        process.process(image, 0);
        const ModelItem* contour = leaf::findItem(*stack, "Contour", 0);
        ASSERT_NE(contour, nullptr) << plan.name;
        EXPECT_NEAR(leaf::area(*contour), area(leaf.outline), 0.01 * area(leaf.outline));
        if (plan.kind != LeafKind::TeethOnTeeth) {
            EXPECT_EQ(foundNotches(*stack, leaf), expectedNotches(plan)) << plan.name;
        }
    }
}

TEST(WriteSamples, TheSameSeriesGivesTheSameFilesHoweverManyAreDrawn)
{
    const TemporaryFolder folder;
    writeSamples(folder.file("two"), 2, 5, Series::AllKinds);
    writeSamples(folder.file("three"), 3, 5, Series::AllKinds);
    writeSamples(folder.file("other"), 1, 6, Series::AllKinds);
    for (const char* name : {"plain-01.tif", "double-01.tif"}) {
        EXPECT_EQ(folder.read(std::string("two/") + name),
                  folder.read(std::string("three/") + name));
    }
    EXPECT_NE(folder.read("two/plain-01.tif"), folder.read("other/plain-01.tif"));
    const std::string table = folder.read("three/junctions.tsv");
    EXPECT_EQ(table.substr(0, folder.read("two/junctions.tsv").size()),
              folder.read("two/junctions.tsv"));
    DataSet truth(folder.file("three/truth.tsv"));
    EXPECT_EQ(truth.numRows(), 3);
    EXPECT_EQ(truth.getValue<std::string>("Slice_Name", 2), "plain-02");
    EXPECT_EQ(truth.getValue<int>("Upper_Teeth", 2), planLeaf(2, 5).upperTeeth);
    EXPECT_EQ(DataSet(folder.file("three/junctions.tsv")).columnTypes(), "%s%d%d%d%d");
}

TEST(DrawScan, ShowsEachLeafWhereThePlanSaysAndObjectsBesideThem)
{
    ScanOptions options;
    options.leaves = 20;
    options.resolution = 75.0;
    options.marker = {MarkerKind::Dots, 70.0};
    const ScanPlan scan = planScan(options, 0, 3);
    const Picture picture = drawScan(scan);
    const auto greenness = [&](const Point& at) {
        const auto pixel = static_cast<std::size_t>(at.y) * static_cast<std::size_t>(scan.width) +
                           static_cast<std::size_t>(at.x);
        const std::uint8_t* rgb = picture.bytes.data() + 3 * pixel;
        return rgb[1] - (rgb[0] + rgb[2]) / 2;
    };
    Point last{-1.0, -1.0};
    for (const ScanLeaf& leaf : scan.leaves) {
        const Point apex = onScan(scan, leaf, leaf.outline.apex);
        const Point base =
            onScan(scan, leaf, (leaf.outline.leftJunction + leaf.outline.rightJunction) * 0.5);
        const Point middle = base * 0.4 + apex * 0.6;
        EXPECT_GT(greenness(middle), 15) << leaf.name;
        EXPECT_LT(greenness(apex + (apex - base) * 0.05), 15) << leaf.name;
        const double row = 0.5 * cellHeight * scan.factor;
        EXPECT_TRUE(middle.x > last.x || middle.y > last.y + row) << leaf.name;
        last = middle;
        for (const ScanObject& object : scan.objects) {
            const double reach = length(object.edge[2] - object.edge[0]) / 2.0;
            EXPECT_GT(length((object.edge[2] + object.edge[0]) * 0.5 - middle), reach / 2.0);
        }
    }
}

TEST(WriteScans, LeavesOnTheScanHaveTheTruthOfThoseAlone)
{
    const TemporaryFolder folder;
    ScanOptions options;
    options.leaves = 2;
    options.resolution = 100.0;
    options.stated = 0.0;
    writeScans(folder.file("scans"), 2, 4, options);
    EXPECT_TRUE(folder.read("scans/alone/scan-02-2.tif").size() > 300 * 433 * 3);
    DataSet there(folder.file("scans/truth.tsv"));
    DataSet alone(folder.file("scans/alone/truth.tsv"));
    ASSERT_EQ(there.numRows(), 4);
    for (int row = 0; row < 4; ++row) {
        for (const char* column : {"Blade_Length", "Blade_Area"}) {
            const float truth = alone.getValue<float>(column, row);
            EXPECT_NEAR(there.getValue<float>(column, row), truth, 1e-4F * truth);
        }
    }
    EXPECT_NEAR(DataSet(folder.file("scans/scans.tsv")).getValue<float>("Pixel_Size", 1), 0.254F,
                1e-5F);
}

TEST(WriteTiff, PicturesComeBackWithTheirResolution)
{
    const TemporaryFolder folder;
    for (const int samples : {1, 3}) {
        Picture picture;
        picture.width = 7;
        picture.height = 5;
        picture.samples = samples;
        for (int i = 0; i < 7 * 5 * samples; ++i) {
            picture.bytes.push_back(static_cast<std::uint8_t>(i * 2));
        }
        writeTiff(picture, folder.file("a.tif"));
        TIFF* tiff = TIFFOpen(folder.file("a.tif").c_str(), "r");
        ASSERT_NE(tiff, nullptr);
        float resolution = 0.0F;
        std::uint16_t unit = 0;
        EXPECT_EQ(TIFFGetField(tiff, TIFFTAG_XRESOLUTION, &resolution), 1);
        EXPECT_EQ(TIFFGetField(tiff, TIFFTAG_RESOLUTIONUNIT, &unit), 1);
        EXPECT_EQ(resolution, 300.0F);
        EXPECT_EQ(unit, RESUNIT_INCH);
        std::vector<std::uint8_t> read(picture.bytes.size());
        const std::size_t rowSize = static_cast<std::size_t>(7 * samples);
        ASSERT_EQ(static_cast<std::size_t>(TIFFScanlineSize(tiff)), rowSize);
        for (std::uint32_t y = 0; y < 5; ++y) {
            TIFFReadScanline(tiff, &read[y * rowSize], y, 0);
        }
        TIFFClose(tiff);
        EXPECT_EQ(read, picture.bytes);
    }
    EXPECT_EQ(folder.fileCount(), 1);
}

TEST(WriteSamples, AFolderThatCannotBeMadeIsAnError)
{
    const TemporaryFolder folder;
    folder.write("file", "");
    EXPECT_THROW(writeSamples(folder.file("file/inside"), 1, 1, Series::AllKinds), FileWriteError);
}

TEST(MakeOutline, EveryCornerThatIsDrawnHasItsLabel)
{
    for (int index = 0; index < 24; ++index) {
        const LeafPlan plan = planLeaf(index, 2);
        const LeafOutline leaf = makeOutline(plan, width, height);
        const bool palmate = plan.kind == LeafKind::Palmate;
        int secondary = 0;
        int tips = 0;
        for (const TrueLandmark& landmark : leaf.landmarks) {
            secondary += landmark.label == ToothClass::Secondary ? 1 : 0;
            tips += landmark.structure == Structure::Tip ? 1 : 0;
            // A corner stands out, or in: against the chord over it the outline turns.
            const auto place = static_cast<std::size_t>(nearestPoint(leaf.outline, landmark.place));
            const Point a = leaf.outline[place - 9] - leaf.outline[place];
            const Point b = leaf.outline[place + 9] - leaf.outline[place];
            EXPECT_EQ(a.x * b.y - a.y * b.x < 0.0, landmark.structure == Structure::Tip)
                << plan.name;
        }
        const int teeth = plan.upperTeeth + plan.lowerTeeth;
        EXPECT_EQ(secondary, 2 * plan.smallTeeth) << plan.name;
        EXPECT_EQ(tips, palmate ? teeth + 2 : teeth + plan.smallTeeth) << plan.name;
    }
}

TEST(CompareLabels, TellsEachLandmarkThatDiffersAndNoOther)
{
    const TemporaryFolder folder;
    const std::string labels = folder.write("labels.tsv", "Slice_Name\tStructure\tClass\tX\tY\n"
                                                          "a\tsinus\tprimary\t10\t10\n"
                                                          "a\ttip\tprimary\t10\t20\n"
                                                          "a\tsinus\tsecondary\t10\t30\n"
                                                          "a\ttip\tdistal\t10\t40\n"
                                                          "b\tsinus\tprimary\t0\t0\n");
    const std::string head = "Slice_Name\tModel\tX\tY\na\tApex\t0\t0\n";
    const auto compare = [&](const std::string& rows, bool distal) {
        std::ostringstream out;
        const bool good =
            compareLabels(labels, folder.write("found.tsv", head + rows), distal, 5.0, out);
        EXPECT_EQ(good, out.str().find("    ") == std::string::npos) << out.str();
        return out.str();
    };
    const std::string sinus = "a\tPrimary Sinus\t11\t10\n";
    const std::string tip = "a\tPrimary Peak\t10\t21\n";
    const std::string small = "a\tSecondary Sinus\t10\t30\n";
    const std::string last = "a\tPrimary Distal Peak\t13\t44\n";
    EXPECT_EQ(compare(sinus + tip + small + last, true),
              "  a: of 4 drawn landmarks 4 agree, 0 disagree, 0 were not found, and 0 were found "
              "that were not drawn; the farthest lies 5 pixels off\n");
    const std::string both = sinus + "a\tSecondary Sinus\t11\t10\n";
    EXPECT_NE(compare(both + tip + small + last, true).find(" 4 agree"), std::string::npos);
    EXPECT_NE(compare(sinus + tip + small + last, false).find("drawn primary, found distal"),
              std::string::npos);
    EXPECT_NE(compare(sinus + tip + last, true).find("(10, 30) drawn secondary, not found"),
              std::string::npos);
    EXPECT_NE(compare(sinus + tip + small + last + "a\tPrimary Peak\t50\t50\n", true)
                  .find("(50, 50) not drawn, found primary"),
              std::string::npos);
    EXPECT_NE(compare(sinus + tip + small + "a\tPrimary Sinus\t10\t30\n" + last, true)
                  .find("drawn secondary, found primary and secondary"),
              std::string::npos);

    std::ostringstream out;
    EXPECT_THROW(compareLabels(labels, labels, true, 5.0, out), FileFormatError);
    EXPECT_THROW(compareLabels(labels, folder.file("none"), true, 5.0, out), FileReadError);
    const std::string other = folder.write("other.tsv", "Slice_Name\tModel\tX\tY\nc\tApex\t0\t0\n");
    EXPECT_THROW(compareLabels(labels, other, true, 5.0, out), FileFormatError);
}
