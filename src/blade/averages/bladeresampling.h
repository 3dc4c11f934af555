#pragma once

#include "blade/process/modelsmanager.h"

#include <string>
#include <vector>

/// Gives every leaf of the stack the same number of contour points, so that point k of one leaf and
/// point k of another stand at the same biological place: between the same landmarks.
///
/// Each half blade is cut at its landmarks. The first list of a leaf holds the ascending contour
/// indices from the first junction to the apex, the second one those from the apex to the second
/// junction, each with the landmarks between. The maxima are the lengths of the longest lists.
/// `O` holds the number of points of each interval of the fullest leaf, the first half's intervals
/// first. Matching begins at the apex: a leaf with fewer landmarks puts the points of those that it
/// lacks into its most basal interval. A segment keeps both its ends, so each landmark between two
/// segments stands twice.
///
/// Made for one call of `resampling`; run through it alone.
class BladeResampling : public ModelsManager
{
public:
    BladeResampling();

    /// Does nothing; so do the next two.
    void run() override;
    std::string process(int slice) override;
    void createModels() override;

    // Which landmarks stand in the lists.
    void setSinusState(bool enabled) { sinusState = enabled; }

    void setPeakState(bool enabled) { peakState = enabled; }

    /// The number of vertices of a resampled contour.
    void setResamplingPointNumber(int points) { resamplingPoints = points; }

    void setMaximumNumberLandmarksPerFirstHalfLeaf(int number) { maximumFirstHalf = number; }

    void setMaximumNumberLandmarksPerSecondHalfLeaf(int number) { maximumSecondHalf = number; }

    void setSymmetrizationState(bool enabled) { symmetrizationState = enabled; }

    /// A folder that is kept for the caller; nothing is written.
    void setOuputResampledFiles(const std::string& path) { outputResampledFiles = path; }

    /// The resampled contours, one a slice in the order of the slices: open curves of three
    /// coordinates, z = 0, in the stack's length unit, named after their slices. The caller owns
    /// them.
    ///
    /// `firstLists`, `secondLists` and their lengths `n1`, `n2` hold an entry a slice. `R` are the
    /// ascending reference positions of the landmarks on the whole contour, 0 to 1; `T` the nine of
    /// a leaf with one tooth on each half. `O` receives the points of each interval of `R`. A curve
    /// whose size came out other than asked is told on the standard output and kept.
    ///
    /// Raises `SizeError` unless there is an entry a slice.
    std::vector<Curve<float>*> resampling(const std::vector<Vector<int>>& firstLists,
                                          const std::vector<Vector<int>>& secondLists,
                                          const Vector<int>& n1,
                                          const Vector<int>& n2,
                                          const Vector<float>& R,
                                          const Vector<float>& T,
                                          Vector<int>& O);

    /// Appends the resampled first half of the leaf read last to `result`; `n` is the length of
    /// `list`, at least 2.
    ///
    /// A half without landmarks of its own, on a stack whose fullest half has a tooth, is cut into
    /// four by the spacings of `T`; on a stack without such a half it is one segment. A cut that
    /// would lie behind the half's end lies on it.
    void firstHalfBladeResampling(const Vector<int>& list,
                                  int n,
                                  const Vector<int>& O,
                                  const Vector<float>& T,
                                  Curve<float>& result) const;

    /// The same for the second half.
    void secondHalfBladeResampling(const Vector<int>& list,
                                   int n,
                                   const Vector<int>& O,
                                   const Vector<float>& T,
                                   Curve<float>& result) const;

    /// The vertices from `start` to `end`, both included, as an open curve. Where `end` is not
    /// behind `start` the way leads over the closed curve's last vertex; equal places give the whole
    /// curve and its first vertex again.
    Curve<float>
    extractSubCurve(const Curve<float>& curve, unsigned int start, unsigned int end) const;

    /// A copy of a plane curve, with 0 as its third coordinate.
    Curve<float> shape2Dto3D(const Curve<float>& curve, bool open) const;

private:
    void appendSegment(int start, int end, int size, Curve<float>& result) const;

    bool sinusState = false;
    bool peakState = false;
    int resamplingPoints = 0;
    int maximumFirstHalf = 0;
    int maximumSecondHalf = 0;
    bool symmetrizationState = true;
    std::string outputResampledFiles;
};
