#include "shape/curves/edge.h"
#include "support/curves.h"
#include "support/errors.h"

#include <algorithm>
#include <complex>

namespace {

using Place = std::complex<double>;

Place place(const Vector<double>& point)
{
    return {point[0], point[1]};
}

/// Turns of the closed curve around the point, by summing angles: another method than the curve's.
long windingNumber(const Curve<double>& curve, Place p)
{
    double turns = 0;
    for (int i = 0; i < curve.getSize(); ++i) {
        turns += std::arg((place(curve[(i + 1) % curve.getSize()]) - p) *
                          std::conj(place(curve[i]) - p));
    }
    return std::lround(turns / (2 * M_PI));
}

/// Crossings of edges of integer curves by signs of areas, in exact arithmetic.
bool crossExactly(const Curve<int>& one, int i, const Curve<int>& other, int j)
{
    const auto cross = [](const Vector<int>& u, const Vector<int>& v) {
        const int area = u[0] * v[1] - u[1] * v[0];
        return area > 0 ? 1 : area < 0 ? -1 : 0;
    };
    const Vector<int>& a = one[i];
    const Vector<int>& c = other[j];
    const Vector<int> u = one[(i + 1) % one.getSize()] - a;
    const Vector<int> v = other[(j + 1) % other.getSize()] - c;
    return cross(u, v) != 0 && cross(u, c - a) * cross(u, c + v - a) <= 0 &&
           cross(v, a - c) * cross(v, a + u - c) <= 0;
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
    Curve<float> flat = Curve<float>::square(0, 0, 1e-4f);
    EXPECT_EQ(flat.projectedAreaSign(0, 1), 0);
    flat.setClockwise(true, 0, 1);
    EXPECT_EQ(flat[1][0], 1e-4f);
}

TEST(Curve, SmallCurvesHaveLengthAndEdgesAsTheirFlagTells)
{
    EXPECT_EQ(Curve<float>().length(), 0);
    const Curve<float> point = curveOf<float>({{3, 4}}, false);
    EXPECT_EQ(point.length(), 0);
    EXPECT_EQ(point.edgeIterator()->current(), nullptr);
    const Curve<float> pair = curveOf<float>({{0, 0}, {3, 4}}, false);
    EXPECT_EQ(pair.length(), 10);
    int edges = 0;
    for (auto walk = pair.edgeIterator(); walk->current() != nullptr; (*walk)++, ++edges) {
        EXPECT_EQ(walk->current()->length(), 5);
    }
    EXPECT_EQ(edges, 2);
    EXPECT_THROW(Curve<int>::square(0, 0, 1).length(), TypeError);
}

TEST(Curve, ContainsWhatItWindsAround)
{
    std::mt19937 engine(32);
    for (int round = 0; round < 20; ++round) {
        const Curve<double> star = randomStar<double>(3 + 2 * round, 1, engine);
        for (int i = 0; i < 50; ++i) {
            const Vector<double> point = randomVector<double>(2, engine) * 1.5;
            EXPECT_EQ(star.contains(point, 0, 1), windingNumber(star, place(point)) != 0);
        }
        EXPECT_TRUE(star.containsAll(star, 0, 1));
    }
    // A half line through a vertex crosses it once.
    const Curve<double> diamond = curveOf<double>({{0, -1}, {1, 0}, {0, 1}, {-1, 0}}, false);
    for (const Place p : {Place(0, 0), Place(-2, 0), Place(-2, 1), Place(2, 0)}) {
        EXPECT_EQ(diamond.contains(vectorOf<double>({p.real(), p.imag()}), 0, 1), p == 0.0);
    }
    const Curve<double> outer = Curve<double>::square(0, 0, 10);
    for (const auto& [x, size] : {std::pair(3.0, 2.0), {8.0, 5.0}, {-5.0, 2.0}}) {
        EXPECT_EQ(outer.contains(Curve<double>::square(x, 4, size), 0, 1), x == 3);
    }
}

TEST(Curve, CrossingsAgreeWithExactOrientationTests)
{
    std::mt19937 engine(33);
    const auto edgesOf = [](const Curve<int>& c) { return c.getSize() - (c.isOpen() ? 1 : 0); };
    std::size_t crossings = 0;
    for (int round = 0; round < 200; ++round) {
        // A small grid makes touching, shared ends and overlaps frequent.
        const Curve<int> a = randomCurve<int>(2 + round % 5, 5, round % 2 == 0, engine);
        const Curve<int> b = randomCurve<int>(2 + round % 4, 5, round % 3 == 0, engine);
        std::vector<int> expected;
        bool self = false;
        const int edges = edgesOf(a);
        for (int i = 0; i < edges; ++i) {
            for (int j = 0; j < edgesOf(b); ++j) {
                if (crossExactly(a, i, b, j)) {
                    expected.push_back(i);
                }
            }
            for (int j = i + 2; j < edges - (a.isClosed() && i == 0 ? 1 : 0); ++j) {
                self = self || crossExactly(a, i, a, j);
            }
        }
        EXPECT_EQ(a.intersectionIndexes(b, 0, 1), expected);
        EXPECT_EQ(a.intersects(b, 0, 1), !expected.empty());
        EXPECT_EQ(a.selfIntersects(0, 1), self);
        crossings += expected.size();
    }
    EXPECT_GT(crossings, 100u);
}

TEST(Curve, ClosestPointIsThatOfTheClosestEdge)
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
        int best = -1;
        int index = 0;
        for (auto walk = curve.edgeIterator(); walk->current() != nullptr; (*walk)++, ++index) {
            Vector<double> q;
            walk->current()->closestPoint(point, q);
            best = q.distance(point) < smallest ? index : best;
            smallest = std::min(smallest, q.distance(point));
        }
        EXPECT_NEAR(distance, smallest, 1e-14);
        EXPECT_EQ(edge, best);
    }
    Vector<double> untouched = vectorOf<double>({7, 7});
    EXPECT_TRUE(std::isnan(curveOf<double>({{1, 1}}, false).closestPoint(untouched, untouched)));
    EXPECT_EQ(untouched[0], 7);
    // Coincident neighbours are an edge like any other.
    const Curve<double> twins = curveOf<double>({{1, 1}, {1, 1}}, true);
    EXPECT_EQ(twins.closestPoint(vectorOf<double>({4, 5}), untouched), 5);
}

