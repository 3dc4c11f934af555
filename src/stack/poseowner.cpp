#include "stack/poseowner.h"

#include "stack/pose.h"

PoseOwner::~PoseOwner()
{
    for (const Pose* pose : poses_) {
        delete pose;
    }
}

int PoseOwner::findPose(const std::string& name) const
{
    for (int i = 0; i < getNumPoses(); ++i) {
        if (getPose(i).getName() == name) {
            return i;
        }
    }
    return -1;
}

int PoseOwner::findPose(const Pose& pose) const
{
    for (int i = 0; i < getNumPoses(); ++i) {
        if (&getPose(i) == &pose) {
            return i;
        }
    }
    return -1;
}

void PoseOwner::addPose(Pose& pose)
{
    if (findPose(pose) < 0) {
        poses_.push_back(&pose);
    }
}

void PoseOwner::removePose(int i)
{
    poses_.erase(poses_.begin() + i);
}

void PoseOwner::removePose(Pose& pose)
{
    const int i = findPose(pose);
    if (i >= 0) {
        removePose(i);
    }
}
