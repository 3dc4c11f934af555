#include "blade/contour/lpetransform.h"

#include "system/exception.h"

#include <algorithm>
#include <cstdint>
#include <iostream>
#include <utility>

namespace {

/// Labels become 0.
template <class Word>
void setLevels(FloodPlane<Word>& pixels, const BytePlane& levels)
{
    for (int i = 0; i < pixels.rows(); ++i) {
        const std::uint8_t* from = levels.row(i);
        Word* to = &pixels[pixels.place(i, 0)];
        for (int j = 0; j < pixels.columns(); ++j) {
            to[j * pixels.columnStep] = from[j];
        }
    }
}

/// The first label other than a collision in the 3 x 3 neighbourhood, down each column, the columns
/// from left to right.
template <class Word>
Word labelBeside(const FloodPlane<Word>& pixels, int place)
{
    for (int column = -1; column <= 1; ++column) {
        const int middle = place + column * pixels.columnStep;
        for (const int beside : {pixels.above(middle), middle, pixels.below(middle)}) {
            if (pixels.label(beside) != pixels.blocked) {
                return pixels.label(beside);
            }
        }
    }
    return pixels.blocked;
}

/// Those of a row's marker pixels, in its word k, that have a neighbour which is none.
BitPlane::Word marginOf(const BitPlane& markers, int i, int k)
{
    const BitPlane::Word* row = markers.row(i);
    const BitPlane::Word before = k > 0 ? row[k - 1] : 0;
    const BitPlane::Word after = k + 1 < markers.width() ? row[k + 1] : 0;
    const BitPlane::Word above = i > 0 ? markers.row(i - 1)[k] : 0;
    const BitPlane::Word below = i + 1 < markers.rows() ? markers.row(i + 1)[k] : 0;
    const BitPlane::Word inner =
        above & below & (row[k] << 1 | before >> 63) & (row[k] >> 1 | after << 63);
    return row[k] & ~inner;
}

} // namespace

LPETransform::LPETransform()
    : queues(deferred + 1)
{}

void LPETransform::apply(PixelMatrix<int>& gradient)
{
    if (marker.getSize1() != gradient.getSize1() || marker.getSize2() != gradient.getSize2()) {
        raise<SizeError>("void LPETransform::apply(PixelMatrix<int>&)",
                         "The marker image and the gradient image differ in size");
    }
    const BitPlane markers = BitPlane::positive(marker);
    const RunLabelling labelling(markers, RunLabelling::Corners::Joined);
    const std::uint64_t basins = static_cast<std::uint64_t>(labelling.numRegions());
    if (basins <= FloodPlane<std::uint16_t>::capacity) {
        applyWith<std::uint16_t>(markers, labelling, gradient);
    } else if (basins <= FloodPlane<std::uint32_t>::capacity) {
        applyWith<std::uint32_t>(markers, labelling, gradient);
    } else {
        applyWith<std::uint64_t>(markers, labelling, gradient);
    }
}

template <class Word>
void LPETransform::applyWith(const BitPlane& markers,
                             const RunLabelling& labelling,
                             PixelMatrix<int>& gradient)
{
    BytePlane bytes;
    bytes.clamp(gradient);
    const FloodPlane<Word> pixels = flood<Word>(markers, labelling, bytes);
    for (int i = 0; i < pixels.rows(); ++i) {
        for (int j = 0; j < pixels.columns(); ++j) {
            const int place = pixels.place(i, j);
            const Word label = pixels.label(place);
            gradient[i][j] = label == pixels.blocked ? -1 : static_cast<int>(label);
            marker[i][j] = pixels.level(place);
        }
    }
}

BitPlane LPETransform::applyBeyondFirst(const BitPlane& markers, const BytePlane& gradient)
{
    using Word = std::uint16_t;
    const RunLabelling labelling(markers, RunLabelling::Corners::Joined);
    if (labelling.numRegions() > FloodPlane<Word>::capacity) {
        raise<ValueError>("BitPlane LPETransform::applyBeyondFirst(...)", "Too many markers");
    }
    const FloodPlane<Word> pixels = flood<Word>(markers, labelling, gradient);
    BitPlane beyond(pixels.rows(), pixels.columns());
    std::uint8_t flags[BitPlane::wordBits];
    for (int i = 0; i < pixels.rows(); ++i) {
        for (int begin = 0; begin < pixels.columns(); begin += BitPlane::wordBits) {
            const Word* words = &pixels[pixels.place(i, begin)];
            const int count = std::min(pixels.columns() - begin, BitPlane::wordBits);
            for (int j = 0; j < count; ++j) {
                flags[j] = words[j * pixels.columnStep] >= 3 * pixels.oneLabel;
            }
            beyond.row(i)[begin / BitPlane::wordBits] = BitPlane::pack(flags, count);
        }
    }
    return beyond;
}

template <class Word>
FloodPlane<Word> LPETransform::flood(const BitPlane& markers,
                                     const RunLabelling& labelling,
                                     const BytePlane& gradient)
{
    FloodPlane<Word> pixels(gradient.rows(), gradient.columns());
    setLevels(pixels, gradient);
    currentLevel = 0;
    LPE2DInit(pixels, labelling);
    initQueue(pixels, markers);
    LpeApply(pixels);
    pixelCollision(pixels);
    return pixels;
}

