#pragma once

#include "numerics/vector.h"

#include <string>

class Stack;

/// A stored view of the stack in space: rotation in degrees, shift in pixels, zoom and lights.
class Pose
{
public:
    Pose();

    /// A default pose, turned about one axis only: Y 180, Y 90, X 90.
    static Pose canonicalPose1();
    static Pose canonicalPose2();
    static Pose canonicalPose3();

    /// The same views from behind: no rotation, Y -90, X -90.
    static Pose reverseCanonicalPose1();
    static Pose reverseCanonicalPose2();
    static Pose reverseCanonicalPose3();

    const std::string& getName() const { return name_; }

    void setName(const std::string& name) { name_ = name; }

    /// Null until set. Not owned.
    Stack* getStack() const { return stack_; }

    void setStack(Stack& stack) { stack_ = &stack; }

    /// Gives the pose to its stack, which owns it from then on.
    void attach();

    /// Takes the pose from its stack; it belongs to the caller then.
    void detach();

    /// Degrees about X, Y and Z.
    const Vector<float>& getRotation() const { return rotation_; }

    /// In whole degrees, truncated toward zero.
    int getXRotation() const { return static_cast<int>(rotation_[0]); }

    int getYRotation() const { return static_cast<int>(rotation_[1]); }

    int getZRotation() const { return static_cast<int>(rotation_[2]); }

    void setXRotation(int degrees) { rotation_[0] = static_cast<float>(degrees); }

    void setYRotation(int degrees) { rotation_[1] = static_cast<float>(degrees); }

    void setZRotation(int degrees) { rotation_[2] = static_cast<float>(degrees); }

    const Vector<int>& getTranslation() const { return translation_; }

    void setTranslation(int x, int y);

    int getZoom() const { return zoom_; }

    void setZoom(int percent) { zoom_ = percent; }

    int getAmbientLight() const { return ambientLight_; }

    void setAmbientLight(int light) { ambientLight_ = light; }

    int getDiffuseLight() const { return diffuseLight_; }

    void setDiffuseLight(int light) { diffuseLight_ = light; }

    int getSpecularLight() const { return specularLight_; }

    void setSpecularLight(int light) { specularLight_ = light; }

private:
    std::string name_;
    Stack* stack_ = nullptr;
    Vector<float> rotation_;
    Vector<int> translation_;
    int zoom_ = 100;
    int ambientLight_ = 0;
    int diffuseLight_ = 0;
    int specularLight_ = 0;
};
