#include "numerics/elementtype.h"
#include "numerics/numbers.h"
#include "numerics/vector.h"
#include "support/errors.h"
#include "support/vectors.h"

#include <algorithm>
#include <cmath>

namespace {

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
    const std::string name = elementTypeName<T>();
    EXPECT_RAISES(TypeError, name + " Vector<" + name + ">::norm() const",
                  "Method not available for type '" + name + "'", v.norm());
    for (const auto statistic :
         {&Vector<T>::mean, &Vector<T>::sse, &Vector<T>::var, &Vector<T>::std}) {
        EXPECT_THROW((v.*statistic)(), TypeError);
    }
    EXPECT_THROW(v.normalize(), TypeError);
    EXPECT_THROW(v.sem(true), TypeError);
    EXPECT_THROW(v.distance(v), TypeError);
    EXPECT_THROW(v.householderVector(beta), TypeError);
    if constexpr (!std::is_same_v<T, int>) {
        EXPECT_THROW(v.mad(), TypeError);
    }
    EXPECT_EQ(v, vectorOf<T>({3, 4}));
    EXPECT_EQ(v.snorm(), 25);
    EXPECT_EQ(v.numbers().getMean(), 3);
}

TEST(Vector, SignaturesNameTheTypeInPlaceOfTheParameter)
{
    EXPECT_EQ(instantiatedSignature("T Vector<T>::f(const T&, T2, ToT)", "unsigned char"),
              "unsigned char Vector<unsigned char>::f(const unsigned char&, T2, ToT)");
    EXPECT_RAISES(TypeError, "int Vector<bool>::closestAxis() const",
                  "method not available for type 'bool'", vectorOf<bool>({true}).closestAxis());
}

TEST(Vector, EmptyVectorHasNoStatistics)
{
    using V = Vector<float>;
    const V v;
    EXPECT_RAISES(SizeError, "T Vector<T>::median() const", "This vector is empty.", v.mad());
    for (const auto statistic : {&V::min, &V::sum, &V::prod, &V::mean, &V::sse, &V::var}) {
        EXPECT_THROW((v.*statistic)(), SizeError);
    }
    EXPECT_THROW(v.maxPos(), SizeError);
    EXPECT_THROW(v.range(), SizeError);
    EXPECT_THROW(v.sem(false), SizeError);
    EXPECT_THROW(v.percentile(50), SizeError);
    EXPECT_THROW(v.isDecreasing(), SizeError);
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
    EXPECT_THROW(vectorOf<float>({1}).sem(true), SizeError);
    EXPECT_EQ(vectorOf<float>({1}).sem(false), 0);
    const Numbers<double> numbers = v.numbers();
    EXPECT_EQ(numbers.getCount(), 8U);
    EXPECT_EQ(vectorOf<double>({numbers.getMinimum(), numbers.getMaximum(), numbers.getMedian(),
                                numbers.getSum(), numbers.getMean()}),
              vectorOf<double>({2, 9, 4.5, 40, 5}));
}

TEST(Vector, FirstExtremeElementWinsAndIntegersWrapAround)
{
    const int largest = std::numeric_limits<int>::max();
    const Vector<int> v = vectorOf<int>({3, 1, 5, 1, 5});
    EXPECT_EQ(v.minPos(), 1);
    EXPECT_EQ(v.maxPos(), 2);
    EXPECT_EQ(v.range(), vectorOf<int>({1, 5}));
    EXPECT_EQ(vectorOf<float>({1, -3, 3}).closestAxis(), 1);
    EXPECT_EQ(vectorOf<int>({5, -largest - 1, 7}).closestAxis(), 1);
    EXPECT_EQ(vectorOf<unsigned char>({200, 100}).sum(), 44);
    EXPECT_EQ(vectorOf<unsigned short>({65535, 65535}).prod(), 1);
    EXPECT_EQ(vectorOf<int>({largest, 1}).sum(), -largest - 1);
    EXPECT_EQ(vectorOf<bool>({true, true}).sum(), true);
}

TEST(Vector, MediansAndPercentilesAreRanks)
{
    std::mt19937 engine(1);
    for (int size = 1; size <= 30; ++size) {
        const Vector<double> v = randomVector<double>(size, engine);
        const Vector<double> before(v);
        Vector<double> sorted(v);
        sorted.sort();
        EXPECT_DOUBLE_EQ(v.median(), (sorted[(size - 1) / 2] + sorted[size / 2]) / 2);
        EXPECT_EQ(v, before);
    }
    EXPECT_EQ(vectorOf<int>({1, 2}).median(), 1);
    EXPECT_EQ(vectorOf<int>({-2, -1}).median(), -1);
    EXPECT_EQ(vectorOf<unsigned char>({200, 250}).median(), 225);
    const int largest = std::numeric_limits<int>::max();
    EXPECT_EQ(vectorOf<int>({largest, largest - 2}).median(), largest - 1);
    EXPECT_EQ(vectorOf<int>({1, 2, 4, 9}).mad(), 1);

    Vector<int> v(11);
    v.setSequence(10);
    EXPECT_EQ(v.percentile(0), 0);
    EXPECT_EQ(v.percentile(44), 40);
    EXPECT_EQ(v.percentile(45), 50);
    EXPECT_EQ(v.percentile(100), 100);
    v.reverse();
    EXPECT_RAISES(UsageError, "T Vector::percentile(const float) const",
                  "This vector is not sorted in increasing order", v.percentile(50));
}
