#include "interface/documentsnapshot.h"

#include "interface/lmxstack.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"

#include <unordered_map>

namespace {

std::unique_ptr<Model> copyWithoutItems(const Model& model)
{
    auto copy = std::make_unique<Model>();
    copy->setName(model.getName());
    copy->setProperties(model.getProperties());
    copy->setItemProperties(model.getItemProperties());
    if (model.hasSnakeConfig()) {
        copy->setSnakeConfig(model.getSnakeConfig());
    }
    return copy;
}

void forgetSteps(LMXStack& stack)
{
    stack.history().clear();
    for (int i = 0; i < stack.getNumSlices(); ++i) {
        stack.sliceHistory(stack.getSlice(i)).clear();
    }
}

} // namespace

DocumentSnapshot::DocumentSnapshot(const LMXStack& stack)
    : lastSegmentedSlice_(stack.getLastSegmentedSlice())
    , modified_(stack.isModified())
{
    remember(stack);
}

DocumentSnapshot::~DocumentSnapshot() = default;

void DocumentSnapshot::remember(const LMXStack& stack)
{
    std::unordered_map<const ModelItem*, ModelItem*> copies;
    for (int m = 0; m < stack.getNumModels(); ++m) {
        const Model& model = stack.getModel(m);
        models_.push_back(copyWithoutItems(model));
        for (int i = 0; i < model.getNumItems(); ++i) {
            // The copy names its slice and stands in the list of its model alone.
            auto copy = std::make_unique<ModelItem>(model.getItem(i));
            copy->setModel(*models_.back());
            copy->attachToModel();
            copies[&model.getItem(i)] = copy.release();
        }
    }
    sliceItems_.resize(static_cast<std::size_t>(stack.getNumSlices()));
    for (int s = 0; s < stack.getNumSlices(); ++s) {
        const StackSlice& slice = stack.getSlice(s);
        for (int i = 0; i < slice.getNumItems(); ++i) {
            const auto found = copies.find(&slice.getItem(i));
            if (found != copies.end()) {
                sliceItems_[static_cast<std::size_t>(s)].push_back(found->second);
            }
        }
    }
}

void DocumentSnapshot::restore(LMXStack& stack)
{
    forgetSteps(stack);
    removeAll(stack);
    putBack(stack);
    stack.setLastSegmentedSlice(lastSegmentedSlice_);
    stack.setModified(modified_);
}

void DocumentSnapshot::removeAll(LMXStack& stack)
{
    for (int m = stack.getNumModels() - 1; m >= 0; --m) {
        Model& model = stack.getModel(m);
        for (int i = model.getNumItems() - 1; i >= 0; --i) {
            LMXModelItemDeleteEvent event(model.getItem(i));
            stack.notifyEvent(event);
            delete &model.getItem(i);
        }
        LMXModelDeleteEvent event(model);
        stack.notifyEvent(event);
        stack.deleteModel(m);
    }
}

void DocumentSnapshot::putBack(LMXStack& stack)
{
    for (std::unique_ptr<Model>& model : models_) {
        Model& restored = *model.release();
        stack.addModel(restored);
        LMXModelCreateEvent event(restored);
        stack.notifyEvent(event);
    }
    models_.clear();
    for (int s = 0; s < stack.getNumSlices(); ++s) {
        StackSlice& slice = stack.getSlice(s);
        for (ModelItem* item : sliceItems_[static_cast<std::size_t>(s)]) {
            slice.removeItem(*item);
            slice.addItem(*item);
        }
        for (ModelItem* item : sliceItems_[static_cast<std::size_t>(s)]) {
            LMXModelItemCreateEvent event(*item);
            stack.notifyEvent(event);
        }
    }
}
