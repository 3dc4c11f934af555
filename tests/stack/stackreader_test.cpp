#include "stack/stackreader.h"
#include "stack/stackwriter.h"
#include "support/commalocale.h"
#include "support/stacks.h"
#include "support/temporaryfolder.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace stacks;

namespace {

/// Stack files in a folder of their own; `a.sdf` is read, `b.sdf` is written from what was read.
class Files
{
public:
    std::string path(const std::string& name) const { return folder_.file(name); }

    std::string folder() const { return folder_.path().string(); }

    std::string text(const Stack& stack) const
    {
        EXPECT_TRUE(StackWriter().write(stack, path("b.sdf")));
        return folder_.read("b.sdf");
    }

    bool read(const std::string& text, Stack& stack, StackReader& reader) const
    {
        return reader.read(stack, folder_.write("a.sdf", text));
    }

    /// Reads the text and gives the messages, without the path in front of each.
    std::vector<std::string> messages(const std::string& text, int fatal) const
    {
        Stack stack;
        StackReader reader;
        EXPECT_EQ(read(text, stack, reader), fatal == 0) << text;
        EXPECT_EQ(reader.getNumFatalErrors(), fatal);
        std::vector<std::string> result;
        for (const std::string& message : reader.getLog()) {
            EXPECT_EQ(message.compare(0, path("a.sdf:").size(), path("a.sdf:")), 0) << message;
            result.push_back(message.substr(path("a.sdf:").size()));
        }
        return result;
    }

private:
    TemporaryFolder folder_;
};

// Begins the lines 1, 4, 9, 13 and 18.
const std::string small =
    "FileFormatVersion 1.05;\nSTACK \"s\";\n\n"
    "SLICE \"leaf\" \"leaf.tif\";\nSliceSize1 8;\nSliceSize2 9;\nROTATE 1;\n\n"
    "MODEL \"Contour\";\nCOLOR 1 2 3;\nPRIMITIVE Polygon;\n\n"
    "MODELITEM \"Contour\" \"leaf\";\nMODELITEMDATA\n 1,2 3,4\n 5,6;\n\n"
    "POSE \"p\";\nPOSESHIFT 1 2;\n";

const std::string missingLeaf(const Files& files)
{
    return "4: slice \"leaf\": the image file \"" + files.path("leaf.tif") +
           "\" can't be read: there is no such file";
}

std::string with(const std::string& from, const std::string& to)
{
    std::string text = small;
    text.replace(text.find(from), from.size(), to);
    return text;
}

} // namespace

// The text holds all that a stack file can; the writer's tests tell that it is the right one.
TEST(StackReader, AWrittenStackIsWrittenTheSameAgainInAnyLocale)
{
    const Files files;
    for (unsigned seed = 0; seed < 150; ++seed) {
        const auto written = randomStack(seed, files.folder());
        const std::string text = files.text(*written);
        const std::unique_ptr<CommaLocale> comma(seed % 2 == 0 ? nullptr : new CommaLocale);
        Stack read;
        StackReader reader;
        ASSERT_TRUE(files.read(text, read, reader)) << reader.getLog().front();
        ASSERT_EQ(files.text(read), text) << seed;
        // Both lists of an item are filled.
        ASSERT_EQ(read.getNumSlices(), written->getNumSlices());
        for (int i = 0; i < read.getNumSlices(); ++i) {
            ASSERT_EQ(read.getSlice(i).getNumItems(), written->getSlice(i).getNumItems());
            ASSERT_EQ(read.getSlice(i).getStack(), &read);
        }
    }
}

TEST(StackReader, DifferencesBelowTheWrittenDigitsMakeNoStatement)
{
    const Files files;
    Stack written;
    written.setDefaultPixelCalibration(calibration(0.1f, 1.0f));
    written.setDefaultRelativePosition(0.3f);
    StackSlice& slice = addSlice(written, "s", statedFile("", 1, 1));
    slice.setPixelCalibration(calibration(std::nextafter(0.1f, 1.0f), std::nextafter(1.0f, 2.0f)));
    slice.setRelativePosition(std::nextafter(0.3f, 1.0f));
    const std::string text = files.text(written);
    Stack read;
    StackReader reader;
    ASSERT_TRUE(files.read(text, read, reader));
    EXPECT_EQ(files.text(read), text);
}

TEST(StackReader, TakesThePlaceOfAllThatTheStackHeld)
{
    const Files files;
    for (unsigned seed = 0; seed < 20; ++seed) {
        const auto stack = randomStack(seed, files.folder());
        StackReader reader;
        ASSERT_TRUE(files.read(small, *stack, reader));
        Stack fresh;
        ASSERT_TRUE(files.read(small, fresh, reader));
        EXPECT_EQ(files.text(*stack), files.text(fresh));
    }
}

