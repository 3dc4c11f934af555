#pragma once

#include "image/values/lengthunit.h"
#include "shape/curves/curve.h"

#include <QImage>
#include <QRectF>

#include <optional>
#include <string>
#include <vector>

class QPainter;
class QTransform;
class StackSlice;

/// Slices, or curves, side by side on one white picture, in rows: all at one scale, each with its
/// name below, and a bar of a round length under them.
///
/// Of a slice the part is shown in which its items lie, with a margin; of one without items the
/// whole photograph. A curve is drawn with its second axis upwards.
class ContactSheet
{
public:
    /// Of lengths in an unknown unit: the bar then has a bare number.
    ContactSheet() = default;

    /// `unit` is that of the pixel sizes and of the curves.
    explicit ContactSheet(const LengthUnit& unit)
        : unit_(unit)
    {}

    /// Reads the photograph's size; the slice has to live as long as the sheet. Errors as
    /// `StackSlice::load`.
    void addSlice(const StackSlice& slice);

    void addCurve(const std::string& name, const Curve<float>& curve);

    bool isEmpty() const { return entries_.empty(); }

    /// The photographs are read one by one; errors as `StackSlice::load`. Needs the fonts of a
    /// `QGuiApplication`.
    QImage draw() const;

private:
    struct Entry
    {
        std::string name;
        const StackSlice* slice;
        QPolygonF curve;
        /// In pixels of the photograph, or in the curve's own unit.
        QRectF part;
        double unitWidth;
        double unitHeight;
    };

    double largestExtent() const;
    void drawEntry(QPainter& painter, const Entry& entry, const QRectF& cell, double scale) const;
    void drawBar(QPainter& painter, const QRectF& area, double scale) const;

    std::optional<LengthUnit> unit_;
    std::vector<Entry> entries_;
};
