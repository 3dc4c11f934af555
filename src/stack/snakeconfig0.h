#pragma once

#include <string>

/// Settings of an active contour that the host may keep with a model.
class SnakeConfig0
{
public:
    virtual ~SnakeConfig0() = default;

    float getGradThreshold() const { return gradThreshold_; }

    void setGradThreshold(float threshold) { gradThreshold_ = threshold; }

    int getDistance() const { return distance_; }

    void setDistance(int distance) { distance_ = distance; }

    float getRegMin() const { return regMin_; }

    void setRegMin(float regMin) { regMin_ = regMin; }

    float getRegMax() const { return regMax_; }

    void setRegMax(float regMax) { regMax_ = regMax; }

    float getAlpha() const { return alpha_; }

    void setAlpha(float alpha) { alpha_ = alpha; }

    bool isAdaptive() const { return adaptive_; }

    void setAdaptive(bool adaptive) { adaptive_ = adaptive; }

    unsigned getScale() const { return scale_; }

    void setScale(unsigned scale) { scale_ = scale; }

    /// Writes the settings to the standard output, a line each, for debugging.
    void print(const std::string& indent = "") const;

private:
    float gradThreshold_ = 20.0f;
    int distance_ = 100;
    float regMin_ = 0.5f;
    float regMax_ = 1.0f;
    float alpha_ = 1.0f;
    bool adaptive_ = false;
    unsigned scale_ = 1;
};
