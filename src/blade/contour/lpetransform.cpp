#include "blade/contour/lpetransform.h"

#include "system/exception.h"

#include <algorithm>
#include <iostream>

namespace {

constexpr int collision = -1;
constexpr int markerPixel = 6000;
// Even, so that a visit passes it by, and no label of a basin.
constexpr int border = -2;

LPETransform::Labels markerPixels(const PixelMatrix<int>& marker)
{
    LPETransform::Labels labels(marker.getSize1(), marker.getSize2(), 0, border);
    for (int i = 0; i < labels.rows(); ++i) {
        const int* from = marker[i].data();
        int* to = labels.row(i);
        for (int j = 0; j < labels.columns(); ++j) {
            to[j] = from[j] > 0 ? markerPixel : 0;
        }
    }
    return labels;
}

LPETransform::Levels levelsOf(const PixelMatrix<int>& gradient)
{
    LPETransform::Levels levels(gradient.getSize1(), gradient.getSize2(), 0, 0);
    for (int i = 0; i < levels.rows(); ++i) {
        const int* from = gradient[i].data();
        short* to = levels.row(i);
        for (int j = 0; j < levels.columns(); ++j) {
            to[j] = static_cast<short>(std::clamp(from[j], 0, 255));
        }
    }
    return levels;
}

template <class T>
void copyTo(PixelMatrix<int>& image, const BorderedPlane<T>& plane)
{
    for (int i = 0; i < plane.rows(); ++i) {
        std::copy(plane.row(i), plane.row(i) + plane.columns(), image[i].data());
    }
}

} // namespace

void LPETransform::apply(PixelMatrix<int>& gradient)
{
    if (marker.getSize1() != gradient.getSize1() || marker.getSize2() != gradient.getSize2()) {
        raise<SizeError>("void LPETransform::apply(PixelMatrix<int>&)",
                         "The marker image and the gradient image differ in size");
    }
    Labels labels = markerPixels(marker);
    Levels levels = levelsOf(gradient);
    currentLevel = 0;
    LPE2DInit(labels);
    initQueue(labels, levels);
    LpeApply(labels, levels);
    pixelCollision(labels);
    copyTo(gradient, labels);
    copyTo(marker, levels);
}

void LPETransform::LPE2DInit(Labels& labels)
{
    int label = 1;
    for (int i = 0; i < labels.rows(); ++i) {
        for (int j = 0; j < labels.columns(); ++j) {
            if (labels.row(i)[j] == markerPixel) {
                labelProcessing2D(labels, i, j, label);
                label += 2;
            }
        }
    }
}

void LPETransform::labelProcessing2D(Labels& labels, int row, int column, int label)
{
    push(0, labels.place(row, column));
    while (!isEmptyFah2D(0)) {
        int first = pop(0);
        if (labels[first] != markerPixel) {
            continue;
        }
        int last = first;
        while (labels[first - 1] == markerPixel) {
            --first;
        }
        while (labels[last + 1] == markerPixel) {
            ++last;
        }
        std::fill(&labels[first], &labels[last] + 1, label);
        for (const int shift : {-labels.stride(), labels.stride()}) {
            bool inRun = false;
            for (int place = first - 1 + shift; place <= last + 1 + shift; ++place) {
                const bool isMarker = labels[place] == markerPixel;
                if (isMarker && !inRun) {
                    push(0, place);
                }
                inRun = isMarker;
            }
        }
    }
}

void LPETransform::initQueue(Labels& labels, const Levels& levels)
{
    const int stride = labels.stride();
    for (int i = 0; i < labels.rows(); ++i) {
        const int begin = labels.place(i, 0);
        for (int place = begin; place < begin + labels.columns(); ++place) {
            const int label = labels[place];
            if (label == 0) {
                continue;
            }
            const auto isOwn = [&](int neighbour) {
                return labels[neighbour] == label || labels[neighbour] == label + 1;
            };
            if (isOwn(place - stride) && isOwn(place - 1) && isOwn(place + 1) &&
                isOwn(place + stride)) {
                labels[place] = label + 1;
            } else {
                push(levels[place], place);
            }
        }
    }
}

