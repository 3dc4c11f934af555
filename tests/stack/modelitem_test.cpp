#include "shape/curves/curve.h"
#include "support/errors.h"
#include "support/stacks.h"
#include "support/vectors.h"
#include "system/trace.h"

#include <algorithm>

namespace {

using Point = std::pair<int, int>;

using Points = std::vector<Point>;

Vector<int> vec(int x, int y)
{
    return vectorOf<int>({x, y});
}

Vertices<int> list(const Points& points)
{
    Vertices<int> vertices(2, 0, 0, 0);
    for (const Point& p : points) {
        vertices.append(vec(p.first, p.second));
    }
    return vertices;
}

Points points(const Vertices<int>& vertices)
{
    Points result;
    for (int i = 0; i < vertices.getSize(); ++i) {
        result.emplace_back(vertices[i][0], vertices[i][1]);
    }
    return result;
}

/// An item that stands on a slice of its own, with a model of the given geometry.
struct Drawing
{
    explicit Drawing(MPrimitive geometry, const Points& vertices = {})
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

class Draw : public stacks::Dice
{
public:
    using Dice::Dice;

    Point point(int bound)
    {
        const int x = below(bound);
        return {x, below(bound)};
    }

    Points polygon(int size, int bound)
    {
        Points result(static_cast<std::size_t>(size));
        std::generate(result.begin(), result.end(), [&] { return point(bound); });
        return result;
    }
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
    const long along = ux * (p.first - a.first) + uy * (p.second - a.second);
    const long cross = ux * (p.second - a.second) - uy * (p.first - a.first);
    const long length = ux * ux + uy * uy;
    return along > 0 && along < length && cross * cross <= tolerance * tolerance * length;
}

bool nearSegment(Point a, Point b, Point p, long tolerance)
{
    return nearInside(a, b, p, tolerance) || square(a, p) <= tolerance * tolerance ||
           square(b, p) <= tolerance * tolerance;
}

/// The outline included.
bool inside(const Points& polygon, Point p)
{
    Curve<double> curve(2, 0, 0, 0, false);
    Point a = polygon.back();
    for (const Point& b : polygon) {
        if (nearSegment(a, b, p, 0)) {
            return true;
        }
        curve.append(vectorOf<double>({double(b.first), double(b.second)}));
        a = b;
    }
    return curve.contains(vectorOf<double>({double(p.first), double(p.second)}), 0, 1);
}

RLEItemSet0 pixelSet(const Points& pixels)
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
    // Each vertex and whether it is selected.
    std::vector<std::pair<Point, bool>> expected;
    const auto select = [&](bool flag) {
        for (auto& [p, selected] : expected) {
            selected = flag;
        }
    };
    for (int step = 0; step < 4000; ++step) {
        const int n = static_cast<int>(expected.size());
        const int i = draw.below(n + 1);
        const auto at = expected.begin() + i;
        const Point p = draw.point(5);
        const Vector<int> vertex = vec(p.first, p.second);
        const int operation = n > 30 ? 5 : draw.below(12);
        if (operation == 0) {
            const Points polygon = draw.polygon(draw.below(8), 5);
            item.setVertices(list(polygon));
            expected.clear();
            for (const Point& q : polygon) {
                expected.emplace_back(q, false);
            }
        } else if (operation <= 2) {
            item.insertVertex(i, vertex);
            expected.insert(at, {p, false});
        } else if (operation == 3) {
            item.appendVertex(vertex);
            expected.emplace_back(p, false);
            select(false);
        } else if (operation == 4 && n > 0) {
            item.appendVertices(item.getVertices());
            expected.insert(expected.end(), expected.begin(), expected.begin() + n);
            select(false);
        } else if (operation == 5 && i < n) {
            const int j = i + draw.below(n - i);
            item.removeVertices(i, j);
            expected.erase(at, expected.begin() + j + 1);
        } else if (operation == 6 && i < n) {
            item.moveVertex(i, vertex);
            at->first = p;
        } else if (operation == 7 && i < n) {
            item.getSelection().set(true, i, step % 7 == 0);
            if (step % 7 == 0) {
                select(false);
            }
            at->second = true;
        } else if (operation == 8) {
            item.translate(p.first - 2, p.second - 2);
            for (auto& [q, selected] : expected) {
                q = {q.first + p.first - 2, q.second + p.second - 2};
            }
        } else if (operation == 9 || operation == 10) {
            // Keep what is selected or what is not, unless there is nothing to remove.
            const bool keep = operation == 10;
            Points kept;
            for (const auto& [q, selected] : expected) {
                if (selected == keep) {
                    kept.push_back(q);
                }
            }
            EXPECT_EQ(points(keep ? item.selectedVertices() : item.unselectedVertices()), kept);
            keep ? item.removeUnselectedVertices() : item.removeSelectedVertices();
            expected.erase(std::remove_if(expected.begin(), expected.end(),
                                          [&](const auto& q) { return q.second != keep; }),
                           expected.end());
        } else if (operation == 11) {
            item.getSelection().invert();
            for (auto& [q, selected] : expected) {
                selected = !selected;
            }
        }
        ASSERT_EQ(item.getSize(), static_cast<int>(expected.size()));
        ASSERT_EQ(item.getSelection().getLength(), item.getSize());
        for (int k = 0; k < item.getSize(); ++k) {
            const Vector<int>& v = item.getVertices()[k];
            ASSERT_EQ(std::pair(Point(v[0], v[1]), item.getSelection().isSelected(k)),
                      expected[static_cast<std::size_t>(k)])
                << step;
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
    EXPECT_EQ(points(copy.getVertices()), (Points{{0, 0}, {4, 0}, {4, 4}}));
    EXPECT_TRUE(copy.getModel() == &drawing.model && copy.getSlice() == &drawing.slice);
    EXPECT_EQ(copy.getSelection().getSize(), 1);
    EXPECT_EQ(copy.getProperties(), drawing.item.getProperties());
    EXPECT_EQ(copy.getTriangulationTag(), CurveStackTriangulationContourTag::End);

    EXPECT_THROW(drawing.item.appendVertex(Vector<int>(3)), SizeError);
    EXPECT_THROW(drawing.item.setVertices(Vertices<int>(3, 2, 0, 0)), SizeError);
    EXPECT_EQ(points(drawing.item.getVertices()), (Points{{1, 1}, {5, 1}, {5, 5}}));
}

TEST(ModelItem, RemovingDuplicatesClosesPolygonsOnly)
{
    for (const auto& [geometry, size] :
         {std::pair(PRIMITIVE_POLYGON, 2), {PRIMITIVE_POLYLINE, 3}}) {
        Drawing drawing(geometry, {{1, 1}, {1, 1}, {2, 1}, {1, 1}});
        drawing.item.getSelection().set(true);
        drawing.item.removeDuplicates();
        EXPECT_EQ(drawing.item.getSize(), size);
        EXPECT_EQ(drawing.item.getSelection().getLength(), size);
        EXPECT_TRUE(drawing.item.getSelection().isEmpty());
    }
}

TEST(ModelItem, ClockwiseMeansANegativeAreaAndHoldsForPolygonsOnly)
{
    Draw draw(8);
    for (int round = 0; round < 300; ++round) {
        const Points vertices = draw.polygon(3 + draw.below(5), 40000);
        double area = 0.0;
        Point a = vertices.back();
        for (const Point& b : vertices) {
            area += double(a.first) * b.second - double(a.second) * b.first;
            a = b;
        }
        Drawing polygon(PRIMITIVE_POLYGON, vertices);
        polygon.item.getSelection().set(true, 0, true);
        EXPECT_EQ(polygon.item.isClockwise(), area < 0.0);
        polygon.item.setClockwise(area >= 0.0);
        EXPECT_EQ(points(polygon.item.getVertices()), Points(vertices.rbegin(), vertices.rend()));
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
        const Points v = draw.polygon(draw.below(6), 16);
        const int n = static_cast<int>(v.size());
        const Point p = draw.point(16);
        const int tolerance = draw.below(5);
        const auto at = [&v, n](int i) { return v[static_cast<std::size_t>((i + n) % n)]; };
        int nearest = -1;
        int firstPoint = -1;
        int segmentEnd = -1;
        int insertion = -1;
        for (int i = n - 1; i >= 0; --i) {
            if (square(at(i), p) <= tolerance * tolerance) {
                firstPoint = i;
                nearest = nearest < 0 || square(at(i), p) <= square(at(nearest), p) ? i : nearest;
            }
            segmentEnd = i > 0 && nearSegment(at(i - 1), at(i), p, tolerance) ? i : segmentEnd;
            insertion = i > 0 && nearInside(at(i - 1), at(i), p, tolerance) ? i : insertion;
        }
        const bool nearClosing = n > 0 && nearSegment(at(-1), at(0), p, tolerance);
        const bool insideClosing = n > 0 && nearInside(at(-1), at(0), p, tolerance);
        const std::tuple<MPrimitive, int, int> cases[] = {
            {PRIMITIVE_POLYPOINT, firstPoint, n},
            {PRIMITIVE_POLYLINE, segmentEnd, insertion},
            {PRIMITIVE_POLYGON, nearClosing ? 0 : segmentEnd,
             insertion < 0 && insideClosing ? n : insertion}};
        const Vector<int> position = vec(p.first, p.second);
        for (const auto& [geometry, near, inserted] : cases) {
            const Drawing drawing(geometry, v);
            EXPECT_EQ(drawing.item.findNearVertex(position, tolerance), near) << geometry;
            EXPECT_EQ(drawing.item.findNearestVertex(position, tolerance), nearest);
            EXPECT_EQ(drawing.item.findInsertion(position, tolerance), inserted) << geometry;
        }
        EXPECT_EQ(Drawing(PRIMITIVE_UNKNOWN, v).item.findNearVertex(position, tolerance), -1);
    }
}

TEST(ModelItem, PartialContainmentIsInsideOrOnTheOutlineOfTheSameSlice)
{
    Draw draw(6);
    int yes = 0;
    for (int round = 0; round < 2000; ++round) {
        const Points outline = draw.polygon(3 + draw.below(5), 12);
        const Points others = draw.polygon(1 + draw.below(2), 12);
        const bool expected = std::any_of(others.begin(), others.end(),
                                          [&outline](Point p) { return inside(outline, p); });
        Drawing drawing(PRIMITIVE_POLYGON, outline);
        drawing.item.attach();
        Model inner;
        inner.getProperties().setGeometry(PRIMITIVE_POLYPOINT);
        ModelItem& item = stacks::addItem(inner, drawing.slice, others);
        ASSERT_EQ(drawing.item.partiallyContains(item), expected) << "round " << round;
        EXPECT_EQ(drawing.model.partiallyContains(inner), expected);
        EXPECT_FALSE(item.partiallyContains(drawing.item));
        StackSlice elsewhere;
        item.setSlice(elsewhere);
        EXPECT_FALSE(drawing.item.partiallyContains(item));
        EXPECT_FALSE(drawing.model.partiallyContains(inner));
        drawing.item.detach();
        yes += expected ? 1 : 0;
    }
    EXPECT_TRUE(yes > 300 && yes < 1700) << yes;
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
    EXPECT_EQ(points(item.pixels()), (Points{{5, 1}, {6, 1}, {7, 1}, {6, 2}}));
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
    EXPECT_EQ(points(item.pixels()), (Points{{11, 20}, {13, 20}}));
    EXPECT_EQ(copy.getSize(), 3);
    EXPECT_EQ(item.selectedVertices().getSize(), 2);
    EXPECT_EQ(item.unselectedVertices().getSize(), 0);
    testing::internal::CaptureStdout();
    item.removeSelection();
    EXPECT_NE(testing::internal::GetCapturedStdout().find(
                  "*** WARNING: Obsolete call to void ModelItem::removeSelection()\n"
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
    const Points vertices = {{1, 2}, {-3, 4000}, {5, 6}};
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
