#include "shape/meshes/quadmesh.h"
#include "shape/vertices/boundingbox.h"
#include "support/curves.h"
#include "support/errors.h"

namespace {

BoundingBox<double> box(std::initializer_list<double> a, std::initializer_list<double> b)
{
    return BoundingBox<double>(vectorOf<double>(a), vectorOf<double>(b));
}

} // namespace

TEST(BoundingBox, HoldsAllVerticesTightly)
{
    std::mt19937 engine(21);
    for (int round = 0; round < 30; ++round) {
        const Curve<double> curve = randomCurve<double>(1 + round, 9, true, engine, 3);
        BoundingBox<double> bounds = curve.boundingBox();
        EXPECT_TRUE(bounds.containsAllVertices(curve));
        for (int c = 0; c < 3; ++c) {
            EXPECT_EQ(bounds.min(c), curve[curve.findMin(c)][c]);
            EXPECT_EQ(bounds.max(c), curve[curve.findMax(c)][c]);
        }
        BoundingBox<double> grown(curve[0], curve[0]);
        BoundingBox<double> merged;
        for (int i = 0; i < curve.getSize(); ++i) {
            grown.expandUpToPosition(curve[i]);
            merged = merged.merge(BoundingBox<double>(curve[i], curve[i]));
        }
        EXPECT_EQ(grown.getVertex1(), bounds.getVertex1());
        EXPECT_EQ(merged.getVertex2(), bounds.getVertex2());
        bounds.expand(-1e-9);
        EXPECT_FALSE(bounds.containsAllVertices(curve));
    }
    const BoundingBox<int> empty = Curve<int>(2, 0, 0, 0, true).boundingBox();
    EXPECT_FALSE(empty.containsAny(Curve<int>()));
    EXPECT_TRUE(BoundingBox<int>().contains(vectorOf<int>({5})));
    EXPECT_FALSE(BoundingBox<int>().isValid());
}

TEST(BoundingBox, MeasuresWhateverTheOrderOfCorners)
{
    BoundingBox<double> mixed = box({4, 1}, {1, 5});
    EXPECT_EQ(mixed.widths(), vectorOf<double>({3, 4}));
    EXPECT_EQ(mixed.diagonal(), 5);
    EXPECT_EQ(mixed.cog(), vectorOf<double>({2.5, 3}));
    mixed.rectify();
    EXPECT_EQ(mixed.getVertex1(), vectorOf<double>({1, 1}));
    EXPECT_TRUE(mixed.intersects(box({4, 5}, {9, 9})));
    EXPECT_FALSE(mixed.intersects(box({4.1, 5}, {9, 9})));
    EXPECT_EQ(BoundingBox<int>(vectorOf<int>({1, 1}), vectorOf<int>({2, 5})).cog(),
              vectorOf<int>({1, 3}));
    EXPECT_EQ(coordinatesOf(mixed.asVertices()), (std::vector<double>{1, 1, 4, 1, 1, 5, 4, 5}));
    // The mesh of a box has a ring of corners at each end.
    const BoundingBox<int> block(vectorOf<int>({0, 0, 0}), vectorOf<int>({1, 2, 3}));
    EXPECT_EQ(
        coordinatesOf(block.asQuadMesh()),
        (std::vector<int>{0, 0, 0, 1, 0, 0, 1, 2, 0, 0, 2, 0, 0, 0, 3, 1, 0, 3, 1, 2, 3, 0, 2, 3}));
}

TEST(BoundingBox, WidensToWholeCellsAboutItsCentre)
{
    BoundingBox<double> cells = box({0, 1}, {5, 3});
    EXPECT_EQ(cells.adjustToResolution(2), vectorOf<int>({3, 1}));
    EXPECT_EQ(cells.getVertex1(), vectorOf<double>({-0.5, 1}));
    EXPECT_EQ(cells.getVertex2(), vectorOf<double>({5.5, 3}));
    EXPECT_THROW(cells.adjustToResolution(0), ValueError);
    EXPECT_EQ(cells.getVertex1(), vectorOf<double>({-0.5, 1}));
}

TEST(BoundingBox, RaysHitWhereSamplesAlongThemEnter)
{
    std::mt19937 engine(22);
    const BoundingBox<double> cube = box({-1, -1, -1}, {1, 1, 1});
    int hits = 0;
    for (int round = 0; round < 500; ++round) {
        const Vector<double> origin = randomVector<double>(3, engine) * 2;
        Vector<double> direction = randomVector<double>(3, engine);
        if (round % 5 == 0) {
            direction[round % 3] = 0;
        }
        // Slabs: the ray is in the box between the latest entry and the earliest exit.
        Vector<double> inverse(3);
        double entry = 0;
        double exit = 1e30;
        for (int c = 0; c < 3; ++c) {
            inverse[c] = 1 / direction[c];
            const double s = (-1 - origin[c]) * inverse[c];
            const double t = (1 - origin[c]) * inverse[c];
            entry = std::max(entry, std::min(s, t));
            exit = std::min(exit, std::max(s, t));
        }
        EXPECT_EQ(cube.intersectsRay(origin, direction, inverse), entry <= exit) << round;
        hits += entry <= exit ? 1 : 0;
    }
    EXPECT_GT(hits, 50);

    const Vector<double> forward = vectorOf<double>({1, 0, 0});
    const Vector<double> inverse = vectorOf<double>({1, HUGE_VAL, HUGE_VAL});
    EXPECT_TRUE(cube.intersectsLeftRay(vectorOf<double>({-3, 0, 0}), forward, inverse));
    EXPECT_FALSE(cube.intersectsLeftRay(vectorOf<double>({0, 0, 0}), forward, inverse));
    EXPECT_FALSE(cube.intersectsLeftRay(vectorOf<double>({-3, 2, 0}), forward, inverse));
}
