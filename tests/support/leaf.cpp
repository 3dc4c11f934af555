#include "support/leaf.h"

#include "image/image0.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace leaf {
namespace {

constexpr double pi = 3.14159265358979323846;
// The teeth stand on this stretch of the axis, as fractions of the blade's length from its base.
constexpr double teethBegin = 0.15;
constexpr double teethEnd = 0.85;

/// Half width of the blade without teeth at the fraction `t` of its length.
double smoothHalfWidth(const Shape& shape, double t)
{
    const double base = shape.petioleWidth / 2.0 * (1.0 - t);
    return base + shape.width / 2.0 * std::pow(std::sin(pi * t), 0.8);
}

/// Height of the margin above the notches, 0 in each notch and 1 at each tip, beside the teeth
/// rising to 1 as well.
double toothProfile(const Shape& shape, double t)
{
    if (shape.teethPerSide == 0) {
        return 0.0;
    }
    const double period = (teethEnd - teethBegin) / shape.teethPerSide;
    if (t < teethBegin) {
        return std::min((teethBegin - t) / (period / 2.0), 1.0) * std::min(t / 0.05, 1.0);
    }
    if (t > teethEnd) {
        return std::min((t - teethEnd) / (period / 2.0), 1.0) * std::min((1.0 - t) / 0.05, 1.0);
    }
    const double u = std::fmod((t - teethBegin) / period, 1.0);
    return 1.0 - std::fabs(2.0 * u - 1.0);
}

class Drawing
{
public:
    explicit Drawing(const Shape& shape)
        : shape_(shape)
        , cosine_(std::cos(shape.angleDegrees * pi / 180.0))
        , sine_(std::sin(shape.angleDegrees * pi / 180.0))
    {}

    /// The point at the distance `along` from the base towards the tip and `across` to the right.
    Point place(double along, double across) const
    {
        const double x = across;
        const double y = shape_.length / 2.0 - along;
        return {shape_.middle.x + x * cosine_ - y * sine_,
                shape_.middle.y + x * sine_ + y * cosine_};
    }

    Point margin(double t, double side) const
    {
        const double width =
            smoothHalfWidth(shape_, t) + shape_.toothHeight * toothProfile(shape_, t);
        return place(t * shape_.length, side * width);
    }

private:
    Shape shape_;
    double cosine_;
    double sine_;
};

void appendLine(std::vector<Point>& points, Point to)
{
    const Point from = points.back();
    const int steps = std::max(1, static_cast<int>(std::ceil(distance(from, to) / 0.5)));
    for (int k = 1; k <= steps; ++k) {
        const double u = static_cast<double>(k) / steps;
        points.push_back({from.x + (to.x - from.x) * u, from.y + (to.y - from.y) * u});
    }
}

double polygonArea(const std::vector<Point>& points)
{
    double twice = 0.0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const Point& a = points[i];
        const Point& b = points[(i + 1) % points.size()];
        twice += a.x * b.y - a.y * b.x;
    }
    return twice / 2.0;
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

Outline draw(const Shape& shape)
{
    const Drawing drawing(shape);
    const double half = shape.petioleWidth / 2.0;
    const int steps = static_cast<int>(shape.length * 2.0);
    const double period =
        shape.teethPerSide > 0 ? (teethEnd - teethBegin) / shape.teethPerSide : 1.0;

    Outline outline;
    outline.apex = drawing.place(shape.length, 0.0);
    outline.junctions[0] = drawing.place(0.0, -half);
    outline.junctions[1] = drawing.place(0.0, half);
    outline.points.push_back(drawing.place(-shape.petioleLength, 0.0));
    appendLine(outline.points, drawing.place(-shape.petioleLength, -half));
    appendLine(outline.points, outline.junctions[0]);
    for (int k = 1; k < steps; ++k) {
        appendLine(outline.points, drawing.margin(static_cast<double>(k) / steps, -1.0));
    }
    appendLine(outline.points, outline.apex);
    for (int k = steps - 1; k > 0; --k) {
        appendLine(outline.points, drawing.margin(static_cast<double>(k) / steps, 1.0));
    }
    appendLine(outline.points, outline.junctions[1]);
    appendLine(outline.points, drawing.place(-shape.petioleLength, half));
    appendLine(outline.points, outline.points.front());
    outline.points.pop_back();

    for (int k = 0; shape.teethPerSide > 0 && k <= shape.teethPerSide; ++k) {
        outline.sinuses.push_back(drawing.margin(teethBegin + k * period, -1.0));
    }
    for (int k = 0; k < shape.teethPerSide; ++k) {
        outline.tips.push_back(drawing.margin(teethBegin + (k + 0.5) * period, -1.0));
    }
    for (int k = shape.teethPerSide; shape.teethPerSide > 0 && k >= 0; --k) {
        outline.sinuses.push_back(drawing.margin(teethBegin + k * period, 1.0));
    }
    for (int k = shape.teethPerSide - 1; k >= 0; --k) {
        outline.tips.push_back(drawing.margin(teethBegin + (k + 0.5) * period, 1.0));
    }
    outline.area = polygonArea(outline.points);
    return outline;
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

double area(const ModelItem& item)
{
    std::vector<Point> points;
    for (int i = 0; i < item.getSize(); ++i) {
        const Vector<int>& vertex = item.getVertices()[i];
        points.push_back({static_cast<double>(vertex[0]), static_cast<double>(vertex[1])});
    }
    return polygonArea(points);
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
        const Outline& outline = outlines[k];
        std::vector<Point> pixels;
        for (const Point& point : outline.points) {
            const Point pixel = {std::round(point.x), std::round(point.y)};
            if (pixels.empty() || distance(pixels.back(), pixel) > 0.0) {
                pixels.push_back(pixel);
            }
        }
        const int slice = static_cast<int>(k);
        addItem(*stack, "Contour", PRIMITIVE_POLYGON, slice, pixels);
        addItem(*stack, "Petiole", PRIMITIVE_POLYPOINT, slice,
                {outline.junctions[0], outline.junctions[1]});
    }
    return stack;
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

std::vector<Point> vertices(LMXStack& stack, const std::string& name, int slice)
{
    std::vector<Point> points;
    const ModelItem* item = findItem(stack, name, slice);
    for (int i = 0; item && i < item->getSize(); ++i) {
        const Vector<int>& vertex = item->getVertices()[i];
        points.push_back({static_cast<double>(vertex[0]), static_cast<double>(vertex[1])});
    }
    return points;
}

} // namespace leaf
