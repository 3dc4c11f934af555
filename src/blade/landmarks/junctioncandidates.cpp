#include "blade/landmarks/junctioncandidates.h"

#include <algorithm>
#include <cmath>

namespace {

/// Least bulk of a stretch that is considered.
constexpr double leastBulk = 1.7;
/// From this bulk on a slender stretch is a stalk beyond doubt, whatever stub is found there.
constexpr double plainBulk = 5.0;
constexpr double plainBonus = 1.0;

/// The weights of the evidence. They were set by eye on leaves of many shapes.
constexpr double bulkWeight = 1.5; // a doubling of the bulk
constexpr double fillWeight = 10.0;
constexpr double middleFill = 0.4;
constexpr double mostFill = 2.0;
constexpr double cornerWeight = 2.0;
constexpr double plainCorner = 45.0;
constexpr double asymmetryWeight = 16.0;
constexpr double mostAsymmetry = 8.0;
constexpr double mostAtTip = 1.5;
constexpr double teethWeight = 6.0;
constexpr double narrowWeight = 3.0;
constexpr double usualWidth = 0.4;
/// Stalks thicker than usual, a half width relative to the scale, and shorter, relative to the scale.
constexpr double thickWeight = 60.0;
constexpr double usualLevel = 0.03;
/// By how much thicker than usual a stalk is for which symmetry counts double.
constexpr double thickStep = 0.02;
constexpr double shortWeight = 3.0;
constexpr double usualLength = 0.02;
/// How many times as long as wide a stalk is that needs no symmetric blade and no parallel flanks.
constexpr double longStalk = 4.0;
/// What looks less like a stalk is a lobe or a tooth.
constexpr double leastScore = 0.0;
/// What a leaf without any stalk has at its ends.
constexpr double bareTip = -2.0;
/// By how much it rises or falls for a tip twice as far from the middle of the outline as another.
constexpr double outreachWeight = 6.0;
/// How far an end is looked for around the place that stands out most, relative to the scale.
constexpr double tipReach = 0.06;
/// By how much it falls for a tip beside the leaf's longest axis.
constexpr double axisWeight = 6.0;

/// How far apart junctions are put beside the end of a leaf without a stalk, relative to the scale: as
/// far as a stalk is wide.
constexpr double bareWidth = 0.04;
/// Ends nearer than this, relative to the scale, are one.
constexpr double nearEnds = 0.15;

double placeOf(StalkSearch::Base base)
{
    switch (base) {
    case StalkSearch::Base::Corners:
        return 0.95;
    case StalkSearch::Base::Gradual:
        return 0.8;
    case StalkSearch::Base::OneSided:
        return 0.6;
    }
    return 0.0;
}

double logistic(double x)
{
    return 1.0 / (1.0 + std::exp(-x));
}

} // namespace

JunctionCandidates::JunctionCandidates(const OutlineRing& ring)
    : ring_(ring)
    , search_(ring)
    , ends_(ring)
{
    addStalks(StalkSearch::slender);
    addStalks(StalkSearch::stubby);
    addTips();
}

/// What speaks for an end as the base of the leaf, stalk or not.
double JunctionCandidates::evidenceOfEnd(int first, int last, const Symmetry& symmetry) const
{
    return narrowWeight * (usualWidth - ends_.width(first, last, 0.25)) +
           teethWeight * ends_.teeth(first, last) -
           std::min(symmetry.weight * ends_.asymmetry(first, last), symmetry.most);
}

