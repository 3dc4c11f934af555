#include "image/filters/neighbourhoodfilter.h"

#include "system/exception.h"
#include "system/trace.h"

NeighbourhoodFilter::NeighbourhoodFilter() = default;

NeighbourhoodFilter::~NeighbourhoodFilter() = default;

void NeighbourhoodFilter::setHalfSize(int halfSize)
{
    OBSOLETE("void NeighbourhoodFilter::setHalfSize(const int)",
             "void NeighbourhoodFilter::setRadius(const int)");
    setRadius(halfSize);
}

void NeighbourhoodFilter::setRadius(int newRadius)
{
    radius = newRadius;
}

int NeighbourhoodFilter::getHalfSize() const
{
    OBSOLETE("int NeighbourhoodFilter::getHalfSize() const",
             "int NeighbourhoodFilter::getRadius() const");
    return radius;
}

void NeighbourhoodFilter::setBallMode(bool on)
{
    if (on && !acceptBallMode) {
        raise<ProgramError>("void NeighbourhoodFilter::setBallMode(const bool)",
                            "This filter does not accept ball mode");
    }
    ballMode = on;
}

Neighbourhood NeighbourhoodFilter::initCircularNeighborhood(int r, int rows, int columns)
{
    const int most[] = {rows - 1, columns - 1};
    return Neighbourhood::circularNeighbourhood(r, true).within(most);
}

Neighbourhood
NeighbourhoodFilter::initSphericalNeighborhood(int r, int rows, int columns, int planes)
{
    const int most[] = {rows - 1, columns - 1, planes - 1};
    return Neighbourhood::sphericalNeighbourhood(r, true).within(most);
}
