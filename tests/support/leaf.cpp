#include "support/leaf.h"

#include "image/pixels/image0.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace leaf {
namespace {

// The teeth stand on this stretch of the axis, as fractions of the blade's length from its base.
constexpr double teethBegin = 0.15;
constexpr double teethEnd = 0.85;

/// Height of the margin above the notches at the fraction `t` of the blade's length, 0 in each notch
/// and 1 at each tip, beside the teeth rising to 1 as well.
double toothProfile(double t, double period)
{
    const auto beside = [&](double gap, double end) {
        return std::min(gap / (period / 2.0), 1.0) * std::min(end / 0.05, 1.0);
    };
    if (t < teethBegin || t > teethEnd) {
        return t < teethBegin ? beside(teethBegin - t, t) : beside(t - teethEnd, 1.0 - t);
    }
    return 1.0 - std::fabs(2.0 * std::fmod((t - teethBegin) / period, 1.0) - 1.0);
}

double distanceToSegment(Point a, Point b, Point p)
{
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const double squared = dx * dx + dy * dy;
    double t = squared > 0.0 ? ((p.x - a.x) * dx + (p.y - a.y) * dy) / squared : 0.0;
    t = std::clamp(t, 0.0, 1.0);
    return distance(p, {a.x + t * dx, a.y + t * dy});
}

Model& model(LMXStack& stack, const std::string& name, MPrimitive geometry)
{
    const int index = stack.findModel(name);
    if (index >= 0) {
        return stack.getModel(index);
    }
    auto* created = new Model;
    created->setName(name);
    created->getProperties().setGeometry(geometry);
    stack.addModel(*created);
    return *created;
}

} // namespace

double distance(Point a, Point b)
{
    return std::hypot(a.x - b.x, a.y - b.y);
}

void appendLine(std::vector<Point>& points, Point to)
{
    const Point from = points.back();
    const int steps = std::max(1, static_cast<int>(std::ceil(distance(from, to) / 0.5)));
    for (int k = 1; k <= steps; ++k) {
        const double u = static_cast<double>(k) / steps;
        points.push_back({from.x + (to.x - from.x) * u, from.y + (to.y - from.y) * u});
    }
}

Outline draw(const Shape& shape)
{
    const double turn = shape.angleDegrees * M_PI / 180.0;
    // The point at the distance `along` from the base towards the tip and `across` to the right.
    const auto place = [&, c = std::cos(turn), s = std::sin(turn)](double along, double across) {
        const double y = shape.length / 2.0 - along;
        return Point{shape.middle.x + across * c - y * s, shape.middle.y + across * s + y * c};
    };
    const int teeth = shape.teethPerSide;
    const double period = teeth > 0 ? (teethEnd - teethBegin) / teeth : 1.0;
    const auto margin = [&](double t, double side) {
        const double smooth = shape.petioleWidth / 2.0 * (1.0 - t) +
                              shape.width / 2.0 * std::pow(std::sin(M_PI * t), 0.8);
        const double tooth = teeth > 0 ? shape.toothHeight * toothProfile(t, period) : 0.0;
        return place(t * shape.length, side * (smooth + tooth));
    };
    const double half = shape.petioleWidth / 2.0;
    const int steps = static_cast<int>(shape.length * 2.0);

    Outline outline;
    std::vector<Point>& points = outline.points;
    outline.apex = place(shape.length, 0.0);
    points.push_back(place(-shape.petioleLength, 0.0));
    for (const int side : {-1, 1}) {
        const bool first = side < 0;
        const Point junction = outline.junctions[first ? 0 : 1] = place(0.0, side * half);
        if (first) {
            appendLine(points, place(-shape.petioleLength, -half));
            appendLine(points, junction);
        }
        for (int k = 1; k < steps; ++k) {
            appendLine(points, margin(static_cast<double>(first ? k : steps - k) / steps, side));
        }
        appendLine(points, first ? outline.apex : junction);
        for (int k = 0; teeth > 0 && k <= teeth; ++k) {
            outline.sinuses.push_back(margin(teethBegin + (first ? k : teeth - k) * period, side));
        }
        for (int k = 0; k < teeth; ++k) {
            const int tooth = first ? k : teeth - 1 - k;
            outline.tips.push_back(margin(teethBegin + (tooth + 0.5) * period, side));
        }
    }
    appendLine(points, place(-shape.petioleLength, half));
    appendLine(points, points.front());
    points.pop_back();
    outline.area = polygonArea(points);
    return outline;
}

