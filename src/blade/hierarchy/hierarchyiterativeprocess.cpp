#include "blade/hierarchy/hierarchyiterativeprocess.h"

#include "shape/curves/fourierdescriptors.h"
#include "stack/modelitem.h"

#include <algorithm>
#include <cmath>

namespace {

enum Row { HalfLeafAngle, SmoothAngle, Difference, Flag };

constexpr float leastSmoothing = 0.5f;
constexpr int leastDescriptors = 2;
constexpr float noDifference = 1000.0f;

} // namespace

std::string HierarchyIterativeProcess::process(int slice)
{
    getModels(slice);
    if (!verifyModels()) {
        return "";
    }
    Curve<float> smooth = createSmoothBlade();
    const float length = contour->length();
    const float step =
        static_cast<float>(double(length / static_cast<float>(contour->getSize())) * 1.3);
    const int size = step > 0.0f ? static_cast<int>(smooth.length() / step) : 0;
    if (size < 3) {
        return "";
    }
    smooth = smooth.resample(size);
    const int h = static_cast<int>(double(length) * 0.01 / double(step));
    const Vertices<float> secondary = computeToothHierarchy(smooth, h);
    if (secondary.getSize() == 0) {
        return "";
    }
    createModelsItemsSecondary(slice);
    updateSecondaryStructure(secondary);
    updatePeaks();
    dropIfEmpty(secondaryPeakItem, false);
    dropIfEmpty(primaryPeakItem, true);
    return "";
}

Curve<float> HierarchyIterativeProcess::createSmoothBlade() const
{
    Curve<float> smooth = *contour;
    smooth.detach();
    const FourierDescriptors<float> descriptors;
    Vector<float> real;
    Vector<float> imaginary;
    descriptors.computeForward(smooth, real, imaginary);
    const int count = descriptors.numDescriptorsFromFidelity(real, imaginary, leastSmoothing);
    descriptors.filter(smooth, std::max(count, leastDescriptors));
    return smooth;
}

float HierarchyIterativeProcess::calculCurvature(const Vector<float>& centre,
                                                 const Vector<float>& previous,
                                                 const Vector<float>& next) const
{
    const Vector<float> u = previous - centre;
    const Vector<float> w = next - centre;
    float theta = u.angle(w);
    if (std::isnan(theta) && u.norm() > 0.0f && w.norm() > 0.0f) {
        // Of parallel vectors, where rounding led beyond the range of the arc cosine: a straight
        // contour has no notch, and not none that could be told.
        theta = u.scalarProduct(w) > 0.0f ? 0.0f : static_cast<float>(3.141592653589793);
    }
    const float value = static_cast<float>(double(theta * 180.0f) / 3.141592653589793);
    return u[0] * w[1] - u[1] * w[0] > 0.0f ? 360.0f - value : value;
}

void HierarchyIterativeProcess::calculateSmoothCurvature(const Vertices<float>& smooth,
                                                         Matrix<float>& table,
                                                         int h) const
{
    Vector<int> indexes = primarySinus->closestPointMap(smooth);
    indexes.sort();
    const int size = smooth.getSize();
    const int reach = h % size;
    for (int k = 0; k < indexes.getSize(); ++k) {
        const int low = (indexes[k] - reach + size) % size;
        const int high = (indexes[k] + reach) % size;
        table[SmoothAngle][k] = calculCurvature(smooth[indexes[k]], smooth[low], smooth[high]);
    }
}

/// The junction of rank 0 or 1 along the contour.
const Vector<float>& HierarchyIterativeProcess::junction(int rank) const
{
    const Vector<int> indexes = indexesPetiole();
    return (*petiole)[indexes[0] <= indexes[1] ? rank : 1 - rank];
}

void HierarchyIterativeProcess::calculatHalfLeafCurvature1(const Vertices<float>& lower,
                                                           int N,
                                                           Matrix<float>& table) const
{
    Vector<float>& angles = table[HalfLeafAngle];
    const Vector<float>& tip = (*apex)[0];
    if (N == 0) {
        angles[0] = calculCurvature(lower[0], junction(0), tip);
        return;
    }
    angles[0] = calculCurvature(lower[0], junction(0), lower[1]);
    for (int k = 1; k < N; ++k) {
        angles[k] =
            calculCurvature(lower[k], lower[previousSinus(table, k)], lower[nextSinus(table, k)]);
    }
    angles[N] = calculCurvature(lower[N], lower[N - 1], tip);
}

