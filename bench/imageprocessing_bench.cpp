#include "image/filters/gaussiangradient0.h"
#include "image/filters/minfilter0.h"
#include "image/filters/sumfilter0.h"
#include "image/pixels/image2.h"
#include "image/pixels/imagearithmetic.h"
#include "image/regions/componentlabelling0.h"
#include "image/regions/otsuthresholding0.h"
#include "shape/curves/curve.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <random>

namespace {

/// A bright, wavy disc on a dark, noisy ground; `side` squared pixels.
template <class T>
PixelMatrix<T> leafImage(int side)
{
    PixelMatrix<T> image(side, side);
    std::mt19937 random(1);
    std::uniform_int_distribution<int> noise(-20, 20);
    for (int i = 0; i < side; ++i) {
        for (int j = 0; j < side; ++j) {
            const double y = (i - 0.5 * side) / side;
            const double x = (j - 0.5 * side) / side;
            const double rim = 0.35 + 0.02 * std::sin(40 * std::atan2(y, x));
            image(i, j) = static_cast<T>((std::hypot(x, y) < rim ? 160 : 50) + noise(random));
        }
    }
    return image;
}

PixelMatrix<int> maskImage(int side)
{
    PixelMatrix<int> image = leafImage<int>(side);
    OtsuThresholding0<int>().apply(image);
    return image;
}

void countPixels(benchmark::State& state)
{
    const double side = static_cast<double>(state.range(0));
    state.counters["per_megapixel"] =
        benchmark::Counter(side * side * 1e-6, benchmark::Counter::kIsIterationInvariantRate |
                                                   benchmark::Counter::kInvert);
}

/// Times `work(image)` on fresh copies of the image.
template <class T, class Work>
void onCopies(benchmark::State& state, const PixelMatrix<T>& image, Work work)
{
    for (auto step : state) {
        static_cast<void>(step);
        state.PauseTiming();
        PixelMatrix<T> copy(image);
        state.ResumeTiming();
        work(copy);
        benchmark::DoNotOptimize(copy[0].data());
    }
    countPixels(state);
}

void gaussianGradient(benchmark::State& state)
{
    GaussianGradient0<float> gradient(static_cast<float>(state.range(1)) / 10.0F);
    onCopies(state, leafImage<float>(static_cast<int>(state.range(0))),
             [&](auto& image) { gradient.apply(image); });
}

void minimumFilter(benchmark::State& state)
{
    MinFilter0<int> filter;
    filter.setRadius(10);
    onCopies(state, maskImage(static_cast<int>(state.range(0))),
             [&](auto& image) { filter.apply(image); });
}

void labelling(benchmark::State& state)
{
    ComponentLabelling0<int> labelling;
    onCopies(state, maskImage(static_cast<int>(state.range(0))),
             [&](auto& image) { labelling.apply(image); });
}

/// Foreground of a given share: many small regions at 30, a maze at 50 and above.
void labellingOfNoise(benchmark::State& state)
{
    const int side = static_cast<int>(state.range(0));
    PixelMatrix<int> noise(side, side);
    std::mt19937 random(2);
    std::uniform_int_distribution<int> percent(0, 99);
    for (int i = 0; i < side; ++i) {
        for (int j = 0; j < side; ++j) {
            noise(i, j) = percent(random) < state.range(1);
        }
    }
    ComponentLabelling0<int> labelling;
    onCopies(state, noise, [&](auto& image) { labelling.apply(image); });
}

void otsu(benchmark::State& state)
{
    onCopies(state, leafImage<int>(static_cast<int>(state.range(0))),
             [&](auto& image) { OtsuThresholding0<int>().apply(image); });
}

void contourPixels(benchmark::State& state)
{
    onCopies(state, maskImage(static_cast<int>(state.range(0))),
             [&](auto& image) { Thresholding0<int>().contours(image); });
}

void maskedHistogram(benchmark::State& state)
{
    PixelMatrix<int> labels = maskImage(static_cast<int>(state.range(0)));
    ComponentLabelling0<int> labelling;
    labelling.apply(labels);
    const unsigned int bins = static_cast<unsigned int>(labelling.getNumLabels()) + 1;
    onCopies(state, labels,
             [&](auto& image) { benchmark::DoNotOptimize(image.histogram(0, 1, bins, image)); });
}

void squareSum(benchmark::State& state)
{
    SumFilter0<float> filter;
    filter.setRadius(10);
    onCopies(state, leafImage<float>(static_cast<int>(state.range(0))),
             [&](auto& image) { filter.apply(image); });
}

void minimumBall(benchmark::State& state)
{
    const int side = static_cast<int>(state.range(0));
    VoxelMatrix<int> volume(side, side, side);
    for (int k = 0; k < side; ++k) {
        volume[k] = leafImage<int>(side);
    }
    MinFilter0<int> filter;
    filter.setRadius(static_cast<int>(state.range(1)));
    filter.setBallMode(true);
    for (auto step : state) {
        static_cast<void>(step);
        filter.apply(volume);
    }
}

/// The argument is the operation: add, subtract, multiply, divide.
template <class T>
void frameArithmetic(benchmark::State& state)
{
    constexpr int side = 2048;
    Image2 image(valueTypeOf<T>(), side, side, 1, 1, 1, 1);
    Image2 other(valueTypeOf<T>(), side, side, 1, 1, 1, 1);
    image.fill(T(3));
    other.fill(T(1));
    const ImageArithmetic arithmetic;
    const auto operation = static_cast<ImageArithmetic::Operation>(state.range(0));
    for (auto step : state) {
        static_cast<void>(step);
        arithmetic.apply(image, other, operation);
    }
    state.SetItemsProcessed(state.iterations() * std::int64_t(side) * side);
}

/// A fresh image each time, as `convertToType` makes one too.
template <class From, class To>
void frameConversion(benchmark::State& state)
{
    constexpr int side = 2048;
    Image2 image(valueTypeOf<From>(), side, side, 1, 1, 1, 1);
    image.fill(From(3));
    Image2 converted(valueTypeOf<To>(), side, side, 1, 1, 1, 1);
    for (auto step : state) {
        static_cast<void>(step);
        if (state.range(0) != 0) {
            state.PauseTiming();
            converted = image;
            state.ResumeTiming();
            converted.convertToType<To>();
        } else {
            converted.castAssignCurrentValues(image);
        }
    }
    state.SetItemsProcessed(state.iterations() * std::int64_t(side) * side);
}

} // namespace

