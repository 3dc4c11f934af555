#pragma once

#include "host/editing/edithistories.h"
#include "host/editing/vertexplace.h"

#include <QObject>
#include <QPoint>
#include <QPolygon>
#include <QString>

#include <optional>
#include <string>
#include <vector>

class LMXRootMediator;
class LMXStack;
class Model;
class ModelItem;
class StackSlice;

/// The edits of the open document by hand. Each is one step in the history of its slice and can be
/// undone and redone without limit; what is undone is the very same document, to the last byte of
/// its file. All changes are told by the usual events.
///
/// Points are pixels of the slice. Bad input raises `ValueError` with a sentence for the user, and
/// nothing happens then. A document is open, and slice indices are valid, when an edit is called.
class SliceEditor : public QObject
{
    Q_OBJECT

public:
    /// The mediator's document, whichever is open.
    explicit SliceEditor(LMXRootMediator& mediator, QObject* parent = nullptr);

    LMXStack* stack() const;

    /// Puts the two blade-petiole junctions on the slice, in place of those that it has. With a
    /// contour they are moved onto it. Refuses what `junctionFault` does.
    void drawJunctions(int slice, const QPoint& first, const QPoint& second);

    /// Moves vertices by a number of pixels, each as far as the image goes.
    void moveVertices(int slice, const VertexPlaces& places, const QPoint& shift);

    /// Moves one vertex to a point.
    void moveVertex(int slice, const VertexPlace& place, const QPoint& point);

    /// Adds a landmark of the model, on the contour if the slice has one. A leaf has one apex and
    /// two junctions: where they are complete the nearest one moves there. Gives its place.
    VertexPlace addLandmark(int slice, const std::string& model, const QPoint& point);

    /// Deletes vertices and whole items. An item that loses all its vertices goes, too.
    void remove(int slice, const VertexPlaces& places);

    /// Makes landmarks those of another model, and gives their new places.
    VertexPlaces moveToModel(int slice, const VertexPlaces& places, const std::string& destination);

    /// Puts a drawn line in place of that part of the contour which it retraces, between the places
    /// nearest to its ends. A slice without contour gets the line, closed, as its contour.
    void redrawContour(int slice, const QPolygon& line);

    void deleteContour(int slice);

    bool canUndo(int slice) const { return !histories_.undoText(slice).isEmpty(); }

    bool canRedo(int slice) const { return !histories_.redoText(slice).isEmpty(); }

    QString undoText(int slice) const { return histories_.undoText(slice); }

    QString redoText(int slice) const { return histories_.redoText(slice); }

    /// False if there was nothing to take back, also because somebody else changed the slice since.
    bool undo(int slice) { return histories_.undo(slice); }

    bool redo(int slice) { return histories_.redo(slice); }

    /// Forgets all edits; for a caller that changes items without telling.
    void endHistories() { histories_.end(); }

    /// The events of the moment come from an edit, an undo or a redo of this editor.
    bool isApplying() const { return histories_.isApplying(); }

    /// The point of the contour nearest to a point, if it lies within `reach` pixels of it.
    std::optional<QPoint> onContour(int slice, const QPoint& point, double reach) const;

    /// Models that landmarks can belong to: those of the leaf processes, then the stack's own of
    /// points.
    std::vector<std::string> landmarkModels() const;

signals:
    /// What can be undone or redone changed; after each edit, undo and redo at least.
    void changed();

private:
    StackSlice& sliceAt(int slice) const;
    QPoint inImage(const StackSlice& slice, const QPoint& point) const;
    QPoint snapped(StackSlice& slice, const QPoint& point) const;
    void checkPlaces(const StackSlice& slice, const VertexPlaces& places) const;
    void changeVertices(int slice,
                        const QString& name,
                        const VertexPlaces& places,
                        const std::vector<QPoint>& points);

    LMXRootMediator& mediator_;
    EditHistories histories_;
};