void HierarchyIterativeProcess::calculatHalfLeafCurvature2(const Vertices<float>& upper,
                                                           int N,
                                                           Matrix<float>& table) const
{
    Vector<float>& angles = table[HalfLeafAngle];
    const Vector<float>& tip = (*apex)[0];
    const int first = N + 1;
    const int last = table.getSize2() - 1;
    if (first == last) {
        angles[first] = calculCurvature(upper[0], tip, junction(1));
        return;
    }
    angles[first] = calculCurvature(upper[0], tip, upper[1]);
    for (int k = first + 1; k < last; ++k) {
        angles[k] = calculCurvature(upper[k - first], upper[previousSinus(table, k) - first],
                                    upper[nextSinus(table, k) - first]);
    }
    angles[last] = calculCurvature(upper[last - first], upper[last - first - 1], junction(1));
}

int HierarchyIterativeProcess::previousSinus(const Matrix<float>& table, int column) const
{
    int k = column - 1;
    while (k > 0 && table[Flag][k] != 1.0f) {
        --k;
    }
    return std::max(k, 0);
}

int HierarchyIterativeProcess::nextSinus(const Matrix<float>& table, int column) const
{
    const int last = table.getSize2() - 1;
    int k = column + 1;
    while (k < last && table[Flag][k] != 1.0f) {
        ++k;
    }
    return std::min(k, last);
}

void HierarchyIterativeProcess::removeSecondarySinus(Matrix<float>& table, int N) const
{
    const int columns = table.getSize2();
    if (columns < 3) {
        return;
    }
    int loser = -1;
    float smallest = noDifference;
    for (int k = 1; k < columns - 1; ++k) {
        const float difference = table[Difference][k];
        if (k != N && k != N + 1 && table[Flag][k] == 1.0f &&
            difference < -(table[SmoothAngle][k] * tolerance) && difference < smallest) {
            smallest = difference;
            loser = k;
        }
    }
    if (loser >= 0) {
        table[Flag][loser] = 0.0f;
    }
}

int HierarchyIterativeProcess::split(Vertices<float>& lower, Vertices<float>& upper) const
{
    const Vector<int> indexes = indexesPrimarySinuses();
    std::vector<std::pair<int, int>> order;
    for (int k = 0; k < indexes.getSize(); ++k) {
        order.emplace_back(indexes[k], k);
    }
    std::sort(order.begin(), order.end());
    const int apexPosition = apexIndex();
    for (const auto& [index, k] : order) {
        (index < apexPosition ? lower : upper).append((*primarySinus)[k]);
    }
    return std::max(lower.getSize() - 1, 0);
}

Vertices<float> HierarchyIterativeProcess::computeToothHierarchy(const Curve<float>& smooth,
                                                                 int h) const
{
    Vertices<float> lower(2, 0, 0, 16);
    Vertices<float> upper(2, 0, 0, 16);
    Vertices<float> secondary(2, 0, 0, 16);
    const int N = split(lower, upper);
    if (lower.getSize() == 0 || upper.getSize() == 0) {
        return secondary;
    }
    Matrix<float> table(4, lower.getSize() + upper.getSize());
    table.setZeros();
    table[Flag].fill(1.0f);
    calculateSmoothCurvature(smooth, table, h);
    int previous = 0;
    int primary = table.getSize2();
    while (primary != previous) {
        previous = primary;
        calculatHalfLeafCurvature1(lower, N, table);
        calculatHalfLeafCurvature2(upper, N, table);
        table[Difference] = table[HalfLeafAngle] - table[SmoothAngle];
        removeSecondarySinus(table, N);
        primary = static_cast<int>(table[Flag].sum());
    }
    for (int k = 0; k < table.getSize2(); ++k) {
        if (table[Flag][k] == 0.0f) {
            secondary.append(k <= N ? lower[k] : upper[k - N - 1]);
        }
    }
    return secondary;
}
