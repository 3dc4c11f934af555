#include "host/panels/slicepanel.h"

#include "host/panels/slicedelegate.h"
#include "host/panels/slicelistmodel.h"

#include <QListView>
#include <QVBoxLayout>

#include <algorithm>

SlicePanel::SlicePanel(LMXRootMediator& mediator, QWidget* parent)
    : QWidget(parent)
    , model_(new SliceListModel(mediator, this))
    , list_(new QListView)
{
    model_->setPictureSide(static_cast<int>(SliceDelegate::pictureSide * devicePixelRatioF()));
    list_->setModel(model_);
    list_->setItemDelegate(new SliceDelegate(list_));
    list_->setUniformItemSizes(true);
    list_->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list_->setAccessibleName("Slices");
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(list_);
    setFocusProxy(list_);
    connect(model_, &QAbstractItemModel::modelAboutToBeReset, this,
            [this] { rowBeforeReset_ = currentSlice(); });
    connect(model_, &QAbstractItemModel::modelReset, this, &SlicePanel::followDocument);
    connect(list_->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& current) {
                if (current.isValid()) {
                    emit sliceChosen(current.row());
                }
            });
}

int SlicePanel::currentSlice() const
{
    return list_->currentIndex().row();
}

void SlicePanel::chooseSlice(int index)
{
    if (index >= 0 && index < model_->rowCount()) {
        list_->setCurrentIndex(model_->index(index));
        list_->scrollTo(model_->index(index));
    }
}

void SlicePanel::followDocument()
{
    // A slice that came or went leaves the choice near where it was; another document begins anew.
    const int rows = model_->rowCount();
    if (rows == 0) {
        rowBeforeReset_ = -1;
        emit sliceChosen(-1);
    } else {
        chooseSlice(std::clamp(rowBeforeReset_, 0, rows - 1));
    }
}
