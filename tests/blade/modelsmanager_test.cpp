#include "blade/process/landmarks.h"
#include "blade/process/modelsmanager.h"
#include "interface/lmxevent.h"
#include "support/leaf.h"
#include "support/vectors.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <tuple>

using leaf::at;
using leaf::Point;
using leaf::Probe;
using Points = std::vector<Point>;

namespace {

leaf::Outline leafAt(double degrees)
{
    return leaf::draw(4, 24.0, degrees, {520.0, 520.0});
}

void setContour(LMXStack& stack, int slice, const Points& points)
{
    delete leaf::findItem(stack, "Contour", slice);
    leaf::addItem(stack, "Contour", PRIMITIVE_POLYGON, slice, points);
}

Point truncated(const Vector<float>& place)
{
    return {std::trunc(place[0]), std::trunc(place[1])};
}

/// Notes the models and items announced.
class Listener : public LMXEventClient
{
public:
    void modelCreateEvent(LMXModelCreateEvent& event) override
    {
        names.push_back(event.getModel().getName());
    }

    void modelItemCreateEvent(LMXModelItemCreateEvent&) override { ++items; }

    void modelItemVertexEvent(LMXModelItemVertexEvent&) override { ++changes; }

    std::vector<std::string> names;
    int items = 0;
    int changes = 0;
};

} // namespace

TEST(ModelsManager, EachLandmarkIsReadFromItsModelAndTheLaterItemWins)
{
    const auto stack = leaf::stackOf({leafAt(0.0)});
    const std::string names[] = {"Apex",
                                 "Primary Sinus",
                                 "Primary Peak",
                                 "Primary Distal Sinus",
                                 "Primary Distal Peak",
                                 "primary peak"};
    for (int k = 0; k < 6; ++k) {
        leaf::mark(*stack, names[k], 0, {{900.0, 900.0}, {1.0, 1.0}});
        leaf::mark(*stack, names[k], 0, {{10.0 + k, 20.0 + k}});
    }
    Probe probe(*stack);
    probe.getModels(0);
    const Vertices<float>* lists[] = {probe.apex, probe.primarySinus, probe.primaryPeak,
                                      probe.primaryDistalSinus, probe.primaryDistalPeak};
    for (int k = 0; k < 5; ++k) {
        ASSERT_NE(lists[k], nullptr) << names[k];
        ASSERT_EQ(lists[k]->getSize(), 1) << names[k];
        EXPECT_EQ(leaf::distance(at(*lists[k], 0), {10.0 + k, 20.0 + k}), 0.0);
    }
    // Reading for resampling leaves the other lists alone.
    delete leaf::findItem(*stack, "Apex", 0);
    delete leaf::findItem(*stack, "Apex", 0);
    EXPECT_TRUE(probe.getModelsForResampling(0));
    EXPECT_EQ(probe.apex, nullptr);
    EXPECT_EQ(probe.primarySinus, lists[1]);
    // Junctions and edits passed over a contour without vertices, and the processes did not.
    leaf::addItem(*stack, "Contour", PRIMITIVE_POLYGON, 0, {});
    probe.getModels(0);
    EXPECT_EQ(probe.contour, nullptr);
    EXPECT_EQ(contourOf(stack->getSlice(0)), nullptr);
    // A slice without items leaves every member null.
    const auto empty = leaf::emptyStack(1);
    probe.setStack(*empty);
    probe.getModels(0);
    EXPECT_TRUE(!probe.contour && !probe.contourItem && !probe.petiole && !probe.primarySinus &&
                !probe.primaryPeak);
    EXPECT_EQ(probe.apexIndex(), -1);
    EXPECT_EQ(probe.indexesPrimarySinuses().getSize(), 0);
}

