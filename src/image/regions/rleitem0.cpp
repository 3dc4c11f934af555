#include "image/regions/rleitem0.h"

#include "shape/vertices/vertices.h"

#include <algorithm>

RLEItem0::RLEItem0()
    : RLEItem0(0, 0, 1)
{}

RLEItem0::RLEItem0(int row, int column, int pixels)
    : origin(2)
{
    setOrigin(row, column);
    setLength(pixels);
}

void RLEItem0::setOrigin(int row, int column)
{
    origin[0] = row;
    origin[1] = column;
}

void RLEItem0::setOrigin(const Vector<int>& position)
{
    if (position.getSize() != 2) {
        raise<SizeError>("void RLEItem::setOrigin(const Vector<int>&)",
                         "The origin does not have two coordinates");
    }
    origin = position;
}

void RLEItem0::setLength(int pixels)
{
    if (pixels < 1) {
        raise<ProgramError>("void RLEItem::setLength(const int)", "The length falls below 1");
    }
    length = pixels;
}

void RLEItem0::setBegin(int column)
{
    if (column > end()) {
        raise<ProgramError>("void RLEItem::setBegin(const int)", "The length falls below 1");
    }
    length = end() - column + 1;
    origin[1] = column;
}

void RLEItem0::setEnd(int column)
{
    if (column < begin()) {
        raise<ProgramError>("void RLEItem::setEnd(const int)", "The length falls below 1");
    }
    length = column - begin() + 1;
}

void RLEItem0::translate(const Vector<int>& shift)
{
    origin += shift;
}

Vector<int> RLEItem0::vertex(int i) const
{
    Vector<int> position(origin);
    position[1] += i;
    return position;
}

Vertices<int> RLEItem0::vertices() const
{
    Vertices<int> result(2, length, length, 0);
    for (int i = 0; i < length; ++i) {
        result[i] = vertex(i);
    }
    return result;
}

int RLEItem0::findNearestVertex(const Vector<int>& position) const
{
    return std::clamp(position[1], begin(), end()) - begin();
}

int RLEItem0::findNearVertex(const Vector<int>& position, int tolerance) const
{
    const int nearest = findNearestVertex(position);
    const long long rows = position[0] - origin[0];
    const long long columns = position[1] - (begin() + nearest);
    const bool isNear =
        tolerance >= 0 && rows * rows + columns * columns <= 1LL * tolerance * tolerance;
    return isNear ? nearest : -1;
}

bool RLEItem0::operator==(const RLEItem0& other) const
{
    return origin == other.origin && length == other.length;
}
