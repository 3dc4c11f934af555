#pragma once

/// Parameters of the iterative hierarchy, kept by the window.
class HierarchyIterativeConfig
{
public:
    void setTolerance(float value) { tolerance = value; }

    float getTolerance() const { return tolerance; }

    void setSettingsEnabled(bool enabled) { settingsEnabled = enabled; }

    bool isSettingsEnabled() const { return settingsEnabled; }

private:
    float tolerance = 0.3f;
    bool settingsEnabled = false;
};
