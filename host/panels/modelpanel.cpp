#include "host/panels/modelpanel.h"

#include "host/document/lmxrootmediator.h"
#include "interface/itempainter.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"

#include <QHeaderView>
#include <QPainter>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

constexpr int iconSide = 22;

enum Column { NameColumn, SliceColumn, StackColumn, ColumnCount };

bool isShown(const Model& model)
{
    const ModelItemProperties& properties = model.getItemProperties();
    return !properties.definesRenderingVisibility() || properties.getRenderingVisibility();
}

/// A line or a symbol as the items are drawn on the picture. The colours are made for photographs: on
/// a dark ground they get a light one of their own.
QIcon iconOf(Model& model, double pixelRatio, bool darkGround)
{
    QPixmap pixmap(QSize(iconSide, iconSide) * pixelRatio);
    pixmap.fill(Qt::transparent);
    const double side = iconSide * pixelRatio;
    ModelItem sample;
    sample.setModel(model);
    const bool points = model.getProperties().definesGeometry() &&
                        model.getProperties().getGeometry() == PRIMITIVE_POLYPOINT;
    Vertices<int> vertices(2, points ? 1 : 2, 0, 1);
    if (points) {
        vertices[0][0] = 0;
        vertices[0][1] = 0;
    } else {
        vertices[0][0] = -1;
        vertices[0][1] = 1;
        vertices[1][0] = 1;
        vertices[1][1] = -1;
    }
    sample.setVertices(vertices);
    QPainter painter(&pixmap);
    if (darkGround) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(225, 225, 225));
        painter.drawRoundedRect(QRectF(0.0, 0.0, side, side), side / 6.0, side / 6.0);
    }
    const QTransform toIcon(side / 4.0, 0.0, 0.0, side / 4.0, side * 3.0 / 8.0, side * 3.0 / 8.0);
    ItemPainter(toIcon, pixelRatio).paintItem(painter, sample);
    painter.end();
    pixmap.setDevicePixelRatio(pixelRatio);
    return QIcon(pixmap);
}

int verticesOn(const StackSlice& slice, const Model& model)
{
    int count = 0;
    for (int i = 0; i < slice.getNumItems(); ++i) {
        if (slice.getItem(i).getModel() == &model) {
            count += slice.getItem(i).getSize();
        }
    }
    return count;
}

} // namespace

ModelPanel::ModelPanel(LMXRootMediator& mediator, QWidget* parent)
    : QWidget(parent)
    , mediator_(mediator)
    , tree_(new QTreeWidget)
{
    tree_->setColumnCount(ColumnCount);
    tree_->setHeaderLabels({"Model", "Slice", "Stack"});
    tree_->headerItem()->setToolTip(NameColumn, "Tick a model to see it on the picture");
    tree_->headerItem()->setToolTip(SliceColumn, "Points on the chosen slice");
    tree_->headerItem()->setToolTip(StackColumn, "Items in the whole stack");
    for (const Column column : {SliceColumn, StackColumn}) {
        tree_->headerItem()->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
    }
    tree_->setRootIsDecorated(false);
    tree_->setUniformRowHeights(true);
    tree_->setTextElideMode(Qt::ElideMiddle);
    tree_->setIconSize(QSize(iconSide, iconSide));
    tree_->header()->setStretchLastSection(false);
    tree_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    tree_->header()->setSectionResizeMode(NameColumn, QHeaderView::Stretch);
    tree_->setAccessibleName("Models");
    connect(tree_, &QTreeWidget::itemChanged, this, &ModelPanel::toggleVisibility);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(tree_);
    setFocusProxy(tree_);
    refresh_.setSingleShot(true);
    connect(&refresh_, &QTimer::timeout, this, &ModelPanel::refresh);
}

void ModelPanel::setSlice(int index)
{
    slice_ = index;
    refreshLater();
}

void ModelPanel::stackCloseEvent(LMXStackCloseEvent& event)
{
    if (&event.getStack() == mediator_.stack()) {
        slice_ = -1;
        refresh_.stop();
        tree_->clear();
    }
}

void ModelPanel::refreshLater()
{
    // A run sends thousands of events; and an item that goes is told before it goes.
    refresh_.start(0);
}

void ModelPanel::refresh()
{
    const QSignalBlocker blocker(tree_);
    const LMXStack* stack = mediator_.stack();
    const int models = stack ? stack->getNumModels() : 0;
    while (tree_->topLevelItemCount() > models) {
        delete tree_->takeTopLevelItem(models);
    }
    while (tree_->topLevelItemCount() < models) {
        tree_->addTopLevelItem(new QTreeWidgetItem);
    }
    for (int i = 0; i < models; ++i) {
        showModel(*tree_->topLevelItem(i), i);
    }
}

void ModelPanel::showModel(QTreeWidgetItem& row, int index)
{
    LMXStack& stack = *mediator_.stack();
    Model& model = stack.getModel(index);
    const bool known = slice_ >= 0 && slice_ < stack.getNumSlices();
    row.setText(NameColumn, QString::fromStdString(model.getName()));
    row.setIcon(NameColumn,
                iconOf(model, devicePixelRatioF(), palette().base().color().lightness() < 128));
    row.setCheckState(NameColumn, isShown(model) ? Qt::Checked : Qt::Unchecked);
    row.setText(SliceColumn,
                known ? QString::number(verticesOn(stack.getSlice(slice_), model)) : "");
    row.setText(StackColumn, QString::number(model.getNumItems()));
    for (const Column column : {SliceColumn, StackColumn}) {
        row.setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
    }
}

void ModelPanel::toggleVisibility(QTreeWidgetItem* row, int column)
{
    LMXStack* stack = mediator_.stack();
    const int index = tree_->indexOfTopLevelItem(row);
    if (!stack || column != NameColumn || index < 0 || index >= stack->getNumModels()) {
        return;
    }
    Model& model = stack->getModel(index);
    LMXModelPropertiesEvent event(model);
    event.setOldProperties(model.getProperties());
    event.setOldItemProperties(model.getItemProperties());
    model.getItemProperties().setRenderingVisibility(row->checkState(NameColumn) == Qt::Checked);
    notifyEvent(event);
}
