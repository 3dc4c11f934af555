#include "numerics/vector.h"
#include "support/errors.h"
#include "support/types.h"
#include "support/vectors.h"
#include "system/randomgenerator.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

template <class T>
class VectorOfAnyType : public testing::Test
{};

TYPED_TEST_SUITE(VectorOfAnyType, ElementTypes);

} // namespace

TYPED_TEST(VectorOfAnyType, FillingCopyingAndConvertingKeepTheValues)
{
    Vector<TypeParam> v;
    v.setOnes(5);
    v.append(TypeParam(0));
    const Vector<TypeParam> copy(v);
    EXPECT_EQ(copy, v);
    EXPECT_EQ(copy.find(TypeParam(0)), 5);
    EXPECT_EQ(Vector<TypeParam>(v.toStlVector()), v);
    EXPECT_EQ(v.template toType<float>().sum(), 5.0F);
    EXPECT_EQ(v.nonZero(), vectorOf<int>({0, 1, 2, 3, 4}));
    EXPECT_EQ(v.unique(), vectorOf<TypeParam>({TypeParam(0), TypeParam(1)}));
    v.setCanonical(2);
    EXPECT_EQ(v.nonZero(), vectorOf<int>({2}));
}

TEST(Vector, ShallowVectorsWriteThroughAndKeepTheirSize)
{
    int storage[3] = {1, 2, 3};
    int other[2] = {7, 8};
    Vector<int> v(4);
    v.setSize(2, other);
    v.setSize(3, storage);
    EXPECT_TRUE(v.isShallow());
    Vector<int> copy(v);
    copy[0] = 9;
    EXPECT_FALSE(copy.isShallow());
    EXPECT_EQ(storage[0], 1);
    v = vectorOf<int>({4, 5, 6});
    EXPECT_EQ(storage[2], 6);
    const int* const address = copy.data();
    v.swap(copy);
    EXPECT_EQ(storage[0], 9);
    EXPECT_EQ(copy, vectorOf<int>({4, 5, 6}));
    EXPECT_EQ(copy.data(), address);

    v.setSize(3);
    Vector<int> longer(4);
    EXPECT_RAISES(UsageError, "void Vector<T>::setSize(const int,T*)",
                  "This is a shallow vector, cannot be resized without data", v = longer);
    EXPECT_RAISES(UsageError, "void Vector<T>::append(const T&)",
                  "This is a shallow vector (cannot be resized)", v.append(1));
    EXPECT_THROW(v.append(v), UsageError);
    EXPECT_THROW(v.prepend(v), UsageError);
    EXPECT_RAISES(UsageError, "void Vector<T>::swap(Vector&)",
                  "Vector size differ and at least one of them is shallow", longer.swap(v));
    EXPECT_EQ(v, vectorOf<int>({9, 2, 3}));
    longer.swap(copy);
    EXPECT_EQ(longer.data(), address);
    longer = v; // of the same size: the address stays
    EXPECT_EQ(longer.data(), address);
    const Vector<int>& same = longer;
    longer = same;
    EXPECT_EQ(longer, v);
    longer = vectorOf<int>({7, 8, 9, 10});
    EXPECT_EQ(longer, vectorOf<int>({7, 8, 9, 10}));
    EXPECT_EQ(Vector<int>(-3), Vector<int>());
}

TEST(Vector, EditingFollowsTheIndices)
{
    Vector<int> v;
    v.append(2);
    v.append(v);
    v.prepend(vectorOf<int>({0, 1}));
    v.append(v[0]);
    EXPECT_EQ(v, vectorOf<int>({0, 1, 2, 2, 0}));
    v.paste(3, vectorOf<int>({8, 9}));
    EXPECT_RAISES(SizeError, "Vector Vector<T>::paste(...)",
                  "Vector too large to be pasted at specified position",
                  v.paste(4, vectorOf<int>({1, 2})));
    EXPECT_EQ(v, vectorOf<int>({0, 1, 2, 8, 9}));
    v.setSequence(10, -1);
    v.circShift();
    EXPECT_EQ(v, vectorOf<int>({6, 10, 9, 8, 7}));
    v.reverse();
    v.replace(9, 0);
    v.apply([](int x) { return x * x; });
    EXPECT_EQ(v, vectorOf<int>({49, 64, 0, 100, 36}));
    v.sort();
    EXPECT_EQ(v.copy(1, 3), vectorOf<int>({36, 49, 64}));
    EXPECT_EQ(v.copyFrom(3), vectorOf<int>({64, 100}));
    EXPECT_EQ(v.copyUntil(1), vectorOf<int>({0, 36}));
    EXPECT_EQ(v.copy(vectorOf<int>({4, 0, 4})), vectorOf<int>({100, 0, 100}));
    Vector<std::string> names(2);
    names[1] = "sinus";
    Vector<std::string> more(3);
    more.paste(1, names);
    EXPECT_EQ(more[2], "sinus");
}

TEST(Vector, UnshuffleUndoesShuffle)
{
    RandomGenerator generator;
    generator.init(5);
    Vector<int> permutation(50);
    permutation.setSequence(1);
    const Vector<int> sequence(permutation);
    permutation.shuffle(generator);
    EXPECT_NE(permutation, sequence);
    Vector<int> v(permutation);
    v.sort();
    EXPECT_EQ(v, sequence);
    v.setSequence(5, 3);
    const Vector<int> original(v);
    v.shuffle(permutation);
    EXPECT_EQ(v, original.copy(permutation));
    v.unshuffle(permutation);
    EXPECT_EQ(v, original);
}

TEST(Vector, OrderSymmetryAndEqualityAreThoseOfTheElements)
{
    struct Case
    {
        Vector<int> v;
        const char* properties;
    };

    // Increasing, decreasing, constant, symmetrical, antisymmetrical.
    const Case cases[] = {
        {vectorOf<int>({4}), "I-CS-"},       {vectorOf<int>({1, 1, 2}), "I----"},
        {vectorOf<int>({1, 3, 2}), "-----"}, {vectorOf<int>({2, 1, 1}), "-D---"},
        {vectorOf<int>({2, 1, 2}), "---S-"}, {vectorOf<int>({1, 5, -1}), "----A"},
        {vectorOf<int>({3, 3}), "IDCS-"},    {vectorOf<int>({1, -1, 1}), "---S-"}};
    for (const Case& c : cases) {
        const std::string told = {c.v.isIncreasing() ? 'I' : '-', c.v.isDecreasing() ? 'D' : '-',
                                  c.v.isConstant() ? 'C' : '-', c.v.isSymmetrical() ? 'S' : '-',
                                  c.v.isAntiSymmetrical() ? 'A' : '-'};
        EXPECT_EQ(told, c.properties) << c.v[0];
    }
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const Vector<double> v = vectorOf<double>({1, nan});
    EXPECT_TRUE(v != v);
    EXPECT_EQ(v.find(nan), -1);
    // Of values within tolerance the first is kept.
    const float next = std::nextafter(1.0F, 2.0F);
    EXPECT_EQ(vectorOf<float>({3, next, 1, 2, 1}).unique(), vectorOf<float>({1, 2, 3}));
}