Outline draw(int teethPerSide, double toothHeight, double angleDegrees, Point middle)
{
    Shape shape;
    shape.teethPerSide = teethPerSide;
    shape.toothHeight = toothHeight;
    shape.angleDegrees = angleDegrees;
    shape.middle = middle;
    return draw(shape);
}

double distanceToOutline(const Outline& outline, Point point)
{
    double nearest = distance(outline.points.front(), point);
    for (std::size_t i = 0; i < outline.points.size(); ++i) {
        const Point next = outline.points[(i + 1) % outline.points.size()];
        nearest = std::min(nearest, distanceToSegment(outline.points[i], next, point));
    }
    return nearest;
}

double polygonArea(const std::vector<Point>& points)
{
    double twice = 0.0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const Point& next = points[(i + 1) % points.size()];
        twice += points[i].x * next.y - points[i].y * next.x;
    }
    return twice / 2.0;
}

double area(const ModelItem& item)
{
    return polygonArea(pointsOf(item));
}

PixelMatrix<float> photograph(const Outline& outline,
                              int rows,
                              int columns,
                              float leafValue,
                              float backgroundValue,
                              float noise,
                              unsigned seed)
{
    std::mt19937 generator(seed);
    std::uniform_real_distribution<float> grain(-noise, noise);
    PixelMatrix<float> image(rows, columns);
    for (int i = 0; i < rows; ++i) {
        std::vector<double> crossings;
        for (std::size_t k = 0; k < outline.points.size(); ++k) {
            const Point& a = outline.points[k];
            const Point& b = outline.points[(k + 1) % outline.points.size()];
            if ((a.y <= i) != (b.y <= i)) {
                crossings.push_back(a.x + (i - a.y) * (b.x - a.x) / (b.y - a.y));
            }
        }
        std::sort(crossings.begin(), crossings.end());
        for (int j = 0; j < columns; ++j) {
            const auto left = std::lower_bound(crossings.begin(), crossings.end(), j);
            const bool inside = (left - crossings.begin()) % 2 == 1;
            const float value = (inside ? leafValue : backgroundValue) + grain(generator);
            image[i][j] = std::clamp(value, 0.0f, 255.0f);
        }
    }
    return image;
}

Image0 toImage(const PixelMatrix<float>& matrix)
{
    Image0 image(matrix.getSize2(), matrix.getSize1(), 8);
    for (int i = 0; i < matrix.getSize1(); ++i) {
        for (int j = 0; j < matrix.getSize2(); ++j) {
            image.getPixels()[i][j] = static_cast<unsigned char>(matrix[i][j]);
        }
    }
    return image;
}

std::unique_ptr<LMXStack> emptyStack(int slices)
{
    auto stack = std::make_unique<LMXStack>();
    for (int i = 0; i < slices; ++i) {
        auto* slice = new StackSlice;
        slice->setName("leaf" + std::to_string(i));
        slice->setStack(*stack);
        stack->addSlice(*slice);
    }
    return stack;
}

