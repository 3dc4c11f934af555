#pragma once

#include "blade/geometry/axisrotation.h"
#include "blade/geometry/growthcurve.h"
#include "blade/process/modelsmanager.h"
#include "numerics/matrix.h"

#include <set>
#include <string>
#include <vector>

class BladeAveraging;
struct AverageSeries;
class PixelCalibration;

/// Averages the leaf outlines of the stack, by bins or by a sliding mean along blade length or age,
/// and writes the averages as curve files, blank images and a new stack.
///
/// The sort key of a leaf is its age in hours with the kinetic flag, else its blade length in the
/// stack's unit. A leaf whose key is no finite number takes part in no average, but its landmarks
/// count in the reference positions of the resampling. Outlines are resampled to equally many points
/// between corresponding landmarks (see `BladeResampling`), so that those of equal index correspond.
///
/// Made for one run, on the GUI thread. The stack stays as it is. A run raises `UsageError` for a
/// stack without slices and for a slice without contour, two junctions and an apex between them;
/// `ValueError` for a begin that is not below the end, for a number of averages below 1, for a name
/// of the stack that can't stand in the names of files, and where no average could be computed;
/// `FileWriteError` for what can't be written. All but the last come before anything is written.
class AveragingProcess : public ModelsManager
{
public:
    AveragingProcess();

    /// Does nothing; so do the next two.
    void run() override;
    std::string process(int slice) override;
    void createModels() override;

    /// Makes every average symmetric.
    void setSymmetrizationState(bool enabled) { symmetrization = enabled; }

    /// Primary tips, or sinuses, are landmarks of the resampling.
    void peakIsEnabled(bool enabled) { peakFlag = enabled; }

    void sinusIsEnabled(bool enabled) { sinusFlag = enabled; }

    void setResamplingPointsNumber(int points) { resamplingPoints = points; }

    int getResamplingPointsNumber() const { return resamplingPoints; }

    /// Teeth of averages that are not higher get no landmarks; in the stack's unit.
    void setMinimaToothHeight(float height) { minimaToothHeight = height; }

    /// The folder of all that is written, with a final "/"; it is made if it is not there.
    void setOutPath(const std::string& path) { outPath = path; }

    /// The neighbour rank of each target of the sliding averages.
    void setkOptima(const Vector<int>& ranks) { kOptima = ranks; }

    /// A file of bin limits, one a line in ascending order. They replace begin, end and number of
    /// the bins: a bin reaches from one limit up to the next, which belongs to the bin above.
    void setInputFileName(const std::string& filename) { inputFileName = filename; }

    /// A file of sort keys, one a line, each of which asks for one sliding average. Their ranks are
    /// searched like those of the evenly spaced targets that they replace.
    void setkOptimaFile(const std::string& filename) { kOptimaFile = filename; }

    /// Row 0 blade lengths, row 1 ages in hours, one column per slice.
    void setMeasurement(const Matrix<float>& measures) { measurement = measures; }

    const Matrix<float>& getMeasurement() const { return measurement; }

    /// The closed range of keys that take part in bins, and in whose parts the ranks of sliding
    /// averages are searched.
    void setBegin(float key) { begin = key; }

    float getBegin() const { return begin; }

    void setEnd(float key) { end = key; }

    float getEnd() const { return end; }

    void setSteps(float value) { steps = value; }

    float getStepsNumber() const { return steps; }

    /// Number of bins, or of sliding averages.
    void setAveragesNumber(int number) { averagesNumber = number; }

    int getAveragesNumber() const { return averagesNumber; }

    /// The sort key is age rather than length.
    void setKineticParameters(bool enabled) { kinetic = enabled; }

    void setGrowth(const GrowthCurve& curve) { growth = curve; }

    void setStrength(float value) { growth.strength = value; }

    void setInflection(float days) { growth.inflection = days; }

    void setScaling(float length) { growth.scaling = length; }

    /// How axes are turned where leaves are placed or made symmetric.
    void setAlignment(AxisAlignment value) { alignment = value; }

    // Measures

    /// Fills a matrix of two rows and a column a slice: blade lengths in the stack's unit, and ages
    /// in hours with the kinetic flag, else 0. Raises `UsageError` for a slice that lacks landmarks.
    void initializationMeasure(Matrix<float>& measures);

    /// Smallest and largest finite key of the measurement; false if there is none.
    bool keyRange(float& smallest, float& largest) const;

    // Bins

    /// Averages by bins of about equal population, and writes them.
    void runHomogeousAveragingMethod();

    /// Six rows, a column for each leaf whose key lies from begin to end: slice index, blade length,
    /// age (0 without kinetic flag), apex index, bin number, centre of the bin. A leaf on a limit
    /// belongs to the bin above.
    Matrix<float> buildHomogeneousMeasurementMatrix();

    /// The columns by ascending key, equal keys in slice order. Counts the leaves of each bin and
    /// sets its centre, in entries that the caller has zeroed.
    Matrix<float> sortingHomogeneousMeasures(const Matrix<float>& bins,
                                             Vector<int>& counts,
                                             Vector<float>& centres) const;

    // Sliding averages

    /// The neighbour rank of each target, by the variability of blade area over hull area; writes
    /// optima.csv.
    Vector<int> computeOptimaKnn();

