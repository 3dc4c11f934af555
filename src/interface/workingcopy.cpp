#include "interface/workingcopy.h"

#include "interface/lmxstack.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"

namespace {

Model& modelFor(const Model& model, Stack& target)
{
    const int found = target.findModel(model.getName());
    if (found >= 0) {
        return target.getModel(found);
    }
    auto* own = new Model;
    own->setName(model.getName());
    own->setProperties(model.getProperties());
    target.addModel(*own);
    return *own;
}

void addCopy(const StackSlice& slice, Stack& target)
{
    auto* copy = new StackSlice(slice);
    copy->setStack(target);
    target.addSlice(*copy);
    for (int i = 0; i < slice.getNumItems(); ++i) {
        const ModelItem& item = slice.getItem(i);
        if (item.getModel()) {
            auto* itemCopy = new ModelItem(item);
            itemCopy->setModel(modelFor(*item.getModel(), target));
            itemCopy->setSlice(*copy);
            itemCopy->attach();
        }
    }
}

} // namespace

std::unique_ptr<LMXStack> WorkingCopy::of(const Stack& stack)
{
    auto copy = std::make_unique<LMXStack>();
    for (int i = 0; i < stack.getNumModels(); ++i) {
        modelFor(stack.getModel(i), *copy);
    }
    for (int i = 0; i < stack.getNumSlices(); ++i) {
        addCopy(stack.getSlice(i), *copy);
    }
    return copy;
}

std::unique_ptr<LMXStack> WorkingCopy::of(const StackSlice& slice)
{
    auto copy = std::make_unique<LMXStack>();
    addCopy(slice, *copy);
    return copy;
}
