#pragma once

#include "blade/process/modelsmanager.h"

#include <vector>

/// Second stage: finds the apex and the sinuses of each leaf, and gives the stored contour its
/// working form.
///
/// On each slice with a contour and two petiole junctions the blade is told from the petiole, the
/// apex is put at the blade's farthest point, the contour is resampled to about one vertex per
/// pixel of perimeter with vertex 0 in the middle of the petiole, and the sinuses (the notches
/// between teeth) are found on each half of the blade by a discrete angle: the angle at a vertex
/// between the vertices a fixed number of steps before and behind it.
///
/// The angles run over 0 to 360 degrees; 180 is straight, below 180 the contour turns into the
/// blade, above 180 outward.
class ExtractConvexPoints : public ModelsManager
{
public:
    ExtractConvexPoints() = default;

    /// The largest angle, in degrees, that may open a sinus interval (exclusive).
    void setThresholdAngle(float degrees) { thresholdAngle = degrees; }

    float getThresholdAngle() const { return thresholdAngle; }

    /// The half neighbourhood: how many vertices lie between a vertex and the two that span its
    /// angle.
    void setNeigbourhood(int vertices) { neighbourhood = vertices; }

    int getNeigbourhood() const { return neighbourhood; }

    /// Deletes the apex, the sinuses and the tips of an earlier run, those that a hierarchy made
    /// secondary or distal too, and creates the models "Apex" and "Primary Sinus".
    void createModels() override;

    /// Makes the still empty items of sinuses and apex for the slice.
    void createModelsItems(int slice);

    /// The angle at each vertex in degrees, one entry a vertex. The curve counts as open here: the
    /// first and the last `h` entries are 180, and so are all where the curve has at most 2 h
    /// vertices.
    Vector<float> computeCurvature(const Curve<float>& curve, int h) const;

    /// The sinuses in the range `first` to `last - 1`, ascending.
    ///
    /// Vertices under the threshold are gathered until one bulges outward (above 180 degrees); if
    /// more than a fifth of the half neighbourhood has come together by then, the one of smallest
    /// angle, the first among equals, is a sinus. Fewer stay gathered and count with the next
    /// ones; what is still gathered at `last` gives nothing.
    std::vector<int> findSinusCandidates(const Vector<float>& angles, int first, int last) const;

    /// Works on one slice. Returns the slice's name if a half of the blade has exactly one sinus
    /// (which bounds no tooth, so that one is likely to be missing), else the empty text. A slice
    /// without contour or without two junctions is left alone.
    std::string process(int slice) override;

    /// Does nothing: the window and the command drive the slices and report.
    void run() override;

private:
    /// Writes the candidates strictly between `lower` and `upper` as sinuses; returns how many.
    int addSinuses(const std::vector<int>& candidates, int lower, int upper);

    float thresholdAngle = 0.0f;
    int neighbourhood = 0;
};
