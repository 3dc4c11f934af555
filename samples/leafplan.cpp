#include "samples/leafplan.h"

#include "system/exception.h"
#include "system/randomgenerator.h"
#include "system/stringtools.h"

#include <algorithm>
#include <array>

namespace {

constexpr double degree = 3.141592653589793 / 180.0;

/// The kinds in the order in which they are drawn, over and over.
constexpr std::array<LeafKind, 8> kindCycle = {
    LeafKind::Plain, LeafKind::TeethOnTeeth, LeafKind::Plain, LeafKind::OneSided,
    LeafKind::Plain, LeafKind::Palmate,      LeafKind::Plain, LeafKind::Smooth};

LeafKind kindOf(int index)
{
    return kindCycle[static_cast<std::size_t>(index) % kindCycle.size()];
}

/// How many leaves of the same kind the series has up to this one.
int rankOf(int index)
{
    int rank = 0;
    for (int i = 0; i <= index; ++i) {
        rank += kindOf(i) == kindOf(index) ? 1 : 0;
    }
    return rank;
}

void planTeeth(LeafPlan& plan, RandomGenerator& random)
{
    switch (plan.kind) {
    case LeafKind::Plain:
        plan.upperTeeth = static_cast<int>(random.uniformL(6, 9));
        plan.lowerTeeth = static_cast<int>(random.uniformL(6, 9));
        plan.toothHeight = random.uniformLF(30.0, 38.0);
        break;
    case LeafKind::TeethOnTeeth:
        plan.upperTeeth = static_cast<int>(random.uniformL(5, 6));
        plan.lowerTeeth = static_cast<int>(random.uniformL(5, 6));
        plan.smallTeeth = 2 * (plan.upperTeeth + plan.lowerTeeth);
        plan.toothHeight = random.uniformLF(72.0, 78.0);
        break;
    case LeafKind::OneSided: {
        const bool upper = random.bernoulli(0.5F);
        const int teeth = static_cast<int>(random.uniformL(6, 8));
        plan.upperTeeth = upper ? teeth : 0;
        plan.lowerTeeth = upper ? 0 : teeth;
        plan.toothHeight = random.uniformLF(30.0, 36.0);
        break;
    }
    case LeafKind::Palmate: // two or three lobes beside the middle one
        plan.upperTeeth = static_cast<int>(random.uniformL(1, 2));
        plan.lowerTeeth = plan.upperTeeth;
        break;
    case LeafKind::Smooth:
        break;
    }
}

void planShape(LeafPlan& plan, RandomGenerator& random)
{
    const bool palmate = plan.kind == LeafKind::Palmate;
    plan.bladeLength = palmate ? random.uniformLF(620.0, 680.0) : random.uniformLF(900.0, 960.0);
    plan.halfWidth = random.uniformLF(205.0, 260.0);
    plan.baseExponent = random.uniformLF(0.75, 0.98);
    plan.tipExponent = random.uniformLF(1.0, 1.25);
    plan.petioleLength = palmate ? random.uniformLF(240.0, 300.0) : random.uniformLF(110.0, 170.0);
    plan.petioleHalfWidth = random.uniformLF(6.5, 9.0);
    plan.bend = palmate ? 0.0 : random.uniformLF(-45.0, 45.0);
    plan.petioleBend = random.uniformLF(-30.0, 30.0);
    plan.tilt = random.uniformLF(-8.0 * degree, 8.0 * degree);
}

} // namespace

std::string kindName(LeafKind kind)
{
    switch (kind) {
    case LeafKind::Plain:
        return "plain";
    case LeafKind::TeethOnTeeth:
        return "double";
    case LeafKind::OneSided:
        return "onesided";
    case LeafKind::Smooth:
        return "smooth";
    case LeafKind::Palmate:
        return "palmate";
    }
    raise<ProgramError>("string kindName(LeafKind)", "unknown kind of leaf");
}

LeafPlan planLeaf(int index, long seed)
{
    RandomGenerator random;
    random.init(seed + 1000003L * index);
    LeafPlan plan;
    const int rank = rankOf(index);
    plan.kind = kindOf(index);
    plan.name = kindName(plan.kind) + "-" + StringTools::toString(rank, 2, '0');
    // Each kind takes the four combinations in turn, and begins with another one.
    const int combination = rank + static_cast<int>(plan.kind);
    plan.colour = combination % 2 == 1;
    plan.lightBackground = (combination / 2) % 2 == 1;
    planTeeth(plan, random);
    planShape(plan, random);
    plan.seed = random.uniformL(1, 1000000000L);
    return plan;
}

LeafPlan planGrowingLeaf(int index, int count, long seed)
{
    RandomGenerator random;
    random.init(seed + 1000003L * index);
    LeafPlan plan;
    plan.kind = LeafKind::Plain;
    plan.name = "growing-" + StringTools::toString(index + 1, 2, '0');
    planShape(plan, random);
    const double least = 620.0;
    const double most = 960.0;
    plan.bladeLength = least + (most - least) * index / std::max(count - 1, 1);
    plan.halfWidth = plan.bladeLength * random.uniformLF(0.24, 0.26);
    plan.toothHeight = plan.bladeLength * random.uniformLF(0.036, 0.038);
    plan.upperTeeth = plan.lowerTeeth = 6;
    plan.seed = random.uniformL(1, 1000000000L);
    return plan;
}
