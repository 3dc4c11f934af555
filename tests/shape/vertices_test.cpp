#include "shape/curves/edge.h"
#include "shape/vertices/vertices.h"
#include "support/curves.h"
#include "support/errors.h"

#include <algorithm>
#include <tuple>
#include <typeinfo>

namespace {

/// One coordinate per vertex, so that a list of vertices compares with a list of numbers.
Vector<int> number(int value)
{
    return vectorOf<int>({value});
}

} // namespace

TEST(Vertices, RandomEditsAgreeWithAPlainList)
{
    std::mt19937 engine(1);
    Vertices<int> vertices(1, 0, 0, 0);
    std::vector<int> model;
    const auto draw = [&](int bound) { return static_cast<int>(engine() % unsigned(bound)); };
    for (int step = 0; step < 3000; ++step) {
        const int size = static_cast<int>(model.size());
        const int value = draw(3);
        const int at = size > 0 ? draw(size) : 0;
        const int to = std::min(size - 1, at + draw(4));
        const int operation = size > 0 ? draw(10) : draw(4);
        if (operation <= 1) {
            vertices.append(number(value));
            model.push_back(value);
        } else if (operation == 2) {
            vertices.prepend(number(value));
            model.insert(model.begin(), value);
        } else if (operation == 3) {
            vertices.insert(at, number(value));
            model.insert(model.begin() + at, value);
        } else if (operation == 4 && size < 20) {
            vertices.append(Vertices<int>(vertices));
            model.insert(model.end(), model.begin(), model.begin() + size);
        } else if (operation == 5) {
            vertices.remove(at);
            model.erase(model.begin() + at);
        } else if (operation == 6) {
            vertices.remove(at, to);
            model.erase(model.begin() + at, model.begin() + to + 1);
        } else if (operation == 7) {
            vertices.reverse();
            std::reverse(model.begin(), model.end());
        } else if (operation == 8) {
            vertices.setOrigin(at);
            std::rotate(model.begin(), model.begin() + at, model.end());
        } else if (size > 12) {
            vertices.removeOutside(1, size - 2);
            model = std::vector<int>(model.begin() + 1, model.end() - 1);
        }
        ASSERT_EQ(coordinatesOf(vertices), model) << "step " << step;
    }
}

TEST(Vertices, AppendSharesOnOneServerAndCopiesFromAnother)
{
    Vertices<int> vertices(1, 2, 0, 0);
    Vertices<int> view(vertices);
    view.remove(0);
    vertices.append(view);
    EXPECT_EQ(vertices.getServer()->getSize(), 2);
    vertices[0].fill(1);
    vertices[2].fill(7);
    Vertices<int> other(1, 1, 0, 0);
    other[0].fill(5);
    vertices.append(other);
    other[0].fill(6);
    EXPECT_EQ(coordinatesOf(vertices), (std::vector<int>{1, 7, 7, 5}));

    EXPECT_RAISES(UsageError, "void Vertices<T>::append(const Vector<T>&)",
                  "This shape has no vertex server", Vertices<int>().append(number(1)));
    // New positions go on behind the last slot, or all stand at slot 0.
    other.setIndex(0, 5);
    other.setSize(3, true);
    EXPECT_EQ(other.getIndex(2), 7);
    other.setSize(4, false);
    EXPECT_EQ(other.getIndex(3), 0);
    EXPECT_EQ(other.getServer()->getSize(), 1);
    // A walk begins again and ends in nothing.
    VertexIterator<int> walk = view.vertexIterator();
    walk++;
    walk++;
    EXPECT_EQ(walk.current(), nullptr);
    EXPECT_EQ(walk.currentServerIndex(), -1);
    walk.rewind();
    EXPECT_EQ(walk.current(), &view[0]);
    EXPECT_EQ(walk.currentServerIndex(), 1);
}

TEST(Vertices, ListsOnOneServerGrowSideBySide)
{
    Vertices<int> origin(1, 0, 0, 64);
    std::vector<Vertices<int>> shapes(4, origin);
#pragma omp parallel for num_threads(4)
    for (int list = 0; list < 4; ++list) {
        for (int i = 0; i < 500; ++i) {
            shapes[static_cast<std::size_t>(list)].append(number(list * 500 + i));
        }
    }
    EXPECT_EQ(origin.getServer()->getSize(), 2000);
    for (int i = 0; i < 2000; ++i) {
        ASSERT_EQ(shapes[static_cast<std::size_t>(i / 500)][i % 500][0], i);
    }
}

