#include "numerics/squarematrix.h"
#include "shape/quadmesh.h"
#include "shape/trimesh.h"
#include "support/curves.h"
#include "support/errors.h"
#include "support/temporaryfolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <limits>
#include <memory>
#include <set>
#include <sstream>

namespace {

template <class T>
class TriMeshOf : public testing::Test
{};

using RealTypes = testing::Types<float, double, long double>;
TYPED_TEST_SUITE(TriMeshOf, RealTypes);

/// `rows` by `columns` vertices around a ring of radius 3 and thickness 1, around the third axis.
template <class T>
TriMesh<T> torus(int rows, int columns)
{
    TriMesh<T> mesh(3, rows * columns, 0, 0);
    const auto number = [&](int i, int j) { return i % rows * columns + j % columns; };
    for (int i = 0; i < rows; ++i) {
        for (int j = 0; j < columns; ++j) {
            const double u = 2 * M_PI * i / rows;
            const double v = 2 * M_PI * j / columns;
            Vector<T>& vertex = mesh[number(i, j)];
            vertex[0] = static_cast<T>((3 + std::cos(v)) * std::cos(u));
            vertex[1] = static_cast<T>((3 + std::cos(v)) * std::sin(u));
            vertex[2] = static_cast<T>(std::sin(v));
            mesh.addTriangle(number(i, j), number(i + 1, j), number(i + 1, j + 1));
            mesh.addTriangle(number(i, j), number(i + 1, j + 1), number(i, j + 1));
        }
    }
    return mesh;
}

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
    }
    return corners;
}

int commonCorners(const TriMesh<double>& mesh, int t, int u)
{
    int count = 0;
    for (int corner : cornersOf(mesh, t)) {
        count += static_cast<int>(cornersOf(mesh, u).count(corner));
    }
    return count;
}

/// Compares all neighbourhoods with what the list of triangles alone tells.
void expectConsistent(const TriMesh<double>& mesh)
{
    for (int v = 0; v < mesh.getSize(); ++v) {
        std::set<int> star;
        std::set<int> neighbours;
        for (int t = 0; t < mesh.getNumTriangles(); ++t) {
            const std::set<int> corners = cornersOf(mesh, t);
            if (corners.count(v) == 1) {
                star.insert(t);
                neighbours.insert(corners.begin(), corners.end());
            }
        }
        neighbours.erase(v);
        std::vector<int> sorted = mesh.star(v);
        std::sort(sorted.begin(), sorted.end());
        ASSERT_EQ(sorted, listOf(star));
        ASSERT_EQ(mesh.neighbours(v), listOf(neighbours));
        for (int w = 0; w < mesh.getSize(); ++w) {
            std::set<int> shared;
            for (int t : star) {
                if (cornersOf(mesh, t).count(w) == 1) {
                    shared.insert(t);
                }
            }
            ASSERT_EQ(mesh.sharedTriangles(v, w), listOf(shared));
        }
    }
    for (int t = 0; t < mesh.getNumTriangles(); ++t) {
        std::set<int> byEdge;
        std::set<int> byVertex;
        for (int u = 0; u < mesh.getNumTriangles(); ++u) {
            const int common = u == t ? 0 : commonCorners(mesh, t, u);
            if (common > 0) {
                byVertex.insert(u);
            }
            if (common > 1) {
                byEdge.insert(u);
            }
        }
        ASSERT_EQ(mesh.neighboringTriangles(t, false), listOf(byEdge));
        ASSERT_EQ(mesh.neighboringTriangles(t, true), listOf(byVertex));
        for (int c = 0; mesh.triangle(t) != nullptr && c < 3; ++c) {
            ASSERT_EQ(&(*mesh.triangle(t))[c], &mesh[mesh.getTriangleIndexes(t)[c]]);
        }
    }
}

