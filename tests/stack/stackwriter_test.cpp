#include "image/image0.h"
#include "image/imagereader.h"
#include "image/imagesourcefile.h"
#include "image/imagesourcefilemosaic.h"
#include "image/imagesourcelsmstackplane.h"
#include "image/imagesourcetiffstackplane.h"
#include "image/imagesourcevoxelmatrixfileplane.h"
#include "image/imagesourcevoxelmatrixplane.h"
#include "image/voxelmatrix.h"
#include "stack/stackreader.h"
#include "stack/stackwriter.h"
#include "support/commalocale.h"
#include "support/errors.h"
#include "support/stacks.h"
#include "support/temporaryfolder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <limits>
#include <locale>
#include <random>
#include <sstream>
#include <string>
#include <vector>

using namespace stacks;

namespace {

const std::string header = "FileFormatVersion 1.05;\n"
                           "STACK \"\";\n"
                           "LengthUnitScale -6;\n"
                           "PIXASPECT 1;\n"
                           "PIXWIDTH 1;\n"
                           "RELPOSITION 0;\n"
                           "LASTSEGMENTEDSLICE \"\";\n"
                           "LASTREGISTEREDSLICE \"\";\n"
                           "Annotation \"\";\n"
                           "AbsoluteImagesPathPolicy false;\n"
                           "InvertZAxis false;\n";

std::string slicesOf(const Stack& stack, const std::string& folder)
{
    std::ostringstream stream;
    StackWriter().writeSlices(stack, folder, stream);
    return stream.str();
}

std::string modelsOf(const Stack& stack)
{
    std::ostringstream stream;
    StackWriter().writeModels(stack, stream);
    return stream.str();
}

/// Behind the word that begins an item's coordinates, up to the end of the text.
std::string dataOf(const Stack& stack)
{
    const std::string text = modelsOf(stack);
    const std::string word = "MODELITEMDATA\n";
    return text.substr(text.find(word) + word.size());
}

} // namespace

TEST(StackIO, KeepsTheKeywordsWhileAnyOfItsObjectsStands)
{
    const StackWriter io;
    for (int value = 0; value < 54; ++value) {
        const auto keyword = static_cast<StackIO::Keyword>(value);
        EXPECT_EQ(io.getKeyword(io.getString(keyword)), keyword) << value;
    }
    for (const char* unknown : {"model", "", "MODEL ", "Slice"}) {
        EXPECT_EQ(static_cast<int>(io.getKeyword(unknown)), 54) << unknown;
    }
    auto first = std::make_unique<StackWriter>();
    const StackWriter copy(*first);
    first.reset();
    EXPECT_EQ(copy.getString(StackIO::Keyword::Model), "MODEL");
}

TEST(StackIO, EscapedTextsComeBack)
{
    const StackWriter io;
    EXPECT_EQ(io.exportString("a;b\nc\"d"), "a__SC__b__NL__c__DQ__d");
    std::mt19937 random(7);
    const std::string letters = ";\n\"ab_ \t\xC3\xA9";
    for (int round = 0; round < 500; ++round) {
        std::string text;
        for (unsigned n = random() % 20; n > 0; --n) {
            text += letters[random() % letters.size()];
        }
        EXPECT_EQ(io.importString(io.exportString(text)), text);
        EXPECT_EQ(io.exportString(text).find_first_of(";\n\""), std::string::npos);
    }
    std::string grown = "aaa";
    StackIO::replace(grown, "a", "aa");
    EXPECT_EQ(grown, "aaaaaa");
}

TEST(StackIO, AllowsFeaturesUpToItsVersion)
{
    StackWriter io;
    EXPECT_TRUE(io.ensureFileFormatVersion(1.05f));
    EXPECT_FALSE(io.ensureFileFormatVersion(1.06f));
    io.setFileFormatVersion(1.1f);
    EXPECT_TRUE(io.ensureFileFormatVersion(1.1f));
}

TEST(StackWriter, AnEmptyStackIsElevenStatements)
{
    const TemporaryFolder folder;
    EXPECT_TRUE(StackWriter().write(Stack(), folder.file("a.sdf")));
    EXPECT_EQ(folder.read("a.sdf"), header);
}

