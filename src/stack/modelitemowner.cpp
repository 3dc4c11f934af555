#include "stack/modelitemowner.h"

#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"
#include "system/exception.h"

#include <algorithm>
#include <functional>
#include <string>
#include <utility>

namespace {

using PlacedItem = std::pair<float, ModelItem*>;

std::vector<PlacedItem> placed(const std::vector<ModelItem*>& items, const std::string& where)
{
    std::vector<PlacedItem> result;
    result.reserve(items.size());
    for (ModelItem* item : items) {
        if (item->getSlice() == nullptr) {
            raise<ProgramError>(where, "An item has no slice");
        }
        result.emplace_back(item->getSlice()->getAbsolutePosition(), item);
    }
    return result;
}

bool lower(const PlacedItem& a, const PlacedItem& b)
{
    return a.first < b.first;
}

} // namespace

ModelItemOwner::~ModelItemOwner()
{
    while (!items_.empty()) {
        delete items_.back();
    }
}

void ModelItemOwner::addItem(ModelItem& item)
{
    addItem(item, getNumItems());
}

void ModelItemOwner::addItem(ModelItem& item, int place)
{
    const auto& owners = item.owners_;
    if (std::find(owners.begin(), owners.end(), this) != owners.end()) {
        return;
    }
    item.owners_.reserve(owners.size() + 1);
    items_.insert(items_.begin() + place, &item);
    item.owners_.push_back(this);
    ++revision_;
}

int ModelItemOwner::findItem(const ModelItem& item) const
{
    const auto found = std::find(items_.begin(), items_.end(), &item);
    return found == items_.end() ? -1 : static_cast<int>(found - items_.begin());
}

void ModelItemOwner::removeItem(ModelItem& item)
{
    auto& owners = item.owners_;
    const auto link = std::find(owners.begin(), owners.end(), this);
    if (link == owners.end()) {
        return;
    }
    owners.erase(link);
    items_.erase(std::find(items_.begin(), items_.end(), &item));
    ++revision_;
}

void ModelItemOwner::removeAllItems()
{
    for (ModelItem* item : items_) {
        auto& owners = item->owners_;
        owners.erase(std::find(owners.begin(), owners.end(), this));
    }
    items_.clear();
    ++revision_;
}

ModelItem* ModelItemOwner::getSelectedItem() const
{
    for (ModelItem* item : items_) {
        if (!item->getSelection().isEmpty()) {
            return item;
        }
    }
    return nullptr;
}

std::vector<ModelItem*> ModelItemOwner::getSelectedItems() const
{
    std::vector<ModelItem*> selected;
    for (ModelItem* item : items_) {
        if (!item->getSelection().isEmpty()) {
            selected.push_back(item);
        }
    }
    return selected;
}

ModelItem* ModelItemOwner::buddyItem(const ModelItem& item) const
{
    for (ModelItem* other : items_) {
        if (other != &item && other->getModel() == item.getModel() &&
            other->getProperties() == item.getProperties()) {
            return other;
        }
    }
    return nullptr;
}

bool ModelItemOwner::isSorted() const
{
    if (items_.size() < 2) {
        return true;
    }
    const auto items = placed(items_, "bool ModelItemOwner::isSorted() const");
    return std::is_sorted(items.begin(), items.end(), lower);
}

void ModelItemOwner::sort()
{
    if (items_.size() < 2) {
        return;
    }
    auto items = placed(items_, "void ModelItemOwner::sort()");
    std::stable_sort(items.begin(), items.end(), lower);
    for (std::size_t i = 0; i < items.size(); ++i) {
        items_[i] = items[i].second;
    }
    ++revision_;
}

std::vector<ModelItem*> ModelItemOwner::intersection(const ModelItemOwner& other) const
{
    std::vector<ModelItem*> both;
    for (ModelItem* item : items_) {
        const auto& owners = item->owners_;
        if (std::find(owners.begin(), owners.end(), &other) != owners.end()) {
            both.push_back(item);
        }
    }
    std::sort(both.begin(), both.end(), std::less<ModelItem*>());
    return both;
}
