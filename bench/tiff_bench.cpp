// TIFF files on a warm cache, beside the same bytes through fread and fwrite with a copy, and beside
// a loop over libtiff's rows.

#include "image/files/imagereader.h"
#include "image/files/imagewriter.h"
#include "image/pixels/image0.h"
#include "image/pixels/image2.h"

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <tiffio.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
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

/// The argument tells whether each file is read into memory that no one has touched yet, as an image
/// that is made for it must be.
void plainRead(benchmark::State& state)
{
    const Image0 image = photograph();
    const std::string path = benchFile("plain");
    ImageWriter().write(image, path, true);
    using Bytes = std::unique_ptr<unsigned char[]>;
    const std::size_t length = image.dataLength();
    Bytes bytes(new unsigned char[length]);
    Bytes copy(new unsigned char[length]);
    for (auto _ : state) {
        if (state.range(0) != 0) {
            bytes.reset(new unsigned char[length]);
            copy.reset(new unsigned char[length]);
        }
        std::FILE* const file = std::fopen(path.c_str(), "rb");
        benchmark::DoNotOptimize(std::fread(bytes.get(), 1, length, file));
        std::memcpy(copy.get(), bytes.get(), length);
        benchmark::DoNotOptimize(copy[length / 2]);
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

constexpr std::size_t rowLength = std::size_t(side) * 3;

void writeRows(const std::string& path, const Image2& image)
{
    TIFF* const tif = TIFFOpen(path.c_str(), "w");
    TIFFSetField(tif, TIFFTAG_IMAGEWIDTH, side);
    TIFFSetField(tif, TIFFTAG_IMAGELENGTH, side);
    TIFFSetField(tif, TIFFTAG_SAMPLESPERPIXEL, 3);
    TIFFSetField(tif, TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(tif, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tif, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
    TIFFSetField(tif, TIFFTAG_ROWSPERSTRIP, 1);
    TIFFSetField(tif, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
    std::vector<unsigned char> row(rowLength);
    for (std::uint32_t i = 0; i < std::uint32_t(side); ++i) {
        std::memcpy(row.data(), image.frame(0, 0) + i * rowLength, rowLength);
        TIFFWriteScanline(tif, row.data(), i, 0);
    }
    TIFFWriteDirectory(tif);
    TIFFClose(tif);
    const int descriptor = open(path.c_str(), O_RDWR);
    fsync(descriptor);
    close(descriptor);
}

void plainLzwWrite(benchmark::State& state)
{
    const Image2 image = stack();
    const std::string path = benchFile("rows.tif");
    for (auto _ : state) {
        writeRows(path, image);
    }
    std::filesystem::remove(path);
    setBytes(state);
}

void plainLzwRead(benchmark::State& state)
{
    const std::string path = benchFile("rows.tif");
    writeRows(path, stack());
    for (auto _ : state) {
        const std::unique_ptr<unsigned char[]> bytes(new unsigned char[rowLength * side]);
        TIFF* const tif = TIFFOpen(path.c_str(), "r");
        for (std::uint32_t i = 0; i < std::uint32_t(side); ++i) {
            TIFFReadScanline(tif, bytes.get() + i * rowLength, i, 0);
        }
        TIFFClose(tif);
    }
    std::filesystem::remove(path);
    setBytes(state);
}

} // namespace

BENCHMARK(plainWrite)->Unit(benchmark::kMillisecond);
BENCHMARK(tiffWrite)->Unit(benchmark::kMillisecond);
BENCHMARK(stackWrite)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(plainLzwWrite)->Unit(benchmark::kMillisecond);
BENCHMARK(plainRead)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(tiffRead)->Unit(benchmark::kMillisecond);
BENCHMARK(stackRead)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(plainLzwRead)->Unit(benchmark::kMillisecond);