TEST(StackWriter, WritesEveryStatementInItsPlace)
{
    const TemporaryFolder folder;
    Stack stack;
    stack.setDefaultRelativePosition(2.0f);
    StackSlice& first = addSlice(stack, "leaf 1", statedFile(folder.file("one.tif"), 20, 30));
    first.setRegistration({3, -4, 22.5f});
    first.setAnnotation("torn; see \"notes\"\nagain");
    StackSlice& second = addSlice(stack, "leaf 2", statedFile(folder.file("two.tif"), 20, 30));
    second.setRelativePosition(0.1234567f);
    second.setPixelCalibration(calibration(0.5f, 1.5f));
    addSlice(stack, "leaf 3", statedFile(folder.file("two.tif"), 20, 30))
        .setAbsolutePosition(1234567.0f);

    Model& model = addModel(stack, "Contour");
    model.getProperties().setEndCapFlag(true);
    ModelItem& item = addItem(model, first, {{1, 2}, {-3, 4}});
    item.setTriangulationTag(CurveStackTriangulationContourTag::End);
    item.getProperties().setDefaults();
    item.getProperties().setRenderingVisibility(false);
    addPose(stack, "front");

    EXPECT_EQ(slicesOf(stack, folder.path().string()), "\n"
                                                       "SLICE \"leaf 1\" \"one.tif\";\n"
                                                       "SliceSize1 20;\n"
                                                       "SliceSize2 30;\n"
                                                       "ROTATE 22.5;\n"
                                                       "SHIFT 3 -4;\n"
                                                       "Annotation \"torn__SC__ see "
                                                       "__DQ__notes__DQ____NL__again\";\n"
                                                       "\n"
                                                       "SLICE \"leaf 2\" \"two.tif\";\n"
                                                       "SliceSize1 20;\n"
                                                       "SliceSize2 30;\n"
                                                       "RELPOSITION 0.123457;\n"
                                                       "PIXASPECT 1.5;\n"
                                                       "PIXWIDTH 0.5;\n"
                                                       "\n"
                                                       "SLICE \"leaf 3\" \"two.tif\";\n"
                                                       "SliceSize1 20;\n"
                                                       "SliceSize2 30;\n"
                                                       "POSITION 1.23457e+06;\n");
    EXPECT_EQ(modelsOf(stack), "\n"
                               "MODEL \"Contour\";\n"
                               "BRILLIANCY 32;\n"
                               "COLOR 255 0 0;\n"
                               "ECORENDERING false;\n"
                               "FILLEDIN true;\n"
                               "HIDDEN3D false;\n"
                               "POINTSIZE 3;\n"
                               "PRIMITIVE Polygon;\n"
                               "RENDERINGMODE Surface;\n"
                               "RESAMPLING 100 100;\n"
                               "MeshVertexSmoothing 0;\n"
                               "MeshNormalSmoothing 0;\n"
                               "THICKNESS 1;\n"
                               "TRANSPARENCY 255;\n"
                               "VERTEXSYMBOL Sphere;\n"
                               "EndCap true;\n"
                               "\n"
                               "MODELITEM \"Contour\" \"leaf 1\";\n"
                               "COLOR 255 0 0;\n"
                               "FILLEDIN true;\n"
                               "HIDDEN3D true;\n"
                               "POINTSIZE 1;\n"
                               "THICKNESS 1;\n"
                               "VERTEXSYMBOL Sphere;\n"
                               "TriangulationTag End;\n"
                               "MODELITEMDATA\n"
                               " 1,2 -3,4;\n");
    std::ostringstream poses;
    StackWriter().writePoses(stack, poses);
    EXPECT_EQ(poses.str(), "\n"
                           "POSE \"front\";\n"
                           "POSEROTATION 10 -20 30;\n"
                           "POSESHIFT 4 -5;\n"
                           "POSEZOOM 150;\n"
                           "AMBIENTLIGHT 1;\n"
                           "DIFFUSELIGHT 2;\n"
                           "SPECULARLIGHT 3;\n");
}

TEST(StackWriter, BreaksVertexLinesBehindEachSeventhVertexButTheLast)
{
    for (int count = 0; count <= 22; ++count) {
        Stack stack;
        StackSlice& slice = addSlice(stack, "s", statedFile("", 1, 1));
        std::vector<std::pair<int, int>> vertices;
        std::string expected;
        for (int i = 0; i < count; ++i) {
            vertices.emplace_back(i, 100 - i);
            expected += (i > 0 && i % 7 == 0 ? "\n " : " ") + std::to_string(i) + "," +
                        std::to_string(100 - i);
        }
        addItem(addModel(stack, "m"), slice, vertices);
        EXPECT_EQ(dataOf(stack), expected + ";\n");
    }
}

