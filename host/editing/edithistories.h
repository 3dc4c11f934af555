#pragma once

#include "interface/lmxeventclient.h"

#include <QObject>
#include <QString>

#include <map>
#include <memory>
#include <string>

class LMXActionHistory;
class LMXRootMediator;
class LMXStack;
class ModelPresence;
class SegmentationNotes;
class SliceEdit;
class StackSlice;

/// The edits by hand in the histories of the slices, and who else changed the document meanwhile.
///
/// The actions of a history point to items and models. Whoever else changes these ends the histories
/// concerned: by the event that tells it, and, since some processes delete without a word, by the
/// revisions of the lists before each step back or forth. So no action touches what is gone.
///
/// A stack that undo or redo brings back to the state in which it was saved is unmodified again.
class EditHistories : public QObject, public LMXEventClient
{
    Q_OBJECT

public:
    explicit EditHistories(LMXRootMediator& mediator, QObject* parent = nullptr);
    ~EditHistories() override;

    /// Takes the edit back that was made last on the slice. False if there is none, or if the
    /// slice was changed by somebody else since.
    bool undo(int slice);
    bool redo(int slice);

    /// The name of the edit in turn; empty if there is none.
    QString undoText(int slice) const;
    QString redoText(int slice) const;

    /// Forgets all edits: the document is about to be changed, or was, without events.
    void end();

    /// An edit is on its way: the events of the moment are its own.
    bool isApplying() const { return applying_ > 0; }

    /// The model of this name that edits made, or null. It may be out of the stack.
    std::shared_ptr<ModelPresence> findPresence(const std::string& name) const;
    void notePresence(const std::string& name, const std::shared_ptr<ModelPresence>& presence);

    void stackOpenEvent(LMXStackOpenEvent& event) override;
    void stackCloseEvent(LMXStackCloseEvent& event) override;
    void stackModifyEvent(LMXStackModifyEvent& event) override;
    void processSliceInsertionDeletionAction(LMXSliceInsertionDeletionAction& action) override;
    void modelCreateEvent(LMXModelCreateEvent& event) override;
    void modelDeleteEvent(LMXModelDeleteEvent& event) override;
    void modelItemCreateEvent(LMXModelItemCreateEvent& event) override;
    void modelItemDeleteEvent(LMXModelItemDeleteEvent& event) override;
    void modelItemVertexEvent(LMXModelItemVertexEvent& event) override;
    void modelItemConvertEvent(LMXModelItemConvertEvent& event) override;

signals:
    /// What can be undone or redone changed.
    void changed();

private:
    friend class EditStep;

    /// What is known of a slice that has a history.
    struct Track
    {
        unsigned int revision = 0; // of its items, after the last edit
        int steps = 0;
        int savedSteps = 0;
    };

    LMXActionHistory* history(int slice) const;
    std::unique_ptr<SliceEdit> begin(StackSlice& slice, const QString& name);
    void finish(StackSlice& slice);
    void record(StackSlice& slice, std::unique_ptr<SliceEdit> edit);
    bool step(int slice, bool back);
    void noteRevisions(StackSlice& slice);
    void endIfChanged(StackSlice& slice);
    void endSlice(StackSlice* slice);
    void foreignItemChange(LMXModelItemEvent& event);
    void foreignModelChange(LMXModelEvent& event);
    void noteSaved();
    void restoreSavedFlag();

    LMXRootMediator& mediator_;
    std::map<StackSlice*, Track> tracks_;
    unsigned int revision_ = 0; // of the lists of the stack, after the last edit
    std::map<std::string, std::weak_ptr<ModelPresence>> presences_;
    int applying_ = 0;
    bool savedReachable_ = false;
    std::shared_ptr<SegmentationNotes> notes_; // of the open document
};
