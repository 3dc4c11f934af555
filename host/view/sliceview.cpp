#include "host/view/sliceview.h"

#include "host/editing/sliceeditor.h"
#include "host/view/contourtool.h"
#include "host/view/junctiontool.h"
#include "host/view/landmarkpicker.h"
#include "host/view/landmarktool.h"
#include "host/view/scaletool.h"
#include "host/view/selecttool.h"
#include "host/view/slicepicture.h"
#include "interface/lmxstack.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"
#include "system/exception.h"

#include <QMouseEvent>

#include <algorithm>
#include <cmath>

namespace {

constexpr double zoomStep = 1.25;

std::size_t indexOf(SliceView::Tool tool)
{
    return static_cast<std::size_t>(tool);
}

} // namespace

SliceView::SliceView(QWidget* parent)
    : QWidget(parent)
{
    tools_[indexOf(Tool::Select)] = std::make_unique<SelectTool>(*this);
    tools_[indexOf(Tool::DrawJunctions)] = std::make_unique<JunctionTool>(*this);
    tools_[indexOf(Tool::AddLandmark)] = std::make_unique<LandmarkTool>(*this);
    tools_[indexOf(Tool::RedrawContour)] = std::make_unique<ContourTool>(*this);
    tools_[indexOf(Tool::MeasureScale)] = std::make_unique<ScaleTool>(*this);
    setMinimumSize(200, 200);
    setAccessibleName("Photograph");
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    connect(&loader_, &PictureLoader::loaded, this, QOverload<>::of(&QWidget::update));
}

SliceView::~SliceView() = default;

void SliceView::setEditor(SliceEditor* editor)
{
    editor_ = editor;
}

SliceEditor* SliceView::editor() const
{
    return editor_.data();
}

SliceTool& SliceView::currentTool() const
{
    return *tools_[indexOf(tool_)];
}

StackSlice* SliceView::slice() const
{
    return stack_ && index_ >= 0 && index_ < stack_->getNumSlices() ? &stack_->getSlice(index_)
                                                                    : nullptr;
}

void SliceView::showSlice(LMXStack* stack, int index)
{
    currentTool().cancel();
    setSelection({});
    setProposal(std::nullopt);
    if (stack != stack_) {
        loader_.clear();
    }
    loader_.dropFaults();
    stack_ = stack;
    index_ = index;
    readImageSize();
    zoomed();
    emit sliceShown(index);
}

void SliceView::readImageSize()
{
    fault_.clear();
    QSize size;
    if (const StackSlice* shown = slice()) {
        try {
            size = QSize(shown->width(), shown->height());
        } catch (const Exception& error) {
            fault_ = QString::fromStdString(error.getWhat());
        }
    }
    viewport_.setImageSize(size);
}

void SliceView::reloadPictures()
{
    loader_.clear();
    update();
}

void SliceView::setTool(Tool tool)
{
    if (tool != tool_) {
        currentTool().cancel();
        tool_ = tool;
        emit toolChanged(tool);
    }
    setCursor(currentTool().cursorShape());
    emit statusText(currentTool().hint());
    update();
}

void SliceView::setLandmarkModel(const std::string& name)
{
    landmarkModel_ = name;
}

void SliceView::setProposal(const std::optional<JunctionPoints>& proposal)
{
    if (proposal || proposal_) {
        proposal_ = proposal;
        update();
        emit proposalChanged();
    }
}

void SliceView::acceptProposal()
{
    if (proposal_ && editor_) {
        const JunctionPoints points = *proposal_;
        setProposal(std::nullopt);
        editor_->drawJunctions(index_, {points.x[0], points.y[0]}, {points.x[1], points.y[1]});
        emit statusText("The junctions are drawn");
    }
}

// What can be picked.

LandmarkPicker SliceView::picker() const
{
    return LandmarkPicker(*slice(), imageToWidget());
}

std::optional<VertexPlace> SliceView::placeAt(const QPointF& widgetPoint) const
{
    return slice() ? picker().at(widgetPoint) : std::nullopt;
}

VertexPlaces SliceView::placesIn(const QRectF& widgetRect) const
{
    return slice() ? picker().in(widgetRect) : VertexPlaces();
}

VertexPlaces SliceView::landmarks() const
{
    return slice() ? picker().all() : VertexPlaces();
}

bool SliceView::exists(const VertexPlace& place) const
{
    return slice() && picker().exists(place);
}

QPoint SliceView::vertexAt(const VertexPlace& place) const
{
    return picker().vertex(place);
}

QString SliceView::describe(const VertexPlace& place) const
{
    return picker().describe(place);
}

