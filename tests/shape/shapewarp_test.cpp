#include "numerics/squarematrix.h"
#include "shape/curves/shapeinterpolation.h"
#include "shape/meshes/quadmesh.h"
#include "shape/registration/fusion.h"
#include "shape/registration/polynomialwarp.h"
#include "shape/registration/thinplatesplinewarp2d.h"
#include "shape/registration/thinplatesplinewarp3d.h"
#include "support/curves.h"
#include "support/errors.h"
#include "support/listener.h"

#include <limits>
#include <memory>
#include <sstream>

namespace {

template <class T>
class Warp : public testing::Test
{};

using RealTypes = testing::Types<float, double, long double>;
TYPED_TEST_SUITE(Warp, RealTypes);

/// Doubles every point; not valid left of the origin.
class Doubling : public ShapeTransform<double>
{
public:
    using ShapeTransform<double>::apply;

    void apply(Vector<double>& x) const override { x *= 2; }

    bool isValidAt(const Vector<double>& x) const override { return x[0] >= 0; }
};

template <class T>
Curve<T> detached(const Curve<T>& curve)
{
    Curve<T> copy(curve);
    copy.detach();
    return copy;
}

template <class T>
T largestDistance(const Shape<T>& a, const Shape<T>& b)
{
    return std::sqrt(a.squareDistances(b).max());
}

/// Moves the curves by a random affine map, and gives its determinant.
template <class T>
T moveAlike(std::initializer_list<Curve<T>*> curves, std::mt19937& engine)
{
    const int space = (*curves.begin())->getSpace();
    const SquareMatrix<T> affine(randomMatrix<T>(space, space, engine));
    const Vector<T> offset = randomVector<T>(space, engine);
    for (Curve<T>* curve : curves) {
        curve->multiply(affine);
        curve->translate(offset);
    }
    return affine.det();
}

TEST(ShapeTransform, MovesShapesWithExtensionsSetsAndGroups)
{
    Curve<double> curve = curveOf<double>({{1, 2}, {-3, 4}}, true);
    Curve<double> companion = curveOf<double>({{-5, 6}}, true);
    curve.getExtensions().addShape(&companion, false);
    Curve<double> other = curveOf<double>({{-7, 8}, {-1, 1}}, true);
    ShapeSet<double> set;
    set.addShape(&curve, true);
    set.addShape(nullptr, false);
    set.addShape(&other, false);
    ShapeSetGroup<double> group;
    group.addShapeSet(&set);
    group.addShapeSet(&set);

    Doubling doubling;
    EXPECT_EQ(doubling.jacobianErrors(curve), 2);
    Listener listener;
    doubling.addMonitor(listener);
    EXPECT_EQ(doubling.jacobianErrors(set), 4);
    const std::string told = "started ;started ;0/1;finished ;0/3;1/3;2/3;finished ;";
    EXPECT_EQ(listener.log, told);
    doubling.apply(group);
    EXPECT_EQ(listener.log, told + told + told);
    EXPECT_EQ(coordinatesOf(curve), (std::vector<double>{4, 8, -12, 16}));
    EXPECT_EQ(coordinatesOf(companion), (std::vector<double>{-20, 24}));
    EXPECT_EQ(coordinatesOf(other), (std::vector<double>{-28, 32, -4, 4}));
}

TYPED_TEST(Warp, InterpolationIsAStraightWayFromSourceToTarget)
{
    using T = TypeParam;
    const char* where = "void ShapeInterpolation<T>::apply(const T, Shape<T>&)";
    std::mt19937 engine(4);
    const Curve<T> source = randomCurve<T>(9, 4, false, engine, 3);
    const Curve<T> target = randomCurve<T>(9, 4, true, engine, 3);
    const auto before = coordinatesOf(source);
    ShapeInterpolation<T> interpolation;
    Curve<T> out;
    interpolation.setSourceShape(source);
    EXPECT_RAISES(ProgramError, where, "Missing source and/or target shape",
                  interpolation.apply(0, out));
    interpolation.setTargetShape(target);
    for (const T w : {T(-0.01), T(1.01), std::numeric_limits<T>::quiet_NaN()}) {
        EXPECT_RAISES(UsageError, where, "Interpolation step out of [0-1] range",
                      interpolation.apply(w, out));
    }
    const T tolerance = 20 * std::numeric_limits<T>::epsilon();
    for (const T w : {T(0), T(0.25), T(0.7), T(1)}) {
        interpolation.apply(w, out);
        EXPECT_EQ(out.isOpen(), w == 1);
        for (int i = 0; i < 9; ++i) {
            const Vector<T> expected = source[i] * (1 - w) + target[i] * w;
            EXPECT_LE(out[i].distance(expected), w == 0 || w == 1 ? 0 : tolerance);
            out[i].setZeros();
        }
    }
    EXPECT_EQ(coordinatesOf(source), before) << "the result shares no vertices";
}

TYPED_TEST(Warp, PolynomialsOfDegreeOneAreAffineMotionsEverywhere)
{
    using T = TypeParam;
    std::mt19937 engine(2);
    for (int space : {1, 2, 3}) {
        const Curve<T> source = randomCurve<T>(20, 2, true, engine, space);
        const Curve<T> elsewhere = randomCurve<T>(20, 5, true, engine, space);
        Curve<T> target = detached(source);
        Curve<T> expected = detached(elsewhere);
        const T det = moveAlike<T>({&target, &expected}, engine);
        PolynomialWarp<T> warp;
        warp.fit(source, target);
        Curve<T> moved = detached(elsewhere);
        warp.apply(moved);
        EXPECT_LE(largestDistance(moved, expected), 500 * std::numeric_limits<T>::epsilon());
        // A reflection folds space at every point, a rotation at none.
        EXPECT_EQ(warp.jacobianErrors(elsewhere), det > 0 ? 0 : 20);
    }
}

TEST(PolynomialWarp, OfHigherDegreeTellsWhereItFolds)
{
    // x becomes x2, which turns space over left of the origin.
    const Curve<double> source =
        curveOf<double>({{-2, 0}, {-1, 3}, {0, 1}, {1, -2}, {2, 5}, {3, 0}}, true);
    Curve<double> target = detached(source);
    for (int i = 0; i < target.getSize(); ++i) {
        target[i][0] *= target[i][0];
    }
    PolynomialWarp<double> warp;
    warp.setDegree(2);
    warp.fit(source, target);
    Curve<double> elsewhere = curveOf<double>({{-0.5, 7}, {-4, 9}, {0.5, 1}}, true);
    EXPECT_EQ(warp.jacobianErrors(elsewhere), 2);
    warp.apply(elsewhere);
    const Curve<double> expected = curveOf<double>({{0.25, 7}, {16, 9}, {0.25, 1}}, true);
    EXPECT_LE(largestDistance(elsewhere, expected), 1e-10);
}

TYPED_TEST(Warp, ThinPlateSplinesReachTheTargetAndKeepAffineMotions)
{
    using T = TypeParam;
    std::mt19937 engine(3);
    // The inverse costs about as many digits as the condition of the system has.
    const T tolerance = 1e5 * std::numeric_limits<T>::epsilon();
    for (int space : {2, 3}) {
        std::unique_ptr<RadialBasisFunctionWarp<T>> warp(new ThinPlateSplineWarp2D<T>);
        if (space == 3) {
            warp.reset(new ThinPlateSplineWarp3D<T>);
        }
        Curve<T> source = randomCurve<T>(15, 1, true, engine, space);
        const Curve<T> start = detached(source);
        const Curve<T> target = randomCurve<T>(15, 1, true, engine, space);
        warp->fit(source, target);
        // The control points are the warp's own: it still finds them when the source has moved.
        warp->apply(source);
        EXPECT_LE(largestDistance(source, target), tolerance);
        Curve<T> again = detached(start);
        warp->apply(again);
        EXPECT_EQ(coordinatesOf(again), coordinatesOf(source));

        Curve<T> turned = detached(start);
        Curve<T> elsewhere = randomCurve<T>(10, 2, true, engine, space);
        Curve<T> expected = detached(elsewhere);
        moveAlike<T>({&turned, &expected}, engine);
        warp->fit(start, turned);
        warp->apply(elsewhere);
        EXPECT_LE(largestDistance(elsewhere, expected), tolerance);
    }
}

TEST(ShapeWarp, HasItsBasisFunctionsAndRefusesShapesThatDoNotFit)
{
    PolynomialWarp<double> polynomial;
    ThinPlateSplineWarp2D<double> spline;
    const Curve<double> three = curveOf<double>({{0, 0}, {1, 0}, {0, 1}}, true);
    const Curve<double> two = curveOf<double>({{0, 0}, {1, 0}}, true);
    const Curve<double> solid = curveOf<double>({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, true);
    const Curve<double> line = curveOf<double>({{0, 0}, {1, 1}, {2, 2}}, true);
    const Vector<double> a = vectorOf<double>({1, 2});
    const Vector<double> b = vectorOf<double>({4, 6});
    EXPECT_EQ(spline.rbf(a, b), 25 * std::log(25.0));
    EXPECT_EQ(spline.rbf(a, a), 0);
    EXPECT_EQ(ThinPlateSplineWarp3D<double>().rbf(a, b), 5);
    Vector<double> x = vectorOf<double>({1, 2, 3});
    for (ShapeWarp<double>* warp :
         {static_cast<ShapeWarp<double>*>(&polynomial), static_cast<ShapeWarp<double>*>(&spline)}) {
        const ShapeWarp<double>& still = *warp;
        EXPECT_THROW(still.apply(x), ProgramError);
        EXPECT_THROW(warp->fit(three, two), SizeError);
        EXPECT_THROW(warp->fit(two, three), SizeError);
        EXPECT_THROW(warp->fit(three, solid), SizeError);
        EXPECT_THROW(warp->fit(Curve<double>(), Curve<double>()), SizeError);
        warp->fit(three, three);
        EXPECT_THROW(still.apply(x), SizeError);
    }
    EXPECT_THROW(spline.fit(line, line), MathError);
}

TEST(FusionWarping, BringsTheMeshesToTheTargetAndTheOtherShapesAlong)
{
    std::mt19937 engine(4);
    QuadMesh<double> goal(3, 3, 9, 0, 0, false);
    goal.fromVector(randomVector<double>(81, engine) * 4);
    ShapeSet<double> target;
    target.addShape(nullptr, false);
    target.addShape(&goal, true);
    for (bool spline : {true, false}) {
        // The start is moved from the target, begins at another vertex, and has a companion.
        const Matrix<double> affine = matrixOf<double>({{1.2, 0.1, 0}, {0, 1.2, 0}, {0, 0, 1.2}});
        QuadMesh<double> mesh(goal);
        mesh.detach();
        mesh.multiply(affine);
        for (int k = 0; k < 3; ++k) {
            mesh[k].setOrigin(4);
        }
        Curve<double> mark = curveOf<double>({{1, 2, 3}}, true);
        mark.multiply(affine);
        ShapeSet<double> set;
        set.addShape(&mark, false);
        set.addShape(&mesh, true);
        Fusion<double> fusion;
        Listener listener;
        fusion.addMonitor(listener);
        fusion.addShapeSet(&set);
        if (spline) {
            fusion.tpsWarping(target);
        } else {
            fusion.polynomialWarping(target, 1);
        }
        EXPECT_EQ(listener.log, "started ;1/2;finished ;");
        EXPECT_LE(largestDistance<double>(mesh, goal), 1e-10);
        EXPECT_LE(mark[0].distance(vectorOf<double>({1, 2, 3})), 1e-10);
    }
    QuadMesh<double> shorter(3, 2, 9, 0, 0, true);
    ShapeSet<double> open;
    open.addShape(&shorter, true);
    Fusion<double> fusion;
    fusion.addShapeSet(&open);
    EXPECT_THROW(fusion.tpsWarping(target), Exception);
}

} // namespace
