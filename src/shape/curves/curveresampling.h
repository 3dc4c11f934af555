#pragma once

#include "shape/curves/curve.h"

/// Resamples curves to vertices at equal spacing along the line.
///
/// A closed curve keeps its first vertex; the spacing is the perimeter over the number of samples,
/// so the last one stops a step short of the start. An open curve keeps both ends. Other vertices
/// are kept only where a sample falls on them. A curve of length 0 gives copies of its first
/// vertex.
///
/// A target of another dimension or size than asked is first replaced by a new closed curve.
/// Source and target may share vertices. An empty source raises `SizeError` unless no sample is
/// asked for. Linear in the sum of both sizes.
template <class T>
class CurveResampling
{
public:
    CurveResampling();

    /// Chooses the method by the source's flag, which the target takes.
    void apply(const Curve<T>& source, Curve<T>& target, int size) const;

    /// Sample `i` lies at arc length `i * (perimeter / size)`. `TypeError` for `int`.
    void resamplePolygon(const Curve<T>& source, Curve<T>& target, int size) const;

    /// Sample `i` lies at the sum of `i` steps of length over `size - 1`. For `int` all of it,
    /// lengths and weights too, is in truncated integers.
    void resamplePolyline(const Curve<T>& source, Curve<T>& target, int size) const;
};

extern template class CurveResampling<int>;
extern template class CurveResampling<float>;
extern template class CurveResampling<double>;
extern template class CurveResampling<long double>;
