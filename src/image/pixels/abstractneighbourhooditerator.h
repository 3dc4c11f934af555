#pragma once

class Image2;

/// Walks the elements around an element of an image.
///
///     for (iterator.setCentre(index); !iterator.atEnd(); iterator.next()) {
///         ... iterator.index() ...
///     }
///
/// The image must outlive the iterator and keep its size.
class AbstractNeighbourhoodIterator
{
public:
    virtual ~AbstractNeighbourhoodIterator();

    /// How far the neighbourhood reaches along an axis; 1 at first. Takes effect with the next
    /// `setCentre`. `ValueError` below 0.
    virtual void setRadius(int newRadius);

    /// Goes on to the next element in scan order.
    virtual void next() = 0;

    /// Starts anew at the first element around the one with this linear index, which counts
    /// elements, not samples. `RangeError` for an element that the image does not have.
    virtual void setCentre(int centre) = 0;

    /// Whether the last element was passed; true before the first `setCentre`.
    bool atEnd() const { return atEnd_; }

    /// Linear index of the present element.
    int index() const { return index_; }

    int getRadius() const { return radius; }

protected:
    AbstractNeighbourhoodIterator();

    int radius = 1;
    int index_ = 0;
    bool atEnd_ = true;
};