TEST(StackReader, ReadsTheOtherSpellings)
{
    const Files files;
    std::vector<std::pair<std::string, std::string>> spellings = {
        {"COLOR", "M2DCOLOR"},         {"FILLEDIN", "M2DFILLEDIN"},  {"HIDDEN3D", "M2DHIDDEN3D"},
        {"ImagesPath", "IMAGESPATH"},  {"ImagesPath", "IMAGESDIR"},  {"MODEL", "M2DCLASS"},
        {"MODELITEM", "M2DITEM"},      {"MODELITEMDATA", "M2DDATA"}, {"PIXASPECT", "ASPRATIO"},
        {"PIXASPECT", "ASPECT"},       {"POINTSIZE", "M2DRADIUS"},   {"POSITION", "DEPTH"},
        {"PRIMITIVE", "M2DPRIMITIVE"}, {"RELPOSITION", "RELDEPTH"},  {"THICKNESS", "M2DTHICKNESS"},
    };
    for (unsigned seed = 0; seed < 30; ++seed) {
        const auto stack = randomStack(seed, files.folder());
        const std::string text = files.text(*stack);
        std::string old = text;
        // Of two other spellings of a word the first is taken, each by turns.
        std::reverse(spellings.begin(), spellings.end());
        for (const auto& [first, other] : spellings) {
            for (const char* end : {" ", "\n"}) {
                StackIO::replace(old, "\n" + first + end, "\n" + other + end);
            }
        }
        // Line ends and blanks of other systems come along.
        StackIO::replace(old, ";\n", " ;\r\n");
        Stack read;
        StackReader reader;
        ASSERT_TRUE(files.read(old, read, reader)) << reader.getLog().front();
        ASSERT_EQ(files.text(read), text);
    }
}

TEST(StackReader, AFileCutAnywhereIsToldOrReadRightUpToThere)
{
    const Files files;
    std::string text;
    for (unsigned seed = 0; text.size() < 3000 || text.find("MODELITEM \"") == std::string::npos ||
                            text.find("POSE ") == std::string::npos;
         ++seed) {
        text = files.text(*randomStack(seed, files.folder()));
    }
    int accepted = 0;
    for (std::size_t length = 0; length < text.size(); ++length) {
        const std::string cut = text.substr(0, length);
        Stack stack;
        StackReader reader;
        if (!files.read(cut, stack, reader)) {
            ASSERT_GT(reader.getNumFatalErrors(), 0);
            continue;
        }
        ++accepted;
        const auto& log = reader.getLog();
        ASSERT_EQ(!log.empty() && log.back().find("line feed") != std::string::npos,
                  cut.back() != '\n');
        const std::size_t last = cut.find_last_not_of(" \n");
        ASSERT_EQ(cut[last], ';') << cut;
        // All blocks in front of the one that was cut are whole. A folder belongs to the slice
        // behind it.
        std::size_t whole = cut.rfind("\n\n");
        while (whole != std::string::npos &&
               cut.compare(cut.rfind('\n', whole - 1) + 1, 10, "ImagesPath") == 0) {
            whole = cut.rfind("\n\n", whole - 1);
        }
        if (whole != std::string::npos && cut.compare(whole + 2, 10, "ImagesPath") != 0) {
            ASSERT_EQ(files.text(stack).compare(0, whole + 1, cut, 0, whole + 1), 0) << cut;
        }
    }
    EXPECT_GT(accepted, 20);
}