TEST(ModelsManager, AContourIsReadWithAboutOneVertexAPixelAndAPositiveArea)
{
    std::mt19937 generator(5);
    const auto stack = leaf::emptyStack(1);
    Probe probe(*stack);
    for (int k = 0; k < 40; ++k) {
        const int corners = 3 + static_cast<int>(generator() % 60);
        const double radius = 40.0 + generator() % 400;
        Points points;
        for (int i = 0; i < corners; ++i) {
            const double angle = (k % 2 ? -2 : 2) * M_PI * i / corners;
            points.push_back({500 + radius * std::cos(angle), 500 + radius * std::sin(angle)});
        }
        setContour(*stack, 0, points);
        probe.getModels(0);
        const Curve<float>& contour = *probe.contour;
        EXPECT_GT(contour.twiceArea(0, 1), 0.0f);
        EXPECT_TRUE(contour.isClosed());
        EXPECT_NEAR(contour.length() / static_cast<float>(contour.getSize()), 1.0f, 0.05f);
        for (int i = 1; i < contour.getSize(); ++i) {
            EXPECT_LT(contour[i].distance(contour[i - 1]), 1.1f);
        }
    }
    // One no longer than its vertex count keeps its vertices.
    Points square;
    for (int k = 0; k < 120; ++k) {
        const double s = k % 30;
        square.push_back(k < 30   ? Point{s, 0}
                         : k < 60 ? Point{30, s}
                         : k < 90 ? Point{30 - s, 30}
                                  : Point{0, 30 - s});
    }
    setContour(*stack, 0, square);
    probe.getModels(0);
    ASSERT_EQ(probe.contour->getSize(), 120);
    for (int i = 0; i < 120; ++i) {
        EXPECT_EQ(leaf::distance(at(*probe.contour, i), square[static_cast<std::size_t>(i)]), 0.0);
    }
    setContour(*stack, 0, {});
    probe.getModels(0);
    EXPECT_EQ(probe.contour, nullptr);
}

TEST(ModelsManager, ApexAndPetioleAreFoundWhateverTheTurnOriginAndSenseOfTheLeaf)
{
    std::mt19937 generator(17);
    for (int k = 0; k < 36; ++k) {
        const leaf::Outline outline = leafAt(10.0 * k);
        const auto stack = leaf::stackOf({outline});
        Points stored = leaf::vertices(*stack, "Contour", 0);
        std::rotate(stored.begin(), stored.begin() + generator() % stored.size(), stored.end());
        if (k % 2) {
            std::reverse(stored.begin(), stored.end());
        }
        setContour(*stack, 0, stored);
        Probe probe(*stack);
        probe.getModels(0);
        const Curve<float>& contour = *probe.contour;
        probe.putPetiolesOnCurve();
        probe.putOriginContour(*probe.contour, probe.indexesPetiole()[0]);
        const Vector<int> points = probe.findPoints(contour, probe.indexesPetiole());
        EXPECT_LT(leaf::distance(at(contour, points[1]), outline.apex), 5.0)
            << "turned by " << 10 * k;
        EXPECT_LT(leaf::distance(at(contour, points[0]), outline.points[0]), 5.0) << k;

        probe.putOriginContour(*probe.contour, points[0]);
        const Vector<int> junctions = probe.findIndexPetiole(contour);
        for (int i = 0; i < 2; ++i) {
            EXPECT_LT(leaf::distance(at(contour, junctions[i]), outline.junctions[i]), 2.0);
        }
        const int count = contour.getSize();
        const float length = probe.lengthLeaf(junctions, (points[1] - points[0] + count) % count);
        EXPECT_NEAR(length, 600.0f, 4.0f);
    }
}

TEST(ModelsManager, TheStoredContourIsTheCurveTruncatedAndTurnedToItsNewOrigin)
{
    const auto stack = leaf::stackOf({leafAt(33.0)});
    Probe probe(*stack);
    probe.getModels(0);
    const Point start = at(*probe.contour, 700);
    Listener listener;
    probe.putOriginContour(*probe.contour, 700);
    EXPECT_EQ(listener.changes, 1);
    EXPECT_EQ(leaf::distance(at(*probe.contour, 0), start), 0.0);
    const Points stored = leaf::vertices(*stack, "Contour", 0);
    ASSERT_EQ(static_cast<int>(stored.size()), probe.contour->getSize());
    for (std::size_t i = 0; i < stored.size(); ++i) {
        EXPECT_EQ(leaf::distance(stored[i], truncated((*probe.contour)[static_cast<int>(i)])), 0.0);
    }
    // Read back, it is resampled by its own length, from the same vertex 0 on.
    probe.getModels(0);
    EXPECT_NEAR(probe.contour->getSize(), static_cast<double>(stored.size()), 60.0);
    EXPECT_LT(leaf::distance(at(*probe.contour, 0), start), 1.5);
}

