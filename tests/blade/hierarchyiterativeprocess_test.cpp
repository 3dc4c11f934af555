#include "blade/hierarchy/hierarchyiterativeprocess.h"
#include "support/labelledleaf.h"
#include "support/vectors.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <map>

using leaf::at;
using leaf::Point;

namespace {

/// A process that has read a leaf in working order.
class Iterative : public HierarchyIterativeProcess
{
public:
    Iterative(const leaf::Outline& outline, float share)
        : owned(leaf::landmarkedStack({outline}))
    {
        setStack(*owned);
        setTolerance(share);
        std::string report;
        checkLeaves(0, report);
        EXPECT_EQ(report, "");
        getModels(0);
    }

    using ModelsManager::contour;
    using ModelsManager::primarySinus;

    std::unique_ptr<LMXStack> owned;
};

/// The angle from the direction to `next` on to that to `previous`, in degrees.
double blade(const Point& centre, const Point& previous, const Point& next)
{
    const double turn = std::atan2(previous.y - centre.y, previous.x - centre.x) -
                        std::atan2(next.y - centre.y, next.x - centre.x);
    return std::fmod(turn * 180.0 / M_PI + 720.0, 360.0);
}

/// The rounds of demotion said anew on lists of the sinuses that are left, in double precision.
std::vector<Point>
demoted(const Iterative& process, const Curve<float>& smooth, int h, double share)
{
    struct Sinus
    {
        Point place;
        double smooth;
    };

    std::vector<Sinus> halves[2];
    Vector<int> onSmooth = process.indexesPrimarySinuses(smooth);
    onSmooth.sort();
    std::map<int, Point> places; // in the order of the contour
    for (int k = 0; k < onSmooth.getSize(); ++k) {
        places[process.indexesPrimarySinuses()[k]] = at(*process.primarySinus, k);
    }
    int column = 0;
    for (const auto& [index, place] : places) {
        const int n = smooth.getSize();
        const int i = onSmooth[column++];
        halves[index < process.apexIndex() ? 0 : 1].push_back(
            {place, blade(at(smooth, i), at(smooth, (i - h + n) % n), at(smooth, (i + h) % n))});
    }
    std::vector<Point> fallen;
    for (;;) {
        double smallest = 1000.0;
        std::vector<Sinus>* side = nullptr;
        std::size_t position = 0;
        for (std::vector<Sinus>& half : halves) {
            for (std::size_t k = 1; k + 1 < half.size(); ++k) {
                const double difference =
                    blade(half[k].place, half[k - 1].place, half[k + 1].place) - half[k].smooth;
                if (difference < -(half[k].smooth * share) && difference < smallest) {
                    smallest = difference;
                    side = &half;
                    position = k;
                }
            }
        }
        if (!side) {
            return fallen;
        }
        fallen.push_back((*side)[position].place);
        side->erase(side->begin() + static_cast<std::ptrdiff_t>(position));
    }
}

} // namespace

TEST(HierarchyIterativeProcess, AnglesAreThoseOfTheBladeUpToAFullTurn)
{
    const HierarchyIterativeProcess process;
    const auto point = [](double x, double y) { return vectorOf<float>({float(x), float(y)}); };
    EXPECT_NEAR(process.calculCurvature(point(0, 0), point(-3, 0), point(5, 0)), 180.0f, 1e-4);
    EXPECT_TRUE(std::isnan(process.calculCurvature(point(1, 1), point(1, 1), point(5, 0))));
    for (int degrees = 1; degrees < 360; degrees += 7) {
        const double t = degrees * M_PI / 180.0;
        for (const double turned : {0.0, 0.7, 3.0}) {
            const Vector<float> centre = point(40.0, -20.0);
            const Vector<float> next = centre + point(9 * std::cos(turned), 9 * std::sin(turned));
            const Vector<float> previous =
                centre + point(4 * std::cos(turned + t), 4 * std::sin(turned + t));
            EXPECT_NEAR(process.calculCurvature(centre, previous, next), degrees, 0.05);
        }
    }
    // The first corner of a square with a positive area is a bulge.
    const Curve<float> square = Curve<float>::square(0.0f, 0.0f, 8.0f);
    EXPECT_NEAR(process.calculCurvature(square[1], square[0], square[2]), 90.0f, 1e-4);
}

TEST(HierarchyIterativeProcess, TheSmoothBladeIsTheSumOfTheSlowFrequenciesOfHalfTheFidelity)
{
    const Iterative process(leaf::drawTeethOnTeeth(false).outline, 0.3f);
    const Curve<float> smooth = process.createSmoothBlade();
    const int n = process.contour->getSize();
    ASSERT_EQ(smooth.getSize(), n);

    using Complex = std::complex<double>;
    std::vector<Complex> spectrum(static_cast<std::size_t>(n));
    double total = 0.0;
    for (int k = 0; k < n; ++k) {
        Complex sum = 0.0;
        for (int i = 0; i < n; ++i) {
            const Point p = at(*process.contour, i);
            sum += Complex(p.x, p.y) * std::polar(1.0, -2.0 * M_PI * (long(k) * i % n) / n);
        }
        spectrum[static_cast<std::size_t>(k)] = sum / double(n);
        total += k > 0 ? std::abs(sum) / n : 0.0;
    }
    const auto element = [&](int k) { return spectrum[static_cast<std::size_t>((k + n) % n)]; };
    int count = 0;
    for (double sum = 0.0; sum < total / 2.0;) {
        ++count;
        sum += std::abs(element(count)) + std::abs(element(-count));
    }
    count = std::max(count, 2);
    for (int i = 0; i < n; i += 13) {
        Complex place = 0.0;
        for (int k = -count; k <= count; ++k) {
            place += element(k) * std::polar(1.0, 2.0 * M_PI * k * i / n);
        }
        EXPECT_LT(leaf::distance(at(smooth, i), {place.real(), place.imag()}), 0.02);
    }
    EXPECT_GT(leaf::distance(at(*process.contour, 0), at(smooth, 0)), 1.0)
        << "the contour itself stays";
}

