#pragma once

#include "image/regions/rleitemset0.h"
#include "shape/meshes/curvestacktriangulationcontourtag.h"
#include "shape/vertices/boundingbox.h"
#include "shape/vertices/vertices.h"
#include "stack/modelitemproperties.h"
#include "stack/modelitemselection.h"
#include "stack/modelproperties.h"

#include <vector>

class Model;
class ModelItemOwner;
class StackSlice;

template <class T>
class Shape;

/// The part of one model on one slice, say the contour of one leaf.
///
/// Vertices are pixel coordinates (x, y), x being the column and y the row of the image; the item
/// has coordinates of its own and shares none with what it was set from. A region has no vertices
/// but a run-length set. What the vertices mean is told by the geometry of the model; an item
/// without a model counts as `PRIMITIVE_UNKNOWN`.
///
/// The life of an item: `new ModelItem`, `setModel`, `setSlice`, vertices, `attach()`; from then
/// on its model and its slice own it jointly. To change it, detach, change, attach again. The
/// selection follows each change of the vertices.
class ModelItem
{
public:
    ModelItem();

    /// Copies everything, with vertices and runs of its own. The copy names the same model and
    /// slice, but is not attached to them.
    ModelItem(const ModelItem& other);
    ModelItem& operator=(const ModelItem&) = delete;

    /// Takes the item out of every list that holds it.
    ~ModelItem();

    /// Null until set.
    Model* getModel() const { return model; }

    /// Detaches the item from its old model and doesn't attach it to the new one.
    void setModel(Model& newModel);

    /// Null until set.
    StackSlice* getSlice() const { return slice; }

    /// Detaches the item from its old slice and doesn't attach it to the new one.
    void setSlice(StackSlice& newSlice);

    /// Adds the item to the list of its model; an item without a model stays as it is.
    void attachToModel();
    void attachToSlice();

    /// Adds the item to both lists, where it does not stand already.
    void attach();

    void detachFromModel();
    void detachFromSlice();

    /// Takes the item out of both lists; it belongs to the caller then.
    void detach();

    ModelItemProperties& getProperties() { return properties; }

    /// What the item states for itself; the rest stands in the model's item properties.
    const ModelItemProperties& getProperties() const { return properties; }

    void setProperties(const ModelItemProperties& values) { properties = values; }

    CurveStackTriangulationContourTag getTriangulationTag() const { return triangulationTag; }

    void setTriangulationTag(CurveStackTriangulationContourTag tag) { triangulationTag = tag; }

    ModelItemSelection& getSelection() { return selection; }

    const ModelItemSelection& getSelection() const { return selection; }

    /// A polygon, a polyline or a region.
    bool isConnected() const;

    /// A polygon.
    bool isClosed() const;

    /// A polygon whose signed double area is negative; with y downwards it then turns
    /// counter-clockwise to the eye.
    bool isClockwise() const;

    /// Reverses the vertices of a polygon that turns the other way, with their flags.
    void setClockwise(bool clockwise);

    /// The number of vertices, of a region the number of its pixels.
    int getSize() const;

    const Vertices<int>& getVertices() const { return vertices; }

    /// Copies the vertices, nothing is selected then. Vertices of another dimension than 2:
    /// `SizeError`, here and in the operations below; the item then stays as it was.
    void setVertices(const Vertices<int>& newVertices);

    /// Inserts a vertex in front of vertex `i`, with a clear flag.
    void insertVertex(int i, const Vector<int>& vertex);

    /// Appends; all flags are clear then, here and in `appendVertices`.
    void appendVertex(const Vector<int>& vertex);
    void appendVertices(const Vertices<int>& others);
    void moveVertex(int i, const Vector<int>& vertex);
    void removeVertex(int i);

    /// Drops the vertices `first` to `last`, both included.
    void removeVertices(int first, int last);

    /// Drops each vertex equal to the one before it, and of a polygon the last one if it equals
    /// the first. All flags are clear then.
    void removeDuplicates();

    /// Moves all vertices, or the pixels of a region.
    void translate(int dx, int dy);

    const RLEItemSet0& getRLEItemSet() const { return rleItemSet; }

    /// The selection becomes a single flag, set if anything was selected before.
    void setRLEItemSet(const RLEItemSet0& set);
    void addRLEItemSet(const RLEItemSet0& set);
    void removeRLEItemSet(const RLEItemSet0& set);

    /// Index of the vertex that `p` (x, y) touches, -1 if none. Of points, the first within
    /// `tolerance`; of a connected item, the end of the first segment within it, the closing
    /// segment of a polygon coming first as segment 0.
    int findNearVertex(const Vector<int>& p, int tolerance) const;

    /// Index of the vertex nearest to `p` within `tolerance`, the lowest one of equal distance; -1
    /// if none.
    int findNearestVertex(const Vector<int>& p, int tolerance) const;

    /// Where a new vertex near `p` should be inserted; -1 if `p` is near no segment. Points take it
    /// at the end.
    int findInsertion(const Vector<int>& p, int tolerance) const;

    /// `p` lies within `tolerance` of the segment from `a` to `b`: of its inside, or with
    /// `withEnds` also of its ends.
    static bool pointNearSegment(const Vector<int>& a,
                                 const Vector<int>& b,
                                 const Vector<int>& p,
                                 int tolerance,
                                 bool withEnds);

    /// This item is closed, on the same slice as `other`, and at least one vertex of `other` lies
    /// inside or on its outline.
    bool partiallyContains(const ModelItem& other) const;

    /// The box of the vertices, grown by the extent of the drawing.
    BoundingBox<int> boundingBox() const;

    /// Grows a box by the larger of point size and line width, s: lower corner less s, upper
    /// corner more s + 1.
    void rectifyBox(BoundingBox<int>& box) const;

    /// The pixels that the item marks, as (x, y): its vertices, of a region all pixels of its set.
    /// New vertices, sharing nothing with the item.
    Vertices<int> pixels() const;

    /// New vertices, sharing nothing with the item. A region gives those of its set, as (x, y), if
    /// its flag says so.
    Vertices<int> selectedVertices() const;
    Vertices<int> unselectedVertices() const;

    /// With a selection: keeps the unselected vertices, nothing is selected then. A selected region
    /// becomes empty.
    void removeSelectedVertices();

    /// Keeps the selected vertices, all of them selected; nothing happens if all are selected. An
    /// unselected region becomes empty.
    void removeUnselectedVertices();

    /// The old name of `removeSelectedVertices`; says so on the standard output.
    void removeSelection();

    /// The item as a new shape that the caller owns: a closed or open `Curve<T>` or `Vertices<T>`
    /// of dimension 2. A region or an unknown primitive raises `ProgramError`; a value outside the
    /// list gives null.
    template <class T>
    Shape<T>* toShape() const;

private:
    friend class ModelItemOwner;

    void detachFrom(ModelItemOwner* owner);
    MPrimitive primitive() const;
    static Vector<int> regionPosition(const Vector<int>& p);
    Vertices<int> verticesByFlag(bool selected) const;

    Model* model = nullptr;
    StackSlice* slice = nullptr;
    std::vector<ModelItemOwner*> owners_;
    Vertices<int> vertices;
    RLEItemSet0 rleItemSet;
    ModelItemSelection selection;
    ModelItemProperties properties;
    CurveStackTriangulationContourTag triangulationTag = CurveStackTriangulationContourTag::None;
};

extern template Shape<int>* ModelItem::toShape<int>() const;
extern template Shape<float>* ModelItem::toShape<float>() const;
extern template Shape<double>* ModelItem::toShape<double>() const;
extern template Shape<long double>* ModelItem::toShape<long double>() const;
