#include "numerics/elementtype.h"
#include "numerics/numbers.h"
#include "numerics/vector.h"
#include "support/errors.h"
#include "support/vectors.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace {

template <class Function>
void expectEmptyError(Function function, const char* where)
{
    expectError<SizeError>(function, where, "This vector is empty.");
}

/// Expects the error of an operation that the element type T lacks.
template <class T, class Function>
void expectNotAvailable(Function function, const std::string& signature)
{
    const std::string name = elementTypeName<T>();
    expectError<TypeError>(function, instantiatedSignature(signature, name),
                           "Method not available for type '" + name + "'");
}

template <class T>
class VectorOfIntegers : public testing::Test
{};

using ListedIntegers = testing::Types<unsigned char, short, unsigned short, int, unsigned int>;
TYPED_TEST_SUITE(VectorOfIntegers, ListedIntegers);

} // namespace

TYPED_TEST(VectorOfIntegers, LackOperationsThatNeedRealNumbers)
{
    using T = TypeParam;
    Vector<T> v = vectorOf<T>({3, 4});
    T beta = 0;
    expectNotAvailable<T>([&] { v.mean(); }, "T Vector<T>::mean() const");
    expectNotAvailable<T>([&] { v.norm(); }, "T Vector<T>::norm() const");
    expectNotAvailable<T>([&] { v.normalize(); }, "void Vector<T>::normalize()");
    expectNotAvailable<T>([&] { v.sse(); }, "T Vector<T>::sse() const");
    expectNotAvailable<T>([&] { v.var(); }, "T Vector<T>::var() const");
    expectNotAvailable<T>([&] { v.std(); }, "T Vector<T>::std() const");
    expectNotAvailable<T>([&] { v.sem(true); }, "T Vector<T>::sem(const bool) const");
    expectNotAvailable<T>([&] { v.distance(v); }, "T Vector<T>::distance(const Vector&) const");
    expectNotAvailable<T>([&] { v.householderVector(beta); },
                          "void Vector<T>::householderVector(T&)");
    if constexpr (!std::is_same_v<T, int>) {
        expectNotAvailable<T>([&] { v.mad(); }, "T Vector<T>::mad() const");
    }
    EXPECT_EQ(v, vectorOf<T>({3, 4}));
    EXPECT_EQ(v.snorm(), 25);
    EXPECT_EQ(v.numbers().getMean(), 3);
}

TEST(Vector, SignaturesNameTheTypeInPlaceOfTheParameter)
{
    EXPECT_EQ(instantiatedSignature("T Vector<T>::f(const T&, T2, ToT)", "unsigned char"),
              "unsigned char Vector<unsigned char>::f(const unsigned char&, T2, ToT)");
    expectError<TypeError>([] { vectorOf<int>({1}).norm(); }, "int Vector<int>::norm() const",
                           "Method not available for type 'int'");
    expectError<TypeError>([] { vectorOf<bool>({true}).closestAxis(); },
                           "int Vector<bool>::closestAxis() const",
                           "method not available for type 'bool'");
}

TEST(Vector, EmptyVectorHasNoStatistics)
{
    const Vector<float> v;
    expectEmptyError([&] { v.min(); }, "T Vector<T>::min() const");
    expectEmptyError([&] { v.max(); }, "T Vector<T>::max() const");
    expectEmptyError([&] { v.minPos(); }, "int Vector<T>::minPos() const");
    expectEmptyError([&] { v.maxPos(); }, "int Vector<T>::maxPos() const");
    expectEmptyError([&] { v.range(); }, "Vector<T> Vector<T>::range() const");
    expectEmptyError([&] { v.sum(); }, "T Vector<T>::sum() const");
    expectEmptyError([&] { v.prod(); }, "T Vector<T>::prod() const");
    expectEmptyError([&] { v.mean(); }, "T Vector<T>::mean() const");
    expectEmptyError([&] { v.median(); }, "T Vector<T>::median() const");
    expectEmptyError([&] { v.mad(); }, "T Vector<T>::median() const");
    expectEmptyError([&] { v.sse(); }, "T Vector<T>::sse() const");
    expectEmptyError([&] { v.var(); }, "T Vector<T>::var() const");
    expectEmptyError([&] { v.sem(false); }, "T Vector<T>::sem(const bool) const");
    expectEmptyError([&] { v.percentile(50); }, "bool Vector<T>::isIncreasing() const");
    expectEmptyError([&] { v.isDecreasing(); }, "bool Vector<T>::isDecreasing() const");
    EXPECT_EQ(v.closestAxis(), -1);
}

