#include "image/sources/imagesourcefile.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stack.h"
#include "stack/stackreader.h"
#include "stack/stackslice.h"
#include "stack/stackwriter.h"
#include "stack/statedsource.h"
#include "system/exception.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

namespace {

/// A source whose file is not there: the images are no part of what is timed.
StatedSource<ImageSourceFile> missingImage()
{
    ImageSourceFile source;
    try {
        source.setFilename("/nowhere/leaf.tif");
    } catch (const Exception&) {
        // It has kept the name, and the size is stated.
    }
    return StatedSource<ImageSourceFile>(source, 3000, 4000);
}

/// Slices with a contour of so many vertices each, on a circle.
std::unique_ptr<Stack> leaves(int slices, int vertices)
{
    auto stack = std::make_unique<Stack>();
    auto* model = new Model;
    model->setName("Contour");
    const auto source = missingImage();
    Vertices<int> contour(2, vertices, 0, 1);
    for (int i = 0; i < vertices; ++i) {
        const double angle = 2.0 * std::acos(-1.0) * i / vertices;
        contour[i][0] = static_cast<int>(2000.0 + 1400.0 * std::cos(angle));
        contour[i][1] = static_cast<int>(1500.0 + 1400.0 * std::sin(angle));
    }
    for (int i = 0; i < slices; ++i) {
        auto* slice = new StackSlice;
        slice->setName("leaf" + std::to_string(i));
        slice->setStack(*stack);
        slice->setImageSource(source);
        stack->addSlice(*slice);
        auto* item = new ModelItem;
        item->setModel(*model);
        item->setSlice(*slice);
        item->setVertices(contour);
        item->attach();
    }
    stack->addModel(*model);
    return stack;
}

std::string path()
{
    return (std::filesystem::temp_directory_path() / "stackfile_bench.sdf").string();
}

void writeStack(benchmark::State& state)
{
    const auto stack = leaves(static_cast<int>(state.range(0)), 6000);
    for (auto _ : state) {
        StackWriter().write(*stack, path());
    }
    std::filesystem::remove(path());
}

void readStack(benchmark::State& state)
{
    StackWriter().write(*leaves(static_cast<int>(state.range(0)), 6000), path());
    for (auto _ : state) {
        Stack stack;
        StackReader reader;
        if (!reader.read(stack, path())) {
            state.SkipWithError("the file can't be read");
        }
    }
    std::filesystem::remove(path());
}

} // namespace

BENCHMARK(writeStack)->Arg(50)->Arg(200)->Unit(benchmark::kMillisecond);
BENCHMARK(readStack)->Arg(50)->Arg(200)->Unit(benchmark::kMillisecond);
