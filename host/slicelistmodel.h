#pragma once

#include "host/slicestatus.h"
#include "host/slicethumbnails.h"
#include "interface/lmxeventclient.h"

#include <QAbstractListModel>
#include <QTimer>

#include <vector>

class LMXRootMediator;

/// The slices of the open document as a list: name, small picture, and what each still lacks.
///
/// It follows the document by its events. The leaf checks of changed slices are made one by one
/// while nothing else is to do.
class SliceListModel : public QAbstractListModel, public LMXEventClient
{
    Q_OBJECT

public:
    /// Beside the roles of names, pictures and tooltips.
    enum Role {
        MarkRole = Qt::UserRole, ///< a `Mark`
        FaultRole,               ///< why there is no picture; empty if there is one or may come
    };

    enum class Mark { Good, Missing, Suspicious };

    explicit SliceListModel(LMXRootMediator& mediator, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;

    /// As far as it is known by now.
    const SliceStatus& status(int slice) const
    {
        return statuses_[static_cast<std::size_t>(slice)].status;
    }

    /// The longer side of the small pictures, in pixels of the screen.
    void setPictureSide(int pixels);

    void stackOpenEvent(LMXStackOpenEvent& event) override;
    void stackCloseEvent(LMXStackCloseEvent& event) override;
    void sliceNameEvent(LMXSliceNameEvent& event) override;
    void processSliceInsertionDeletionAction(LMXSliceInsertionDeletionAction& action) override;
    void modelCreateEvent(LMXModelCreateEvent& event) override;
    void modelDeleteEvent(LMXModelDeleteEvent& event) override;
    void modelItemCreateEvent(LMXModelItemCreateEvent& event) override;
    void modelItemDeleteEvent(LMXModelItemDeleteEvent& event) override;
    void modelItemVertexEvent(LMXModelItemVertexEvent& event) override;
    void modelItemConvertEvent(LMXModelItemConvertEvent& event) override;

private:
    struct Entry
    {
        SliceStatus status;
        bool stale = true;
    };

    void reload();
    void invalidate(const StackSlice* slice);
    void invalidateAll(const Model& model);
    void checkNext();
    void tellRow(int row);
    int rowOf(const StackSlice* slice) const;

    LMXRootMediator& mediator_;
    SliceThumbnails* thumbnails_;
    std::vector<Entry> statuses_;
    QTimer checks_;
};
