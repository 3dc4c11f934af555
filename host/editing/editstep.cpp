#include "host/editing/editstep.h"

#include "host/editing/edithistories.h"
#include "host/editing/itempresenceaction.h"
#include "host/editing/modelpresence.h"
#include "host/editing/modeluseaction.h"
#include "host/editing/sliceedit.h"
#include "interface/lmxitemverticeschangeaction.h"
#include "interface/lmxstack.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"
#include "system/exception.h"

EditStep::EditStep(EditHistories& histories,
                   LMXStack& stack,
                   StackSlice& slice,
                   const QString& name)
    : histories_(histories)
    , stack_(stack)
    , slice_(slice)
    , edit_(histories.begin(slice, name))
{}

EditStep::~EditStep()
{
    if (edit_) {
        try {
            edit_->revert();
        } catch (...) {
            // A first error is on its way to the user; what is half done can't be undone.
            histories_.end();
        }
    }
    histories_.finish(slice_);
}

Model& EditStep::model(const std::string& name)
{
    std::shared_ptr<ModelPresence> presence = histories_.findPresence(name);
    const int index = stack_.findModel(name);
    if (index >= 0) {
        Model& present = stack_.getModel(index);
        if (presence && presence->model() == &present) {
            apply(std::make_unique<ModelUseAction>(presence));
        }
        return present;
    }
    if (!presence) {
        if (!ModelPresence::isKnown(name)) {
            raise<NameError>("Model& EditStep::model(const string&)",
                             "There is no model \"" + name + "\"");
        }
        presence = std::make_shared<ModelPresence>(stack_, name);
        histories_.notePresence(name, presence);
    }
    apply(std::make_unique<ModelUseAction>(presence));
    return *presence->model();
}

void EditStep::setVertices(ModelItem& item, const Vertices<int>& vertices)
{
    auto action = std::make_unique<LMXItemVerticesChangeAction>(item);
    action->setVertices(vertices);
    apply(std::move(action));
}

ModelItem& EditStep::insertItem(Model& model, const Vertices<int>& vertices)
{
    auto item = std::make_unique<ModelItem>();
    item->setModel(model);
    item->setSlice(slice_);
    item->setVertices(vertices);
    ModelItem& inserted = *item;
    apply(std::make_unique<ItemPresenceAction>(std::move(item)));
    return inserted;
}

void EditStep::removeItem(ModelItem& item)
{
    apply(std::make_unique<ItemPresenceAction>(item));
}

void EditStep::commit()
{
    if (!edit_->isNull()) {
        histories_.record(slice_, std::move(edit_));
    }
    edit_.reset();
}

void EditStep::apply(std::unique_ptr<LMXAction> action)
{
    edit_->applyNext(std::move(action));
}