TEST(TriMesh, KeepsStarsAndTrianglesInStepThroughAnyScript)
{
    std::mt19937 engine(1);
    for (int script = 0; script < 20; ++script) {
        TriMesh<double> mesh(randomCurve<double>(8, 1, true, engine, 3));
        for (int step = 0; step < 25; ++step) {
            const int n = mesh.getSize();
            const auto any = [&](int count) {
                return static_cast<int>(engine() % static_cast<unsigned int>(count));
            };
            const int i = any(n);
            const int j = (i + 1 + any(n - 2)) % n;
            switch (any(6)) {
            case 0:
                if (mesh.getNumTriangles() > 0) {
                    mesh.removeTriangle(any(mesh.getNumTriangles()));
                }
                break;
            case 1:
                if (mesh.sharedTriangles(i, j).empty()) {
                    mesh.updateStar(i, j);
                }
                break;
            case 2:
                mesh.append(randomVector<double>(3, engine));
                break;
            default: {
                int k = any(n);
                while (k == i || k == j) {
                    k = (k + 1) % n;
                }
                mesh.addTriangle(i, j, k);
            }
            }
        }
        expectConsistent(mesh);
        const int size = mesh.getSize();
        const TriMesh<double> before(mesh);
        TriMesh<double> doubled(mesh);
        doubled.detach();
        doubled.append(before);
        EXPECT_EQ(doubled.getSize(), 2 * size);
        expectConsistent(doubled);
        doubled.setSize(size + 2);
        expectConsistent(doubled);
        doubled.setSize(size + 5);
        EXPECT_EQ(doubled[size + 4], vectorOf<double>({0, 0, 0}));
        expectConsistent(doubled);
    }
}

TEST(TriMesh, CopiesShareVerticesUntilTheyDetach)
{
    TriMesh<double> mesh = TriMesh<double>::cube();
    mesh.setVertexColors(new TriMesh<int>(3, 8, 0, 0));
    mesh.removeTriangle(5);
    const std::unique_ptr<TriMesh<double>> copy(mesh.clone());
    mesh[0][0] = -1;
    EXPECT_EQ((*copy)[0][0], -1);
    EXPECT_EQ((*copy->triangle(0))[0][0], -1);
    EXPECT_EQ(copy->triangle(5), nullptr);
    EXPECT_TRUE(copy->hasVertexColors());
    EXPECT_EQ(textOf(*copy), textOf(mesh));
    copy->detach();
    copy->setNormal(0, vectorOf<double>({7, 8, 9}));
    (*copy)[0][0] = -2;
    EXPECT_EQ((*copy->triangle(0))[0][0], -2);
    EXPECT_EQ((*mesh.triangle(0))[0][0], -1);
    EXPECT_NE(mesh.getNormal(0)[0], 7);
    expectConsistent(*copy);

    mesh = Vertices<double>(*copy);
    EXPECT_EQ(mesh.getNumTriangles(), 0);
    EXPECT_FALSE(mesh.hasNormals() || mesh.hasVertexColors());
    EXPECT_EQ(mesh.getSize(), 8);
}

TYPED_TEST(TriMeshOf, MeasuresAreThoseOfTheSolid)
{
    using T = TypeParam;
    const T tolerance = 500 * std::numeric_limits<T>::epsilon();
    TriMesh<T> cube = TriMesh<T>::cube();
    EXPECT_LE(std::abs(cube.area() - 6), tolerance);
    EXPECT_LE(std::abs(cube.volume() - 1), tolerance);
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

    // Within the terms of second order in the steps, (2 pi / n)^2.
    const TriMesh<T> ring = torus<T>(160, 80);
    EXPECT_NEAR(static_cast<double>(ring.area() / T(12 * M_PI * M_PI)), 1, 4e-3);
    EXPECT_NEAR(static_cast<double>(ring.volume() / T(6 * M_PI * M_PI)), 1, 4e-3);
    EXPECT_EQ(ring.vertexFlags(), std::vector<bool>(160 * 80, false));
}

