#include "shape/curves/curvestack.h"
#include "shape/vertices/kdtree.h"
#include "shape/vertices/vertexstack.h"
#include "support/curves.h"
#include "support/errors.h"

#include <typeinfo>

namespace {

/// Curves of random sizes, levels at heights 0, 1, ...
CurveStack<float> randomStack(int height, bool open, std::mt19937& engine)
{
    CurveStack<float> stack;
    stack.setOpen(open);
    for (int k = 0; k < height; ++k) {
        const int size = 2 + static_cast<int>(engine() % 5);
        Curve<float> curve = randomCurve<float>(size, 100, open, engine, 3);
        curve.scale(vectorOf<float>({1, 1, 0}));
        curve.translate(vectorOf<float>({0, 0, static_cast<float>(k)}));
        stack.append(curve);
    }
    return stack;
}

std::vector<float> heights(const VertexStack<float>& stack)
{
    std::vector<float> result;
    for (int k = 0; k < stack.getHeight(); ++k) {
        result.push_back(stack[k][0][2]);
    }
    return result;
}

} // namespace

TEST(VertexStack, LevelsShareOneServerInRunningOrder)
{
    VertexStack<int> stack(1, 3, 2, 0, 0);
    EXPECT_EQ(stack.getServer()->getGrowth(), 6);
    int value = 0;
    for (auto walk = stack.vertexIterator(); walk.current() != nullptr; walk++, ++value) {
        walk.current()->fill(value);
        EXPECT_EQ(walk.currentServerIndex(), value);
        EXPECT_EQ(&stack[walk.locator()], walk.current());
        EXPECT_EQ(walk.locator()[0], static_cast<unsigned>(value / 2));
    }

    VertexStack<int> copy(stack);
    copy.detach();
    const VertexServer<int>* own = copy.getServer();
    EXPECT_NE(own, stack.getServer());
    copy.detach();
    EXPECT_EQ(copy.getServer(), own);
    copy *= 2;
    EXPECT_EQ(coordinatesOf(stack), (std::vector<int>{0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(coordinatesOf(copy), (std::vector<int>{0, 2, 4, 6, 8, 10}));

    // A walk ends at the first empty level.
    stack[1].setSize(0, false);
    EXPECT_EQ(stack.toVector(), vectorOf<int>({0, 1, 0, 0}));
}

TEST(VertexStack, InsertsSortsAndReversesLevels)
{
    std::mt19937 engine(81);
    CurveStack<float> stack = randomStack(4, true, engine);
    stack.reverse();
    EXPECT_EQ(heights(stack), (std::vector<float>{3, 2, 1, 0}));
    stack.prepend(stack);
    EXPECT_EQ(heights(stack), (std::vector<float>{3, 2, 1, 0, 3, 2, 1, 0}));
    stack.append(randomStack(2, true, engine));
    const Vertices<float>* firstOfHeightThree = &stack[0];
    stack.sort(2);
    EXPECT_EQ(heights(stack), (std::vector<float>{0, 0, 0, 1, 1, 1, 2, 2, 3, 3}));
    EXPECT_EQ(&stack[8], firstOfHeightThree);
    EXPECT_TRUE(stack.isBranching());
    EXPECT_FALSE(randomStack(4, true, engine).isBranching());
    stack.remove(0);
    EXPECT_EQ(stack.getHeight(), 9);

    EXPECT_RAISES(TypeError, "void CurveStack<T>::insert(...)", "Closure mismatch",
                  stack.append(Curve<float>(3, 2, 0, 0, false)));
    EXPECT_THROW(stack.append(Vertices<float>(3, 2, 0, 0)), std::bad_cast);
    EXPECT_THROW(stack.assign(VertexStack<float>()), std::bad_cast);
    EXPECT_EQ(stack.getHeight(), 9);
}

TEST(VertexStack, NearestPlacesAndTreesAgreeWithAFullSearch)
{
    std::mt19937 engine(82);
    CurveStack<float> a = randomStack(4, false, engine);
    CurveStack<float> b = randomStack(5, false, engine);
    KDTree<float> tree;
    EXPECT_RAISES(UsageError, "void KDTree<T>::setShape(Shape<T>&)",
                  "The shape is indexed on several servers", tree.setShape(b));
    b.detach();
    tree.setShape(b);
    tree.build();
    const CurveStack<float> map = a.closestPointMap(b);
    EXPECT_EQ(map.getSpace(), 2);
    ASSERT_EQ(map.getSize(), a.getSize());
    for (int k = 0; k < 4; ++k) {
        for (int i = 0; i < a[k].getSize(); ++i) {
            const Vector<float>& nearest =
                b[static_cast<int>(map[k][i][0])][static_cast<int>(map[k][i][1])];
            EXPECT_EQ(&nearest, b.nearestVertex(a[k][i]));
            EXPECT_EQ(tree.nearestVertex(a[k][i]), nearest);
        }
    }
}