template <class Word>
void LPETransform::LPE2DInit(FloodPlane<Word>& pixels, const RunLabelling& markers)
{
    for (const RunLabelling::Run& run : markers.runs()) {
        labelProcessing2D(pixels, run);
    }
}

template <class Word>
void LPETransform::labelProcessing2D(FloodPlane<Word>& pixels, const RunLabelling::Run& run)
{
    const Word label = static_cast<Word>(2 * static_cast<Word>(run.region) + 1);
    Word* words = &pixels[pixels.place(run.row, 0)];
    for (int j = run.begin; j < run.end; ++j) {
        Word& word = words[j * pixels.columnStep];
        word = static_cast<Word>(word | label << pixels.levelBits);
    }
}

template <class Word>
void LPETransform::initQueue(FloodPlane<Word>& pixels, const BitPlane& markers)
{
    for (int i = 0; i < markers.rows(); ++i) {
        for (int k = 0; k < markers.width(); ++k) {
            const BitPlane::Word margin = marginOf(markers, i, k);
            for (BitPlane::Word rest = markers.row(i)[k]; rest != 0; rest &= rest - 1) {
                const int bit = __builtin_ctzll(rest);
                const int place = pixels.place(i, k * BitPlane::wordBits + bit);
                if ((margin >> bit & 1) != 0) {
                    queues.push(pixels.level(place), place);
                } else {
                    pixels[place] = static_cast<Word>(pixels[place] + pixels.oneLabel);
                }
            }
        }
    }
}

template <int round, class Word>
inline void LPETransform::neighborProcess(
    FloodPlane<Word>& pixels, int neighbour, Word word, Word own, int level)
{
    constexpr Word levelMask = FloodPlane<Word>::levelMask;
    const Word reached = static_cast<Word>(own & ~levelMask);
    if (word <= levelMask) {
        if (level >= static_cast<int>(word)) {
            pixels[neighbour] = static_cast<Word>(reached | (round + 256));
            queues.push(deferred, neighbour);
        } else {
            pixels[neighbour] = static_cast<Word>(reached | word);
            queues.push(static_cast<int>(word), neighbour);
        }
    } else if ((word & FloodPlane<Word>::oneLabel) != 0 && (word & ~levelMask) != reached &&
               ((word ^ own) & levelMask) != 0) {
        pixels.setLabel(neighbour, FloodPlane<Word>::blocked);
        collisions.push_back(neighbour);
    }
}

template <int round, class Word>
inline void LPETransform::findNeigbor(FloodPlane<Word>& pixels, int place, Word own, int level)
{
    const int above = pixels.above(place);
    const int left = place - pixels.columnStep;
    const int right = place + pixels.columnStep;
    const int below = pixels.below(place);
    const Word words[] = {pixels[above], pixels[left], pixels[right], pixels[below]};
    neighborProcess<round>(pixels, above, words[0], own, level);
    neighborProcess<round>(pixels, left, words[1], own, level);
    neighborProcess<round>(pixels, right, words[2], own, level);
    neighborProcess<round>(pixels, below, words[3], own, level);
}

template <int round, class Word>
inline void LPETransform::pixelProcess(FloodPlane<Word>& pixels, int place, int level)
{
    const Word own = pixels[place];
    if (pixels.label(place) == pixels.blocked) {
        pixels.setLevel(place, level);
        return;
    }
    findNeigbor<round>(pixels, place, own, level);
    pixels[place] = static_cast<Word>(own + pixels.oneLabel);
    if (round > 1) {
        pixels.setLevel(place, level);
    }
}

template <int round, class Word>
void LPETransform::serve(FloodPlane<Word>& pixels, int queue)
{
    const int level = currentLevel;
    queues.drain(
        queue, [&](int place) { pixelProcess<round>(pixels, place, level); },
        [&](int place) { __builtin_prefetch(&pixels[place], 1); });
}

template <class Word>
void LPETransform::LpeApply(FloodPlane<Word>& pixels)
{
    if (isEmptyFah2D()) {
        std::cout << "fonction LPE : pas de pixel empiler lors de l'initialisation\n";
        return;
    }
    currentLevel = selectNextQueue();
    while (currentLevel >= 0) {
        serve<1>(pixels, currentLevel);
        if (!isEmptyFah2D(deferred)) {
            ++currentLevel;
            serve<2>(pixels, deferred);
        }
        currentLevel = selectNextQueue();
    }
}

template <class Word>
void LPETransform::pixelCollision(FloodPlane<Word>& pixels)
{
    bool settled = true;
    while (settled && !collisions.empty()) {
        settled = false;
        std::vector<int> pass;
        std::swap(pass, collisions);
        for (const int place : pass) {
            const Word label = labelBeside(pixels, place);
            if (label == pixels.blocked) {
                collisions.push_back(place);
            } else {
                pixels.setLabel(place, label);
                settled = true;
            }
        }
    }
    collisions.clear();
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
    for (int level = 0; level < levelCount; ++level) {
        if (!isEmptyFah2D(level)) {
            return false;
        }
    }
    return true;
}
