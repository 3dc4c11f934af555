#pragma once

#include <string>

/// Settings of an active contour that the host may keep with a model.
class SnakeConfig0
{
public:
    virtual ~SnakeConfig0() = default;

    float getGradThreshold() const { return gradThreshold; }

    void setGradThreshold(float threshold) { gradThreshold = threshold; }

    int getDistance() const { return distance; }

    void setDistance(int value) { distance = value; }

    float getRegMin() const { return regMin; }

    void setRegMin(float value) { regMin = value; }

    float getRegMax() const { return regMax; }

    void setRegMax(float value) { regMax = value; }

    float getAlpha() const { return alpha; }

    void setAlpha(float value) { alpha = value; }

    bool isAdaptive() const { return adaptive; }

    void setAdaptive(bool value) { adaptive = value; }

    unsigned getScale() const { return scale; }

    void setScale(unsigned value) { scale = value; }

    /// Writes the settings to the standard output, a line each, for debugging.
    void print(const std::string& indent = "") const;

private:
    float gradThreshold = 20.0f;
    int distance = 100;
    float regMin = 0.5f;
    float regMax = 1.0f;
    float alpha = 1.0f;
    bool adaptive = false;
    unsigned scale = 1;
};
