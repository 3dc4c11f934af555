#pragma once

#include "blade/landmarks/methodextractpeaks.h"
#include "blade/process/modelsmanager.h"

/// Third stage: places one tip between each two consecutive sinuses of the contour, in the model
/// "Primary Peak".
///
/// The curvature method takes the sharpest outward corner and suits pointed teeth; the symmetry
/// method takes the vertex at which the tooth's top has equal areas on both sides of its axis, and
/// suits rounded teeth and lobes. The stretch across the apex counts as a tooth of a palmate leaf
/// only: of a pinnate leaf its tip is taken out again.
///
/// A profile is one contour long, so that the place of its smallest entry is a vertex index. Where
/// nothing on the tooth lies below the value that fills it at first, the result is vertex 0, the
/// middle of the petiole.
class ExtractPeak : public ModelsManager
{
public:
    ExtractPeak() = default;

    /// The divisor of a tooth's span, counted in vertices, that gives the half window of the
    /// curvature method; at least 1.
    void setExcludeNeighbourhood(int divisor) { excludeNeighbourhood = divisor; }

    void setMethodToExtract(const MethodExtractPeaks& method) { methodToExtract = method; }

    /// Whether the stretch across the apex is a tooth. (The venation type of the base is not used
    /// here.)
    void setVenationType(const VenationType& type) { peakVenationType = type; }

    /// Deletes the model "Primary Peak" of an earlier run and creates it anew. Of the labels of a
    /// hierarchy the sinuses are folded back into "Primary Sinus", and the tips go.
    void createModels() override;

    /// Makes the still empty item of the tips for the slice.
    void createModelsItems(int slice);

    /// Works on all slices and tells "Peaks extraction is complete".
    void run() override;

    /// Works on one slice; always returns the empty text. A slice without contour, apex or
    /// junctions is left alone.
    std::string process(int slice) override;

    /// The angle in radians at each vertex of the tooth between two contour indices, pi elsewhere;
    /// a bulge gives less than pi. Raises `ValueError` for a divisor below 1.
    Vector<float> findTeethCurvature(int first, int last, int divisor) const;

    /// For each vertex at which a chord's perpendicular bisector meets the tooth, the difference of
    /// the areas on both sides of that cut, in squared contour units; 10000 elsewhere.
    Vector<float> findTeethDiffArea(int first, int last) const;

    /// By how much the flank of `first` has more area than the flank of `last`; 0 if the bisector
    /// of the tooth's base does not meet the tooth.
    int aireRef(int first, int last) const;

    /// Distance of each vertex strictly between two contour indices to the line through them; 0
    /// elsewhere.
    Vector<float> distanceSegment(int first, int last) const;

    /// The line through `m` square to the chord from `p1` to `p2`.
    Edge<float>
    findMediatrice(const Vector<float>& p1, const Vector<float>& p2, const Vector<float>& m) const;

    /// Distance of a point to the infinite line through an edge.
    float findVertexDistance(const Vector<float>& vertex, const Edge<float>& edge) const;

private:
    void findTips(const Vector<int>& sinuses);
    void removeTipsAcrossApex(const Vector<int>& sinuses, int apexPosition);
    int firstCrossing(const Edge<float>& line, int first, int last) const;
    Curve<float> cutPolygon(int first, int last, const Vector<float>& m, int close) const;

    int excludeNeighbourhood = 0;
    MethodExtractPeaks methodToExtract = MethodExtractPeaks(0);
    VenationType peakVenationType = PINNATE;
};
