#include "image/pixels/image2.h"
#include "support/errors.h"
#include "support/images.h"
#include "support/temporaryfolder.h"
#include "support/types.h"

namespace {

template <class T>
VoxelMatrix<T> numbered(int size1, int size2, int size3)
{
    VoxelMatrix<T> matrix = volumeFrom<T>(size1, size2, size3,
                                          [](int i, int j, int k) { return 100 * k + 10 * i + j; });
    VoxelCalibration calibration;
    calibration.setLengthUnit(unitOf(-6));
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

TYPED_TEST_SUITE(VoxelTypes, ElementTypes);

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

TYPED_TEST(VoxelTypes, FilesAndImagesGiveBackElementsAndCalibration)
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
    const Image2 image = matrix.toImage();
    EXPECT_EQ(image.getSize(), vectorOf<int>({2, 3, 4}));
    EXPECT_EQ(image.getSpatialCalibration().getSize(), vectorOf<float>({0.5F, 0.25F, 2.0F}));
    Image2 reals(image);
    reals.convertToType<double>();
    EXPECT_EQ(reals.getValue<double>(vectorOf<int>({1, 2, 0})), 12);
}

TEST(VoxelMatrix, FormatsAreThoseByteForByteAndOtherElementTypesRefused)
{
    const TemporaryFolder folder;
    VoxelMatrix<int> matrix(1, 2, 1);
    matrix(0, 0, 0) = -2;
    matrix(0, 1, 0) = 70000;
    matrix.setVoxelCalibration(numbered<int>(1, 1, 1).getVoxelCalibration());
    matrix.save(folder.file("a.vm"), true);
    EXPECT_EQ(folder.read("a.vm"),
              words({0, 0, 0, 1, 2, 1, 2, 1, -6, 0x3f000000, 0x3e800000, 0x40000000, -2, 70000}));
    const VoxelMatrix<int> old(folder.write("old.vm", words({1, 2, 2, 5, 6, 7, 8})));
    EXPECT_EQ(old.cat(), vectorOf<int>({5, 6, 7, 8}));
    EXPECT_EQ(old.getSize(), vectorOf<int>({1, 2, 2}));
    const std::string path = folder.file("f.vm");
    numbered<float>(2, 2, 2).save(path, false);
    VoxelMatrix<double> reals;
    for (const auto load : {&VoxelMatrix<double>::load, &VoxelMatrix<double>::loadHeader}) {
        EXPECT_RAISES(TypeError, "void VoxelMatrix<T>::load(ifstream&)",
                      "Type mismatch between template instantiation and file contents",
                      (reals.*load)(path));
    }
    numbered<char>(2, 2, 2).save(path, true);
    EXPECT_EQ(VoxelMatrix<unsigned char>(path), numbered<unsigned char>(2, 2, 2));
}

TEST(VoxelMatrix, ExistingAndMissingFilesAreTold)
{
    const TemporaryFolder folder;
    const VoxelMatrix<int> matrix = numbered<int>(2, 2, 2);
    const std::string path = folder.write("a.vm", "mine");
    EXPECT_RAISES(FileWriteError, "void VoxelMatrix<T>::save(...) const", "File already exists",
                  matrix.save(path, false));
    EXPECT_RAISES(FileWriteError, "void VoxelMatrix<T>::saveAsTiff(...) const",
                  "File already exists", matrix.saveAsTiff(path, false, false));
    EXPECT_EQ(folder.read("a.vm"), "mine");
    EXPECT_RAISES(FileWriteError, "void VoxelMatrix<T>::save(...) const",
                  "Cannot open file for writing", matrix.save(folder.file("no/b.vm"), false));
    VoxelMatrix<int> other;
    EXPECT_RAISES(FileReadError, "void VoxelMatrix<T>::load(const string&)",
                  "Cannot open file for reading", other.load(folder.file("b.vm")));
    EXPECT_RAISES(FileReadError, "void VoxelMatrix<T>::loadHeader(const string&)",
                  "Cannot open file for reading", other.loadHeader(folder.file("b.vm")));
    EXPECT_THROW(other.load(folder.path().string()), FileReadError);
    EXPECT_EQ(folder.fileCount(), 1);
}

TEST(VoxelMatrix, DamagedFilesAreRefusedBeforeMemoryIsTaken)
{
    const TemporaryFolder folder;
    numbered<int>(2, 3, 2).save(folder.file("whole.vm"), false);
    const std::string whole = folder.read("whole.vm");
    VoxelMatrix<int> matrix;
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const std::string path = folder.write("cut.vm", whole.substr(0, length));
        EXPECT_THROW(matrix.load(path), FileFormatError) << length;
        EXPECT_THROW(matrix.loadHeader(path), FileFormatError) << length;
    }
    for (std::size_t offset = 0; offset < 48; ++offset) {
        for (int value : {0, 1, 0x7f, 0x80, 0xff}) {
            std::string damaged(whole);
            damaged[offset] = static_cast<char>(value);
            try {
                matrix.load(folder.write("damaged.vm", damaged));
                EXPECT_LE(matrix.cat().getSize(), 12 + 9) << "at most all bytes of the file";
            } catch (const FileFormatError&) {
            } catch (const TypeError&) {
                EXPECT_TRUE(offset >= 16 && offset < 20) << offset;
            }
        }
    }
    // Planes without elements would take memory that the file doesn't account for.
    for (const std::string& header : {words({-1, 0, 0x7fffffff, 1}),
                                      words({0x10000, 0, 9999999, 1}), words({1, 0, 0x10000, 1})}) {
        EXPECT_THROW(matrix.load(folder.write("empty.vm", header)), FileFormatError);
    }
    VoxelMatrix<int> none;
    EXPECT_THROW(none.load(folder.write("many.tif", sharedPages(200, 300))), FileFormatError);
    EXPECT_EQ(none.getSize3(), 0);
    none.load(folder.write("one.tif", sharedPages(200, 1)));
    EXPECT_EQ(none[0][199][199], 'x');
}