TEST(StackWriter, BreaksRegionLinesInFrontOfTheRunThatExceedsEightyCharacters)
{
    std::mt19937 random(11);
    for (int round = 0; round < 50; ++round) {
        Stack stack;
        StackSlice& slice = addSlice(stack, "s", statedFile("", 1, 1));
        Model& model = addModel(stack, "m", PRIMITIVE_REGION);
        RLEItemSet0 region;
        std::string expected;
        int sum = 0;
        for (int i = 0; i < round; ++i) {
            const int column = static_cast<int>(random() % 100000);
            const int length = 1 + static_cast<int>(random() % 500);
            region.add(RLEItem0(i, column, length));
            char run[64];
            sum += std::snprintf(run, sizeof run, " %d,%d,%d", i, column, length);
            if (sum > 80) {
                expected += '\n';
                sum = 0;
            }
            expected += run;
        }
        addItem(model, slice, {}).setRLEItemSet(region);
        EXPECT_EQ(dataOf(stack), expected + ";\n");
    }
}

TEST(StackWriter, TellsTheFolderWhereverItChanges)
{
    const TemporaryFolder folder;
    const std::string base = folder.path().string() + "/";
    Stack stack;
    for (const char* file : {"a.tif", "in/b.tif", "in/c.tif", "in/../d.tif", "e/f/g.tif"}) {
        addSlice(stack, file, statedFile(base + file, 1, 1));
    }
    const std::string sizes = "SliceSize1 1;\nSliceSize2 1;\n";
    EXPECT_EQ(slicesOf(stack, base), "\nSLICE \"a.tif\" \"a.tif\";\n" + sizes +
                                         "\nImagesPath \"in\";\n\n"
                                         "SLICE \"in/b.tif\" \"b.tif\";\n" +
                                         sizes + "\nSLICE \"in/c.tif\" \"c.tif\";\n" + sizes +
                                         "\nImagesPath \"\";\n\n"
                                         "SLICE \"in/../d.tif\" \"d.tif\";\n" +
                                         sizes +
                                         "\nImagesPath \"e/f\";\n\n"
                                         "SLICE \"e/f/g.tif\" \"g.tif\";\n" +
                                         sizes);
    EXPECT_NE(slicesOf(stack, base + "in").find("ImagesPath \"..\";"), std::string::npos);

    stack.setAbsoluteImagesPathPolicy(true);
    const std::string absolute = slicesOf(stack, base);
    EXPECT_EQ(absolute.find("\nImagesPath \"" + base + "\";\n\nSLICE \"a.tif\""), 0u);
    EXPECT_NE(absolute.find("ImagesPath \"" + base + "in/../\";"), std::string::npos);
}

TEST(StackWriter, WritesEveryKindOfSourceInItsForm)
{
    const TemporaryFolder folder;
    const std::string base = folder.path().string() + "/";
    writeImage(folder.file("tile one.tif"), 6, 4);
    VoxelMatrix<float> volume(5, 7, 3);
    volume.setZeros();
    volume.save(folder.file("v.vm"), true);
    Stack stack;
    stack.setImagesPath(base + "volume.tif");

    ImageSourceFileMosaic mosaic(1, 2);
    mosaic.setFilename(0, 1, folder.file("tile one.tif"));
    addSlice(stack, "mosaic", mosaic);
    ImageSourceVoxelMatrixPlane memory;
    memory.setVoxelMatrix(volume);
    memory.setPlane(2);
    addSlice(stack, "memory", memory);
    ImageSourceVoxelMatrixFilePlane file;
    file.setVoxelMatrixFilename(folder.file("v.vm"));
    file.setPlane(1);
    addSlice(stack, "file", file);
    ImageSourceTiffStackPlane page;
    page.setTiffStackFilename(folder.file("tile one.tif"));
    addSlice(stack, "page", page);

    EXPECT_EQ(slicesOf(stack, base), "\nSLICE \"mosaic\" 1 2;\nIMAGE 1 2 " + base +
                                         "tile one.tif;\n"
                                         "SliceSize1 4;\nSliceSize2 6;\n"
                                         "\nStackSlice \"memory\" \"volume.tif\" 2;\n"
                                         "SliceSize1 5;\nSliceSize2 7;\n"
                                         "\nStackSlice \"file\" \"v.vm\" 1;\n"
                                         "SliceSize1 5;\nSliceSize2 7;\n"
                                         "\nStackSlice \"page\" \"tile one.tif\" 0;\n"
                                         "SliceSize1 4;\nSliceSize2 6;\n");
}

