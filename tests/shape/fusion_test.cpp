#include "shape/meshes/quadmesh.h"
#include "shape/registration/fusion.h"
#include "shape/registration/shapesetgroup.h"
#include "support/curves.h"
#include "support/errors.h"
#include "support/listener.h"

#include <memory>

namespace {

/// Leaves that are one plane strip, each moved and turned its own way.
struct Leaves
{
    Leaves(int count, double noise, unsigned int seed)
    {
        std::mt19937 engine(seed);
        const Vector<double> form = randomVector<double>(2 * 2 * 9, engine) * 10;
        for (int i = 0; i < count; ++i) {
            auto* strip = new QuadMesh<double>(2, 2, 9, 0, 0, true);
            strip->fromVector(form + randomVector<double>(36, engine) * noise);
            const double angle = i * 0.7;
            SquareMatrix<double> turn(2);
            turn(0, 0) = turn(1, 1) = std::cos(angle);
            turn(0, 1) = -std::sin(angle);
            turn(1, 0) = std::sin(angle);
            strip->multiply(turn);
            strip->translate(randomVector<double>(2, engine) * 50);
            auto* contour = new Curve<double>((*strip)[0]);
            contour->detach();
            starts.emplace_back((*contour)[3]);
            sets.emplace_back();
            sets.back().setName("contour");
            sets.back().addShape(contour, false);
            sets.back().addShape(strip, true);
        }
        for (ShapeSet<double>& set : sets) {
            fusion.addShapeSet(&set);
        }
    }

    ~Leaves()
    {
        for (ShapeSet<double>& set : sets) {
            set.clear();
        }
    }

    std::vector<ShapeSet<double>> sets;
    std::vector<Vector<double>> starts;
    Fusion<double> fusion;
};

} // namespace

TEST(Fusion, BringsMovedCopiesOntoEachOther)
{
    for (const bool closest : {false, true}) {
        Leaves leaves(5, 0, 7);
        Fusion<double>& fusion = leaves.fusion;
        const double before = fusion.computeGlobalRegistrationError(false);
        EXPECT_GT(before, 10);
        if (closest) {
            fusion.patAlignment();
        }
        fusion.amibRegistration(20, false, closest);
        EXPECT_EQ(fusion.getDistances().size(), 21u);
        if (!closest) {
            EXPECT_NEAR(fusion.getDistances().back(), 0, 1e-6);
            // The matrices tell where each vertex has gone.
            for (std::size_t i = 0; i < 5; ++i) {
                Vector<double> start = vectorOf<double>({0, 0, 0, 1});
                start.paste(0, leaves.starts[i]);
                const Vector<double> moved = fusion.getTransformMatrices()[i] * start;
                const auto& contour = dynamic_cast<Curve<double>&>(*leaves.sets[i][0]);
                EXPECT_NEAR(moved.copyUntil(1).distance(contour[3]), 0, 1e-9);
            }
        }
        for (ShapeSet<double>& set : leaves.sets) {
            const auto& strip = dynamic_cast<QuadMesh<double>&>(*set[1]);
            EXPECT_NEAR(dynamic_cast<Curve<double>&>(*set[0])[3].distance(strip[0][3]), 0, 1e-9);
        }
    }
}

TEST(Fusion, EachSetIsRegisteredOntoTheMeanOfAllOthersAsTheyStand)
{
    Leaves leaves(6, 1, 21);
    Leaves plain(6, 1, 21);
    leaves.fusion.amibRegistration(4, false, false);
    for (std::size_t step = 0; step < 4 * 6; ++step) {
        std::vector<ShapeSet<double>> references;
        std::vector<ShapeSet<double>*> others;
        for (const ShapeSet<double>& set : plain.sets) {
            references.push_back(set.referenceShapeSet());
        }
        for (std::size_t j = 1; j < 6; ++j) {
            others.push_back(&references[(step + j) % 6]);
        }
        ShapeSet<double> mean = ShapeSet<double>::computeMean(others);
        Vector<double> translation;
        SquareMatrix<double> rotation;
        references[step % 6].computeLSRegistration(mean, translation, rotation);
        mean.clear();
        for (int shape = 0; shape < 2; ++shape) {
            plain.sets[step % 6][shape]->multiply(rotation);
            plain.sets[step % 6][shape]->translate(translation);
        }
    }
    for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_LT(leaves.sets[i][1]->rmsDistance(*plain.sets[i][1]), 1e-9) << i;
    }
}

