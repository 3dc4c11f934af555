#include "blade/landmarks/halfneighbourhood.h"

#include "blade/landmarks/junctionplacing.h"
#include "blade/process/landmarks.h"
#include "stack/modelitem.h"

#include <algorithm>
#include <cmath>

namespace {

/// Of the outline's length. The usual number, 25, is then that of an outline of 2500 pixels.
constexpr double share = 0.01;
/// With fewer vertices the steps of the pixels are notches.
constexpr int least = 5;
constexpr double mostLength = 1e8;

} // namespace

int autoHalfNeighbourhood(double outlineLength)
{
    if (!(outlineLength > 0.0)) {
        return least;
    }
    return std::max(least,
                    static_cast<int>(std::lround(share * std::min(outlineLength, mostLength))));
}

int autoHalfNeighbourhood(const StackSlice& slice)
{
    const ModelItem* contour = contourOf(slice);
    if (!contour) {
        return least;
    }
    const Vertices<int>& outline = contour->getVertices();
    double length = 0.0;
    for (int i = 0, before = outline.getSize() - 1; i < outline.getSize(); before = i++) {
        length +=
            std::hypot(outline[i][0] - outline[before][0], outline[i][1] - outline[before][1]);
    }
    return autoHalfNeighbourhood(length);
}
