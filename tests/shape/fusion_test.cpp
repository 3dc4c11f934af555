#include "shape/fusion.h"
#include "shape/quadmesh.h"
#include "shape/shapesetgroup.h"
#include "support/curves.h"
#include "system/progressmonitor.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <random>

namespace {

/// Cancels the fusion after some rounds.
class Canceler : public ProgressMonitor
{
public:
    explicit Canceler(int rounds)
        : rounds_(rounds)
    {}

    using ProgressMonitor::subjectProgressed;

    void subjectProgressed(int current, int total) override
    {
        lastTotal = total;
        if (current == rounds_) {
            currentSubject()->cancel();
        }
    }

    using ProgressMonitor::subjectCanceled;

    void subjectCanceled(const std::string&) override { canceled = true; }

    int lastTotal = 0;
    bool canceled = false;

private:
    int rounds_;
};

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
        for (std::size_t i = 0; i < 5; ++i) {
            const auto& strip = dynamic_cast<QuadMesh<double>&>(*leaves.sets[i][1]);
            const auto& contour = dynamic_cast<Curve<double>&>(*leaves.sets[i][0]);
            EXPECT_NEAR(contour[3].distance(strip[0][3]), 0, 1e-9);
        }
    }
}

TEST(Fusion, EachSetIsRegisteredOntoTheMeanOfAllOthersAsTheyStand)
{
    Leaves leaves(6, 1, 21);
    Leaves plain(6, 1, 21);
    leaves.fusion.amibRegistration(4, false, false);
    for (int step = 0; step < 4 * 6; ++step) {
        std::vector<ShapeSet<double>> references;
        std::vector<ShapeSet<double>*> others;
        for (const ShapeSet<double>& set : plain.sets) {
            references.push_back(set.referenceShapeSet());
        }
        for (std::size_t j = 0; j < 6; ++j) {
            if (j != std::size_t(step % 6)) {
                others.push_back(&references[j]);
            }
        }
        ShapeSet<double> mean = ShapeSet<double>::computeMean(others);
        Vector<double> translation;
        SquareMatrix<double> rotation;
        references[std::size_t(step % 6)].computeLSRegistration(mean, translation, rotation);
        mean.clear();
        for (int shape = 0; shape < 2; ++shape) {
            plain.sets[std::size_t(step % 6)][shape]->multiply(rotation);
            plain.sets[std::size_t(step % 6)][shape]->translate(translation);
        }
    }
    for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_LT(leaves.sets[i][1]->rmsDistance(*plain.sets[i][1]), 1e-9) << i;
    }

    QuadMesh<double> narrow(2, 2, 5, 0, 0, true);
    ShapeSet<double> other;
    other.addShape(&narrow, true);
    leaves.fusion.addShapeSet(&other);
    EXPECT_THROW(leaves.fusion.amibRegistration(1, false, false), SizeError);
}

TEST(Fusion, ErrorsFallRoundByRoundUntilCanceled)
{
    Leaves leaves(4, 1, 8);
    Canceler canceler(6);
    leaves.fusion.addMonitor(canceler);
    leaves.fusion.amibRegistration(15, true, false);
    EXPECT_TRUE(canceler.canceled);
    EXPECT_EQ(canceler.lastTotal, 15);
    const std::vector<double>& distances = leaves.fusion.getDistances();
    ASSERT_EQ(distances.size(), 6u);
    EXPECT_LE(distances[5], distances[0] + 1e-12);

    // The error is the root of the mean squared distance over pairs and grid points.
    double sum = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        for (std::size_t j = i + 1; j < 4; ++j) {
            sum += leaves.sets[i][1]->squareDistances(*leaves.sets[j][1]).mean();
        }
    }
    EXPECT_NEAR(leaves.fusion.computeGlobalRegistrationError(false), std::sqrt(sum / 6), 1e-12);
    EXPECT_EQ(leaves.fusion.getCorrespondences().size(), 6u);
    leaves.fusion.removeShapeSet(&leaves.sets[1]);
    leaves.fusion.removeShapeSet(&leaves.sets[1]);
    EXPECT_EQ(leaves.fusion.getSize(), 3);
    EXPECT_EQ(leaves.fusion.getCorrespondences().size(), 3u);
}

TEST(Fusion, OneSetAloneStays)
{
    Leaves leaves(1, 0, 9);
    leaves.fusion.amibRegistration(3, false, false);
    EXPECT_EQ((*leaves.sets[0][0])[vectorOf<unsigned int>({3})], leaves.starts[0]);
    EXPECT_EQ(leaves.fusion.getDistances().back(), 0);
}

TEST(Fusion, TheNormalizationErrorIsTheDistanceOverAllPairsPointByPoint)
{
    Leaves leaves(4, 1.0, 23);
    Fusion<double>& fusion = leaves.fusion;
    const auto mesh = [&](std::size_t i) -> QuadMesh<double>& {
        return dynamic_cast<QuadMesh<double>&>(*leaves.sets[i][1]);
    };
    const std::vector<Matrix<double>> errors = fusion.computeNormalizationError();
    ASSERT_EQ(errors.size(), 1u);
    for (int k = 0; k < 2; ++k) {
        for (int j = 0; j < 9; ++j) {
            double sum = 0;
            for (std::size_t a = 0; a < 4; ++a) {
                for (std::size_t b = a + 1; b < 4; ++b) {
                    sum += mesh(a)[k][j].sdistance(mesh(b)[k][j]);
                }
            }
            EXPECT_NEAR(errors[0](k, j), std::sqrt(sum / 6), 1e-9);
        }
    }
    fusion.computeColorMaps(errors);
    ASSERT_TRUE(mesh(3).hasVertexColors());
    EXPECT_THROW(fusion.computeColorMaps({}), SizeError);
    EXPECT_TRUE(Fusion<double>().computeNormalizationError().empty());

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
}

TEST(ShapeSetGroup, AveragesEntryByEntry)
{
    Curve<double> a = curveOf<double>({{0, 0}}, true);
    Curve<double> b = curveOf<double>({{2, 4}}, true);
    ShapeSet<double> first;
    first.addShape(&a, true);
    first.addShape(nullptr, true);
    ShapeSet<double> second;
    second.addShape(&b, false);
    ShapeSetGroup<double> group;
    group.addShapeSet(&first);
    group.addShapeSet(&second);
    ShapeSet<double> average = group.average();
    ASSERT_EQ(average.getSize(), 2);
    EXPECT_EQ(average[0]->cog(), vectorOf<double>({1, 2}));
    EXPECT_FALSE(average.isReference(0));
    EXPECT_EQ(average[1], nullptr);
    average.clear();
    group.addShapeSet(&first);
    group.removeShapeSet(&first);
    EXPECT_EQ(group.getNumShapeSets(), 1);
}
