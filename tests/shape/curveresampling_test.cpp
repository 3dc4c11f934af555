#include "shape/curves/curveresampling.h"
#include "support/curves.h"
#include "support/errors.h"

namespace {

/// The point at an arc length, by walking from the start in long double.
Vector<double> pointAt(const Curve<double>& curve, long double target)
{
    const int edges = curve.isOpen() ? curve.getSize() - 1 : curve.getSize();
    for (int i = 0; i < edges; ++i) {
        const Vector<double>& a = curve[i];
        const Vector<double>& b = curve[(i + 1) % curve.getSize()];
        const long double length = a.distance(b);
        if (target <= length || i == edges - 1) {
            return a + (b - a) * static_cast<double>(target / length);
        }
        target -= length;
    }
    return curve[0];
}

} // namespace

TEST(CurveResampling, SamplesLieAtEqualArcLengths)
{
    std::mt19937 engine(41);
    for (int round = 0; round < 40; ++round) {
        const bool open = round % 2 == 0;
        const Curve<double> curve = randomCurve<double>(2 + round, 5, open, engine, 2 + round % 2);
        const int size = 1 + round * 3;
        const Curve<double> result = curve.resample(size);
        ASSERT_EQ(result.getSize(), size);
        EXPECT_EQ(result.isOpen(), open);
        const long double step = curve.length() / static_cast<double>(open ? size - 1 : size);
        for (int i = 1; i < size - (open ? 1 : 0); ++i) {
            EXPECT_NEAR(result[i].distance(pointAt(curve, step * i)), 0, 1e-11);
        }
        if (size > 1) {
            EXPECT_EQ(result[0], curve[0]);
        }
        if (open) {
            EXPECT_EQ(result[size - 1], curve[curve.getSize() - 1]);
        }
    }
}

TEST(CurveResampling, LongFloatContoursNeitherDriftNorRunOffTheEnd)
{
    for (const bool open : {false, true}) {
        Curve<float> contour = regularPolygon<float>(6001, 955);
        contour.setOpen(open);
        const Curve<float> result = contour.resample(20000);
        const float step = contour.length() / 20000;
        for (int i = 1; i < result.getSize(); ++i) {
            ASSERT_NEAR(result[i].norm(), 955, 0.01);
            // The steps of an open curve are summed, so their drift shows at the kept end alone.
            if (result.isClosed() || i < result.getSize() - 1) {
                ASSERT_NEAR(result[i].distance(result[i - 1]), step, 0.02 * step);
            }
        }
    }
}

TEST(CurveResampling, CurvesOfNoLengthGiveCopies)
{
    for (const bool open : {false, true}) {
        for (const int size : {1, 3}) {
            Curve<float> point(2, size, 0, 0, open);
            for (int i = 0; i < size; ++i) {
                point[i] = vectorOf<float>({4, 5});
            }
            EXPECT_EQ(coordinatesOf(point.resample(2)), (std::vector<float>{4, 5, 4, 5}));
        }
    }
    // Repeated vertices add no samples.
    const Curve<float> repeated = curveOf<float>({{0, 0}, {0, 0}, {2, 0}, {2, 0}}, true);
    EXPECT_EQ(coordinatesOf(repeated.resample(3)), (std::vector<float>{0, 0, 1, 0, 2, 0}));
    EXPECT_EQ(Curve<float>(2, 0, 0, 0, false).resample(0).getSize(), 0);
    EXPECT_RAISES(SizeError, "void Curve<T>::resamplePolyline(Curve&) const",
                  "This shape contains no vertex", Curve<float>(2, 0, 0, 0, true).resample(2));
    const Curve<int> line = curveOf<int>({{0, 0}, {6, 0}, {6, 6}}, true);
    EXPECT_EQ(coordinatesOf(line.resample(3)), (std::vector<int>{0, 0, 6, 0, 6, 6}));
    EXPECT_THROW(Curve<int>::square(0, 0, 4).resample(3), TypeError);
}

TEST(CurveResampling, WritesTargetsInPlaceEvenTheSourceItself)
{
    std::mt19937 engine(42);
    Curve<double> star = randomStar<double>(12, 3, engine);
    const std::vector<double> expected = coordinatesOf(star.resample(12));
    Curve<double> target(2, 12, 0, 0, true);
    for (Curve<double>* to : {&target, &star}) {
        const VertexServer<double>* server = to->getServer();
        CurveResampling<double>().apply(star, *to, 12);
        EXPECT_EQ(coordinatesOf(*to), expected);
        EXPECT_EQ(to->getServer(), server);
        EXPECT_TRUE(to->isClosed());
    }
    CurveResampling<double>().apply(star, star, 30);
    EXPECT_EQ(star.getSize(), 30);
}

TEST(Curve, ResamplingErrorIsTheHeightOverTheResampledEdge)
{
    // A circle of many vertices against its own polygon of few: sagitta of the arc at most.
    const Curve<double> circle = regularPolygon<double>(600, 1);
    const Curve<double> coarse = circle.resample(12);
    Vector<double> errors;
    circle.resamplingError(coarse, errors, 0, 1);
    ASSERT_EQ(errors.getSize(), 600);
    EXPECT_EQ(errors[0], 0);
    const double sagitta = 1 - std::cos(M_PI / 12);
    EXPECT_NEAR(errors.max(), sagitta, 0.2 * sagitta);

    circle.resamplingError(Curve<double>(circle), errors, 0, 1);
    EXPECT_NEAR(errors.max(), 0, 1e-12);
    EXPECT_THROW(circle.resamplingError(curveOf<double>({{1, 0}}, false), errors, 0, 1), SizeError);
}
