#pragma once

#include "image/pixels/bitplane.h"

#include <vector>

/// Numbers the regions of a two-valued image by union-find on its runs, which are far fewer than its
/// pixels. Regions count from 0 in the order of their first pixels, rows first, as those of
/// `ComponentLabelling0` do from 1.
class RunLabelling
{
public:
    /// Pixels from `begin` to before `end` of a row.
    struct Run
    {
        int row;
        int begin;
        int end;
        int region;
    };

    /// Whether pixels that touch at a corner hang together.
    enum class Corners { Apart, Joined };

    RunLabelling(const BitPlane& image, Corners corners);

    /// All runs in scan order.
    const std::vector<Run>& runs() const { return runs_; }

    int numRegions() const { return numRegions_; }

    /// The region of the most pixels, the first of equal ones; -1 without any.
    int largestRegion() const;

private:
    void appendRow(const BitPlane& image, int row);
    void joinRows(std::size_t above, std::size_t below, int reach);
    std::size_t root(std::size_t run);
    void numberRegions();

    std::vector<Run> runs_;
    int numRegions_ = 0;
};
