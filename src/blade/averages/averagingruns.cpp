// Part of `AveragingProcess`: the runs from the measures to the files.

#include "blade/averages/averageseries.h"
#include "blade/averages/averagingprocess.h"
#include "blade/averages/bladeaveraging.h"
#include "blade/measures/leafanalysis.h"
#include "interface/lmxstack.h"
#include "stack/stackslice.h"
#include "system/dataset.h"
#include "system/exception.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

/// The resampled outlines of a run.
class OwnedCurves
{
public:
    explicit OwnedCurves(std::vector<Curve<float>*> curves)
        : curves_(std::move(curves))
    {}

    ~OwnedCurves()
    {
        for (const Curve<float>* curve : curves_) {
            delete curve;
        }
    }

    OwnedCurves(const OwnedCurves&) = delete;
    OwnedCurves& operator=(const OwnedCurves&) = delete;

    const std::vector<Curve<float>*>& get() const { return curves_; }

private:
    std::vector<Curve<float>*> curves_;
};

/// In place, so that earlier entries are smoothed already; entry 0 never counts.
void smooth(Vector<float>& descriptor)
{
    const int size = descriptor.getSize();
    for (int j = 0; j < size; ++j) {
        float sum = 0.0f;
        int count = 0;
        for (int i = std::max(1, j - 5); i <= std::min(size - 1, j + 4); ++i) {
            sum += descriptor[i];
            ++count;
        }
        descriptor[j] = sum / static_cast<float>(count);
    }
}

/// The search of ranks goes by the range asked for, the averages by that of the leaves: a table each.
void saveBandwidths(const BladeAveraging& averaging, const std::string& folder)
{
    const Matrix<float>& parameters = averaging.getKnnParameters();
    DataSet table;
    table.setValues("timePoint", averaging.getTargets());
    table.setValues("optima", parameters[0].toType<int>());
    table.setValues("bandwidth", parameters[1]);
    const std::string filename = folder + "bandwidths.csv";
    if (!table.save(filename, true)) {
        raiseFile<FileWriteError>("void AveragingProcess::runSlidingAveragingMethod()",
                                  "Cannot write the table of bandwidths", filename);
    }
}

} // namespace

void AveragingProcess::runHomogeousAveragingMethod()
{
    const char* where = "void AveragingProcess::runHomogeousAveragingMethod()";
    readUserLimits();
    requireRange(where, true); // leaves of one length make one average
    const Matrix<float> bins = buildHomogeneousMeasurementMatrix();
    Vector<int> counts;
    counts.setZeros(averagesNumber);
    Vector<float> centres;
    centres.setZeros(averagesNumber);
    const Matrix<float> sorted = sortingHomogeneousMeasures(bins, counts, centres);
    prepareOutput(where);

    resetProgress();
    Vector<int> O;
    const OwnedCurves curves(computeResampling(O));
    BladeAveraging averaging;
    setUpAveraging(averaging);
    averaging.setProgressListener([this](int bin, int number) { showProgress(bin, number); });
    std::vector<Curve<float>> averages;
    averaging.computeNewHomogeneousAverages(curves.get(), averages, sorted, counts);
    std::vector<Curve<float>> shapes;
    trajectoriesSymmetrization(averages, shapes, (resamplingPoints - 1) / 2);

    AverageSeries series{"-ho-", numberLabels(averagesNumber), centres};
    for (int i = 0; kinetic && i < averagesNumber; ++i) {
        series.labels[static_cast<std::size_t>(i)] = keyLabel(centres[i], "h");
    }
    writeAverages(series, shapes, O);
}

void AveragingProcess::requireLeaves(const char* where, int number) const
{
    if (number < 2) {
        raise<ValueError>(where, "Sliding averages need at least two leaves");
    }
}

/// Blade area over hull area of each leaf of the matrix, smoothed in its order.
Vector<float> AveragingProcess::shapeDescriptor(const Matrix<float>& leaves)
{
    LeafAnalysis analysis;
    Vector<float> descriptor(leaves.getSize2());
    for (int j = 0; j < leaves.getSize2(); ++j) {
        const int slice = static_cast<int>(leaves[0][j]);
        getModels(slice);
        const Vector<int> junctions = findIndexPetiole(*contour);
        descriptor[j] = analysis.computeAreaLeaf(junctions, *contour) /
                        analysis.computeAeraHull(junctions, *contour);
        if (!(std::isfinite(descriptor[j]) && descriptor[j] > 0.0f)) {
            raise<ValueError>("Vector<int> AveragingProcess::computeOptimaKnn()",
                              "Slice " + stack->getSlice(slice).getName() +
                                  ": the blade has no area");
        }
    }
    smooth(descriptor);
    return descriptor;
}

Vector<int> AveragingProcess::computeOptimaKnn()
{
    const char* where = "Vector<int> AveragingProcess::computeOptimaKnn()";
    const Vector<float> targets = userTargets();
    if (targets.getSize() == 0) {
        requireRange(where, false); // no width of neighbours follows from one length
    }
    const Matrix<float> leaves = buildMeasurementMatrix();
    requireLeaves(where, leaves.getSize2());
    const Vector<float> descriptor = shapeDescriptor(leaves);
    prepareOutput(where);
    BladeAveraging averaging;
    setUpAveraging(averaging);
    averaging.setTargets(targets);
    Vector<float> keys = leaves[kinetic ? 2 : 1];
    keys.sort();
    Vector<int> K;
    averaging.computeOptimaKnn(keys, descriptor, K, outPath);
    return K;
}

void AveragingProcess::runSlidingAveragingMethod()
{
    const char* where = "void AveragingProcess::runSlidingAveragingMethod()";
    const Vector<float> targets = userTargets();
    if (targets.getSize() == 0) {
        requireRange(where, false);
    } else {
        averagesNumber = targets.getSize();
    }
    const Matrix<float> leaves = buildMeasurementMatrix();
    requireLeaves(where, leaves.getSize2());
    if (kOptima.getSize() == 0) {
        kOptima = computeOptimaKnn();
    }
    prepareOutput(where);

    resetProgress();
    Vector<int> O;
    const OwnedCurves curves(computeResampling(O));
    BladeAveraging averaging;
    setUpAveraging(averaging);
    averaging.setTargets(targets);
    std::vector<Curve<float>> averages;
    averaging.computeSlidingAverages(curves.get(), averages, leaves[0].toType<int>(),
                                     leaves[kinetic ? 2 : 1], kinetic);
    std::vector<Curve<float>> shapes;
    trajectoriesSymmetrization(averages, shapes, (resamplingPoints - 1) / 2);

    AverageSeries series{"-sa-", {}, averaging.getTargets()};
    for (int i = 0; i < series.positions.getSize(); ++i) {
        series.labels.push_back(keyLabel(series.positions[i], kinetic ? "h" : "\xC2\xB5"));
    }
    saveBandwidths(averaging, outPath);
    writeAverages(series, shapes, O);
}
