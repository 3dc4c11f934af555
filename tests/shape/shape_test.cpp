#include "numerics/squarematrix.h"
#include "shape/boundingbox.h"
#include "shape/shape.h"
#include "support/curves.h"
#include "support/errors.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <sstream>

TEST(Shape, ArithmeticActsOnEachVertex)
{
    std::mt19937 engine(11);
    Curve<double> a = randomCurve<double>(9, 3, false, engine, 3);
    const Curve<double> b = randomCurve<double>(9, 3, false, engine, 3);
    const Vector<double> before = a.toVector();
    a += b;
    EXPECT_EQ(a.toVector(), before + b.toVector());
    a.fromVector(before);
    a -= b;
    EXPECT_EQ(a.toVector(), before - b.toVector());
    a.fromVector(before);
    a *= 3;
    EXPECT_EQ(a.toVector(), before * 3);
    a.fromVector(before);
    a /= 3;
    EXPECT_EQ(a.toVector(), before / 3);

    a.fromVector(before);
    a.multiply(matrixOf<double>({{0, 1, 0}, {0, 0, 2}, {1, 0, 0}}));
    a.scale(vectorOf<double>({1, 0.5, 1}));
    for (int i = 0; i < a.getSize(); ++i) {
        EXPECT_EQ(a[i][0], before[3 * i + 1]);
        EXPECT_EQ(a[i][1], before[3 * i + 2]);
        EXPECT_EQ(a[i][2], before[3 * i]);
    }

    a.translate(-a[0]);
    EXPECT_EQ(a[0], vectorOf<double>({0, 0, 0}));
    a.translate(a[1]);
    a.center();
    EXPECT_NEAR(a.cog().norm(), 0, 1e-14);
}

TEST(Shape, RefusesWhatDoesNotFit)
{
    Curve<float> closed(2, 3, 0, 0, false);
    closed.fromVector(Vector<float>(vectorOf<float>({1, 2, 3, 4, 5, 6})));
    const char* add = "void Shape<T>::operator+=(const Shape&)";
    const char* what = "Shapes are not compatible for addition";
    expectError<UsageError>([&] { closed += Curve<float>(2, 3, 0, 0, true); }, add, what);
    expectError<UsageError>([&] { closed -= Curve<float>(2, 2, 0, 0, false); }, add, what);
    expectError<UsageError>([&] { closed += Curve<float>(3, 3, 0, 0, false); }, add, what);
    expectError<SizeError>([&] { closed.scale(Vector<float>(3)); },
                           "void Shape<T>::scale(const Vector<T>&)", "Incorrect number of scales");
    expectError<SizeError>(
        [&] {
            closed.translate(vectorOf<float>({1, 2, 3}));
        },
        "void Vector<T>::operator+=(const Vector&)", "The two vectors have different sizes");
    expectError<SizeError>([] { Curve<float>(2, 0, 0, 0, false).cog(); },
                           "Vector<T> Shape<T>::cog() const", "This shape contains no vertex");
    expectError<UsageError>([&] { closed.fromVector(Vector<float>(5)); },
                            "void Shape<T>::fromVector(const Vector<T>&)",
                            "Size mismatch between this shape and the argument vector");
    const char* squares = "Vector<T> Shape<T>::squareDistances(const Shape<T>&) const";
    expectError<ValueError>([&] { closed.squareDistances(closed); }, squares,
                            "Argument shape is equal to this");
    expectError<SizeError>([&] { closed.squareDistances(Curve<float>(2, 2, 0, 0, true)); }, squares,
                           "The two shapes have distinct sizes");
    expectError<ValueError>(
        [&] { closed.squareNearestNeighborDistances(closed); },
        "Vector<T> Shape<T>::squareNearestNeighborDistances(const Shape<T>&) const",
        "Argument s is equal to this");
    EXPECT_EQ(coordinatesOf(closed), (std::vector<float>{1, 2, 3, 4, 5, 6}));

    Curve<int> whole(2, 1, 0, 0, false);
    EXPECT_THROW(whole.nearestNeighborDistances(Curve<int>()), TypeError);
    EXPECT_THROW(whole /= 0, MathError);
}

TEST(Shape, CopiesHaveNoNameOfTheirOwn)
{
    Curve<int> curve(2, 1, 0, 0, true);
    curve.setName("leaf");
    EXPECT_EQ(Curve<int>(curve).getName(), "");
    const std::unique_ptr<Shape<int>> clone(curve.clone());
    EXPECT_EQ(clone->getName(), "");
    EXPECT_EQ(clone->getShapeTypeName(), "OpenCurve");
    EXPECT_EQ(clone->getServer(), curve.getServer());
    curve.setOpen(false);
    EXPECT_EQ(curve.getShapeTypeName(), "ClosedCurve");
    EXPECT_EQ(Vertices<int>(curve).getShapeTypeName(), "Vertices");
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
    EXPECT_EQ(neighbours[1][0], 2u);
    EXPECT_EQ(neighbours[2][0], 0u);
    const auto toOther = curve.nearestNeighbors(curveOf<float>({{-1, 0}, {1, 0}}, true));
    EXPECT_EQ(toOther[0][0], 0u);
    EXPECT_EQ(toOther[2][0], 1u);

    const Curve<float> twins = curveOf<float>({{1, 1}, {1, 1}}, true);
    EXPECT_EQ(twins.nearestNeighbors()[0].getSize(), 0);
    EXPECT_EQ(curveOf<float>({{5, 5}}, true).squareNearestNeighborDistances(),
              vectorOf<float>({0}));
    EXPECT_EQ(Curve<float>().squareNearestNeighborDistances().getSize(), 0);
}

TEST(Shape, PrintsNameServerAndIndices)
{
    Curve<int> curve(1, 2, 0, 0, true);
    curve.setName("leaf");
    std::ostringstream text;
    curve.print("Title", text);
    EXPECT_EQ(text.str().substr(0, 27), "Title\nShape: leaf\n Server:\n");
    EXPECT_NE(text.str().find("\n Size = 2\n Indexes = \n   0\n   1\n"), std::string::npos);
}
