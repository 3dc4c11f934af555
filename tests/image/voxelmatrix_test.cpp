#include "image/image0.h"
#include "image/image2.h"
#include "image/imagereader.h"
#include "image/imagesourcetiffstackplane.h"
#include "image/voxelmatrix.h"
#include "support/errors.h"
#include "support/temporaryfolder.h"
#include "support/vectors.h"

#include <tiffio.h>

#include <cstring>

namespace {

const char* const loadWhere = "void VoxelMatrix<T>::load(const string&)";

template <class T>
VoxelMatrix<T> numbered(int size1, int size2, int size3)
{
    VoxelMatrix<T> matrix(size1, size2, size3);
    for (int k = 0; k < size3; ++k) {
        for (int i = 0; i < size1; ++i) {
            for (int j = 0; j < size2; ++j) {
                matrix(i, j, k) = static_cast<T>(100 * k + 10 * i + j);
            }
        }
    }
    VoxelCalibration calibration;
    LengthUnit unit;
    unit.setScale(-6);
    calibration.setLengthUnit(unit);
    calibration.setVoxelSize(vectorOf<float>({0.5F, 0.25F, 2.0F}));
    matrix.setVoxelCalibration(calibration);
    return matrix;
}

/// Integers as little-endian words.
std::string words(std::initializer_list<int> values)
{
    std::string bytes;
    for (int value : values) {
        for (int shift = 0; shift < 32; shift += 8) {
            bytes += static_cast<char>(static_cast<unsigned int>(value) >> shift & 0xff);
        }
    }
    return bytes;
}

template <class T>
class VoxelTypes : public testing::Test
{};

using Elements = testing::Types<char,
                                unsigned char,
                                short,
                                unsigned short,
                                int,
                                unsigned int,
                                float,
                                double,
                                long double>;

/// A TIFF file whose pages, all of `side` times `side` bytes, stand at one place of the file.
std::string sharedPages(int side, int pages)
{
    constexpr int pageLength = 2 + 6 * 12 + 4;
    // An entry of a page: tag, type (long), count and value.
    const auto entry = [](int tag, int value) { return words({tag | 4 << 16, 1, value}); };
    const int pixels = side * side;
    std::string bytes = std::string("II*\0", 4) + words({8 + pixels}) +
                        std::string(static_cast<std::size_t>(pixels), 'x');
    for (int page = 1; page <= pages; ++page) {
        const int next = page == pages ? 0 : 8 + pixels + page * pageLength;
        bytes += std::string("\6\0", 2) + entry(256, side) + entry(257, side) + entry(258, 8) +
                 entry(262, 1) + entry(273, 8) + entry(279, pixels) + words({next});
    }
    return bytes;
}

} // namespace

TYPED_TEST_SUITE(VoxelTypes, Elements);

TYPED_TEST(VoxelTypes, FilesGiveBackElementsAndCalibration)
{
    const TemporaryFolder folder;
    const VoxelMatrix<TypeParam> matrix = numbered<TypeParam>(2, 3, 4);
    matrix.save(folder.file("volume"), false);
    const VoxelMatrix<TypeParam> back(folder.file("volume.vm"));
    EXPECT_EQ(back, matrix);
    EXPECT_EQ(back.getVoxelCalibration().getVoxelSize(), vectorOf<float>({0.5F, 0.25F, 2.0F}));
    EXPECT_EQ(back.getVoxelCalibration().getLengthUnit().getScale(), -6);
    VoxelMatrix<TypeParam> header;
    header.loadHeader(folder.file("volume.vm"));
    EXPECT_TRUE(header.sameSizeAs(matrix));
    EXPECT_THROW(header.save(folder.file("header"), true), UsageError);
    header.setSize(2, 3, 4);
    header.setZeros();
    EXPECT_EQ(header.range(), vectorOf<TypeParam>({0, 0}));
}

