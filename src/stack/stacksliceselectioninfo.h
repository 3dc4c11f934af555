#pragma once

#include "shape/curvestacktriangulationcontourtag.h"
#include "stack/modelproperties.h"

class StackSlice;

/// Summary of what is selected on one slice, as it was at the last `update()`.
class StackSliceSelectionInfo
{
public:
    /// Null until set.
    const StackSlice* getSlice() const { return slice_; }

    /// Summarises this slice; nothing happens for the slice that is set already.
    void setSlice(const StackSlice& slice);

    /// Summarises the slice anew. An item counts when at least one of its flags is set.
    void update();

    bool emptySelection() const { return numSelectedItems_ == 0; }

    bool multipleSelection() const { return numSelectedItems_ > 1; }

    /// Items are selected, all of one geometry.
    bool homogeneousSelection() const { return geometry_ != PRIMITIVE_UNKNOWN; }

    /// All selected items belong to one model.
    bool singleModelSelection() const { return singleModel_; }

    /// At least one item is selected in part only.
    bool partialSelection() const { return numPartialItems_ > 0; }

    /// The common geometry, else `PRIMITIVE_UNKNOWN`.
    MPrimitive selectionGeometry() const { return geometry_; }

    /// The tag of the first selected item.
    CurveStackTriangulationContourTag triangulationTag() const { return triangulationTag_; }

private:
    void clear();

    const StackSlice* slice_ = nullptr;
    int numSelectedItems_ = 0;
    int numPartialItems_ = 0;
    bool singleModel_ = true;
    MPrimitive geometry_ = PRIMITIVE_UNKNOWN;
    CurveStackTriangulationContourTag triangulationTag_ = CurveStackTriangulationContourTag::None;
};
