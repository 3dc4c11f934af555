#include "host/view/selecttool.h"

#include "host/editing/sliceeditor.h"
#include "host/view/sliceview.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr double reach = 9.0;      // widget pixels
constexpr double snapReach = 10.0; // widget pixels
constexpr double meant = 3.0;      // a shorter way is a click

double lengthOf(const QPointF& way)
{
    return std::hypot(way.x(), way.y());
}

bool extends(Qt::KeyboardModifiers modifiers)
{
    return modifiers & (Qt::ShiftModifier | Qt::ControlModifier);
}

} // namespace

void SelectTool::press(const QPointF& at, Qt::KeyboardModifiers modifiers)
{
    arrowsDone();
    pressedAt_ = nowAt_ = at;
    moved_ = false;
    if (const std::optional<int> point = proposalPointAt(at)) {
        drag_ = Drag::ProposalPoint;
        proposalPoint_ = *point;
    } else if (const std::optional<VertexPlace> place = view().placeAt(at)) {
        pressOn(*place, modifiers);
    } else {
        drag_ = Drag::Rectangle;
    }
}

void SelectTool::pressOn(const VertexPlace& place, Qt::KeyboardModifiers modifiers)
{
    VertexPlaces places = view().selection();
    const auto found = std::find(places.begin(), places.end(), place);
    if (extends(modifiers)) {
        if (found != places.end()) {
            places.erase(found);
        } else {
            places.push_back(place);
        }
        view().setSelection(places);
    } else if (found == places.end()) {
        view().setSelection({place});
    }
    const bool canMove = !place.isWholeItem() && view().editor() && !extends(modifiers);
    drag_ = canMove ? Drag::Landmarks : Drag::None;
}

std::optional<int> SelectTool::proposalPointAt(const QPointF& at) const
{
    for (int i = 0; view().proposal() && i < 2; ++i) {
        const QPoint pixel(view().proposal()->x[i], view().proposal()->y[i]);
        if (lengthOf(position(pixel) - at) <= reach) {
            return i;
        }
    }
    return std::nullopt;
}

void SelectTool::move(const QPointF& at, Qt::MouseButtons buttons)
{
    if (!(buttons & Qt::LeftButton) || drag_ == Drag::None) {
        hover(at);
        return;
    }
    nowAt_ = at;
    moved_ = moved_ || lengthOf(at - pressedAt_) >= meant;
    if (drag_ == Drag::Landmarks && moved_) {
        shift_ = view().pixelAt(at) - view().pixelAt(pressedAt_);
    } else if (drag_ == Drag::ProposalPoint && moved_) {
        dragProposal(at);
    }
    view().update();
}

void SelectTool::hover(const QPointF& at)
{
    const std::optional<VertexPlace> place = view().placeAt(at);
    const bool onPoint = (place && !place->isWholeItem()) || proposalPointAt(at);
    view().setCursor(onPoint ? Qt::SizeAllCursor
                     : place ? Qt::PointingHandCursor
                             : Qt::ArrowCursor);
    if (place != hovered_) {
        hovered_ = place;
        emit view().statusText(place ? view().describe(*place) : QString());
        view().update();
    }
}

void SelectTool::dragProposal(const QPointF& at)
{
    const QSize& size = view().imageSize();
    const QPoint pixel = view().pixelAt(at);
    JunctionPoints points = *view().proposal();
    points.x[proposalPoint_] = std::clamp(pixel.x(), 0, size.width() - 1);
    points.y[proposalPoint_] = std::clamp(pixel.y(), 0, size.height() - 1);
    view().setProposal(points);
}

void SelectTool::release(const QPointF& at, Qt::KeyboardModifiers modifiers)
{
    const Drag drag = drag_;
    drag_ = Drag::None;
    const QPoint shift = shift_;
    shift_ = QPoint();
    if (drag == Drag::Landmarks && moved_) {
        moveSelection(shift, !(modifiers & Qt::ControlModifier));
    } else if (drag == Drag::Rectangle) {
        selectIn(moved_ ? QRectF(pressedAt_, at).normalized() : QRectF(), modifiers);
    }
    view().update();
}

void SelectTool::selectIn(const QRectF& rectangle, Qt::KeyboardModifiers modifiers)
{
    VertexPlaces places = extends(modifiers) ? view().selection() : VertexPlaces();
    if (!rectangle.isEmpty()) {
        for (const VertexPlace& place : view().placesIn(rectangle)) {
            if (std::find(places.begin(), places.end(), place) == places.end()) {
                places.push_back(place);
            }
        }
    }
    view().setSelection(places);
}

VertexPlaces SelectTool::movable() const
{
    VertexPlaces places = view().selection();
    places.erase(std::remove_if(places.begin(), places.end(),
                                [this](const VertexPlace& place) {
                                    return place.isWholeItem() || !view().exists(place);
                                }),
                 places.end());
    return places;
}

/// The places stay selected.
void SelectTool::moveSelection(const QPoint& shift, bool snap)
{
    const VertexPlaces places = movable();
    SliceEditor* editor = view().editor();
    if (places.empty() || !editor || shift.isNull()) {
        return;
    }
    const int slice = view().sliceIndex();
    if (places.size() == 1) {
        const QPoint target = view().vertexAt(places.front()) + shift;
        const double scale = view().imageToWidget().m11();
        const std::optional<QPoint> onLine =
            snap ? editor->onContour(slice, target, snapReach / scale) : std::nullopt;
        editor->moveVertex(slice, places.front(), onLine.value_or(target));
        view().setSelection(places);
        emit view().statusText(view().describe(places.front()));
    } else {
        editor->moveVertices(slice, places, shift);
        view().setSelection(places);
    }
}

bool SelectTool::arrow(const QPoint& step)
{
    const VertexPlaces places = movable();
    if (places.empty() || !view().editor()) {
        return false;
    }
    shift_ += step;
    view().reveal(view().vertexAt(places.front()) + shift_);
    view().update();
    return true;
}

void SelectTool::arrowsDone()
{
    if (drag_ == Drag::None && !shift_.isNull()) {
        const QPoint shift = shift_;
        shift_ = QPoint();
        moveSelection(shift, false);
        view().update();
    }
}

bool SelectTool::cancel()
{
    const bool begun = drag_ != Drag::None || !shift_.isNull();
    drag_ = Drag::None;
    shift_ = QPoint();
    hovered_.reset();
    view().update();
    return begun;
}

void SelectTool::paint(QPainter& painter) const
{
    if (drag_ == Drag::Rectangle && moved_) {
        const QRectF box = QRectF(pressedAt_, nowAt_).normalized();
        paintLine(painter, QPolygonF(box), true);
    }
    if (!shift_.isNull()) {
        for (const VertexPlace& place : movable()) {
            const QPoint from = view().vertexAt(place);
            paintLine(painter, QPolygonF(QVector<QPointF>{position(from), position(from + shift_)}),
                      true);
            paintCross(painter, position(from + shift_));
        }
    } else if (hovered_ && !hovered_->isWholeItem() && view().exists(*hovered_)) {
        constexpr double radius = 11.0;
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(QColor(255, 255, 255, 200), 2.0));
        painter.drawEllipse(position(view().vertexAt(*hovered_)), radius, radius);
    }
}
