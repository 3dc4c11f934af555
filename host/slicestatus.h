#pragma once

#include <QString>

class StackSlice;

/// What a slice still lacks before it can be measured, and what looks wrong with it.
struct SliceStatus
{
    bool hasContour = false;
    bool hasJunctions = false; ///< two points
    bool hasApex = false;
    QString suspicion; ///< the text of the leaf check; empty if it finds nothing, or was not made

    bool isComplete() const { return hasContour && hasJunctions && hasApex; }

    /// For a tooltip, a line each: "No contour", and so on; empty if all is well.
    QString text() const;

    /// What the slice lacks, by a look at its items.
    static SliceStatus of(const StackSlice& slice);

    /// The same with the leaf check of a complete slice, which works on a copy of it: linear in the
    /// contour, times the number of landmarks.
    static SliceStatus checked(const StackSlice& slice);
};
