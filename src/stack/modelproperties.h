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

    bool definesGeometry() const { return geometry_.has_value(); }

    MPrimitive getGeometry() const { return *geometry_; }

    void setGeometry(MPrimitive geometry) { geometry_ = geometry; }

    bool definesRenderingMode() const { return renderingMode_.has_value(); }

    RenderingMode getRenderingMode() const { return *renderingMode_; }

    void setRenderingMode(RenderingMode mode) { renderingMode_ = mode; }

    bool definesSurfaceOpacity() const { return surfaceOpacity_.has_value(); }

    /// From 0, invisible, to 255.
    float getSurfaceOpacity() const { return *surfaceOpacity_; }

    void setSurfaceOpacity(float opacity) { surfaceOpacity_ = opacity; }

    bool definesSurfaceShininess() const { return surfaceShininess_.has_value(); }

    float getSurfaceShininess() const { return *surfaceShininess_; }

    void setSurfaceShininess(float shininess) { surfaceShininess_ = shininess; }

    bool definesQuadMeshWidth() const { return quadMeshWidth_.has_value(); }

    int getQuadMeshWidth() const { return *quadMeshWidth_; }

    void setQuadMeshWidth(int width) { quadMeshWidth_ = width; }

    bool definesQuadMeshHeight() const { return quadMeshHeight_.has_value(); }

    int getQuadMeshHeight() const { return *quadMeshHeight_; }

    void setQuadMeshHeight(int height) { quadMeshHeight_ = height; }

    bool definesVertexSmoothing() const { return vertexSmoothing_.has_value(); }

    int getVertexSmoothing() const { return *vertexSmoothing_; }

    void setVertexSmoothing(int smoothing) { vertexSmoothing_ = smoothing; }

    bool definesNormalSmoothing() const { return normalSmoothing_.has_value(); }

    int getNormalSmoothing() const { return *normalSmoothing_; }

    void setNormalSmoothing(int smoothing) { normalSmoothing_ = smoothing; }

    bool definesEconomicRendering() const { return economicRendering_.has_value(); }

    bool getEconomicRendering() const { return *economicRendering_; }

    void setEconomicRendering(bool economic) { economicRendering_ = economic; }

    bool hasBeginCapFlag() const { return beginCapFlag_.has_value(); }

    /// Undefined: `ProgramError` "Begin cap flag: undefined attribute".
    bool getBeginCapFlag() const;

    void setBeginCapFlag(bool flag) { beginCapFlag_ = flag; }

    bool hasEndCapFlag() const { return endCapFlag_.has_value(); }

    /// Undefined: `ProgramError` "End cap flag: undefined attribute".
    bool getEndCapFlag() const;

    void setEndCapFlag(bool flag) { endCapFlag_ = flag; }

    /// Copies each attribute that `other` defines; the others keep their state.
    void update(const ModelProperties& other);

    /// The same attributes defined, with equal values.
    bool operator==(const ModelProperties& other) const;

    bool operator!=(const ModelProperties& other) const { return !(*this == other); }

    /// The attributes defined in both with equal values.
    ModelProperties intersection(const ModelProperties& other) const;

private:
    std::optional<MPrimitive> geometry_;
    std::optional<RenderingMode> renderingMode_;
    std::optional<float> surfaceOpacity_;
    std::optional<float> surfaceShininess_;
    std::optional<int> quadMeshWidth_;
    std::optional<int> quadMeshHeight_;
    std::optional<int> vertexSmoothing_;
    std::optional<int> normalSmoothing_;
    std::optional<bool> economicRendering_;
    std::optional<bool> beginCapFlag_;
    std::optional<bool> endCapFlag_;
};
