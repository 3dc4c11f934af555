#include "shape/curves/edge.h"
#include "shape/meshes/triangle.h"
#include "support/curves.h"
#include "support/errors.h"

#include <algorithm>
#include <limits>

namespace {

template <class T>
class TriangleOf : public testing::Test
{};

using RealTypes = testing::Types<float, double, long double>;
TYPED_TEST_SUITE(TriangleOf, RealTypes);

template <class T>
Triangle<T> triangleOf(const Vector<T>& a, const Vector<T>& b, const Vector<T>& c)
{
    Triangle<T> triangle(a.getSize());
    triangle[0] = a;
    triangle[1] = b;
    triangle[2] = c;
    return triangle;
}

TYPED_TEST(TriangleOf, ClosestPointHasTheTriangleBehindIt)
{
    using T = TypeParam;
    std::mt19937 engine(1);
    const T tolerance = 2000 * std::numeric_limits<T>::epsilon();
    std::vector<int> regions(7, 0);
    for (int round = 0; round < 2000; ++round) {
        const int space = 2 + round % 3;
        const auto any = [&] { return randomVector<T>(space, engine); };
        const Triangle<T> triangle = triangleOf<T>(any(), any(), any());
        const Vector<T> position = any() * T(3);
        Vector<T> q;
        ++regions.at(static_cast<std::size_t>(triangle.closestPoint(position, q)));
        // The point belongs to the triangle, and no corner is nearer in the direction of `position`.
        Matrix<T> sides(space, 2);
        sides.setColumn(0, triangle[1] - triangle[0]);
        sides.setColumn(1, triangle[2] - triangle[0]);
        const Vector<T> place = sides.solve(q - triangle[0]);
        ASSERT_LE((sides * place).distance(q - triangle[0]), tolerance);
        ASSERT_GE(std::min(place.min(), 1 - place.sum()), -100 * tolerance);
        for (int i = 0; i < 3; ++i) {
            ASSERT_LE((position - q).scalarProduct(triangle[i] - q), tolerance);
        }
    }
    EXPECT_GE(*std::min_element(regions.begin(), regions.end()), 20);
}

TEST(TriangleRegions, LieAroundTheTriangle)
{
    Triangle<double> triangle = triangleOf<double>(
        vectorOf<double>({0, 0}), vectorOf<double>({4, 0}), vectorOf<double>({0, 4}));

    struct Case
    {
        int region;
        double x, y, qx, qy;
    };

    const Case cases[] = {{0, 1, 1, 1, 1},  {1, 4, 4, 2, 2},   {2, -1, 7, 0, 4},
                          {3, -2, 1, 0, 1}, {4, -1, -1, 0, 0}, {5, 3, -2, 3, 0},
                          {6, 7, -1, 4, 0}, {1, 2, 6, 0, 4},   {2, -1, 5.5, 0, 4}};
    for (const Case& c : cases) {
        Vector<double> q;
        EXPECT_EQ(triangle.closestPoint(vectorOf<double>({c.x, c.y}), q), c.region);
        EXPECT_EQ(q, vectorOf<double>({c.qx, c.qy})) << c.x << ' ' << c.y;
    }
    // Without an inside the sides remain, and a point in the end.
    triangle[2] = vectorOf<double>({8, 0});
    Vector<double> q;
    for (double x : {-3.0, 5.0, 9.0}) {
        triangle.closestPoint(vectorOf<double>({x, 2}), q);
        EXPECT_EQ(q, vectorOf<double>({std::clamp(x, 0.0, 8.0), 0}));
    }
    triangle[1] = triangle[2] = triangle[0];
    triangle.closestPoint(vectorOf<double>({3, 2}), q);
    EXPECT_EQ(q, triangle[0]);
}

TEST(TriangleBorder, CountsForPointsAndIsToldForSegments)
{
    // In each of the three coordinate planes.
    for (int axis = 0; axis < 3; ++axis) {
        const int u = axis == 0 ? 1 : 0;
        const int v = axis == 2 ? 1 : 2;
        const auto point = [&](double x, double y, double z) {
            Vector<double> p(3);
            p[u] = x;
            p[v] = y;
            p[axis] = z;
            return p;
        };
        const Triangle<double> triangle =
            triangleOf<double>(point(0, 0, 5), point(4, 0, 5), point(0, 4, 5));
        EXPECT_TRUE(triangle.contains(point(1, 1, 5)));
        EXPECT_TRUE(triangle.contains(point(2, 2, 5)));
        EXPECT_TRUE(triangle.contains(point(0, 4, 5)));
        EXPECT_FALSE(triangle.contains(point(1, 1, 5.5)));
        EXPECT_FALSE(triangle.contains(point(3, 2, 5)));
        EXPECT_EQ(triangle.projectionContains(point(1, 1, 9), u, v), 1);
        EXPECT_EQ(triangle.projectionContains(point(3, 3, 9), u, v), 0);
        EXPECT_EQ(triangle.projectionContains(point(0, 3, 9), u, v), 2);
        EXPECT_EQ(triangle.area(), 8);
        EXPECT_EQ(triangle.normal(true)[axis], axis == 1 ? -1 : 1);

        Edge<double> edge(3);
        Vector<double> q;
        const auto meeting = [&](const Vector<double>& from, const Vector<double>& to) {
            edge[0] = from;
            edge[1] = to;
            return triangle.intersects(edge, q);
        };
        EXPECT_EQ(meeting(point(1, 1, 0), point(1, 1, 9)), 1);
        EXPECT_EQ(q, point(1, 1, 5));
        EXPECT_EQ(meeting(point(2, 2, 0), point(2, 2, 9)), 2);
        EXPECT_EQ(meeting(point(1, 1, 0), point(1, 1, 4)), 0);
        EXPECT_EQ(meeting(point(-1, 1, 5), point(9, 1, 5)), 2);
        EXPECT_EQ(meeting(point(-1, -1, 5), point(9, -1, 5)), 0);
        EXPECT_EQ(meeting(point(-1, 1, 6), point(9, 1, 6)), 0);
    }
}

TEST(Triangle, FollowsTheVerticesOfTheShapeThatItViews)
{
    Curve<float> curve = curveOf<float>({{9, 9, 9}, {0, 0, 0}, {3, 0, 0}, {0, 2, 0}}, true);
    const Triangle<float> triangle(curve, 1, 2, 3);
    EXPECT_EQ(triangle.area(), 3);
    curve[2][0] = 6;
    EXPECT_EQ(triangle.area(), 6);

    const Triangle<int> whole = triangleOf<int>(vectorOf<int>({1, 1, 1}), vectorOf<int>({3, 1, 1}),
                                                vectorOf<int>({1, 4, 1}));
    EXPECT_EQ(whole.normal(false), vectorOf<int>({0, 0, 6}));
    EXPECT_TRUE(whole.contains(vectorOf<int>({2, 2, 1})));
    Vector<int> q;
    EXPECT_RAISES(TypeError, "int Triangle<int>::closestPoint(...) const",
                  "Method not available for type 'int'", whole.closestPoint(whole[0], q));
    EXPECT_THROW(Triangle<double>(2).area(), SizeError);
}

} // namespace
