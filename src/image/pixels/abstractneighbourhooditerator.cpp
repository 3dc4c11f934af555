#include "image/pixels/abstractneighbourhooditerator.h"

#include "system/exception.h"

AbstractNeighbourhoodIterator::AbstractNeighbourhoodIterator() = default;

AbstractNeighbourhoodIterator::~AbstractNeighbourhoodIterator() = default;

void AbstractNeighbourhoodIterator::setRadius(int newRadius)
{
    if (newRadius < 0) {
        raise<ValueError>("void AbstractNeighbourhoodIterator::setRadius(const int)",
                          "The radius must not be negative");
    }
    radius = newRadius;
}
