#pragma once

#include "numerics/matrix.h"

class Image2;

/// A set of offsets around an element, one row of two or three coordinates each: (row, column) or
/// (row, column, plane), in scan order: planes slowest, then rows.
class Neighbourhood : public Matrix<int>
{
public:
    /// No offsets, and a box of size 1 to be built.
    Neighbourhood();
    explicit Neighbourhood(const Matrix<int>& offsets);

    /// The neighbours along the axes, and all that touch.
    static Neighbourhood neighbourhood4();
    static Neighbourhood neighbourhood6();
    static Neighbourhood neighbourhood8();
    static Neighbourhood neighbourhood26();

    /// All offsets of at most `r` in each coordinate; with or without the offset 0. `ValueError`
    /// for a negative `r`, here and below.
    static Neighbourhood squareNeighbourhood(int r, bool centre);
    static Neighbourhood cubicNeighbourhood(int r, bool centre);

    /// All offsets within the distance `r`.
    static Neighbourhood circularNeighbourhood(int r, bool centre);
    static Neighbourhood sphericalNeighbourhood(int r, bool centre);

    /// Record the shape that `configureFor` builds.
    void setBox(int size);
    void setBall(int size);

    bool isBuilt() const { return built_; }

    bool isBox() const { return box_; }

    int getShapeSize() const { return size_; }

    /// Builds the offsets of the recorded shape for the dimension of the image, the centre
    /// included; does nothing if they are there.
    void configureFor(const Image2& image);

    /// The offsets before or behind the centre in scan order, with or without the centre.
    Neighbourhood front(bool centre) const;
    Neighbourhood back(bool centre) const;

    /// `front` for -1, `back` for +1; `ValueError` for another side.
    Neighbourhood half(int side, bool centre) const;

    /// The offsets whose absolute coordinates are at most those in `most`, which has one for each.
    Neighbourhood within(const int* most) const;

    /// The largest absolute coordinate; 0 without offsets.
    int maxShift() const;

private:
    template <class Keeps>
    Neighbourhood filtered(Keeps keeps) const;

    bool built_ = false;
    bool box_ = true;
    int size_ = 1;
};
