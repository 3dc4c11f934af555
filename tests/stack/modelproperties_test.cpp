#include "stack/modelitemproperties.h"
#include "stack/modelproperties.h"
#include "support/errors.h"
#include "support/vectors.h"

namespace {

// Each attribute is undefined or has one of two values.
template <class... Setters>
void draw(std::mt19937& random, Setters... setters)
{
    const auto maybe = [&](auto set) {
        if (const int v = static_cast<int>(random() % 3) - 1; v >= 0) {
            set(v);
        }
    };
    (maybe(setters), ...);
}

ModelItemProperties randomItemProperties(std::mt19937& random)
{
    ModelItemProperties p;
    draw(
        random,
        [&](int v) {
            p.setColor(vectorOf<int>({v, 0, 0}));
        },
        [&](int v) { p.setLineWidth(static_cast<float>(v)); },
        [&](int v) { p.setPointSize(static_cast<float>(v)); },
        [&](int v) { p.setVertexSymbol(static_cast<VertexSymbol>(v)); },
        [&](int v) { p.setVertexSymbolFilling(v == 1); },
        [&](int v) { p.setRenderingVisibility(v == 1); });
    return p;
}

ModelProperties randomProperties(std::mt19937& random)
{
    ModelProperties p;
    draw(
        random, [&](int v) { p.setGeometry(static_cast<MPrimitive>(v)); },
        [&](int v) { p.setRenderingMode(static_cast<RenderingMode>(v)); },
        [&](int v) { p.setSurfaceOpacity(static_cast<float>(v)); },
        [&](int v) { p.setSurfaceShininess(static_cast<float>(v)); },
        [&](int v) { p.setQuadMeshWidth(v); }, [&](int v) { p.setQuadMeshHeight(v); },
        [&](int v) { p.setVertexSmoothing(v); }, [&](int v) { p.setNormalSmoothing(v); },
        [&](int v) { p.setEconomicRendering(v == 1); }, [&](int v) { p.setBeginCapFlag(v == 1); },
        [&](int v) { p.setEndCapFlag(v == 1); });
    return p;
}

} // namespace

TEST(ModelProperties, EveryNameReadsBackAndAnyOtherTextIsUnknown)
{
    const auto readsBack = [](auto last, auto toString, auto from) {
        for (int value = 0; value <= static_cast<int>(last); ++value) {
            const auto member = static_cast<decltype(last)>(value);
            EXPECT_EQ(from(toString(member)), member);
        }
    };
    using Items = ModelItemProperties;
    using Models = ModelProperties;
    readsBack(
        static_cast<MPrimitive>(4), [](auto v) { return Models::toString(v); },
        Models::toPrimitive);
    readsBack(
        static_cast<RenderingMode>(6), [](auto v) { return Models::toString(v); },
        Models::toRenderingMode);
    readsBack(static_cast<VertexSymbol>(5), Items::toString, Items::toVertexSymbol);
    EXPECT_EQ(Models::toString(PRIMITIVE_POLYPOINT), "Polypoint");
    EXPECT_EQ(Models::toString(RenderingMode::TriangularMesh), "TriangularMesh");
    EXPECT_EQ(Models::toString(static_cast<RenderingMode>(17)), "Unknown");
    EXPECT_EQ(Items::toString(static_cast<VertexSymbol>(-1)), "Unknown");
    EXPECT_EQ(Models::toPrimitive("Ring"), PRIMITIVE_UNKNOWN);
    EXPECT_EQ(Models::toRenderingMode("Ring"), RenderingMode::Unknown);
    EXPECT_EQ(Items::toVertexSymbol("sphere"), VertexSymbol::Unknown);
}

TEST(ModelProperties, UpdateAndIntersectionAgreeForRandomSets)
{
    std::mt19937 random(2);
    for (int round = 0; round < 2000; ++round) {
        const ModelProperties a = randomProperties(random);
        const ModelProperties b = randomProperties(random);
        ModelProperties updated = a;
        updated.update(b);
        EXPECT_EQ(updated.intersection(b), b);
        EXPECT_EQ(a.intersection(b), b.intersection(a));
        EXPECT_EQ(a.intersection(a), a);
        // Where both agree, an update changes nothing.
        EXPECT_EQ(a.intersection(b).intersection(updated), a.intersection(b));
        EXPECT_EQ(a == b, a.intersection(b) == a && a.intersection(b) == b);
    }
}

TEST(ModelProperties, OnlyTheCapFlagsTestWhetherTheyAreDefined)
{
    ModelProperties properties;
    EXPECT_THROW(properties.getBeginCapFlag(), ProgramError);
    EXPECT_THROW(properties.getEndCapFlag(), ProgramError);
    properties.setDefaults();
    EXPECT_FALSE(properties.getBeginCapFlag() || properties.getEndCapFlag());
}

TEST(ModelItemProperties, SumAndDifferenceAgreeForRandomSets)
{
    const ModelItemProperties none;
    std::mt19937 random(1);
    for (int round = 0; round < 2000; ++round) {
        const ModelItemProperties a = randomItemProperties(random);
        const ModelItemProperties b = randomItemProperties(random);
        ModelItemProperties updated = b;
        updated.update(a);
        EXPECT_EQ(a + b, updated);
        EXPECT_EQ((a - b) + a.intersection(b), a);
        EXPECT_EQ((a - b).intersection(b), none);
        EXPECT_EQ(a - a, none);
        EXPECT_EQ(a - none, a);
        EXPECT_EQ((a + b).intersection(a), a);
        EXPECT_EQ(a.definesAny(), a != none);
    }
    EXPECT_THROW(ModelItemProperties().setColor(Vector<int>(4)), SizeError);
}