TEST(VoxelMatrix, TiffStacksCarryBytesAndVoxelSize)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("stack.tif");
    for (bool compress : {false, true}) {
        numbered<float>(3, 5, 4).saveAsTiff(path, compress, true);
        const std::string text =
            "ImageJ=1.47v\nimages=4\nslices=4\nunit=micron\nspacing=2.000000\nloop=false";
        EXPECT_NE(folder.read("stack.tif").find(text + '\0'), std::string::npos);
        const Image2 image(path);
        EXPECT_EQ(image.fileCompression(), compress ? "lzw" : "");
        EXPECT_EQ(image.getSpatialCalibration().getSize(), vectorOf<float>({0.5F, 0.25F, 2.0F}));
        VoxelMatrix<int> back;
        back.load(path);
        EXPECT_EQ(back, volumeFrom<int>(3, 5, 4, [](int i, int j, int k) {
                      return (100 * k + 10 * i + j) % 256;
                  }));
        EXPECT_EQ(back.getVoxelCalibration().getVoxelDepth(), 2);
        VoxelMatrix<int> header;
        header.loadHeader(path);
        EXPECT_TRUE(header.sameSizeAs(back));
    }
}

TEST(VoxelMatrix, ArithmeticProjectionsAndBlocksSeeAllPlanes)
{
    const VoxelMatrix<int> matrix = numbered<int>(3, 4, 3);
    VoxelMatrix<int> other(matrix);
    other *= 3;
    other -= matrix;
    other += 2;
    other /= 2;
    other *= matrix;
    const auto square = [](int i, int j, int k) {
        return (100 * k + 10 * i + j) * (100 * k + 10 * i + j + 1);
    };
    EXPECT_EQ(other, volumeFrom<int>(3, 4, 3, square));
    EXPECT_NE(other, VoxelMatrix<int>(3, 4, 1));
    EXPECT_RAISES(SizeError, "void VoxelMatrix<T>::operator*=(const VoxelMatrix&)",
                  "This matrix and matrix argument differ in size",
                  other *= VoxelMatrix<int>(3, 4, 1));
    other.reverse();
    EXPECT_EQ(other(2, 3, 0), square(2, 3, 2));

    EXPECT_EQ(matrix.range(), vectorOf<int>({0, 223}));
    EXPECT_EQ(matrix.sum()(1, 2), 12 + 112 + 212);
    EXPECT_EQ(matrix.min()(1, 2), 12);
    EXPECT_EQ(matrix.max()(1, 2), 212);
    EXPECT_EQ(matrix.toType<float>()(1, 1, 1), 111.0F);
    EXPECT_EQ(matrix.histogram(0, 100, 3), vectorOf<unsigned int>({12, 12, 12}));
    VoxelMatrix<int> mask(3, 4, 3);
    mask.setZeros();
    mask(1, 2, 1) = 5;
    EXPECT_EQ(matrix.histogram(0, 100, 3, mask), vectorOf<unsigned int>({0, 1, 0}));
    const VoxelMatrix<int> empty(0, 3, 2);
    EXPECT_THROW(empty.range(), SizeError);
    EXPECT_RAISES(SizeError, "PixelMatrix<T> VoxelMatrix<T>::max() const", "This matrix is empty",
                  empty.max());
    EXPECT_RAISES(ValueError, "unsigned int VoxelMatrix<T>::getSize(...) const",
                  "Invalid argument value (neither 1, 2 or 3)", empty.getSize(4));

    const VoxelMatrix<int> block = matrix.copy(1, 2, 1, 3, 1, 2);
    EXPECT_EQ(block, volumeFrom<int>(
                         2, 3, 2, [](int i, int j, int k) { return 111 + 100 * k + 10 * i + j; }));
    mask.setZeros();
    mask.paste(1, 1, 1, block);
    EXPECT_EQ(mask.copy(1, 2, 1, 3, 1, 2), block);
    EXPECT_EQ(mask.sum().cat().sum(), block.sum().cat().sum());
    EXPECT_THROW(mask.paste(1, 1, 2, block), SizeError);
    EXPECT_THROW(mask.paste(0, 2, 0, block), SizeError);
    EXPECT_THROW(mask.setSize(-1, 2, 3), SizeError);
    testing::internal::CaptureStdout();
    numbered<unsigned char>(2, 2, 2).print("");
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "-- Plane 0\n0 1\n10 11\n-- Plane 1\n100 101\n110 111\n");
}
