// Part of `AveragingProcess`: the landmarks by which the leaves of a stack correspond, and their
// mean places along the contour.

#include "blade/averages/averagingprocess.h"
#include "blade/averages/bladeresampling.h"
#include "interface/lmxstack.h"
#include "stack/stackslice.h"
#include "system/exception.h"

#include <algorithm>
#include <vector>

namespace {

/// Sorts the indices into those before the apex and the others.
void distribute(const Vector<int>& indexes,
                int apex,
                std::vector<int>& first,
                std::vector<int>& second)
{
    for (int k = 0; k < indexes.getSize(); ++k) {
        (indexes[k] < apex ? first : second).push_back(indexes[k]);
    }
}

Vector<int> ascending(std::vector<int> indexes)
{
    std::sort(indexes.begin(), indexes.end());
    indexes.erase(std::unique(indexes.begin(), indexes.end()), indexes.end());
    return Vector<int>(indexes);
}

/// `first` followed by `second` without its first entry, at which both meet.
Vector<float> joined(const Vector<float>& first, const Vector<float>& second)
{
    Vector<float> result = first;
    result.append(second.copyFrom(1));
    return result;
}

/// The other half of the contour: reversed, each entry counted from `end`.
Vector<float> mirrored(const Vector<float>& positions, float end)
{
    Vector<float> result = positions;
    result.reverse();
    for (int i = 0; i < result.getSize(); ++i) {
        result[i] = end - result[i];
    }
    return result;
}

Vector<float> shifted(const Vector<float>& positions, float offset)
{
    Vector<float> result = positions;
    for (int i = 0; i < result.getSize(); ++i) {
        result[i] += offset;
    }
    return result;
}

} // namespace

std::vector<Curve<float>*> AveragingProcess::computeResampling(Vector<int>& O)
{
    if (stack->getNumSlices() == 0) {
        raise<UsageError>("vector<Curve<float>*> AveragingProcess::computeResampling(Vector<int>&)",
                          "The stack has no slice");
    }
    std::vector<Vector<int>> firstLists;
    std::vector<Vector<int>> secondLists;
    Vector<int> apexes;
    Vector<int> n1;
    Vector<int> n2;
    findLandmarks(firstLists, secondLists, apexes, n1, n2);
    const int m1 = n1.max();
    const int m2 = n2.max();
    const Vector<float> R = averageNormalizedIntervals(firstLists, secondLists, m1, m2);
    const Vector<float> T = averageNormalizedIntervalsForOneTooth(firstLists, secondLists);
    O.setSize(R.getSize() - 1);

    const int longer = std::max(m1, m2);
    BladeResampling resampler;
    resampler.setStack(*stack);
    resampler.setSinusState(sinusFlag);
    resampler.setPeakState(peakFlag);
    resampler.setResamplingPointNumber(resamplingPoints);
    resampler.setMaximumNumberLandmarksPerFirstHalfLeaf(symmetrization ? longer : m1);
    resampler.setMaximumNumberLandmarksPerSecondHalfLeaf(symmetrization ? longer : m2);
    resampler.setSymmetrizationState(symmetrization);
    resampler.setOuputResampledFiles(outPath);
    return resampler.resampling(firstLists, secondLists, n1, n2, R, T, O);
}

void AveragingProcess::findLandmarks(std::vector<Vector<int>>& firstLists,
                                     std::vector<Vector<int>>& secondLists,
                                     Vector<int>& apexes,
                                     Vector<int>& n1,
                                     Vector<int>& n2)
{
    const int slices = stack->getNumSlices();
    firstLists.clear();
    secondLists.clear();
    for (Vector<int>* numbers : {&apexes, &n1, &n2}) {
        numbers->setSize(slices);
    }
    for (int i = 0; i < slices; ++i) {
        getModels(i);
        requireLandmarks(stack->getSlice(i).getName());
        const Vector<int> junctions = findIndexPetiole(*contour);
        const int apexPosition = apexIndex();
        std::vector<int> first = {junctions[0], apexPosition};
        std::vector<int> second = {apexPosition, junctions[1]};
        if (sinusFlag) {
            distribute(indexesPrimarySinuses(), apexPosition, first, second);
        }
        if (peakFlag) {
            distribute(indexesPrimaryPeaks(), apexPosition, first, second);
        }
        firstLists.push_back(ascending(first));
        secondLists.push_back(ascending(second));
        apexes[i] = apexPosition;
        n1[i] = firstLists.back().getSize();
        n2[i] = secondLists.back().getSize();
    }
}

