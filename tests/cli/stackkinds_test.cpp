#include "cli/commandrunner.h"
#include "image/files/imagewriter.h"
#include "image/pixels/image0.h"
#include "image/pixels/image2.h"
#include "image/pixels/voxelmatrix.h"
#include "stack/stack.h"
#include "stack/stackreader.h"
#include "stack/stackslice.h"
#include "support/temporaryfolder.h"
#include "support/tiffs.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>

namespace {

using Bytes = std::vector<int>;

/// An image of 3 rows and 4 columns, samples counted on from `first` through its pages.
template <class T>
std::string
addVolume(const TemporaryFolder& folder, const std::string& name, T first, int planes, int channels)
{
    Image2 image(valueTypeOf<T>(), 3, 4, planes, 1, channels, 1);
    SpatialCalibration calibration;
    calibration.setSize(0.5f, 0.5f, 2.0f);
    LengthUnit unit;
    unit.setScale(-6);
    calibration.setLengthUnit(unit);
    image.setSpatialCalibration(calibration);
    for (int c = 0; c < channels; ++c) {
        Vector<T> samples = image.asVector<T>(c, 0);
        for (int i = 0; i < samples.getSize(); ++i) {
            samples[i] = first++;
        }
    }
    ImageWriter().write(image, folder.file(name), false, true);
    return folder.file(name);
}

std::string addBig(const TemporaryFolder& folder, const std::string& name)
{
    TiffMaker maker(folder.file(name), "w8");
    maker.tags(4, 3, 8, 1, PHOTOMETRIC_MINISBLACK);
    maker.rows(3, [](int row, int column) { return static_cast<unsigned char>(4 * row + column); });
    return folder.file(name);
}

/// A page and a small copy of it, as cameras write.
std::string addWithThumbnail(const TemporaryFolder& folder, const std::string& name)
{
    TiffMaker maker(folder.file(name));
    for (int side : {3, 1}) {
        maker.tags(side, side, 8, 1, PHOTOMETRIC_MINISBLACK);
        maker.rows(side, [](int, int) { return 9; });
    }
    return folder.file(name);
}

std::string addSeed(const TemporaryFolder& folder, const std::string& seed, const std::string& name)
{
    std::filesystem::copy_file(CRENARA_SOURCE_DIR "/fuzz/seeds/" + seed, folder.file(name));
    return folder.file(name);
}

/// First and last sample of each slice, by its name.
std::map<std::string, Bytes> endsOf(const std::string& path)
{
    Stack stack;
    StackReader reader;
    EXPECT_TRUE(reader.read(stack, path));
    EXPECT_TRUE(reader.getLog().empty());
    std::map<std::string, Bytes> ends;
    testing::internal::CaptureStdout(); // planes of volume files are listed when read
    for (int i = 0; i < stack.getNumSlices(); ++i) {
        Image0 image;
        stack.getSlice(i).load(image);
        PixelMatrix<int> pixels(image);
        ends[stack.getSlice(i).getName()] = {pixels[0][0],
                                             pixels[pixels.getSize1() - 1][pixels.getSize2() - 1]};
    }
    testing::internal::GetCapturedStdout();
    return ends;
}

} // namespace

TEST(StackCommand, TakesEveryKindOfFile)
{
    const TemporaryFolder folder;
    VoxelMatrix<float> volume(3, 4, 2);
    for (int k = 0; k < 2; ++k) {
        volume[k].fill(static_cast<float>(30 + k));
    }
    volume.save(folder.file("volume.vm"), true);
    const std::string raw =
        folder.write("raw.img", "0000abcdefgh" + std::string(512 * 512 - 1, 'x') + "y");
    const Words files = {
        addVolume<unsigned char>(folder, "plane.tif", 1, 1, 1),
        addVolume<unsigned short>(folder, "hyper.tif", 1000, 2, 2),
        addVolume<float>(folder, "float.tif", -6, 1, 1),
        addBig(folder, "big.tif"),
        addWithThumbnail(folder, "camera.tif"),
        addSeed(folder, "image/microscope.tif", "cells.lsm"),
        addSeed(folder, "hdf5/plain.h5", "numbers.h5"),
        folder.file("volume.vm"),
        raw,
    };
    std::filesystem::create_directory(folder.file("out"));
    const std::string path = folder.file("out/all.sdf");
    Words arguments = {"stack", path};
    arguments.insert(arguments.end(), files.begin(), files.end());
    const CommandResult made = runs(arguments);
    EXPECT_TRUE(made.says(folder.file("float.tif") +
                          ": values from -6 to 5 are written as 0 to 255 in " +
                          folder.file("out/float.tif.tif")));
    // Pages of a hyperstack: channels first, then planes. The microscope's seed counts 40 a row and 7
    // a column, its channels behind each other.
    const std::map<std::string, Bytes> expected = {
        {"plane", {1, 12}},      {"hyper-1", {0, 60}},    {"hyper-2", {130, 190}},
        {"hyper-3", {65, 125}},  {"hyper-4", {195, 255}}, {"float", {0, 255}},
        {"big", {0, 11}},        {"camera", {9, 9}},      {"cells-1", {0, 87}},
        {"cells-2", {120, 207}}, {"numbers", {0, 255}},   {"volume-1", {30, 30}},
        {"volume-2", {31, 31}},  {"raw", {'x', 'y'}}};
    EXPECT_EQ(endsOf(path), expected);

    runs({"picture", path, "--out", folder.file("pictures")});
    for (const auto& slice : expected) {
        EXPECT_TRUE(
            std::filesystem::exists(folder.file("pictures/" + slice.first + "_landmarks.png")))
            << slice.first;
    }
}

TEST(StackCommand, JoinsTilesToMosaics)
{
    const TemporaryFolder folder;
    Words arguments = {"stack", folder.file("all.sdf"), "--mosaic", "1x2"};
    for (int i = 0; i < 4; ++i) {
        arguments.push_back(addVolume<unsigned char>(folder, "tile" + std::to_string(i) + ".tif",
                                                     static_cast<unsigned char>(20 * i), 1, 1));
    }
    runs(arguments);
    const std::map<std::string, Bytes> expected = {{"tile0", {0, 31}}, {"tile2", {40, 71}}};
    EXPECT_EQ(endsOf(folder.file("all.sdf")), expected);

    arguments.pop_back();
    fails(arguments, "3 images don't fill mosaics of 1 by 2");
    arguments[3] = "2";
    EXPECT_TRUE(
        crenara(arguments).says("option 'mosaic' needs rows and columns as in 2x3, not '2'"));
}

TEST(StackCommand, TellsWhichFileItCantTake)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("all.sdf");
    const std::map<std::string, std::string> faults = {
        {folder.write("short.h5", "\x89HDF\r\n\x1a\n and no more"), "short: Cannot read HDF5: "},
        {folder.write("cut.vm", std::string(40, '\0')), "cut: "},
        {folder.write("none.lsm", "no microscope"),
         "none: The photograph is neither TIFF, PNG nor JPEG"},
        {folder.file("gone.vm"), "gone: Cannot open file for reading"}};
    for (const auto& [file, what] : faults) {
        fails({"stack", path, file}, file + ": slice " + what);
        EXPECT_FALSE(std::filesystem::exists(path));
    }
}
