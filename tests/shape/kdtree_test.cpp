#include "shape/vertices/kdtree.h"
#include "support/curves.h"
#include "support/errors.h"

#include <algorithm>
#include <set>

template <class T>
class KDTreeOf : public testing::Test
{};

using KDTreeTypes = testing::Types<int, float, double, long double>;
TYPED_TEST_SUITE(KDTreeOf, KDTreeTypes);

TYPED_TEST(KDTreeOf, AgreesWithAFullSearch)
{
    using T = TypeParam;
    std::mt19937 engine(51);
    for (int size = 1; size < 130; size = size < 20 ? size + 1 : size * 2) {
        for (const int reach : {2, 1000}) {
            Curve<T> curve = randomCurve<T>(size, static_cast<T>(reach), true, engine, 3);
            curve.reverse();
            KDTree<T> tree;
            tree.setShape(curve);
            tree.build();
            for (int round = 0; round < 10; ++round) {
                const Vector<T> query =
                    randomCurve<T>(1, static_cast<T>(reach), true, engine, 3)[0];
                std::vector<T> distances;
                for (int i = 0; i < size; ++i) {
                    distances.push_back(curve[i].sdistance(query));
                }
                std::sort(distances.begin(), distances.end());
                EXPECT_EQ(tree.nearestVertex(query).sdistance(query), distances[0]);
                const int k = 1 + round * (size - 1) / 9;
                Curve<T> nearest;
                tree.nearestVertices(nearest, query, k);
                ASSERT_EQ(nearest.getSize(), k);
                EXPECT_EQ(nearest.getServer(), curve.getServer());
                std::set<int> slots;
                for (int i = 0; i < k; ++i) {
                    EXPECT_EQ(nearest[i].sdistance(query), distances[std::size_t(i)]);
                    EXPECT_TRUE(slots.insert(nearest.getIndex(i)).second);
                }
            }
            EXPECT_EQ(tree.nearestVertex(curve[size / 2]), curve[size / 2]);
        }
    }
}

TEST(KDTree, LaysNodesOutAsAHeap)
{
    for (const auto& [size, length] : {std::pair(1, 3), std::pair(2, 3), std::pair(3, 7),
                                       std::pair(6, 7), std::pair(7, 15), std::pair(1000, 1023)}) {
        Vertices<double> line(2, size, 0, 0);
        for (int i = 0; i < size; ++i) {
            line[i] = vectorOf<double>({0, -1.0 * i});
        }
        KDTree<double> tree;
        tree.setShape(line);
        tree.build();
        EXPECT_EQ(tree.getAxes()[0], size > 1 ? 1 : 0);
        // The slots count down along the axis: the upper median stands at the root.
        const std::vector<int> nodes = tree.getTree().toStlVector();
        ASSERT_EQ(static_cast<int>(nodes.size()), length);
        EXPECT_EQ(nodes[0], size - 1 - size / 2);
        EXPECT_EQ(std::count(nodes.begin(), nodes.end(), -1), length - size);
    }
}

TEST(KDTree, RefusesWhatItCanNotAnswer)
{
    KDTree<float> tree;
    Curve<float> curve(2, 0, 0, 0, false);
    const Vector<float> origin = vectorOf<float>({0, 0});
    EXPECT_RAISES(UsageError, "void KDTree<T>::setShape(Shape<T>&)", "The shape is empty",
                  tree.setShape(curve));
    EXPECT_THROW(tree.build(), UsageError);
    EXPECT_THROW(tree.nearestVertex(origin), UsageError);
    curve.append(origin);
    tree.setShape(curve);
    tree.build();
    Vertices<float> out;
    for (const int count : {0, 2}) {
        EXPECT_THROW(tree.nearestVertices(out, origin, count), RangeError);
    }
    EXPECT_THROW(tree.nearestVertices(out, vectorOf<float>({std::nanf(""), 0}), 1), ValueError);
    EXPECT_THROW(tree.nearestVertex(vectorOf<float>({0})), SizeError);
}
