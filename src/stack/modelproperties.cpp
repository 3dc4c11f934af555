#include "stack/modelproperties.h"

#include "stack/attribute.h"
#include "system/exception.h"

#include <array>
#include <tuple>

namespace {

const std::array<const char*, 5> primitiveNames = {"Polygon", "Polyline", "Polypoint", "Region",
                                                   "Unknown"};
const std::array<const char*, 7> renderingModeNames = {
    "Dot", "Curve", "Wireframe", "Surface", "TriangularMesh", "TriangularSurface", "Unknown"};

// The last name stands for every value and text outside the list.
template <class Names>
std::string nameOf(const Names& names, int value)
{
    const int last = static_cast<int>(names.size()) - 1;
    return names[static_cast<std::size_t>(value < 0 || value > last ? last : value)];
}

template <class Names>
int valueOf(const Names& names, const std::string& name)
{
    std::size_t value = 0;
    while (value + 1 < names.size() && name != names[value]) {
        ++value;
    }
    return static_cast<int>(value);
}

} // namespace

std::string ModelProperties::toString(MPrimitive primitive)
{
    return nameOf(primitiveNames, static_cast<int>(primitive));
}

std::string ModelProperties::toString(RenderingMode mode)
{
    return nameOf(renderingModeNames, static_cast<int>(mode));
}

MPrimitive ModelProperties::toPrimitive(const std::string& name)
{
    return static_cast<MPrimitive>(valueOf(primitiveNames, name));
}

RenderingMode ModelProperties::toRenderingMode(const std::string& name)
{
    return static_cast<RenderingMode>(valueOf(renderingModeNames, name));
}

void ModelProperties::setDefaults()
{
    geometry = PRIMITIVE_POLYGON;
    renderingMode = RenderingMode::Surface;
    surfaceOpacity = 255.0f;
    surfaceShininess = 32.0f;
    quadMeshWidth = 100;
    quadMeshHeight = 100;
    vertexSmoothing = 0;
    normalSmoothing = 0;
    economicRendering = false;
    beginCapFlag = false;
    endCapFlag = false;
}

bool ModelProperties::getBeginCapFlag() const
{
    if (!beginCapFlag) {
        raise<ProgramError>("bool ModelProperties::getBeginCapFlag() const",
                            "Begin cap flag: undefined attribute");
    }
    return *beginCapFlag;
}

bool ModelProperties::getEndCapFlag() const
{
    if (!endCapFlag) {
        raise<ProgramError>("bool ModelProperties::getEndCapFlag() const",
                            "End cap flag: undefined attribute");
    }
    return *endCapFlag;
}

void ModelProperties::update(const ModelProperties& other)
{
    attribute::update(geometry, other.geometry);
    attribute::update(renderingMode, other.renderingMode);
    attribute::update(surfaceOpacity, other.surfaceOpacity);
    attribute::update(surfaceShininess, other.surfaceShininess);
    attribute::update(quadMeshWidth, other.quadMeshWidth);
    attribute::update(quadMeshHeight, other.quadMeshHeight);
    attribute::update(vertexSmoothing, other.vertexSmoothing);
    attribute::update(normalSmoothing, other.normalSmoothing);
    attribute::update(economicRendering, other.economicRendering);
    attribute::update(beginCapFlag, other.beginCapFlag);
    attribute::update(endCapFlag, other.endCapFlag);
}

bool ModelProperties::operator==(const ModelProperties& other) const
{
    const auto all = [](const ModelProperties& p) {
        return std::tie(p.geometry, p.renderingMode, p.surfaceOpacity, p.surfaceShininess,
                        p.quadMeshWidth, p.quadMeshHeight, p.vertexSmoothing, p.normalSmoothing,
                        p.economicRendering, p.beginCapFlag, p.endCapFlag);
    };
    return all(*this) == all(other);
}

ModelProperties ModelProperties::intersection(const ModelProperties& other) const
{
    ModelProperties both;
    both.geometry = attribute::common(geometry, other.geometry);
    both.renderingMode = attribute::common(renderingMode, other.renderingMode);
    both.surfaceOpacity = attribute::common(surfaceOpacity, other.surfaceOpacity);
    both.surfaceShininess = attribute::common(surfaceShininess, other.surfaceShininess);
    both.quadMeshWidth = attribute::common(quadMeshWidth, other.quadMeshWidth);
    both.quadMeshHeight = attribute::common(quadMeshHeight, other.quadMeshHeight);
    both.vertexSmoothing = attribute::common(vertexSmoothing, other.vertexSmoothing);
    both.normalSmoothing = attribute::common(normalSmoothing, other.normalSmoothing);
    both.economicRendering = attribute::common(economicRendering, other.economicRendering);
    both.beginCapFlag = attribute::common(beginCapFlag, other.beginCapFlag);
    both.endCapFlag = attribute::common(endCapFlag, other.endCapFlag);
    return both;
}