void AveragingProcess::requireLandmarks(const std::string& sliceName) const
{
    const char* where = "void AveragingProcess::findLandmarks(...)";
    if (!contour || !petiole || petiole->getSize() != 2 || !apex || apex->getSize() == 0) {
        raise<UsageError>(where, "Slice " + sliceName + " lacks contour, two junctions or apex");
    }
    const Vector<int> junctions = findIndexPetiole(*contour);
    const int apexPosition = apexIndex();
    // Such a leaf has no half to put points on: intervals would be negative.
    if (junctions[0] >= apexPosition || junctions[1] <= apexPosition) {
        raise<UsageError>(where,
                          "Slice " + sliceName + ": the apex is not between the two junctions");
    }
}

void AveragingProcess::computeIntervals(const Vector<int>& list,
                                        Vector<float>& differences,
                                        Vector<float>& cumulated,
                                        Vector<float>& sum,
                                        int n,
                                        int& count) const
{
    if (list.getSize() != n) {
        return;
    }
    differences[0] = 0.0f;
    for (int i = 1; i < n; ++i) {
        differences[i] = static_cast<float>(list[i] - list[i - 1]);
    }
    differences /= differences.sum();
    cumulated[0] = 0.0f;
    for (int i = 1; i < n; ++i) {
        cumulated[i] = cumulated[i - 1] + differences[i];
    }
    cumulated *= 0.5f;
    // The half ends at 0.5, whatever rounding left: else a point could be lost at its end.
    cumulated[n - 1] = 0.5f;
    sum += cumulated;
    ++count;
}

void AveragingProcess::computeNormalizedIntervals(const std::vector<Vector<int>>& firstLists,
                                                  const std::vector<Vector<int>>& secondLists,
                                                  int n1,
                                                  int n2,
                                                  Vector<float>& A,
                                                  Vector<float>& B) const
{
    const auto average = [&](const std::vector<Vector<int>>& lists, int n) {
        Vector<float> differences(n);
        Vector<float> cumulated(n);
        Vector<float> sum(n);
        sum.setZeros();
        int count = 0;
        for (const Vector<int>& list : lists) {
            computeIntervals(list, differences, cumulated, sum, n, count);
        }
        if (count == 0) {
            sum.setSequence(0.5f / static_cast<float>(n - 1));
        } else {
            sum /= static_cast<float>(count);
        }
        return sum;
    };
    A = average(firstLists, n1);
    B = average(secondLists, n2);
}

Vector<float>
AveragingProcess::averageNormalizedIntervals(const std::vector<Vector<int>>& firstLists,
                                             const std::vector<Vector<int>>& secondLists,
                                             int n1,
                                             int n2) const
{
    Vector<float> A;
    Vector<float> B;
    computeNormalizedIntervals(firstLists, secondLists, n1, n2, A, B);
    if (!symmetrization) {
        return joined(A, shifted(B, 0.5f));
    }
    if (n1 < n2) {
        return joined(mirrored(B, 0.5f), shifted(B, 0.5f));
    }
    if (n1 == n2) {
        // Place by place, though the first half begins at its junction and the second at the apex.
        for (int i = 0; i < n1 - 1; ++i) {
            A[i] = (A[i] + B[i]) * 0.5f;
        }
    }
    return joined(A, mirrored(A, 1.0f));
}

Vector<float> AveragingProcess::averageNormalizedIntervalsForOneTooth(
    const std::vector<Vector<int>>& firstLists, const std::vector<Vector<int>>& secondLists) const
{
    const int landmarks = 5;
    Vector<float> A;
    Vector<float> B;
    computeNormalizedIntervals(firstLists, secondLists, landmarks, landmarks, A, B);
    B = shifted(B, 0.5f);
    if (!symmetrization) {
        return joined(A, B);
    }
    Vector<float> T(2 * landmarks - 1);
    T[0] = 0.0f;
    T[4] = 0.5f;
    T[8] = 1.0f;
    for (int i = 1; i <= 3; ++i) {
        T[i] = ((1.0f - B[4 - i]) + A[i]) * 0.5f;
        T[8 - i] = 1.0f - T[i];
    }
    return T;
}
