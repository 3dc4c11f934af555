// Export of 12,000 teeth of 300 leaves with contours of about 6,000 vertices, into a new folder and
// over the files of an earlier run. The aim for a new folder is 5 s. A disk on which thousands of
// files were deleted a moment ago, as after a run of this program, may take twice as long to make new
// ones: ext4 does not take up their inodes at once.

#include "blade/measures/exportshapes.h"
#include "blade/process/blademessages.h"
#include "support/leaf.h"
#include "support/temporaryfolder.h"

#include <benchmark/benchmark.h>

namespace {

constexpr int leafCount = 300;
constexpr int teethPerSide = 20;

LMXStack& sample()
{
    static const std::unique_ptr<LMXStack> stack = [] {
        BladeMessages::setHandler([](const std::string&) {});
        leaf::Shape shape;
        shape.length = 1900.0;
        shape.width = 900.0;
        shape.toothHeight = 40.0;
        shape.teethPerSide = teethPerSide;
        const leaf::Outline outline = leaf::draw(shape);
        auto leaves = leaf::stackOf(std::vector<leaf::Outline>(leafCount, outline));
        for (int i = 0; i < leafCount; ++i) {
            leaf::addItem(*leaves, "Apex", PRIMITIVE_POLYPOINT, i, {outline.apex});
            leaf::addItem(*leaves, "Primary Sinus", PRIMITIVE_POLYPOINT, i, outline.sinuses);
        }
        return leaves;
    }();
    return *stack;
}

int exportTo(const TemporaryFolder& folder)
{
    ExportShapes process;
    process.setStack(sample());
    process.setOutputPath(QString::fromStdString(folder.path().string()));
    process.run();
    return process.getNumTeeth();
}

void newFolder(benchmark::State& state)
{
    sample();
    for (auto _ : state) {
        state.PauseTiming();
        {
            const TemporaryFolder folder;
            state.ResumeTiming();
            state.counters["teeth"] = exportTo(folder);
            state.PauseTiming(); // the folder goes outside of the measure
        }
        state.ResumeTiming();
    }
}

void overEarlierFiles(benchmark::State& state)
{
    const TemporaryFolder folder;
    exportTo(folder);
    for (auto _ : state) {
        state.counters["teeth"] = exportTo(folder);
    }
}

} // namespace

BENCHMARK(newFolder)->Unit(benchmark::kMillisecond);
BENCHMARK(overEarlierFiles)->Unit(benchmark::kMillisecond);
