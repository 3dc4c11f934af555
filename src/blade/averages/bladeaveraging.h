#pragma once

#include "blade/geometry/axisrotation.h"
#include "blade/geometry/growthcurve.h"
#include "numerics/matrix.h"
#include "shape/curves/curve.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

/// Averages of leaf outlines, made for one run.
///
/// The outlines are open curves in space, equally long, whose vertices of equal index correspond:
/// from the one petiole junction over the apex to the other junction. A leaf's sort key is its blade
/// length or its age. Sliding averages are means of all leaves, weighted by a Gaussian around a
/// target key; its width, the bandwidth, is the distance from the target to its k-th nearest key.
class BladeAveraging
{
public:
    void setGrowth(const GrowthCurve& curve) { growth = curve; }

    void setStrength(float value) { growth.strength = value; }

    void setInflection(float days) { growth.inflection = days; }

    void setScaling(float length) { growth.scaling = length; }

    void setNumberOfAverages(int number) { numberOfAverages = number; }

    void setBegin(float key) { begin = key; }

    void setEnd(float key) { end = key; }

    void setSteps(float value) { steps = value; }

    void setSymmetrization(bool value) { symmetrization = value; }

    /// The rank of each target.
    void setKOptimal(const Vector<int>& ranks) { kOptimal = ranks; }

    void setAlignment(AxisAlignment value) { alignment = value; }

    /// Targets in place of the evenly spaced ones; their number becomes that of the averages.
    void setTargets(const Vector<float>& keys);

    /// Called before each bin with its number and the number of bins.
    void setProgressListener(std::function<void(int, int)> listener)
    {
        progressListener = std::move(listener);
    }

    /// Distance of two evenly spaced targets, and the first target, of the last run.
    float getDeltaX() const { return deltaX; }

    float getXCoord() const { return xCoord; }

    /// The targets of the last run, and for each a row 0 with its rank and a row 1 with its
    /// bandwidth.
    const Vector<float>& getTargets() const { return usedTargets; }

    const Matrix<float>& getKnnParameters() const { return knnParameters; }

    /// For each bin the mean of its leaves, which are first registered onto each other; an empty
    /// curve for fewer than two leaves. `sorted` has a column a leaf with the index of its curve in
    /// row 0 and its bin in row 4, `counts` the number of leaves of each bin. The curves stay as
    /// they are.
    void computeNewHomogeneousAverages(const std::vector<Curve<float>*>& curves,
                                       std::vector<Curve<float>>& averages,
                                       const Matrix<float>& sorted,
                                       const Vector<int>& counts) const;

    /// The rank of each target: `K` gets one a target. `X` are the keys in ascending order, `r` a
    /// shape descriptor of each leaf. On the way from the rank of the least relative standard
    /// deviation of the weighted descriptor to greater ranks, the last one that stays within 5% of
    /// the range of all such deviations, plus 2. Writes targets and ranks to `path`/optima.csv.
    /// Raises `SizeError` for fewer than two leaves or another number of descriptors, `MathError`
    /// where a deviation is not finite, `FileWriteError`.
    void computeOptimaKnn(const Vector<float>& X,
                          const Vector<float>& r,
                          Vector<int>& K,
                          const std::string& path) const;

    /// The greatest rank to be searched, at least 2: the mean number of leaves within the bandwidth
    /// h of a target; and h itself. Source of h: B. W. Silverman, Density Estimation for Statistics
    /// and Data Analysis, 1986, equation 3.31.
    std::vector<float> computeOptimalKNNParameter(const Vector<float>& X,
                                                  const Vector<float>& T) const;

    /// Distance from `target` to its k-th nearest value in `X`, the farthest for a greater `k`.
    float computeBandWith(const Vector<float>& X, float target, int k) const;

    /// The values in ascending order, each once.
    Vector<float> sortedAndUnique(const Vector<float>& X) const;

    /// For each value of `X` a weight that balances uneven spacing: the mass of the Gaussian in the
    /// cell of the value, shared by equal values. The cells meet halfway between neighbouring values
    /// in terms of the mass; the lowest begins at 0, and the highest reaches to infinity. Weights
    /// below 1e-5 are 0, and the rest is not normalised: the sum is 1 less half the distribution
    /// function at 0 and less what was dropped.
    Vector<double> balanceSample(const Vector<float>& X, float mean, float sigma) const;

    /// Row 0: the ranks; row 1: the bandwidth of each target. `SizeError` unless there are as many
    /// ranks as targets.
    Matrix<float> computeKnnParameters(const Vector<float>& X,
                                       const Vector<float>& T,
                                       const Vector<int>& K) const;

    /// An average for each target. `S` holds the index of the curve of each entry of `X`, the keys
    /// in ascending order. Without targets of the caller's own they lie in the middles of equal
    /// parts of the range of `X`. Each leaf is moved with the middle of its junctions to the origin
    /// and turned by `axisRotation`, then by half a turn if its tip lies behind its base. `kinetic`
    /// tells that the keys are ages; nothing depends on it.
    void computeSlidingAverages(const std::vector<Curve<float>*>& curves,
                                std::vector<Curve<float>>& averages,
                                const Vector<int>& S,
                                const Vector<float>& X,
                                bool kinetic);

    /// See `axisRotation`.
    SquareMatrix<float> computeRotationMatrix(const Vector<float>& a, const Vector<float>& b) const;

private:
    Vector<float> searchTargets() const;
    void placeTargets(const Vector<float>& X);
    Curve<float> placed(const Curve<float>& curve) const;
    Curve<float> averageOfBin(const std::vector<const Curve<float>*>& leaves) const;

    GrowthCurve growth;
    int numberOfAverages = 0;
    float begin = 0.0f;
    float end = 0.0f;
    float steps = 0.0f;
    bool symmetrization = true;
    float deltaX = 0.0f;
    float xCoord = 0.0f;
    Vector<int> kOptimal;
    AxisAlignment alignment = AxisAlignment::PositiveSine;
    Vector<float> targets;
    Vector<float> usedTargets;
    Matrix<float> knnParameters;
    std::function<void(int, int)> progressListener;
};
