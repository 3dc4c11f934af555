#include "interface/itempainter.h"
#include "support/leaf.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace {

constexpr int size = 60;

QImage canvas()
{
    QImage picture(size, size, QImage::Format_RGB32);
    picture.fill(Qt::white);
    return picture;
}

ModelItemProperties style(VertexSymbol symbol, float pointSize)
{
    ModelItemProperties properties;
    properties.setDefaults();
    Vector<int> colour(3);
    colour[0] = 200;
    colour[1] = 0;
    colour[2] = 100;
    properties.setColor(colour);
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

QImage paintedPoint(const ModelItemProperties& properties, double scale)
{
    const auto stack = leaf::emptyStack(1);
    ModelItem& item = leaf::addItem(*stack, "Points", PRIMITIVE_POLYPOINT, 0, {{30.0, 30.0}});
    item.getModel()->setItemProperties(properties);
    QImage picture = canvas();
    QPainter painter(&picture);
    ItemPainter(QTransform(), scale).paintItems(painter, stack->getSlice(0));
    return picture;
}

} // namespace

TEST(ItemPainter, SymbolsAreOutlinesOfTheirSizeAroundTheMiddleOfThePixel)
{
    for (const VertexSymbol symbol : {VertexSymbol::Cube, VertexSymbol::Diamond,
                                      VertexSymbol::Sphere, VertexSymbol::Tetrahedron}) {
        for (const double scale : {1.0, 2.0}) {
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
        }
    }
    const QImage dot = paintedPoint(style(VertexSymbol::Dot, 7.0f), 1.0);
    EXPECT_EQ(dot.pixelColor(30, 30), QColor(200, 0, 100));
    EXPECT_NEAR(extentOf(dot).box.width(), 7.0, 1.5);
}

TEST(ItemPainter, SymbolsDifferFromEachOther)
{
    std::vector<QImage> pictures;
    for (const VertexSymbol symbol : {VertexSymbol::Cube, VertexSymbol::Dot, VertexSymbol::Diamond,
                                      VertexSymbol::Sphere, VertexSymbol::Tetrahedron}) {
        pictures.push_back(paintedPoint(style(symbol, 9.0f), 1.0));
    }
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        for (std::size_t k = 0; k < i; ++k) {
            EXPECT_NE(pictures[i], pictures[k]) << i << k;
        }
    }
}

TEST(ItemPainter, AnItemsOwnPropertiesWinOverThoseOfItsModel)
{
    const auto stack = leaf::emptyStack(1);
    ModelItem& item = leaf::addItem(*stack, "Points", PRIMITIVE_POLYPOINT, 0, {{30.0, 30.0}});
    item.getModel()->setItemProperties(style(VertexSymbol::Dot, 9.0f));
    Vector<int> green(3);
    green[0] = green[2] = 0;
    green[1] = 255;
    item.getProperties().setColor(green);
    QImage picture = canvas();
    {
        QPainter painter(&picture);
        ItemPainter(QTransform()).paintItem(painter, item);
    }
    EXPECT_EQ(picture.pixelColor(30, 30), QColor(0, 255, 0));
    EXPECT_GT(extentOf(picture).box.width(), 7);
}

TEST(ItemPainter, PolygonsCloseAndPolylinesDoNot)
{
    for (const bool closed : {true, false}) {
        const auto stack = leaf::emptyStack(1);
        ModelItem& item =
            leaf::addItem(*stack, "Line", closed ? PRIMITIVE_POLYGON : PRIMITIVE_POLYLINE, 0,
                          {{5.0, 5.0}, {25.0, 5.0}, {25.0, 25.0}});
        item.getModel()->setItemProperties(style(VertexSymbol::Dot, 1.0f));
        QImage picture = canvas();
        QPainter painter(&picture);
        // The desk's view at twice the size, moved.
        QTransform view;
        view.translate(4.0, -2.0);
        view.scale(2.0, 2.0);
        painter.translate(100.0, 100.0); // what the caller's painter does is its own affair
        ItemPainter(view).paintItems(painter, stack->getSlice(0));
        EXPECT_TRUE(isPainted(picture, 35, 9)) << "the upper side";
        EXPECT_TRUE(isPainted(picture, 55, 29)) << "the right side";
        EXPECT_EQ(isPainted(picture, 35, 29), closed) << "the closing side";
        EXPECT_FALSE(isPainted(picture, 45, 19));
        EXPECT_EQ(painter.transform().dx(), 100.0);
    }
}

TEST(ItemPainter, RegionsTintTheirPixels)
{
    const auto stack = leaf::emptyStack(1);
    ModelItem& item = leaf::addItem(*stack, "Region", PRIMITIVE_REGION, 0, {});
    item.getModel()->setItemProperties(style(VertexSymbol::Dot, 1.0f));
    RLEItemSet0 set;
    set.add(RLEItem0(7, 11, 4));
    item.setRLEItemSet(set);
    QImage picture = canvas();
    {
        QPainter painter(&picture);
        ItemPainter(QTransform()).paintItems(painter, stack->getSlice(0));
    }
    EXPECT_EQ(extentOf(picture).box, QRect(11, 7, 4, 1));
    EXPECT_EQ(extentOf(picture).pixels, 4);
}
