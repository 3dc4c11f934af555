// TIFF files on a warm cache, beside the same bytes through fread and fwrite with a copy.

#include "image/image0.h"
#include "image/image2.h"
#include "image/imagereader.h"
#include "image/imagewriter.h"

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr int side = 4096;

std::string benchFile(const std::string& name)
{
    return (std::filesystem::temp_directory_path() /
            ("crenara-bench-" + std::to_string(getpid()) + "-" + name))
        .string();
}

/// A photograph-like image: smooth, with noise in the low bits, so that LZW has work to do.
Image0 photograph()
{
    Image0 image(side, side, 24);
    std::mt19937 random(1);
    for (std::size_t b = 0; b < image.dataLength(); ++b) {
        image.getData()[b] = static_cast<unsigned char>((b >> 14) + (random() & 3U));
    }
    return image;
}

Image2 stack()
{
    Image2 image(ValueType::UnsignedChar, side, side, 1, 3, 1, 1);
    const Image0 source = photograph();
    std::memcpy(image.frame(0, 0), source.getData(), source.dataLength());
    return image;
}

void setBytes(benchmark::State& state)
{
    state.SetBytesProcessed(state.iterations() * std::int64_t(side) * side * 3);
}

void plainWrite(benchmark::State& state)
{
    const Image0 image = photograph();
    const std::string path = benchFile("plain");
    std::vector<unsigned char> copy(image.dataLength());
    for (auto _ : state) {
        std::memcpy(copy.data(), image.getData(), copy.size());
        std::FILE* const file = std::fopen(path.c_str(), "wb");
        std::fwrite(copy.data(), 1, copy.size(), file);
        std::fflush(file);
        fsync(fileno(file)); // as the writers do before they rename
        std::fclose(file);
    }
    std::filesystem::remove(path);
    setBytes(state);
}

void plainRead(benchmark::State& state)
{
    const Image0 image = photograph();
    const std::string path = benchFile("plain");
    ImageWriter().write(image, path, true);
    std::vector<unsigned char> bytes(image.dataLength());
    std::vector<unsigned char> copy(image.dataLength());
    for (auto _ : state) {
        std::FILE* const file = std::fopen(path.c_str(), "rb");
        benchmark::DoNotOptimize(std::fread(bytes.data(), 1, bytes.size(), file));
        std::memcpy(copy.data(), bytes.data(), copy.size());
        std::fclose(file);
    }
    std::filesystem::remove(path);
    setBytes(state);
}

void tiffWrite(benchmark::State& state)
{
    const Image0 image = photograph();
    const std::string path = benchFile("image.tif");
    for (auto _ : state) {
        ImageWriter().write(image, path, true);
    }
    std::filesystem::remove(path);
    setBytes(state);
}

void tiffRead(benchmark::State& state)
{
    const std::string path = benchFile("image.tif");
    ImageWriter().write(photograph(), path, true);
    Image0 image;
    for (auto _ : state) {
        ImageReader().read(image, path);
    }
    std::filesystem::remove(path);
    setBytes(state);
}

/// The argument tells whether the file is compressed.
void stackWrite(benchmark::State& state)
{
    const Image2 image = stack();
    const std::string path = benchFile("stack.tif");
    for (auto _ : state) {
        ImageWriter().write(image, path, state.range(0) != 0, true);
    }
    std::filesystem::remove(path);
    setBytes(state);
}

void stackRead(benchmark::State& state)
{
    const std::string path = benchFile("stack.tif");
    ImageWriter().write(stack(), path, state.range(0) != 0, true);
    for (auto _ : state) {
        Image2 image;
        ImageReader().read(image, path, true);
    }
    std::filesystem::remove(path);
    setBytes(state);
}

} // namespace

BENCHMARK(plainWrite)->Unit(benchmark::kMillisecond);
BENCHMARK(tiffWrite)->Unit(benchmark::kMillisecond);
BENCHMARK(stackWrite)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(plainRead)->Unit(benchmark::kMillisecond);
BENCHMARK(tiffRead)->Unit(benchmark::kMillisecond);
BENCHMARK(stackRead)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
