#include "numerics/squarematrix.h"
#include "shape/meshes/quadmesh.h"
#include "shape/meshes/trimesh.h"
#include "shape/vertices/boundingbox.h"
#include "support/curves.h"
#include "support/errors.h"
#include "support/solids.h"
#include "support/temporaryfolder.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <set>
#include <sstream>

namespace {

template <class T>
class TriMeshOf : public testing::Test
{};

using RealTypes = testing::Types<float, double, long double>;
TYPED_TEST_SUITE(TriMeshOf, RealTypes);

template <class T>
std::string textOf(const TriMesh<T>& mesh)
{
    std::ostringstream stream;
    mesh.write(stream);
    return stream.str();
}

std::vector<int> listOf(const std::set<int>& set)
{
    return {set.begin(), set.end()};
}

std::set<int> cornersOf(const TriMesh<double>& mesh, int t)
{
    std::set<int> corners;
    for (int c = 0; mesh.triangle(t) != nullptr && c < 3; ++c) {
        corners.insert(mesh.getTriangleIndexes(t)[c]);
        EXPECT_EQ(&(*mesh.triangle(t))[c], &mesh[mesh.getTriangleIndexes(t)[c]]);
    }
    return corners;
}

std::set<int> common(const std::set<int>& a, const std::set<int>& b)
{
    std::set<int> both;
    std::set_intersection(a.begin(), a.end(), b.begin(), b.end(), std::inserter(both, both.end()));
    return both;
}

/// Compares all neighbourhoods with what the list of triangles alone tells.
void expectConsistent(const TriMesh<double>& mesh)
{
    std::map<int, std::set<int>> star;
    std::map<int, std::set<int>> neighbours;
    for (int t = 0; t < mesh.getNumTriangles(); ++t) {
        const std::set<int> corners = cornersOf(mesh, t);
        for (const bool byVertex : {false, true}) {
            std::vector<int> near;
            for (int u = 0; u < mesh.getNumTriangles(); ++u) {
                if (u != t && common(corners, cornersOf(mesh, u)).size() > (byVertex ? 0 : 1)) {
                    near.push_back(u);
                }
            }
            ASSERT_EQ(mesh.neighboringTriangles(t, byVertex), near);
        }
        for (const int corner : corners) {
            star[corner].insert(t);
            neighbours[corner].insert(corners.begin(), corners.end());
        }
    }
    for (int v = 0; v < mesh.getSize(); ++v) {
        neighbours[v].erase(v);
        std::vector<int> listed = mesh.star(v);
        std::sort(listed.begin(), listed.end());
        ASSERT_EQ(listed, listOf(star[v]));
        ASSERT_EQ(mesh.neighbours(v), listOf(neighbours[v]));
        for (int w = 0; w < mesh.getSize(); ++w) {
            ASSERT_EQ(mesh.sharedTriangles(v, w), listOf(common(star[v], star[w])));
        }
    }
}

TEST(TriMesh, KeepsStarsAndTrianglesInStepThroughAnyScript)
{
    std::mt19937 engine(1);
    const auto any = [&](int count) { return static_cast<int>(engine() % unsigned(count)); };
    for (int script = 0; script < 20; ++script) {
        TriMesh<double> mesh(randomCurve<double>(8, 1, true, engine, 3));
        for (int step = 0; step < 25; ++step) {
            const int n = mesh.getSize();
            const int i = any(n);
            const int j = (i + 1 + any(n - 2)) % n;
            const int operation = any(6);
            if (operation == 0 && mesh.getNumTriangles() > 0) {
                mesh.removeTriangle(any(mesh.getNumTriangles()));
            } else if (operation == 1 && mesh.sharedTriangles(i, j).empty()) {
                mesh.updateStar(i, j);
            } else if (operation == 2) {
                mesh.append(randomVector<double>(3, engine));
            } else {
                const int k = (i + 1 + any(n - 2)) % n;
                mesh.addTriangle(i, j, k == j ? (i + n - 1) % n : k);
            }
        }
        expectConsistent(mesh);
        const int size = mesh.getSize();
        TriMesh<double> doubled(mesh);
        doubled.detach();
        doubled.append(TriMesh<double>(mesh));
        expectConsistent(doubled);
        for (const int newSize : {size + 2, size + 5}) {
            doubled.setSize(newSize);
            expectConsistent(doubled);
        }
        EXPECT_EQ(doubled[size + 4], vectorOf<double>({0, 0, 0}));
        mesh.remove(size - 1);
        expectConsistent(mesh);
    }
}

TEST(TriMesh, CopiesShareVerticesUntilTheyDetach)
{
    TriMesh<double> mesh = TriMesh<double>::cube();
    mesh.setVertexColors(new TriMesh<int>(3, 8, 0, 0));
    mesh.removeTriangle(5);
    const std::unique_ptr<TriMesh<double>> copy(mesh.clone());
    mesh[0][0] = -1;
    EXPECT_TRUE(copy->hasVertexColors());
    EXPECT_EQ(textOf(*copy), textOf(mesh));
    copy->detach();
    copy->setNormal(0, vectorOf<double>({7, 8, 9}));
    (*copy)[0][0] = -2;
    EXPECT_EQ(mesh[0][0], -1);
    EXPECT_NE(mesh.getNormal(0)[0], 7);
    expectConsistent(*copy);

    mesh = Vertices<double>(*copy);
    EXPECT_EQ(mesh.getNumTriangles(), 0);
    EXPECT_FALSE(mesh.hasNormals() || mesh.hasVertexColors());
    EXPECT_EQ(mesh.getSize(), 8);
}

TYPED_TEST(TriMeshOf, MeasuresOfTheUnitCubeFollowAffineMotions)
{
    using T = TypeParam;
    const T tolerance = 500 * std::numeric_limits<T>::epsilon();
    TriMesh<T> cube = TriMesh<T>::cube();
    EXPECT_LE(std::abs(cube.area() - 6), tolerance);
    EXPECT_LE(std::abs(cube.equivalentRadius() - std::cbrt(3 / (4 * M_PI))), T(1e-6));
    for (int i = 0; i < 8; ++i) {
        // Outward, into the octant of the corner.
        for (int c = 0; c < 3; ++c) {
            EXPECT_GT(cube.getNormal(i)[c] * (cube[i][c] == 0 ? -1 : 1), T(0.2));
        }
        EXPECT_LE(std::abs(cube.getNormal(i).norm() - 1), tolerance);
    }
    std::mt19937 engine(3);
    const SquareMatrix<T> affine(randomMatrix<T>(3, 3, engine));
    const Vector<T> offset = randomVector<T>(3, engine) * T(5);
    cube.multiply(affine);
    cube.translate(offset);
    EXPECT_LE(std::abs(cube.volume() - std::abs(affine.det())), tolerance);
    const Vector<T> middle = affine * vectorOf<T>({0.5, 0.5, 0.5}) + offset;
    EXPECT_LE(cube.centerOfGravity().distance(middle), tolerance / std::abs(affine.det()));
}

TEST(TriMesh, SolidsHaveTheirMeasuresInsidesAndNearestPoints)
{
    struct Solid
    {
        TriMesh<double> mesh;
        double area, volume;
        /// How far the triangles may lie within the round form; more than the share they miss.
        double gap;
        /// How deep a point lies under the surface, negative outside.
        std::function<double(const Vector<double>&)> depth;
    };

    const Solid solids[] = {
        {solids::trianglesOf(solids::sphere<double>(40, 80)), 4 * M_PI, 4 * M_PI / 3, 4e-3,
         [](const Vector<double>& p) { return 1 - p.norm(); }},
        {solids::trianglesOf(solids::torus<double>(96, 48)), 12 * M_PI * M_PI, 6 * M_PI * M_PI,
         1e-2,
         [](const Vector<double>& p) { return 1 - std::hypot(std::hypot(p[0], p[1]) - 3, p[2]); }}};
    std::mt19937 engine(4);
    for (const Solid& solid : solids) {
        const TriMesh<double>& mesh = solid.mesh;
        EXPECT_NEAR(mesh.area() / solid.area, 1, solid.gap);
        EXPECT_NEAR(mesh.volume() / solid.volume, 1, solid.gap);
        const double reach = mesh.boundingBox().max(0) * 1.2;
        int inside = 0;
        for (int round = 0; round < 100; ++round) {
            Vector<double> p = randomVector<double>(3, engine) * reach;
            p[2] /= reach / 1.2;
            const double depth = solid.depth(p);
            Vector<double> q;
            const double distance = mesh.closestPoint(p, q);
            ASSERT_NEAR(distance, std::abs(depth), solid.gap);
            ASSERT_NEAR(q.distance(p), distance, 1e-12);
            ASSERT_NEAR(solid.depth(q), 0, solid.gap);
            if (std::abs(depth) > solid.gap) {
                ASSERT_EQ(mesh.contains(p), depth > 0);
                inside += depth > 0 ? 1 : 0;
            }
        }
        EXPECT_GE(inside, 20);
        for (int i = 0; i < mesh.getSize(); i += 1 + mesh.getSize() / 50) {
            EXPECT_TRUE(mesh.contains(mesh[i]));
        }
    }
    // The first ray, towards (-1.1, -1.11, -1.111), leaves through the diagonal of a face.
    EXPECT_TRUE(TriMesh<float>::cube().contains(vectorOf<float>({0.98f, 0.983f, 0.3333f})));
    TriMesh<double> bare = TriMesh<double>::cube();
    bare.setTriangles({});
    EXPECT_FALSE(bare.contains(vectorOf<double>({0.5, 0.5, 0.5})));
    Vector<double> q;
    EXPECT_EQ(bare.closestPoint(vectorOf<double>({0, 3, 4}), q), 5);
    EXPECT_EQ(q, vectorOf<double>({0, 0, 0}));
}

TEST(TriMesh, OrientationsSpreadFromTriangleZero)
{
    std::mt19937 engine(5);
    for (int round = 0; round < 10; ++round) {
        TriMesh<double> cube = TriMesh<double>::cube();
        EXPECT_EQ(cube.vertexFlags(), std::vector<bool>(8, false));
        std::vector<Vector<int>> before;
        for (int t = 0; t < cube.getNumTriangles(); ++t) {
            before.push_back(cube.getTriangleIndexes(t));
            if (t > 0 && engine() % 2 == 0) {
                cube.invertTriangle(t);
            }
        }
        cube.normalizeTriangleOrientations();
        for (std::size_t t = 0; t < before.size(); ++t) {
            // The same corners in the same turn, whichever comes first.
            const std::vector<int> corners =
                cube.getTriangleIndexes(static_cast<int>(t)).toStlVector();
            std::vector<int> expected = before[t].toStlVector();
            std::rotate(expected.begin(), std::find(expected.begin(), expected.end(), corners[0]),
                        expected.end());
            EXPECT_EQ(corners, expected);
        }
    }
}

TEST(TriMesh, NormalsAreWeightedByAreaAndSmoothedByNeighbours)
{
    // Two faces at vertex 0, of areas 2 and 1, along the third and the first axis.
    TriMesh<double> mesh(curveOf<double>({{0, 0, 0}, {2, 0, 0}, {0, 2, 0}, {0, 0, 1}}, true));
    mesh.addTriangle(0, 1, 2);
    mesh.addTriangle(0, 2, 3);
    mesh.computeNormals();
    EXPECT_NEAR(mesh.getNormal(0).distance(vectorOf<double>({1, 0, 2}) / std::sqrt(5.0)), 0, 1e-15);
    EXPECT_EQ(mesh.getNormal(1), vectorOf<double>({0, 0, 1}));
    const Vector<double> sum = mesh.getNormal(0) + mesh.getNormal(1) + mesh.getNormal(2);
    mesh.smoothNormals(1);
    EXPECT_NEAR(mesh.getNormal(1).distance(sum / sum.norm()), 0, 1e-15);

    // Colours given once more are the same ones, not freed.
    mesh.setVertexColors(
        new TriMesh<int>(curveOf<int>({{1, 2, 3}, {4, 5, 6}, {7, 8, 9}, {0, 0, 1}}, true)));
    mesh.setVertexColors(mesh.getVertexColors());
    EXPECT_EQ((*mesh.getVertexColors())[2], vectorOf<int>({7, 8, 9}));

    // Of each vertex one open edge upwards is looked for.
    TriMesh<double> single(curveOf<double>({{0, 0, 0}, {2, 0, 0}, {0, 2, 0}}, true));
    single.addTriangle(0, 1, 2);
    EXPECT_EQ(single.vertexFlags(), (std::vector<bool>{true, true, false}));
}

TEST(TriMesh, QuadMeshesBecomeTrianglesOverTheirGrid)
{
    for (bool open : {true, false}) {
        QuadMesh<double> tube = solids::grid<double>(3, 6, [](int i, int j, double* v) {
            v[0] = 2 * std::cos(M_PI * j / 3);
            v[1] = 2 * std::sin(M_PI * j / 3);
            v[2] = 5 * i;
        });
        tube.setOpen(open);
        const TriMesh<double> mesh = tube.toTriMesh(true);
        EXPECT_EQ(mesh.toVector(), tube.toVector());
        EXPECT_EQ(mesh.getNumTriangles(), open ? 20 : 24);
        EXPECT_EQ(mesh.getTriangleIndexes(1), vectorOf<int>({6, 1, 7}));
        if (!open) {
            EXPECT_EQ(mesh.getTriangleIndexes(10), vectorOf<int>({5, 0, 11}));
            EXPECT_EQ(mesh.getTriangleIndexes(11), vectorOf<int>({11, 0, 6}));
        }
        // The sides of a hexagon are as long as its radius.
        EXPECT_NEAR(mesh.area(), (open ? 5 : 6) * 2 * 10, 1e-10);
    }
    EXPECT_EQ(QuadMesh<double>().toTriMesh(false).getSize(), 0);
}

TEST(TriMeshFile, HoldsVerticesTrianglesAndNormals)
{
    TriMesh<float> mesh(curveOf<float>({{0, 0, 0}, {2, 0, 0}, {0, 2, 0}, {0, 0, 0.5f}}, true));
    mesh.addTriangle(0, 1, 3);
    mesh.addTriangle(0, 1, 2);
    mesh.removeTriangle(0);
    const std::string body = "# 8\n# 3\n# 4\n0 0 0\n2 0 0\n0 2 0\n0 0 0.5\n# 1\n0 1 2\n";
    EXPECT_EQ(textOf(mesh), body + "# 0\n");
    mesh.computeNormals();
    const std::string text = body + "# 1\n0 0 1\n0 0 1\n0 0 1\n0 0 0\n";
    EXPECT_EQ(textOf(mesh), text);
    // Without normals they are computed, and others are made units.
    for (const char* end : {"# 0\n", "# 1\n0 0 3\n0 0 0.5\n0 0 1\n0 0 0\n"}) {
        std::istringstream stream(body + end);
        TriMesh<float> other = TriMesh<float>::cube();
        EXPECT_EQ(other.read(stream), 8);
        EXPECT_EQ(textOf(other), text);
    }
}

TEST(TriMeshFile, ExportsStereolithography)
{
    TriMesh<double> mesh(curveOf<double>({{-0.0, 0, -0.0}, {2, 0, 0}, {0, 2.5, 0}}, true));
    mesh.addTriangle(0, 2, 1);
    mesh.addTriangle(0, 1, 2);
    mesh.removeTriangle(0);
    mesh.setName("leaf");
    const TemporaryFolder folder;
    mesh.saveAsSTL(folder.file("leaf"));
    EXPECT_EQ(folder.read("leaf.stl"),
              "solid leaf\n  facet normal 0 0 1\n    outer loop\n      vertex 0 0 0\n"
              "      vertex 2 0 0\n      vertex 0 2.5 0\n    endloop\n  endfacet\n"
              "endsolid leaf\n");
    EXPECT_RAISES(FileWriteError, "void TriMesh::saveAsSTL(const string&, const bool) const",
                  "File already exists", mesh.saveAsSTL(folder.file("leaf.stl")));
    mesh.saveAsSTL(folder.file("leaf.stl"), true);
}

TEST(TriMeshErrors, NameTheOperationAndTheReason)
{
    TriMesh<double> mesh = TriMesh<double>::cube();
    const std::string before = textOf(mesh);
    EXPECT_THROW(mesh.addTriangle(0, 1, 8), RangeError);
    EXPECT_THROW(mesh.addTriangle(-1, 1, 2), RangeError);
    EXPECT_THROW(mesh.addTriangle(Vector<int>(2)), SizeError);
    EXPECT_THROW(mesh.setSize(-1), ValueError);
    EXPECT_THROW(mesh.setTriangleIndexes(0, vectorOf<int>({0, 1, 9})), RangeError);
    TriMesh<int> colors(3, 7, 0, 0);
    EXPECT_RAISES(SizeError, "void TriMesh<T>::setVertexColors(TriMesh<int>*)",
                  "The number of colors differs from the number of vertices",
                  mesh.setVertexColors(&colors));
    testing::internal::CaptureStderr();
    EXPECT_THROW(mesh.updateStar(0, 1), UsageError);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "problem in update star\n");
    EXPECT_THROW(mesh.updateStar(0, 8), RangeError);
    EXPECT_EQ(textOf(mesh), before);
    const TriMesh<double> plane(2, 3, 0, 0);
    EXPECT_RAISES(SizeError, "T TriMesh<T>::equivalentRadius() const", "Space dimension is not 3",
                  plane.equivalentRadius());
    EXPECT_THROW(QuadMesh<double>(2, 3, 4, 0, 0, true).toTriMesh(false), SizeError);

    // Behind a removed vertex the numbers are left as they were, which later walks must survive.
    mesh.remove(0);
    mesh.smoothNormals(2);
    EXPECT_EQ(mesh.vertexFlags().size(), 7u);

    const TriMesh<int> whole = TriMesh<int>::cube();
    Vector<int> q;
    EXPECT_RAISES(TypeError, "closestPoint(const Vectori&,Vectori&) const",
                  "Method not available for type 'int'", whole.closestPoint(whole[0], q));
    EXPECT_THROW(whole.contains(whole[0]), TypeError);
    EXPECT_RAISES(TypeError, "TriMesh<int> QuadMesh<int>::toTriMesh(const bool) const",
                  "Method undefined for type 'int'",
                  QuadMesh<int>(3, 2, 2, 0, 0, true).toTriMesh(false));
}

} // namespace
