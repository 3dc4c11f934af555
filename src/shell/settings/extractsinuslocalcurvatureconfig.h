#pragma once

/// Parameters of the sinus detection, kept by the window between visits of its page.
class ExtractSinusLocalCurvatureConfig
{
public:
    /// Half neighbourhood in contour vertices.
    void setNeighbourhood(int vertices) { neighbourhood = vertices; }

    int getNeigbourhood() const { return neighbourhood; }

    /// Largest angle of a sinus, in degrees.
    void setCurvatureAngle(float degrees) { curvatureAngle = degrees; }

    float getCurvatureAngle() const { return curvatureAngle; }

    void setSettingsEnabled(bool enabled) { settingsEnabled = enabled; }

    bool isSettingsEnabled() const { return settingsEnabled; }

private:
    int neighbourhood = 25;
    float curvatureAngle = 145.0f;
    bool settingsEnabled = false;
};
