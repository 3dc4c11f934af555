#include "image/values/colormap.h"
#include "shape/meshes/quadmesh.h"
#include "shape/vertices/shapeset.h"
#include "support/curves.h"
#include "support/errors.h"

namespace {

/// A cone: circles of radius 1 + z at heights z = 0 .. height-1.
CurveStack<double> cone(int height, int width)
{
    CurveStack<double> stack(3, height, width, 0, 0, false);
    for (int k = 0; k < height; ++k) {
        for (int i = 0; i < width; ++i) {
            const double angle = 2 * M_PI * i / width;
            stack[k][i] =
                vectorOf<double>({(1 + k) * std::cos(angle), (1 + k) * std::sin(angle), 1.0 * k});
        }
    }
    return stack;
}

} // namespace

TEST(QuadMesh, KeepsItsWidthAndDropsCapsOfChangedEnds)
{
    QuadMesh<double> mesh(cone(4, 12));
    EXPECT_EQ(QuadMesh<double>().getWidth(), 0);
    mesh.buildCaps();
    EXPECT_EQ(mesh.getExtensions().getSize(), 2);
    QuadMesh<double> copy(mesh);
    EXPECT_NE(copy.getBeginCap(), mesh.getBeginCap());
    copy.insert(1, copy[0]);
    EXPECT_TRUE(copy.hasAllCaps());
    copy.insert(0, copy[0]);
    EXPECT_FALSE(copy.hasBeginCap());
    EXPECT_EQ(copy.getExtensions()[0], copy.getEndCap());
    copy.append(copy[0]);
    EXPECT_FALSE(copy.hasAnyCap());
    EXPECT_EQ(copy.getHeight(), 7);

    const Curve<double> other(3, 5, 0, 0, false);
    EXPECT_RAISES(SizeError, "void QuadMesh<T>::append(const Curve<T>&)", "Incompatible curve size",
                  mesh.append(other));
    EXPECT_THROW(mesh.prepend(other), SizeError);
    EXPECT_THROW(mesh.insert(1, other), SizeError);
    CurveStack<double> uneven = cone(2, 5);
    uneven.append(Curve<double>(3, 6, 0, 0, false));
    EXPECT_THROW(QuadMesh<double>{uneven}, SizeError);
    EXPECT_TRUE(mesh.hasAllCaps());
    QuadMesh<double> waist(3, 4, 12, 0, 0, false);
    mesh.buildCap(mesh[1], waist);
    mesh.buildCap(mesh[1], waist);
    EXPECT_EQ(mesh.getExtensions().getSize(), 3);
    EXPECT_EQ(waist[0][3], mesh[1][3]);
    mesh = *mesh.getEndCap();
    EXPECT_EQ(mesh.getHeight(), 10);
    EXPECT_FALSE(mesh.hasAnyCap());
}

TEST(QuadMesh, CapsShrinkWithTheRootOfTheirLevel)
{
    QuadMesh<double> mesh(cone(3, 16));
    mesh.buildEndCap();
    const QuadMesh<double>& cap = *mesh.getEndCap();
    ASSERT_EQ(cap.getHeight(), 10);
    for (int k = 9; k >= 0; --k) {
        // From the whole radius 3 to a hundredth of it.
        const double share = std::sqrt(k / 9.0);
        const double radius = 3 * (share + (1 - share) * 0.01);
        for (int i = 0; i < 16; ++i) {
            EXPECT_NEAR(std::hypot(cap[9 - k][i][0], cap[9 - k][i][1]), radius, 1e-12);
            EXPECT_NEAR(cap[9 - k][i][2], 2, 1e-12);
        }
    }
    mesh /= 2;
    EXPECT_NEAR(cap[0][0][0], 1.5, 1e-12);
    mesh.extendToCaps();
    EXPECT_EQ(mesh.getHeight(), 3 + 9);
    EXPECT_FALSE(mesh.hasAnyCap());
    EXPECT_NEAR(mesh.getLastCurve()[0][0], 0.015, 1e-12);

    QuadMesh<double> open(3, 2, 4, 0, 0, true);
    open.buildBeginCap();
    EXPECT_FALSE(open.hasAnyCap());
    EXPECT_THROW(QuadMesh<double>().buildEndCap(), SizeError);
    EXPECT_RAISES(TypeError, "void QuadMesh<int>::buildCap(const Curve<int>&, QuadMesh&)",
                  "Method undefined for type 'int'",
                  QuadMesh<int>(3, 2, 4, 0, 0, false).buildCaps());
}

