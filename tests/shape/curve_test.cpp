#include "shape/curve.h"
#include "shape/edge.h"
#include "support/curves.h"
#include "support/errors.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

/// Turns of the closed curve around the point, by summing angles: another method than the curve's.
int windingNumber(const Curve<double>& curve, double x, double y)
{
    double turns = 0;
    for (int i = 0; i < curve.getSize(); ++i) {
        const Vector<double>& a = curve[i];
        const Vector<double>& b = curve[(i + 1) % curve.getSize()];
        const double ax = a[0] - x;
        const double ay = a[1] - y;
        const double bx = b[0] - x;
        const double by = b[1] - y;
        turns += std::atan2(ax * by - ay * bx, ax * bx + ay * by);
    }
    return static_cast<int>(std::lround(turns / (2 * M_PI)));
}

/// Crossings of integer segments by signs of areas, in exact arithmetic.
bool crossExactly(const Vector<int>& a,
                  const Vector<int>& b,
                  const Vector<int>& c,
                  const Vector<int>& d)
{
    const auto side = [](const Vector<int>& p, const Vector<int>& q, const Vector<int>& r) {
        const long long area = static_cast<long long>(q[0] - p[0]) * (r[1] - p[1]) -
                               static_cast<long long>(q[1] - p[1]) * (r[0] - p[0]);
        return area > 0 ? 1 : area < 0 ? -1 : 0;
    };
    const bool parallel = static_cast<long long>(b[0] - a[0]) * (d[1] - c[1]) ==
                          static_cast<long long>(b[1] - a[1]) * (d[0] - c[0]);
    return !parallel && side(a, b, c) * side(a, b, d) <= 0 && side(c, d, a) * side(c, d, b) <= 0;
}

} // namespace

TEST(Curve, RegularPolygonsHaveTheirClosedForms)
{
    for (const int n : {3, 4, 7, 100}) {
        Curve<double> polygon = regularPolygon<double>(n, 2);
        const double length = n * 4 * std::sin(M_PI / n);
        const double twiceArea = n * 4 * std::sin(2 * M_PI / n);
        EXPECT_NEAR(polygon.length(), length, 1e-12 * length);
        EXPECT_NEAR(polygon.twiceArea(0, 1), twiceArea, 1e-12 * twiceArea);
        EXPECT_FALSE(polygon.isClockwise(0, 1));
        EXPECT_TRUE(polygon.isClockwise(1, 0));
        EXPECT_FALSE(polygon.selfIntersects(0, 1));
        // Inward normals point to the centre.
        const Vertices<double> normals = polygon.normals(0, 1);
        for (int i = 0; i < n; ++i) {
            EXPECT_NEAR(normals[i].distance(polygon[i] * -0.5), 0, 1e-12);
        }
        polygon.setOpen(true);
        EXPECT_NEAR(polygon.length(), length * (n - 1) / n, 1e-12 * length);
        EXPECT_EQ(polygon.twiceArea(0, 1), 0);
        EXPECT_FALSE(polygon.contains(vectorOf<double>({0, 0}), 0, 1));
    }
}

TEST(Curve, ReversingNegatesTwiceAreaAndTurningKeepsIt)
{
    std::mt19937 engine(31);
    for (int round = 0; round < 20; ++round) {
        Curve<double> star = randomStar<double>(3 + round, 10, engine);
        const double area = star.twiceArea(0, 1);
        const double length = star.length();
        star.setOrigin(round % star.getSize());
        EXPECT_NEAR(star.twiceArea(0, 1), area, 1e-11);
        EXPECT_NEAR(star.length(), length, 1e-11);
        star.setClockwise(false, 0, 1);
        EXPECT_NEAR(star.twiceArea(0, 1), area, 1e-11);
        star.setClockwise(true, 0, 1);
        EXPECT_NEAR(star.twiceArea(0, 1), -area, 1e-11);
        const std::vector<double> clockwise = coordinatesOf(star);
        star.setClockwise(true, 0, 1);
        EXPECT_EQ(coordinatesOf(star), clockwise);
    }
    // Far from the origin the products need more digits than a float has.
    EXPECT_EQ(Curve<float>::square(10000001, 10000003, 2).twiceArea(0, 1), 8);
    EXPECT_EQ(Curve<int>::square(0, 0, 60000).projectedAreaSign(0, 1), 1);
    Curve<float> flat = curveOf<float>({{0, 0}, {1e-4f, 0}, {0, 1e-4f}}, false);
    EXPECT_EQ(flat.projectedAreaSign(0, 1), 0);
    flat.setClockwise(true, 0, 1);
    EXPECT_EQ(flat[1][0], 1e-4f);
}

