#include "interface/documentsnapshot.h"

#include "interface/lmxstack.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"

#include <unordered_map>
#include <unordered_set>

namespace {

template <class Event, class Subject>
void tell(LMXStack& stack, Subject& subject)
{
    Event event(subject);
    stack.notifyEvent(event);
}

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

bool sameVertices(const Vertices<int>& a, const Vertices<int>& b)
{
    bool same = a.getSize() == b.getSize();
    for (int i = 0; same && i < a.getSize(); ++i) {
        same = a[i] == b[i];
    }
    return same;
}

bool sameFlags(const ModelItemSelection& a, const ModelItemSelection& b)
{
    bool same = a.getLength() == b.getLength();
    for (int i = 0; same && i < a.getLength(); ++i) {
        same = a.isSelected(i) == b.isSelected(i);
    }
    return same;
}

std::vector<ModelItem*> itemsOf(ModelItemOwner& owner)
{
    std::vector<ModelItem*> items;
    for (int i = 0; i < owner.getNumItems(); ++i) {
        items.push_back(&owner.getItem(i));
    }
    return items;
}

/// Gives the list this order, and touches nothing where it has it.
void order(ModelItemOwner& owner, const std::vector<ModelItem*>& items)
{
    if (itemsOf(owner) == items) {
        return;
    }
    owner.removeAllItems();
    for (ModelItem* item : items) {
        owner.addItem(*item);
    }
}

void restoreModel(LMXStack& stack, Model& model, const Model& old)
{
    if (model.getName() == old.getName() && model.getProperties() == old.getProperties() &&
        model.getItemProperties() == old.getItemProperties()) {
        return;
    }
    LMXModelPropertiesEvent event(model);
    event.setOldProperties(model.getProperties());
    event.setOldItemProperties(model.getItemProperties());
    model.setName(old.getName());
    model.setProperties(old.getProperties());
    model.setItemProperties(old.getItemProperties());
    stack.notifyEvent(event);
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
    std::unordered_map<const ModelItem*, std::size_t> places;
    for (int m = 0; m < stack.getNumModels(); ++m) {
        const Model& model = stack.getModel(m);
        for (int i = 0; i < model.getNumItems(); ++i) {
            const ModelItem& item = model.getItem(i);
            places[&item] = items_.size();
            items_.push_back({&item, std::make_unique<ModelItem>(item), models_.size(), nullptr});
        }
        models_.push_back({&model, copyWithoutItems(model), nullptr});
    }
    sliceItems_.resize(static_cast<std::size_t>(stack.getNumSlices()));
    for (int s = 0; s < stack.getNumSlices(); ++s) {
        const StackSlice& slice = stack.getSlice(s);
        for (int i = 0; i < slice.getNumItems(); ++i) {
            const auto found = places.find(&slice.getItem(i));
            if (found != places.end()) {
                sliceItems_[static_cast<std::size_t>(s)].push_back(found->second);
            }
        }
    }
}

DocumentSnapshot::~DocumentSnapshot() = default;

// A thing may have been destroyed and another one made at its address. It is then brought to the
// state of the old one, and whoever holds the address finds what was there.
void DocumentSnapshot::restore(LMXStack& stack)
{
    restoreModels(stack);
    restoreItems(stack);
    removeOthers(stack);
    restoreOrder(stack);
    stack.setLastSegmentedSlice(lastSegmentedSlice_);
    if (stack.isModified() != modified_) {
        stack.setModified(modified_);
    }
}

void DocumentSnapshot::restoreModels(LMXStack& stack)
{
    std::unordered_map<const Model*, Model*> present;
    for (int m = 0; m < stack.getNumModels(); ++m) {
        present[&stack.getModel(m)] = &stack.getModel(m);
    }
    bool lost = false;
    for (ModelState& state : models_) {
        const auto found = present.find(state.original);
        if (found != present.end()) {
            state.restored = found->second;
            restoreModel(stack, *state.restored, *state.copy);
            continue;
        }
        lost = true;
        state.restored = state.copy.release();
        stack.addModel(*state.restored);
        tell<LMXModelCreateEvent>(stack, *state.restored);
    }
    if (lost) {
        forgetSteps(stack);
    }
}

void DocumentSnapshot::restoreItems(LMXStack& stack)
{
    std::unordered_map<const ModelItem*, ModelItem*> present;
    const auto note = [&present](ModelItemOwner& owner) {
        for (ModelItem* item : itemsOf(owner)) {
            present[item] = item;
        }
    };
    for (int m = 0; m < stack.getNumModels(); ++m) {
        note(stack.getModel(m));
    }
    for (int s = 0; s < stack.getNumSlices(); ++s) {
        note(stack.getSlice(s));
    }
    for (ItemState& state : items_) {
        const auto found = present.find(state.original);
        state.restored = found == present.end() ? nullptr : found->second;
        state.restored ? restoreItem(stack, state) : makeAgain(stack, state);
    }
}

void DocumentSnapshot::restoreItem(LMXStack& stack, ItemState& state)
{
    ModelItem& item = *state.restored;
    const ModelItem& old = *state.copy;
    Model& model = *models_[state.model].restored;
    Model* const former = item.getModel();
    if (former != &model) {
        item.setModel(model);
        item.attachToModel();
        LMXModelItemConvertEvent event(item);
        event.setSourceModel(former);
        event.setDestinationModel(&model);
        stack.notifyEvent(event);
    }
    if (item.getSlice() != old.getSlice()) {
        item.setSlice(*old.getSlice());
        item.attachToSlice();
    }
    if (item.getProperties() != old.getProperties() ||
        item.getTriangulationTag() != old.getTriangulationTag()) {
        item.setProperties(old.getProperties());
        item.setTriangulationTag(old.getTriangulationTag());
        tell<LMXModelItemAttributeEvent>(stack, item);
    }
    const bool moved = !sameVertices(item.getVertices(), old.getVertices()) ||
                       !(item.getRLEItemSet() == old.getRLEItemSet());
    if (moved) {
        item.setVertices(old.getVertices());
        item.setRLEItemSet(old.getRLEItemSet());
    }
    const bool reselected = !sameFlags(item.getSelection(), old.getSelection());
    item.getSelection() = old.getSelection();
    if (moved) {
        tell<LMXModelItemVertexEvent>(stack, item);
    } else if (reselected) {
        tell<LMXModelItemSelectEvent>(stack, item);
    }
}

void DocumentSnapshot::makeAgain(LMXStack& stack, ItemState& state)
{
    ModelItem& item = *state.copy.release();
    item.setModel(*models_[state.model].restored);
    item.attach();
    state.restored = &item;
    tell<LMXModelItemCreateEvent>(stack, item);
    stack.history().clear();
    if (item.getSlice()) {
        stack.sliceHistory(*item.getSlice()).clear();
    }
}

void DocumentSnapshot::removeOthers(LMXStack& stack)
{
    std::unordered_set<const void*> restored;
    for (const ModelState& state : models_) {
        restored.insert(state.restored);
    }
    for (const ItemState& state : items_) {
        restored.insert(state.restored);
    }
    for (int m = stack.getNumModels() - 1; m >= 0; --m) {
        Model& model = stack.getModel(m);
        for (ModelItem* item : itemsOf(model)) {
            if (restored.count(item) == 0) {
                tell<LMXModelItemDeleteEvent>(stack, *item);
                delete item;
            }
        }
        if (restored.count(&model) == 0) {
            tell<LMXModelDeleteEvent>(stack, model);
            stack.deleteModel(m);
        }
    }
}

void DocumentSnapshot::restoreOrder(LMXStack& stack)
{
    bool ordered = true;
    for (std::size_t m = 0; m < models_.size(); ++m) {
        ordered = ordered && &stack.getModel(static_cast<int>(m)) == models_[m].restored;
    }
    std::vector<std::vector<ModelItem*>> items(models_.size());
    for (const ItemState& state : items_) {
        items[state.model].push_back(state.restored);
    }
    for (std::size_t m = 0; m < models_.size(); ++m) {
        if (!ordered) {
            stack.removeModel(*models_[m].restored);
            stack.addModel(*models_[m].restored);
        }
        order(*models_[m].restored, items[m]);
    }
    for (int s = 0; s < stack.getNumSlices(); ++s) {
        std::vector<ModelItem*> onSlice;
        for (const std::size_t place : sliceItems_[static_cast<std::size_t>(s)]) {
            onSlice.push_back(items_[place].restored);
        }
        for (ModelItem* item : itemsOf(stack.getSlice(s))) {
            if (!item->getModel() || stack.findModel(*item->getModel()) < 0) {
                onSlice.push_back(item); // of no model of the stack, and none of our business
            }
        }
        order(stack.getSlice(s), onSlice);
    }
}
