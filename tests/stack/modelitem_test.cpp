#include "shape/curve.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"
#include "support/errors.h"
#include "system/trace.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <utility>
#include <vector>

namespace {

using Point = std::pair<int, int>;

Vector<int> vec(int x, int y)
{
    Vector<int> v(2);
    v[0] = x;
    v[1] = y;
    return v;
}

Vertices<int> list(const std::vector<Point>& points)
{
    Vertices<int> vertices(2, 0, 0, 0);
    for (const Point& p : points) {
        vertices.append(vec(p.first, p.second));
    }
    return vertices;
}

std::vector<Point> points(const Vertices<int>& vertices)
{
    std::vector<Point> result;
    for (int i = 0; i < vertices.getSize(); ++i) {
        result.emplace_back(vertices[i][0], vertices[i][1]);
    }
    return result;
}

/// An item that stands on a slice of its own, with a model of the given geometry.
struct Drawing
{
    explicit Drawing(MPrimitive geometry, const std::vector<Point>& vertices = {})
    {
        model.getProperties().setGeometry(geometry);
        item.setModel(model);
        item.setSlice(slice);
        item.setVertices(list(vertices));
    }

    Model model;
    StackSlice slice;
    ModelItem item;
};

class Draw
{
public:
    explicit Draw(unsigned seed)
        : random_(seed)
    {}

    int number(int bound) { return static_cast<int>(random_() % static_cast<unsigned>(bound)); }

    Point point(int bound) { return {number(bound), number(bound)}; }

    std::vector<Point> polygon(int size, int bound)
    {
        std::vector<Point> result;
        for (int i = 0; i < size; ++i) {
            result.push_back(point(bound));
        }
        return result;
    }

private:
    std::mt19937 random_;
};

long square(Point a, Point b)
{
    const long dx = a.first - b.first;
    const long dy = a.second - b.second;
    return dx * dx + dy * dy;
}

/// In whole numbers throughout, without a division.
bool nearInside(Point a, Point b, Point p, long tolerance)
{
    const long ux = b.first - a.first;
    const long uy = b.second - a.second;
    const long wx = p.first - a.first;
    const long wy = p.second - a.second;
    const long along = ux * wx + uy * wy;
    const long cross = ux * wy - uy * wx;
    const long length = ux * ux + uy * uy;
    return along > 0 && along < length && cross * cross <= tolerance * tolerance * length;
}

bool nearSegment(Point a, Point b, Point p, long tolerance)
{
    return nearInside(a, b, p, tolerance) || square(a, p) <= tolerance * tolerance ||
           square(b, p) <= tolerance * tolerance;
}

/// Even-odd rule in whole numbers, the outline included.
bool inside(const std::vector<Point>& polygon, Point p)
{
    bool odd = false;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const Point a = polygon[i];
        const Point b = polygon[(i + 1) % polygon.size()];
        const long cross = long(b.first - a.first) * (p.second - a.second) -
                           long(b.second - a.second) * (p.first - a.first);
        const bool withinX =
            std::min(a.first, b.first) <= p.first && p.first <= std::max(a.first, b.first);
        const bool withinY =
            std::min(a.second, b.second) <= p.second && p.second <= std::max(a.second, b.second);
        if (cross == 0 && withinX && withinY) {
            return true;
        }
        if ((a.second > p.second) != (b.second > p.second)) {
            odd ^= b.second > a.second ? cross > 0 : cross < 0;
        }
    }
    return odd;
}

RLEItemSet0 pixelSet(const std::vector<Point>& pixels)
{
    RLEItemSet0 set;
    for (const Point& p : pixels) {
        set.add(p.second, p.first);
    }
    return set;
}

} // namespace

