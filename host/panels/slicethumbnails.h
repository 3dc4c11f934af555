#pragma once

#include "interface/lmxeventclient.h"

#include <QObject>
#include <QPixmap>
#include <QString>
#include <QThreadPool>

#include <map>
#include <vector>

class LMXStack;
class StackSlice;

/// Small pictures of slices, made outside the GUI thread when they are asked for, and kept in the
/// stack's cache of pixmaps, which holds the last hundred.
///
/// What was asked for last is made first, and only the latest requests are kept: who scrolls fast
/// through many slices does not wait for those passed by.
class SliceThumbnails : public QObject, public LMXEventClient
{
    Q_OBJECT

public:
    explicit SliceThumbnails(QObject* parent = nullptr);

    /// Waits for the picture that is being made.
    ~SliceThumbnails() override;

    /// The longer side of a picture, in pixels of the screen.
    void setSide(int pixels) { side_ = pixels; }

    /// The picture of a slice of a stack. Without one yet it is null, is made, and `made` tells.
    QPixmap find(LMXStack& stack, const StackSlice& slice);

    /// Why there is no picture of the slice; empty if there is one, or may still come.
    QString fault(const StackSlice& slice) const;

    /// Forgets the faults, so that images which came back are read again.
    void clearFaults() { faults_.clear(); }

    void stackCloseEvent(LMXStackCloseEvent& event) override;
    void processSliceInsertionDeletionAction(LMXSliceInsertionDeletionAction& action) override;

signals:
    /// There is a picture of this slice now, or a fault.
    void made(const StackSlice* slice);

private:
    void request(const StackSlice& slice);
    void startNext();
    void store(int generation, const StackSlice* slice, const QImage& image, const QString& fault);
    void forget();

    QThreadPool pool_;
    LMXStack* stack_ = nullptr;
    int side_ = 96;
    int generation_ = 0; // what a closed stack asked for is stale
    std::vector<const StackSlice*> waiting_;
    const StackSlice* running_ = nullptr;
    std::map<const StackSlice*, QString> faults_;
};
