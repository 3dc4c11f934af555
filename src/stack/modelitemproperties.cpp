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
    color = red;
    lineWidth = 1.0f;
    pointSize = 1.0f;
    vertexSymbol = VertexSymbol::Sphere;
    vertexSymbolFilling = true;
    renderingVisibility = true;
}

bool ModelItemProperties::definesAny() const
{
    return color || lineWidth || pointSize || vertexSymbol || vertexSymbolFilling ||
           renderingVisibility;
}

void ModelItemProperties::setColor(const Vector<int>& rgb)
{
    if (rgb.getSize() != 3) {
        raise<SizeError>("void ModelItemProperties::setColor(const Vector<int>&)",
                         "A color has three components");
    }
    color = rgb;
}

void ModelItemProperties::update(const ModelItemProperties& other)
{
    attribute::update(color, other.color);
    attribute::update(lineWidth, other.lineWidth);
    attribute::update(pointSize, other.pointSize);
    attribute::update(vertexSymbol, other.vertexSymbol);
    attribute::update(vertexSymbolFilling, other.vertexSymbolFilling);
    attribute::update(renderingVisibility, other.renderingVisibility);
}

bool ModelItemProperties::operator==(const ModelItemProperties& other) const
{
    const auto all = [](const ModelItemProperties& p) {
        return std::tie(p.color, p.lineWidth, p.pointSize, p.vertexSymbol, p.vertexSymbolFilling,
                        p.renderingVisibility);
    };
    return all(*this) == all(other);
}

ModelItemProperties ModelItemProperties::intersection(const ModelItemProperties& other) const
{
    ModelItemProperties both;
    both.color = attribute::common(color, other.color);
    both.lineWidth = attribute::common(lineWidth, other.lineWidth);
    both.pointSize = attribute::common(pointSize, other.pointSize);
    both.vertexSymbol = attribute::common(vertexSymbol, other.vertexSymbol);
    both.vertexSymbolFilling = attribute::common(vertexSymbolFilling, other.vertexSymbolFilling);
    both.renderingVisibility = attribute::common(renderingVisibility, other.renderingVisibility);
    return both;
}

ModelItemProperties ModelItemProperties::operator-(const ModelItemProperties& other) const
{
    ModelItemProperties rest;
    rest.color = attribute::difference(color, other.color);
    rest.lineWidth = attribute::difference(lineWidth, other.lineWidth);
    rest.pointSize = attribute::difference(pointSize, other.pointSize);
    rest.vertexSymbol = attribute::difference(vertexSymbol, other.vertexSymbol);
    rest.vertexSymbolFilling =
        attribute::difference(vertexSymbolFilling, other.vertexSymbolFilling);
    rest.renderingVisibility =
        attribute::difference(renderingVisibility, other.renderingVisibility);
    return rest;
}

ModelItemProperties ModelItemProperties::operator+(const ModelItemProperties& other) const
{
    ModelItemProperties sum = other;
    sum.update(*this);
    return sum;
}
