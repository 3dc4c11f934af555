#include "numerics/vector.h"
#include "support/errors.h"
#include "support/vectors.h"
#include "system/randomgenerator.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numeric>

namespace {

template <class T>
class VectorOfAnyType : public testing::Test
{};

using NumericTypes = testing::Types<bool,
                                    char,
                                    unsigned char,
                                    short,
                                    unsigned short,
                                    int,
                                    unsigned int,
                                    long,
                                    float,
                                    double,
                                    long double>;
TYPED_TEST_SUITE(VectorOfAnyType, NumericTypes);

const char* const setSizeWhere = "void Vector<T>::setSize(const int,T*)";
const char* const setSizeWhat = "This is a shallow vector, cannot be resized without data";
const char* const shallowWhat = "This is a shallow vector (cannot be resized)";

} // namespace

TYPED_TEST(VectorOfAnyType, FillingCopyingAndConvertingKeepTheValues)
{
    Vector<TypeParam> v;
    v.setOnes(5);
    v.append(TypeParam(0));
    const Vector<TypeParam> copy(v);
    EXPECT_EQ(copy, v);
    EXPECT_EQ(copy.getSize(), 6);
    EXPECT_EQ(copy.find(TypeParam(0)), 5);
    EXPECT_EQ(Vector<TypeParam>(v.toStlVector()), v);
    EXPECT_EQ(v.template toType<float>().sum(), 5.0F);
    EXPECT_EQ(v.nonZero(), vectorOf<int>({0, 1, 2, 3, 4}));
    EXPECT_EQ(v.unique(), vectorOf<TypeParam>({TypeParam(0), TypeParam(1)}));
    v.setCanonical(2);
    EXPECT_EQ(v.nonZero(), vectorOf<int>({2}));
}

TEST(Vector, NegativeSizeIsEmpty)
{
    Vector<int> v(-3);
    EXPECT_EQ(v.getSize(), 0);
    EXPECT_EQ(v.data(), nullptr);
    v.setSize(-1);
    EXPECT_EQ(v.getSize(), 0);
    EXPECT_EQ(v.find(7), -1);
    EXPECT_TRUE(v == Vector<int>());
}

TEST(Vector, CopyOfAShallowVectorIsIndependent)
{
    float storage[3] = {1, 2, 3};
    Vector<float> view(3, storage);
    Vector<float> copy(view);
    Vector<float> moved(std::move(view));
    copy[0] = 9;
    moved[1] = 9;
    EXPECT_FALSE(copy.isShallow());
    EXPECT_FALSE(moved.isShallow());
    EXPECT_EQ(storage[0], 1);
    EXPECT_EQ(storage[1], 2);
}

TEST(Vector, AssignmentToAShallowVectorWritesThrough)
{
    float storage[2] = {1, 2};
    Vector<float> view(2, storage);
    view = vectorOf<float>({5, 6});
    EXPECT_EQ(storage[1], 6);
    EXPECT_TRUE(view.isShallow());
    const Vector<float> longer(3);
    expectError<UsageError>([&] { view = longer; }, setSizeWhere, setSizeWhat);
    EXPECT_EQ(view.getSize(), 2);
}

TEST(Vector, AssignmentOfTheSameSizeKeepsTheAddress)
{
    Vector<float> v(2);
    const float* const address = v.data();
    v = vectorOf<float>({5, 6});
    EXPECT_EQ(v.data(), address);
    v = vectorOf<float>({7, 8, 9});
    EXPECT_EQ(v, vectorOf<float>({7, 8, 9}));
    Vector<float>& same = v;
    v = same;
    EXPECT_EQ(v, vectorOf<float>({7, 8, 9}));
}

TEST(Vector, ShallowVectorTakesNewStorageButNoNewSize)
{
    int first[2] = {1, 2};
    int second[3] = {3, 4, 5};
    Vector<int> v(4);
    v.setSize(2, first);
    v.setSize(3, second);
    EXPECT_EQ(v.sum(), 12);
    v.setSize(3);
    EXPECT_TRUE(v.isShallow());
    expectError<UsageError>([&] { v.setSize(2); }, setSizeWhere, setSizeWhat);
    expectError<UsageError>([&] { v.append(1); }, "void Vector<T>::append(const T&)", shallowWhat);
    expectError<UsageError>([&] { v.append(v); }, "void Vector<T>::append(const Vector&)",
                            shallowWhat);
    expectError<UsageError>([&] { v.prepend(v); }, "void Vector<T>::prepend(const Vector&)",
                            shallowWhat);
    EXPECT_EQ(v, vectorOf<int>({3, 4, 5}));
}

TEST(Vector, SwapWithAShallowVectorExchangesElements)
{
    int storage[2] = {1, 2};
    Vector<int> view(2, storage);
    Vector<int> own = vectorOf<int>({3, 4});
    const int* const address = own.data();
    view.swap(own);
    EXPECT_EQ(storage[0], 3);
    EXPECT_EQ(own, vectorOf<int>({1, 2}));
    EXPECT_EQ(own.data(), address);
    Vector<int> longer(3);
    expectError<UsageError>([&] { longer.swap(view); }, "void Vector<T>::swap(Vector&)",
                            "Vector size differ and at least one of them is shallow");
    longer.swap(own);
    EXPECT_EQ(longer.data(), address);
}