TEST(Edge, MeetsPointsPlanesAndSegments)
{
    const Curve<double> line = curveOf<double>({{1, 1}, {3, 1}}, true);
    Vector<double> q;
    for (const double t : {2.5, -0.5, 0.5, 1.0}) {
        EXPECT_EQ(Edge<double>(line, 0, 1).closestPoint(vectorOf<double>({1 + 2 * t, 9}), q), t);
        EXPECT_EQ(q, vectorOf<double>({1 + 2 * std::clamp(t, 0.0, 1.0), 1}));
    }
    const Curve<double> rise = curveOf<double>({{0, 0, 1}, {4, 0, 3}}, true);
    const Edge<double> edge(rise, 0, 1);
    const Vector<double> up = vectorOf<double>({0, 0, 1});
    EXPECT_EQ(edge.intersects(up, 1.5, q), 1);
    EXPECT_EQ(q, vectorOf<double>({1, 0, 1.5}));
    EXPECT_EQ(edge.intersects(up, 3, q), 1);
    EXPECT_EQ(q, rise[1]);
    EXPECT_EQ(edge.intersects(up, 3.5, q), 0);
    EXPECT_EQ(edge.intersects(vectorOf<double>({0, 1, 0}), 0, q), 2);
    EXPECT_EQ(q, rise[0]);
    EXPECT_EQ(edge.intersects(vectorOf<double>({0, 1, 0}), 1, q), 0);

    const Curve<double> points =
        curveOf<double>({{0, 9, 0}, {4, 9, 4}, {4, 9, 0}, {3, 9, 1}, {8, 9, 8}, {1, 9, 1}}, true);
    const Edge<double> diagonal(points, 0, 1);
    const Edge<double> shortOne(points, 2, 3);
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
    for (const auto& bad : {std::vector<int>{1}, {3, 1}, {1, 10}}) {
        EXPECT_THROW(line.split(bad), ValueError);
    }
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