TEST(ModelsManager, LandmarksPutOnTheContourAreItsVerticesTruncatedAndAnnounced)
{
    std::mt19937 generator(23);
    std::uniform_real_distribution<double> shift(-6.0, 6.0);
    for (int k = 0; k < 12; ++k) {
        const leaf::Outline outline = leafAt(30.0 * k);
        const auto stack = leaf::stackOf({outline});
        Points sinuses = outline.sinuses;
        std::shuffle(sinuses.begin(), sinuses.end(), generator);
        for (Point& point : sinuses) {
            point = {point.x + shift(generator), point.y + shift(generator)};
        }
        leaf::mark(*stack, "Primary Sinus", 0, sinuses);
        leaf::mark(*stack, "Apex", 0, {});
        Probe probe(*stack);
        probe.getModels(0);
        const Listener listener;
        probe.putPetiolesOnCurve();
        probe.putSinusOnCurve();
        probe.addApex(321);
        EXPECT_EQ(listener.items, 1);
        const Vector<int> petiole = probe.findIndexPetiole(*probe.contour);
        EXPECT_LT(petiole[0], petiole[1]);
        const Vector<int> places = probe.indexesPrimarySinuses();
        for (int i = 0; i < places.getSize(); ++i) {
            EXPECT_LE(leaf::distance(at(*probe.contour, places[i]), sinuses[std::size_t(i)]), 9.5);
        }
        const auto expectStored = [&](const char* name, const Vector<int>& indexes) {
            const Points stored = leaf::vertices(*stack, name, 0);
            ASSERT_EQ(static_cast<int>(stored.size()), indexes.getSize()) << name;
            for (int i = 0; i < indexes.getSize(); ++i) {
                EXPECT_EQ(
                    leaf::distance(stored[std::size_t(i)], truncated((*probe.contour)[indexes[i]])),
                    0.0)
                    << name;
            }
        };
        expectStored("Primary Sinus", places);
        expectStored("Petiole", petiole);
        expectStored("Apex", vectorOf<int>({321}));
    }
}

TEST(ModelsManager, OfEqualDistancesTheFirstVertexOfEqualAreasThePartOfHigherIndicesIsTaken)
{
    const auto stack = leaf::emptyStack(1);
    Probe probe(*stack);
    // Vertices 2, 3 and 4 are 10.0, 10.4 and 10.9 from the middle (0, 0) of vertices 0 and 5.
    const Point coordinates[] = {{-4, 0}, {-3, 5}, {-6, 8}, {-3, 10}, {3, 10}, {4, 0}};
    Curve<float> curve(2, 6, 0, 0, false);
    for (int i = 0; i < 6; ++i) {
        curve[i] = vectorOf<float>({float(coordinates[i].x), float(coordinates[i].y)});
    }
    EXPECT_EQ(probe.findIndexMaxDistance(curve, 0, 5), 2);
    EXPECT_EQ(probe.findIndexMaxDistance(curve, 3, 3), 0);
    // A square of side 4 whose vertices 0 to 7 and 8 to 15 are congruent halves.
    const Curve<float> square = Curve<float>::square(0.0f, 0.0f, 4.0f).resample(16);
    const Vector<int> points = probe.findPoints(square, vectorOf<int>({0, 7}));
    EXPECT_EQ(points[0], 3);
    EXPECT_GE(points[1], 7);
}

