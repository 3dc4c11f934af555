#include "blade/geometry/baseline.h"

#include <cmath>

BaseLine::BaseLine(const Vector<float>& from, const Vector<float>& to)
    : from_{from[0], from[1]}
    , to_{to[0], to[1]}
    , direction_{to[0] - from[0], to[1] - from[1]}
    , length_(distance(from_, to_))
{}

float BaseLine::distance(const Vector<float>& point) const
{
    return distance(foot(point), {point[0], point[1]});
}

float BaseLine::footFromStart(const Vector<float>& point) const
{
    return distance(foot(point), from_);
}

float BaseLine::footFromEnd(const Vector<float>& point) const
{
    return distance(foot(point), to_);
}

BaseLine::Point BaseLine::foot(const Vector<float>& point) const
{
    const float t = ((point[1] - from_.y) * direction_.y + (point[0] - from_.x) * direction_.x) /
                    length_ / length_;
    return {from_.x + t * direction_.x, from_.y + t * direction_.y};
}

float BaseLine::distance(Point a, Point b)
{
    const float dx = a.x - b.x;
    const float dy = a.y - b.y;
    return std::sqrt(dx * dx + dy * dy);
}

Vector<float> midpoint(const Vector<float>& a, const Vector<float>& b)
{
    Vector<float> middle(2);
    for (int c = 0; c < 2; ++c) {
        middle[c] = (a[c] - b[c]) * 0.5f + b[c];
    }
    return middle;
}
