#include "numerics/matrix.h"
#include "numerics/vector.h"
#include "support/errors.h"
#include "support/vectors.h"

#include <gtest/gtest.h>

#include <cmath>

TEST(Vector, OperandsOfDifferentSizesAreRefused)
{
    Vector<float> a = vectorOf<float>({1, 2});
    const Vector<float> b = vectorOf<float>({1, 2, 3});
    EXPECT_RAISES(SizeError, "Vector<T> Vector<T>::operator-(const Vector&) const",
                  "The two vectors have different sizes", a - b);
    EXPECT_THROW(a.scalarProduct(b), SizeError);
    EXPECT_THROW(a.distance(b), SizeError);
    EXPECT_THROW(a.manhattanDistance(b), SizeError);
    EXPECT_THROW(a + b, SizeError);
    EXPECT_THROW(a / b, SizeError);
    EXPECT_THROW(a.pointwiseProduct(b), SizeError);
    EXPECT_THROW(a += b, SizeError);
    EXPECT_THROW(a -= b, SizeError);
    EXPECT_THROW(a *= b, SizeError);
    EXPECT_THROW(a /= b, SizeError);
    EXPECT_THROW(Vector<float>::pmax(a, b), UsageError);
    EXPECT_RAISES(SizeError, "Vector<T> Vector<T>::vectorProduct(const Vector&) const",
                  "At least one vector have a size different from 3", a.vectorProduct(b));
    EXPECT_EQ(a, vectorOf<float>({1, 2}));
}

TEST(Vector, OperatorsWorkElementByElement)
{
    // Lengths around the width of vector instructions, also with both operands the same object.
    std::mt19937 engine(3);
    for (int size = 0; size <= 19; ++size) {
        const Vector<float> a = randomVector<float>(size, engine);
        const Vector<float> b = randomVector<float>(size, engine) + 2.0F;
        Vector<float> twice(a);
        twice += twice;
        Vector<float> ones(b);
        ones /= ones;
        Vector<float> product(a);
        product *= b;
        Vector<float> difference(a);
        difference -= b;
        Vector<float> scaled(a);
        scaled *= 3.0F;
        scaled -= 1.0F;
        scaled /= 4.0F;
        scaled += 5.0F;
        for (int i = 0; i < size; ++i) {
            EXPECT_EQ(twice[i], a[i] + a[i]);
            EXPECT_EQ(ones[i], 1.0F);
            EXPECT_EQ(product[i], a[i] * b[i]);
            EXPECT_EQ((a + b)[i], a[i] + b[i]);
            EXPECT_EQ((a / b)[i], a[i] / b[i]);
            EXPECT_EQ((-a)[i], -a[i]);
            EXPECT_EQ(scaled[i], (a[i] * 3.0F - 1.0F) / 4.0F + 5.0F);
            EXPECT_EQ(Vector<float>::pmax(a, b)[i], std::max(a[i], b[i]));
            EXPECT_EQ(Vector<float>::pmin(a, difference)[i], std::min(a[i], difference[i]));
        }
        EXPECT_EQ(difference, a - b);
        EXPECT_EQ(product, a.pointwiseProduct(b));
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
    EXPECT_EQ(vectorOf<unsigned char>({1, 9}).manhattanDistance(vectorOf<unsigned char>({4, 2})),
              10);
    EXPECT_EQ(Vector<float>().distance(Vector<float>()), 0);
    EXPECT_NEAR(vectorOf<double>({2, 0}).angle(vectorOf<double>({-3, 3})), 0.75 * M_PI, 1e-15);
    Vector<double> v = vectorOf<double>({3, -4});
    v.normalize();
    EXPECT_DOUBLE_EQ(v[1], -0.8);
    v.setZeros();
    v.normalize();
    EXPECT_EQ(v, vectorOf<double>({0, 0}));
}
