#pragma once

#include "interface/lmxaction.h"
#include "stack/modelitemproperties.h"

class Model;

/// Moves an item from its model to another one. Without a destination it changes nothing.
class LMXItemConversionAction : public LMXItemAction
{
public:
    /// Keeps the item's present model and properties as what `revert` brings back.
    explicit LMXItemConversionAction(ModelItem& subject);

    void setModel(Model& destination) { destinationModel = &destination; }

    void apply() override;
    void revert() override;

private:
    void move(Model& model);
    void announce();

    Model* sourceModel;
    Model* destinationModel = nullptr;
    ModelItemProperties oldProperties;
};
