#include "numerics/squarematrix.h"
#include "shape/vertices/shape.h"
#include "support/curves.h"
#include "support/errors.h"

#include <limits>
#include <memory>

TEST(Shape, ArithmeticActsOnEachVertex)
{
    std::mt19937 engine(11);
    Curve<double> a = randomCurve<double>(9, 3, false, engine, 3);
    const Curve<double> b = randomCurve<double>(9, 3, false, engine, 3);
    const Vector<double> before = a.toVector();
    a += b;
    Vector<double> expected = before + b.toVector();
    EXPECT_EQ(a.toVector(), expected);
    a *= 3;
    expected *= 3;
    EXPECT_EQ(a.toVector(), expected);
    a -= b;
    expected -= b.toVector();
    EXPECT_EQ(a.toVector(), expected);
    a /= 3;
    EXPECT_EQ(a.toVector(), expected / 3);

    a.fromVector(before);
    a.multiply(matrixOf<double>({{0, 1, 0}, {0, 0, 2}, {1, 0, 0}}));
    a.scale(vectorOf<double>({1, 0.5, 1}));
    for (int i = 0; i < 27; ++i) {
        EXPECT_EQ(a[i / 3][i % 3], before[i / 3 * 3 + (i + 1) % 3]);
    }
    a.translate(-a[0]);
    EXPECT_EQ(a[0], vectorOf<double>({0, 0, 0}));
    a.center();
    EXPECT_NEAR(a.cog().norm(), 0, 1e-14);
}

TEST(Shape, RefusesWhatDoesNotFit)
{
    Curve<float> closed(2, 3, 0, 0, false);
    closed.fromVector(vectorOf<float>({1, 2, 3, 4, 5, 6}));
    EXPECT_RAISES(UsageError, "void Shape<T>::operator+=(const Shape&)",
                  "Shapes are not compatible for addition",
                  closed += Curve<float>(2, 3, 0, 0, true));
    EXPECT_THROW(closed -= Curve<float>(2, 2, 0, 0, false), UsageError);
    EXPECT_THROW(closed += Curve<float>(3, 3, 0, 0, false), UsageError);
    EXPECT_THROW(closed.scale(Vector<float>(3)), SizeError);
    EXPECT_THROW(closed.translate(Vector<float>(3)), SizeError);
    EXPECT_THROW(closed.squareNearestNeighborDistances(closed), ValueError);
    EXPECT_EQ(coordinatesOf(closed), (std::vector<float>{1, 2, 3, 4, 5, 6}));
    EXPECT_RAISES(SizeError, "Vector<T> Shape<T>::cog() const", "This shape contains no vertex",
                  Curve<float>(2, 0, 0, 0, false).cog());
    Curve<int> whole(2, 1, 0, 0, false);
    EXPECT_THROW(whole.nearestNeighborDistances(Curve<int>()), TypeError);
    EXPECT_THROW(whole /= 0, MathError);
    // A copy has no name of its own.
    whole.setName("leaf");
    const std::unique_ptr<Shape<int>> clone(whole.clone());
    EXPECT_EQ(clone->getName(), "");
    EXPECT_EQ(clone->getShapeTypeName(), "ClosedCurve");
}

TEST(Shape, MeasuresAgreeWithTheirDefinitions)
{
    const Curve<int> whole = curveOf<int>({{0, 1}, {1, 1}, {1, 3}}, true);
    EXPECT_EQ(whole.cog(), vectorOf<int>({0, 1}));

    const Curve<double> a = curveOf<double>({{3, 4}, {0, 1}, {0, 0}}, true);
    double mean = 0;
    double max = 0;
    a.stats(mean, max);
    EXPECT_EQ(mean, 2);
    EXPECT_EQ(max, 5);
    Curve<double>().stats(mean, max);
    EXPECT_EQ(mean + max, 0);

    const Curve<double> b = curveOf<double>({{3, 4}, {0, 3}, {2, 0}}, true);
    EXPECT_EQ(a.squareDistances(b), vectorOf<double>({0, 4, 4}));
    EXPECT_EQ(a.rmsDistance(b), std::sqrt(8.0 / 3));
    EXPECT_EQ(a.nearestNeighborDistances(b), vectorOf<double>({0, 2, 2}));
    EXPECT_EQ(a.squareNearestNeighborDistances(Curve<double>())[0],
              std::numeric_limits<double>::max());

    const SquareMatrix<double> scatter = curveOf<double>({{1, 1}, {3, 2}}, true).inertia();
    EXPECT_EQ(scatter, SquareMatrix<double>(matrixOf<double>({{2, 1}, {1, 0.5}})));
}

TEST(Shape, NearestNeighboursPassOverCoincidentTwins)
{
    const Curve<float> curve = curveOf<float>({{0, 0}, {0, 0}, {2, 0}, {-2, 0}}, true);
    EXPECT_EQ(curve.squareNearestNeighborDistances(), vectorOf<float>({0, 0, 4, 4}));
    const auto neighbours = curve.nearestNeighbors();
    EXPECT_EQ(neighbours[0][0], 2u);
    EXPECT_EQ(neighbours[2][0], 0u);
    const auto toOther = curve.nearestNeighbors(curveOf<float>({{-1, 0}, {1, 0}}, true));
    EXPECT_EQ(toOther[2][0], 1u);

    const Curve<float> twins = curveOf<float>({{1, 1}, {1, 1}}, true);
    EXPECT_EQ(twins.nearestNeighbors()[0].getSize(), 0);
    EXPECT_EQ(curveOf<float>({{5, 5}}, true).squareNearestNeighborDistances(),
              vectorOf<float>({0}));
    EXPECT_EQ(Curve<float>().squareNearestNeighborDistances().getSize(), 0);
}
