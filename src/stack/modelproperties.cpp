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
    geometry_ = PRIMITIVE_POLYGON;
    renderingMode_ = RenderingMode::Surface;
    surfaceOpacity_ = 255.0f;
    surfaceShininess_ = 32.0f;
    quadMeshWidth_ = 100;
    quadMeshHeight_ = 100;
    vertexSmoothing_ = 0;
    normalSmoothing_ = 0;
    economicRendering_ = false;
    beginCapFlag_ = false;
    endCapFlag_ = false;
}

bool ModelProperties::getBeginCapFlag() const
{
    if (!beginCapFlag_) {
        raise<ProgramError>("bool ModelProperties::getBeginCapFlag() const",
                            "Begin cap flag: undefined attribute");
    }
    return *beginCapFlag_;
}

bool ModelProperties::getEndCapFlag() const
{
    if (!endCapFlag_) {
        raise<ProgramError>("bool ModelProperties::getEndCapFlag() const",
                            "End cap flag: undefined attribute");
    }
    return *endCapFlag_;
}

void ModelProperties::update(const ModelProperties& other)
{
    attribute::update(geometry_, other.geometry_);
    attribute::update(renderingMode_, other.renderingMode_);
    attribute::update(surfaceOpacity_, other.surfaceOpacity_);
    attribute::update(surfaceShininess_, other.surfaceShininess_);
    attribute::update(quadMeshWidth_, other.quadMeshWidth_);
    attribute::update(quadMeshHeight_, other.quadMeshHeight_);
    attribute::update(vertexSmoothing_, other.vertexSmoothing_);
    attribute::update(normalSmoothing_, other.normalSmoothing_);
    attribute::update(economicRendering_, other.economicRendering_);
    attribute::update(beginCapFlag_, other.beginCapFlag_);
    attribute::update(endCapFlag_, other.endCapFlag_);
}

bool ModelProperties::operator==(const ModelProperties& other) const
{
    const auto all = [](const ModelProperties& p) {
        return std::tie(p.geometry_, p.renderingMode_, p.surfaceOpacity_, p.surfaceShininess_,
                        p.quadMeshWidth_, p.quadMeshHeight_, p.vertexSmoothing_, p.normalSmoothing_,
                        p.economicRendering_, p.beginCapFlag_, p.endCapFlag_);
    };
    return all(*this) == all(other);
}

ModelProperties ModelProperties::intersection(const ModelProperties& other) const
{
    ModelProperties both;
    both.geometry_ = attribute::common(geometry_, other.geometry_);
    both.renderingMode_ = attribute::common(renderingMode_, other.renderingMode_);
    both.surfaceOpacity_ = attribute::common(surfaceOpacity_, other.surfaceOpacity_);
    both.surfaceShininess_ = attribute::common(surfaceShininess_, other.surfaceShininess_);
    both.quadMeshWidth_ = attribute::common(quadMeshWidth_, other.quadMeshWidth_);
    both.quadMeshHeight_ = attribute::common(quadMeshHeight_, other.quadMeshHeight_);
    both.vertexSmoothing_ = attribute::common(vertexSmoothing_, other.vertexSmoothing_);
    both.normalSmoothing_ = attribute::common(normalSmoothing_, other.normalSmoothing_);
    both.economicRendering_ = attribute::common(economicRendering_, other.economicRendering_);
    both.beginCapFlag_ = attribute::common(beginCapFlag_, other.beginCapFlag_);
    both.endCapFlag_ = attribute::common(endCapFlag_, other.endCapFlag_);
    return both;
}