TEST(StackReader, TellsEachFaultWithLineAndReason)
{
    const Files files;
    EXPECT_EQ(files.messages(small, 0), std::vector<std::string>{missingLeaf(files)});
    const std::string slice = "slice \"leaf\": ";
    const std::string model = "10: model \"Contour\": ";
    const std::string item = "item of model \"Contour\" on slice \"leaf\": ";
    const std::string data = "15: " + item + "MODELITEMDATA: ";
    const std::string faults[][3] = {
        {"ROTATE 1", "ROTATE x", "7: " + slice + "ROTATE: a number is missing before \"x\""},
        {"ROTATE 1", "ROTATE 1e99", "7: " + slice + "ROTATE: the number 1e99 is out of range"},
        {"ROTATE 1", "ROTATE nan", "7: " + slice + "ROTATE: the number nan is out of range"},
        {"ROTATE 1", "ROTATE 1 2", "7: " + slice + "ROTATE: a semicolon is missing before \"2\""},
        {"ROTATE 1", "PIXWIDTH 0", "7: " + slice + "PIXWIDTH: the number must be positive"},
        {"ROTATE 1", "TWIST 1",
         "7: " + slice + "the word \"TWIST\" is not known, its statement is left out"},
        {"ROTATE 1", "PRIMITIVE Polygon",
         "7: " + slice + "PRIMITIVE has no place here and is left out"},
        {"Size1 8", "Size1 -8", "5: " + slice + "SliceSize1: the number -8 is out of range"},
        {"COLOR 1 2 3", "COLOR 1 2 300", model + "COLOR: the number 300 is out of range"},
        {"COLOR 1 2 3", "PRIMITIVE Ring", model + "PRIMITIVE: there is no primitive \"Ring\""},
        {"\"Contour\" \"leaf\"", "\"Contour\" \"loaf\"",
         "13: MODELITEM: there is no slice \"loaf\""},
        {"\"Contour\" \"leaf\"", "\"Outline\" \"leaf\"",
         "13: MODELITEM: there is no model \"Outline\""},
        // Told where the statement ends.
        {"3,4", "3,-999999",
         "16: " + item + "MODELITEMDATA: the point (3, -999999) lies far outside its image"},
        {"3,4", "3,b", data + "an integer is missing before \"b\""},
        {"3,4", "3", data + "a comma is missing between two coordinates"},
        {"3,4", "99999999999,4", data + "the number 99999999999 is out of range"},
        {"MODELITEMDATA\n 1,2 3,4\n 5,6;", "", "13: " + item + "the item has no data"},
        {"\"s\";", "\"s;", "2: STACK: a double quote is not closed"},
        {"POSESHIFT 1 2;\n", "POSESHIFT 1", "19: POSESHIFT: the file ends inside the statement"}};
    for (const auto& [from, to, message] : faults) {
        const auto told = files.messages(with(from, to), 1);
        EXPECT_NE(std::find(told.begin(), told.end(), message), told.end())
            << message << "\nbut:\n"
            << ::testing::PrintToString(told);
    }
}

TEST(StackReader, GoesOnBehindAFault)
{
    const Files files;
    Stack stack;
    StackReader reader;
    EXPECT_FALSE(files.read(with("COLOR 1 2 3", "COLOR \"red;"), stack, reader));
    ASSERT_EQ(stack.getNumModels(), 1);
    ASSERT_EQ(stack.getModel(0).getNumItems(), 1);
    EXPECT_EQ(stack.getModel(0).getItem(0).getSize(), 3);
    EXPECT_EQ(stack.getNumPoses(), 1);

    EXPECT_FALSE(files.read(with("3,4", "3;4"), stack, reader));
    EXPECT_EQ(stack.getModel(0).getNumItems(), 0) << "damaged landmarks are not kept in part";
    EXPECT_EQ(stack.getSlice(0).getNumItems(), 0);
}

TEST(StackReader, WordsWithoutMeaningAreToldAndLeftOut)
{
    const Files files;
    for (const char* word : {"FIT", "PIXHEIGHT", "SAMPLE", "SAMPLECOORDS", "SAMPLEVALUE",
                             "STANDARDIMAGE", "CALIBRATIONCURVE"}) {
        const auto told = files.messages(with("ROTATE 1", word + std::string(" \"a;b\" 1")), 0);
        EXPECT_EQ(told.at(0), std::string("7: slice \"leaf\": ") + word +
                                  " has no meaning here and is left out");
    }
    const auto later = files.messages(with("1.05", "9.99"), 0);
    EXPECT_EQ(later.front(), "1: the file is of a later version than this program knows");
}

TEST(StackReader, WhatIsNoStackFileLeavesTheStackAlone)
{
    const Files files;
    Stack stack;
    stack.setName("kept");
    StackReader reader;
    for (const char* text : {"", " \n", "\x89PNG\r\n", "II*", "hello;"}) {
        EXPECT_FALSE(files.read(text, stack, reader));
        EXPECT_EQ(reader.getNumFatalErrors(), 1);
        EXPECT_EQ(reader.getLog().at(0),
                  files.path("a.sdf") + ":1: the file is no stack description file");
    }
    EXPECT_FALSE(reader.read(stack, files.path("none.sdf")));
    EXPECT_EQ(reader.getLog().at(0),
              files.path("none.sdf") + ": the file can't be read: No such file or directory");
    EXPECT_FALSE(reader.read(stack, files.folder()));
    EXPECT_FALSE(reader.read(stack, "/dev/zero"));
    EXPECT_EQ(stack.getName(), "kept");
}