TEST(ModelItem, SelectionFollowsRandomEditsOfTheVertices)
{
    Draw draw(3);
    Drawing drawing(PRIMITIVE_POLYGON);
    ModelItem& item = drawing.item;
    std::vector<Point> expected;
    std::vector<bool> flags;
    for (int step = 0; step < 4000; ++step) {
        const int n = static_cast<int>(expected.size());
        const int i = draw.number(n + 1);
        const Point p = draw.point(5);
        const int operation = expected.size() > 30 ? 5 : draw.number(12);
        if (operation == 0) {
            expected = draw.polygon(draw.number(8), 5);
            item.setVertices(list(expected));
            flags.assign(expected.size(), false);
        } else if (operation <= 2) {
            item.insertVertex(i, vec(p.first, p.second));
            expected.insert(expected.begin() + i, p);
            flags.insert(flags.begin() + i, false);
        } else if (operation == 3) {
            item.appendVertex(vec(p.first, p.second));
            expected.push_back(p);
            flags.assign(expected.size(), false);
        } else if (operation == 4 && n > 0) {
            item.appendVertices(item.getVertices());
            expected.insert(expected.end(), expected.begin(), expected.begin() + n);
            flags.assign(expected.size(), false);
        } else if (operation == 5 && i < n) {
            const int j = i + draw.number(n - i);
            item.removeVertices(i, j);
            expected.erase(expected.begin() + i, expected.begin() + j + 1);
            flags.erase(flags.begin() + i, flags.begin() + j + 1);
        } else if (operation == 6 && i < n) {
            item.moveVertex(i, vec(p.first, p.second));
            expected[static_cast<std::size_t>(i)] = p;
        } else if (operation == 7 && i < n) {
            item.getSelection().set(true, i, step % 7 == 0);
            if (step % 7 == 0) {
                flags.assign(expected.size(), false);
            }
            flags[static_cast<std::size_t>(i)] = true;
        } else if (operation == 8) {
            item.translate(p.first - 2, p.second - 2);
            for (Point& q : expected) {
                q.first += p.first - 2;
                q.second += p.second - 2;
            }
        } else if (operation >= 9 && operation <= 10) {
            // Keep what is selected or what is not, unless there is nothing to remove.
            const bool keepSelected = operation == 10;
            std::vector<Point> kept;
            for (std::size_t k = 0; k < expected.size(); ++k) {
                if (flags[k] == keepSelected) {
                    kept.push_back(expected[k]);
                }
            }
            EXPECT_EQ(points(keepSelected ? item.selectedVertices() : item.unselectedVertices()),
                      kept);
            keepSelected ? item.removeUnselectedVertices() : item.removeSelectedVertices();
            if (kept.size() != expected.size()) {
                expected = kept;
                flags.assign(expected.size(), keepSelected);
            }
        } else if (operation == 11) {
            item.getSelection().invert();
            flags.flip();
        }
        ASSERT_EQ(points(item.getVertices()), expected) << "step " << step;
        ASSERT_EQ(item.getSelection().getLength(), static_cast<int>(flags.size()));
        for (std::size_t k = 0; k < flags.size(); ++k) {
            ASSERT_EQ(item.getSelection().isSelected(static_cast<int>(k)), flags[k]) << step;
        }
    }
}

TEST(ModelItem, VerticesAreItsOwn)
{
    Drawing drawing(PRIMITIVE_POLYGON);
    Vertices<int> source = list({{0, 0}, {4, 0}, {4, 4}});
    drawing.item.setVertices(source);
    source[0] = vec(9, 9);
    EXPECT_EQ(drawing.item.getVertices()[0], vec(0, 0));

    drawing.item.getSelection().set(true, 2, true);
    drawing.item.getProperties().setLineWidth(4.0f);
    drawing.item.setTriangulationTag(CurveStackTriangulationContourTag::End);
    ModelItem copy(drawing.item);
    drawing.item.translate(1, 1);
    EXPECT_EQ(points(copy.getVertices()), (std::vector<Point>{{0, 0}, {4, 0}, {4, 4}}));
    EXPECT_EQ(copy.getModel(), &drawing.model);
    EXPECT_EQ(copy.getSlice(), &drawing.slice);
    EXPECT_EQ(copy.getSelection().getSize(), 1);
    EXPECT_EQ(copy.getProperties(), drawing.item.getProperties());
    EXPECT_EQ(copy.getTriangulationTag(), CurveStackTriangulationContourTag::End);

    EXPECT_THROW(drawing.item.appendVertex(Vector<int>(3)), SizeError);
    EXPECT_THROW(drawing.item.setVertices(Vertices<int>(3, 2, 0, 0)), SizeError);
    EXPECT_EQ(points(drawing.item.getVertices()), (std::vector<Point>{{1, 1}, {5, 1}, {5, 5}}));
}

