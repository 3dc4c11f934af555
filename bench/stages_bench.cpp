// Sinus detection, tips and measures of one leaf of about 6,000 contour vertices and 40 teeth. The
// aim is at most 10 ms for each.

#include "blade/landmarks/extractconvexpoints.h"
#include "blade/landmarks/extractpeak.h"
#include "blade/measures/leafanalysis.h"
#include "support/leaf.h"

#include <benchmark/benchmark.h>

namespace {

std::unique_ptr<LMXStack> largeLeaf()
{
    leaf::Shape shape;
    shape.middle = {1200.0, 1300.0};
    shape.length = 2100.0;
    shape.width = 900.0;
    shape.teethPerSide = 20;
    shape.toothHeight = 45.0;
    return leaf::stackOf({leaf::draw(shape)});
}

void detectSinuses(LMXStack& stack)
{
    ExtractConvexPoints process;
    process.setStack(stack);
    process.setNeigbourhood(25);
    process.setThresholdAngle(145.0f);
    process.createModels();
    process.process(0);
}

void detectTips(LMXStack& stack, MethodExtractPeaks method)
{
    ExtractPeak process;
    process.setStack(stack);
    process.setMethodToExtract(method);
    process.setExcludeNeighbourhood(10);
    process.createModels();
    process.process(0);
}

void sinuses(benchmark::State& state)
{
    const auto stack = largeLeaf();
    for (auto run : state) {
        detectSinuses(*stack);
    }
    leaf::Probe probe(*stack);
    probe.getModels(0);
    state.counters["vertices"] = probe.contour->getSize();
    state.counters["sinuses"] = probe.primarySinus->getSize();
}

void tips(benchmark::State& state)
{
    const auto stack = largeLeaf();
    detectSinuses(*stack);
    for (auto run : state) {
        detectTips(*stack, static_cast<MethodExtractPeaks>(state.range(0)));
    }
}

void measures(benchmark::State& state)
{
    const auto stack = largeLeaf();
    detectSinuses(*stack);
    detectTips(*stack, LocalCurvature);
    int teeth = 0;
    for (auto run : state) {
        LeafAnalysis process;
        process.setStack(*stack);
        process.process(0);
        teeth = process.getPeakTable().numRows();
    }
    state.counters["teeth"] = teeth;
}

BENCHMARK(sinuses)->Unit(benchmark::kMillisecond);
BENCHMARK(tips)->Arg(LocalCurvature)->Arg(LocalSymmetry)->Unit(benchmark::kMillisecond);
BENCHMARK(measures)->Unit(benchmark::kMillisecond);

} // namespace
