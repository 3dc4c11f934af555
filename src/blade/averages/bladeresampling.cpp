#include "blade/averages/bladeresampling.h"

#include "interface/lmxstack.h"
#include "stack/stackslice.h"
#include "system/exception.h"

#include <algorithm>
#include <iostream>
#include <memory>

namespace {

// The landmarks of a half with one tooth: junction, sinus, tip, sinus, apex.
const int toothedHalf = 5;

/// The points of the intervals `first` to `last`, both included.
int points(const Vector<int>& O, int first, int last)
{
    int sum = 0;
    for (int i = first; i <= last; ++i) {
        sum += O[i];
    }
    return sum;
}

int lastOf(const Vector<int>& O)
{
    return O.getSize() - 1;
}

} // namespace

BladeResampling::BladeResampling() = default;

void BladeResampling::run() {}

std::string BladeResampling::process(int)
{
    return "";
}

void BladeResampling::createModels() {}

std::vector<Curve<float>*> BladeResampling::resampling(const std::vector<Vector<int>>& firstLists,
                                                       const std::vector<Vector<int>>& secondLists,
                                                       const Vector<int>& n1,
                                                       const Vector<int>& n2,
                                                       const Vector<float>& R,
                                                       const Vector<float>& T,
                                                       Vector<int>& O)
{
    const int slices = stack->getNumSlices();
    for (const int size : {static_cast<int>(firstLists.size()),
                           static_cast<int>(secondLists.size()), n1.getSize(), n2.getSize()}) {
        if (size != slices) {
            raise<SizeError>("vector<Curve<float>*> BladeResampling::resampling(...)",
                             "One list of landmarks per slice expected");
        }
    }
    const auto count = static_cast<float>(resamplingPoints);
    O.setSize(R.getSize() - 1);
    for (int i = 1; i < R.getSize(); ++i) {
        O[i - 1] = static_cast<int>(count * R[i]) - static_cast<int>(count * R[i - 1]);
    }
    std::vector<std::unique_ptr<Curve<float>>> curves;
    for (int i = 0; i < slices; ++i) {
        const StackSlice& slice = stack->getSlice(i);
        getModelsForResampling(i);
        Curve<float> curve(contour->getSpace(), 0, 0, 0, true);
        const auto entry = static_cast<std::size_t>(i);
        firstHalfBladeResampling(firstLists[entry], n1[i], O, T, curve);
        secondHalfBladeResampling(secondLists[entry], n2[i], O, T, curve);
        curve.scale(slice.getPixelCalibration().getPixelWidth());
        curves.push_back(std::make_unique<Curve<float>>(shape2Dto3D(curve, true)));
        curves.back()->setName(slice.getName());
        if (curve.getSize() != resamplingPoints) {
            std::cout << "\n&& ERROR : " << curve.getSize() << "\n";
        }
    }
    std::vector<Curve<float>*> result;
    for (auto& curve : curves) {
        result.push_back(curve.release());
    }
    return result;
}

void BladeResampling::firstHalfBladeResampling(const Vector<int>& list,
                                               int n,
                                               const Vector<int>& O,
                                               const Vector<float>& T,
                                               Curve<float>& result) const
{
    const int m = maximumFirstHalf;
    if (n >= 3) {
        const int shift = m - n;
        appendSegment(list[0], list[1], points(O, 0, shift), result);
        for (int j = 2; j < n; ++j) {
            appendSegment(list[j - 1], list[j], O[j + shift - 1], result);
        }
        return;
    }
    if (m < toothedHalf) {
        appendSegment(list[0], list[1], points(O, 0, m - 2), result);
        return;
    }
    const auto span = static_cast<float>(2 * (list[1] - list[0]));
    const auto behind = [&](int from, int interval) {
        const int steps = static_cast<int>((T[interval] - T[interval - 1]) * span);
        return std::min(from + steps, list[1]);
    };
    const int q1 = behind(list[0], 2);
    const int q2 = behind(q1, 2);
    const int q3 = behind(q2, 3);
    appendSegment(list[0], q1, points(O, 0, m - 5), result);
    appendSegment(q1, q2, O[m - 4], result);
    appendSegment(q2, q3, O[m - 3], result);
    appendSegment(q3, list[1], O[m - 2], result);
}

void BladeResampling::secondHalfBladeResampling(const Vector<int>& list,
                                                int n,
                                                const Vector<int>& O,
                                                const Vector<float>& T,
                                                Curve<float>& result) const
{
    // The first interval of this half in O.
    const int begin = maximumFirstHalf - 1;
    if (n >= 3) {
        for (int k = 0; k <= n - 3; ++k) {
            appendSegment(list[k], list[k + 1], O[begin + k], result);
        }
        appendSegment(list[n - 2], list[n - 1], points(O, begin + n - 2, lastOf(O)), result);
        return;
    }
    if (maximumSecondHalf < toothedHalf) {
        appendSegment(list[0], list[1], points(O, begin, lastOf(O)), result);
        return;
    }
    const auto span = static_cast<float>(2 * (list[1] - list[0]));
    const int half = T.getSize() / 2;
    int interval = begin;
    int q = list[0];
    for (int i = half + 1; i <= T.getSize() - 2; ++i, ++interval) {
        const float place = static_cast<float>(q) + (T[i] - T[i - 1]) * span;
        const int next = std::min(static_cast<int>(place), list[1]);
        appendSegment(q, next, O[interval], result);
        q = next;
    }
    appendSegment(q, list[1], points(O, interval, lastOf(O)), result);
}

/// Appends the part of the contour between two places, resampled; of equal places copies of the one
/// vertex.
void BladeResampling::appendSegment(int start, int end, int size, Curve<float>& result) const
{
    if (size < 1) {
        return;
    }
    Curve<float> segment(contour->getSpace(), 0, 0, 0, true);
    if (start == end) {
        segment.append((*contour)[start]);
    } else {
        segment =
            extractSubCurve(*contour, static_cast<unsigned>(start), static_cast<unsigned>(end));
    }
    result.append(segment.resample(size));
}

Curve<float> BladeResampling::extractSubCurve(const Curve<float>& curve,
                                              unsigned int start,
                                              unsigned int end) const
{
    const int first = static_cast<int>(start);
    const int last = static_cast<int>(end);
    const int around = last > first ? 0 : curve.getSize();
    Curve<float> part(curve.getSpace(), last - first + around + 1, 0, 0, true);
    for (int i = 0; i < part.getSize(); ++i) {
        const int place = first + i;
        part[i] = curve[place < curve.getSize() ? place : place - curve.getSize()];
    }
    return part;
}

Curve<float> BladeResampling::shape2Dto3D(const Curve<float>& curve, bool open) const
{
    Curve<float> result(3, curve.getSize(), 0, 0, open);
    for (int i = 0; i < curve.getSize(); ++i) {
        result[i][0] = curve[i][0];
        result[i][1] = curve[i][1];
        result[i][2] = 0.0f;
    }
    return result;
}
