#pragma once

#include "blade/hierarchy/hierarchyprocess.h"
#include "numerics/matrix.h"

#include <string>
#include <vector>

/// The recursive hierarchy: sorts the sinuses and tips of each leaf into those of the leaf's own
/// teeth, which stay primary, and those of the teeth that these carry; for leaves of a rather
/// regular convex outline. With distal teeth, the tooth next to the leaf tip is told apart where it
/// is smaller than its neighbour towards the base.
///
/// A sinus between two kinds of teeth stands in two items. What lies deeper than secondary drops
/// out of all models; each such landmark is told on the standard error stream. A sinus that the
/// walk can't reach, since another landmark or the apex is in its place, stays primary.
class HierarchyArabidoProcess : public HierarchyProcess
{
public:
    HierarchyArabidoProcess() = default;

    /// A sinus of a wider angle to its neighbours than pi times this one, in radians, is primary.
    void setLimitAngle(int degrees) { limitAngle = degrees * 0.017453292519943295; }

    void setEnableDistalTeeth(bool enabled) { enableDistalTeeth = enabled; }

    void run() override;

    /// Works on one slice, for whose landmarks `run` made the models; always returns the empty
    /// text. A slice that lacks a landmark is left alone.
    std::string process(int slice) override;

    /// Makes the still empty items for the slice.
    void createModelsItems(int slice);

    /// The leaf segmentation of the slice read last: a row a landmark, contour index and code,
    /// sorted by index. See `LeafHierarchyBuilding`.
    Matrix<int> initialize() const;

    /// The signed area of the closed curve of the contour's vertices `first` to `last - 1`.
    float computeArea(int first, int last) const;

    /// The landmarks that dropped out, one text each: the slice, what it was, its place.
    const std::vector<std::string>& getDropped() const { return dropped_; }

protected:
    /// With distal teeth also theirs.
    void createLabelModels() override;

private:
    struct Labels
    {
        std::vector<int> primarySinuses;
        std::vector<int> secondarySinuses;
        std::vector<int> primaryTips;
        std::vector<int> secondaryTips;
    };

    Labels readLabels(int slice,
                      const Matrix<int>& segmentation,
                      const std::vector<std::vector<int>>& status);
    void store(const Labels& labels);
    void drop(int slice, const std::string& what, int index);
    void separateDistalTeeth(const std::vector<int>& sinuses, const std::vector<int>& tips);
    std::vector<float> toothAreas(const std::vector<int>& sinuses, int apexPosition) const;
    void moveDistalSinuses(const std::vector<int>& distal,
                           const std::vector<int>& sinuses,
                           int apexPosition);
    void moveDistalTips(const std::vector<int>& distal, const std::vector<int>& tips);

    double limitAngle = 0.0;
    bool enableDistalTeeth = false;
    std::vector<std::string> dropped_;
};