TEST(ModelItem, RemovingDuplicatesClosesPolygonsOnly)
{
    const std::vector<Point> vertices = {{1, 1}, {1, 1}, {2, 1}, {1, 1}};
    Drawing polygon(PRIMITIVE_POLYGON, vertices);
    polygon.item.getSelection().set(true);
    polygon.item.removeDuplicates();
    EXPECT_EQ(points(polygon.item.getVertices()), (std::vector<Point>{{1, 1}, {2, 1}}));
    EXPECT_EQ(polygon.item.getSelection().getLength(), 2);
    EXPECT_TRUE(polygon.item.getSelection().isEmpty());
    Drawing polyline(PRIMITIVE_POLYLINE, vertices);
    polyline.item.removeDuplicates();
    EXPECT_EQ(polyline.item.getSize(), 3);
}

TEST(ModelItem, ClockwiseMeansANegativeAreaAndHoldsForPolygonsOnly)
{
    Draw draw(8);
    for (int round = 0; round < 300; ++round) {
        const std::vector<Point> vertices = draw.polygon(3 + draw.number(5), 40000);
        double area = 0.0;
        for (std::size_t i = 0; i < vertices.size(); ++i) {
            const Point a = vertices[i];
            const Point b = vertices[(i + 1) % vertices.size()];
            area += double(a.first) * b.second - double(a.second) * b.first;
        }
        Drawing polygon(PRIMITIVE_POLYGON, vertices);
        polygon.item.getSelection().set(true, 0, true);
        EXPECT_EQ(polygon.item.isClockwise(), area < 0.0);
        polygon.item.setClockwise(area >= 0.0);
        EXPECT_EQ(polygon.item.isClockwise(), area > 0.0);
        const std::vector<Point> reversed(vertices.rbegin(), vertices.rend());
        EXPECT_EQ(points(polygon.item.getVertices()), reversed);
        EXPECT_TRUE(polygon.item.getSelection().isSelected(polygon.item.getSize() - 1));

        Drawing polyline(PRIMITIVE_POLYLINE, vertices);
        EXPECT_FALSE(polyline.item.isClockwise());
        polyline.item.setClockwise(true);
        EXPECT_EQ(points(polyline.item.getVertices()), vertices);
    }
}

