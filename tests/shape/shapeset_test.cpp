#include "numerics/squarematrix.h"
#include "shape/quadmesh.h"
#include "shape/shapeset.h"
#include "support/curves.h"
#include "support/errors.h"
#include "support/temporaryfolder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <random>

namespace {

SquareMatrix<double> rotationAbout(int axis, double angle)
{
    SquareMatrix<double> rotation;
    rotation.setIdentity(3);
    const int a = (axis + 1) % 3;
    const int b = (axis + 2) % 3;
    rotation(a, a) = rotation(b, b) = std::cos(angle);
    rotation(a, b) = -std::sin(angle);
    rotation(b, a) = std::sin(angle);
    return rotation;
}

} // namespace

TEST(Shape, RegistrationRecoversARigidMotion)
{
    std::mt19937 engine(101);
    for (int round = 0; round < 20; ++round) {
        const Curve<double> source = randomCurve<double>(4 + round, 5, false, engine, 3);
        const SquareMatrix<double> rotation =
            rotationAbout(0, round) * rotationAbout(2, 2.0 * round + 1);
        const Vector<double> translation = randomVector<double>(3, engine) * 10;
        Curve<double> target(source);
        target.detach();
        target.multiply(rotation);
        target.translate(translation);

        Vector<double> foundTranslation;
        SquareMatrix<double> foundRotation;
        source.computeLSRegistration(foundTranslation, foundRotation, target);
        EXPECT_NEAR(foundTranslation.distance(translation), 0, 1e-10);
        EXPECT_NEAR((foundRotation - rotation).snorm(), 0, 1e-20);

        // Nearest neighbours of the shape itself are the vertices themselves, in any order.
        Curve<double> reversed(source);
        reversed.reverse();
        source.computeLSRegistration(foundTranslation, foundRotation, reversed,
                                     source.nearestNeighbors(reversed));
        EXPECT_NEAR(foundTranslation.norm(), 0, 1e-10);

        // A mirror image is met as well as a rotation can.
        target.scale(vectorOf<double>({1, 1, -1}));
        source.computeLSRegistration(foundTranslation, foundRotation, target);
        EXPECT_NEAR(foundRotation.det(), 1, 1e-12);
    }
    Vector<double> t;
    SquareMatrix<double> r;
    EXPECT_THROW(Curve<double>(3, 4, 0, 0, true)
                     .computeLSRegistration(t, r, Curve<double>(3, 3, 0, 0, true)),
                 SizeError);
}

TEST(Shape, RegistrationTakesTheBestRotationWhereAReflectionWouldBeBetter)
{
    std::mt19937 engine(104);
    const auto anyRotation = [&] {
        const auto turn = [&](int axis) {
            return rotationAbout(axis, 3 * randomUnit<double>(engine));
        };
        return SquareMatrix<double>(turn(0) * turn(1) * turn(2));
    };
    Vector<double> t;
    SquareMatrix<double> r;
    for (int round = 0; round < 40; ++round) {
        const Curve<double> source = randomCurve<double>(8, 1, true, engine, 3);
        const Curve<double> target = randomCurve<double>(8, 1, true, engine, 3);
        const auto cost = [&](const SquareMatrix<double>& rotation) {
            Curve<double> moved(source);
            moved.detach();
            moved.multiply(rotation);
            moved.translate(target.cog() - moved.cog());
            return moved.squareDistances(target).sum();
        };
        source.computeLSRegistration(t, r, target);
        const double best = cost(r);
        for (int k = 0; k < 300; ++k) {
            ASSERT_GE(cost(anyRotation()), best) << round;
        }
    }
    // A plane shape has no sides: it meets every turned copy of itself.
    for (int round = 0; round < 1000; ++round) {
        Curve<double> source = randomCurve<double>(6, 5, true, engine, 3);
        source.scale(vectorOf<double>({1, 1, 0}));
        source.multiply(anyRotation());
        Curve<double> target(source);
        target.detach();
        target.multiply(anyRotation());
        source.computeLSRegistration(t, r, target);
        EXPECT_NEAR(r.det(), 1, 1e-9);
        source.multiply(r);
        source.translate(t);
        ASSERT_NEAR(source.squareDistances(target).max(), 0, 1e-20) << round;
    }
}

TEST(Shape, PrincipalAxesLieAlongTheLongestExtents)
{
    std::mt19937 engine(102);
    Curve<double> cloud = randomCurve<double>(400, 1, true, engine, 3);
    cloud.scale(vectorOf<double>({2, 9, 5}));
    Vector<double> eigenvalues;
    const SquareMatrix<double> axes = cloud.principalAxes(eigenvalues);
    EXPECT_TRUE(eigenvalues.isDecreasing());
    EXPECT_NEAR(std::abs(axes(1, 0)), 1, 0.01);
    EXPECT_NEAR(std::abs(axes(2, 1)), 1, 0.01);
    EXPECT_NEAR(eigenvalues.sum() * 400,
                cloud.inertia()(0, 0) + cloud.inertia()(1, 1) + cloud.inertia()(2, 2), 1e-9);

    cloud.multiply(rotationAbout(0, 0.7));
    cloud.translate(vectorOf<double>({3, 4, 5}));
    cloud.applyPAT();
    EXPECT_NEAR(cloud.cog().norm(), 0, 1e-12);
    const SquareMatrix<double> scatter = cloud.inertia();
    EXPECT_NEAR(scatter(0, 1), 0, 1e-9);
    EXPECT_NEAR(scatter(1, 2), 0, 1e-9);
    EXPECT_GT(scatter(0, 0), scatter(1, 1));
}

