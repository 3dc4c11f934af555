#pragma once

/// Parameters of the recursive hierarchy, kept by the window.
class HierarchyArabidoConfig
{
public:
    /// Limit angle in degrees.
    void setAngleLimit(int degrees) { angleLimit = degrees; }

    int getAngleLimit() const { return angleLimit; }

    void setSettingsEnabled(bool enabled) { settingsEnabled = enabled; }

    bool isSettingsEnabled() const { return settingsEnabled; }

    void setEnableDistalTeeth(bool enabled) { distalTeethEnabled = enabled; }

    bool getEnabledDistalTeeth() const { return distalTeethEnabled; }

private:
    int angleLimit = 45;
    bool settingsEnabled = false;
    bool distalTeethEnabled = false;
};