TEST(TriMesh, ContainsWhatTheTorusHoldsAndFindsItsNearestPoints)
{
    std::mt19937 engine(4);
    const TriMesh<double> ring = torus<double>(48, 24);
    int inside = 0;
    for (int round = 0; round < 400; ++round) {
        Vector<double> p = randomVector<double>(3, engine) * 4.5;
        p[2] /= 3;
        const double depth = 1 - std::hypot(std::hypot(p[0], p[1]) - 3, p[2]);
        if (std::abs(depth) > 0.03) {
            ASSERT_EQ(ring.contains(p), depth > 0);
            inside += depth > 0 ? 1 : 0;
        }
        Vector<double> q;
        ASSERT_NEAR(ring.closestPoint(p, q), std::abs(depth), 0.03);
        ASSERT_NEAR(q.distance(p), ring.closestPoint(p, q), 1e-12);
    }
    EXPECT_GE(inside, 50);
    for (int i = 0; i < ring.getSize(); i += 7) {
        EXPECT_TRUE(ring.contains(ring[i]));
    }
    TriMesh<double> cube = TriMesh<double>::cube();
    EXPECT_TRUE(cube.contains(vectorOf<double>({0.5, 0.25, 1})));
    EXPECT_TRUE(cube.contains(vectorOf<double>({1, 1, 1})));
    // The first ray, towards (-1.1, -1.11, -1.111), leaves through the diagonal of a face.
    EXPECT_TRUE(TriMesh<float>::cube().contains(vectorOf<float>({0.98f, 0.983f, 0.3333f})));
    EXPECT_FALSE(cube.contains(vectorOf<double>({0.5, 0.5, 1.01})));
    cube.setTriangles({});
    EXPECT_FALSE(cube.contains(vectorOf<double>({0.5, 0.5, 0.5})));
    Vector<double> q;
    EXPECT_EQ(cube.closestPoint(vectorOf<double>({0, 3, 4}), q), 5);
    EXPECT_EQ(q, vectorOf<double>({0, 0, 0}));
}

