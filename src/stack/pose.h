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

    const std::string& getName() const { return name; }

    void setName(const std::string& newName) { name = newName; }

    /// Null until set. Not owned.
    Stack* getStack() const { return stack; }

    void setStack(Stack& owner) { stack = &owner; }

    /// Gives the pose to its stack, which owns it from then on.
    void attach();

    /// Takes the pose from its stack; it belongs to the caller then.
    void detach();

    /// Degrees about X, Y and Z.
    const Vector<float>& getRotation() const { return rotation; }

    /// In whole degrees, truncated toward zero.
    int getXRotation() const { return static_cast<int>(rotation[0]); }

    int getYRotation() const { return static_cast<int>(rotation[1]); }

    int getZRotation() const { return static_cast<int>(rotation[2]); }

    void setXRotation(int degrees) { rotation[0] = static_cast<float>(degrees); }

    void setYRotation(int degrees) { rotation[1] = static_cast<float>(degrees); }

    void setZRotation(int degrees) { rotation[2] = static_cast<float>(degrees); }

    const Vector<int>& getTranslation() const { return translation; }

    void setTranslation(int x, int y);

    int getZoom() const { return zoom; }

    void setZoom(int percent) { zoom = percent; }

    int getAmbientLight() const { return ambientLight; }

    void setAmbientLight(int light) { ambientLight = light; }

    int getDiffuseLight() const { return diffuseLight; }

    void setDiffuseLight(int light) { diffuseLight = light; }

    int getSpecularLight() const { return specularLight; }

    void setSpecularLight(int light) { specularLight = light; }

private:
    std::string name;
    Stack* stack = nullptr;
    Vector<float> rotation;
    Vector<int> translation;
    int zoom = 100;
    int ambientLight = 0;
    int diffuseLight = 0;
    int specularLight = 0;
};
