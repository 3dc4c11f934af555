#pragma once

#include "image/pixels/neighbourhood.h"

/// The size and shape of the window of a neighbourhood filter: a square or cube of `2 * radius + 1`
/// a side or, in ball mode, the elements within `radius`.
class NeighbourhoodFilter
{
public:
    NeighbourhoodFilter();
    virtual ~NeighbourhoodFilter();

    /// The older name of `setRadius`, and of its getter; both warn on the standard output.
    virtual void setHalfSize(int halfSize);
    virtual void setRadius(int newRadius);

    int getHalfSize() const;

    int getRadius() const { return radius; }

    /// `ProgramError` if the filter has no ball mode and `on` is true.
    void setBallMode(bool on);

    bool getBallMode() const { return ballMode; }

    /// The offsets within the distance `r`, the centre included, as far as an image of this size has
    /// elements that lie so far apart.
    static Neighbourhood initCircularNeighborhood(int r, int rows, int columns);
    static Neighbourhood initSphericalNeighborhood(int r, int rows, int columns, int planes);

protected:
    void setAcceptBallMode(bool accept) { acceptBallMode = accept; }

private:
    int radius = 1;
    bool acceptBallMode = false;
    bool ballMode = false;
};
