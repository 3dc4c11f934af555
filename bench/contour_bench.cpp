// The contour chain of one plane, and the watershed alone, on a toothed leaf of 1 to 16 megapixels.
// The aim on one core is 80 ms per megapixel for the chain, 35 of them for the watershed, with a
// growth that stays linear.

#include "blade/contour/extractcontour.h"
#include "blade/contour/lpetransform.h"
#include "support/leaf.h"

#include <benchmark/benchmark.h>

namespace {

PixelMatrix<float> photograph(int side)
{
    leaf::Shape shape;
    const double scale = side / 1000.0;
    shape.middle = {500.0 * scale, 470.0 * scale};
    shape.length = 700.0 * scale;
    shape.width = 500.0 * scale;
    shape.teethPerSide = 12;
    shape.toothHeight = 30.0 * scale;
    shape.petioleLength = 110.0 * scale;
    shape.petioleWidth = 14.0 * scale;
    shape.angleDegrees = 20.0;
    return leaf::photograph(leaf::draw(shape), side, side, 170.0f, 50.0f, 14.0f);
}

void countMegapixels(benchmark::State& state)
{
    const double megapixels = static_cast<double>(state.range(0) * state.range(0)) / 1e6;
    state.counters["s/Mpx"] = benchmark::Counter(
        megapixels, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void contourChain(benchmark::State& state)
{
    const PixelMatrix<float> image = photograph(static_cast<int>(state.range(0)));
    const auto stack = leaf::emptyStack(1);
    ExtractContour process;
    process.setStack(*stack);
    process.setFidelity(100);
    for (auto run : state) {
        process.createModels();
        process.process(image, 0);
    }
    countMegapixels(state);
}

void watershed(benchmark::State& state)
{
    ExtractContour process;
    const PixelMatrix<int> image =
        process.convertPixelMatrixToInt(photograph(static_cast<int>(state.range(0))));
    PixelMatrix<int> marker = image;
    process.makeMarkerLPE(marker);
    PixelMatrix<int> gradient = image;
    process.gradient(gradient);
    for (auto run : state) {
        state.PauseTiming();
        PixelMatrix<int> labels = gradient;
        state.ResumeTiming();
        LPETransform transform;
        transform.setMarker(marker);
        transform.apply(labels);
        benchmark::DoNotOptimize(labels[0][0]);
    }
    countMegapixels(state);
}

} // namespace

BENCHMARK(contourChain)->Arg(1000)->Arg(2000)->Arg(4000)->Unit(benchmark::kMillisecond);
BENCHMARK(watershed)->Arg(1000)->Arg(2000)->Arg(4000)->Unit(benchmark::kMillisecond);
