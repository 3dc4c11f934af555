#include "stack/model.h"

#include "stack/modelitem.h"
#include "stack/stackslice.h"

#include <algorithm>
#include <iostream>

Model::Model()
{
    properties_.setGeometry(PRIMITIVE_POLYGON);
    properties_.setRenderingMode(RenderingMode::Surface);
    properties_.setSurfaceOpacity(255.0f);
    properties_.setSurfaceShininess(32.0f);
    properties_.setQuadMeshWidth(100);
    properties_.setQuadMeshHeight(100);
    properties_.setVertexSmoothing(0);
    properties_.setNormalSmoothing(0);
    properties_.setEconomicRendering(false);
    itemProperties_.setDefaults();
    itemProperties_.setPointSize(3.0f);
}

void Model::setSnakeConfig(const SnakeConfig0& config)
{
    snakeConfig_ = std::make_unique<SnakeConfig0>(config);
}

bool Model::partiallyContains(const Model& other) const
{
    if (!properties_.definesGeometry() || properties_.getGeometry() != PRIMITIVE_POLYGON) {
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
    std::cout << indent << "Name = " << name_ << '\n';
    if (properties_.definesGeometry()) {
        std::cout << indent
                  << "  Geometry = " << ModelProperties::toString(properties_.getGeometry())
                  << '\n';
    }
    std::cout << indent << "  Number of items = " << getNumItems() << '\n';
    if (snakeConfig_) {
        snakeConfig_->print(indent + "  ");
    }
}