double JunctionCandidates::evidenceOfStalk(const StalkSearch::Stretch& stretch) const
{
    const double around = ring_.wrapped(stretch.last - stretch.first) * ring_.step();
    const double length = std::max(0.0, around / 2.0 - stretch.level);
    const double slenderness = length / (2.0 * stretch.level);
    const double fill =
        std::clamp(fillWeight * (search_.fill(stretch) - middleFill), -mostFill, mostFill);
    const double thick = std::max(0.0, stretch.level / ring_.scale() - usualLevel);
    const double symmetryWeight =
        asymmetryWeight * (1.0 + thick / thickStep) * longStalk / (longStalk + slenderness);
    const double missing = std::max(0.0, 1.0 - length / (usualLength * ring_.scale()));
    return bulkWeight * std::log2(search_.bulk(stretch)) +
           (slenderness > 2.0 * longStalk ? std::max(fill, 0.0) : fill) - thickWeight * thick -
           shortWeight * missing +
           evidenceOfEnd(stretch.first, stretch.last, {symmetryWeight, mostAsymmetry});
}

void JunctionCandidates::addStalks(const StalkSearch::Kind& kind)
{
    for (const StalkSearch::Stretch& stretch : search_.stretches(kind)) {
        const double bulk = search_.bulk(stretch);
        if (bulk < leastBulk) {
            continue;
        }
        StalkSearch::Stretch moved = stretch;
        const StalkSearch::Beginning beginning = search_.moveToCorners(moved);
        const bool plain = &kind == &StalkSearch::slender && bulk >= plainBulk &&
                           beginning.base != StalkSearch::Base::OneSided;
        const double score = evidenceOfStalk(stretch) +
                             cornerWeight * std::clamp(beginning.turn / plainCorner, 0.0, 1.0) +
                             (plain ? plainBonus : 0.0);
        if (score < leastScore) {
            continue;
        }
        candidates_.push_back({stretch, moved.first, moved.last, score, placeOf(beginning.base)});
    }
}

void JunctionCandidates::addTips()
{
    const std::vector<int> tips = ends_.tips();
    const auto reach = [this](int tip) {
        return ring_.distance(tip, ends_.farthestFrom(ring_.at(tip)));
    };
    const double longest = reach(tips.front());
    for (const int found : tips) {
        const int tip =
            search_.narrowest(found, static_cast<int>(tipReach * ring_.scale() / ring_.step()));
        const double beside = std::max(0.0, 1.0 - reach(tip) / longest);
        int first = tip;
        int last = tip;
        const double width = bareWidth * ring_.scale();
        for (int k = 0; k < ring_.size() / 8 && ring_.distance(first, last) < width; ++k) {
            --first;
            ++last;
        }
        candidates_.push_back({{ring_.wrapped(first), ring_.wrapped(last), width / 2.0, 0.0},
                               ring_.wrapped(first),
                               ring_.wrapped(last),
                               bareTip - axisWeight * beside +
                                   outreachWeight * (ends_.outreach(tip) / longest - 0.5) +
                                   evidenceOfEnd(tip, tip, {asymmetryWeight / 2.0, mostAtTip}),
                               0.5});
    }
}

bool JunctionCandidates::sameEnd(const Candidate& a, const Candidate& b) const
{
    const auto middle = [this](const Candidate& c) {
        return c.end.first + ring_.wrapped(c.end.last - c.end.first) / 2;
    };
    const auto holds = [this](const Candidate& c, int i) {
        return ring_.wrapped(i - c.end.first) <= ring_.wrapped(c.end.last - c.end.first);
    };
    return holds(a, middle(b)) || holds(b, middle(a)) ||
           ring_.distance(middle(a), middle(b)) < nearEnds * ring_.scale();
}

std::optional<JunctionCandidates::Choice> JunctionCandidates::best() const
{
    const auto better = [](const Candidate& a, const Candidate& b) { return a.score < b.score; };
    const auto chosen = std::max_element(candidates_.begin(), candidates_.end(), better);
    if (chosen == candidates_.end()) {
        return std::nullopt;
    }
    double other = bareTip;
    for (const Candidate& candidate : candidates_) {
        if (!sameEnd(*chosen, candidate)) {
            other = std::max(other, candidate.score);
        }
    }
    const double end = logistic(std::min(chosen->score - other - 1.0, chosen->score - 1.5));
    // No more than the two decimals that are shown, so that all compare the same number.
    return Choice{chosen->first, chosen->last, std::round(end * chosen->place * 100.0) / 100.0};
}