TEST(StackWriter, WhatHasNoFormRaisesAnErrorAndKeepsTheOldFile)
{
    const TemporaryFolder folder;
    const std::string path = folder.write("a.sdf", "old");
    const auto refuses = [&](auto error, auto prepare) {
        using Error = decltype(error);
        Stack stack;
        StackSlice& slice = addSlice(stack, "s", statedFile("", 1, 1));
        prepare(stack, slice);
        EXPECT_THROW(StackWriter().write(stack, path), Error);
        EXPECT_EQ(folder.read("a.sdf"), "old");
        EXPECT_EQ(folder.fileCount(), 1);
    };
    refuses(ValueError(), [](Stack&, StackSlice& slice) { slice.setName("a\"b"); });
    refuses(ValueError(), [](Stack& stack, StackSlice&) { stack.setName("a\nb"); });
    refuses(ValueError(), [](Stack&, StackSlice& slice) {
        slice.setRelativePosition(std::numeric_limits<float>::quiet_NaN());
    });
    refuses(ValueError(), [](Stack& stack, StackSlice&) {
        stack.setDefaultRelativePosition(std::numeric_limits<float>::infinity());
    });
    refuses(ProgramError(),
            [](Stack&, StackSlice& slice) { slice.setImageSource(ImageSourceLSMStackPlane()); });
    refuses(ProgramError(), [](Stack& stack, StackSlice&) {
        auto* bare = new StackSlice;
        bare->setStack(stack);
        stack.addSlice(*bare);
    });
}

TEST(StackWriter, AFileThatCannotBeMadeGivesFalseAndAFullDiskRaises)
{
    const TemporaryFolder folder;
    EXPECT_FALSE(StackWriter().write(Stack(), folder.file("missing/a.sdf")));
    EXPECT_FALSE(StackWriter().write(Stack(), folder.path().string()));
    EXPECT_EQ(folder.fileCount(), 0);
    EXPECT_THROW(StackWriter().write(Stack(), "/dev/full"), FileWriteError);
}

TEST(StackWriter, TheLocaleChangesNoNumber)
{
    const TemporaryFolder folder;
    const auto stack = randomStack(3, folder.path().string());
    EXPECT_TRUE(StackWriter().write(*stack, folder.file("plain.sdf")));
    const CommaLocale comma;
    EXPECT_TRUE(StackWriter().write(*stack, folder.file("comma.sdf")));
    EXPECT_EQ(folder.read("comma.sdf"), folder.read("plain.sdf"));
}

TEST(StackWriter, AVolumeBecomesAStackOnDisk)
{
    const TemporaryFolder folder;
    const std::string base = folder.path().string() + "/";
    VoxelMatrix<float> volume(4, 6, 2);
    for (int k = 0; k < 2; ++k) {
        for (int i = 0; i < 4; ++i) {
            for (int j = 0; j < 6; ++j) {
                volume(i, j, k) = static_cast<float>(100 * k + 10 * i + j) + 0.75f;
            }
        }
    }
    StackWriter().saveAsStack(volume, "v", base, base, calibration(0.5f, 1.0f), 3.0f);

    Stack stack;
    StackReader reader;
    ASSERT_TRUE(reader.read(stack, folder.file("v.sdf")));
    EXPECT_TRUE(reader.getLog().empty());
    ASSERT_EQ(stack.getNumSlices(), 2);
    EXPECT_EQ(stack.getSlice(1).getName(), "001");
    EXPECT_FLOAT_EQ(stack.getSlice(1).getAbsolutePosition(), 3.0f);
    EXPECT_FLOAT_EQ(stack.getSlice(1).getPixelCalibration().getPixelWidth(), 0.5f);
    Image0 image;
    ImageReader().read(image, folder.file("v_001.tif"));
    PixelMatrix<int> plane;
    plane.convertFromImage(image);
    EXPECT_EQ(plane(3, 5), 135);
    EXPECT_THROW(
        StackWriter().saveAsStack(volume, "v", base, base + "none/", PixelCalibration(), 1.0f),
        FileWriteError);
}