TYPED_TEST(VoxelTypes, ImagesHoldTheSameNumbers)
{
    const Image2 image = numbered<TypeParam>(2, 3, 4).toImage();
    EXPECT_EQ(image.getSize(), vectorOf<int>({2, 3, 4}));
    EXPECT_EQ(image.getSpatialCalibration().getSize(), vectorOf<float>({0.5F, 0.25F, 2.0F}));
    Image2 reals(image);
    reals.convertToType<double>();
    EXPECT_EQ(reals.getValue<double>(vectorOf<int>({1, 2, 0})), 12);
}

TEST(VoxelMatrix, AFileOfTheCurrentFormatIsWrittenByteForByte)
{
    const TemporaryFolder folder;
    VoxelMatrix<int> matrix(1, 2, 1);
    matrix(0, 0, 0) = -2;
    matrix(0, 1, 0) = 70000;
    matrix.setVoxelCalibration(numbered<int>(1, 1, 1).getVoxelCalibration());
    matrix.save(folder.file("a.vm"), true);
    EXPECT_EQ(folder.read("a.vm"),
              words({0, 0, 0, 1, 2, 1, 2, 1, -6, 0x3f000000, 0x3e800000, 0x40000000, -2, 70000}));
}

TEST(VoxelMatrix, FilesOfTheOlderFormatAreRead)
{
    const TemporaryFolder folder;
    const std::string path = folder.write("old.vm", words({1, 2, 2, 5, 6, 7, 8}));
    const VoxelMatrix<int> matrix(path);
    EXPECT_EQ(matrix.cat(), vectorOf<int>({5, 6, 7, 8}));
    EXPECT_EQ(matrix.getSize(), vectorOf<int>({1, 2, 2}));
}

TEST(VoxelMatrix, OtherElementTypesAreRefused)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("f.vm");
    numbered<float>(2, 2, 2).save(path, false);
    for (bool headerOnly : {false, true}) {
        VoxelMatrix<double> matrix;
        expectError<TypeError>([&] { headerOnly ? matrix.loadHeader(path) : matrix.load(path); },
                               "void VoxelMatrix<T>::load(ifstream&)",
                               "Type mismatch between template instantiation and file contents");
    }
    numbered<char>(2, 2, 2).save(path, true);
    EXPECT_EQ(VoxelMatrix<unsigned char>(path), numbered<unsigned char>(2, 2, 2));
}

TEST(VoxelMatrix, ExistingAndMissingFilesAreTold)
{
    const TemporaryFolder folder;
    const VoxelMatrix<int> matrix = numbered<int>(2, 2, 2);
    const std::string path = folder.write("a.vm", "mine");
    expectError<FileWriteError>([&] { matrix.save(path, false); },
                                "void VoxelMatrix<T>::save(...) const", "File already exists");
    expectError<FileWriteError>([&] { matrix.saveAsTiff(path, false, false); },
                                "void VoxelMatrix<T>::saveAsTiff(...) const",
                                "File already exists");
    EXPECT_EQ(folder.read("a.vm"), "mine");
    expectError<FileWriteError>([&] { matrix.save(folder.file("no/b.vm"), false); },
                                "void VoxelMatrix<T>::save(...) const",
                                "Cannot open file for writing");
    VoxelMatrix<int> other;
    expectError<FileReadError>([&] { other.load(folder.file("b.vm")); }, loadWhere,
                               "Cannot open file for reading");
    expectError<FileReadError>([&] { other.loadHeader(folder.file("b.vm")); },
                               "void VoxelMatrix<T>::loadHeader(const string&)",
                               "Cannot open file for reading");
    EXPECT_THROW(other.load(folder.path().string()), FileReadError);
    EXPECT_EQ(folder.fileCount(), 1);
    try {
        VoxelMatrix<int> unread(folder.file("b.vm"));
        FAIL();
    } catch (const FileReadError& error) {
        EXPECT_NE(error.callStack().find("VoxelMatrix<T>::VoxelMatrix(const string&)"),
                  std::string::npos);
    }
}

