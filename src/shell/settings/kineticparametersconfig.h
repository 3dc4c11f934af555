#pragma once

/// The growth parameters as a plain record of their own. No stage reads it: the values that the
/// processes use stand in `ProjectConfig`.
class KineticParametersConfig
{
public:
    void setSettingsEnabled(bool value) { enabled = value; }

    bool isEnabled() const { return enabled; }

    void setInflectionPoint(float value) { inflectionPoint = value; }

    float getInflectionPoint() const { return inflectionPoint; }

    void setInitiationPoint(float value) { initiationPoint = value; }

    float getInitiationPoint() const { return initiationPoint; }

    void setJunctionPoint(float value) { junctionPoint = value; }

    float getJunctionPoint() const { return junctionPoint; }

    void setScaling(float value) { scaling = value; }

    float getScaling() const { return scaling; }

    void setStrengthFactor(float value) { strengthFactor = value; }

    float getStrengthFactor() const { return strengthFactor; }

private:
    bool enabled = false;
    float inflectionPoint = 0.0f;
    float initiationPoint = 0.0f;
    float junctionPoint = 0.0f;
    float scaling = 0.0f;
    float strengthFactor = 0.0f;
};
