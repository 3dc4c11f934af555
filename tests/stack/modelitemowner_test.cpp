// Items are owned jointly by models and slices. Random scripts of operations are held against a
// plain model: lists of numbers.

#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/modelitemowner.h"
#include "stack/stack.h"
#include "stack/stackslice.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <random>

namespace {

/// Models and slices without a stack, each beside the list of items that it must hold.
class Script
{
public:
    explicit Script(unsigned seed)
        : random_(seed)
    {}

    ~Script()
    {
        while (!models_.empty()) {
            destroyModel(models_.begin()->first);
        }
        while (!slices_.empty()) {
            destroySlice(slices_.begin()->first);
        }
        for (auto& entry : items_) {
            delete entry.second;
        }
    }

    void step()
    {
        const int operation = draw(16);
        if (operation == 0 || models_.empty()) {
            models_[next_].owner = new Model;
            ++next_;
        } else if (operation == 1 || slices_.empty()) {
            slices_[next_].owner = new StackSlice;
            ++next_;
        } else if (operation == 2 && draw(2) == 0) {
            destroyModel(any(models_));
        } else if (operation == 3 && draw(2) == 0) {
            destroySlice(any(slices_));
        } else if (operation <= 5 || items_.empty()) {
            items_[next_++] = new ModelItem;
        } else {
            changeItem(operation, any(items_));
        }
    }

    void check() const
    {
        for (const auto& entry : models_) {
            check(entry.second);
        }
        for (const auto& entry : slices_) {
            check(entry.second);
        }
        for (const auto& model : models_) {
            for (const auto& slice : slices_) {
                checkIntersection(model.second, slice.second);
            }
        }
    }

private:
    template <class Owner>
    struct Listed
    {
        Owner* owner = nullptr;
        std::vector<int> list;
    };

    int draw(int bound) { return static_cast<int>(random_() % static_cast<unsigned>(bound)); }

    template <class Map>
    int any(const Map& map)
    {
        return std::next(map.begin(), draw(static_cast<int>(map.size())))->first;
    }

    template <class Map, class Owner>
    static auto find(Map& owners, const Owner* owner)
    {
        return std::find_if(owners.begin(), owners.end(),
                            [owner](const auto& entry) { return entry.second.owner == owner; });
    }

    static void add(std::vector<int>& list, int id)
    {
        if (std::find(list.begin(), list.end(), id) == list.end()) {
            list.push_back(id);
        }
    }

    static void remove(std::vector<int>& list, int id)
    {
        list.erase(std::remove(list.begin(), list.end(), id), list.end());
    }

    void forget(int id)
    {
        for (auto& entry : models_) {
            remove(entry.second.list, id);
        }
        for (auto& entry : slices_) {
            remove(entry.second.list, id);
        }
        items_.erase(id);
    }

    template <class Map>
    void destroy(Map& owners, int id)
    {
        const std::vector<int> doomed = owners[id].list;
        delete owners[id].owner;
        owners.erase(id);
        for (const int itemId : doomed) {
            forget(itemId);
        }
    }

    void destroyModel(int id) { destroy(models_, id); }

    void destroySlice(int id) { destroy(slices_, id); }

    void changeItem(int operation, int id)
    {
        ModelItem& item = *items_[id];
        // By address: a new owner may stand where the one that the item names has died.
        const auto model = find(models_, item.getModel());
        const auto slice = find(slices_, item.getSlice());
        const bool modelLives = model != models_.end();
        const bool sliceLives = slice != slices_.end();
        switch (operation) {
        case 6:
            if (modelLives) {
                remove(model->second.list, id);
            }
            item.setModel(*models_[any(models_)].owner);
            break;
        case 7:
            if (sliceLives) {
                remove(slice->second.list, id);
            }
            item.setSlice(*slices_[any(slices_)].owner);
            break;
        case 8:
            delete &item;
            forget(id);
            break;
        case 9: {
            const int target = any(slices_);
            slices_[target].owner->addItem(item);
            add(slices_[target].list, id);
            break;
        }
        case 10: {
            const int target = any(models_);
            models_[target].owner->removeItem(item);
            remove(models_[target].list, id);
            break;
        }
        case 11:
            if (draw(4) == 0) {
                const int target = any(slices_);
                slices_[target].owner->removeAllItems();
                slices_[target].list.clear();
            }
            break;
        case 12:
            items_[next_++] = new ModelItem(item);
            break;
        case 13: // also with a model or slice that is gone
            item.detach();
            if (modelLives) {
                remove(model->second.list, id);
            }
            if (sliceLives) {
                remove(slice->second.list, id);
            }
            break;
        default:
            if ((!item.getModel() || modelLives) && (!item.getSlice() || sliceLives)) {
                item.attach();
                if (modelLives) {
                    add(model->second.list, id);
                }
                if (sliceLives) {
                    add(slice->second.list, id);
                }
            }
        }
    }

