#include "interface/lmxitemconversionaction.h"

#include "interface/lmxevent.h"
#include "interface/lmxeventserver.h"
#include "stack/modelitem.h"

LMXItemConversionAction::LMXItemConversionAction(ModelItem& subject)
    : LMXItemAction(subject)
    , sourceModel(subject.getModel())
    , oldProperties(subject.getProperties())
{}

void LMXItemConversionAction::apply()
{
    LMXAction::apply();
    if (destinationModel) {
        move(*destinationModel);
        announce();
    }
}

void LMXItemConversionAction::revert()
{
    LMXAction::revert();
    if (destinationModel && sourceModel) {
        move(*sourceModel);
        getModelItem().setProperties(oldProperties);
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
    event.setSourceModel(sourceModel);
    event.setDestinationModel(destinationModel);
    LMXEventServer::notifyEvent(event);
}
