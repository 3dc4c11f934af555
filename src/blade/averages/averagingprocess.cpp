#include "blade/averages/averagingprocess.h"

#include "blade/averages/averagevalues.h"
#include "blade/averages/bladeaveraging.h"
#include "blade/geometry/convert2age.h"
#include "interface/lmxstack.h"
#include "stack/stackslice.h"
#include "system/exception.h"

#include <algorithm>
#include <cmath>
#include <locale>
#include <numeric>
#include <sstream>

namespace {

// The rows of the measurement.
constexpr int lengthRow = 0;
constexpr int ageRow = 1;

/// The matrix of the columns `order` of `matrix`, in that order.
Matrix<float> columns(const Matrix<float>& matrix, const std::vector<int>& order)
{
    Matrix<float> result(matrix.getSize1(), static_cast<int>(order.size()));
    for (int row = 0; row < matrix.getSize1(); ++row) {
        for (std::size_t j = 0; j < order.size(); ++j) {
            result[row][static_cast<int>(j)] = matrix[row][order[j]];
        }
    }
    return result;
}

/// The places of the keys in ascending order, equal ones in their order.
std::vector<int> ascendingOrder(const Vector<float>& keys)
{
    std::vector<int> order(static_cast<std::size_t>(keys.getSize()));
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return keys[a] < keys[b]; });
    return order;
}

Matrix<float> matrixOf(int rows, const std::vector<Vector<float>>& matrixColumns)
{
    Matrix<float> matrix(rows, static_cast<int>(matrixColumns.size()));
    for (std::size_t j = 0; j < matrixColumns.size(); ++j) {
        matrix.setColumn(static_cast<int>(j), matrixColumns[j]);
    }
    return matrix;
}

} // namespace

AveragingProcess::AveragingProcess() = default;

void AveragingProcess::run() {}

std::string AveragingProcess::process(int)
{
    return "";
}

void AveragingProcess::createModels() {}

void AveragingProcess::initializationMeasure(Matrix<float>& measures)
{
    const int slices = stack->getNumSlices();
    measures.setSize(2, slices);
    for (int i = 0; i < slices; ++i) {
        getModels(i);
        requireLandmarks(stack->getSlice(i).getName());
        const Vector<int> junctions = findIndexPetiole(*contour);
        const float width = stack->getSlice(i).getPixelCalibration().getPixelWidth();
        const float length = lengthLeaf(junctions, apexIndex()) * width;
        measures[lengthRow][i] = length;
        measures[ageRow][i] = kinetic
                                  ? Convert2Age().computeAgeHours(length, growth.strength,
                                                                  growth.inflection, growth.scaling)
                                  : 0.0f;
    }
}

float AveragingProcess::key(int slice) const
{
    return measurement[kinetic ? ageRow : lengthRow][slice];
}

bool AveragingProcess::keyRange(float& smallest, float& largest) const
{
    bool found = false;
    for (int i = 0; i < measurement.getSize2(); ++i) {
        const float value = key(i);
        if (std::isfinite(value)) {
            smallest = found ? std::min(smallest, value) : value;
            largest = found ? std::max(largest, value) : value;
            found = true;
        }
    }
    return found;
}

void AveragingProcess::requireMeasurement()
{
    const int slices = stack->getNumSlices();
    if (measurement.getSize1() != 2 || measurement.getSize2() != slices) {
        initializationMeasure(measurement);
    }
}

void AveragingProcess::requireRange(const char* where, bool closed) const
{
    if (averagesNumber < 1) {
        raise<ValueError>(where, "At least one average has to be asked for");
    }
    if (!(closed ? begin <= end : begin < end)) {
        std::ostringstream text;
        text.imbue(std::locale::classic());
        text << "The begin of the averages, " << begin << ", has to lie below their end, " << end;
        raise<ValueError>(where, text.str());
    }
}

std::string AveragingProcess::leavesWithoutAge() const
{
    std::string names;
    for (int i = 0; i < stack->getNumSlices(); ++i) {
        if (!std::isfinite(key(i))) {
            names += (names.empty() ? "" : ", ") + stack->getSlice(i).getName();
        }
    }
    return names.empty() ? "" : "Leaves without a finite age, left out: " + names;
}

void AveragingProcess::setUpAveraging(BladeAveraging& averaging) const
{
    averaging.setNumberOfAverages(averagesNumber);
    averaging.setSymmetrization(symmetrization);
    averaging.setAlignment(alignment);
    averaging.setKOptimal(kOptima);
    averaging.setBegin(begin);
    averaging.setEnd(end);
    averaging.setSteps(steps);
    if (kinetic) {
        averaging.setGrowth(growth);
    }
}

