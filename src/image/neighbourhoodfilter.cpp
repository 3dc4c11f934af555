#include "image/neighbourhoodfilter.h"

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

void NeighbourhoodFilter::setRadius(int radius)
{
    radius_ = radius;
}

int NeighbourhoodFilter::getHalfSize() const
{
    OBSOLETE("int NeighbourhoodFilter::getHalfSize() const",
             "int NeighbourhoodFilter::getRadius() const");
    return radius_;
}

void NeighbourhoodFilter::setBallMode(bool on)
{
    if (on && !acceptBallMode_) {
        raise<ProgramError>("void NeighbourhoodFilter::setBallMode(const bool)",
                            "This filter does not accept ball mode");
    }
    ballMode_ = on;
}
