#pragma once

/// State of the choice to apply no hierarchy, kept by the window.
class NoHierarchyConfig
{
public:
    void setSettingsEnabled(bool enabled) { settingsEnabled = enabled; }

    bool isSettingsEnabled() const { return settingsEnabled; }

private:
    bool settingsEnabled = false;
};