// Bins

void AveragingProcess::readUserLimits()
{
    if (!inputFileName.empty()) {
        userLimits = readBinLimits(inputFileName);
        averagesNumber = userLimits.getSize() - 1;
        begin = userLimits[0];
        end = userLimits[averagesNumber];
    }
}

bool AveragingProcess::takesPart(int slice) const
{
    const float value = key(slice);
    return begin <= value && (userLimits.getSize() > 0 ? value < end : value <= end);
}

Vector<float> AveragingProcess::binLimits(const Vector<float>& sortedKeys) const
{
    if (userLimits.getSize() > 0) {
        return userLimits;
    }
    Vector<float> limits(averagesNumber + 1);
    limits[0] = begin;
    limits[averagesNumber] = end;
    float percent = 0.0f;
    for (int i = 1; i < averagesNumber; ++i) {
        percent = static_cast<float>(percent + 100.0 / averagesNumber);
        limits[i] = sortedKeys.percentile(percent);
    }
    return limits;
}

Matrix<float> AveragingProcess::initializationHomogeneousMeasures()
{
    std::vector<Vector<float>> leaves;
    std::vector<float> keys;
    for (int slice = 0; slice < stack->getNumSlices(); ++slice) {
        getModels(slice);
        requireLandmarks(stack->getSlice(slice).getName());
        if (takesPart(slice)) {
            Vector<float> leaf(6);
            leaf[0] = static_cast<float>(slice);
            leaf[1] = measurement[lengthRow][slice];
            leaf[2] = kinetic ? measurement[ageRow][slice] : 0.0f;
            leaf[3] = static_cast<float>(apexIndex());
            leaf[4] = leaf[5] = 0.0f;
            leaves.push_back(leaf);
            keys.push_back(key(slice));
        }
    }
    if (leaves.empty()) {
        raise<ValueError>("Matrix<float> AveragingProcess::buildHomogeneousMeasurementMatrix()",
                          "No leaf lies between begin and end of the averages");
    }
    Vector<float> sortedKeys(keys);
    sortedKeys.sort();
    const Vector<float> limits = binLimits(sortedKeys);
    for (int bin = 0; bin + 1 < limits.getSize(); ++bin) {
        for (std::size_t j = 0; j < leaves.size(); ++j) {
            if (limits[bin] <= keys[j] && keys[j] <= limits[bin + 1]) {
                leaves[j][4] = static_cast<float>(bin);
                leaves[j][5] = (limits[bin + 1] - limits[bin]) * 0.5f + limits[bin];
            }
        }
    }
    return matrixOf(6, leaves);
}

Matrix<float> AveragingProcess::buildHomogeneousMeasurementMatrix()
{
    requireMeasurement();
    return initializationHomogeneousMeasures();
}

Matrix<float> AveragingProcess::sortingHomogeneousMeasures(const Matrix<float>& bins,
                                                           Vector<int>& counts,
                                                           Vector<float>& centres) const
{
    const Matrix<float> sorted = columns(bins, ascendingOrder(bins[kinetic ? 2 : 1]));
    for (int j = 0; j < sorted.getSize2(); ++j) {
        const int bin = static_cast<int>(sorted[4][j]);
        ++counts[bin];
        centres[bin] = sorted[5][j];
    }
    return sorted;
}

// Sliding averages

Matrix<float> AveragingProcess::initializationMeasures()
{
    std::vector<Vector<float>> leaves;
    std::vector<float> keys;
    for (int slice = 0; slice < stack->getNumSlices(); ++slice) {
        if (std::isfinite(key(slice))) {
            Vector<float> leaf(3);
            leaf[0] = static_cast<float>(slice);
            leaf[1] = std::round(measurement[lengthRow][slice]);
            leaf[2] = kinetic ? measurement[ageRow][slice] : 0.0f;
            leaves.push_back(leaf);
            keys.push_back(key(slice));
        }
    }
    return columns(matrixOf(3, leaves), ascendingOrder(Vector<float>(keys)));
}

Matrix<float> AveragingProcess::buildMeasurementMatrix()
{
    requireMeasurement();
    return initializationMeasures();
}

Vector<float> AveragingProcess::userTargets() const
{
    return kOptimaFile.empty() ? Vector<float>() : readAverageTargets(kOptimaFile);
}
