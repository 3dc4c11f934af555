#include "numerics/matrix.h"
#include "numerics/vector.h"
#include "support/errors.h"
#include "support/vectors.h"

#include <cmath>

TEST(Vector, OperandsOfDifferentSizesAreRefused)
{
    using V = Vector<float>;
    V a = vectorOf<float>({1, 2});
    const V b = vectorOf<float>({1, 2, 3});
    EXPECT_RAISES(SizeError, "Vector<T> Vector<T>::operator-(const Vector&) const",
                  "The two vectors have different sizes", a - b);
    EXPECT_RAISES(SizeError, "Vector<T> Vector<T>::vectorProduct(const Vector&) const",
                  "At least one vector have a size different from 3", a.vectorProduct(b));
    for (const auto measure : {&V::scalarProduct, &V::distance, &V::manhattanDistance}) {
        EXPECT_THROW((a.*measure)(b), SizeError);
    }
    EXPECT_THROW(a + b, SizeError);
    EXPECT_THROW(a / b, SizeError);
    EXPECT_THROW(a.pointwiseProduct(b), SizeError);
    EXPECT_THROW(a += b, SizeError);
    EXPECT_THROW(a *= b, SizeError);
    EXPECT_THROW(V::pmax(a, b), UsageError);
    EXPECT_EQ(a, vectorOf<float>({1, 2}));
}

TEST(Vector, OperatorsWorkElementByElement)
{
    // Lengths around the width of vector instructions, also with both operands the same object.
    std::mt19937 engine(3);
    for (int size = 0; size <= 19; ++size) {
        const Vector<float> a = randomVector<float>(size, engine);
        const Vector<float> b = randomVector<float>(size, engine) + 2.0F;
        const auto expectEach = [&](const Vector<float>& got, auto element) {
            EXPECT_EQ(got, vectorFrom<float>(size, element));
        };
        Vector<float> v(a);
        v += v;
        expectEach(v, [&](int i) { return a[i] + a[i]; });
        (v = b) /= v;
        expectEach(v, [](int) { return 1; });
        (v = a) *= b;
        expectEach(v, [&](int i) { return a[i] * b[i]; });
        EXPECT_EQ(v, a.pointwiseProduct(b));
        (v = a) -= b;
        EXPECT_EQ(v, a - b);
        expectEach(Vector<float>::pmin(a, v), [&](int i) { return std::min(a[i], a[i] - b[i]); });
        expectEach(Vector<float>::pmax(a, b), [&](int i) { return std::max(a[i], b[i]); });
        expectEach((a + b) / b, [&](int i) { return (a[i] + b[i]) / b[i]; });
        expectEach(-a, [&](int i) { return -a[i]; });
        (v = a) *= 3.0F;
        v -= 1.0F;
        v /= 4.0F;
        v += 5.0F;
        expectEach(v, [&](int i) { return (a[i] * 3.0F - 1.0F) / 4.0F + 5.0F; });
    }
    Vector<float> v = vectorOf<float>({2, 4, 6});
    v /= v[0]; // an element of the vector itself
    EXPECT_EQ(v, vectorOf<float>({1, 2, 3}));
}

TEST(Vector, DistancesLengthsAndAngles)
{
    const Vector<float> a = vectorOf<float>({1, 2});
    const Vector<float> b = vectorOf<float>({4, 6});
    EXPECT_EQ(a.sdistance(b), 25);
    EXPECT_EQ(a.distance(b), 5);
    EXPECT_EQ(a.manhattanDistance(b), 7);
    const Vector<unsigned char> bytes = vectorOf<unsigned char>({1, 9});
    EXPECT_EQ(bytes.manhattanDistance(vectorOf<unsigned char>({4, 2})), 10);
    EXPECT_NEAR(vectorOf<double>({2, 0}).angle(vectorOf<double>({-3, 3})), 0.75 * M_PI, 1e-15);
    Vector<double> v = vectorOf<double>({3, -4});
    v.normalize();
    EXPECT_DOUBLE_EQ(v[1], -0.8);
    v.setZeros();
    v.normalize();
    EXPECT_EQ(v, vectorOf<double>({0, 0}));
}
