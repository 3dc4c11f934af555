#pragma once

#include "shape/meshes/curvestacktriangulationcontourtag.h"
#include "stack/modelproperties.h"

class StackSlice;

/// Summary of what is selected on one slice, as it was at the last `update()`.
class StackSliceSelectionInfo
{
public:
    /// Null until set.
    const StackSlice* getSlice() const { return slice; }

    /// Summarises this slice; nothing happens for the slice that is set already.
    void setSlice(const StackSlice& newSlice);

    /// Summarises the slice anew. An item counts when at least one of its flags is set.
    void update();

    bool emptySelection() const { return numSelectedItems == 0; }

    bool multipleSelection() const { return numSelectedItems > 1; }

    /// Items are selected, all of one geometry.
    bool homogeneousSelection() const { return geometry != PRIMITIVE_UNKNOWN; }

    /// All selected items belong to one model.
    bool singleModelSelection() const { return singleModel; }

    /// At least one item is selected in part only.
    bool partialSelection() const { return numPartialItems > 0; }

    /// The common geometry, else `PRIMITIVE_UNKNOWN`.
    MPrimitive selectionGeometry() const { return geometry; }

    /// The tag of the first selected item.
    CurveStackTriangulationContourTag triangulationTag() const { return triangulationTag_; }

private:
    void clear();

    const StackSlice* slice = nullptr;
    int numSelectedItems = 0;
    int numPartialItems = 0;
    bool singleModel = true;
    MPrimitive geometry = PRIMITIVE_UNKNOWN;
    CurveStackTriangulationContourTag triangulationTag_ = CurveStackTriangulationContourTag::None;
};