TEST(Fusion, ErrorsFallRoundByRoundUntilCanceled)
{
    Leaves leaves(4, 1, 8);
    Fusion<double>& fusion = leaves.fusion;
    Listener listener;
    listener.then = [&] {
        if (listener.last == "6/15") {
            fusion.cancel();
        }
    };
    fusion.addMonitor(listener);
    fusion.amibRegistration(15, true, false);
    EXPECT_NE(listener.log.find("6/15;canceled"), std::string::npos) << listener.log;
    const std::vector<double>& distances = fusion.getDistances();
    ASSERT_EQ(distances.size(), 6u);
    EXPECT_LE(distances[5], distances[0] + 1e-12);
    EXPECT_EQ(fusion.getCorrespondences().size(), 6u);
    fusion.removeShapeSet(&leaves.sets[1]);
    fusion.removeShapeSet(&leaves.sets[1]);
    EXPECT_EQ(fusion.getSize(), 3);
    EXPECT_EQ(fusion.getCorrespondences().size(), 3u);
}

TEST(Fusion, ErrorsAreRootsOfMeanSquaredDistancesOverAllPairs)
{
    Leaves leaves(4, 1.0, 23);
    Fusion<double>& fusion = leaves.fusion;
    const auto mesh = [&](std::size_t i) -> QuadMesh<double>& {
        return dynamic_cast<QuadMesh<double>&>(*leaves.sets[i][1]);
    };
    const std::vector<Matrix<double>> errors = fusion.computeNormalizationError();
    ASSERT_EQ(errors.size(), 1u);
    double total = 0;
    for (int k = 0; k < 2; ++k) {
        for (int j = 0; j < 9; ++j) {
            double sum = 0;
            for (std::size_t a = 0; a < 4; ++a) {
                for (std::size_t b = a + 1; b < 4; ++b) {
                    sum += mesh(a)[k][j].sdistance(mesh(b)[k][j]);
                }
            }
            EXPECT_NEAR(errors[0](k, j), std::sqrt(sum / 6), 1e-9);
            total += sum;
        }
    }
    EXPECT_NEAR(fusion.computeGlobalRegistrationError(false), std::sqrt(total / 6 / 18), 1e-12);
    fusion.computeColorMaps(errors);
    ASSERT_TRUE(mesh(3).hasVertexColors());
    EXPECT_THROW(fusion.computeColorMaps({}), SizeError);
    EXPECT_TRUE(Fusion<double>().computeNormalizationError().empty());
    Leaves alone(1, 0, 9);
    alone.fusion.amibRegistration(3, false, false);
    EXPECT_EQ((*alone.sets[0][0])[vectorOf<unsigned int>({3})], alone.starts[0]);
    EXPECT_EQ(alone.fusion.getDistances().back(), 0);

    // Copies are not apart, however many and far off.
    Fusion<float> copies;
    QuadMesh<float> strip(2, 2, 2, 0, 0, true);
    strip.fromVector(vectorOf<float>({4321.1f, 777.7f, 0.1f, 3, 4, 5, 6, 7.3f}));
    std::vector<ShapeSet<float>> sets(300);
    for (ShapeSet<float>& set : sets) {
        set.addShape(&strip, true);
        copies.addShapeSet(&set);
    }
    EXPECT_LT(copies.computeGlobalRegistrationError(false), 1e-9f);
    EXPECT_LT(copies.computeNormalizationError()[0](0, 0), 1e-9f);
    QuadMesh<float> wider(2, 2, 3, 0, 0, true);
    ShapeSet<float> other;
    other.addShape(&wider, true);
    copies.addShapeSet(&other);
    EXPECT_THROW(copies.computeGlobalRegistrationError(false), SizeError);
    EXPECT_THROW(copies.computeNormalizationError(), SizeError);
    EXPECT_THROW(copies.amibRegistration(1, false, false), SizeError);
}

TEST(ShapeSetGroup, AveragesEntryByEntry)
{
    Curve<double> shapes[] = {curveOf<double>({{0, 0}}, true), curveOf<double>({{2, 4}}, true)};
    ShapeSet<double> sets[2];
    ShapeSetGroup<double> group;
    for (int i = 0; i < 2; ++i) {
        sets[i].addShape(&shapes[i], i == 0);
        group.addShapeSet(&sets[i]);
    }
    sets[0].addShape(nullptr, true);
    ShapeSet<double> average = group.average();
    ASSERT_EQ(average.getSize(), 2);
    EXPECT_EQ(average[0]->cog(), vectorOf<double>({1, 2}));
    EXPECT_FALSE(average.isReference(0));
    EXPECT_EQ(average[1], nullptr);
    average.clear();
    group.addShapeSet(&sets[0]);
    group.removeShapeSet(&sets[0]);
    EXPECT_EQ(group.getNumShapeSets(), 1);
}
