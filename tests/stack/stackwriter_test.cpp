#include "image/files/imagereader.h"
#include "image/pixels/voxelmatrix.h"
#include "image/sources/imagesourcefilemosaic.h"
#include "image/sources/imagesourcelsmstackplane.h"
#include "image/sources/imagesourcetiffstackplane.h"
#include "image/sources/imagesourcevoxelmatrixfileplane.h"
#include "image/sources/imagesourcevoxelmatrixplane.h"
#include "stack/stackreader.h"
#include "stack/stackwriter.h"
#include "support/errors.h"
#include "support/filesizelimit.h"
#include "support/stacks.h"
#include "support/temporaryfolder.h"

#include <limits>
#include <locale>
#include <sstream>

using namespace stacks;

namespace {

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

    EXPECT_EQ(slicesOf(stack, folder.path().string()),
              "\nSLICE \"leaf 1\" \"one.tif\";\nSliceSize1 20;\nSliceSize2 30;\n"
              "ROTATE 22.5;\nSHIFT 3 -4;\n"
              "Annotation \"torn__SC__ see __DQ__notes__DQ____NL__again\";\n"
              "\nSLICE \"leaf 2\" \"two.tif\";\nSliceSize1 20;\nSliceSize2 30;\n"
              "RELPOSITION 0.123457;\nPIXASPECT 1.5;\nPIXWIDTH 0.5;\n"
              "\nSLICE \"leaf 3\" \"two.tif\";\nSliceSize1 20;\nSliceSize2 30;\n"
              "POSITION 1.23457e+06;\n");
    EXPECT_EQ(modelsOf(stack),
              "\nMODEL \"Contour\";\nBRILLIANCY 32;\nCOLOR 255 0 0;\nECORENDERING false;\n"
              "FILLEDIN true;\nHIDDEN3D false;\nPOINTSIZE 3;\nPRIMITIVE Polygon;\n"
              "RENDERINGMODE Surface;\nRESAMPLING 100 100;\nMeshVertexSmoothing 0;\n"
              "MeshNormalSmoothing 0;\nTHICKNESS 1;\nTRANSPARENCY 255;\nVERTEXSYMBOL Sphere;\n"
              "EndCap true;\n"
              "\nMODELITEM \"Contour\" \"leaf 1\";\nCOLOR 255 0 0;\nFILLEDIN true;\n"
              "HIDDEN3D true;\nPOINTSIZE 1;\nTHICKNESS 1;\nVERTEXSYMBOL Sphere;\n"
              "TriangulationTag End;\nMODELITEMDATA\n 1,2 -3,4;\n");
    std::ostringstream poses;
    StackWriter().writePoses(stack, poses);
    EXPECT_EQ(poses.str(), "\nPOSE \"front\";\nPOSEROTATION 10 -20 30;\nPOSESHIFT 4 -5;\n"
                           "POSEZOOM 150;\nAMBIENTLIGHT 1;\nDIFFUSELIGHT 2;\n"
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
        std::size_t sum = 0;
        for (int i = 0; i < round; ++i) {
            const int column = static_cast<int>(random() % 100000);
            const int length = 1 + static_cast<int>(random() % 500);
            region.add(RLEItem0(i, column, length));
            const std::string run = " " + std::to_string(i) + "," + std::to_string(column) + "," +
                                    std::to_string(length);
            sum += run.size();
            expected += sum > 80 ? "\n" + run : run;
            sum = sum > 80 ? 0 : sum;
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
    std::string text = slicesOf(stack, base);
    StackIO::replace(text, "SliceSize1 1;\nSliceSize2 1;\n", "");
    EXPECT_EQ(text, "\nSLICE \"a.tif\" \"a.tif\";\n\nImagesPath \"in\";\n\n"
                    "SLICE \"in/b.tif\" \"b.tif\";\n\nSLICE \"in/c.tif\" \"c.tif\";\n"
                    "\nImagesPath \"\";\n\nSLICE \"in/../d.tif\" \"d.tif\";\n"
                    "\nImagesPath \"e/f\";\n\nSLICE \"e/f/g.tif\" \"g.tif\";\n");
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
    stack.setImagesPath(base + "volume.vm");

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

    const std::string text =
        "\nSLICE \"mosaic\" 1 2;\nIMAGE 1 2 " + base +
        "tile one.tif;\nSliceSize1 4;\nSliceSize2 6;\n"
        "\nStackSlice \"memory\" \"volume.vm\" 2;\nSliceSize1 5;\nSliceSize2 7;\n"
        "\nStackSlice \"file\" \"v.vm\" 1;\nSliceSize1 5;\nSliceSize2 7;\n"
        "\nStackSlice \"page\" \"tile one.tif\" 0;\nSliceSize1 4;\nSliceSize2 6;\n";
    EXPECT_EQ(slicesOf(stack, base), text);
    Stack read;
    StackReader reader;
    ASSERT_TRUE(reader.read(read, folder.write("a.sdf", "STACK \"s\";\n" + text)));
    EXPECT_EQ(slicesOf(read, base), text);
    EXPECT_EQ(read.getSlice(2).getImageSource().getType(), file.getType());
    EXPECT_EQ(read.getSlice(3).getImageSource().getType(), page.getType());
}

TEST(StackWriter, WhatHasNoFormRaisesAnErrorAndKeepsTheOldFile)
{
    const TemporaryFolder folder;
    const std::string path = folder.write("a.sdf", "old");
    const auto refuses = [&](auto error, auto prepare) {
        Stack stack;
        prepare(stack, addSlice(stack, "s", statedFile("", 1, 1)));
        EXPECT_THROW(StackWriter().write(stack, path), decltype(error));
        EXPECT_EQ(folder.read("a.sdf"), "old");
        EXPECT_EQ(folder.fileCount(), 1);
    };
    refuses(ValueError(), [](Stack&, StackSlice& slice) { slice.setName("a\"b"); });
    refuses(ValueError(), [](Stack& stack, StackSlice&) { stack.setName("a\nb"); });
    refuses(ValueError(), [](Stack&, StackSlice& slice) {
        slice.setRelativePosition(std::numeric_limits<float>::quiet_NaN());
    });
    refuses(ProgramError(),
            [](Stack&, StackSlice& slice) { slice.setImageSource(ImageSourceLSMStackPlane()); });
    refuses(ProgramError(), [](Stack& stack, StackSlice&) {
        stack.addSlice(*new StackSlice);
        stack.getLastSlice().setStack(stack);
    });
}

TEST(StackWriter, AFileThatCannotBeMadeGivesFalseAndAFullDiskRaises)
{
    const TemporaryFolder folder;
    EXPECT_FALSE(StackWriter().write(Stack(), folder.file("missing/a.sdf")));
    EXPECT_FALSE(StackWriter().write(Stack(), folder.path().string()));
    EXPECT_EQ(folder.fileCount(), 0);
    const FileSizeLimit full(100);
    EXPECT_THROW(StackWriter().write(Stack(), folder.file("a.sdf")), FileWriteError);
    EXPECT_EQ(folder.fileCount(), 0);
}

TEST(StackWriter, AVolumeBecomesAStackOnDisk)
{
    const TemporaryFolder folder;
    const std::string base = folder.path().string() + "/";
    VoxelMatrix<float> volume(4, 6, 2);
    for (int n = 0; n < 48; ++n) {
        volume(n / 6 % 4, n % 6, n / 24) = static_cast<float>(3 * n) + 0.75f;
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
    EXPECT_EQ(plane(3, 5), 141);
    EXPECT_THROW(
        StackWriter().saveAsStack(volume, "v", base, base + "none/", PixelCalibration(), 1.0f),
        FileWriteError);
}
