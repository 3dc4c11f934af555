#include "samples/canvas.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int linesPerPixel = 4;

/// Where an edge meets a line of samples, and whether it runs down (1) or up (-1).
struct Crossing
{
    double x = 0.0;
    int direction = 0;
};

std::vector<std::vector<Crossing>> crossings(const Polyline& loop, int lineCount)
{
    std::vector<std::vector<Crossing>> lines(static_cast<std::size_t>(lineCount));
    for (std::size_t i = 0; i < loop.size(); ++i) {
        Point a = loop[i];
        Point b = loop[(i + 1) % loop.size()];
        const int direction = a.y < b.y ? 1 : -1;
        if (direction < 0) {
            std::swap(a, b);
        }
        // Line k lies at the height (k + 0.5) / linesPerPixel.
        const int first = static_cast<int>(std::ceil(a.y * linesPerPixel - 0.5));
        const int last = static_cast<int>(std::ceil(b.y * linesPerPixel - 0.5));
        for (int k = std::max(first, 0); k < std::min(last, lineCount); ++k) {
            const double y = (k + 0.5) / linesPerPixel;
            const double x = a.x + (b.x - a.x) * (y - a.y) / (b.y - a.y);
            lines[static_cast<std::size_t>(k)].push_back({x, direction});
        }
    }
    return lines;
}

void addSpan(Plane& plane, int row, double from, double to)
{
    const double begin = std::max(from, 0.0);
    const double end = std::min(to, static_cast<double>(plane.width));
    for (int x = static_cast<int>(begin); x < end; ++x) {
        const double share = std::min(end, x + 1.0) - std::max(begin, static_cast<double>(x));
        plane.at(x, row) += static_cast<float>(share / linesPerPixel);
    }
}

std::vector<float> gaussianKernel(double sigma)
{
    const int radius = static_cast<int>(std::ceil(3.0 * sigma));
    std::vector<float> kernel;
    float sum = 0.0F;
    for (int k = -radius; k <= radius; ++k) {
        kernel.push_back(static_cast<float>(std::exp(-0.5 * k * k / (sigma * sigma))));
        sum += kernel.back();
    }
    for (float& weight : kernel) {
        weight /= sum;
    }
    return kernel;
}

} // namespace

Plane::Plane(int columns, int rows, float value)
    : width(columns)
    , height(rows)
    , values(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows), value)
{}

void addCoverage(Plane& plane, const Polyline& loop)
{
    auto lines = crossings(loop, plane.height * linesPerPixel);
    for (std::size_t k = 0; k < lines.size(); ++k) {
        std::sort(lines[k].begin(), lines[k].end(),
                  [](const Crossing& a, const Crossing& b) { return a.x < b.x; });
        int winding = 0;
        double begin = 0.0;
        for (const Crossing& crossing : lines[k]) {
            const int before = winding;
            winding += crossing.direction;
            if (before == 0) {
                begin = crossing.x;
            } else if (winding == 0) {
                addSpan(plane, static_cast<int>(k) / linesPerPixel, begin, crossing.x);
            }
        }
    }
}

void blur(Plane& plane, double sigma)
{
    const std::vector<float> kernel = gaussianKernel(sigma);
    const int radius = static_cast<int>(kernel.size() / 2);
    const auto pass = [&](int lines, int length, auto&& pixel) {
        std::vector<float> padded(static_cast<std::size_t>(length + 2 * radius));
        for (int line = 0; line < lines; ++line) {
            for (int i = -radius; i < length + radius; ++i) {
                padded[static_cast<std::size_t>(i + radius)] =
                    pixel(line, std::clamp(i, 0, length - 1));
            }
            for (int i = 0; i < length; ++i) {
                float sum = 0.0F;
                for (std::size_t k = 0; k < kernel.size(); ++k) {
                    sum += kernel[k] * padded[static_cast<std::size_t>(i) + k];
                }
                pixel(line, i) = sum;
            }
        }
    };
    pass(plane.height, plane.width, [&](int y, int x) -> float& { return plane.at(x, y); });
    pass(plane.width, plane.height, [&](int x, int y) -> float& { return plane.at(x, y); });
}
