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

void StackSliceSelectionInfo::setSlice(const StackSlice& newSlice)
{
    if (slice != &newSlice) {
        slice = &newSlice;
        update();
    }
}

void StackSliceSelectionInfo::update()
{
    clear();
    if (slice == nullptr) {
        return;
    }
    const Model* model = nullptr;
    for (int i = 0; i < slice->getNumItems(); ++i) {
        const ModelItem& item = slice->getItem(i);
        if (item.getSelection().isEmpty()) {
            continue;
        }
        const MPrimitive own = geometryOf(item.getModel());
        if (numSelectedItems == 0) {
            model = item.getModel();
            geometry = own;
            triangulationTag_ = item.getTriangulationTag();
        } else {
            singleModel = singleModel && item.getModel() == model;
            geometry = own == geometry ? own : PRIMITIVE_UNKNOWN;
        }
        ++numSelectedItems;
        numPartialItems += item.getSelection().isComplete() ? 0 : 1;
    }
}

void StackSliceSelectionInfo::clear()
{
    numSelectedItems = 0;
    numPartialItems = 0;
    singleModel = true;
    geometry = PRIMITIVE_UNKNOWN;
    triangulationTag_ = CurveStackTriangulationContourTag::None;
}