TEST(VoxelMatrix, AFileCutAnywhereIsRefused)
{
    const TemporaryFolder folder;
    numbered<short>(2, 3, 2).save(folder.file("whole.vm"), false);
    const std::string whole = folder.read("whole.vm");
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const std::string path = folder.write("cut.vm", whole.substr(0, length));
        VoxelMatrix<short> matrix;
        EXPECT_THROW(matrix.load(path), FileFormatError) << length;
        EXPECT_THROW(matrix.loadHeader(path), FileFormatError) << length;
    }
}

TEST(VoxelMatrix, NoByteOfAHeaderTakesMemoryThatTheFileDoesNotHave)
{
    const TemporaryFolder folder;
    numbered<int>(2, 3, 2).save(folder.file("whole.vm"), false);
    const std::string whole = folder.read("whole.vm");
    for (std::size_t offset = 0; offset < 48; ++offset) {
        for (int value : {0, 1, 0x7f, 0x80, 0xff}) {
            std::string damaged(whole);
            damaged[offset] = static_cast<char>(value);
            VoxelMatrix<int> matrix;
            try {
                matrix.load(folder.write("damaged.vm", damaged));
                EXPECT_LE(matrix.cat().getSize(), 12 + 9) << "at most all bytes of the file";
            } catch (const FileFormatError&) {
            } catch (const TypeError&) {
                EXPECT_TRUE(offset >= 16 && offset < 20) << offset;
            }
        }
    }
    for (int size : {-1, 0x7fffffff, 0x10000}) {
        VoxelMatrix<int> matrix;
        const std::string path = folder.write("empty.vm", words({size, 0, 0x7fffffff, 1}));
        EXPECT_THROW(matrix.load(path), FileFormatError);
    }
    // Planes without elements would take memory that the file doesn't account for.
    VoxelMatrix<int> matrix;
    EXPECT_THROW(matrix.load(folder.write("planes.vm", words({1, 0, 0x10000, 1}))),
                 FileFormatError);
}

TEST(VoxelMatrix, TiffPagesThatShareTheirPixelsAreNotBelieved)
{
    const TemporaryFolder folder;
    VoxelMatrix<float> matrix;
    EXPECT_THROW(matrix.load(folder.write("many.tif", sharedPages(200, 300))), FileFormatError);
    EXPECT_EQ(matrix.getSize3(), 0);
    matrix.load(folder.write("one.tif", sharedPages(200, 1)));
    EXPECT_EQ(matrix[0][199][199], 'x');
}

TEST(VoxelMatrix, TiffStacksCarryBytesAndVoxelSize)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("stack.tif");
    for (bool compress : {false, true}) {
        numbered<float>(3, 5, 4).saveAsTiff(path, compress, true);
        TIFF* tif = TIFFOpen(path.c_str(), "r");
        ASSERT_NE(tif, nullptr);
        const char* description = nullptr;
        ASSERT_EQ(TIFFGetField(tif, TIFFTAG_IMAGEDESCRIPTION, &description), 1);
        EXPECT_STREQ(description,
                     "ImageJ=1.47v\nimages=4\nslices=4\nunit=micron\nspacing=2.000000\nloop=false");
        float resolution = 0;
        TIFFGetField(tif, TIFFTAG_XRESOLUTION, &resolution);
        EXPECT_EQ(resolution, 4);
        TIFFGetField(tif, TIFFTAG_YRESOLUTION, &resolution);
        EXPECT_EQ(resolution, 2);
        std::uint16_t compression = 0;
        TIFFGetField(tif, TIFFTAG_COMPRESSION, &compression);
        EXPECT_EQ(compression, compress ? COMPRESSION_LZW : COMPRESSION_NONE);
        EXPECT_EQ(TIFFNumberOfDirectories(tif), 4);
        TIFFClose(tif);

        VoxelMatrix<int> back;
        back.load(path);
        ASSERT_EQ(back.getSize(), vectorOf<int>({3, 5, 4}));
        VoxelMatrix<int> expected = numbered<int>(3, 5, 4);
        expected.apply([](int value) { return value % 256; });
        EXPECT_EQ(back, expected);
        EXPECT_EQ(back.getVoxelCalibration().getVoxelDepth(), 2);
        VoxelMatrix<int> header;
        header.loadHeader(path);
        EXPECT_TRUE(header.sameSizeAs(expected));
    }
}