TEST(ModelItem, SearchesAgreeWithNaiveOnes)
{
    Draw draw(4);
    for (int round = 0; round < 3000; ++round) {
        const std::vector<Point> v = draw.polygon(draw.number(6), 16);
        const int n = static_cast<int>(v.size());
        const Point p = draw.point(16);
        const int tolerance = draw.number(5);
        const auto at = [&v, n](int i) { return v[static_cast<std::size_t>((i + n) % n)]; };
        int nearest = -1;
        int firstPoint = -1;
        int segmentEnd = -1;
        int insertion = -1;
        for (int i = n - 1; i >= 0; --i) {
            if (square(at(i), p) <= tolerance * tolerance) {
                firstPoint = i;
                if (nearest < 0 || square(at(i), p) <= square(at(nearest), p)) {
                    nearest = i;
                }
            }
            if (i > 0 && nearSegment(at(i - 1), at(i), p, tolerance)) {
                segmentEnd = i;
            }
            if (i > 0 && nearInside(at(i - 1), at(i), p, tolerance)) {
                insertion = i;
            }
        }
        const bool nearClosing = n > 0 && nearSegment(at(-1), at(0), p, tolerance);
        const bool insideClosing = n > 0 && nearInside(at(-1), at(0), p, tolerance);
        const Vector<int> position = vec(p.first, p.second);

        const Drawing polypoint(PRIMITIVE_POLYPOINT, v);
        EXPECT_EQ(polypoint.item.findNearVertex(position, tolerance), firstPoint);
        EXPECT_EQ(polypoint.item.findNearestVertex(position, tolerance), nearest);
        EXPECT_EQ(polypoint.item.findInsertion(position, tolerance), n);
        const Drawing polyline(PRIMITIVE_POLYLINE, v);
        EXPECT_EQ(polyline.item.findNearVertex(position, tolerance), segmentEnd);
        EXPECT_EQ(polyline.item.findNearestVertex(position, tolerance), nearest);
        EXPECT_EQ(polyline.item.findInsertion(position, tolerance), insertion);
        const Drawing polygon(PRIMITIVE_POLYGON, v);
        EXPECT_EQ(polygon.item.findNearVertex(position, tolerance), nearClosing ? 0 : segmentEnd);
        EXPECT_EQ(polygon.item.findInsertion(position, tolerance),
                  insertion < 0 && insideClosing ? n : insertion);
        const Drawing unknown(PRIMITIVE_UNKNOWN, v);
        EXPECT_EQ(unknown.item.findNearVertex(position, tolerance), -1);
    }
}

TEST(ModelItem, PartialContainmentIsInsideOrOnTheOutlineOfTheSameSlice)
{
    Draw draw(6);
    int yes = 0;
    for (int round = 0; round < 2000; ++round) {
        const std::vector<Point> outline = draw.polygon(3 + draw.number(5), 12);
        const std::vector<Point> others = draw.polygon(1 + draw.number(2), 12);
        const bool expected = std::any_of(others.begin(), others.end(),
                                          [&outline](Point p) { return inside(outline, p); });
        Drawing drawing(PRIMITIVE_POLYGON, outline);
        Model inner;
        inner.getProperties().setGeometry(PRIMITIVE_POLYPOINT);
        auto* item = new ModelItem;
        item->setModel(inner);
        item->setSlice(drawing.slice);
        item->setVertices(list(others));
        item->attach();
        drawing.item.attach();
        ASSERT_EQ(drawing.item.partiallyContains(*item), expected) << "round " << round;
        EXPECT_EQ(drawing.model.partiallyContains(inner), expected);
        EXPECT_FALSE(item->partiallyContains(drawing.item));
        StackSlice elsewhere;
        item->setSlice(elsewhere);
        EXPECT_FALSE(drawing.item.partiallyContains(*item));
        EXPECT_FALSE(drawing.model.partiallyContains(inner));
        drawing.item.detach();
        yes += expected ? 1 : 0;
    }
    EXPECT_GT(yes, 300);
    EXPECT_LT(yes, 1700);
}

TEST(ModelItem, BoxGrowsByTheLargerOfPointSizeAndLineWidth)
{
    Drawing drawing(PRIMITIVE_POLYLINE, {{10, 40}, {30, 20}});
    EXPECT_EQ(drawing.item.boundingBox().getVertex1(), vec(7, 17)); // point size 3 of the model
    EXPECT_EQ(drawing.item.boundingBox().getVertex2(), vec(34, 44));
    drawing.item.getProperties().setPointSize(1.9f);
    drawing.item.getProperties().setLineWidth(2.9f);
    EXPECT_EQ(drawing.item.boundingBox().getVertex1(), vec(8, 18));
    EXPECT_EQ(drawing.item.boundingBox().getVertex2(), vec(33, 43));
}