TEST(Vertices, RemovesNeighbouringDuplicatesAlone)
{
    const auto without = [](const std::vector<int>& values, bool closed) {
        Vertices<int> vertices(1, static_cast<int>(values.size()), 0, 0);
        vertices.fromVector(Vector<int>(values));
        vertices.removeDuplicates(closed);
        return coordinatesOf(vertices);
    };
    EXPECT_EQ(without({1, 1, 2, 1}, true), (std::vector<int>{1, 2}));
    EXPECT_EQ(without({1, 1, 2, 1}, false), (std::vector<int>{1, 2, 1}));
    EXPECT_EQ(without({1, 1, 1}, true), (std::vector<int>{1}));
    EXPECT_EQ(without({}, true), (std::vector<int>{}));
}

TEST(Vertices, NearestQueriesAgreeWithAFullSearch)
{
    std::mt19937 engine(2);
    for (int round = 0; round < 40; ++round) {
        // Few distinct places, so that ties are frequent.
        const Curve<int> a = randomCurve<int>(1 + round % 7, 4, true, engine);
        const Curve<int> b = randomCurve<int>(1 + round % 5, 4, true, engine);
        std::tuple<int, int, int> best(1000, 0, 0);
        std::vector<int> map;
        for (int i = 0; i < a.getSize(); ++i) {
            std::pair<int, int> nearest(1000, 0);
            for (int j = 0; j < b.getSize(); ++j) {
                nearest = std::min(nearest, std::pair(a[i].sdistance(b[j]), j));
            }
            best = std::min(best, std::tuple(nearest.first, i, nearest.second));
            map.push_back(nearest.second);
            EXPECT_EQ(b.nearestVertex(a[i]), &b[nearest.second]);
        }
        int i = -1;
        int j = -1;
        a.closestPoints(b, i, j);
        EXPECT_EQ(std::tuple(std::get<0>(best), i, j), best);
        EXPECT_EQ(a.closestPointMap(b).toStlVector(), map);
    }
    EXPECT_EQ(Vertices<int>(2, 0, 0, 0).nearestVertex(vectorOf<int>({0, 0})), nullptr);
}

TEST(Vertices, FindsExtremesAndTheRotationOfACopy)
{
    std::mt19937 engine(3);
    const Curve<double> star = randomStar<double>(31, 5, engine);
    for (const int shift : {0, 1, 17, 30}) {
        Curve<double> turned(star);
        turned.setOrigin(shift);
        EXPECT_EQ(star.findMatch(turned), shift);
        Curve<double> matched(star);
        matched.match(turned);
        EXPECT_EQ(coordinatesOf(matched), coordinatesOf(turned));
    }
    const Curve<int> plateau = curveOf<int>({{1, 0}, {3, 0}, {3, 0}, {0, 0}, {0, 0}}, true);
    EXPECT_EQ(plateau.findMax(0), 1);
    EXPECT_EQ(plateau.findMin(0), 3);
    EXPECT_EQ(plateau.findMax(1), 0);
    EXPECT_THROW(plateau.findMatch(Curve<int>()), SizeError);
}

TEST(Vertices, MeanDirectionTakesOppositeDirectionsForOneAxis)
{
    const Vector<double> origin = vectorOf<double>({0, 0});
    const Curve<double> axis = curveOf<double>({{1, 1}, {-2, -2}, {0, 0}}, true);
    const Vector<double> diagonal = vectorOf<double>({std::sqrt(0.5), std::sqrt(0.5)});
    EXPECT_NEAR(axis.meanDirection(origin, false).distance(diagonal), 0, 1e-12);

    // A cross has no axis, but a longer arm gives one when weighted: (3 - 1) / (3 + 1).
    const Curve<double> cross = curveOf<double>({{3, 0}, {0, 1}}, true);
    EXPECT_NEAR(cross.meanDirection(origin, false).norm(), 0, 1e-12);
    EXPECT_NEAR(cross.meanDirection(origin, true)[0], 0.5, 1e-12);

    EXPECT_EQ(Curve<int>(2, 0, 0, 0, true).meanDirection(vectorOf<int>({0, 0}), true).getSize(), 0);
    EXPECT_THROW(Vertices<float>(3, 1, 0, 0).meanDirection(Vector<float>(3), true), ProgramError);
}

TEST(Vertices, AssignmentTakesNoOtherClass)
{
    Curve<int> curve(2, 3, 0, 0, true);
    Vertices<int>& asVertices = curve;
    EXPECT_THROW(asVertices = Vertices<int>(2, 1, 0, 0), std::bad_cast);
    EXPECT_EQ(curve.getSize(), 3);
    Vertices<int> plain(2, 1, 0, 0);
    plain = curve;
    EXPECT_EQ(plain.getSize(), 3);
    EXPECT_EQ(plain.getServer(), curve.getServer());
    asVertices = Edge<int>(2);
    EXPECT_EQ(curve.getSize(), 2);
    EXPECT_TRUE(curve.isOpen());
}
