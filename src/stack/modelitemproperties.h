#pragma once

#include "numerics/vector.h"

#include <optional>
#include <string>

/// The mark that stands for a vertex.
enum class VertexSymbol {
    Cube = 0,
    Dot = 1,
    Diamond = 2,
    Sphere = 3,
    Tetrahedron = 4,
    Unknown = 5
};

/// The attributes of an item, each of them optional.
///
/// An item that leaves an attribute undefined is drawn with the one of its model. The getters
/// demand a defined attribute.
class ModelItemProperties
{
public:
    /// The name of the value in stack files, "Unknown" for any value outside the list.
    static std::string toString(VertexSymbol symbol);

    /// The way back; any other text gives `VertexSymbol::Unknown`.
    static VertexSymbol toVertexSymbol(const std::string& name);

    /// Defines every attribute: red, line width and point size 1, filled spheres, visible.
    void setDefaults();

    /// At least one attribute is defined.
    bool definesAny() const;

    bool definesColor() const { return color.has_value(); }

    /// Red, green and blue, from 0 to 255.
    const Vector<int>& getColor() const { return *color; }

    /// Another number of components than 3: `SizeError`.
    void setColor(const Vector<int>& rgb);

    bool definesLineWidth() const { return lineWidth.has_value(); }

    float getLineWidth() const { return *lineWidth; }

    void setLineWidth(float width) { lineWidth = width; }

    bool definesPointSize() const { return pointSize.has_value(); }

    float getPointSize() const { return *pointSize; }

    void setPointSize(float size) { pointSize = size; }

    bool definesVertexSymbol() const { return vertexSymbol.has_value(); }

    VertexSymbol getVertexSymbol() const { return *vertexSymbol; }

    void setVertexSymbol(VertexSymbol symbol) { vertexSymbol = symbol; }

    bool definesVertexSymbolFilling() const { return vertexSymbolFilling.has_value(); }

    bool getVertexSymbolFilling() const { return *vertexSymbolFilling; }

    void setVertexSymbolFilling(bool filled) { vertexSymbolFilling = filled; }

    bool definesRenderingVisibility() const { return renderingVisibility.has_value(); }

    bool getRenderingVisibility() const { return *renderingVisibility; }

    void setRenderingVisibility(bool visible) { renderingVisibility = visible; }

    /// Copies each attribute that `other` defines; the others keep their state.
    void update(const ModelItemProperties& other);

    /// The same attributes defined, with equal values.
    bool operator==(const ModelItemProperties& other) const;

    bool operator!=(const ModelItemProperties& other) const { return !(*this == other); }

    /// The attributes defined in both with equal values.
    ModelItemProperties intersection(const ModelItemProperties& other) const;

    /// The attributes defined here that `other` does not define, or defines with another value.
    ModelItemProperties operator-(const ModelItemProperties& other) const;

    /// These attributes, and those of `other` that are undefined here.
    ModelItemProperties operator+(const ModelItemProperties& other) const;

private:
    std::optional<Vector<int>> color;
    std::optional<float> lineWidth;
    std::optional<float> pointSize;
    std::optional<VertexSymbol> vertexSymbol;
    std::optional<bool> vertexSymbolFilling;
    std::optional<bool> renderingVisibility;
};
