#include "stack/pose.h"

#include "stack/stack.h"

Pose::Pose()
    : rotation(3)
    , translation(2)
{
    rotation.setZeros();
    translation.setZeros();
}

Pose Pose::canonicalPose1()
{
    Pose pose;
    pose.setYRotation(180);
    return pose;
}

Pose Pose::canonicalPose2()
{
    Pose pose;
    pose.setYRotation(90);
    return pose;
}

Pose Pose::canonicalPose3()
{
    Pose pose;
    pose.setXRotation(90);
    return pose;
}

Pose Pose::reverseCanonicalPose1()
{
    return Pose();
}

Pose Pose::reverseCanonicalPose2()
{
    Pose pose;
    pose.setYRotation(-90);
    return pose;
}

Pose Pose::reverseCanonicalPose3()
{
    Pose pose;
    pose.setXRotation(-90);
    return pose;
}

void Pose::attach()
{
    if (stack != nullptr) {
        stack->addPose(*this);
    }
}

void Pose::detach()
{
    if (stack != nullptr) {
        stack->removePose(*this);
    }
}

void Pose::setTranslation(int x, int y)
{
    translation[0] = x;
    translation[1] = y;
}