TEST(VoxelMatrix, ArithmeticWorksPlaneByPlane)
{
    VoxelMatrix<int> matrix = numbered<int>(3, 4, 2);
    VoxelMatrix<int> other(matrix);
    matrix *= 2;
    matrix -= other;
    matrix += 1;
    other += 1;
    EXPECT_EQ(matrix, other);
    matrix *= other;
    EXPECT_EQ(matrix(2, 3, 1), 124 * 124);
    matrix /= 124;
    EXPECT_EQ(matrix(2, 3, 1), 124);
    const VoxelMatrix<int> small(3, 4, 1);
    expectError<SizeError>([&] { matrix *= small; },
                           "void VoxelMatrix<T>::operator*=(const VoxelMatrix&)",
                           "This matrix and matrix argument differ in size");
    EXPECT_NE(matrix, small);
    matrix.reverse();
    EXPECT_EQ(matrix(2, 3, 0), 124);
}

TEST(VoxelMatrix, ProjectionsAndRangesSeeAllPlanes)
{
    const VoxelMatrix<int> matrix = numbered<int>(2, 3, 3);
    EXPECT_EQ(matrix.range(), vectorOf<int>({0, 212}));
    EXPECT_EQ(matrix.sum()(1, 2), 12 + 112 + 212);
    EXPECT_EQ(matrix.min()(1, 2), 12);
    EXPECT_EQ(matrix.max()(1, 2), 212);
    EXPECT_EQ(matrix.toType<float>()(1, 1, 1), 111.0F);
    Vector<unsigned int> counts(3);
    counts.fill(6);
    EXPECT_EQ(matrix.histogram(0, 100, 3), counts);
    VoxelMatrix<int> mask(2, 3, 3);
    mask.setZeros();
    mask(1, 2, 1) = 5;
    EXPECT_EQ(matrix.histogram(0, 100, 3, mask), vectorOf<unsigned int>({0, 1, 0}));
    const VoxelMatrix<int> empty(0, 3, 2);
    EXPECT_THROW(empty.range(), SizeError);
    expectError<SizeError>([&] { empty.max(); }, "PixelMatrix<T> VoxelMatrix<T>::max() const",
                           "This matrix is empty");
    expectError<ValueError>([&] { empty.getSize(4); },
                            "unsigned int VoxelMatrix<T>::getSize(...) const",
                            "Invalid argument value (neither 1, 2 or 3)");
}

TEST(VoxelMatrix, BlocksAreCopiedAndPasted)
{
    const VoxelMatrix<int> matrix = numbered<int>(4, 5, 3);
    const VoxelMatrix<int> block = matrix.copy(1, 2, 2, 4, 1, 2);
    EXPECT_EQ(block.getSize(), vectorOf<int>({2, 3, 2}));
    EXPECT_EQ(block(1, 2, 1), 224);
    VoxelMatrix<int> target(4, 5, 3);
    target.setZeros();
    target.paste(1, 2, 1, block);
    EXPECT_EQ(target.copy(1, 2, 2, 4, 1, 2), block);
    EXPECT_EQ(target(0, 0, 0), 0);
    EXPECT_THROW(target.paste(1, 2, 2, block), SizeError);
    EXPECT_THROW(target.paste(0, 3, 0, block), SizeError);
    EXPECT_THROW(target.setSize(-1, 2, 3), SizeError);
}

TEST(VoxelMatrix, ListingsNumberThePlanes)
{
    testing::internal::CaptureStdout();
    numbered<unsigned char>(2, 2, 2).print("");
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "-- Plane 0\n0 1\n10 11\n-- Plane 1\n100 101\n110 111\n");
}