TEST(TriMesh, OrientationsSpreadFromTriangleZero)
{
    std::mt19937 engine(5);
    for (int round = 0; round < 10; ++round) {
        TriMesh<double> ring = torus<double>(7, 5);
        const Vector<int> first = ring.getTriangleIndexes(0);
        for (int t = 1; t < ring.getNumTriangles(); ++t) {
            if (engine() % 2 == 0) {
                ring.invertTriangle(t);
            }
        }
        ring.normalizeTriangleOrientations();
        EXPECT_EQ(ring.getTriangleIndexes(0), first);
        std::set<std::pair<int, int>> steps;
        for (int t = 0; t < ring.getNumTriangles(); ++t) {
            const Vector<int>& corners = ring.getTriangleIndexes(t);
            for (int c = 0; c < 3; ++c) {
                EXPECT_TRUE(steps.emplace(corners[c], corners[(c + 1) % 3]).second);
            }
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

    // Of each vertex one open edge upwards is looked for.
    TriMesh<double> single(curveOf<double>({{0, 0, 0}, {2, 0, 0}, {0, 2, 0}}, true));
    single.addTriangle(0, 1, 2);
    EXPECT_EQ(single.vertexFlags(), (std::vector<bool>{true, true, false}));
}

TEST(TriMesh, QuadMeshesBecomeTrianglesOverTheirGrid)
{
    for (bool open : {true, false}) {
        QuadMesh<double> tube(3, 3, 6, 0, 0, open);
        for (int k = 0; k < 3; ++k) {
            const Curve<double> ring = regularPolygon<double>(6, 2);
            for (int i = 0; i < 6; ++i) {
                tube[k][i] = vectorOf<double>({ring[i][0], ring[i][1], 5.0 * k});
            }
        }
        const TriMesh<double> mesh = tube.toTriMesh(true);
        EXPECT_EQ(mesh.getSize(), 18);
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
    EXPECT_THROW(QuadMesh<double>(2, 3, 4, 0, 0, true).toTriMesh(false), SizeError);
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
    const TemporaryFolder folder;
    mesh.save(folder.file("leaf"), false);
    const std::unique_ptr<Shape<float>> loaded(Shape<float>::loadFile(folder.file("leaf.tm")));
    EXPECT_EQ(textOf(dynamic_cast<TriMesh<float>&>(*loaded)), text);

    // Cut anywhere before the last number it is refused, and the mesh stays.
    const std::string cube = textOf(TriMesh<float>::cube());
    for (std::size_t length = 0; length + 2 < text.size(); ++length) {
        std::istringstream stream(text.substr(0, length));
        TriMesh<float> other = TriMesh<float>::cube();
        EXPECT_EQ(other.read(stream), -1);
        EXPECT_TRUE(stream.fail());
        EXPECT_EQ(textOf(other), cube);
    }
    for (const char* triangles : {"# -1\n", "# 2000000000\n0 1 2\n", "# 1\n0 1 4\n# 0\n",
                                  "# 1\n0 -1 2\n# 0\n", "# 1\n0 x 2\n# 0\n", "# 2\n0 1 2\n# 0\n"}) {
        std::istringstream stream(body.substr(0, body.size() - 10) + triangles);
        EXPECT_EQ(TriMesh<float>().read(stream), -1) << triangles;
    }
}

TEST(TriMeshFile, ExportsStereolithography)
{
    TriMesh<double> mesh(curveOf<double>({{0, 0, 0}, {2, 0, 0}, {0, 2.5, 0}}, true));
    mesh.addTriangle(0, 2, 1);
    mesh.addTriangle(0, 1, 2);
    mesh.removeTriangle(0);
    mesh.setName("leaf");
    const std::string text = "solid leaf\n"
                             "  facet normal 0 0 1\n"
                             "    outer loop\n"
                             "      vertex 0 0 0\n"
                             "      vertex 2 0 0\n"
                             "      vertex 0 2.5 0\n"
                             "    endloop\n"
                             "  endfacet\n"
                             "endsolid leaf\n";
    const TemporaryFolder folder;
    mesh.saveAsSTL(folder.file("leaf"));
    std::ifstream file(folder.file("leaf.stl"));
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), text);
    expectError<FileWriteError>([&] { mesh.saveAsSTL(folder.file("leaf.stl")); },
                                "void TriMesh::saveAsSTL(const string&, const bool) const",
                                "File already exists");
    mesh.saveAsSTL(folder.file("leaf.stl"), true);
}

TEST(TriMeshErrors, NameTheOperationAndTheReason)
{
    TriMesh<double> mesh = TriMesh<double>::cube();
    EXPECT_THROW(mesh.addTriangle(0, 1, 8), RangeError);
    EXPECT_THROW(mesh.addTriangle(-1, 1, 2), RangeError);
    EXPECT_THROW(mesh.addTriangle(Vector<int>(2)), SizeError);
    EXPECT_THROW(mesh.setSize(-1), ValueError);
    EXPECT_THROW(TriMesh<double>(mesh).setTriangleIndexes(0, vectorOf<int>({0, 1, 9})), RangeError);
    TriMesh<int> colors(3, 7, 0, 0);
    expectError<SizeError>([&] { mesh.setVertexColors(&colors); },
                           "void TriMesh<T>::setVertexColors(TriMesh<int>*)",
                           "The number of colors differs from the number of vertices");
    testing::internal::CaptureStderr();
    const std::string before = textOf(mesh);
    EXPECT_THROW(mesh.updateStar(0, 1), UsageError);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "problem in update star\n");
    EXPECT_EQ(textOf(mesh), before);
    EXPECT_THROW(mesh.updateStar(0, 8), RangeError);
    expectError<SizeError>([] { TriMesh<double>(2, 3, 0, 0).equivalentRadius(); },
                           "T TriMesh<T>::equivalentRadius() const", "Space dimension is not 3");
    EXPECT_THROW(TriMesh<double>(2, 3, 0, 0).smoothNormals(1), UsageError);

    // The last vertex can go without a trace; of others the numbers behind are left as they were.
    mesh.remove(7);
    EXPECT_EQ(mesh.getSize(), 7);
    EXPECT_TRUE(mesh.neighbours(7).empty());
    expectConsistent(mesh);
    EXPECT_TRUE(mesh.hasNormals());
    mesh.remove(0);
    mesh.smoothNormals(2);
    EXPECT_EQ(mesh.vertexFlags().size(), 6u);

    const std::string what = "Method not available for type 'int'";
    const TriMesh<int> whole = TriMesh<int>::cube();
    EXPECT_EQ(whole.getNumTriangles(), 12);
    Vector<int> q;
    expectError<TypeError>([&] { whole.closestPoint(whole[0], q); },
                           "closestPoint(const Vectori&,Vectori&) const", what);
    expectError<TypeError>([&] { whole.contains(whole[0]); },
                           "bool TriMesh<int>::contains(const Vector<int>&) const", what);
    expectError<TypeError>([] { QuadMesh<int>(3, 2, 2, 0, 0, true).toTriMesh(false); },
                           "TriMesh<int> QuadMesh<int>::toTriMesh(const bool) const",
                           "Method undefined for type 'int'");
}

} // namespace