inline void LPETransform::neighborProcess(Labels& labels, Levels& levels, int neighbour, int round)
{
    const int label = labels[neighbour];
    if (label == 0) {
        labels[neighbour] = labels[currentPixel] - 1;
        const int level = levels[neighbour];
        if (currentLevel >= level) {
            push(deferred, neighbour);
            levels[neighbour] = static_cast<short>(round + 256);
        } else {
            push(level, neighbour);
        }
    } else if ((label & 1) != 0 && label != collision && label != labels[currentPixel] - 1 &&
               levels[neighbour] != levels[currentPixel]) {
        labels[neighbour] = collision;
        push(collisions, neighbour);
    }
}

inline void LPETransform::findNeigbor(Labels& labels, Levels& levels, int round)
{
    const int stride = labels.stride();
    neighborProcess(labels, levels, currentPixel - stride, round);
    neighborProcess(labels, levels, currentPixel - 1, round);
    neighborProcess(labels, levels, currentPixel + 1, round);
    neighborProcess(labels, levels, currentPixel + stride, round);
}

inline void LPETransform::pixelProcess(Labels& labels, Levels& levels, int round)
{
    if (labels[currentPixel] == collision) {
        levels[currentPixel] = static_cast<short>(currentLevel);
        return;
    }
    ++labels[currentPixel];
    findNeigbor(labels, levels, round);
    if (round > 1) {
        levels[currentPixel] = static_cast<short>(currentLevel);
    }
}

void LPETransform::LpeApply(Labels& labels, Levels& levels)
{
    if (isEmptyFah2D()) {
        std::cout << "fonction LPE : pas de pixel empiler lors de l'initialisation\n";
        return;
    }
    currentLevel = selectNextQueue();
    int queue = currentLevel;
    int round = 1;
    while (queue >= 0) {
        while (!isEmptyFah2D(queue)) {
            currentPixel = pop(queue);
            pixelProcess(labels, levels, round);
        }
        if (queue != deferred && !isEmptyFah2D(deferred)) {
            ++round;
            ++currentLevel;
            queue = deferred;
        } else {
            round = 1;
            currentLevel = selectNextQueue();
            queue = currentLevel;
        }
    }
}

void LPETransform::pixelCollision(Labels& labels)
{
    bool settled = true;
    while (settled && !isEmptyFah2D(collisions)) {
        settled = false;
        PixelQueue pass;
        std::swap(pass, queues[collisions]);
        while (!pass.isEmpty()) {
            const int place = pass.pop(store);
            const int label =
                labelBeside(labels, {place / labels.stride() - 1, place % labels.stride() - 1});
            labels[place] = label;
            if (label == collision) {
                push(collisions, place);
            } else {
                settled = true;
            }
        }
    }
}

/// The first label other than a collision in the 3 x 3 neighbourhood, down each column, the columns
/// from left to right; the border is no label.
int LPETransform::labelBeside(const Labels& labels, PixelRecord pixel) const
{
    for (int j = pixel.column - 1; j <= pixel.column + 1; ++j) {
        for (int i = pixel.row - 1; i <= pixel.row + 1; ++i) {
            const bool inside = i >= 0 && i < labels.rows() && j >= 0 && j < labels.columns();
            if (inside && labels[labels.place(i, j)] != collision) {
                return labels[labels.place(i, j)];
            }
        }
    }
    return collision;
}

int LPETransform::selectNextQueue() const
{
    for (int level = currentLevel; level < levelCount; ++level) {
        if (!isEmptyFah2D(level)) {
            return level;
        }
    }
    return -1;
}

bool LPETransform::isEmptyFah2D() const
{
    return std::all_of(queues.begin(), queues.begin() + levelCount,
                       [](const PixelQueue& queue) { return queue.isEmpty(); });
}
