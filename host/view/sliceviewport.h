#pragma once

#include <QPointF>
#include <QSize>
#include <QTransform>

/// Which part of an image a view shows, and how large. Until it is zoomed or moved, the whole image
/// as large as the view allows.
///
/// Image coordinates: pixel (0, 0) reaches from (0, 0) to (1, 1).
class SliceViewport
{
public:
    void setImageSize(const QSize& size);
    void setViewSize(const QSize& size);

    const QSize& imageSize() const { return imageSize_; }

    /// Screen pixels to a pixel of the image.
    double scale() const { return scale_; }

    bool isFitted() const { return fitted_; }

    void fit();

    /// Sets the scale, within limits; the place of the image under `anchor`, in view coordinates,
    /// stays where it is.
    void zoomTo(double scale, const QPointF& anchor);

    void zoomBy(double factor, const QPointF& anchor) { zoomTo(scale_ * factor, anchor); }

    /// Moves the image; some of it always stays in sight.
    void pan(const QPointF& shift);

    /// Moves the image as little as brings a place of it into sight.
    void reveal(const QPointF& imagePoint);

    /// The identity without an image.
    QTransform imageToView() const;

    QPointF toImage(const QPointF& viewPoint) const;

private:
    double fittingScale() const;
    void keepInSight();

    QSize imageSize_;
    QSize viewSize_;
    QPointF centre_; // of the view, in the image
    double scale_ = 1.0;
    bool fitted_ = true;
};
