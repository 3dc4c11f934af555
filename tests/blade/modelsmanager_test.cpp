#include "blade/modelsmanager.h"
#include "interface/lmxevent.h"
#include "support/leaf.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

using leaf::Point;
using leaf::Probe;

namespace {

std::vector<Point> polygon(int corners, double radius)
{
    std::vector<Point> points;
    for (int k = 0; k < corners; ++k) {
        const double angle = 6.283185307179586 * k / corners;
        points.push_back({500.0 + radius * std::cos(angle), 500.0 + radius * std::sin(angle)});
    }
    return points;
}

leaf::Outline leafAt(double degrees)
{
    leaf::Shape shape;
    shape.middle = {520.0, 520.0};
    shape.angleDegrees = degrees;
    return leaf::draw(shape);
}

Point vertex(const Vertices<float>& vertices, int i)
{
    return {vertices[i][0], vertices[i][1]};
}

/// The contour of the slice stored anew from another vertex, in the other sense if `turned`.
void rearrangeContour(LMXStack& stack, int slice, int origin, bool turned)
{
    std::vector<Point> points = leaf::vertices(stack, "Contour", slice);
    std::rotate(points.begin(), points.begin() + origin, points.end());
    if (turned) {
        std::reverse(points.begin(), points.end());
    }
    delete leaf::findItem(stack, "Contour", slice);
    leaf::addItem(stack, "Contour", PRIMITIVE_POLYGON, slice, points);
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

TEST(ModelsManager, ASliceWithoutItemsLeavesEveryMemberNull)
{
    const auto stack = leaf::stackOf({leafAt(0.0)});
    const auto empty = leaf::emptyStack(1);
    Probe probe(*stack);
    probe.getModels(0);
    EXPECT_NE(probe.contour, nullptr);
    EXPECT_NE(probe.petiole, nullptr);
    probe.setStack(*empty);
    probe.getModels(0);
    EXPECT_EQ(probe.contour, nullptr);
    EXPECT_EQ(probe.contourItem, nullptr);
    EXPECT_EQ(probe.petiole, nullptr);
    EXPECT_EQ(probe.apex, nullptr);
    EXPECT_EQ(probe.primarySinus, nullptr);
    EXPECT_EQ(probe.primaryPeak, nullptr);
    EXPECT_EQ(probe.apexIndex(), -1);
    EXPECT_EQ(probe.indexesPrimarySinuses().getSize(), 0);
}

TEST(ModelsManager, EachLandmarkIsReadFromItsModelAndTheLaterItemWins)
{
    const auto stack = leaf::stackOf({leafAt(0.0)});
    const char* names[] = {"Apex",
                           "Primary Sinus",
                           "Primary Peak",
                           "Primary Distal Sinus",
                           "Primary Distal Peak",
                           "primary peak"};
    for (int k = 0; k < 6; ++k) {
        leaf::addItem(*stack, names[k], PRIMITIVE_POLYPOINT, 0, {{900.0, 900.0}, {1.0, 1.0}});
        leaf::addItem(*stack, names[k], PRIMITIVE_POLYPOINT, 0, {{10.0 + k, 20.0 + k}});
    }
    Probe probe(*stack);
    probe.getModels(0);
    const Vertices<float>* lists[] = {probe.apex, probe.primarySinus, probe.primaryPeak,
                                      probe.primaryDistalSinus, probe.primaryDistalPeak};
    for (int k = 0; k < 5; ++k) {
        ASSERT_NE(lists[k], nullptr) << names[k];
        ASSERT_EQ(lists[k]->getSize(), 1) << names[k];
        EXPECT_EQ((*lists[k])[0][0], 10.0f + k);
        EXPECT_EQ((*lists[k])[0][1], 20.0f + k);
    }
    // Reading for resampling leaves the other lists alone.
    delete leaf::findItem(*stack, "Apex", 0);
    delete leaf::findItem(*stack, "Apex", 0);
    EXPECT_TRUE(probe.getModelsForResampling(0));
    EXPECT_EQ(probe.apex, nullptr);
    EXPECT_EQ(probe.primarySinus, lists[1]);
}

TEST(ModelsManager, AContourIsReadWithAboutOneVertexAPixelAndAPositiveArea)
{
    std::mt19937 generator(5);
    for (int k = 0; k < 40; ++k) {
        const auto stack = leaf::emptyStack(1);
        const int corners = 3 + static_cast<int>(generator() % 60);
        std::vector<Point> points = polygon(corners, 40.0 + generator() % 400);
        if (k % 2) {
            std::reverse(points.begin(), points.end());
        }
        leaf::addItem(*stack, "Contour", PRIMITIVE_POLYGON, 0, points);
        Probe probe(*stack);
        probe.getModels(0);
        const Curve<float>& contour = *probe.contour;
        EXPECT_GT(contour.twiceArea(0, 1), 0.0f);
        EXPECT_TRUE(contour.isClosed());
        const float length = static_cast<float>(contour.getSize());
        EXPECT_NEAR(contour.length() / length, 1.0f, 0.05f);
        for (int i = 1; i < contour.getSize(); ++i) {
            EXPECT_LT(contour[i].distance(contour[i - 1]), 1.1f);
        }
    }
}

TEST(ModelsManager, AContourNoLongerThanItsVertexCountKeepsItsVertices)
{
    const auto stack = leaf::emptyStack(2);
    std::vector<Point> square;
    for (const auto& [dx, dy] :
         {std::pair(1, 0), std::pair(0, 1), std::pair(-1, 0), std::pair(0, -1)}) {
        for (int k = 0; k < 30; ++k) {
            square.push_back(square.empty() ? Point{10.0, 10.0}
                                            : Point{square.back().x + dx, square.back().y + dy});
        }
    }
    // The walk above repeats no vertex and has a perimeter equal to its vertex count.
    leaf::addItem(*stack, "Contour", PRIMITIVE_POLYGON, 0, square);
    leaf::addItem(*stack, "Contour", PRIMITIVE_POLYGON, 1, {});
    Probe probe(*stack);
    probe.getModels(0);
    ASSERT_EQ(probe.contour->getSize(), static_cast<int>(square.size()));
    for (int i = 0; i < probe.contour->getSize(); ++i) {
        EXPECT_EQ(leaf::distance(vertex(*probe.contour, i), square[static_cast<std::size_t>(i)]),
                  0.0);
    }
    probe.getModels(1);
    EXPECT_EQ(probe.contour, nullptr);
}

TEST(ModelsManager, ApexAndPetioleAreFoundWhateverTheTurnOriginAndSenseOfTheLeaf)
{
    std::mt19937 generator(17);
    for (int k = 0; k < 36; ++k) {
        const leaf::Outline outline = leafAt(10.0 * k);
        const auto stack = leaf::stackOf({outline});
        const auto stored = leaf::vertices(*stack, "Contour", 0).size();
        rearrangeContour(*stack, 0, static_cast<int>(generator() % stored), k % 2 == 1);
        Probe probe(*stack);
        probe.getModels(0);
        probe.putPetiolesOnCurve();
        probe.putOriginContour(*probe.contour, probe.indexesPetiole()[0]);
        const Vector<int> points = probe.findPoints(*probe.contour, probe.indexesPetiole());
        const Point middle = vertex(*probe.contour, points[0]);
        const Point apex = vertex(*probe.contour, points[1]);
        EXPECT_LT(leaf::distance(apex, outline.apex), 5.0) << "turned by " << 10 * k;
        EXPECT_LT(leaf::distance(middle, outline.points.front()), 5.0) << "turned by " << 10 * k;

        probe.putOriginContour(*probe.contour, points[0]);
        const Vector<int> junctions = probe.findIndexPetiole(*probe.contour);
        EXPECT_LT(leaf::distance(vertex(*probe.contour, junctions[0]), outline.junctions[0]), 2.0);
        EXPECT_LT(leaf::distance(vertex(*probe.contour, junctions[1]), outline.junctions[1]), 2.0);
        const int count = probe.contour->getSize();
        const float length = probe.lengthLeaf(junctions, (points[1] - points[0] + count) % count);
        EXPECT_NEAR(length, 600.0f, 4.0f);
    }
}

TEST(ModelsManager, TheStoredContourIsTheCurveTruncatedAndTurnedToItsNewOrigin)
{
    const auto stack = leaf::stackOf({leafAt(33.0)});
    Probe probe(*stack);
    probe.getModels(0);
    Curve<float>& contour = *probe.contour;
    const Point start = vertex(contour, 700);
    Listener listener;
    probe.putOriginContour(contour, 700);
    EXPECT_EQ(listener.changes, 1);
    EXPECT_EQ(leaf::distance(vertex(contour, 0), start), 0.0);
    const std::vector<Point> stored = leaf::vertices(*stack, "Contour", 0);
    ASSERT_EQ(static_cast<int>(stored.size()), contour.getSize());
    for (int i = 0; i < contour.getSize(); ++i) {
        EXPECT_EQ(stored[static_cast<std::size_t>(i)].x, std::trunc(contour[i][0]));
        EXPECT_EQ(stored[static_cast<std::size_t>(i)].y, std::trunc(contour[i][1]));
    }
    // Read back, it is resampled by its own length, from the same vertex 0 on.
    probe.getModels(0);
    EXPECT_NEAR(probe.contour->getSize(), static_cast<double>(stored.size()), 60.0);
    EXPECT_LT(leaf::distance(vertex(*probe.contour, 0), start), 1.5);
}

TEST(ModelsManager, LandmarksPutOnTheContourAreItsVerticesTruncated)
{
    std::mt19937 generator(23);
    std::uniform_real_distribution<double> shift(-6.0, 6.0);
    for (int k = 0; k < 12; ++k) {
        const leaf::Outline outline = leafAt(30.0 * k);
        const auto stack = leaf::stackOf({outline});
        std::vector<Point> sinuses = outline.sinuses;
        std::shuffle(sinuses.begin(), sinuses.end(), generator);
        for (Point& point : sinuses) {
            point = {point.x + shift(generator), point.y + shift(generator)};
        }
        leaf::addItem(*stack, "Primary Sinus", PRIMITIVE_POLYPOINT, 0, sinuses);
        Probe probe(*stack);
        probe.getModels(0);
        probe.putPetiolesOnCurve();
        probe.putSinusOnCurve();
        const Vector<int> petiole = probe.findIndexPetiole(*probe.contour);
        const Vector<int> places = probe.indexesPrimarySinuses();
        const std::vector<Point> storedPetiole = leaf::vertices(*stack, "Petiole", 0);
        const std::vector<Point> storedSinuses = leaf::vertices(*stack, "Primary Sinus", 0);
        ASSERT_EQ(storedSinuses.size(), sinuses.size());
        for (std::size_t i = 0; i < sinuses.size(); ++i) {
            const Point on = vertex(*probe.contour, places[static_cast<int>(i)]);
            EXPECT_EQ(storedSinuses[i].x, std::trunc(on.x));
            EXPECT_EQ(storedSinuses[i].y, std::trunc(on.y));
            EXPECT_LE(leaf::distance(on, sinuses[i]), 9.5);
        }
        EXPECT_LT(petiole[0], petiole[1]);
        for (int i = 0; i < 2; ++i) {
            EXPECT_EQ(storedPetiole[static_cast<std::size_t>(i)].x,
                      std::trunc((*probe.contour)[petiole[i]][0]));
        }
    }
}

TEST(ModelsManager, OnAPlateauOfTruncatedDistancesTheFirstVertexIsTheApex)
{
    const auto stack = leaf::emptyStack(1);
    Probe probe(*stack);
    // Vertices 2, 3 and 4 are 10.0, 10.4 and 10.9 from the middle (0, 0) of vertices 0 and 5.
    Curve<float> curve(2, 6, 0, 0, false);
    const float coordinates[6][2] = {{-4.0f, 0.0f},  {-3.0f, 5.0f}, {-6.0f, 8.0f},
                                     {-3.0f, 10.0f}, {3.0f, 10.0f}, {4.0f, 0.0f}};
    for (int i = 0; i < 6; ++i) {
        curve[i][0] = coordinates[i][0];
        curve[i][1] = coordinates[i][1];
    }
    EXPECT_EQ(probe.findIndexMaxDistance(curve, 0, 5), 2);
    EXPECT_EQ(probe.findIndexMaxDistance(curve, 3, 3), 0);
}

TEST(ModelsManager, OfEqualAreasThePartOfHigherIndicesIsTheBlade)
{
    const auto stack = leaf::emptyStack(1);
    Probe probe(*stack);
    // A square of side 4 whose vertices 0 to 7 and 8 to 15 are congruent halves.
    const Curve<float> square = Curve<float>::square(0.0f, 0.0f, 4.0f).resample(16);
    Vector<int> junctions(2);
    junctions[0] = 0;
    junctions[1] = 7;
    const Vector<int> points = probe.findPoints(square, junctions);
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

    struct Row
    {
        const char* name;
        std::vector<int> colour;
        VertexSymbol symbol;
        float pointSize;
        float lineWidth;
    };

    using Symbol = VertexSymbol;
    const Row rows[] = {{"Contour", {0, 0, 255}, Symbol::Sphere, 1.0f, 3.0f},
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
        const ModelItemProperties& properties = model.getItemProperties();
        EXPECT_EQ(model.getName(), rows[k].name);
        EXPECT_EQ(model.getProperties().getGeometry(),
                  k == 0 ? PRIMITIVE_POLYGON : PRIMITIVE_POLYPOINT);
        EXPECT_EQ(properties.getColor().toStlVector(), rows[k].colour) << rows[k].name;
        EXPECT_EQ(properties.getVertexSymbol(), rows[k].symbol) << rows[k].name;
        EXPECT_EQ(properties.getPointSize(), rows[k].pointSize) << rows[k].name;
        EXPECT_EQ(properties.getLineWidth(), rows[k].lineWidth) << rows[k].name;
        EXPECT_EQ(properties.getVertexSymbolFilling(), k == 0) << rows[k].name;
        announced.insert(announced.end(), k == 1 ? 2 : 1, rows[k].name);
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

TEST(ModelsManager, AnApexIsStoredTruncatedAndAnnounced)
{
    const auto stack = leaf::stackOf({leafAt(45.0)});
    leaf::addItem(*stack, "Apex", PRIMITIVE_POLYPOINT, 0, {});
    Probe probe(*stack);
    probe.getModels(0);
    const Listener listener;
    probe.addApex(321);
    const std::vector<Point> stored = leaf::vertices(*stack, "Apex", 0);
    ASSERT_EQ(stored.size(), 1u);
    EXPECT_EQ(stored[0].x, std::trunc((*probe.contour)[321][0]));
    EXPECT_EQ(stored[0].y, std::trunc((*probe.contour)[321][1]));
    EXPECT_EQ(listener.items, 1);
}

TEST(ModelsManager, FoldingBringsEachSinusBackOnceAndEveryTip)
{
    const auto stack = leaf::stackOf({leafAt(0.0), leafAt(90.0), leafAt(180.0)});
    const auto add = [&](const char* name, int slice, const std::vector<Point>& points) {
        leaf::addItem(*stack, name, PRIMITIVE_POLYPOINT, slice, points);
    };
    add("Primary Sinus", 0, {{1.0, 1.0}, {2.0, 2.0}});
    add("Primary Distal Sinus", 0, {{2.0, 2.0}, {3.0, 3.0}});
    add("Primary Peak", 0, {{5.0, 5.0}});
    add("Primary Distal Peak", 0, {{5.0, 5.0}, {6.0, 6.0}});
    add("Secondary Sinus", 0, {{1.0, 1.0}, {3.0, 3.0}, {4.0, 4.0}});
    add("Secondary Peak", 0, {{9.0, 9.0}});
    add("Primary Distal Sinus", 1, {{7.0, 7.0}});
    add("Primary Distal Peak", 1, {{8.0, 8.0}});
    Probe probe(*stack);
    probe.createModelsForHierarchy();

    const auto xs = [&](const char* name, int slice) {
        std::vector<double> result;
        for (const Point& point : leaf::vertices(*stack, name, slice)) {
            result.push_back(point.x);
        }
        return result;
    };
    EXPECT_EQ(xs("Primary Sinus", 0), (std::vector<double>{1.0, 2.0, 3.0, 4.0}));
    EXPECT_EQ(xs("Primary Peak", 0), (std::vector<double>{5.0, 5.0, 6.0, 9.0}));
    EXPECT_EQ(xs("Primary Sinus", 1), (std::vector<double>{7.0}));
    EXPECT_EQ(xs("Primary Peak", 1), (std::vector<double>{8.0}));
    EXPECT_EQ(leaf::findItem(*stack, "Primary Sinus", 2), nullptr);
    EXPECT_EQ(stack->findModel("Primary Distal Sinus"), -1);
    EXPECT_EQ(stack->findModel("Primary Distal Peak"), -1);
    EXPECT_EQ(stack->findModel("Secondary Sinus"), -1);
    EXPECT_EQ(stack->findModel("Secondary Peak"), -1);
    EXPECT_EQ(stack->getSlice(0).getNumItems(), 4);
    // A second folding finds nothing left to fold.
    probe.createModelsForHierarchy();
    EXPECT_EQ(xs("Primary Sinus", 0), (std::vector<double>{1.0, 2.0, 3.0, 4.0}));
    EXPECT_EQ(xs("Primary Peak", 0), (std::vector<double>{5.0, 5.0, 6.0, 9.0}));
}

TEST(ModelsManager, CalibratedLandmarksAreScaledAndTheOthersAreAsStored)
{
    const auto stack = leaf::emptyStack(1);
    const ModelItem& item =
        leaf::addItem(*stack, "Apex", PRIMITIVE_POLYPOINT, 0, {{3.0, -4.0}, {70.0, 5.0}});
    Probe probe(*stack);
    const Vertices<float> plain = probe.getModelItem(item);
    const Vertices<float> scaled = probe.getModelItemCalibration(item, 0.25f);
    EXPECT_EQ(leaf::distance(vertex(plain, 0), {3.0, -4.0}), 0.0);
    EXPECT_EQ(leaf::distance(vertex(scaled, 0), {0.75, -1.0}), 0.0);
    EXPECT_EQ(leaf::distance(vertex(scaled, 1), {17.5, 1.25}), 0.0);
}
