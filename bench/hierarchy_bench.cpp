// The two hierarchies on a leaf of about 6,000 contour vertices and 80 sinuses. The aim is at most
// 50 ms for each; the check of the leaf and the folding of labels are part of it.

#include "blade/hierarchy/hierarchyarabidoprocess.h"
#include "blade/hierarchy/hierarchyiterativeprocess.h"
#include "blade/process/blademessages.h"
#include "support/labelledleaf.h"

#include <benchmark/benchmark.h>

#include <iostream>
#include <sstream>

namespace {

/// Forty sinuses a half, every fourth of them on the back of a tooth.
std::unique_ptr<LMXStack> largeLeaf()
{
    std::vector<leaf::Corner> half;
    for (int k = 0; k <= 78; ++k) {
        const double along = 60.0 + 6.0 * k;
        if (k % 2 == 1) {
            half.push_back({along, 165.0, leaf::Mark::Tip});
        } else {
            half.push_back({along, k % 8 == 4 ? 140.0 : 125.0, leaf::Mark::Sinus});
        }
    }
    const leaf::LabelledLeaf drawn = leaf::drawCorners(half, half);
    auto stack = leaf::stackOf({drawn.outline});
    leaf::addLandmarks(*stack, 0, drawn.outline);
    return stack;
}

/// Runs the process over and over, with all that it says kept away from the results.
void measure(benchmark::State& state, ModelsManager& process)
{
    const auto stack = largeLeaf();
    process.setStack(*stack);
    const auto handler = BladeMessages::setHandler([](const std::string&) {});
    std::ostringstream said;
    std::streambuf* const out = std::cout.rdbuf(said.rdbuf());
    std::streambuf* const err = std::cerr.rdbuf(said.rdbuf());
    for (auto run : state) {
        process.run();
    }
    std::cout.rdbuf(out);
    std::cerr.rdbuf(err);
    BladeMessages::setHandler(handler);
    leaf::Probe probe(*stack);
    probe.getModels(0);
    state.counters["vertices"] = probe.contour->getSize();
    state.counters["secondary"] =
        static_cast<double>(leaf::vertices(*stack, "Secondary Sinus", 0).size());
}

void recursive(benchmark::State& state)
{
    HierarchyArabidoProcess process;
    process.setLimitAngle(static_cast<int>(state.range(0)));
    process.setEnableDistalTeeth(true);
    measure(state, process);
}

void iterative(benchmark::State& state)
{
    HierarchyIterativeProcess process;
    process.setTolerance(static_cast<float>(state.range(0)) / 100.0f);
    measure(state, process);
}

// From the usual parameters to those under which the most sinuses fall.
BENCHMARK(recursive)->Arg(45)->Arg(57)->Unit(benchmark::kMillisecond);
BENCHMARK(iterative)->Arg(30)->Arg(5)->Unit(benchmark::kMillisecond);

} // namespace
