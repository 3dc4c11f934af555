#include "blade/landmarks/junctionproposal.h"

#include "blade/landmarks/junctioncandidates.h"
#include "blade/process/landmarks.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"

#include <cmath>

namespace {

/// The vertex nearest along the line to the distance from vertex 0.
int vertexAt(const Curve<float>& outline, double distance)
{
    double walked = 0.0;
    int nearest = 0;
    double least = distance;
    for (int i = 1; i < outline.getSize(); ++i) {
        walked += std::hypot(double(outline[i][0]) - double(outline[i - 1][0]),
                             double(outline[i][1]) - double(outline[i - 1][1]));
        if (std::fabs(walked - distance) < least) {
            least = std::fabs(walked - distance);
            nearest = i;
        }
    }
    return nearest;
}

} // namespace

std::optional<JunctionProposal::Pair> JunctionProposal::propose(const Curve<float>& contour)
{
    const int vertices = contour.getSize();
    if (vertices < 3 || contour.isOpen()) {
        return std::nullopt;
    }
    const double area = double(contour.twiceArea(0, 1)) / 2.0;
    const double perimeter = double(contour.length());
    const double scale = std::sqrt(std::fabs(area));
    if (!std::isfinite(perimeter) || !(scale > 1e-4 * perimeter)) {
        return std::nullopt;
    }
    Curve<float> outline(contour);
    outline.setClockwise(false, 0, 1);
    const bool reversed = area < 0.0;

    const OutlineRing ring(outline, perimeter, scale);
    const std::optional<JunctionCandidates::Choice> choice = JunctionCandidates(ring).best();
    if (!choice) {
        return std::nullopt;
    }
    const auto vertexOf = [&](int point) {
        const int vertex = vertexAt(outline, ring.along(point));
        return reversed ? vertices - 1 - vertex : vertex;
    };
    Pair pair{vertexOf(choice->last), vertexOf(choice->first), choice->confidence};
    if (pair.first == pair.second) { // the outline has few vertices there
        const int step = reversed ? vertices - 1 : 1;
        pair.first = (pair.first + step) % vertices;
        pair.second = (pair.second + vertices - step) % vertices;
    }
    return pair;
}

std::optional<ProposedJunctions> JunctionProposal::propose(const StackSlice& slice)
{
    const ModelItem* item = contourOf(slice);
    if (!item) {
        return std::nullopt;
    }
    const Vertices<int>& stored = item->getVertices();
    Curve<float> contour(2, stored.getSize(), 0, 0, false);
    for (int i = 0; i < stored.getSize(); ++i) {
        for (int c = 0; c < 2; ++c) {
            contour[i][c] = static_cast<float>(stored[i][c]);
        }
    }
    const std::optional<Pair> pair = propose(contour);
    if (!pair) {
        return std::nullopt;
    }
    return ProposedJunctions{{{stored[pair->first][0], stored[pair->second][0]},
                              {stored[pair->first][1], stored[pair->second][1]}},
                             pair->confidence};
}