TEST(Curve, SmallCurvesHaveLengthAndEdgesAsTheirFlagTells)
{
    EXPECT_EQ(Curve<float>().length(), 0);
    EXPECT_EQ(curveOf<float>({{3, 4}}, false).length(), 0);
    Curve<float> pair = curveOf<float>({{0, 0}, {3, 4}}, false);
    EXPECT_EQ(pair.length(), 10);
    int edges = 0;
    for (auto walk = pair.edgeIterator(); walk->current() != nullptr; (*walk)++) {
        EXPECT_EQ(walk->current()->length(), 5);
        ++edges;
    }
    EXPECT_EQ(edges, 2);
    EXPECT_EQ(curveOf<float>({{3, 4}}, false).edgeIterator()->current(), nullptr);
    EXPECT_EQ(Vertices<float>(2, 2, 0, 0).edgeIterator()->current(), nullptr);
    EXPECT_THROW(Curve<int>::square(0, 0, 1).length(), TypeError);
}

TEST(Curve, ContainsWhatItWindsAround)
{
    std::mt19937 engine(32);
    for (int round = 0; round < 20; ++round) {
        const Curve<double> star = randomStar<double>(3 + 2 * round, 1, engine);
        for (int i = 0; i < 50; ++i) {
            const Vector<double> point = randomVector<double>(2, engine) * 1.5;
            EXPECT_EQ(star.contains(point, 0, 1), windingNumber(star, point[0], point[1]) != 0);
        }
        EXPECT_TRUE(star.containsAll(star, 0, 1));
    }
    // A half line through a vertex crosses it once.
    const Curve<double> diamond = curveOf<double>({{0, -1}, {1, 0}, {0, 1}, {-1, 0}}, false);
    EXPECT_TRUE(diamond.contains(vectorOf<double>({0, 0}), 0, 1));
    EXPECT_FALSE(diamond.contains(vectorOf<double>({-2, 0}), 0, 1));
    EXPECT_FALSE(diamond.contains(vectorOf<double>({-2, 1}), 0, 1));
    EXPECT_FALSE(diamond.contains(vectorOf<double>({2, 0}), 0, 1));
    const Curve<double> outer = Curve<double>::square(0, 0, 10);
    EXPECT_TRUE(outer.contains(Curve<double>::square(3, 4, 2), 0, 1));
    EXPECT_FALSE(outer.contains(Curve<double>::square(8, 4, 5), 0, 1));
    EXPECT_FALSE(outer.contains(Curve<double>::square(-5, 4, 2), 0, 1));
}

TEST(Curve, CrossingsAgreeWithExactOrientationTests)
{
    std::mt19937 engine(33);
    int crossings = 0;
    for (int round = 0; round < 200; ++round) {
        // A small grid makes touching, shared ends and overlaps frequent.
        const Curve<int> a = randomCurve<int>(2 + round % 5, 5, round % 2 == 0, engine);
        const Curve<int> b = randomCurve<int>(2 + round % 4, 5, round % 3 == 0, engine);
        std::vector<int> expected;
        bool self = false;
        const int edges = a.isOpen() ? a.getSize() - 1 : a.getSize();
        const int others = b.isOpen() ? b.getSize() - 1 : b.getSize();
        for (int i = 0; i < edges; ++i) {
            const Vector<int>& end = a[(i + 1) % a.getSize()];
            for (int j = 0; j < others; ++j) {
                if (crossExactly(a[i], end, b[j], b[(j + 1) % b.getSize()])) {
                    expected.push_back(i);
                }
            }
            for (int j = 0; j < edges; ++j) {
                const int apart = std::abs(i - j);
                const bool neighbours = apart < 2 || (a.isClosed() && apart == edges - 1);
                self = self ||
                       (!neighbours && crossExactly(a[i], end, a[j], a[(j + 1) % a.getSize()]));
            }
        }
        EXPECT_EQ(a.intersectionIndexes(b, 0, 1), expected);
        EXPECT_EQ(a.intersects(b, 0, 1), !expected.empty());
        EXPECT_EQ(a.selfIntersects(0, 1), self);
        crossings += static_cast<int>(expected.size());
    }
    EXPECT_GT(crossings, 100);
    EXPECT_TRUE(curveOf<int>({{0, 0}, {2, 2}, {2, 0}, {0, 2}}, false).selfIntersects(0, 1));
}

