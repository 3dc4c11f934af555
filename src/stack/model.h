#pragma once

#include "stack/modelitemowner.h"
#include "stack/modelitemproperties.h"
#include "stack/modelproperties.h"
#include "stack/snakeconfig0.h"

#include <memory>
#include <string>

/// A named class of drawn things across the whole stack, say the leaf contour.
///
/// It owns its properties and, jointly with the slices, its items. A new model is a red filled
/// polygon drawn as a surface, with spheres of size 3; every attribute is defined but for the two
/// cap flags.
class Model : public ModelItemOwner
{
public:
    Model();

    const std::string& getName() const { return name; }

    void setName(const std::string& newName) { name = newName; }

    ModelProperties& getProperties() { return properties; }

    const ModelProperties& getProperties() const { return properties; }

    void setProperties(const ModelProperties& values) { properties = values; }

    /// What the items are drawn with where they state nothing themselves.
    ModelItemProperties& getItemProperties() { return itemProperties; }

    const ModelItemProperties& getItemProperties() const { return itemProperties; }

    void setItemProperties(const ModelItemProperties& values) { itemProperties = values; }

    bool hasSnakeConfig() const { return snakeConfig != nullptr; }

    /// Keeps a copy of the settings.
    void setSnakeConfig(const SnakeConfig0& config);

    /// Only for a model that has settings.
    const SnakeConfig0& getSnakeConfig() const { return *snakeConfig; }

    /// At least one item of `other` has a vertex inside or on an item of this model on the same
    /// slice. Always false unless this model is a polygon.
    bool partiallyContains(const Model& other) const;

    /// Writes a summary to the standard output, for debugging.
    void print(const std::string& indent = "") const;

private:
    std::string name = "<model>";
    ModelProperties properties;
    ModelItemProperties itemProperties;
    std::unique_ptr<SnakeConfig0> snakeConfig;
};
