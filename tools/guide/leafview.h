#pragma once

#include <QImage>
#include <QPolygonF>
#include <QRectF>
#include <QStringList>

#include <memory>

class LMXStack;
class StackSlice;

/// One slice of a stack file, from which figures are drawn. Coordinates are those of the photograph.
class LeafView
{
public:
    /// Raises an error if the file can't be read or has no slice of this name; the first slice if
    /// none is named.
    explicit LeafView(const QString& stackFile, const QString& slice = QString());
    ~LeafView();

    const QImage& photograph() const { return photograph_; }

    /// The vertices that the slice has of a model; empty if none.
    QPolygonF points(const QString& model) const;

    /// A part of the photograph, `scale` times its size, with the landmarks of the models named (all
    /// if none is) in the models' own colours and symbols.
    QImage draw(const QRectF& part,
                double scale,
                double symbolScale,
                const QStringList& models = {}) const;

    LMXStack& stack() { return *stack_; }

private:
    std::unique_ptr<LMXStack> stack_;
    const StackSlice* slice_;
    QImage photograph_;
};
