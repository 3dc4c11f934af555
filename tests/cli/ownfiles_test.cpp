#include "cli/commandrunner.h"
#include "cli/leaffolder.h"
#include "image/files/imagereader.h"
#include "image/pixels/image0.h"
#include "interface/qimageconversion.h"

#include <QImage>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace {

namespace fs = std::filesystem;

QString qt(const std::string& path)
{
    return QString::fromStdString(path);
}

/// The photograph as a PNG file.
std::string asPng(const std::string& photograph, const std::string& path)
{
    Image0 image;
    ImageReader().read(image, photograph);
    EXPECT_TRUE(toQImage(image).save(qt(path)));
    return path;
}

/// The exit status of the command by way of the shell.
int shell(const std::string& arguments)
{
    return WEXITSTATUS(std::system((CRENARA_PROGRAM " " + arguments).c_str()));
}

} // namespace

TEST(OwnFiles, NoPhotographAndNoOtherFileOfAUserIsWrittenOver)
{
    LeafFolder folder;
    const std::string tiff = folder.addLeaf("a");
    const std::string png = asPng(tiff, folder.file("a.png"));
    const std::string stack = folder.file("s.sdf");
    const std::string table = folder.writeJunctions();
    runs({"stack", stack, png});
    const Words pictures = {"picture",     stack,     "--out",
                            folder.path(), "--sheet", folder.file("x.png")};
    runs(pictures);
    runs(pictures);
    for (const std::string name : {"a_landmarks.png", "x.png"}) {
        fs::copy_file(png, folder.file(name), fs::copy_options::overwrite_existing);
        fails(pictures, folder.file(name) + ": crenara did not write this file", 2);
        EXPECT_EQ(folder.read(name), bytesOf(png));
        runs(joined(pictures, {"--replace"}));
    }
    const std::string project = folder.write("p.crp", "Species\t\"mine\"\n");
    for (const Words& given : std::vector<Words>{{"landmarks", stack, table},
                                                 {"project", project},
                                                 {"contour", stack, "-o", folder.file("b.sdf")},
                                                 {"stack", folder.file("b.sdf"), tiff}}) {
        const std::string target = given[0] == "landmarks" ? table
                                   : given[1] == project   ? project
                                                           : folder.write("b.sdf", "mine");
        const std::string before = bytesOf(target);
        fails(given, target + ": crenara did not write this file", 2);
        EXPECT_EQ(bytesOf(target), before) << given[0];
    }
    EXPECT_EQ(bytesOf(png), bytesOf(asPng(tiff, folder.file("again.png"))));
}

TEST(OwnFiles, AStackIsReplacedUnlessItWasChangedByHand)
{
    LeafFolder folder;
    const std::string photograph = folder.addLeaf("a");
    const Words run = {"run",     "--out", folder.file("o"), "--junctions", folder.writeJunctions(),
                       photograph};
    const std::string stack = folder.file("o/o.sdf");
    runs(run);
    runs({"hierarchy", stack, "none"});
    runs(run);
    // One digit of a landmark, as a host would save it.
    std::string edited = bytesOf(stack);
    edited[edited.rfind(',') - 1] ^= 1;
    folder.write("o/o.sdf", edited);
    runs({"hierarchy", stack, "none"});
    const std::string kept = bytesOf(stack);
    for (const Words& again : {run, Words{"stack", stack, photograph}}) {
        fails(again, stack + ": crenara did not write this file, or it was changed since", 2);
        EXPECT_EQ(bytesOf(stack), kept);
    }
    runs(joined(run, {"--replace"}));
    runs(run);
}

TEST(OwnFiles, AConversionIsThatOfThePhotographThatWasGiven)
{
    LeafFolder folder;
    const std::string few = folder.addLeaf("few", 3);
    const std::string many = folder.addLeaf("leaf", 5);
    fs::create_directory(folder.file("a"));
    fs::create_directory(folder.file("b"));
    const std::string first = asPng(few, folder.file("a/leaf.png"));
    const std::string second = asPng(many, folder.file("b/leaf.png"));
    const Words options = {"run", "--out", folder.file("o"), "--junctions",
                           folder.writeJunctions()};
    runs(joined(options, {first}));
    const std::string tables = bytesOf(folder.file("o/o_LeafMeasures.data"));
    EXPECT_TRUE(runs(joined(options, {second})).says("o/leaf.png-2.tif"));
    EXPECT_EQ(cellOf(folder.file("o/o_LeafMeasures.data"), "leaf", "Total_Peak_Number"), "10");
    runs(joined(options, {first}));
    EXPECT_EQ(bytesOf(folder.file("o/o_LeafMeasures.data")), tables);
    EXPECT_FALSE(fs::exists(folder.file("o/leaf.png-3.tif")));
}

TEST(OwnFiles, AverageFilesOfAFormerRunWithMoreBinsGo)
{
    LeafFolder folder;
    for (int i = 0; i < 4; ++i) {
        folder.addLeaf("l" + std::to_string(i), 3);
    }
    const std::string stack = folder.makeLandmarks(folder.photographs(), false);
    const auto average = [&](const char* number) {
        runs({"average", stack, "bins", "--out", folder.file("m"), "--number", number, "--begin",
              "1", "--end", "1e6"});
    };
    average("12");
    EXPECT_TRUE(fs::exists(folder.file("m/s-trajectory-ho-11.cv")));
    const std::string own = folder.write("m/s-trajectory-ho-11-mine.cv", "mine");
    folder.write("m/s-trajectory-ho-77.cv", "mine, without an image");
    average("1");
    for (const char* ending : {".cv", "-sampled.cv", ".tif"}) {
        EXPECT_FALSE(fs::exists(folder.file("m/s-trajectory-ho-11") + ending)) << ending;
        EXPECT_TRUE(fs::exists(folder.file("m/s-trajectory-ho-0") + ending)) << ending;
    }
    EXPECT_EQ(bytesOf(own), "mine");
    EXPECT_TRUE(fs::exists(folder.file("m/s-trajectory-ho-77.cv")));
}

TEST(Output, WhatCannotBeWrittenEndsWithStatusOne)
{
    EXPECT_EQ(shell("--help >/dev/full 2>/dev/null"), 1);
    EXPECT_EQ(shell("run --help >/dev/full 2>/dev/null"), 1);
    EXPECT_EQ(shell("--version >/dev/null"), 0);
    // The reader is gone before anything is written.
    EXPECT_EQ(WEXITSTATUS(std::system("bash -c 'set -o pipefail; (sleep 0.3; " CRENARA_PROGRAM
                                      " --help) 2>/dev/null | true'")),
              1);
}
