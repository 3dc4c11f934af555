// Part of `BladeAveraging`: sliding averages: the search of neighbour ranks, the weights, and the
// weighted means.

#include "blade/averages/bladeaveraging.h"
#include "numerics/gauss.h"
#include "system/dataset.h"
#include "system/exception.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double leastWeight = 1e-5;
// The part of the range of all deviations by which a rank may be worse than the best one.
constexpr double tolerance = 0.05;
// The part of the targets over which ranks are smoothed, on either side, from a span of 4 on.
constexpr double smoothing = 0.015;

/// Distances of the values from the target, ascending.
Vector<float> sortedDistances(const Vector<float>& X, float target)
{
    Vector<float> distances(X.getSize());
    for (int j = 0; j < X.getSize(); ++j) {
        distances[j] = std::fabs(target - X[j]);
    }
    distances.sort();
    return distances;
}

float nearest(const Vector<float>& distances, int rank)
{
    return distances[std::clamp(rank, 1, distances.getSize()) - 1];
}

/// Standard deviation of the weighted descriptor in per cent of its mean.
float relativeDeviation(const Vector<float>& r, const Vector<double>& w)
{
    double mean = 0.0;
    for (int j = 0; j < r.getSize(); ++j) {
        mean += r[j] * w[j];
    }
    double variance = 0.0;
    for (int j = 0; j < r.getSize(); ++j) {
        variance += (r[j] - mean) * (r[j] - mean) * w[j];
    }
    return static_cast<float>(std::sqrt(variance) / mean * 100.0);
}

/// Evenly spaced targets, `first` the first one.
Vector<float> spacedTargets(int number, float first, float step)
{
    Vector<float> T(number);
    for (int i = 0; i < number; ++i) {
        T[i] = i == 0 ? first : T[i - 1] + step;
    }
    return T;
}

int rankOfColumn(const Matrix<float>& deviations, int target, float band)
{
    const Vector<float> column = deviations.getColumn(target);
    int q = column.minPos();
    const float threshold = band + column[q];
    while (q + 1 < column.getSize() && column[q + 1] < threshold) {
        ++q;
    }
    return q + 3;
}

/// In place, so that earlier entries are smoothed already; entry 0 never counts.
void smooth(Vector<int>& K)
{
    const int n = K.getSize();
    const int span = static_cast<int>(n * smoothing);
    if (span <= 3) {
        return;
    }
    for (int i = 0; i < n; ++i) {
        int sum = 0;
        int count = 0;
        for (int j = std::max(1, i - span); j <= std::min(n - 1, i + span - 1); ++j) {
            sum += K[j];
            ++count;
        }
        K[i] = sum / count;
    }
}

void saveRanks(const Vector<float>& T, const Vector<int>& K, const std::string& path)
{
    DataSet table;
    table.setValues("timePoint", T);
    table.setValues("optima", K);
    const std::string filename =
        path + (path.empty() || path.back() == '/' ? "" : "/") + "optima.csv";
    if (!table.save(filename, true)) { // a user who looks for the ranks must not find older ones
        raiseFile<FileWriteError>("void BladeAveraging::computeOptimaKnn(...) const",
                                  "Cannot write the table of ranks", filename);
    }
}

} // namespace

Vector<float> BladeAveraging::searchTargets() const
{
    if (targets.getSize() > 0) {
        return targets;
    }
    const float step = (end - begin) / static_cast<float>(numberOfAverages);
    return spacedTargets(numberOfAverages, static_cast<float>(step * 0.5 + begin), step);
}

void BladeAveraging::computeOptimaKnn(const Vector<float>& X,
                                      const Vector<float>& r,
                                      Vector<int>& K,
                                      const std::string& path) const
{
    const char* where = "void BladeAveraging::computeOptimaKnn(...) const";
    if (X.getSize() < 2 || r.getSize() != X.getSize()) {
        raise<SizeError>(where, "At least two leaves and a descriptor of each expected");
    }
    const Vector<float> T = searchTargets();
    const int ranks = static_cast<int>(computeOptimalKNNParameter(X, T)[0]);
    Matrix<float> deviations(ranks, T.getSize());
    for (int i = 0; i < T.getSize(); ++i) {
        const Vector<float> distances = sortedDistances(X, T[i]);
        for (int k = 1; k <= ranks; ++k) {
            const Vector<double> w = balanceSample(X, T[i], nearest(distances, k));
            deviations[k - 1][i] = relativeDeviation(r, w);
            if (!std::isfinite(deviations[k - 1][i])) {
                raise<MathError>(where, "The deviation of the descriptor is not finite");
            }
        }
    }
    float smallest = deviations[0][0];
    float largest = smallest;
    for (int k = 0; k < ranks; ++k) {
        smallest = std::min(smallest, deviations[k].min());
        largest = std::max(largest, deviations[k].max());
    }
    const float band = static_cast<float>((largest - smallest) * tolerance);
    K.setSize(T.getSize());
    for (int i = 0; i < T.getSize(); ++i) {
        K[i] = rankOfColumn(deviations, i, band);
    }
    smooth(K);
    saveRanks(T, K, path);
}

