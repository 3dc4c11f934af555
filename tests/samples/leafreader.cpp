#include "samples/leafreader.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int reach = 25;

int wrap(int index, int count)
{
    return ((index % count) + count) % count;
}

/// In degrees: 180 where the outline is straight, less in a notch, more on a bulge.
double angleAt(const Polyline& outline, int index)
{
    const int n = static_cast<int>(outline.size());
    const Point here = outline[static_cast<std::size_t>(index)];
    const Point u = outline[static_cast<std::size_t>(wrap(index - reach, n))] - here;
    const Point w = outline[static_cast<std::size_t>(wrap(index + reach, n))] - here;
    const double cosine = (u.x * w.x + u.y * w.y) / (length(u) * length(w));
    const double angle = std::acos(std::clamp(cosine, -1.0, 1.0)) * 57.29577951308232;
    return w.x * u.y - w.y * u.x > 0.0 ? 360.0 - angle : angle;
}

std::vector<int> findNotches(const Polyline& outline, int first, int last)
{
    std::vector<int> notches;
    int low = 0;
    int best = -1;
    double smallest = 360.0;
    for (int i = first; i < last; ++i) {
        const double angle = angleAt(outline, i);
        if (angle < 145.0) {
            ++low;
            if (angle < smallest) {
                smallest = angle;
                best = i;
            }
        }
        if (angle > 180.0 && low > 5) {
            notches.push_back(best);
            low = 0;
            smallest = 360.0;
        }
    }
    return notches;
}

/// The pixels that differ from the corner of the picture by more than half of what the leaf does.
class Silhouette
{
public:
    explicit Silhouette(const Picture& picture)
        : width_(picture.width)
        , height_(picture.height)
    {
        const double paper = brightness(picture, 20, 20);
        double sum = 0.0;
        int count = 0;
        for (int y = 0; y < height_; ++y) {
            for (int x = 0; x < width_; ++x) {
                const double difference = std::abs(brightness(picture, x, y) - paper);
                if (difference > 50.0) {
                    sum += difference;
                    ++count;
                }
            }
        }
        const double threshold = sum / count / 2.0;
        for (int y = 0; y < height_; ++y) {
            for (int x = 0; x < width_; ++x) {
                inside_.push_back(std::abs(brightness(picture, x, y) - paper) > threshold);
            }
        }
    }

    bool inside(int x, int y) const
    {
        return x >= 0 && y >= 0 && x < width_ && y < height_ &&
               inside_[static_cast<std::size_t>(y * width_ + x)];
    }

    /// Pixels around the region of a start pixel that has none to its left, clockwise.
    Polyline around(int x, int y) const
    {
        static const int dx[] = {-1, -1, 0, 1, 1, 1, 0, -1};
        static const int dy[] = {0, -1, -1, -1, 0, 1, 1, 1};
        const int startX = x;
        const int startY = y;
        Polyline line;
        int from = 0; // where the search around the pixel begins: at the last pixel outside
        do {
            line.push_back({x + 0.5, y + 0.5});
            int direction = from;
            for (int k = 1; k <= 8; ++k) {
                direction = (from + k) % 8;
                if (inside(x + dx[direction], y + dy[direction])) {
                    break;
                }
            }
            x += dx[direction];
            y += dy[direction];
            from = (direction + 4 + (direction % 2 == 0 ? 2 : 1)) % 8;
        } while ((x != startX || y != startY) && line.size() < 100000);
        return line;
    }

private:
    static double brightness(const Picture& picture, int x, int y)
    {
        const auto at = static_cast<std::size_t>((y * picture.width + x) * picture.samples);
        double sum = 0.0;
        for (int c = 0; c < picture.samples; ++c) {
            sum += picture.bytes[at + static_cast<std::size_t>(c)];
        }
        return sum / picture.samples;
    }

    int width_;
    int height_;
    std::vector<bool> inside_;
};

} // namespace

NotchCount countNotches(const Polyline& outline, const LeafOutline& leaf)
{
    // From the left junction on: the upper half, the tip, the lower half, the stalk.
    Polyline turned = outline;
    std::rotate(turned.begin(), turned.begin() + nearestPoint(turned, leaf.leftJunction) - 60,
                turned.end());
    const int left = nearestPoint(turned, leaf.leftJunction);
    const int right = nearestPoint(turned, leaf.rightJunction);
    const int apex = nearestPoint(turned, leaf.apex);
    NotchCount count;
    for (const int notch : findNotches(turned, 0, apex)) {
        count.upper += notch > left ? 1 : 0;
    }
    for (const int notch : findNotches(turned, apex, static_cast<int>(turned.size()))) {
        count.lower += notch < right ? 1 : 0;
    }
    return count;
}

Polyline traceOutline(const Picture& picture)
{
    const Silhouette silhouette(picture);
    for (int y = picture.height / 2;; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            if (silhouette.inside(x, y)) {
                const Polyline line = silhouette.around(x, y);
                if (line.size() > 1000) {
                    return line;
                }
                break;
            }
        }
    }
}
