#pragma once

#include "blade/contour/floodplane.h"
#include "blade/contour/pixelqueues.h"
#include "image/filters/pixelmatrixprocessing.h"
#include "image/pixels/bitplane.h"
#include "image/pixels/byteplane.h"
#include "image/pixels/pixelmatrix.h"
#include "image/regions/runlabelling.h"

#include <vector>

/// Marker-controlled watershed by hierarchical queues, one per grey level: floods a gradient image
/// from the markers in order of rising gradient and gives each pixel the label of its basin. Pixels
/// where two basins meet go to one of them at the end, so that the result has no lines.
///
/// F. Meyer, "Un algorithme optimal de ligne de partage des eaux", 8th congress AFCET, 1991.
///
/// Labels:
///
///     0          not reached
///     odd L      reached by the basin L, waiting in a queue
///     L + 1      processed, in the basin L; these values remain
///     -1         two basins meet
///
/// The connected markers (8 neighbours) are labelled 1, 3, 5 and so on in scan order, so basin k
/// ends as the value 2 k + 2. The order of service is part of the result: every queue is first in,
/// first out, and neighbours are visited up, left, right, down.
///
///     LPETransform watershed;
///     watershed.setMarker(marker);
///     watershed.apply(gradient); // now the label image
///
/// Takes 3 bytes a pixel beside the images, for up to 62 basins, and up to 4 more for the queues.
/// Label and level of a pixel share a word, see `FloodPlane`; -1 is its `blocked`. A level stays in
/// 0 to 255 until the flooding marks the pixel.
class LPETransform : public PixelMatrixProcessing<int>
{
public:
    LPETransform();

    /// Copies the marker image: every pixel above 0 is a marker, any other value is none.
    void setMarker(PixelMatrix<int>& image) { marker = image; }

    /// Gradient values are taken into 0 to 255. On return the argument holds the label image and
    /// the object what was the gradient, changed by the flooding. Without any marker every label
    /// is 0. A marker image of another size raises `SizeError`.
    void apply(PixelMatrix<int>& gradient) override;

    /// The same on a byte image, from the markers given: the pixels that do not end in the first
    /// basin.
    BitPlane applyBeyondFirst(const BitPlane& markers, const BytePlane& gradient);

    // The steps of `apply`, in their order. `Word` is that of a plane whose labels are wide enough. They
    // work on planes with a border, and on places in them, so that no neighbour is tested for lying
    // inside: a matter of speed alone, the result is that of plain queues of pixels.

    /// Gives every connected set of marker pixels its label.
    template <class Word>
    void LPE2DInit(FloodPlane<Word>& pixels, const RunLabelling& markers);

    /// Labels a run of marker pixels.
    template <class Word>
    void labelProcessing2D(FloodPlane<Word>& pixels, const RunLabelling::Run& run);

    /// Puts every marker pixel, in scan order, into the queue of its level. A pixel whose
    /// neighbours are all markers would do nothing when its turn comes, and no other basin can
    /// reach it: it counts as processed at once.
    template <class Word>
    void initQueue(FloodPlane<Word>& pixels, const BitPlane& markers);

    /// Floods level by level. Pixels reached at a level that is not below theirs are deferred and
    /// served, as round 2, before the next level.
    template <class Word>
    void LpeApply(FloodPlane<Word>& pixels);

    /// Works on a pixel whose turn has come.
    template <int round, class Word>
    void pixelProcess(FloodPlane<Word>& pixels, int place, int level);

    /// Visits the four neighbours of a pixel, whose word was `own` before it was processed.
    template <int round, class Word>
    void findNeigbor(FloodPlane<Word>& pixels, int place, Word own, int level);

    /// Claims a neighbour that no basin has reached; marks one that another basin has reached.
    template <int round, class Word>
    void neighborProcess(FloodPlane<Word>& pixels, int neighbour, Word word, Word own, int level);

    /// Gives each collision pixel the label of a neighbour. One amid others like it waits for them;
    /// ends when a whole pass settles none.
    template <class Word>
    void pixelCollision(FloodPlane<Word>& pixels);

    /// The first non-empty queue from the current level on, or -1.
    int selectNextQueue() const;

    /// The queues of all levels are empty, or one queue is.
    bool isEmptyFah2D() const;

    bool isEmptyFah2D(int queue) const { return queues.isEmpty(queue); }

private:
    static constexpr int levelCount = 256;
    static constexpr int deferred = 256;

    template <class Word>
    FloodPlane<Word>
    flood(const BitPlane& markers, const RunLabelling& labelling, const BytePlane& gradient);

    template <class Word>
    void
    applyWith(const BitPlane& markers, const RunLabelling& labelling, PixelMatrix<int>& gradient);

    template <int round, class Word>
    void serve(FloodPlane<Word>& pixels, int queue);

    int currentLevel = 0;
    PixelMatrix<int> marker;
    // One a level, then the deferred pixels.
    PixelQueues queues;
    std::vector<int> collisions;
};
