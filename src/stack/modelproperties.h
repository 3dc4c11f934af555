#pragma once

#include <optional>
#include <string>

/// Geometry of a model: what the vertices of its items mean.
enum MPrimitive {
    PRIMITIVE_POLYGON = 0,   ///< closed vertex list
    PRIMITIVE_POLYLINE = 1,  ///< open vertex list
    PRIMITIVE_POLYPOINT = 2, ///< unconnected points
    PRIMITIVE_REGION = 3,    ///< run-length coded pixel set
    PRIMITIVE_UNKNOWN = 4
};

/// How the host draws a model in space.
enum class RenderingMode {
    Dot = 0,
    Curve = 1,
    Wireframe = 2,
    Surface = 3,
    TriangularMesh = 4,
    TriangularSurface = 5,
    Unknown = 6
};

/// The attributes of a model as a whole, each of them optional.
///
/// An attribute that was never set is undefined: `definesX` tells so, `==` counts it, `update`
/// skips it. The getters demand a defined attribute; only those of the two cap flags test it.
class ModelProperties
{
public:
    /// The name of the value in stack files, "Unknown" for any value outside the list.
    static std::string toString(MPrimitive primitive);
    static std::string toString(RenderingMode mode);

    /// The way back; any other text gives `PRIMITIVE_UNKNOWN`.
    static MPrimitive toPrimitive(const std::string& name);

    /// The way back; any other text gives `RenderingMode::Unknown`.
    static RenderingMode toRenderingMode(const std::string& name);

    /// Defines every attribute: a polygon drawn as an opaque surface, without caps.
    void setDefaults();

    bool definesGeometry() const { return geometry.has_value(); }

    MPrimitive getGeometry() const { return *geometry; }

    void setGeometry(MPrimitive primitive) { geometry = primitive; }

    bool definesRenderingMode() const { return renderingMode.has_value(); }

    RenderingMode getRenderingMode() const { return *renderingMode; }

    void setRenderingMode(RenderingMode mode) { renderingMode = mode; }

    bool definesSurfaceOpacity() const { return surfaceOpacity.has_value(); }

    /// From 0, invisible, to 255.
    float getSurfaceOpacity() const { return *surfaceOpacity; }

    void setSurfaceOpacity(float opacity) { surfaceOpacity = opacity; }

    bool definesSurfaceShininess() const { return surfaceShininess.has_value(); }

    float getSurfaceShininess() const { return *surfaceShininess; }

    void setSurfaceShininess(float shininess) { surfaceShininess = shininess; }

    bool definesQuadMeshWidth() const { return quadMeshWidth.has_value(); }

    int getQuadMeshWidth() const { return *quadMeshWidth; }

    void setQuadMeshWidth(int width) { quadMeshWidth = width; }

    bool definesQuadMeshHeight() const { return quadMeshHeight.has_value(); }

    int getQuadMeshHeight() const { return *quadMeshHeight; }

    void setQuadMeshHeight(int height) { quadMeshHeight = height; }

    bool definesVertexSmoothing() const { return vertexSmoothing.has_value(); }

    int getVertexSmoothing() const { return *vertexSmoothing; }

    void setVertexSmoothing(int smoothing) { vertexSmoothing = smoothing; }

    bool definesNormalSmoothing() const { return normalSmoothing.has_value(); }

    int getNormalSmoothing() const { return *normalSmoothing; }

    void setNormalSmoothing(int smoothing) { normalSmoothing = smoothing; }

    bool definesEconomicRendering() const { return economicRendering.has_value(); }

    bool getEconomicRendering() const { return *economicRendering; }

    void setEconomicRendering(bool economic) { economicRendering = economic; }

    bool hasBeginCapFlag() const { return beginCapFlag.has_value(); }

    /// Undefined: `ProgramError` "Begin cap flag: undefined attribute".
    bool getBeginCapFlag() const;

    void setBeginCapFlag(bool flag) { beginCapFlag = flag; }

    bool hasEndCapFlag() const { return endCapFlag.has_value(); }

    /// Undefined: `ProgramError` "End cap flag: undefined attribute".
    bool getEndCapFlag() const;

    void setEndCapFlag(bool flag) { endCapFlag = flag; }

    /// Copies each attribute that `other` defines; the others keep their state.
    void update(const ModelProperties& other);

    /// The same attributes defined, with equal values.
    bool operator==(const ModelProperties& other) const;

    bool operator!=(const ModelProperties& other) const { return !(*this == other); }

    /// The attributes defined in both with equal values.
    ModelProperties intersection(const ModelProperties& other) const;

private:
    std::optional<MPrimitive> geometry;
    std::optional<RenderingMode> renderingMode;
    std::optional<float> surfaceOpacity;
    std::optional<float> surfaceShininess;
    std::optional<int> quadMeshWidth;
    std::optional<int> quadMeshHeight;
    std::optional<int> vertexSmoothing;
    std::optional<int> normalSmoothing;
    std::optional<bool> economicRendering;
    std::optional<bool> beginCapFlag;
    std::optional<bool> endCapFlag;
};
