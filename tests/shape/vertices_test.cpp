#include "shape/edge.h"
#include "shape/vertices.h"
#include "support/curves.h"
#include "support/errors.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <typeinfo>

namespace {

/// One coordinate per vertex, so that a list of vertices compares with a list of numbers.
Vector<int> number(int value)
{
    return vectorOf<int>({value});
}

std::vector<int> numbersOf(const Vertices<int>& vertices)
{
    return coordinatesOf(vertices);
}

} // namespace

TEST(Vertices, RandomEditsAgreeWithAPlainList)
{
    std::mt19937 engine(1);
    Vertices<int> vertices(1, 0, 0, 0);
    std::vector<int> model;
    for (int step = 0; step < 3000; ++step) {
        const int size = static_cast<int>(model.size());
        const int value = static_cast<int>(engine() % 3);
        const int at = size > 0 ? static_cast<int>(engine() % static_cast<unsigned>(size)) : 0;
        const int to = std::min(size - 1, at + static_cast<int>(engine() % 4));
        const unsigned operation = engine() % 10;
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
        } else if (operation == 5 && size > 0) {
            vertices.remove(at);
            model.erase(model.begin() + at);
        } else if (operation == 6 && size > 0) {
            vertices.remove(at, to);
            model.erase(model.begin() + at, model.begin() + to + 1);
        } else if (operation == 7) {
            vertices.reverse();
            std::reverse(model.begin(), model.end());
        } else if (operation == 8 && size > 0) {
            vertices.setOrigin(at);
            std::rotate(model.begin(), model.begin() + at, model.end());
        } else if (size > 12) {
            vertices.removeOutside(1, size - 2);
            model = std::vector<int>(model.begin() + 1, model.end() - 1);
        }
        ASSERT_EQ(numbersOf(vertices), model) << "step " << step;
    }
}

TEST(Vertices, AppendSharesOnOneServerAndCopiesFromAnother)
{
    Vertices<int> vertices(1, 2, 0, 0);
    vertices[0].fill(1);
    vertices[1].fill(2);
    Vertices<int> view(vertices);
    view.remove(0);
    vertices.append(view);
    EXPECT_EQ(vertices.getServer()->getSize(), 2);
    vertices[2].fill(7);
    EXPECT_EQ(numbersOf(vertices), (std::vector<int>{1, 7, 7}));

    Vertices<int> other(1, 1, 0, 0);
    other[0].fill(5);
    vertices.append(other);
    other[0].fill(6);
    EXPECT_EQ(numbersOf(vertices), (std::vector<int>{1, 7, 7, 5}));

    EXPECT_RAISES(UsageError, "void Vertices<T>::append(const Vector<T>&)",
                  "This shape has no vertex server", Vertices<int>().append(number(1)));
    // New positions go on behind the last slot, or all stand at slot 0.
    other.setIndex(0, 5);
    other.setSize(3, true);
    EXPECT_EQ(other.getIndex(2), 7);
    other.setSize(4, false);
    EXPECT_EQ(other.getIndex(3), 0);
    EXPECT_EQ(other.getServer()->getSize(), 1);
}

TEST(Vertices, ListsOnOneServerGrowSideBySide)
{
    constexpr int lists = 4;
    constexpr int each = 500;
    Vertices<int> origin(1, 0, 0, 64);
    std::vector<Vertices<int>> shapes(lists, origin);
#pragma omp parallel for num_threads(lists)
    for (int list = 0; list < lists; ++list) {
        for (int i = 0; i < each; ++i) {
            shapes[static_cast<std::size_t>(list)].append(number(list * each + i));
        }
    }
    EXPECT_EQ(origin.getServer()->getSize(), lists * each);
    for (int list = 0; list < lists; ++list) {
        for (int i = 0; i < each; ++i) {
            ASSERT_EQ(shapes[static_cast<std::size_t>(list)][i][0], list * each + i);
        }
    }
}

TEST(Vertices, RemovesNeighbouringDuplicatesAlone)
{
    const auto without = [](std::initializer_list<int> values, bool closed) {
        Vertices<int> vertices(1, 0, 0, 0);
        for (const int value : values) {
            vertices.append(number(value));
        }
        vertices.removeDuplicates(closed);
        return numbersOf(vertices);
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
        int bestI = -1;
        int bestJ = -1;
        int best = 1000;
        std::vector<int> map;
        for (int i = 0; i < a.getSize(); ++i) {
            int nearest = 0;
            for (int j = 0; j < b.getSize(); ++j) {
                const int distance = a[i].sdistance(b[j]);
                nearest = distance < a[i].sdistance(b[nearest]) ? j : nearest;
                if (distance < best) {
                    best = distance;
                    bestI = i;
                    bestJ = j;
                }
            }
            map.push_back(nearest);
            EXPECT_EQ(b.nearestVertex(a[i]), &b[nearest]);
        }
        int i = -1;
        int j = -1;
        a.closestPoints(b, i, j);
        EXPECT_EQ(i, bestI);
        EXPECT_EQ(j, bestJ);
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
    const Vector<double> direction = axis.meanDirection(origin, false);
    EXPECT_NEAR(direction[0], std::sqrt(0.5), 1e-12);
    EXPECT_NEAR(direction[1], std::sqrt(0.5), 1e-12);

    // A cross has no axis, but a longer arm gives one when weighted: (3 - 1) / (3 + 1).
    const Curve<double> cross = curveOf<double>({{3, 0}, {0, 1}}, true);
    EXPECT_NEAR(cross.meanDirection(origin, false).norm(), 0, 1e-12);
    EXPECT_NEAR(cross.meanDirection(origin, true)[0], 0.5, 1e-12);

    EXPECT_EQ(Curve<int>(2, 0, 0, 0, true).meanDirection(vectorOf<int>({0, 0}), true).getSize(), 0);
    EXPECT_THROW(Vertices<float>(3, 1, 0, 0).meanDirection(Vector<float>(3), true), ProgramError);
}

TEST(Vertices, WalksBeginAgainAndEndInNothing)
{
    Vertices<int> vertices(1, 2, 0, 0);
    vertices.setIndex(0, 1);
    VertexIterator<int> walk = vertices.vertexIterator();
    walk++;
    walk.rewind();
    EXPECT_EQ(walk.current(), &vertices[0]);
    EXPECT_EQ(walk.currentServerIndex(), 1);
    walk++;
    walk++;
    walk++;
    EXPECT_EQ(walk.current(), nullptr);
    EXPECT_EQ(walk.currentServerIndex(), -1);
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