TEST(Vector, GrowingJoinsBothParts)
{
    Vector<int> v;
    v.append(2);
    v.append(v);
    v.prepend(vectorOf<int>({0, 1}));
    v.append(v[0]);
    EXPECT_EQ(v, vectorOf<int>({0, 1, 2, 2, 0}));
}

TEST(Vector, PasteEndsAtTheLastElement)
{
    Vector<int> v;
    v.setZeros(4);
    v.paste(2, vectorOf<int>({1, 2}));
    EXPECT_EQ(v, vectorOf<int>({0, 0, 1, 2}));
    expectError<SizeError>(
        [&] {
            v.paste(3, vectorOf<int>({1, 2}));
        },
        "Vector Vector<T>::paste(...)", "Vector too large to be pasted at specified position");
    EXPECT_EQ(v, vectorOf<int>({0, 0, 1, 2}));
}

TEST(Vector, AnyTypeCanBeStored)
{
    Vector<std::string> names(2);
    names[0] = "apex";
    names[1] = "sinus";
    Vector<std::string> more(3);
    more.paste(1, names);
    EXPECT_EQ(more[2], "sinus");
    more.setSize(1);
    EXPECT_EQ(more[0], "");
    Vector<Vector<int>> lists(2);
    lists[1] = vectorOf<int>({1, 2, 3});
    Vector<Vector<int>> others(lists);
    others.swap(lists);
    EXPECT_EQ(others[1].getSize(), 3);
}

TEST(Vector, EditingFollowsTheIndices)
{
    Vector<int> v(5);
    v.setSequence(3);
    EXPECT_EQ(v, vectorOf<int>({0, 3, 6, 9, 12}));
    v.setSequence(10, -1);
    EXPECT_EQ(v, vectorOf<int>({10, 9, 8, 7, 6}));
    v.circShift();
    EXPECT_EQ(v, vectorOf<int>({6, 10, 9, 8, 7}));
    v.reverse();
    EXPECT_EQ(v, vectorOf<int>({7, 8, 9, 10, 6}));
    v.replace(9, 0);
    v.apply([](int x) { return x * x; });
    EXPECT_EQ(v, vectorOf<int>({49, 64, 0, 100, 36}));
    v.sort();
    EXPECT_EQ(v, vectorOf<int>({0, 36, 49, 64, 100}));
    EXPECT_EQ(v.copy(1, 3), vectorOf<int>({36, 49, 64}));
    EXPECT_EQ(v.copyFrom(3), vectorOf<int>({64, 100}));
    EXPECT_EQ(v.copyUntil(1), vectorOf<int>({0, 36}));
    EXPECT_EQ(v.copy(vectorOf<int>({4, 0, 4})), vectorOf<int>({100, 0, 100}));
}

TEST(Vector, UnshuffleUndoesShuffle)
{
    RandomGenerator generator;
    generator.init(5);
    Vector<int> permutation(50);
    permutation.setSequence(1);
    permutation.shuffle(generator);
    Vector<int> sorted(permutation);
    sorted.sort();
    Vector<int> sequence(50);
    sequence.setSequence(1);
    EXPECT_EQ(sorted, sequence);
    EXPECT_NE(permutation, sequence);

    std::mt19937 engine(7);
    const Vector<double> original = randomVector<double>(50, engine);
    Vector<double> v(original);
    v.shuffle(permutation);
    EXPECT_EQ(v, original.copy(permutation));
    v.unshuffle(permutation);
    EXPECT_EQ(v, original);
}

TEST(Vector, UniqueKeepsTheFirstOfValuesWithinTolerance)
{
    const float next = std::nextafter(1.0F, 2.0F);
    const Vector<float> v = vectorOf<float>({3, next, 1, 2, 1});
    EXPECT_EQ(v.unique(), vectorOf<float>({1, 2, 3}));
    EXPECT_EQ(vectorOf<int>({2, 1, 2}).unique(), vectorOf<int>({1, 2}));
}

TEST(Vector, OrderAndSymmetryOfShortVectors)
{
    const Vector<int> one = vectorOf<int>({4});
    EXPECT_TRUE(one.isIncreasing());
    EXPECT_FALSE(one.isDecreasing());
    EXPECT_TRUE(one.isConstant());
    EXPECT_TRUE(one.isSymmetrical());
    EXPECT_FALSE(one.isAntiSymmetrical());
    EXPECT_TRUE(vectorOf<int>({1, 1, 2}).isIncreasing());
    EXPECT_FALSE(vectorOf<int>({1, 3, 2}).isIncreasing());
    EXPECT_TRUE(vectorOf<int>({2, 1, 1}).isDecreasing());
    EXPECT_FALSE(vectorOf<int>({2, 1, 2}).isDecreasing());
    EXPECT_TRUE(vectorOf<int>({1, 5, -1}).isAntiSymmetrical());
    EXPECT_FALSE(vectorOf<int>({1, -1, 1}).isAntiSymmetrical());
    EXPECT_TRUE(vectorOf<int>({1, 5, 1}).isSymmetrical());
    EXPECT_FALSE(vectorOf<int>({1, 5, 2}).isSymmetrical());
    EXPECT_FALSE(vectorOf<int>({1, 1, 2}).isConstant());
}

TEST(Vector, NaNEqualsNothing)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const Vector<double> v = vectorOf<double>({1, nan});
    EXPECT_TRUE(v != v);
    EXPECT_EQ(v.find(nan), -1);
}
