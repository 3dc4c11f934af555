#pragma once

#include "blade/geometry/growthcurve.h"
#include "blade/process/modelsmanager.h"
#include "blade/project/leaffacts.h"
#include "system/dataset.h"

#include <QString>

#include <string>
#include <vector>

/// Measures every leaf of the stack and writes the two tables `<prefix>_LeafMeasures.data` (a row
/// a slice) and `<prefix>_PeakMeasures.data` (a row a tooth).
///
/// The blade is the run of contour vertices from the first to the second petiole junction, both
/// included. Contour indices below the apex are the upper half, those above it the lower half.
/// The `compute...` operations work on the slice read last, in pixels; the tables hold lengths
/// times the slice's pixel width, areas times its square.
///
/// Made for one run: the tables start empty and are filled by `process`, slice by slice.
class LeafAnalysis : public ModelsManager
{
public:
    LeafAnalysis();

    void setOutputPath(const QString& path) { outputPath = path.toUtf8().toStdString(); }

    void setPrefix(const QString& text) { prefix = text.toUtf8().toStdString(); }

    /// The facts of the project; they do not stand in the tables.
    void setFacts(const LeafFacts& value) { facts = value; }

    void setProjectName(const QString& name) { facts.projectName = name; }

    const QString& getProjectName() const { return facts.projectName; }

    void setSpecie(const QString& name) { facts.specie = name; }

    const QString& getSpecie() const { return facts.specie; }

    void setGenotype(const QString& name) { facts.genotype = name; }

    const QString& getGenotype() const { return facts.genotype; }

    void setLeafGroup(const QString& name) { facts.leafGroup = name; }

    const QString& getLeafGroup() const { return facts.leafGroup; }

    void setGrowthConditions(const QString& text) { facts.growthCondition = text; }

    const QString& getGrowthConditions() const { return facts.growthCondition; }

    void setGrowth(const GrowthCurve& curve) { growth = curve; }

    void setStrength(float value) { growth.strength = value; }

    void setInflection(float days) { growth.inflection = days; }

    void setScaling(float length) { growth.scaling = length; }

    /// Measures all slices, saves both tables over those of an earlier run, and tells "Analysis is
    /// complete", or which table can't be written; `isSaved` tells the same to a caller.
    void run() override;

    /// Appends the measures of one slice to the tables; always returns the empty text. The slice
    /// needs a contour, two junctions and an apex; one that lacks any of them gets no row.
    std::string process(int slice) override;

    /// Makes no model.
    void createModels() override;

    /// Both tables of the last run stand on the disk, whole.
    bool isSaved() const { return saved; }

    /// The slices that got no row.
    const std::vector<int>& getLeftOut() const { return leftOut; }

    const DataSet& getLeafTable() const { return leafTable; }

    const DataSet& getPeakTable() const { return peakTable; }

    /// The files that `run` writes.
    std::string leafTablePath() const;
    std::string peakTablePath() const;

    /// Area of the blade, positive for a contour of positive orientation; `petiole` holds the two
    /// junction indices in ascending order, here and below.
    float computeAreaLeaf(const Vector<int>& petiole, const Curve<float>& contour) const;
    /// Area of the blade's convex hull.
    float computeAeraHull(const Vector<int>& petiole, const Curve<float>& contour) const;
    /// Perimeter of the blade, the chord between the junctions included.
    float computeBladePerimeter(const Vector<int>& petiole) const;
    /// Perimeter of the blade's convex hull.
    float computePerimeterHull(const Vector<int>& petiole) const;
    /// Distance of the two junctions as they are stored.
    float comptuteDistanceInterPetiole() const;
    /// Width of the blade across its axis: the greatest distance of a contour vertex from the axis
    /// on the one half plus that on the other.
    float computeDistanceProjectionWidth(const Vector<int>& petiole, int apex) const;
    /// The same over the sorted sinuses; NaN unless both halves have a sinus off the axis.
    float
    comptuteWidthBlade(const Vector<int>& sinuses, const Vector<int>& petiole, int apex) const;
    /// Perimeter squared over 4 pi times the area: 1 for a circle, more the more a shape is cut.
    float computeReversedCircularity(float perimeter, float area) const;

    /// Width, altitude and median height of the tooth between the contour indices `s0` < `s1`; the
    /// median height reaches from the chord's middle to the tip between them, 0 without one.
    float computeWidthTooth(int s0, int s1) const;
    float computeHeightTooth(const Curve<float>& contour, int s0, int s1) const;
    float computeHeightMedianTooth(int s0, int s1) const;
    float distanceHeightMedianTooth(int s0, int s1) const;
    /// Distance of each vertex strictly between two indices to the line through them, 0 elsewhere.
    Vector<float> distanceSegment(const Curve<float>& curve, int i0, int i1) const;
    /// Distance of a point to the infinite line through a segment.
    float findVertexDistance(const Vector<float>& vertex, const Edge<float>& segment) const;
    /// Signed area of a closed tooth polygon; length of an open tooth chain.
    float computeAireTooth(const Curve<float>& polygon) const;
    float computeToothPerimeter(const Curve<float>& chain) const;
    /// Pearson's second coefficient of skewness of the places of the chain's vertices along its
    /// chord: 3 (mean - median) / standard deviation, over 100 of 101 equally spaced vertices.
    float comptuteSkewness(const Curve<float>& chain) const;
    /// Length of the flank from `s0` to the tip `k` over that from the tip to `s1`.
    float comptuteAsymmetry(const Curve<float>& chain, int s0, int s1, int k) const;
    /// The blade axis: from the middle of the junctions to the apex.
    Edge<float> computeSegPetioleApex(const Vector<int>& petiole, int apex) const;
    /// Place of contour vertex `s` along the blade axis in per cent: 0 at the apex, 100 at the
    /// base, without sign.
    float computeDistanceProjectionSinusApex(int s, const Vector<int>& petiole, int apex) const;

private:
    /// The values of a leaf that its row and the rows of its teeth share.
    struct Leaf
    {
        std::string name;
        float calibration;
        float length;
        float ageDays;
        float boundingWidth;
        float sinusWidth;
        float area;
        float perimeter;
        float petioleWidth;
        int upperTeeth;
        int lowerTeeth;
    };

    void declareColumns();
    Curve<float> bladeCurve(const Vector<int>& petiole, const Curve<float>& contour) const;
    Curve<float> bladeHull(const Vector<int>& petiole, const Curve<float>& contour) const;
    Leaf measureLeaf(int row, int slice, const Vector<int>& petiole, int apex);
    void writeToothCounts(int row, Leaf& leaf, const Vector<int>& sinuses, int apex);

    void measureTeeth(int firstRow,
                      const Leaf& leaf,
                      const Vector<int>& sinuses,
                      const Vector<int>& petiole,
                      int apex);
    void writeTooth(int row,
                    const Leaf& leaf,
                    int position,
                    const char* side,
                    int s0,
                    int s1,
                    int tip,
                    float medianHeight,
                    float fromTheTip);
    int tipOfTooth(const Vector<int>& tips, int rank, int s0, int s1) const;
    float medianHeight(const Vector<int>& tips, int s0, int s1) const;
    Curve<float> toothChain(int s0, int s1) const;

    std::string outputPath;
    std::string prefix;
    LeafFacts facts;
    GrowthCurve growth;
    DataSet leafTable;
    DataSet peakTable;
    bool saved = false;
    std::vector<int> leftOut;
};