TEST(ModelItem, RegionKeepsPixelsAndASingleFlag)
{
    Drawing drawing(PRIMITIVE_REGION);
    ModelItem& item = drawing.item;
    item.addRLEItemSet(pixelSet({{5, 1}, {6, 1}, {7, 1}, {6, 2}}));
    EXPECT_EQ(item.getSize(), 4);
    EXPECT_EQ(points(item.pixels()), (std::vector<Point>{{5, 1}, {6, 1}, {7, 1}, {6, 2}}));
    EXPECT_EQ(item.findNearestVertex(vec(9, 1), 2), 2);
    EXPECT_EQ(item.findNearestVertex(vec(9, 1), 1), -1);
    EXPECT_EQ(item.boundingBox().getVertex1(), vec(2, -2));
    EXPECT_EQ(item.boundingBox().getVertex2(), vec(11, 6));

    item.getSelection().set(true);
    item.setRLEItemSet(pixelSet({{1, 0}, {2, 0}, {3, 0}}));
    EXPECT_TRUE(item.getSelection().isSelected(0));
    const ModelItem copy(item);
    item.removeRLEItemSet(pixelSet({{2, 0}}));
    item.translate(10, 20);
    EXPECT_EQ(points(item.pixels()), (std::vector<Point>{{11, 20}, {13, 20}}));
    EXPECT_EQ(copy.getSize(), 3);
    EXPECT_EQ(item.selectedVertices().getSize(), 2);
    EXPECT_EQ(item.unselectedVertices().getSize(), 0);
    testing::internal::CaptureStdout();
    Trace::enterFunction("edit");
    item.removeSelection();
    Trace::leaveFunction("edit");
    EXPECT_NE(testing::internal::GetCapturedStdout().find(
                  "\n|   *** WARNING: Obsolete call to void ModelItem::removeSelection()\n"
                  "***   Replace by call to: void ModelItem::removeSelectedVertices()\n"),
              std::string::npos);
    EXPECT_EQ(item.getSize(), 0);
    EXPECT_EQ(item.getSelection().getLength(), 1);
}

template <class T>
class ModelItemShape : public testing::Test
{};

using Coordinates = testing::Types<int, float, double, long double>;
TYPED_TEST_SUITE(ModelItemShape, Coordinates);

TYPED_TEST(ModelItemShape, HasTheTypeOfThePrimitiveAndTheCoordinatesInOrder)
{
    const std::vector<Point> vertices = {{1, 2}, {-3, 4000}, {5, 6}};
    const std::pair<MPrimitive, int> types[] = {
        {PRIMITIVE_POLYGON, 0}, {PRIMITIVE_POLYLINE, 1}, {PRIMITIVE_POLYPOINT, 6}};
    for (const auto& type : types) {
        const Drawing drawing(type.first, vertices);
        const std::unique_ptr<Shape<TypeParam>> shape(drawing.item.toShape<TypeParam>());
        EXPECT_EQ(shape->getShapeType(), type.second);
        EXPECT_EQ(shape->toVector().toStlVector(), (std::vector<TypeParam>{1, 2, -3, 4000, 5, 6}));
    }
    EXPECT_RAISES(ProgramError, "Shape<CoordType>* ModelItem::toShape() const",
                  "PRIMITIVE_REGION in switch is not handled",
                  Drawing(PRIMITIVE_REGION).item.toShape<TypeParam>());
    EXPECT_THROW(Drawing(PRIMITIVE_UNKNOWN).item.toShape<TypeParam>(), ProgramError);
    EXPECT_EQ(Drawing(static_cast<MPrimitive>(7)).item.toShape<TypeParam>(), nullptr);
}

TEST(Model, NewOneIsARedFilledPolygonWithSpheresOfSizeThree)
{
    const Model model;
    ModelProperties expected;
    expected.setDefaults();
    EXPECT_EQ(model.getProperties().intersection(expected), model.getProperties());
    EXPECT_FALSE(model.getProperties().hasBeginCapFlag());
    EXPECT_FALSE(model.getProperties().hasEndCapFlag());
    EXPECT_TRUE(model.getProperties().definesEconomicRendering());
    ModelItemProperties items;
    items.setDefaults();
    EXPECT_FLOAT_EQ(items.getPointSize(), 1.0f);
    items.setPointSize(3.0f);
    EXPECT_EQ(model.getItemProperties(), items);
    EXPECT_EQ(model.getName(), "<model>");
    EXPECT_FALSE(model.hasSnakeConfig());
}
