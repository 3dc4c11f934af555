#include "blade/process/landmarks.h"

#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"

namespace {

template <class Item, class Slice>
Item* lastItem(Slice& slice, const std::string& model)
{
    for (int i = slice.getNumItems() - 1; i >= 0; --i) {
        Item& item = slice.getItem(i);
        if (item.getModel() && item.getModel()->getName() == model) {
            return &item;
        }
    }
    return nullptr;
}

template <class Item>
Item* ifHasVertices(Item* item)
{
    return item && item->getSize() > 0 ? item : nullptr;
}

} // namespace

ModelItem* landmarkOf(StackSlice& slice, const std::string& model)
{
    return lastItem<ModelItem>(slice, model);
}

const ModelItem* landmarkOf(const StackSlice& slice, const std::string& model)
{
    return lastItem<const ModelItem>(slice, model);
}

ModelItem* contourOf(StackSlice& slice)
{
    return ifHasVertices(landmarkOf(slice, Landmarks::contour));
}

const ModelItem* contourOf(const StackSlice& slice)
{
    return ifHasVertices(landmarkOf(slice, Landmarks::contour));
}
