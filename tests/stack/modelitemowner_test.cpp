// Items are owned jointly by models and slices. Random scripts of operations are held against a
// plain model: lists of numbers.

#include "stack/modelitemowner.h"
#include "support/stacks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <set>

namespace {

/// Models and slices without a stack, beside the list of items that each must hold.
class Script
{
public:
    using List = std::vector<ModelItem*>;

    explicit Script(unsigned seed)
        : dice_(seed)
    {
        for (int i = 0; i < 3; ++i) {
            lists_[models_.emplace_back(new Model)];
            lists_[slices_.emplace_back(new StackSlice)];
        }
    }

    ~Script()
    {
        for (int i = 0; i < 3; ++i) {
            destroy(models_[std::size_t(i)]);
            destroy(slices_[std::size_t(i)]);
        }
        for (ModelItem* item : items_) {
            delete item;
        }
    }

    void step()
    {
        const int operation = dice_.below(16);
        if (operation <= 1 && dice_.below(3) == 0) {
            renew(any(models_));
        } else if (operation <= 3 && dice_.below(3) == 0) {
            renew(any(slices_));
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
                std::set<ModelItem*, std::less<>> common;
                for (ModelItem* item : lists_.at(model)) {
                    if (holds(lists_.at(slice), item)) {
                        common.insert(item);
                    }
                }
                ASSERT_EQ(model->intersection(*slice), List(common.begin(), common.end()));
            }
        }
    }

private:
    template <class Pointer>
    Pointer& any(std::vector<Pointer>& from)
    {
        return from[static_cast<std::size_t>(dice_.below(static_cast<int>(from.size())))];
    }

    static bool holds(const List& list, const ModelItem* item)
    {
        return std::find(list.begin(), list.end(), item) != list.end();
    }

    static void drop(List& list, const ModelItem* item)
    {
        list.erase(std::remove(list.begin(), list.end(), item), list.end());
    }

    /// Sets whether the owner holds the item. One that an item names may have died.
    void note(const ModelItemOwner* owner, ModelItem& item, bool held)
    {
        const auto entry = lists_.find(owner);
        if (entry != lists_.end() && holds(entry->second, &item) != held) {
            held ? entry->second.push_back(&item) : drop(entry->second, &item);
        }
    }

    void forget(const ModelItem* item)
    {
        for (auto& entry : lists_) {
            drop(entry.second, item);
        }
        drop(items_, item);
    }

    template <class Owner>
    void destroy(Owner* owner)
    {
        const List doomed = lists_[owner];
        lists_.erase(owner);
        delete owner;
        for (const ModelItem* item : doomed) {
            forget(item);
        }
    }

    template <class Owner>
    void renew(Owner*& owner)
    {
        destroy(owner);
        owner = new Owner;
        lists_[owner];
    }

    void change(ModelItem& item, int operation)
    {
        Model* model = item.getModel();
        StackSlice* slice = item.getSlice();
        if (operation == 6) {
            note(model, item, false);
            item.setModel(*any(models_));
        } else if (operation == 7) {
            note(slice, item, false);
            item.setSlice(*any(slices_));
        } else if (operation == 8) {
            forget(&item);
            delete &item;
        } else if (operation == 9) {
            slice = any(slices_);
            slice->addItem(item);
            note(slice, item, true);
        } else if (operation == 10) {
            model = any(models_);
            model->removeItem(item);
            note(model, item, false);
        } else if (operation == 11 && dice_.below(4) == 0) {
            slice = any(slices_);
            slice->removeAllItems();
            lists_[slice].clear();
        } else if (operation == 12) {
            items_.push_back(new ModelItem(item));
        } else if (operation == 13) {
            item.detach();
            note(model, item, false);
            note(slice, item, false);
        } else if ((model == nullptr || lists_.count(model) == 1) &&
                   (slice == nullptr || lists_.count(slice) == 1)) {
            item.attach();
            note(model, item, true);
            note(slice, item, true);
        }
    }

    stacks::Dice dice_;
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
