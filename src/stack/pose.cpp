#include "stack/pose.h"

#include "stack/stack.h"

Pose::Pose()
    : rotation_(3)
    , translation_(2)
{
    rotation_.setZeros();
    translation_.setZeros();
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
    if (stack_ != nullptr) {
        stack_->addPose(*this);
    }
}

void Pose::detach()
{
    if (stack_ != nullptr) {
        stack_->removePose(*this);
    }
}

void Pose::setTranslation(int x, int y)
{
    translation_[0] = x;
    translation_[1] = y;
}
