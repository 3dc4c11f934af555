#include "host/sliceview.h"

#include "host/contourtool.h"
#include "host/junctiontool.h"
#include "host/landmarkpicker.h"
#include "host/landmarktool.h"
#include "host/scaletool.h"
#include "host/selecttool.h"
#include "host/sliceeditor.h"
#include "host/slicepicture.h"
#include "interface/itempainter.h"
#include "interface/lmxslicepixmapcache.h"
#include "interface/lmxstack.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"
#include "system/exception.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPixmap>

#include <algorithm>
#include <cmath>

namespace {

constexpr double zoomStep = 1.25;

// The same under light and dark palettes: a photograph is judged by its surroundings.
const QColor ground(48, 48, 48);
const QColor textColour(235, 235, 235);

std::size_t indexOf(SliceView::Tool tool)
{
    return static_cast<std::size_t>(tool);
}

QPoint arrowStep(int key)
{
    switch (key) {
    case Qt::Key_Left:
        return {-1, 0};
    case Qt::Key_Right:
        return {1, 0};
    case Qt::Key_Up:
        return {0, -1};
    case Qt::Key_Down:
        return {0, 1};
    default:
        return {};
    }
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
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    connect(&loader_, &PictureLoader::loaded, this, QOverload<>::of(&QWidget::update));
}

SliceView::~SliceView() = default;

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

void SliceView::askForPairs(bool ask)
{
    setTool(ask ? Tool::DrawJunctions : Tool::Select);
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

// Painting.

void SliceView::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    painter.fillRect(event->rect(), ground);
    if (!slice()) {
        return;
    }
    paintPicture(painter, event->rect());
    paintItems(painter);
    paintSelection(painter);
    paintProposal(painter);
    currentTool().paint(painter);
}

void SliceView::paintPicture(QPainter& painter, const QRectF& exposed)
{
    if (!fault_.isEmpty()) {
        paintText(painter, fault_);
        return;
    }
    const StackSlice& shown = *slice();
    if (const std::shared_ptr<const SlicePicture> picture = loader_.request(shown)) {
        picture->paint(painter, imageToWidget(), exposed);
        paintText(painter, picture->fault());
        return;
    }
    const QRectF target = imageToWidget().mapRect(QRectF(QPointF(), QSizeF(imageSize())));
    if (const QPixmap* small = stack_->getSlicePixmapCache().find(shown)) {
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawPixmap(target, *small, QRectF(small->rect()));
    } else {
        painter.fillRect(target, ground.lighter());
        paintText(painter, "Loading the picture");
    }
}

void SliceView::paintText(QPainter& painter, const QString& text) const
{
    if (!text.isEmpty()) {
        painter.setPen(textColour);
        painter.drawText(rect().adjusted(20, 20, -20, -20), Qt::AlignCenter | Qt::TextWordWrap,
                         text);
    }
}

/// Lines first, points above them.
void SliceView::paintItems(QPainter& painter) const
{
    const ItemPainter items(imageToWidget());
    for (const bool points : {false, true}) {
        for (int i = 0; i < slice()->getNumItems(); ++i) {
            const ModelItem& item = slice()->getItem(i);
            if (LandmarkPicker::isPoints(item) == points && LandmarkPicker::isVisible(item)) {
                items.paintItem(painter, item);
            }
        }
    }
}

void SliceView::paintSelection(QPainter& painter) const
{
    constexpr double radius = 11.0;
    const LandmarkPicker known = picker();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    for (const VertexPlace& place : selection_) {
        // Processes may delete items without a word before they tell of new ones.
        if (!known.exists(place)) {
            continue;
        }
        QPolygonF line;
        const ModelItem& item = slice()->getItem(place.item);
        for (int i = 0; place.isWholeItem() && i < item.getSize(); ++i) {
            line.append(known.position({place.item, i}));
        }
        for (const QPen& pen : {QPen(Qt::black, 4.0), QPen(Qt::yellow, 2.0)}) {
            painter.setPen(pen);
            if (place.isWholeItem()) {
                painter.drawPolyline(line);
            } else {
                painter.drawEllipse(known.position(place), radius, radius);
            }
        }
    }
}

void SliceView::paintProposal(QPainter& painter) const
{
    if (!proposal_) {
        return;
    }
    constexpr double radius = 9.0;
    QPointF points[2];
    for (int i = 0; i < 2; ++i) {
        points[i] = imageToWidget().map(QPointF(proposal_->x[i] + 0.5, proposal_->y[i] + 0.5));
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(QColor(255, 255, 255, 70));
    for (const QPen& pen : {QPen(Qt::black, 3.0), QPen(Qt::cyan, 2.0, Qt::DashLine)}) {
        painter.setPen(pen);
        painter.drawLine(points[0], points[1]);
        for (const QPointF& point : points) {
            painter.drawEllipse(point, radius, radius);
        }
    }
}

void SliceView::resizeEvent(QResizeEvent*)
{
    viewport_.setViewSize(size());
    zoomed();
}

// Zoom and pan.

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

// Keyboard.

bool SliceView::focusNextPrevChild(bool next)
{
    const VertexPlaces places = landmarks();
    const auto found = selection_.size() == 1
                           ? std::find(places.begin(), places.end(), selection_.front())
                           : places.end();
    auto target = places.end();
    if (found == places.end()) {
        target = places.empty() ? places.end() : next ? places.begin() : places.end() - 1;
    } else if (next) {
        target = found + 1;
    } else if (found != places.begin()) {
        target = found - 1;
    }
    if (tool_ != Tool::Select || target == places.end()) {
        setSelection({}); // behind the last one the keyboard goes on to the next widget
        return QWidget::focusNextPrevChild(next);
    }
    setSelection({*target});
    reveal(vertexAt(*target));
    emit statusText(describe(*target));
    return true;
}

void SliceView::keyPressEvent(QKeyEvent* event)
{
    if (!slice() || (!moveByKey(*event) && !actByKey(*event))) {
        QWidget::keyPressEvent(event);
    }
}

bool SliceView::moveByKey(const QKeyEvent& event)
{
    constexpr Qt::KeyboardModifiers others = Qt::ControlModifier | Qt::AltModifier;
    const QPoint direction = arrowStep(event.key());
    if (direction.isNull() || (event.modifiers() & others)) {
        return false;
    }
    const int pixels = event.modifiers() & Qt::ShiftModifier ? 10 : 1;
    if (!currentTool().arrow(direction * pixels)) {
        constexpr double part = 0.02; // of the view, and five times that with Shift
        viewport_.pan(-QPointF(direction) * std::min(pixels, 5) * part * width());
        update();
    }
    return true;
}

bool SliceView::actByKey(const QKeyEvent& event)
{
    switch (event.key()) {
    case Qt::Key_Escape:
        return escape();
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return enter();
    case Qt::Key_Backspace:
        if (currentTool().takeBack()) {
            return true;
        }
        deleteSelection();
        return true;
    case Qt::Key_Delete:
        deleteSelection();
        return true;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        zoomIn();
        return true;
    case Qt::Key_Minus:
        zoomOut();
        return true;
    case Qt::Key_Space:
        if (!event.isAutoRepeat()) {
            spaceHeld_ = true;
            setCursor(Qt::OpenHandCursor);
        }
        return true;
    default:
        return false;
    }
}

bool SliceView::escape()
{
    if (currentTool().cancel()) {
        emit statusText(currentTool().hint());
    } else if (proposal_) {
        setProposal(std::nullopt);
    } else if (tool_ != Tool::Select) {
        setTool(Tool::Select);
    } else if (!selection_.empty()) {
        setSelection({});
    } else {
        return false;
    }
    return true;
}

bool SliceView::enter()
{
    if (currentTool().accept()) {
        return true;
    }
    if (proposal_) {
        acceptProposal();
        return true;
    }
    return false;
}

void SliceView::keyReleaseEvent(QKeyEvent* event)
{
    if (event->isAutoRepeat()) {
        return;
    }
    if (event->key() == Qt::Key_Space && spaceHeld_) {
        spaceHeld_ = false;
        setCursor(currentTool().cursorShape());
    } else if (!arrowStep(event->key()).isNull() && slice()) {
        currentTool().arrowsDone();
    } else {
        QWidget::keyReleaseEvent(event);
    }
}

void SliceView::focusOutEvent(QFocusEvent* event)
{
    spaceHeld_ = false;
    if (slice()) {
        currentTool().arrowsDone();
    }
    QWidget::focusOutEvent(event);
}
