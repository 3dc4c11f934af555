#include "stack/stacksliceselectioninfo.h"

#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"

namespace {

MPrimitive geometryOf(const Model* model)
{
    return model != nullptr && model->getProperties().definesGeometry()
               ? model->getProperties().getGeometry()
               : PRIMITIVE_UNKNOWN;
}

} // namespace

void StackSliceSelectionInfo::setSlice(const StackSlice& slice)
{
    if (slice_ != &slice) {
        slice_ = &slice;
        update();
    }
}

void StackSliceSelectionInfo::update()
{
    clear();
    if (slice_ == nullptr) {
        return;
    }
    const Model* model = nullptr;
    for (int i = 0; i < slice_->getNumItems(); ++i) {
        const ModelItem& item = slice_->getItem(i);
        if (item.getSelection().isEmpty()) {
            continue;
        }
        const MPrimitive geometry = geometryOf(item.getModel());
        if (numSelectedItems_ == 0) {
            model = item.getModel();
            geometry_ = geometry;
            triangulationTag_ = item.getTriangulationTag();
        } else {
            singleModel_ = singleModel_ && item.getModel() == model;
            geometry_ = geometry == geometry_ ? geometry : PRIMITIVE_UNKNOWN;
        }
        ++numSelectedItems_;
        numPartialItems_ += item.getSelection().isComplete() ? 0 : 1;
    }
}

void StackSliceSelectionInfo::clear()
{
    numSelectedItems_ = 0;
    numPartialItems_ = 0;
    singleModel_ = true;
    geometry_ = PRIMITIVE_UNKNOWN;
    triangulationTag_ = CurveStackTriangulationContourTag::None;
}
