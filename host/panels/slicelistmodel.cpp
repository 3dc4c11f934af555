#include "host/panels/slicelistmodel.h"

#include "host/document/lmxrootmediator.h"
#include "interface/lmxsliceinsertiondeletionaction.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"

#include <algorithm>

namespace {

// The check of a leaf takes some milliseconds: not while a landmark is dragged.
constexpr int restBeforeChecks = 300;

} // namespace

SliceListModel::SliceListModel(LMXRootMediator& mediator, QObject* parent)
    : QAbstractListModel(parent)
    , mediator_(mediator)
    , thumbnails_(new SliceThumbnails(this))
{
    looks_.setSingleShot(true);
    connect(&looks_, &QTimer::timeout, this, &SliceListModel::lookAtStale);
    checks_.setSingleShot(true);
    connect(&checks_, &QTimer::timeout, this, &SliceListModel::checkNext);
    connect(thumbnails_, &SliceThumbnails::made, this, [this](const StackSlice* slice) {
        if (mediator_.stack()) {
            tellRow(rowOf(*slice));
        }
    });
    reload();
}

int SliceListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(entries_.size());
}

QVariant SliceListModel::data(const QModelIndex& index, int role) const
{
    LMXStack* stack = mediator_.stack();
    if (!stack || !index.isValid() || index.row() >= stack->getNumSlices()) {
        return {};
    }
    const StackSlice& slice = stack->getSlice(index.row());
    const SliceStatus& status = entries_[static_cast<std::size_t>(index.row())].status;
    const QString fault = thumbnails_->fault(slice);
    const QString remark = !fault.isEmpty()      ? "No image"
                           : status.isComplete() ? status.suspicion
                                                 : status.missing();
    switch (role) {
    case Qt::DisplayRole:
        return QString::fromStdString(slice.getName());
    case Qt::DecorationRole:
        return thumbnails_->find(*stack, slice);
    case Qt::ToolTipRole:
        return QStringList(
                   {QString::fromStdString(slice.getName()), fault.isEmpty() ? remark : fault})
            .join('\n')
            .trimmed();
    case Qt::AccessibleDescriptionRole:
    case RemarkRole:
        return remark;
    case MarkRole:
        return static_cast<int>(fault.isEmpty() ? markOf(status) : Mark::Suspicious);
    default:
        return {};
    }
}

SliceListModel::Mark SliceListModel::markOf(const SliceStatus& status) const
{
    if (!status.isComplete()) {
        return Mark::Missing;
    }
    return status.suspicion.isEmpty() ? Mark::Good : Mark::Suspicious;
}

int SliceListModel::rowOf(const StackSlice& slice) const
{
    return mediator_.stack() ? mediator_.stack()->findSlice(slice) : -1;
}

void SliceListModel::tellRow(int row)
{
    if (row >= 0 && row < rowCount()) {
        emit dataChanged(index(row), index(row));
    }
}

void SliceListModel::reload()
{
    beginResetModel();
    const LMXStack* stack = mediator_.stack();
    entries_.assign(static_cast<std::size_t>(stack ? stack->getNumSlices() : 0), Entry());
    endResetModel();
    looks_.start(0);
}

void SliceListModel::lookAtStale()
{
    const LMXStack* stack = mediator_.stack();
    int first = -1;
    int last = -1;
    for (int row = 0; stack && row < rowCount(); ++row) {
        Entry& entry = entries_[static_cast<std::size_t>(row)];
        if (entry.isStale) {
            entry.status = SliceStatus::of(stack->getSlice(row));
            entry.isStale = false;
            entry.unchecked = entry.status.isComplete();
            first = first < 0 ? row : first;
            last = row;
        }
    }
    if (first >= 0) {
        emit dataChanged(index(first), index(last));
        checks_.start(restBeforeChecks);
    }
}

void SliceListModel::checkNext()
{
    const auto next = std::find_if(entries_.begin(), entries_.end(), [](const Entry& entry) {
        return entry.unchecked && !entry.isStale;
    });
    const LMXStack* stack = mediator_.stack();
    if (!stack || next == entries_.end()) {
        return;
    }
    const int row = static_cast<int>(next - entries_.begin());
    next->unchecked = false;
    next->status = SliceStatus::checked(stack->getSlice(row));
    tellRow(row);
    checks_.start(0);
}

void SliceListModel::noteChange(const LMXModelItemEvent& event)
{
    const StackSlice* slice = event.getItem().getSlice();
    if (!slice || slice->getStack() != mediator_.stack()) {
        return; // the leaf checks, for one, work on a stack of their own
    }
    const int row = rowOf(*slice);
    if (row >= 0 && row < rowCount()) {
        entries_[static_cast<std::size_t>(row)].isStale = true;
        looks_.start(0);
    }
}

void SliceListModel::noteChangeOfAll(const Model& model)
{
    // A process that makes a model may have deleted one of that name before, without a word.
    if (mediator_.stack() && mediator_.stack()->findModel(model) >= 0) {
        for (Entry& entry : entries_) {
            entry.isStale = true;
        }
        looks_.start(0);
    }
}

void SliceListModel::stackOpenEvent(LMXStackOpenEvent& event)
{
    if (&event.getStack() == mediator_.stack()) {
        reload();
    }
}

void SliceListModel::stackCloseEvent(LMXStackCloseEvent& event)
{
    if (&event.getStack() == mediator_.stack()) {
        beginResetModel();
        entries_.clear();
        endResetModel();
    }
}

void SliceListModel::sliceNameEvent(LMXSliceNameEvent& event)
{
    tellRow(rowOf(event.getSlice()));
}

void SliceListModel::processSliceInsertionDeletionAction(LMXSliceInsertionDeletionAction& action)
{
    if (mediator_.stack() && action.getSlice().getStack() == mediator_.stack()) {
        reload();
    }
}

void SliceListModel::modelCreateEvent(LMXModelCreateEvent& event)
{
    noteChangeOfAll(event.getModel());
}

void SliceListModel::modelDeleteEvent(LMXModelDeleteEvent& event)
{
    noteChangeOfAll(event.getModel());
}

void SliceListModel::modelItemCreateEvent(LMXModelItemCreateEvent& event)
{
    noteChange(event);
}

void SliceListModel::modelItemDeleteEvent(LMXModelItemDeleteEvent& event)
{
    noteChange(event);
}

void SliceListModel::modelItemVertexEvent(LMXModelItemVertexEvent& event)
{
    noteChange(event);
}

void SliceListModel::modelItemConvertEvent(LMXModelItemConvertEvent& event)
{
    noteChange(event);
}