    /// Averages at evenly spaced keys, or at those of the file, and writes them, with their
    /// bandwidths in bandwidths.csv.
    void runSlidingAveragingMethod();

    /// Three rows, a column a leaf with a finite key, by ascending key: slice index, blade length
    /// rounded to an integer, age (0 without kinetic flag).
    Matrix<float> buildMeasurementMatrix();

    // Corresponding points; lists have an entry a slice, see `BladeResampling`

    /// The resampled outlines, one a slice; the caller owns them. `O` receives the points of each
    /// interval between landmarks.
    std::vector<Curve<float>*> computeResampling(Vector<int>& O);

    void findLandmarks(std::vector<Vector<int>>& firstLists,
                       std::vector<Vector<int>>& secondLists,
                       Vector<int>& apexes,
                       Vector<int>& n1,
                       Vector<int>& n2);

    /// The places of a list's landmarks along its half, 0 to 0.5, added to `sum`; a list of another
    /// length than `n` is skipped.
    void computeIntervals(const Vector<int>& list,
                          Vector<float>& differences,
                          Vector<float>& cumulated,
                          Vector<float>& sum,
                          int n,
                          int& count) const;

    /// The mean places over the lists of lengths `n1` and `n2`; equally spaced where there is none.
    void computeNormalizedIntervals(const std::vector<Vector<int>>& firstLists,
                                    const std::vector<Vector<int>>& secondLists,
                                    int n1,
                                    int n2,
                                    Vector<float>& A,
                                    Vector<float>& B) const;

    /// The reference places of all landmarks on the whole contour, 0 to 1.
    Vector<float> averageNormalizedIntervals(const std::vector<Vector<int>>& firstLists,
                                             const std::vector<Vector<int>>& secondLists,
                                             int n1,
                                             int n2) const;

    /// The nine of a leaf with one tooth on each half; equally spaced where no half has just one.
    Vector<float>
    averageNormalizedIntervalsForOneTooth(const std::vector<Vector<int>>& firstLists,
                                          const std::vector<Vector<int>>& secondLists) const;

    // Outputs

    /// The averages in their common frame: middle of the junctions in the origin, vertex `middle` on
    /// the positive first axis, z = 0; made symmetric if that is asked for. Empty ones stay empty.
    void trajectoriesSymmetrization(const std::vector<Curve<float>>& in,
                                    std::vector<Curve<float>>& out,
                                    int middle) const;
    void trajectoriesSymmetrization(const std::vector<Curve<float>*>& in,
                                    std::vector<Curve<float>>& out,
                                    int middle) const;

    /// Adds slice `index` to the stack, the average as a leaf like any other: writes the blank image
    /// name.tif and the curve name-sampled.cv in its pixels, and draws contour, junctions, apex, and
    /// what other landmarks are enabled. `curve` ends in that image; `calibration` gets its pixel
    /// width. `O` as from `computeResampling`.
    void createTiff(int index,
                    const std::string& name,
                    float position,
                    const Vector<int>& O,
                    Stack& target,
                    Curve<float>& curve,
                    PixelCalibration& calibration);

private:
    using Curves = std::vector<Curve<float>>;

    // Of the slice read last.
    void requireLandmarks(const std::string& sliceName) const;

    // Measures and bins, averagingprocess.cpp
    void requireMeasurement();
    float key(int slice) const;
    bool takesPart(int slice) const;
    // Each fills the matrix of the public operation that sorts or rounds it.
    Matrix<float> initializationHomogeneousMeasures();
    Matrix<float> initializationMeasures();
    Vector<float> binLimits(const Vector<float>& sortedKeys) const;
    void setUpAveraging(BladeAveraging& averaging) const;
    void readUserLimits();
    Vector<float> userTargets() const;
    void requireRange(const char* where, bool closed) const;
    std::string leavesWithoutAge() const;

    // The runs, averagingruns.cpp
    void requireLeaves(const char* where, int number) const;
    Vector<float> shapeDescriptor(const Matrix<float>& leaves);

    // Outputs, averageoutputs.cpp
    std::string prefix() const;
    void prepareOutput(const char* where);
    void removeFormer(const std::string& start, const std::set<std::string>& written) const;
    void writeAverages(const AverageSeries& series, Curves& shapes, const Vector<int>& O);
    void fillTarget(Stack& target);
    void drawLandmarks(Stack& target,
                       int index,
                       const Curve<float>& curve,
                       const Vector<int>& O,
                       float pixelWidth);
    ModelItem* drawItem(Stack& target, int index, Model& model, const Vertices<int>& vertices);

    // As the page opens: with no points at all there is no outline to average.
    bool symmetrization = true;
    bool peakFlag = false;
    bool sinusFlag = false;
    int resamplingPoints = 1000;
    float minimaToothHeight = 0.0f;
    std::string outPath;
    Vector<int> kOptima;
    std::string inputFileName;
    std::string kOptimaFile;
    Matrix<float> measurement;
    float begin = 0.0f;
    float end = 0.0f;
    float steps = 0.0f;
    int averagesNumber = 0;
    bool kinetic = false;
    GrowthCurve growth;
    AxisAlignment alignment = AxisAlignment::PositiveSine;
    Vector<float> userLimits;
};
