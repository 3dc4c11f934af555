#include "interface/itempainter.h"
#include "support/leaf.h"
#include "support/vectors.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

constexpr int size = 60;

ModelItemProperties style(VertexSymbol symbol, float pointSize)
{
    ModelItemProperties properties;
    properties.setDefaults();
    properties.setColor(vectorOf<int>({200, 0, 100}));
    properties.setPointSize(pointSize);
    properties.setLineWidth(2.0f);
    properties.setVertexSymbol(symbol);
    properties.setVertexSymbolFilling(false);
    return properties;
}

bool isPainted(const QImage& picture, int x, int y)
{
    return picture.pixelColor(x, y) != QColor(Qt::white);
}

/// Pixels painted, and the box around them.
struct Extent
{
    int pixels = 0;
    QRect box;
};

Extent extentOf(const QImage& picture)
{
    Extent extent;
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            if (isPainted(picture, x, y)) {
                ++extent.pixels;
                extent.box |= QRect(x, y, 1, 1);
            }
        }
    }
    return extent;
}

/// Slice 0 on white.
QImage painted(const LMXStack& stack, double scale = 1.0)
{
    QImage picture(size, size, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    ItemPainter(QTransform(), scale).paintItems(painter, stack.getSlice(0));
    return picture;
}

std::unique_ptr<LMXStack> stackWith(MPrimitive geometry,
                                    const std::vector<leaf::Point>& points,
                                    const ModelItemProperties& properties)
{
    auto stack = leaf::emptyStack(1);
    leaf::addItem(*stack, "Item", geometry, 0, points).getModel()->setItemProperties(properties);
    return stack;
}

QImage paintedPoint(const ModelItemProperties& properties, double scale = 1.0)
{
    return painted(*stackWith(PRIMITIVE_POLYPOINT, {{30.0, 30.0}}, properties), scale);
}

} // namespace

TEST(ItemPainter, SymbolsAreOutlinesOfTheirSizeAroundTheMiddleOfThePixelAndDiffer)
{
    std::vector<QImage> pictures = {paintedPoint(style(VertexSymbol::Dot, 8.0f))};
    EXPECT_EQ(pictures[0].pixelColor(30, 30), QColor(200, 0, 100));
    EXPECT_NEAR(extentOf(pictures[0]).box.width(), 8.0, 1.5);
    for (const VertexSymbol symbol : {VertexSymbol::Cube, VertexSymbol::Diamond,
                                      VertexSymbol::Sphere, VertexSymbol::Tetrahedron}) {
        for (const double scale : {2.0, 1.0}) {
            ModelItemProperties properties = style(symbol, 8.0f);
            const QImage outline = paintedPoint(properties, scale);
            EXPECT_FALSE(isPainted(outline, 30, 30));
            const Extent extent = extentOf(outline);
            EXPECT_NEAR(extent.box.top() + extent.box.height() / 2.0, 30.5,
                        symbol == VertexSymbol::Tetrahedron ? 3.0 * scale : 1.0);
            EXPECT_NEAR(extent.box.left() + extent.box.width() / 2.0, 30.5, 1.0);
            EXPECT_NEAR(extent.box.width(), 18.0 * scale, 4.5 * scale);
            properties.setVertexSymbolFilling(true);
            const QImage filled = paintedPoint(properties, scale);
            EXPECT_EQ(filled.pixelColor(30, 30), QColor(200, 0, 100));
            EXPECT_GT(extentOf(filled).pixels, extent.pixels);
            EXPECT_EQ(std::count(pictures.begin(), pictures.end(), outline), 0);
            pictures.push_back(outline);
        }
    }
}

TEST(ItemPainter, AnItemsOwnPropertiesWinOverThoseOfItsModelAndRegionsTintTheirPixels)
{
    const auto stack =
        stackWith(PRIMITIVE_POLYPOINT, {{30.0, 30.0}}, style(VertexSymbol::Dot, 9.0f));
    leaf::findItem(*stack, "Item", 0)->getProperties().setColor(vectorOf<int>({0, 255, 0}));
    const QImage point = painted(*stack);
    EXPECT_EQ(point.pixelColor(30, 30), QColor(0, 255, 0));
    EXPECT_GT(extentOf(point).box.width(), 7);

    const auto region = stackWith(PRIMITIVE_REGION, {}, style(VertexSymbol::Dot, 1.0f));
    RLEItemSet0 set;
    set.add(RLEItem0(7, 11, 4));
    leaf::findItem(*region, "Item", 0)->setRLEItemSet(set);
    const Extent extent = extentOf(painted(*region));
    EXPECT_EQ(extent.box, QRect(11, 7, 4, 1));
    EXPECT_EQ(extent.pixels, 4);
}

TEST(ItemPainter, PolygonsCloseAndPolylinesDoNot)
{
    for (const bool closed : {true, false}) {
        const auto stack =
            stackWith(closed ? PRIMITIVE_POLYGON : PRIMITIVE_POLYLINE,
                      {{5.0, 5.0}, {25.0, 5.0}, {25.0, 25.0}}, style(VertexSymbol::Dot, 1.0f));
        QImage picture(size, size, QImage::Format_RGB32);
        picture.fill(Qt::white);
        QPainter painter(&picture);
        // The desk's view at twice the size, moved.
        const QTransform view = QTransform::fromTranslate(4.0, -2.0).scale(2.0, 2.0);
        painter.translate(100.0, 100.0); // what the caller's painter does is its own affair
        ItemPainter(view).paintItems(painter, stack->getSlice(0));
        EXPECT_TRUE(isPainted(picture, 35, 9)) << "the upper side";
        EXPECT_TRUE(isPainted(picture, 55, 29)) << "the right side";
        EXPECT_EQ(isPainted(picture, 35, 29), closed) << "the closing side";
        EXPECT_FALSE(isPainted(picture, 45, 19));
        EXPECT_EQ(painter.transform().dx(), 100.0);
    }
}