    template <class Owner>
    void check(const Listed<Owner>& listed) const
    {
        ASSERT_EQ(listed.owner->getNumItems(), static_cast<int>(listed.list.size()));
        for (std::size_t i = 0; i < listed.list.size(); ++i) {
            ASSERT_EQ(&listed.owner->getItem(static_cast<int>(i)), items_.at(listed.list[i]));
        }
    }

    void checkIntersection(const Listed<Model>& model, const Listed<StackSlice>& slice) const
    {
        std::vector<ModelItem*> expected;
        for (const int id : model.list) {
            if (std::find(slice.list.begin(), slice.list.end(), id) != slice.list.end()) {
                expected.push_back(items_.at(id));
            }
        }
        std::sort(expected.begin(), expected.end(), std::less<ModelItem*>());
        ASSERT_EQ(model.owner->intersection(*slice.owner), expected);
    }

    std::mt19937 random_;
    int next_ = 0;
    std::map<int, Listed<Model>> models_;
    std::map<int, Listed<StackSlice>> slices_;
    std::map<int, ModelItem*> items_;
};

ModelItem& newItem(Model& model, StackSlice& slice)
{
    auto* item = new ModelItem;
    item->setModel(model);
    item->setSlice(slice);
    item->attach();
    return *item;
}

} // namespace

TEST(ModelItemOwner, RandomScriptsLeaveEveryListAsAPlainModelSays)
{
    for (unsigned seed = 1; seed <= 20; ++seed) {
        Script script(seed);
        for (int i = 0; i < 500; ++i) {
            script.step();
            ASSERT_NO_FATAL_FAILURE(script.check()) << "seed " << seed << ", step " << i;
        }
    }
}

TEST(ModelItemOwner, SortingFollowsTheSlicesAndKeepsTheOrderOnASlice)
{
    Stack stack;
    std::mt19937 random(5);
    for (int i = 0; i < 12; ++i) {
        auto* slice = new StackSlice;
        slice->setStack(stack);
        slice->setAbsolutePosition(static_cast<float>(random() % 6));
        stack.addSlice(*slice);
    }
    auto& model = *new Model;
    stack.addModel(model);
    std::vector<ModelItem*> expected;
    for (int i = 0; i < 60; ++i) {
        expected.push_back(&newItem(model, stack.getSlice(static_cast<int>(random() % 12))));
    }
    EXPECT_FALSE(model.isSorted());
    // Insertion sort: a naive order that keeps equal ones in place.
    for (std::size_t i = 1; i < expected.size(); ++i) {
        for (std::size_t j = i; j > 0 && expected[j]->getSlice()->getAbsolutePosition() <
                                             expected[j - 1]->getSlice()->getAbsolutePosition();
             --j) {
            std::swap(expected[j], expected[j - 1]);
        }
    }
    model.sort();
    EXPECT_TRUE(model.isSorted());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(&model.getItem(static_cast<int>(i)), expected[i]);
    }
}

TEST(ModelItemOwner, SelectedAndBuddyItemsAreFoundInTheOrderOfTheList)
{
    Model model;
    Model other;
    StackSlice slice;
    ModelItem& plain = newItem(model, slice);
    ModelItem& foreign = newItem(other, slice);
    ModelItem& wide = newItem(model, slice);
    ModelItem& twin = newItem(model, slice);
    EXPECT_EQ(slice.getSelectedItem(), nullptr);
    wide.getProperties().setLineWidth(2.0f);
    EXPECT_EQ(slice.buddyItem(plain), &twin);
    EXPECT_EQ(slice.buddyItem(twin), &plain);
    EXPECT_EQ(slice.buddyItem(wide), nullptr);
    EXPECT_EQ(slice.buddyItem(foreign), nullptr);
    for (ModelItem* item : {&twin, &foreign}) {
        item->getSelection().reset(2);
        item->getSelection().set(true, 1, false);
    }
    EXPECT_EQ(slice.getSelectedItem(), &foreign);
    EXPECT_EQ(slice.getSelectedItems(), (std::vector<ModelItem*>{&foreign, &twin}));
    EXPECT_EQ(model.getSelectedItems(), std::vector<ModelItem*>{&twin});
}
