#pragma once

#include "blade/contour/borderedplane.h"
#include "blade/contour/pixelqueue.h"
#include "image/filters/pixelmatrixprocessing.h"
#include "image/pixels/pixelmatrix.h"

#include <array>

/// Marker-controlled watershed by hierarchical queues, one per grey level: floods a gradient image
/// from the markers in order of rising gradient and gives each pixel the label of its basin. Pixels
/// where two basins meet go to one of them at the end, so that the result has no lines.
///
/// F. Meyer, "Un algorithme optimal de ligne de partage des eaux", 8th congress AFCET, 1991.
///
/// Values in the label image:
///
///     0          not reached
///     odd L      reached by the basin L, waiting in a queue
///     L + 1      processed, in the basin L; these values remain
///     -1         two basins meet
///     6000       marker pixel without a label yet
///
/// The connected markers (8 neighbours) are labelled 1, 3, 5 and so on in scan order, so basin k
/// ends as the value 2 k + 2. The order of service is part of the result: every queue is first in,
/// first out, and neighbours are visited up, left, right, down.
///
///     LPETransform watershed;
///     watershed.setMarker(marker);
///     watershed.apply(gradient); // now the label image
///
/// Takes 10 bytes a pixel beside the two images, and up to 4 more for the queues.
class LPETransform : public PixelMatrixProcessing<int>
{
public:
    /// Labels, and levels of the gradient, while the flooding is under way. A level stays in 0 to
    /// 255 until the flooding marks the pixel.
    using Labels = BorderedPlane<int>;
    using Levels = BorderedPlane<short>;

    struct PixelRecord
    {
        int row;
        int column;
    };

    /// Copies the marker image: every pixel above 0 is a marker, any other value is none.
    void setMarker(PixelMatrix<int>& image) { marker = image; }

    /// Gradient values are taken into 0 to 255. On return the argument holds the label image and
    /// the object what was the gradient, changed by the flooding. Without any marker every label
    /// is 0. A marker image of another size raises `SizeError`.
    void apply(PixelMatrix<int>& gradient) override;

    // The steps of `apply`, in their order.

    /// Gives every connected set of marker pixels its label.
    void LPE2DInit(Labels& labels);

    /// Fills the marker that a pixel belongs to, run by run; queue 0 is the work list and holds a
    /// pixel of each run to come.
    void labelProcessing2D(Labels& labels, int row, int column, int label);

    /// Puts every marker pixel, in scan order, into the queue of its level. A pixel whose
    /// neighbours all belong to its own marker would do nothing when its turn comes, and no other
    /// basin can reach it: it counts as processed at once.
    void initQueue(Labels& labels, const Levels& levels);

    /// Floods level by level. Pixels reached at a level that is not below theirs are deferred and
    /// served, as round 2, before the next level.
    void LpeApply(Labels& labels, Levels& levels);

    /// Works on the pixel in hand.
    void pixelProcess(Labels& labels, Levels& levels, int round);

    /// Visits the four neighbours of the pixel in hand.
    void findNeigbor(Labels& labels, Levels& levels, int round);

    /// Claims a neighbour that no basin has reached; marks one that another basin has reached.
    void neighborProcess(Labels& labels, Levels& levels, int neighbour, int round);

    /// Gives each collision pixel the label of a neighbour. One amid others like it waits for them;
    /// ends when a whole pass settles none.
    void pixelCollision(Labels& labels);

    /// The first non-empty queue from the current level on, or -1.
    int selectNextQueue() const;

    /// The queues of all levels are empty, or one queue is.
    bool isEmptyFah2D() const;

    bool isEmptyFah2D(int queue) const { return queues[static_cast<std::size_t>(queue)].isEmpty(); }

private:
    static constexpr int levelCount = 256;
    static constexpr int deferred = 256;
    static constexpr int collisions = 257;

    int labelBeside(const Labels& labels, PixelRecord pixel) const;

    void push(int queue, int place) { queues[static_cast<std::size_t>(queue)].push(place, store); }

    int pop(int queue) { return queues[static_cast<std::size_t>(queue)].pop(store); }

    int currentLevel = 0;
    PixelMatrix<int> marker;
    int currentPixel = 0;
    // One a level, then the deferred pixels, then the collisions.
    std::array<PixelQueue, 258> queues;
    PixelQueue::Store store;
};
