#pragma once

#include "blade/landmarks/leafends.h"
#include "blade/landmarks/stalksearch.h"

#include <optional>
#include <vector>

/// Chooses the end of a leaf at which the stalk is, or was. All places that may be it are compared:
/// whatever looks like a stalk, and the points about which the outline is symmetric.
class JunctionCandidates
{
public:
    /// Both junctions as points of the ring, with the confidence from 0 to 1.
    struct Choice
    {
        int first;
        int last;
        double confidence;
    };

    struct Candidate
    {
        StalkSearch::Stretch end;
        int first;
        int last;
        /// Evidence that the stalk is here: a sum whose unit is about a doubling of the odds.
        double score;
        /// How sure the place is if the end is right.
        double place;
    };

    /// The ring has to outlive this.
    explicit JunctionCandidates(const OutlineRing& ring);

    const std::vector<Candidate>& all() const { return candidates_; }

    std::optional<Choice> best() const;

private:
    void addStalks(const StalkSearch::Kind& kind);
    void addTips();

    /// What an asymmetry of 1 speaks against an end, and the most.
    struct Symmetry
    {
        double weight;
        double most;
    };

    double evidenceOfEnd(int first, int last, const Symmetry& symmetry) const;
    double evidenceOfStalk(const StalkSearch::Stretch& stretch) const;
    bool sameEnd(const Candidate& a, const Candidate& b) const;

    const OutlineRing& ring_;
    StalkSearch search_;
    LeafEnds ends_;
    std::vector<Candidate> candidates_;
};
