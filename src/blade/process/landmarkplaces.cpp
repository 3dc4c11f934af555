// Part of `ModelsManager`: where landmarks lie on a contour, and which side of the junctions is the
// blade.

#include "blade/process/modelsmanager.h"

#include <algorithm>
#include <cmath>

namespace {

/// A vertex with its coordinates truncated.
struct Pixel
{
    explicit Pixel(const Vector<float>& vertex)
        : x(static_cast<int>(vertex[0]))
        , y(static_cast<int>(vertex[1]))
    {}

    int x;
    int y;
};

Curve<float> closedPart(const Curve<float>& curve, int first, int last)
{
    Curve<float> part(2, last - first + 1, 0, 0, false);
    for (int k = first; k <= last; ++k) {
        part[k - first] = curve[k];
    }
    return part;
}

Vector<int> places(const Vertices<float>* points, const Curve<float>* curve)
{
    return points && points->getSize() > 0 && curve ? points->closestPointMap(*curve)
                                                    : Vector<int>();
}

double squaredDistance(int dx, int dy)
{
    return static_cast<double>(static_cast<long long>(dx) * dx + static_cast<long long>(dy) * dy);
}

int centreOf(int a, int b)
{
    const int low = std::min(a, b);
    return low + (std::max(a, b) - low) / 2;
}

} // namespace

Vector<int> ModelsManager::indexesPetiole() const
{
    return places(petiole, contour);
}

Vector<int> ModelsManager::indexesPrimarySinuses() const
{
    return places(primarySinus, contour);
}

Vector<int> ModelsManager::indexesPrimaryPeaks() const
{
    return places(primaryPeak, contour);
}

Vector<int> ModelsManager::indexesPetiole(const Curve<float>& curve) const
{
    return places(petiole, &curve);
}

Vector<int> ModelsManager::indexesPrimarySinuses(const Curve<float>& curve) const
{
    return places(primarySinus, &curve);
}

Vector<int> ModelsManager::indexesPrimaryPeaks(const Curve<float>& curve) const
{
    return places(primaryPeak, &curve);
}

Vector<int> ModelsManager::indexesPrimarySinuses(const Vertices<float>& sinuses,
                                                 const Curve<float>& curve) const
{
    return places(&sinuses, &curve);
}

int ModelsManager::apexIndex() const
{
    return contour ? indexApex(*contour) : -1;
}

int ModelsManager::indexApex(const Curve<float>& curve) const
{
    const Vector<int> indexes = places(apex, &curve);
    return indexes.getSize() > 0 ? indexes[0] : -1;
}

Vector<int> ModelsManager::findIndexPetiole(const Curve<float>& curve) const
{
    Vector<int> indexes = places(petiole, &curve);
    indexes.sort();
    return indexes;
}

float ModelsManager::lengthLeaf(const Vector<int>& junctions, int vertex) const
{
    return lengthLeaf(*contour, junctions, vertex);
}

float ModelsManager::lengthLeaf(const Curve<float>& curve,
                                const Vector<int>& junctions,
                                int vertex) const
{
    const Vector<float>& a = curve[junctions[0]];
    const Vector<float>& b = curve[junctions[1]];
    const int middleX = static_cast<int>((a[0] - b[0]) * 0.5f + b[0]);
    const int middleY = static_cast<int>((a[1] - b[1]) * 0.5f + b[1]);
    const Pixel target(curve[vertex]);
    return static_cast<float>(std::sqrt(squaredDistance(target.x - middleX, target.y - middleY)));
}

float ModelsManager::lengthLeaf(const Curve<float>& curve) const
{
    return lengthLeaf(curve, findIndexPetiole(curve), indexApex(curve));
}

int ModelsManager::findIndexMaxDistance(const Curve<float>& curve, int first, int last) const
{
    if (first >= last) {
        return 0;
    }
    const Pixel a(curve[first]);
    const Pixel b(curve[last]);
    const int centreX = centreOf(a.x, b.x);
    const int centreY = centreOf(a.y, b.y);
    Vector<int> distances(curve.getSize() - 1);
    distances.setZeros();
    for (int k = first; k < last; ++k) {
        const Pixel pixel(curve[k]);
        distances[k] =
            static_cast<int>(std::sqrt(squaredDistance(pixel.x - centreX, pixel.y - centreY)));
    }
    return distances.maxPos();
}

Vector<int> ModelsManager::findPoints(const Curve<float>& curve, const Vector<int>& junctions) const
{
    const int size = curve.getSize();
    const int p0 = junctions[0];
    const int p1 = junctions[1];
    const float lower = closedPart(curve, 0, p1).twiceArea(0, 1);
    const float upper = closedPart(curve, p1 + 1, size - 1).twiceArea(0, 1);
    Vector<int> result(2);
    if (lower > upper) {
        result[0] = (size - 1 - p1) / 2 + p1;
        result[1] = findIndexMaxDistance(curve, p0, p1);
    } else {
        result[0] = (p1 - p0) / 2;
        result[1] = findIndexMaxDistance(curve, p1, size - 1);
    }
    return result;
}