std::unique_ptr<LMXStack> stackOf(const std::vector<Outline>& outlines)
{
    auto stack = emptyStack(static_cast<int>(outlines.size()));
    for (std::size_t k = 0; k < outlines.size(); ++k) {
        std::vector<Point> pixels;
        for (const Point& point : outlines[k].points) {
            const Point pixel = {std::round(point.x), std::round(point.y)};
            if (pixels.empty() || distance(pixels.back(), pixel) > 0.0) {
                pixels.push_back(pixel);
            }
        }
        const int slice = static_cast<int>(k);
        addItem(*stack, "Contour", PRIMITIVE_POLYGON, slice, pixels);
        mark(*stack, "Petiole", slice, {outlines[k].junctions[0], outlines[k].junctions[1]});
    }
    return stack;
}

std::unique_ptr<LMXStack> landmarkedStack(const std::vector<Outline>& outlines)
{
    auto stack = stackOf(outlines);
    for (std::size_t k = 0; k < outlines.size(); ++k) {
        addLandmarks(*stack, static_cast<int>(k), outlines[k]);
    }
    return stack;
}

void addLandmarks(LMXStack& stack, int slice, const Outline& outline)
{
    mark(stack, "Apex", slice, {outline.apex});
    if (!outline.sinuses.empty()) {
        mark(stack, "Primary Sinus", slice, outline.sinuses);
    }
    if (!outline.tips.empty()) {
        mark(stack, "Primary Peak", slice, outline.tips);
    }
}

void setPixelWidth(LMXStack& stack, int slice, float width)
{
    PixelCalibration calibration;
    calibration.setPixelWidth(width);
    calibration.setPixelHeight(width);
    stack.getSlice(slice).setPixelCalibration(calibration);
}

ModelItem& addItem(LMXStack& stack,
                   const std::string& name,
                   MPrimitive geometry,
                   int slice,
                   const std::vector<Point>& points)
{
    Vertices<int> pixels(2, static_cast<int>(points.size()), 0, 0);
    for (std::size_t i = 0; i < points.size(); ++i) {
        pixels[static_cast<int>(i)][0] = static_cast<int>(std::lround(points[i].x));
        pixels[static_cast<int>(i)][1] = static_cast<int>(std::lround(points[i].y));
    }
    auto* item = new ModelItem;
    item->setModel(model(stack, name, geometry));
    item->setSlice(stack.getSlice(slice));
    item->setVertices(pixels);
    item->attach();
    return *item;
}

ModelItem&
mark(LMXStack& stack, const std::string& name, int slice, const std::vector<Point>& points)
{
    return addItem(stack, name, PRIMITIVE_POLYPOINT, slice, points);
}

void remark(LMXStack& stack, const std::string& name, int slice, const std::vector<Point>& points)
{
    delete findItem(stack, name, slice);
    mark(stack, name, slice, points);
}

ModelItem* findItem(LMXStack& stack, const std::string& name, int slice)
{
    ModelItemOwner& owner = stack.getSlice(slice);
    for (int i = owner.getNumItems() - 1; i >= 0; --i) {
        if (owner.getItem(i).getModel()->getName() == name) {
            return &owner.getItem(i);
        }
    }
    return nullptr;
}

std::vector<Point> pointsOf(const ModelItem& item)
{
    std::vector<Point> points;
    for (int i = 0; i < item.getSize(); ++i) {
        const Vector<int>& vertex = item.getVertices()[i];
        points.push_back({static_cast<double>(vertex[0]), static_cast<double>(vertex[1])});
    }
    return points;
}

std::vector<Point> vertices(LMXStack& stack, const std::string& name, int slice)
{
    const ModelItem* item = findItem(stack, name, slice);
    return item ? pointsOf(*item) : std::vector<Point>();
}

bool samePlaces(const std::vector<Point>& a, const std::vector<Point>& b, double tolerance)
{
    std::vector<Point> left = b;
    for (const Point& point : a) {
        const auto found = std::find_if(left.begin(), left.end(), [&](const Point& other) {
            return distance(other, point) <= tolerance;
        });
        if (found == left.end()) {
            return false;
        }
        left.erase(found);
    }
    return left.empty();
}

} // namespace leaf