TEST(Shape, DeformationsLeadFromShapeToShape)
{
    std::mt19937 engine(103);
    const Curve<float> from = randomCurve<float>(6, 3, false, engine);
    const Curve<float> to = randomCurve<float>(6, 3, true, engine);
    const CurveStack<float> steps = from.deformations(to);
    ASSERT_EQ(steps.getHeight(), 6);
    EXPECT_TRUE(steps.isOpen());
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(steps[i][0], from[i]);
        EXPECT_EQ(steps[i][1], to[i]);
    }
    EXPECT_THROW(from.deformations(Curve<float>()), SizeError);
}

TEST(ShapeSet, HoldsPointersAndKeepsPositionsOfMissingShapes)
{
    Curve<double> a = curveOf<double>({{0, 0}, {2, 2}}, true);
    Curve<double> b = curveOf<double>({{4, 0}, {4, 4}}, true);
    a.setName("a");
    ShapeSet<double> set;
    set.setName("leaf");
    EXPECT_FALSE(set.onlyReference());
    EXPECT_FALSE(set.onlyShapeType(1));
    EXPECT_EQ(set.average(), nullptr);
    set.addShape(&a, true);
    set.addShape(nullptr, false);
    set.addShape(&b, false);
    set.removeShape(nullptr);
    set.removeShape(nullptr);
    EXPECT_EQ(set.getSize(), 2);
    EXPECT_FALSE(set.isReference(1));
    set.addShape(nullptr, true);
    EXPECT_EQ(set.numVertices(), 4);
    EXPECT_TRUE(set.onlyShapeType(1));
    EXPECT_FALSE(set.onlyReference());
    EXPECT_TRUE(set.referenceShapeSet().onlyReference());
    EXPECT_EQ(coordinatesOf(set.centroids()), (std::vector<double>{1, 1, 4, 2, 0, 0}));
    EXPECT_EQ(set.matchSurfaces(set), vectorOf<int>({0, 0, 0}));

    const std::unique_ptr<Shape<double>> mean(set.average());
    EXPECT_EQ(coordinatesOf(*mean), (std::vector<double>{2, 0, 3, 3}));
    EXPECT_EQ(a[0][0], 0);
    b.setOpen(false);
    EXPECT_RAISES(UsageError, "Shape<T>& ShapeSet<T>::average() const",
                  "Shapes in this set are not of the same type", set.average());

    const std::unique_ptr<ShapeSet<double>> copy(set.clone());
    EXPECT_EQ(copy->getName(), "leaf");
    EXPECT_EQ((*copy)[0]->getName(), "a");
    EXPECT_NE((*copy)[0], &a);
    EXPECT_EQ(copy->asVertexStack().getHeight(), 2);
    EXPECT_EQ(copy->squareDistances(set)[0], vectorOf<double>({0, 0}));
    EXPECT_EQ(copy->rmsDistances(set), vectorOf<double>({0, 0, 0}));
    copy->clear();
    EXPECT_EQ(copy->getSize(), 0);

    const TemporaryFolder folder;
    b.setName("b");
    set.save(folder.path().string(), false);
    EXPECT_EQ(Curve<double>(folder.file("leaf-a.cv")).getSize(), 2);
    EXPECT_EQ(folder.fileCount(), 2);
}

TEST(ShapeSet, RegistersAndAveragesTheMeshesOfASet)
{
    std::mt19937 engine(104);
    QuadMesh<double> first(3, 2, 7, 0, 0, true);
    first.fromVector(randomVector<double>(42, engine));
    first.setName("strip");
    QuadMesh<double> second(first);
    second.detach();
    second.multiply(rotationAbout(1, 1));
    Curve<double> contour = randomCurve<double>(5, 1, false, engine, 3);

    ShapeSet<double> a;
    a.addShape(&first, true);
    ShapeSet<double> b;
    b.addShape(&second, true);
    Vector<double> translation;
    SquareMatrix<double> rotation;
    a.computeLSRegistration(b, translation, rotation);
    EXPECT_NEAR((rotation - rotationAbout(1, 1)).snorm(), 0, 1e-20);
    a.computeICPLSRegistration(a, translation, rotation);
    EXPECT_NEAR(translation.norm(), 0, 1e-12);

    const std::vector<Matrix<double>> distances = a.sdistance(b);
    ASSERT_EQ(distances.size(), 1u);
    EXPECT_NEAR(distances[0](1, 6), first[1][6].sdistance(second[1][6]), 1e-15);

    a.addShape(&contour, false);
    ShapeSet<double> mean = ShapeSet<double>::computeMean({&a, &b});
    EXPECT_EQ(mean.getName(), "mean");
    ASSERT_EQ(mean.getSize(), 2);
    EXPECT_EQ(mean[0]->getName(), "strip");
    EXPECT_TRUE(mean.isReference(0));
    EXPECT_EQ(mean[1], nullptr);
    EXPECT_NEAR((mean[0]->toVector() - (first.toVector() + second.toVector()) * 0.5).norm(), 0,
                1e-14);
    mean.clear();
    EXPECT_EQ(ShapeSet<double>::computeMean({}).getSize(), 0);
    EXPECT_THROW(a.applyPAT(), std::bad_cast);

    b.applyPAT();
    EXPECT_NEAR(second.cog().norm(), 0, 1e-12);
    EXPECT_NEAR(second.inertia()(0, 2), 0, 1e-10);
}
