#pragma once

#include <string>
#include <vector>

class Pose;

/// List of owned poses.
class PoseOwner
{
public:
    PoseOwner() = default;
    PoseOwner(const PoseOwner&) = delete;
    PoseOwner& operator=(const PoseOwner&) = delete;

    /// Destroys the poses.
    ~PoseOwner();

    int getNumPoses() const { return static_cast<int>(poses_.size()); }

    Pose& getPose(int i) { return *poses_[static_cast<std::size_t>(i)]; }

    const Pose& getPose(int i) const { return *poses_[static_cast<std::size_t>(i)]; }

    /// Index of the first pose of this name, or -1.
    int findPose(const std::string& name) const;

    /// Index of this very pose, or -1.
    int findPose(const Pose& pose) const;

    /// Appends a pose from `new`; one that stands in the list already stays where it is.
    void addPose(Pose& pose);

    /// Drops the pointer; the pose belongs to the caller then.
    void removePose(int i);
    void removePose(Pose& pose);

private:
    std::vector<Pose*> poses_;
};
