#include "interface/lmxitemconversionaction.h"

#include "interface/lmxevent.h"
#include "interface/lmxeventserver.h"
#include "stack/modelitem.h"

LMXItemConversionAction::LMXItemConversionAction(ModelItem& item)
    : LMXItemAction(item)
    , sourceModel_(item.getModel())
    , oldProperties_(item.getProperties())
{}

void LMXItemConversionAction::apply()
{
    LMXAction::apply();
    if (destinationModel_) {
        move(*destinationModel_);
        announce();
    }
}

void LMXItemConversionAction::revert()
{
    LMXAction::revert();
    if (destinationModel_ && sourceModel_) {
        move(*sourceModel_);
        getModelItem().setProperties(oldProperties_);
        announce();
    }
}

void LMXItemConversionAction::move(Model& model)
{
    getModelItem().detachFromModel();
    getModelItem().setModel(model);
    getModelItem().attachToModel();
}

void LMXItemConversionAction::announce()
{
    LMXModelItemConvertEvent event(getModelItem());
    event.setSourceModel(sourceModel_);
    event.setDestinationModel(destinationModel_);
    LMXEventServer::notifyEvent(event);
}
