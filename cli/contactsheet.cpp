#include "cli/contactsheet.h"

#include "image/pixels/image0.h"
#include "interface/itempainter.h"
#include "interface/qimageconversion.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

// In pixels of the sheet.
constexpr double largestEntry = 480.0;
constexpr double smallestEntry = 60.0;
constexpr double entriesOfARow = 6000.0;
constexpr double gap = 16.0;
constexpr double lineHeight = 24.0;
constexpr int fontSize = 14;

double orOne(float size)
{
    return std::isfinite(size) && size > 0.0f ? double(size) : 1.0;
}

/// What the items take of the slice, with a margin.
QRectF partWithItems(const StackSlice& slice, const QRectF& whole)
{
    QRectF part;
    for (int i = 0; i < slice.getNumItems(); ++i) {
        if (slice.getItem(i).getSize() > 0) {
            const BoundingBox<int> box = slice.getItem(i).boundingBox();
            part |= QRectF(box.min(0), box.min(1), box.width(0) + 1.0, box.width(1) + 1.0);
        }
    }
    const double margin = 0.03 * std::max(part.width(), part.height());
    part = part.adjusted(-margin, -margin, margin, margin) & whole;
    return part.isEmpty() ? whole : part;
}

/// The greatest of 1, 2 and 5 times a power of ten that is not above `most`.
double roundLength(double most)
{
    const double power = std::pow(10.0, std::floor(std::log10(most)));
    for (const double factor : {5.0, 2.0}) {
        if (factor * power <= most) {
            return factor * power;
        }
    }
    return power;
}

/// The length in the greatest unit of which it has at least one.
QString lengthText(double length, const std::optional<LengthUnit>& unit)
{
    if (!unit) {
        return QString::number(length, 'g', 6);
    }
    const double metres = length * std::pow(10.0, unit->getScale());
    LengthUnit best = *unit;
    for (const int scale : {-9, -6, -3, -2, 0}) {
        if (metres >= std::pow(10.0, scale) * 0.999999) {
            best.setScale(scale);
        }
    }
    return QString::number(metres / std::pow(10.0, best.getScale()), 'g', 6) + " " +
           QString::fromStdString(best.symbol());
}

} // namespace

void ContactSheet::addSlice(const StackSlice& slice)
{
    const PixelCalibration& calibration = slice.getPixelCalibration();
    const QRectF whole(0.0, 0.0, slice.width(), slice.height());
    entries_.push_back({slice.getName(), &slice, QPolygonF(), partWithItems(slice, whole),
                        orOne(calibration.getPixelWidth()), orOne(calibration.getPixelHeight())});
}

void ContactSheet::addCurve(const std::string& name, const Curve<float>& curve)
{
    QPolygonF line;
    for (int i = 0; i < curve.getSize(); ++i) {
        line.append(QPointF(double(curve[i][0]), -double(curve[i][1])));
    }
    if (!curve.isOpen() && !line.isEmpty()) {
        line.append(line.front());
    }
    entries_.push_back({name, nullptr, line, line.boundingRect(), 1.0, 1.0});
}

double ContactSheet::largestExtent() const
{
    double extent = 0.0;
    for (const Entry& entry : entries_) {
        extent = std::max(
            {extent, entry.part.width() * entry.unitWidth, entry.part.height() * entry.unitHeight});
    }
    return extent > 0.0 ? extent : 1.0;
}

void ContactSheet::drawEntry(QPainter& painter,
                             const Entry& entry,
                             const QRectF& cell,
                             double scale) const
{
    QTransform toSheet;
    const QSizeF size(entry.part.width() * entry.unitWidth * scale,
                      entry.part.height() * entry.unitHeight * scale);
    const QPointF corner(cell.center().x() - size.width() / 2.0, cell.bottom() - size.height());
    toSheet.translate(corner.x(), corner.y());
    toSheet.scale(entry.unitWidth * scale, entry.unitHeight * scale);
    toSheet.translate(-entry.part.x(), -entry.part.y());
    if (entry.slice == nullptr) {
        painter.setPen(QPen(Qt::black, 1.5));
        painter.drawPolyline(toSheet.map(entry.curve));
    } else {
        Image0 image;
        entry.slice->load(image);
        painter.setClipRect(QRectF(corner, size));
        painter.setTransform(toSheet);
        painter.drawImage(QPointF(), toQImage(image));
        painter.resetTransform();
        ItemPainter(toSheet).paintItems(painter, *entry.slice);
        painter.setClipping(false);
    }
    const QString name = painter.fontMetrics().elidedText(QString::fromStdString(entry.name),
                                                          Qt::ElideMiddle, int(cell.width()));
    painter.setPen(Qt::black);
    painter.drawText(QRectF(cell.left(), cell.bottom(), cell.width(), lineHeight), Qt::AlignCenter,
                     name);
}

void ContactSheet::drawBar(QPainter& painter, const QRectF& area, double scale) const
{
    const double length = roundLength(largestExtent() / 3.0);
    const double y = area.top() + 4.0;
    painter.setPen(QPen(Qt::black, 3.0));
    painter.drawLine(QPointF(area.left(), y), QPointF(area.left() + length * scale, y));
    painter.drawText(area.adjusted(0.0, 6.0, 0.0, 0.0), Qt::AlignLeft, lengthText(length, unit_));
}

QImage ContactSheet::draw() const
{
    const auto number = static_cast<int>(entries_.size());
    const int columns =
        std::max({1, std::min(number, 4), static_cast<int>(std::ceil(std::sqrt(double(number))))});
    const int rows = (number + columns - 1) / columns;
    const double scale =
        std::clamp(entriesOfARow / columns, smallestEntry, largestEntry) / largestExtent();
    QSizeF largest(0.0, 0.0);
    for (const Entry& entry : entries_) {
        largest = largest.expandedTo(
            QSizeF(entry.part.width() * entry.unitWidth, entry.part.height() * entry.unitHeight) *
            scale);
    }
    const QSizeF step(std::ceil(largest.width()) + gap,
                      std::ceil(largest.height()) + gap + lineHeight);
    const double gridHeight = rows * step.height() + gap;
    QImage sheet(int(columns * step.width() + gap), int(gridHeight + 2.0 * lineHeight),
                 QImage::Format_RGB32);
    sheet.fill(Qt::white);
    QPainter painter(&sheet);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    QFont font;
    font.setPixelSize(fontSize);
    painter.setFont(font);
    for (int i = 0; i < number; ++i) {
        const QRectF cell(gap + (i % columns) * step.width(), gap + (i / columns) * step.height(),
                          step.width() - gap, step.height() - gap - lineHeight);
        drawEntry(painter, entries_[static_cast<std::size_t>(i)], cell, scale);
    }
    drawBar(painter, QRectF(gap, gridHeight, sheet.width() - gap, 2.0 * lineHeight), scale);
    return sheet;
}