QPoint SliceView::pixelAt(const QPointF& widgetPoint) const
{
    const QPointF place = viewport_.toImage(widgetPoint);
    return {static_cast<int>(std::floor(place.x())), static_cast<int>(std::floor(place.y()))};
}

void SliceView::setSelection(const VertexPlaces& places)
{
    VertexPlaces existing;
    if (slice()) {
        const LandmarkPicker known = picker();
        std::copy_if(places.begin(), places.end(), std::back_inserter(existing),
                     [&](const VertexPlace& place) { return known.exists(place); });
    }
    if (existing != selection_) {
        selection_ = existing;
        update();
        emit selectionChanged();
    }
}

void SliceView::selectAll()
{
    setSelection(landmarks());
}

void SliceView::deleteSelection()
{
    if (editor_ && !selection_.empty()) {
        const VertexPlaces places = selection_;
        setSelection({});
        editor_->remove(index_, places);
    }
}

void SliceView::noteChange(const LMXModelItemEvent& event)
{
    if (event.getItem().getSlice() == slice() && slice()) {
        // Whoever did it, the places are those of other vertices now. An edit of one's own selects
        // again what it changed.
        currentTool().interrupt();
        setSelection({});
        update();
        emit itemsChanged();
    }
}

void SliceView::sliceImageCalibrationEvent(LMXSliceImageCalibrationEvent& event)
{
    if (&event.getSlice() == slice()) {
        const QSize before = imageSize();
        readImageSize(); // pixels that are not square are made so
        if (imageSize() != before) {
            loader_.clear();
        }
        update();
    }
}

void SliceView::stackCloseEvent(LMXStackCloseEvent& event)
{
    if (&event.getStack() == stack_) {
        showSlice(nullptr, -1);
    }
}

// Zoom and pan.

void SliceView::resizeEvent(QResizeEvent*)
{
    viewport_.setViewSize(size());
    zoomed();
}

void SliceView::zoomed()
{
    update();
    emit zoomChanged(viewport_.scale());
}

void SliceView::zoomAtCentre(double factor)
{
    viewport_.zoomBy(factor, QPointF(width() / 2.0, height() / 2.0));
    zoomed();
}

void SliceView::zoomIn()
{
    zoomAtCentre(zoomStep);
}

void SliceView::zoomOut()
{
    zoomAtCentre(1.0 / zoomStep);
}

void SliceView::zoomToFit()
{
    viewport_.fit();
    zoomed();
}

void SliceView::zoomToPixels()
{
    viewport_.zoomTo(1.0 / devicePixelRatioF(), QPointF(width() / 2.0, height() / 2.0));
    zoomed();
}

void SliceView::reveal(const QPoint& pixel)
{
    viewport_.reveal(QPointF(pixel) + QPointF(0.5, 0.5));
    update();
}

void SliceView::wheelEvent(QWheelEvent* event)
{
    constexpr double notch = 120.0; // eighths of a degree
    viewport_.zoomBy(std::pow(zoomStep, event->angleDelta().y() / notch), event->position());
    zoomed();
    event->accept();
}

// Mouse.

void SliceView::mousePressEvent(QMouseEvent* event)
{
    const bool pans =
        event->button() == Qt::MiddleButton || (event->button() == Qt::LeftButton && spaceHeld_);
    if (pans) {
        panFrom_ = event->localPos();
        setCursor(Qt::ClosedHandCursor);
    } else if (event->button() == Qt::LeftButton && slice()) {
        currentTool().press(event->localPos(), event->modifiers());
    } else {
        QWidget::mousePressEvent(event);
    }
}

void SliceView::mouseMoveEvent(QMouseEvent* event)
{
    if (panFrom_) {
        viewport_.pan(event->localPos() - *panFrom_);
        panFrom_ = event->localPos();
        update();
    } else if (slice()) {
        currentTool().move(event->localPos(), event->buttons());
    }
}

void SliceView::mouseReleaseEvent(QMouseEvent* event)
{
    if (panFrom_) {
        panFrom_.reset();
        setCursor(spaceHeld_ ? Qt::OpenHandCursor : currentTool().cursorShape());
    } else if (event->button() == Qt::LeftButton && slice()) {
        currentTool().release(event->localPos(), event->modifiers());
    }
}

void SliceView::mouseDoubleClickEvent(QMouseEvent* event)
{
    // The second press of a double click is a press to most tools.
    mousePressEvent(event);
    if (event->button() == Qt::LeftButton && slice() && !panFrom_) {
        currentTool().doubleClick(event->localPos());
    }
}

void SliceView::leaveEvent(QEvent*)
{
    emit statusText(currentTool().hint());
}
