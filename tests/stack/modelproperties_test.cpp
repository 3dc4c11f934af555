#include "stack/modelitemproperties.h"
#include "stack/modelproperties.h"
#include "system/exception.h"

#include <gtest/gtest.h>

#include <random>

namespace {

Vector<int> color(int red)
{
    Vector<int> c(3);
    c.setZeros();
    c[0] = red;
    return c;
}

// Each attribute is undefined or has one of two values.
ModelItemProperties randomItemProperties(std::mt19937& random)
{
    const auto draw = [&random] { return static_cast<int>(random() % 3) - 1; };
    ModelItemProperties p;
    if (const int v = draw(); v >= 0) {
        p.setColor(color(v));
    }
    if (const int v = draw(); v >= 0) {
        p.setLineWidth(static_cast<float>(v));
    }
    if (const int v = draw(); v >= 0) {
        p.setPointSize(static_cast<float>(v));
    }
    if (const int v = draw(); v >= 0) {
        p.setVertexSymbol(static_cast<VertexSymbol>(v));
    }
    if (const int v = draw(); v >= 0) {
        p.setVertexSymbolFilling(v == 1);
    }
    if (const int v = draw(); v >= 0) {
        p.setRenderingVisibility(v == 1);
    }
    return p;
}

ModelProperties randomProperties(std::mt19937& random)
{
    const auto draw = [&random] { return static_cast<int>(random() % 3) - 1; };
    using Setter = void (*)(ModelProperties&, int);
    const Setter setters[] = {
        [](ModelProperties& p, int v) { p.setGeometry(static_cast<MPrimitive>(v)); },
        [](ModelProperties& p, int v) { p.setRenderingMode(static_cast<RenderingMode>(v)); },
        [](ModelProperties& p, int v) { p.setSurfaceOpacity(static_cast<float>(v)); },
        [](ModelProperties& p, int v) { p.setSurfaceShininess(static_cast<float>(v)); },
        [](ModelProperties& p, int v) { p.setQuadMeshWidth(v); },
        [](ModelProperties& p, int v) { p.setQuadMeshHeight(v); },
        [](ModelProperties& p, int v) { p.setVertexSmoothing(v); },
        [](ModelProperties& p, int v) { p.setNormalSmoothing(v); },
        [](ModelProperties& p, int v) { p.setEconomicRendering(v == 1); },
        [](ModelProperties& p, int v) { p.setBeginCapFlag(v == 1); },
        [](ModelProperties& p, int v) { p.setEndCapFlag(v == 1); },
    };
    ModelProperties p;
    for (const Setter set : setters) {
        if (const int v = draw(); v >= 0) {
            set(p, v);
        }
    }
    return p;
}

} // namespace

TEST(ModelProperties, EveryNameReadsBackAndAnyOtherTextIsUnknown)
{
    for (int value = 0; value <= 4; ++value) {
        const auto geometry = static_cast<MPrimitive>(value);
        EXPECT_EQ(ModelProperties::toPrimitive(ModelProperties::toString(geometry)), geometry);
    }
    for (int value = 0; value <= 6; ++value) {
        const auto mode = static_cast<RenderingMode>(value);
        EXPECT_EQ(ModelProperties::toRenderingMode(ModelProperties::toString(mode)), mode);
    }
    for (int value = 0; value <= 5; ++value) {
        const auto symbol = static_cast<VertexSymbol>(value);
        EXPECT_EQ(ModelItemProperties::toVertexSymbol(ModelItemProperties::toString(symbol)),
                  symbol);
    }
    EXPECT_EQ(ModelProperties::toString(PRIMITIVE_POLYPOINT), "Polypoint");
    EXPECT_EQ(ModelProperties::toString(RenderingMode::TriangularMesh), "TriangularMesh");
    EXPECT_EQ(ModelProperties::toString(static_cast<RenderingMode>(17)), "Unknown");
    EXPECT_EQ(ModelItemProperties::toString(static_cast<VertexSymbol>(-1)), "Unknown");
    EXPECT_EQ(ModelProperties::toPrimitive("Ring"), PRIMITIVE_UNKNOWN);
    EXPECT_EQ(ModelProperties::toRenderingMode("Ring"), RenderingMode::Unknown);
    EXPECT_EQ(ModelItemProperties::toVertexSymbol("sphere"), VertexSymbol::Unknown);
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
    try {
        properties.getBeginCapFlag();
        FAIL();
    } catch (const ProgramError& error) {
        EXPECT_EQ(error.getWhat(), "Begin cap flag: undefined attribute");
    }
    try {
        properties.getEndCapFlag();
        FAIL();
    } catch (const ProgramError& error) {
        EXPECT_EQ(error.getWhat(), "End cap flag: undefined attribute");
    }
    properties.setDefaults();
    EXPECT_FALSE(properties.getBeginCapFlag());
    EXPECT_FALSE(properties.getEndCapFlag());
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
