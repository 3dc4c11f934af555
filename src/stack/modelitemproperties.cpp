#include "stack/modelitemproperties.h"

#include "stack/attribute.h"
#include "system/exception.h"

#include <array>
#include <tuple>

namespace {

const std::array<const char*, 6> symbolNames = {"Cube",   "Dot",         "Diamond",
                                                "Sphere", "Tetrahedron", "Unknown"};

} // namespace

std::string ModelItemProperties::toString(VertexSymbol symbol)
{
    const auto value = static_cast<std::size_t>(symbol);
    return value < symbolNames.size() ? symbolNames[value] : symbolNames.back();
}

VertexSymbol ModelItemProperties::toVertexSymbol(const std::string& name)
{
    std::size_t value = 0;
    while (value + 1 < symbolNames.size() && name != symbolNames[value]) {
        ++value;
    }
    return static_cast<VertexSymbol>(value);
}

void ModelItemProperties::setDefaults()
{
    Vector<int> red(3);
    red.setZeros();
    red[0] = 255;
    color_ = red;
    lineWidth_ = 1.0f;
    pointSize_ = 1.0f;
    vertexSymbol_ = VertexSymbol::Sphere;
    vertexSymbolFilling_ = true;
    renderingVisibility_ = true;
}

bool ModelItemProperties::definesAny() const
{
    return color_ || lineWidth_ || pointSize_ || vertexSymbol_ || vertexSymbolFilling_ ||
           renderingVisibility_;
}

void ModelItemProperties::setColor(const Vector<int>& color)
{
    if (color.getSize() != 3) {
        raise<SizeError>("void ModelItemProperties::setColor(const Vector<int>&)",
                         "A color has three components");
    }
    color_ = color;
}

void ModelItemProperties::update(const ModelItemProperties& other)
{
    attribute::update(color_, other.color_);
    attribute::update(lineWidth_, other.lineWidth_);
    attribute::update(pointSize_, other.pointSize_);
    attribute::update(vertexSymbol_, other.vertexSymbol_);
    attribute::update(vertexSymbolFilling_, other.vertexSymbolFilling_);
    attribute::update(renderingVisibility_, other.renderingVisibility_);
}

bool ModelItemProperties::operator==(const ModelItemProperties& other) const
{
    const auto all = [](const ModelItemProperties& p) {
        return std::tie(p.color_, p.lineWidth_, p.pointSize_, p.vertexSymbol_,
                        p.vertexSymbolFilling_, p.renderingVisibility_);
    };
    return all(*this) == all(other);
}

ModelItemProperties ModelItemProperties::intersection(const ModelItemProperties& other) const
{
    ModelItemProperties both;
    both.color_ = attribute::common(color_, other.color_);
    both.lineWidth_ = attribute::common(lineWidth_, other.lineWidth_);
    both.pointSize_ = attribute::common(pointSize_, other.pointSize_);
    both.vertexSymbol_ = attribute::common(vertexSymbol_, other.vertexSymbol_);
    both.vertexSymbolFilling_ = attribute::common(vertexSymbolFilling_, other.vertexSymbolFilling_);
    both.renderingVisibility_ = attribute::common(renderingVisibility_, other.renderingVisibility_);
    return both;
}

ModelItemProperties ModelItemProperties::operator-(const ModelItemProperties& other) const
{
    ModelItemProperties rest;
    rest.color_ = attribute::difference(color_, other.color_);
    rest.lineWidth_ = attribute::difference(lineWidth_, other.lineWidth_);
    rest.pointSize_ = attribute::difference(pointSize_, other.pointSize_);
    rest.vertexSymbol_ = attribute::difference(vertexSymbol_, other.vertexSymbol_);
    rest.vertexSymbolFilling_ =
        attribute::difference(vertexSymbolFilling_, other.vertexSymbolFilling_);
    rest.renderingVisibility_ =
        attribute::difference(renderingVisibility_, other.renderingVisibility_);
    return rest;
}

ModelItemProperties ModelItemProperties::operator+(const ModelItemProperties& other) const
{
    ModelItemProperties sum = other;
    sum.update(*this);
    return sum;
}