TEST(Curve, ClosestPointIsNearerThanAnySample)
{
    std::mt19937 engine(34);
    for (int round = 0; round < 30; ++round) {
        const Curve<double> curve =
            randomCurve<double>(2 + round % 6, 1, round % 2 == 0, engine, 3);
        const Vector<double> point = randomVector<double>(3, engine);
        Vector<double> nearest;
        int edge = -1;
        const double distance = curve.closestPoint(point, nearest, &edge);
        EXPECT_NEAR(distance, nearest.distance(point), 1e-14);
        double smallest = 100;
        int index = 0;
        for (auto walk = curve.edgeIterator(); walk->current() != nullptr; (*walk)++, ++index) {
            const Vector<double>& a = (*walk->current())[0];
            const Vector<double>& b = (*walk->current())[1];
            for (int i = 0; i <= 1000; ++i) {
                smallest = std::min(smallest, (a + (b - a) * (i / 1000.0)).distance(point));
            }
            if (index == edge) {
                EXPECT_NEAR(a.distance(nearest) + nearest.distance(b), a.distance(b), 1e-12);
            }
        }
        EXPECT_LE(distance, smallest + 1e-14);
        EXPECT_GE(distance, smallest - 2e-3);
    }
    Vector<double> untouched = vectorOf<double>({7, 7});
    EXPECT_TRUE(std::isnan(curveOf<double>({{1, 1}}, false).closestPoint(untouched, untouched)));
    EXPECT_EQ(untouched[0], 7);
    // Coincident neighbours are an edge like any other.
    const Curve<double> twins = curveOf<double>({{1, 1}, {1, 1}}, true);
    EXPECT_EQ(twins.closestPoint(vectorOf<double>({4, 5}), untouched), 5);
}

TEST(Edge, TellsWhereAPointFallsAlongIt)
{
    const Curve<double> line = curveOf<double>({{1, 1}, {3, 1}}, true);
    const Edge<double> edge(line, 0, 1);
    Vector<double> q;
    EXPECT_EQ(edge.closestPoint(vectorOf<double>({6, 9}), q), 2.5);
    EXPECT_EQ(q, line[1]);
    EXPECT_EQ(edge.closestPoint(vectorOf<double>({0, 0}), q), -0.5);
    EXPECT_EQ(q, line[0]);
    EXPECT_EQ(edge.closestPoint(vectorOf<double>({2, 5}), q), 0.5);
    EXPECT_EQ(q, vectorOf<double>({2, 1}));
}

TEST(Edge, MeetsPlanesInNothingAPointOrItself)
{
    Edge<double> edge(3);
    edge[0] = vectorOf<double>({0, 0, 1});
    edge[1] = vectorOf<double>({4, 0, 3});
    const Vector<double> up = vectorOf<double>({0, 0, 1});
    Vector<double> q;
    EXPECT_EQ(edge.intersects(up, 1.5, q), 1);
    EXPECT_EQ(q, vectorOf<double>({1, 0, 1.5}));
    EXPECT_EQ(edge.intersects(up, 3, q), 1);
    EXPECT_EQ(q, edge[1]);
    EXPECT_EQ(edge.intersects(up, 3.5, q), 0);
    EXPECT_EQ(edge.intersects(vectorOf<double>({0, 1, 0}), 0, q), 2);
    EXPECT_EQ(q, edge[0]);
    EXPECT_EQ(edge.intersects(vectorOf<double>({0, 1, 0}), 1, q), 0);
    Vector<int> whole;
    EXPECT_RAISES(TypeError, "int Edge<int>::intersects(...)",
                  "Method not available for type 'int'",
                  Edge<int>(3).intersects(Vector<int>(3), 0, whole));
}