TEST(HierarchyIterativeProcess, SinusesFallAsTheRoundsSayOnRandomLeaves)
{
    std::size_t all = 0;
    for (unsigned seed = 1; seed <= 40; ++seed) {
        SCOPED_TRACE(seed);
        leaf::Outline outline = leaf::drawRandomTeeth(seed).outline;
        std::mt19937 random(seed);
        std::shuffle(outline.sinuses.begin(), outline.sinuses.end(), random);
        if (outline.tips.empty()) {
            continue;
        }
        const float share = 0.05f + 0.01f * static_cast<float>(seed);
        Iterative process(outline, share);
        const Curve<float> smooth = process.createSmoothBlade().resample(1500);
        const int h = 5 + static_cast<int>(seed);
        const std::vector<Point> expected = demoted(process, smooth, h, share);
        const Vertices<float> secondary = process.computeToothHierarchy(smooth, h);
        std::vector<Point> found;
        for (int k = 0; k < secondary.getSize(); ++k) {
            found.push_back(at(secondary, k));
        }
        EXPECT_TRUE(leaf::samePlaces(found, expected, 0.0));
        all += found.size();
    }
    EXPECT_GT(all, 30u);
}

TEST(HierarchyIterativeProcess, OneSinusFallsARoundAndTheProtectedOnesNever)
{
    HierarchyIterativeProcess process;
    process.setTolerance(0.1f);
    Matrix<float> table(4, 8); // a lower half of five: columns 0, 4, 5 and 7 are protected
    for (int k = 0; k < 8; ++k) {
        table[1][k] = 180.0f;
        table[2][k] = k == 6 ? -17.0f : -90.0f;
        table[3][k] = 1.0f;
    }
    table[2][4] = table[2][0] = -150.0f;
    table[2][1] = std::nanf("");
    std::vector<int> order;
    for (int round = 0; round < 4; ++round) {
        const Vector<float> before = table[3];
        process.removeSecondarySinus(table, 4);
        for (int k = 0; k < 8; ++k) {
            if (before[k] != table[3][k]) {
                order.push_back(k);
            }
        }
    }
    EXPECT_EQ(order, (std::vector<int>{2, 3})) << "the first of equals falls first";
    EXPECT_EQ(process.previousSinus(table, 4), 1);
    EXPECT_EQ(process.nextSinus(table, 1), 4);
}

TEST(HierarchyIterativeProcess, OfTheTipsBetweenTwoPrimarySinusesTheFarthestIsPrimary)
{
    const leaf::LabelledLeaf drawn = leaf::drawTeethOnTeeth(false);
    Iterative process(drawn.outline, 0.2f);
    process.createModelsForHierarchy();
    process.createModelSecondarySinus();
    process.createModelSecondaryPeaks();
    process.getModels(0);
    process.createModelsItemsSecondary(0);
    Vertices<float> secondary(2, 0, 0, 4);
    const int sinuses = process.primarySinus->getSize();
    for (int k = 0; k < sinuses; ++k) {
        if (leaf::distance(at(*process.primarySinus, k), drawn.secondarySinuses[0]) < 3) {
            secondary.append((*process.primarySinus)[k]);
        }
    }
    ASSERT_EQ(secondary.getSize(), 1);
    process.updateSecondaryStructure(secondary);
    EXPECT_EQ(process.primarySinus->getSize(), sinuses - 1);
    Matrix<int> table = process.buildMatrix();
    process.computeProjectionOnMatrix(table);
    ASSERT_EQ(table.getSize1(), 15);
    const int codes[] = {0, 1, 2, 1, 0, 1, 0, 3, 0, 1, 0, 1, 0, 1, 0};
    for (int k = 0; k < 15; ++k) {
        EXPECT_EQ(table[k][1], codes[k]) << k;
        EXPECT_EQ(table[k][2] > 0, table[k][1] == 1) << k;
    }
    // From the corners as they were drawn: (80, 148) and (180, 200) to the middle of (60, 100) and
    // (260, 110).
    EXPECT_NEAR(table[1][2], std::hypot(80.0, 43.0), 3.0);
    EXPECT_NEAR(table[3][2], std::hypot(20.0, 95.0), 3.0);
    process.updatePeaks();
    EXPECT_TRUE(leaf::samePlaces(leaf::vertices(*process.owned, "Secondary Peak", 0),
                                 {drawn.secondaryTips[0]}, 3));
    EXPECT_EQ(leaf::vertices(*process.owned, "Primary Peak", 0).size(), 5u);
}
