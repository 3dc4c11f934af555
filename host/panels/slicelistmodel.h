#pragma once

#include "host/panels/slicestatus.h"
#include "host/panels/slicethumbnails.h"
#include "interface/lmxeventclient.h"

#include <QAbstractListModel>
#include <QTimer>

#include <vector>

class LMXRootMediator;

/// The slices of the open document as a list: name, small picture, and what each still lacks.
///
/// It follows the document by its events, of which it only takes note: the work is done when the
/// event loop turns again, the leaf checks one by one after a moment of rest.
class SliceListModel : public QAbstractListModel, public LMXEventClient
{
    Q_OBJECT

public:
    /// Beside the roles of name, picture and tooltip.
    enum Role {
        MarkRole = Qt::UserRole, ///< a `Mark`, as int
        RemarkRole,              ///< a few words on what is missing or suspicious
    };

    enum class Mark { Good, Missing, Suspicious };

    explicit SliceListModel(LMXRootMediator& mediator, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;

    /// The longer side of the small pictures, in pixels of the screen.
    void setPictureSide(int pixels) { thumbnails_->setSide(pixels); }

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
        bool isStale = true;   // to be looked at
        bool unchecked = true; // the leaf check is to be made
    };

    void reload();
    void noteChange(const LMXModelItemEvent& event);
    void noteChangeOfAll(const Model& model);
    void lookAtStale();
    void checkNext();
    void tellRow(int row);
    int rowOf(const StackSlice& slice) const;
    Mark markOf(const SliceStatus& status) const;

    LMXRootMediator& mediator_;
    SliceThumbnails* thumbnails_;
    std::vector<Entry> entries_;
    QTimer looks_;
    QTimer checks_;
};