BENCHMARK(gaussianGradient)
    ->ArgsProduct({{1024, 2048, 4096}, {10, 35}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(minimumFilter)->Arg(1024)->Arg(2048)->Arg(4096)->Unit(benchmark::kMillisecond);
BENCHMARK(labelling)->Arg(1024)->Arg(2048)->Arg(4096)->Unit(benchmark::kMillisecond);
BENCHMARK(labellingOfNoise)
    ->ArgsProduct({{1024, 4096}, {30, 50, 70}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(otsu)->Arg(1024)->Arg(2048)->Arg(4096)->Unit(benchmark::kMillisecond);
BENCHMARK(contourPixels)->Arg(1024)->Arg(4096)->Unit(benchmark::kMillisecond);
BENCHMARK(maskedHistogram)->Arg(1024)->Arg(4096)->Unit(benchmark::kMillisecond);
BENCHMARK(squareSum)->Arg(1024)->Arg(4096)->Unit(benchmark::kMillisecond);
BENCHMARK(minimumBall)->Args({64, 3})->Args({64, 10})->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(frameArithmetic, unsigned char)->DenseRange(0, 3);
BENCHMARK_TEMPLATE(frameArithmetic, unsigned short)->DenseRange(0, 3);
BENCHMARK_TEMPLATE(frameArithmetic, float)->DenseRange(0, 3);
BENCHMARK_TEMPLATE(frameConversion, unsigned char, float)->Arg(0)->Arg(1);
BENCHMARK_TEMPLATE(frameConversion, float, unsigned char)->Arg(0)->Arg(1);
BENCHMARK_TEMPLATE(frameConversion, unsigned char, unsigned short)->Arg(0)->Arg(1);