std::vector<float> BladeAveraging::computeOptimalKNNParameter(const Vector<float>& X,
                                                              const Vector<float>& T) const
{
    const auto n = static_cast<float>(X.getSize());
    const double sigma = X.std() * std::sqrt(static_cast<double>(n / (n - 1.0f)));
    const double quartiles = (X.percentile(75.0f) - X.percentile(25.0f)) / 1.34;
    const auto h = static_cast<float>(0.9 * std::min(quartiles, sigma) *
                                      std::pow(static_cast<double>(n), -0.2));
    Vector<float> counts(T.getSize());
    for (int t = 0; t < T.getSize(); ++t) {
        const Vector<float> distances = sortedDistances(X, T[t]);
        const float* first = distances.data();
        const float* beyond = std::upper_bound(first, first + distances.getSize(), h);
        counts[t] = static_cast<float>(std::max<std::ptrdiff_t>(beyond - first, 1));
    }
    const float mean = counts.mean();
    return {mean < 2.0f ? 2.0f : std::trunc(mean), h};
}

float BladeAveraging::computeBandWith(const Vector<float>& X, float target, int k) const
{
    return nearest(sortedDistances(X, target), k);
}

Vector<float> BladeAveraging::sortedAndUnique(const Vector<float>& X) const
{
    std::vector<float> values = X.toStlVector();
    std::sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end()), values.end());
    return Vector<float>(values);
}

Vector<double> BladeAveraging::balanceSample(const Vector<float>& X, float mean, float sigma) const
{
    const Vector<float> U = sortedAndUnique(X);
    const int m = U.getSize();
    const Gauss gauss;
    const auto cdf = [&](double x) {
        return gauss.cdf(x, static_cast<double>(mean), static_cast<double>(sigma));
    };
    Vector<double> at(m);
    for (int j = 0; j < m; ++j) {
        at[j] = cdf(static_cast<double>(U[j]));
    }
    Vector<double> P(m);
    const double lowest = cdf(static_cast<double>(std::numeric_limits<float>::min()));
    const double highest = cdf(static_cast<double>(std::numeric_limits<float>::max()));
    for (int j = 0; j < m; ++j) {
        P[j] = (j + 1 < m ? at[j + 1] : highest) - (j > 0 ? at[j - 1] : lowest);
    }
    P[0] += at[0];
    P[m - 1] += 1 - at[m - 1];

    const auto place = [&](float x) {
        return static_cast<int>(std::lower_bound(U.data(), U.data() + m, x) - U.data());
    };
    Vector<int> counts(m);
    counts.setZeros();
    for (int i = 0; i < X.getSize(); ++i) {
        ++counts[place(X[i])];
    }
    Vector<double> weights(X.getSize());
    for (int i = 0; i < X.getSize(); ++i) {
        const int j = place(X[i]);
        const auto weight = static_cast<float>(P[j] * 0.5 / counts[j]);
        weights[i] = static_cast<double>(weight) < leastWeight ? 0.0 : static_cast<double>(weight);
    }
    return weights;
}

Matrix<float> BladeAveraging::computeKnnParameters(const Vector<float>& X,
                                                   const Vector<float>& T,
                                                   const Vector<int>& K) const
{
    if (K.getSize() != T.getSize()) {
        raise<SizeError>("Matrix<float> BladeAveraging::computeKnnParameters(...) const",
                         "One rank per target expected");
    }
    Matrix<float> parameters(2, T.getSize());
    for (int t = 0; t < T.getSize(); ++t) {
        parameters[0][t] = static_cast<float>(K[t]);
        parameters[1][t] = computeBandWith(X, T[t], K[t]);
    }
    return parameters;
}

void BladeAveraging::placeTargets(const Vector<float>& X)
{
    const float smallest = X.min();
    deltaX = (X.max() - smallest) / static_cast<float>(numberOfAverages);
    xCoord = static_cast<float>(deltaX * 0.5 + smallest);
    usedTargets = targets.getSize() > 0 ? targets : spacedTargets(numberOfAverages, xCoord, deltaX);
}

Curve<float> BladeAveraging::placed(const Curve<float>& curve) const
{
    Curve<float> leaf = curve;
    leaf.detach();
    const int size = leaf.getSize();
    const int middle = (size - 1) / 2;
    const Vector<float> base = (leaf[size - 1] + leaf[0]) * 0.5f;
    leaf.translate(-base);
    Vector<float> axis(leaf.getSpace());
    axis.setCanonical(0);
    leaf.multiply(computeRotationMatrix(leaf[middle], axis));
    if (leaf[middle][0] < leaf[0][0]) {
        leaf *= -1.0f;
    }
    return leaf;
}

void BladeAveraging::computeSlidingAverages(const std::vector<Curve<float>*>& curves,
                                            std::vector<Curve<float>>& averages,
                                            const Vector<int>& S,
                                            const Vector<float>& X,
                                            bool)
{
    if (S.getSize() != X.getSize() || X.getSize() == 0) {
        raise<SizeError>("void BladeAveraging::computeSlidingAverages(...)",
                         "A key for each leaf, and at least one leaf, expected");
    }
    placeTargets(X);
    knnParameters = computeKnnParameters(X, usedTargets, kOptimal);

    // Where a leaf is placed does not depend on the target.
    std::vector<Vector<float>> leaves;
    for (int j = 0; j < S.getSize(); ++j) {
        leaves.push_back(placed(*curves[static_cast<std::size_t>(S[j])]).toVector());
    }
    const Curve<float>& first = *curves.front();
    averages.clear();
    for (int i = 0; i < usedTargets.getSize(); ++i) {
        const Vector<double> w = balanceSample(X, usedTargets[i], knnParameters[1][i]);
        Vector<float> sum(first.getSize() * first.getSpace());
        sum.setZeros();
        for (int j = 0; j < S.getSize(); ++j) {
            sum += leaves[static_cast<std::size_t>(j)] * static_cast<float>(w[j]);
        }
        Curve<float> average(first.getSpace(), first.getSize(), 0, 0, true);
        average.fromVector(sum);
        averages.push_back(average);
    }
}
