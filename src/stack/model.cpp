#include "stack/model.h"

#include "stack/modelitem.h"
#include "stack/stackslice.h"

#include <algorithm>
#include <iostream>

Model::Model()
{
    properties.setGeometry(PRIMITIVE_POLYGON);
    properties.setRenderingMode(RenderingMode::Surface);
    properties.setSurfaceOpacity(255.0f);
    properties.setSurfaceShininess(32.0f);
    properties.setQuadMeshWidth(100);
    properties.setQuadMeshHeight(100);
    properties.setVertexSmoothing(0);
    properties.setNormalSmoothing(0);
    properties.setEconomicRendering(false);
    itemProperties.setDefaults();
    itemProperties.setPointSize(3.0f);
}

void Model::setSnakeConfig(const SnakeConfig0& config)
{
    snakeConfig = std::make_unique<SnakeConfig0>(config);
}

bool Model::partiallyContains(const Model& other) const
{
    if (!properties.definesGeometry() || properties.getGeometry() != PRIMITIVE_POLYGON) {
        return false;
    }
    for (int i = 0; i < other.getNumItems(); ++i) {
        const ModelItem& inner = other.getItem(i);
        if (inner.getSlice() == nullptr) {
            continue;
        }
        const auto outlines = intersection(*inner.getSlice());
        if (std::any_of(outlines.begin(), outlines.end(), [&inner](const ModelItem* outline) {
                return outline->partiallyContains(inner);
            })) {
            return true;
        }
    }
    return false;
}

void Model::print(const std::string& indent) const
{
    std::cout << indent << "Name = " << name << '\n';
    if (properties.definesGeometry()) {
        std::cout << indent
                  << "  Geometry = " << ModelProperties::toString(properties.getGeometry()) << '\n';
    }
    std::cout << indent << "  Number of items = " << getNumItems() << '\n';
    if (snakeConfig) {
        snakeConfig->print(indent + "  ");
    }
}
