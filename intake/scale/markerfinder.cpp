#include "intake/scale/markerfinder.h"

#include "intake/scale/flatshapes.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double mostMisfit = 5.0;
constexpr double leastDisc = 24.0;
constexpr double leastDot = 6.0;
constexpr std::size_t mostDots = 300;

double lightnessOf(const cv::Scalar& colour)
{
    return (colour[0] + colour[1] + colour[2]) / 3.0;
}

/// Of one kind, and of what they are printed on.
bool areAlike(const FlatShape& a, const FlatShape& b)
{
    return std::abs(a.size - b.size) <= 0.15 * a.size &&
           std::abs(lightnessOf(a.colour) - lightnessOf(b.colour)) <= 40.0 &&
           std::abs(lightnessOf(a.around) - lightnessOf(b.around)) <= 60.0;
}

/// The four dots as one shape of their middles, once for each square of dots.
std::vector<FlatShape> squaresOfDots(const std::vector<FlatShape>& dots)
{
    std::vector<FlatShape> squares;
    for (std::size_t i = 0; i < dots.size(); ++i) {
        const auto dotNear = [&](const cv::Point2d& at, double reach) -> const FlatShape* {
            for (std::size_t k = i + 1; k < dots.size(); ++k) {
                if (cv::norm(dots[k].middle - at) <= reach && areAlike(dots[i], dots[k])) {
                    return &dots[k];
                }
            }
            return nullptr;
        };
        for (std::size_t j = i + 1; j < dots.size(); ++j) {
            const cv::Point2d side = dots[j].middle - dots[i].middle;
            const double length = cv::norm(side);
            if (length < 4.0 * dots[i].size || !areAlike(dots[i], dots[j])) {
                continue;
            }
            // The first dot has the lowest number, so that each square is met once from each of
            // its two sides there; one turn of the side finds it once.
            const cv::Point2d across(-side.y, side.x);
            const FlatShape* third = dotNear(dots[j].middle + across, 0.1 * length);
            const FlatShape* fourth = dotNear(dots[i].middle + across, 0.1 * length);
            if (third == nullptr || fourth == nullptr) {
                continue;
            }
            FlatShape square = dots[i];
            square.corners = {dots[i].middle, dots[j].middle, third->middle, fourth->middle};
            square.size = std::sqrt(loopArea(square.corners));
            square.misfit = squareMisfit(square.corners);
            squares.push_back(square);
        }
    }
    return squares;
}

std::string nameOf(ScaleRequest::Kind kind)
{
    return kind == ScaleRequest::Kind::Square ? "square"
           : kind == ScaleRequest::Kind::Disc ? "disc"
                                              : "square of four dots";
}

/// The printed ones if there are any, else all.
std::vector<FlatShape> candidates(std::vector<FlatShape> shapes)
{
    std::vector<FlatShape> printed;
    std::copy_if(shapes.begin(), shapes.end(), std::back_inserter(printed),
                 [](const FlatShape& shape) { return shape.isPrinted(); });
    return printed.empty() ? shapes : printed;
}

} // namespace

FoundScale findMarker(const cv::Mat& photograph, const ScaleRequest& request)
{
    const FlatShapes flat(photograph);
    std::vector<FlatShape> shapes;
    if (request.kind == ScaleRequest::Kind::Square) {
        shapes = candidates(flat.squares());
    } else if (request.kind == ScaleRequest::Kind::Disc) {
        shapes = candidates(flat.discs(leastDisc));
    } else {
        const std::vector<FlatShape> dots = flat.discs(leastDot);
        if (dots.size() > mostDots) {
            return FoundScale::none("too many dots");
        }
        shapes = squaresOfDots(dots);
    }
    if (shapes.empty()) {
        return FoundScale::none("no " + nameOf(request.kind));
    }
    if (shapes.size() > 1) {
        return FoundScale::none("more than one " + nameOf(request.kind));
    }
    const FlatShape& best = shapes.front();
    if (best.misfit > mostMisfit) {
        return FoundScale::none("the " + nameOf(request.kind) + " is seen too much from the side");
    }
    FoundScale result;
    result.found = true;
    result.pixelSize = request.length / best.size;
    result.misfit = best.misfit;
    result.place = best.corners;
    return result;
}