TEST(StackReader, ImagesAreFoundUnderAnyNameAndInAnyFolder)
{
    const Files files;
    Stack stack;
    for (const std::string folder : {"", "with blank/", "semi;colon/", "\xC3\xBC/deep/", "it's/"}) {
        std::filesystem::create_directories(files.path(folder));
        for (const char* name : {"a b.tif", "it's.tif", "a;b.tif", ";.tif",
                                 "\xC3\xA9rable \xE8\x91\x89.tif", "a,b(1).tif"}) {
            writeImage(files.path(folder + name), 7, 5);
            addSlice(stack, folder + name, ImageSourceFile(files.path(folder + name)));
        }
    }
    for (const bool absolute : {false, true}) {
        stack.setAbsoluteImagesPathPolicy(absolute);
        const std::string text = files.text(stack);
        Stack read;
        StackReader reader;
        ASSERT_TRUE(files.read(text, read, reader));
        EXPECT_TRUE(reader.getLog().empty()) << reader.getLog().front();
        EXPECT_EQ(read.getLastSlice().width(), 7);
        EXPECT_EQ(files.text(read), text);
    }
    // Relative folders count from the stack file, wherever the program runs.
    const auto previous = std::filesystem::current_path();
    std::filesystem::current_path(files.folder());
    Stack relative;
    addSlice(relative, "leaf", ImageSourceFile("with blank/a b.tif"));
    for (const char* path : {"it's/s.sdf", "s.sdf", "with blank/s.sdf"}) {
        EXPECT_TRUE(StackWriter().write(relative, path));
        StackReader reader;
        EXPECT_TRUE(reader.read(relative, path));
        EXPECT_TRUE(reader.getLog().empty()) << reader.getLog().front();
    }
    std::filesystem::current_path(previous);
}

TEST(StackReader, MissingAndChangedImagesAreToldAndTheLandmarksSurvive)
{
    const Files files;
    Stack stack;
    StackReader reader;
    writeImage(files.path("leaf.tif"), 20, 10);
    EXPECT_EQ(files.messages(small, 0),
              std::vector<std::string>{"4: slice \"leaf\": the image has 10 x 20 pixels, not 8 x 9 "
                                       "as the stack file tells"});
    std::filesystem::resize_file(files.path("leaf.tif"), 3);
    ASSERT_TRUE(files.read(small, stack, reader));
    EXPECT_NE(reader.getLog().at(0).find("leaf.tif\" can't be read: "), std::string::npos);
    EXPECT_EQ(stack.getSlice(0).getNumItems(), 1);
    EXPECT_NE(files.text(stack).find("\"leaf.tif\";\nSliceSize1 8;\nSliceSize2 9;\n"),
              std::string::npos);
}

// What a volume, a page or a mosaic that is there becomes is told beside the writer's forms.
TEST(StackReader, KeepsPlanesAndTilesThatAreMissing)
{
    const Files files;
    Stack stack;
    StackReader reader;
    const std::string mosaic = "SLICE \"c\" 2 2;\nIMAGE 1 2 " + files.path("t.tif") +
                               ";\nIMAGE 2 1 " + files.path("two blanks .tif") +
                               ";\nSliceSize1 44;\nSliceSize2 66;\n";
    writeImage(files.path("t.tif"), 6, 4);
    ASSERT_TRUE(
        files.read("STACK \"s\";\n" + mosaic + "StackSlice \"d\" \"gone.vm\" 1;\n", stack, reader));
    EXPECT_EQ(stack.getSlice(1).getImageSource().getType(), 3);
    const std::string written = files.text(stack);
    EXPECT_NE(written.find(mosaic), std::string::npos)
        << "the size is the stated one while a tile is missing";
    ASSERT_TRUE(files.read(written, stack, reader));
    EXPECT_EQ(files.text(stack), written);

    EXPECT_EQ(files.messages("STACK \"s\";\nSLICE \"c\" 1 1;\nIMAGE 2 1 x;\n", 1).at(0),
              "3: slice \"c\": IMAGE: the number 2 is out of range");
    // The folder of the images is not written for a mosaic alone, so a tile that is missing there must
    // not be found elsewhere when the stack is read again.
    writeImage(files.path("u.tif"), 6, 4);
    ASSERT_TRUE(files.read(
        "STACK \"s\";\nImagesPath \"gone\";\nSLICE \"c\" 1 1;\nIMAGE 1 1 u.tif;\n", stack, reader));
    const std::string moved = files.text(stack);
    EXPECT_NE(moved.find("IMAGE 1 1 " + files.path("gone/u.tif") + ";"), std::string::npos);
    ASSERT_TRUE(files.read(moved, stack, reader));
    EXPECT_EQ(files.text(stack), moved);
    // A folder that can't stand in the name of a tile does not keep the stack from being written.
    ASSERT_TRUE(files.read(
        "STACK \"s\";\nImagesPath \"a;b\";\nSLICE \"c\" 1 1;\nIMAGE 1 1 v.tif;\n", stack, reader));
    EXPECT_NE(files.text(stack).find("IMAGE 1 1 " + files.path("v.tif") + ";"), std::string::npos);
    // Each mosaic could be held, both could not: the file would take memory at will.
    EXPECT_EQ(
        files.messages("STACK \"s\";\nSLICE \"c\" 1024 1000;\nSLICE \"d\" 999 1001;\n", 1).at(0),
        "3: SLICE: the number 1001 is out of range");
}