TEST(Edge, CrossesSegmentsAndLinesInThePlaneAskedFor)
{
    const Curve<double> points =
        curveOf<double>({{0, 9, 0}, {4, 9, 4}, {4, 9, 0}, {3, 9, 1}, {8, 9, 8}, {1, 9, 1}}, true);
    const Edge<double> diagonal(points, 0, 1);
    const Edge<double> shortOne(points, 2, 3);
    Vector<double> q;
    EXPECT_FALSE(diagonal.projectionIntersects(shortOne, 0, 2, &q));
    EXPECT_TRUE(diagonal.projectionIntersectsLine(shortOne, 0, 2, &q));
    EXPECT_EQ(q, vectorOf<double>({2, 2}));
    EXPECT_FALSE(diagonal.projectionIntersects(Edge<double>(points, 5, 4), 0, 2));
    EXPECT_TRUE(diagonal.projectionIntersects(Edge<double>(points, 1, 2), 0, 2, &q));
    EXPECT_EQ(q, vectorOf<double>({4, 4}));
}

TEST(Curve, SplitsIntoDetachedPieces)
{
    Curve<int> line(1, 10, 0, 0, true);
    for (int i = 0; i < 10; ++i) {
        line[i].fill(i);
    }
    const std::vector<Curve<int>> pieces = line.split({1, 3, 5, 9});
    ASSERT_EQ(pieces.size(), 3u);
    EXPECT_EQ(coordinatesOf(pieces[0]), (std::vector<int>{0, 1, 3, 4, 5, 9}));
    EXPECT_EQ(coordinatesOf(pieces[1]), (std::vector<int>{1, 2, 3, 4}));
    EXPECT_EQ(coordinatesOf(pieces[2]), (std::vector<int>{5, 6, 7, 8, 9}));
    line[1].fill(99);
    EXPECT_EQ(pieces[1][0][0], 1);
    EXPECT_THROW(line.split({1}), ValueError);
    EXPECT_THROW(line.split({3, 1}), ValueError);
    EXPECT_THROW(line.split({1, 10}), ValueError);

    const Curve<int> square = Curve<int>::square(0, 0, 4);
    const Curve<int> cut = curveOf<int>({{2, -1}, {2, 5}}, true);
    const std::vector<Curve<int>> halves = square.split(cut, 0, 1);
    ASSERT_EQ(halves.size(), 2u);
    EXPECT_EQ(coordinatesOf(halves[1]), (std::vector<int>{0, 0, 4, 0, 4, 4, 0, 4}));
}

TEST(Curve, JoinsAHoleAgainstItsOutline)
{
    const Curve<double> outline = Curve<double>::square(0, 0, 10);
    const Curve<double> hole = Curve<double>::square(1, 1, 2);
    for (const Curve<double>& joined : {outline.join(hole), hole.join(outline)}) {
        EXPECT_EQ(joined.getSize(), 10);
        EXPECT_EQ(joined.twiceArea(0, 1), 200 - 8);
    }
    const Curve<double> beside = Curve<double>::square(20, 0, 2);
    EXPECT_EQ(outline.join(beside).twiceArea(0, 1), 200 + 8);
    const Curve<double> bare = outline.join(beside, 1, 0, false, false);
    EXPECT_EQ(coordinatesOf(bare),
              (std::vector<double>{0, 0, 10, 0, 22, 0, 22, 2, 20, 2, 20, 0, 10, 10, 0, 10}));
    EXPECT_THROW(outline.join(beside, 4, 0, true, true), RangeError);
}
