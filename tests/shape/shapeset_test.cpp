#include "numerics/squarematrix.h"
#include "shape/meshes/quadmesh.h"
#include "shape/vertices/shapeset.h"
#include "support/curves.h"
#include "support/errors.h"
#include "support/temporaryfolder.h"

#include <memory>

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

SquareMatrix<double> anyRotation(std::mt19937& engine)
{
    const Vector<double> angles = randomVector<double>(3, engine) * 3;
    return SquareMatrix<double>(rotationAbout(0, angles[0]) * rotationAbout(1, angles[1]) *
                                rotationAbout(2, angles[2]));
}

} // namespace

TEST(Shape, RegistrationRecoversARigidMotion)
{
    std::mt19937 engine(101);
    Vector<double> t;
    SquareMatrix<double> r;
    for (int round = 0; round < 1000; ++round) {
        // A plane shape has no sides: it meets every turned copy of itself.
        Curve<double> source = randomCurve<double>(4 + round % 20, 5, true, engine, 3);
        source.scale(vectorOf<double>({1, 1, round % 3 == 0 ? 1.0 : 0.0}));
        source.multiply(anyRotation(engine));
        Curve<double> target(source);
        target.detach();
        target.multiply(anyRotation(engine));
        target.translate(randomVector<double>(3, engine) * 10);
        source.computeLSRegistration(t, r, target);
        EXPECT_NEAR(r.det(), 1, 1e-9);
        source.multiply(r);
        source.translate(t);
        ASSERT_NEAR(source.squareDistances(target).max(), 0, 1e-20) << round;

        // Nearest neighbours of the shape itself are the vertices themselves, in any order.
        target.reverse();
        source.computeLSRegistration(t, r, target, source.nearestNeighbors(target));
        EXPECT_NEAR(t.norm(), 0, 1e-10);
    }
    EXPECT_THROW(Curve<double>(3, 4, 0, 0, true)
                     .computeLSRegistration(t, r, Curve<double>(3, 3, 0, 0, true)),
                 SizeError);
}

TEST(Shape, RegistrationTakesTheBestRotationWhereAReflectionWouldBeBetter)
{
    std::mt19937 engine(104);
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
            ASSERT_GE(cost(anyRotation(engine)), best) << round;
        }
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
    EXPECT_NEAR(std::abs(scatter(0, 1)) + std::abs(scatter(1, 2)), 0, 1e-9);
    EXPECT_GT(scatter(0, 0), scatter(1, 1));
}

TEST(Shape, DeformationsLeadFromShapeToShape)
{
    std::mt19937 engine(103);
    const Curve<float> from = randomCurve<float>(6, 3, false, engine);
    const Curve<float> to = randomCurve<float>(6, 3, true, engine);
    const CurveStack<float> steps = from.deformations(to);
    EXPECT_TRUE(steps.isOpen());
    ASSERT_EQ(steps.getSize(), 12);
    for (int i = 0; i < 12; ++i) {
        EXPECT_EQ(steps[i / 2][i % 2], (i % 2 == 0 ? from : to)[i / 2]);
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
    EXPECT_EQ(set.average(), nullptr);
    set.addShape(&a, true);
    set.addShape(nullptr, false);
    set.addShape(&b, false);
    set.removeShape(nullptr);
    set.removeShape(nullptr);
    set.addShape(nullptr, true);
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
    EXPECT_EQ((*copy)[0]->getName(), "a");
    EXPECT_NE((*copy)[0], &a);
    EXPECT_EQ(copy->asVertexStack().getHeight(), 2);
    EXPECT_EQ(copy->rmsDistances(set), vectorOf<double>({0, 0, 0}));
    copy->clear();

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

    EXPECT_NEAR(a.sdistance(b).at(0)(1, 6), first[1][6].sdistance(second[1][6]), 1e-15);

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
    EXPECT_THROW(a.applyPAT(), std::bad_cast);

    b.applyPAT();
    EXPECT_NEAR(second.cog().norm(), 0, 1e-12);
    EXPECT_NEAR(second.inertia()(0, 2), 0, 1e-10);
}
