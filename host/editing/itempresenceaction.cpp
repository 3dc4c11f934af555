#include "host/editing/itempresenceaction.h"

#include "interface/lmxevent.h"
#include "interface/lmxeventserver.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"

#include <algorithm>
#include <limits>

namespace {

void insertAt(ModelItemOwner& owner, ModelItem& item, int place)
{
    owner.addItem(item, std::min(place, owner.getNumItems()));
}

} // namespace

ItemPresenceAction::ItemPresenceAction(std::unique_ptr<ModelItem> insertion)
    : LMXItemAction(*insertion)
    , insertion_(true)
    , removed_(std::move(insertion))
    , placeInModel_(std::numeric_limits<int>::max())
    , placeInSlice_(std::numeric_limits<int>::max())
{}

ItemPresenceAction::ItemPresenceAction(ModelItem& deletion)
    : LMXItemAction(deletion)
    , insertion_(false)
    , placeInModel_(0)
    , placeInSlice_(0)
{}

ItemPresenceAction::~ItemPresenceAction() = default;

void ItemPresenceAction::apply()
{
    LMXAction::apply();
    insertion_ ? insert() : remove();
}

void ItemPresenceAction::revert()
{
    LMXAction::revert();
    insertion_ ? remove() : insert();
}

void ItemPresenceAction::insert()
{
    ModelItem& moved = *removed_.release();
    insertAt(*moved.getModel(), moved, placeInModel_);
    insertAt(*moved.getSlice(), moved, placeInSlice_);
    LMXModelItemCreateEvent event(moved);
    LMXEventServer::notifyEvent(event);
}

void ItemPresenceAction::remove()
{
    ModelItem& moved = getModelItem();
    placeInModel_ = moved.getModel()->findItem(moved);
    placeInSlice_ = moved.getSlice()->findItem(moved);
    moved.detach();
    removed_.reset(&moved);
    LMXModelItemDeleteEvent event(moved);
    LMXEventServer::notifyEvent(event);
}
