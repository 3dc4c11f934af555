// Items are owned jointly by models and slices. Random scripts of operations are held against a
// plain model: lists of numbers.

#include "stack/modelitemowner.h"
#include "support/stacks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>

namespace {

/// Models and slices without a stack, beside the list of items that each must hold.
class Script
{
public:
    using List = std::vector<ModelItem*>;

    explicit Script(unsigned seed)
        : random_(seed)
    {}

    ~Script()
    {
        while (!models_.empty()) {
            destroy(models_, models_.back());
        }
        while (!slices_.empty()) {
            destroy(slices_, slices_.back());
        }
        for (ModelItem* item : items_) {
            delete item;
        }
    }

    void step()
    {
        const int operation = draw(16);
        if (operation == 0 || models_.empty()) {
            lists_[models_.emplace_back(new Model)];
        } else if (operation == 1 || slices_.empty()) {
            lists_[slices_.emplace_back(new StackSlice)];
        } else if (operation == 2 && draw(2) == 0) {
            destroy(models_, any(models_));
        } else if (operation == 3 && draw(2) == 0) {
            destroy(slices_, any(slices_));
        } else if (operation <= 5 || items_.empty()) {
            items_.push_back(new ModelItem);
        } else {
            change(*any(items_), operation);
        }
    }

    void check() const
    {
        for (const auto& [owner, list] : lists_) {
            std::vector<const ModelItem*> held;
            for (int i = 0; i < owner->getNumItems(); ++i) {
                held.push_back(&owner->getItem(i));
            }
            ASSERT_EQ(held, std::vector<const ModelItem*>(list.begin(), list.end()));
        }
        for (const Model* model : models_) {
            for (const StackSlice* slice : slices_) {
                List common = lists_.at(model);
                common.erase(
                    std::remove_if(common.begin(), common.end(),
                                   [&](auto* item) { return !holds(lists_.at(slice), item); }),
                    common.end());
                std::sort(common.begin(), common.end(), std::less<ModelItem*>());
                ASSERT_EQ(model->intersection(*slice), common);
            }
        }
    }

private:
    int draw(int bound) { return static_cast<int>(random_() % static_cast<unsigned>(bound)); }

    template <class Pointer>
    Pointer any(const std::vector<Pointer>& from)
    {
        return from[random_() % from.size()];
    }

    template <class Pointer>
    static bool holds(const std::vector<Pointer>& list, Pointer element)
    {
        return std::find(list.begin(), list.end(), element) != list.end();
    }

    template <class Pointer>
    static void drop(std::vector<Pointer>& list, Pointer element)
    {
        list.erase(std::remove(list.begin(), list.end(), element), list.end());
    }

    // An owner that an item names may have died, or a new one may stand in its place.
    void note(const ModelItemOwner* owner, ModelItem& item)
    {
        const auto entry = lists_.find(owner);
        if (entry != lists_.end() && !holds(entry->second, &item)) {
            entry->second.push_back(&item);
        }
    }

    void forget(const ModelItemOwner* owner, ModelItem& item)
    {
        const auto entry = lists_.find(owner);
        if (entry != lists_.end()) {
            drop(entry->second, &item);
        }
    }

    void forget(ModelItem* item)
    {
        for (auto& entry : lists_) {
            drop(entry.second, item);
        }
        drop(items_, item);
    }

    template <class Owner>
    void destroy(std::vector<Owner*>& owners, Owner* owner)
    {
        const List doomed = lists_[owner];
        lists_.erase(owner);
        drop(owners, owner);
        delete owner;
        for (ModelItem* item : doomed) {
            forget(item);
        }
    }

    void change(ModelItem& item, int operation)
    {
        Model* model = item.getModel();
        StackSlice* slice = item.getSlice();
        if (operation == 6) {
            forget(model, item);
            item.setModel(*any(models_));
        } else if (operation == 7) {
            forget(slice, item);
            item.setSlice(*any(slices_));
        } else if (operation == 8) {
            forget(&item);
            delete &item;
        } else if (operation == 9) {
            slice = any(slices_);
            slice->addItem(item);
            note(slice, item);
        } else if (operation == 10) {
            model = any(models_);
            model->removeItem(item);
            forget(model, item);
        } else if (operation == 11 && draw(4) == 0) {
            slice = any(slices_);
            slice->removeAllItems();
            lists_[slice].clear();
        } else if (operation == 12) {
            items_.push_back(new ModelItem(item));
        } else if (operation == 13) {
            item.detach();
            forget(model, item);
            forget(slice, item);
        } else if ((model == nullptr || lists_.count(model) == 1) &&
                   (slice == nullptr || lists_.count(slice) == 1)) {
            item.attach();
            note(model, item);
            note(slice, item);
        }
    }

    std::mt19937 random_;
    std::vector<Model*> models_;
    std::vector<StackSlice*> slices_;
    List items_;
    std::map<const ModelItemOwner*, List> lists_;
};

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
        stacks::addSlice(stack, "", ImageSourceFile())
            .setAbsolutePosition(static_cast<float>(random() % 6));
    }
    Model& model = stacks::addModel(stack, "");
    std::vector<ModelItem*> expected;
    for (int i = 0; i < 60; ++i) {
        expected.push_back(
            &stacks::addItem(model, stack.getSlice(static_cast<int>(random() % 12)), {}));
    }
    EXPECT_FALSE(model.isSorted());
    std::stable_sort(expected.begin(), expected.end(), [](auto* a, auto* b) {
        return a->getSlice()->getAbsolutePosition() < b->getSlice()->getAbsolutePosition();
    });
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
    ModelItem& plain = stacks::addItem(model, slice, {});
    ModelItem& foreign = stacks::addItem(other, slice, {});
    ModelItem& wide = stacks::addItem(model, slice, {});
    ModelItem& twin = stacks::addItem(model, slice, {});
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
