#include "image/regions/runlabelling.h"

#include <algorithm>

namespace {

/// The first column from `column` on whose bit is `value`; the number of columns if there is none.
int findBit(const BitPlane& image, const BitPlane::Word* words, int column, bool value)
{
    const BitPlane::Word flip = value ? 0 : ~BitPlane::Word(0);
    int k = column / BitPlane::wordBits;
    if (k >= image.width()) {
        return image.columns();
    }
    BitPlane::Word word = (words[k] ^ flip) & (~BitPlane::Word(0) << (column % BitPlane::wordBits));
    while (word == 0 && ++k < image.width()) {
        word = words[k] ^ flip;
    }
    return word == 0 ? image.columns()
                     : std::min(k * BitPlane::wordBits + __builtin_ctzll(word), image.columns());
}

} // namespace

/// Until the end a run's `region` is the number of an earlier run of its region, or its own.
RunLabelling::RunLabelling(const BitPlane& image, Corners corners)
{
    const int reach = corners == Corners::Joined ? 1 : 0;
    std::size_t above = 0;
    for (int i = 0; i < image.rows(); ++i) {
        const std::size_t below = runs_.size();
        appendRow(image, i);
        joinRows(above, below, reach);
        above = below;
    }
    numberRegions();
}

void RunLabelling::appendRow(const BitPlane& image, int row)
{
    const BitPlane::Word* words = image.row(row);
    int begin = findBit(image, words, 0, true);
    while (begin < image.columns()) {
        const int end = findBit(image, words, begin, false);
        runs_.push_back({row, begin, end, static_cast<int>(runs_.size())});
        begin = findBit(image, words, end, true);
    }
}

/// Joins the runs from `above` on with those of the last row, from `below` on, where they overlap by
/// a column, or by less than one if `reach` is 1.
void RunLabelling::joinRows(std::size_t above, std::size_t below, int reach)
{
    std::size_t upper = above;
    std::size_t lower = below;
    while (upper < below && lower < runs_.size()) {
        const Run& a = runs_[upper];
        const Run& b = runs_[lower];
        if (a.begin < b.end + reach && b.begin < a.end + reach) {
            const std::size_t rootA = root(upper);
            const std::size_t rootB = root(lower);
            runs_[std::max(rootA, rootB)].region = static_cast<int>(std::min(rootA, rootB));
        }
        if (a.end < b.end) {
            ++upper;
        } else {
            ++lower;
        }
    }
}

std::size_t RunLabelling::root(std::size_t run)
{
    for (;;) {
        const std::size_t next = static_cast<std::size_t>(runs_[run].region);
        if (next == run) {
            return run;
        }
        runs_[run].region = runs_[next].region;
        run = next;
    }
}

/// A run points to an earlier one, which has its number by then.
void RunLabelling::numberRegions()
{
    for (std::size_t k = 0; k < runs_.size(); ++k) {
        const std::size_t earlier = static_cast<std::size_t>(runs_[k].region);
        runs_[k].region = earlier == k ? numRegions_++ : runs_[earlier].region;
    }
}

int RunLabelling::largestRegion() const
{
    if (numRegions_ == 0) {
        return -1;
    }
    std::vector<long long> sizes(static_cast<std::size_t>(numRegions_), 0);
    for (const Run& run : runs_) {
        sizes[static_cast<std::size_t>(run.region)] += run.end - run.begin;
    }
    return static_cast<int>(std::max_element(sizes.begin(), sizes.end()) - sizes.begin());
}
