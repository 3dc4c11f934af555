#include "guide/leafview.h"

#include "image/pixels/image0.h"
#include "interface/itempainter.h"
#include "interface/lmxstack.h"
#include "interface/qimageconversion.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stackreader.h"
#include "stack/stackslice.h"
#include "system/exception.h"

#include <QPainter>

namespace {

const char* const where = "LeafView::LeafView(const QString&, const QString&)";

bool isOf(const ModelItem& item, const QString& model)
{
    return item.getModel() && QString::fromStdString(item.getModel()->getName()) == model;
}

} // namespace

LeafView::LeafView(const QString& stackFile, const QString& slice)
    : stack_(new LMXStack)
    , slice_(nullptr)
{
    if (!StackReader().read(*stack_, stackFile.toStdString())) {
        raiseFile<FileReadError>(where, "The stack can't be read", stackFile.toStdString());
    }
    stack_->setFilename(stackFile.toStdString());
    for (int i = 0; !slice_ && i < stack_->getNumSlices(); ++i) {
        const StackSlice& candidate = stack_->getSlice(i);
        if (slice.isEmpty() || candidate.getName() == slice.toStdString()) {
            slice_ = &candidate;
        }
    }
    if (!slice_) {
        raiseFile<FileReadError>(where, "The stack has no slice " + slice.toStdString(),
                                 stackFile.toStdString());
    }
    Image0 image;
    slice_->load(image);
    photograph_ = toQImage(image).convertToFormat(QImage::Format_RGB32);
}

LeafView::~LeafView() = default;

QPolygonF LeafView::points(const QString& model) const
{
    QPolygonF found;
    for (int i = 0; i < slice_->getNumItems(); ++i) {
        const ModelItem& item = slice_->getItem(i);
        for (int k = 0; isOf(item, model) && k < item.getSize(); ++k) {
            found.append(QPointF(item.getVertices()[k][0], item.getVertices()[k][1]));
        }
    }
    return found;
}

QImage LeafView::draw(const QRectF& part,
                      double scale,
                      double symbolScale,
                      const QStringList& models) const
{
    const QSize size = (part.size() * scale).toSize();
    QImage picture = photograph_.copy(part.toRect())
                         .scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                         .convertToFormat(QImage::Format_RGB32);
    QTransform transform;
    transform.scale(scale, scale);
    transform.translate(-part.left(), -part.top());
    const ItemPainter items(transform, symbolScale);
    QPainter painter(&picture);
    if (models.isEmpty()) {
        items.paintItems(painter, *slice_);
    }
    for (const QString& model : models) {
        for (int i = 0; i < slice_->getNumItems(); ++i) {
            if (isOf(slice_->getItem(i), model)) {
                items.paintItem(painter, slice_->getItem(i));
            }
        }
    }
    return picture;
}