TEST(ModelsManager, ModelsBearTheirColoursAndSymbolsAndAreAnnounced)
{
    const auto stack = leaf::emptyStack(1);
    leaf::addItem(*stack, "Contour", PRIMITIVE_POLYLINE, 0, {{1.0, 1.0}});
    Probe probe(*stack);
    Listener listener;
    probe.createModelContour();
    probe.createModelPetiole();
    probe.createModelPetiole();
    probe.createModelApex();
    probe.createModelPrimarySinus();
    probe.createModelPrimaryPeaks();
    probe.createModelPrimarySinusDistal();
    probe.createModelPrimaryPeaksDistal();
    probe.createModelSecondarySinus();
    probe.createModelSecondaryPeaks();

    using Symbol = VertexSymbol;
    const std::tuple<std::string, std::vector<int>, Symbol, float, float> rows[] = {
        {"Contour", {0, 0, 255}, Symbol::Sphere, 1.0f, 3.0f},
        {"Petiole", {100, 100, 255}, Symbol::Diamond, 7.0f, 3.0f},
        {"Apex", {0, 0, 255}, Symbol::Cube, 7.0f, 3.0f},
        {"Primary Sinus", {0, 255, 0}, Symbol::Sphere, 7.0f, 3.0f},
        {"Primary Peak", {255, 0, 0}, Symbol::Tetrahedron, 7.0f, 3.0f},
        {"Primary Distal Sinus", {255, 0, 200}, Symbol::Sphere, 3.0f, 5.0f},
        {"Primary Distal Peak", {255, 0, 200}, Symbol::Tetrahedron, 7.0f, 3.0f},
        {"Secondary Sinus", {0, 160, 0}, Symbol::Sphere, 5.0f, 3.0f},
        {"Secondary Peak", {255, 140, 0}, Symbol::Tetrahedron, 5.0f, 3.0f}};
    ASSERT_EQ(stack->getNumModels(), 9);
    std::vector<std::string> announced;
    for (int k = 0; k < 9; ++k) {
        const Model& model = stack->getModel(k);
        const ModelItemProperties& p = model.getItemProperties();
        EXPECT_EQ(std::tuple(model.getName(), p.getColor().toStlVector(), p.getVertexSymbol(),
                             p.getPointSize(), p.getLineWidth()),
                  rows[k])
            << model.getName();
        EXPECT_EQ(model.getProperties().getGeometry(),
                  k == 0 ? PRIMITIVE_POLYGON : PRIMITIVE_POLYPOINT);
        EXPECT_EQ(p.getVertexSymbolFilling(), k == 0);
        announced.insert(announced.end(), k == 1 ? 2 : 1, model.getName());
    }
    EXPECT_EQ(listener.names, announced);
    EXPECT_EQ(stack->getSlice(0).getNumItems(), 0);
    EXPECT_TRUE(stack->isModified());
    Stack average;
    probe.createModelApex(average);
    probe.createModelContour(average);
    EXPECT_EQ(average.findModel("Contour"), 1);
    EXPECT_EQ(&average.getModel(0), probe.apexModel);
}

TEST(ModelsManager, FoldingBringsEachSinusBackOnceAndEveryTip)
{
    const auto stack = leaf::stackOf({leafAt(0.0), leafAt(90.0), leafAt(180.0)});
    const auto add = [&](const char* name, int slice, const std::vector<double>& xs) {
        Points points;
        for (const double x : xs) {
            points.push_back({x, x});
        }
        leaf::mark(*stack, name, slice, points);
    };
    add("Primary Sinus", 0, {1, 2});
    add("Primary Distal Sinus", 0, {2, 3});
    add("Primary Peak", 0, {5});
    add("Primary Distal Peak", 0, {5, 6});
    add("Secondary Sinus", 0, {1, 3, 4});
    add("Secondary Peak", 0, {9});
    add("Primary Distal Sinus", 1, {7});
    add("Primary Distal Peak", 1, {8});
    Probe probe(*stack);
    const auto expectFolded = [&](const char* name, int slice, const std::vector<double>& xs) {
        std::vector<double> found;
        for (const Point& point : leaf::vertices(*stack, name, slice)) {
            found.push_back(point.x);
        }
        EXPECT_EQ(found, xs) << name << slice;
    };
    for (int round = 0; round < 2; ++round) { // the second time nothing is left to fold
        probe.createModelsForHierarchy();
        expectFolded("Primary Sinus", 0, {1, 2, 3, 4});
        expectFolded("Primary Peak", 0, {5, 5, 6, 9});
        expectFolded("Primary Sinus", 1, {7});
        expectFolded("Primary Peak", 1, {8});
        EXPECT_EQ(leaf::findItem(*stack, "Primary Sinus", 2), nullptr);
        EXPECT_EQ(stack->getNumModels(), 4) << "no distal and no secondary ones";
        EXPECT_EQ(stack->getSlice(0).getNumItems(), 4);
    }
}

TEST(ModelsManager, CalibratedLandmarksAreScaledAndTheOthersAreAsStored)
{
    const auto stack = leaf::emptyStack(1);
    const ModelItem& item = leaf::mark(*stack, "Apex", 0, {{3.0, -4.0}, {70.0, 5.0}});
    const Probe probe(*stack);
    EXPECT_EQ(leaf::distance(at(probe.getModelItem(item), 0), {3.0, -4.0}), 0.0);
    EXPECT_EQ(leaf::distance(at(probe.getModelItemCalibration(item, 0.25f), 1), {17.5, 1.25}), 0.0);
}