TEST(Vector, MomentsDivideByTheNumberOfElements)
{
    const Vector<double> v = vectorOf<double>({2, 4, 4, 4, 5, 5, 7, 9});
    EXPECT_EQ(v.mean(), 5);
    EXPECT_EQ(v.sse(), 32);
    EXPECT_EQ(v.var(), 4);
    EXPECT_EQ(v.std(), 2);
    EXPECT_DOUBLE_EQ(v.sem(true), std::sqrt(32.0 / 7 / 8));
    EXPECT_DOUBLE_EQ(v.sem(false), std::sqrt(32.0) / 8);
    EXPECT_EQ(v.mad(), 0.5);
    EXPECT_EQ(v.prod(), 2.0 * 4 * 4 * 4 * 5 * 5 * 7 * 9);
    expectError<SizeError>([] { vectorOf<float>({1}).sem(true); },
                           "T Vector<T>::sem(const bool) const",
                           "This vector contains a single value.");
    EXPECT_EQ(vectorOf<float>({1}).sem(false), 0);
}

TEST(Vector, FirstExtremeElementWins)
{
    const Vector<int> v = vectorOf<int>({3, 1, 5, 1, 5});
    EXPECT_EQ(v.minPos(), 1);
    EXPECT_EQ(v.maxPos(), 2);
    EXPECT_EQ(v.range(), vectorOf<int>({1, 5}));
    EXPECT_EQ(vectorOf<float>({1, -3, 3}).closestAxis(), 1);
    EXPECT_EQ(vectorOf<int>({5, std::numeric_limits<int>::min(), 7}).closestAxis(), 1);
}

TEST(Vector, MedianSplitsTheSortedElements)
{
    std::mt19937 engine(1);
    for (int size = 1; size <= 30; ++size) {
        const Vector<double> v = randomVector<double>(size, engine);
        std::vector<double> sorted = v.toStlVector();
        std::sort(sorted.begin(), sorted.end());
        const double expected = (sorted[(size - 1) / 2] + sorted[size / 2]) / 2;
        const Vector<double> before(v);
        EXPECT_DOUBLE_EQ(v.median(), expected);
        EXPECT_EQ(v, before);
    }
    EXPECT_EQ(vectorOf<int>({1, 2}).median(), 1);
    EXPECT_EQ(vectorOf<int>({-2, -1}).median(), -1);
    EXPECT_EQ(vectorOf<float>({1, 2}).median(), 1.5F);
    EXPECT_EQ(vectorOf<unsigned char>({200, 250}).median(), 225);
    const int largest = std::numeric_limits<int>::max();
    EXPECT_EQ(vectorOf<int>({largest, largest - 2}).median(), largest - 1);
    EXPECT_EQ(vectorOf<int>({1, 2, 4, 9}).mad(), 1);
}

TEST(Vector, PercentileIsTheNearestRank)
{
    Vector<int> v(11);
    v.setSequence(10);
    EXPECT_EQ(v.percentile(0), 0);
    EXPECT_EQ(v.percentile(44), 40);
    EXPECT_EQ(v.percentile(45), 50);
    EXPECT_EQ(v.percentile(100), 100);
    v.reverse();
    expectError<UsageError>([&] { v.percentile(50); }, "T Vector::percentile(const float) const",
                            "This vector is not sorted in increasing order");
}

TEST(Vector, NumbersSummarise)
{
    const Numbers<float> numbers = vectorOf<float>({4, 1, 2, 3}).numbers();
    EXPECT_EQ(numbers.getCount(), 4U);
    EXPECT_EQ(numbers.getMinimum(), 1);
    EXPECT_EQ(numbers.getMaximum(), 4);
    EXPECT_EQ(numbers.getMedian(), 2.5F);
    EXPECT_EQ(numbers.getSum(), 10);
    EXPECT_EQ(numbers.getMean(), 2.5F);
}

TEST(Vector, IntegersWrapAround)
{
    EXPECT_EQ(vectorOf<unsigned char>({200, 100}).sum(), 44);
    EXPECT_EQ(vectorOf<unsigned short>({65535, 65535}).prod(), 1);
    const int largest = std::numeric_limits<int>::max();
    EXPECT_EQ(vectorOf<int>({largest, 1}).sum(), std::numeric_limits<int>::min());
    EXPECT_EQ(vectorOf<bool>({true, true}).sum(), true);
}