TEST(QuadMesh, MeanAndVarianceAreThoseOfEachGridPoint)
{
    std::mt19937 engine(91);
    const Matrix<double> values = randomMatrix<double>(4, 45, engine);
    std::vector<QuadMesh<double>> meshes(4, QuadMesh<double>(3, 3, 5, 0, 0, false));
    std::vector<QuadMesh<double>*> pointers;
    for (QuadMesh<double>& mesh : meshes) {
        mesh.detach();
        mesh.fromVector(values[static_cast<int>(pointers.size())]);
        pointers.push_back(&mesh);
    }
    const QuadMesh<double> mean = QuadMesh<double>::mean(pointers);
    const Matrix<double> variance = QuadMesh<double>::varianceMap(mean, pointers);
    EXPECT_EQ(meshes[0].toVector(), values[0]);
    const Vector<double> means = mean.toVector();
    for (int i = 0; i < 45; i += 3) {
        double total = 0;
        for (int c = i; c < i + 3; ++c) {
            EXPECT_NEAR(means[c], values.getColumn(c).mean(), 1e-15);
            total += values.getColumn(c).var();
        }
        EXPECT_NEAR(variance(i / 15, i / 3 % 5), total, 1e-14);
    }
    QuadMesh<double> taller(3, 4, 5, 0, 0, false);
    pointers.push_back(&taller);
    EXPECT_THROW(QuadMesh<double>::mean(pointers), SizeError);
}

TEST(QuadMesh, FindsTheShiftOfATurnedCopy)
{
    std::mt19937 engine(92);
    QuadMesh<double> mesh(2, 3, 11, 0, 0, false);
    mesh.fromVector(randomVector<double>(66, engine));
    QuadMesh<double> turned(mesh);
    for (int k = 0; k < 3; ++k) {
        turned[k].setOrigin(4);
    }
    const QuadMesh<double> places = mesh.closestPointMap(turned);
    EXPECT_EQ(places[2][5], vectorOf<double>({2, 1}));
    EXPECT_EQ(mesh.match(turned), 4u);
    EXPECT_EQ(coordinatesOf(mesh), coordinatesOf(turned));
    turned.setOpen(true);
    EXPECT_RAISES(TypeError, "unsigned int QuadMesh<T>::findMatch(const QuadMesh&) const",
                  "Cannot match open meshes", mesh.findMatch(turned));
    EXPECT_THROW(mesh.findMatch(QuadMesh<double>()), SizeError);
}

TEST(QuadMesh, ColorsRunFromTheSmallestToTheLargestValue)
{
    QuadMesh<float> mesh(3, 1, 3, 0, 0, true);
    Colormap colormap(256);
    colormap.makeGrayscale();
    mesh.buildVertexColors(matrixOf<float>({{-1, 0, 1}}), colormap);
    EXPECT_EQ(coordinatesOf(*mesh.getVertexColors()),
              (std::vector<int>{0, 0, 0, 127, 127, 127, 255, 255, 255}));
    mesh.buildVertexColors(matrixOf<float>({{2, 2, 2}}), colormap);
    EXPECT_EQ((*mesh.getVertexColors())[0][1][0], 0);
    QuadMesh<int> small(3, 1, 2, 0, 0, true);
    EXPECT_THROW(mesh.setVertexColors(&small), SizeError);
    EXPECT_THROW(mesh.buildVertexColors(matrixOf<float>({{1, 2, 3}}), Colormap(4)), SizeError);
}

TEST(CurveStack, ResamplesAConeOntoTheConeAndBack)
{
    CurveStack<double> stack = cone(5, 120);
    // Turned levels are matched again, so that columns do not twist.
    stack[2].setOrigin(50);
    const QuadMesh<double> mesh = stack.resample(9, 60);
    const QuadMesh<double> interpolated = stack.interpolate(mesh);
    const Vector<double> errors = stack.resamplingError(mesh);
    for (int k = 0; k < 9; ++k) {
        for (int i = 0; i < 60; ++i) {
            const Vector<double>& vertex = mesh[k][i];
            EXPECT_NEAR(vertex[2], 0.5 * k, 1e-9);
            EXPECT_NEAR(std::hypot(vertex[0], vertex[1]), 1 + vertex[2], 0.01);
            EXPECT_NEAR(k % 2 == 1 ? 0 : interpolated[k / 2][i].distance(vertex), 0, 1e-9);
        }
        // Every second vertex is kept; the others lie half a step away from one that is.
        EXPECT_NEAR(errors[k / 2], 2 * (1 + k / 2) * std::sin(M_PI / 120), 0.01);
    }
    int height = 0;
    int width = 0;
    const double error = stack.optimalResampling(0.5, height, width);
    EXPECT_LE(error, 0.5);
    EXPECT_NEAR(stack.resamplingError(stack.resample(height, width)).max(), error, 1e-12);
    EXPECT_LT(width, 120);
    EXPECT_THROW(stack.optimalResampling(0, height, width), ValueError);
}
