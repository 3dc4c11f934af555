#pragma once

#include <QString>

class StackSlice;

/// What a slice still lacks before it can be measured, and what looks wrong with it.
struct SliceStatus
{
    bool hasContour = false;
    int junctions = 0; ///< two are needed
    bool hasApex = false;
    QString suspicion; ///< the text of the leaf check; empty if it finds nothing, or was not made

    bool isComplete() const { return hasContour && junctions == 2 && hasApex; }

    /// In a few words: "No contour, apex"; empty if nothing lacks.
    QString missing() const;

    /// What the slice lacks, by a look at its items.
    static SliceStatus of(const StackSlice& slice);

    /// The same with the leaf check of a complete slice, which works on a copy of it: linear in the
    /// contour, times the number of landmarks.
    static SliceStatus checked(const StackSlice& slice);
};
