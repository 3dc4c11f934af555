// Microscope files (LSM), HDF5 and raw images.

#include "image/files/childreader.h"
#include "image/files/imagereader.h"
#include "image/pixels/image2.h"
#include "image/sources/imagesourcelsmstackplane.h"
#include "support/errors.h"
#include "support/images.h"
#include "support/temporaryfolder.h"
#include "support/tiffs.h"

#include <H5Cpp.h>
#include <unistd.h>

#include <cstring>
#include <numeric>

namespace {

/// The value of a pixel: told by directory, channel, row and column.
unsigned char lsmPixel(int directory, int channel, int row, int column)
{
    return static_cast<unsigned char>(100 * channel + 10 * directory + 3 * row + column);
}

/// What the block of a microscope file says, in its order but for its own length.
struct LsmLayout
{
    std::uint32_t magic = 0x0400494C;
    std::uint32_t width = 3, height = 3, planes = 2, channels = 2, timepoints = 1;
};

std::vector<unsigned char> lsmBlock(const LsmLayout& layout)
{
    std::vector<unsigned char> block(80);
    std::memcpy(block.data(), &layout, 4);
    block[4] = 80;
    std::memcpy(block.data() + 8, reinterpret_cast<const char*>(&layout) + 4, sizeof(layout) - 4);
    const double voxel[] = {2e-6, 3e-6, 4e-6};
    std::memcpy(block.data() + 40, voxel, sizeof(voxel));
    return block;
}

void makeLsm(const std::string& path, const LsmLayout& layout)
{
    // Makes libtiff write the tag, which it does not know.
    static const TIFFFieldInfo info[] = {{34412, TIFF_VARIABLE2, TIFF_VARIABLE2, TIFF_BYTE,
                                          FIELD_CUSTOM, 1, 1, const_cast<char*>("InfoBlock")}};
    TiffMaker maker(path);
    const std::vector<unsigned char> block = lsmBlock(layout);
    const int pages = static_cast<int>(layout.planes * layout.timepoints) * 2;
    for (int page = 0; page < pages; ++page) {
        TIFFMergeFieldInfo(maker.get(), info, 1);
        const bool thumbnail = page % 2 == 1;
        const int height = thumbnail ? 1 : 3;
        maker.tags(thumbnail ? 1 : 3, height, 8, 2, PHOTOMETRIC_MINISBLACK);
        TIFFSetField(maker.get(), TIFFTAG_PLANARCONFIG, PLANARCONFIG_SEPARATE);
        TIFFSetField(maker.get(), TIFFTAG_SUBFILETYPE, thumbnail ? 1 : 0);
        if (page == 0) {
            TIFFSetField(maker.get(), 34412, static_cast<std::uint32_t>(block.size()),
                         block.data());
        }
        maker.rows(
            height,
            [page, height](int row, int column) {
                return lsmPixel(page, row / height, row % height, column);
            },
            2);
    }
}

template <class T>
void makeHdf5(const std::string& path, const std::vector<hsize_t>& extent, const H5::PredType& type)
{
    H5::H5File file(path, H5F_ACC_TRUNC);
    const H5::DataSpace space(static_cast<int>(extent.size()), extent.data());
    std::vector<T> values(static_cast<std::size_t>(space.getSimpleExtentNpoints()));
    std::iota(values.begin(), values.end(), T(0));
    H5::DataSet dataSet = file.createDataSet("volume", type, space);
    dataSet.write(values.data(), type);
    file.createGroup("z");
}

std::string reasonFor(const std::string& path)
{
    try {
        Image2 image(path);
    } catch (const FileError& error) {
        EXPECT_EQ(error.getFilename(), path);
        return error.getWhat();
    }
    return "";
}

} // namespace

TEST(ImageReader, MicroscopeFilesGiveChannelsPlanesAndVoxelSize)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("cells.lsm");
    LsmLayout layout;
    layout.timepoints = 2;
    makeLsm(path, layout);
    EXPECT_EQ(ImageReader().readImageFileFormat(path), ImageFormat::Lsm);
    const Image2 image(path);
    ASSERT_EQ(image.getNumChannels(), 2);
    ASSERT_EQ(image.getNumTimepoints(), 2);
    ASSERT_EQ(image.getSize3(), 2);
    EXPECT_EQ(image.samplesPerElement(), 1);
    for (int n = 0; n < 72; ++n) {
        const int c = n / 36;
        const int t = n / 18 % 2;
        const int e = n % 18;
        ASSERT_EQ(image.frame(c, t)[e], lsmPixel(2 * (2 * t + e / 9), c, e % 9 / 3, e % 3));
    }
    const SpatialCalibration& calibration = image.getSpatialCalibration();
    EXPECT_LT(calibration.getSize().distance(vectorOf<float>({3, 2, 4})), 1e-6F);
    EXPECT_EQ(calibration.getLengthUnit().getScale(), -6);
}

TEST(ImageSourceLSMStackPlane, OneChannelOfOnePlaneIsRead)
{
    const TemporaryFolder folder;
    makeLsm(folder.file("cells.lsm"), LsmLayout());
    testing::internal::CaptureStdout();
    ImageSourceLSMStackPlane source;
    source.setLSMStackFilename(folder.file("cells.lsm"));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "S32MagicNumber :67127628\n");
    EXPECT_EQ(source.getChannel(), 2);
    EXPECT_EQ(source.getNumImages(), 4);
    EXPECT_FLOAT_EQ(source.getVoxelSizeZ(), 4.0F);
    EXPECT_FLOAT_EQ(source.getPixelCalibration().getPixelHeight(), 2.0F);
    source.setPlane(2);
    source.setFrame(1);
    const std::unique_ptr<ImageSource> clone(source.clone());
    EXPECT_EQ(clone->getType(), 5);
    Image0 image;
    ImageReader().read(image, *clone);
    for (int e = 0; e < 9; ++e) {
        EXPECT_EQ(image.getData()[e], lsmPixel(2, 1, e / 3, e % 3));
    }
    source.setFrame(2);
    EXPECT_THROW(ImageReader().read(image, source), FileFormatError);
    source.setFrame(0);
    source.setPlane(1);
    EXPECT_THROW(ImageReader().read(image, source), FileFormatError);
}

TEST(ImageReader, MicroscopeBlocksAreNotBelieved)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("cells.lsm");
    LsmLayout plain;
    plain.magic = 12345;
    makeLsm(path, plain);
    EXPECT_EQ(ImageReader().readImageFileFormat(path), ImageFormat::Tiff);
    {
        // The magic number alone tells the format.
        const TIFFFieldInfo info[] = {{34412, TIFF_VARIABLE2, TIFF_VARIABLE2, TIFF_LONG,
                                       FIELD_CUSTOM, 1, 1, const_cast<char*>("InfoBlock")}};
        TiffMaker maker(path);
        TIFFMergeFieldInfo(maker.get(), info, 1);
        maker.tags(2, 2, 8, 1, PHOTOMETRIC_MINISBLACK);
        const std::uint32_t magic = 0x0400494C;
        TIFFSetField(maker.get(), 34412, std::uint32_t(1), &magic);
        maker.rows(2, [](int, int) { return 1; });
    }
    EXPECT_EQ(ImageReader().readImageFileFormat(path), ImageFormat::Lsm);
    makeLsm(path, LsmLayout());
    const std::string whole = folder.read("cells.lsm");
    const std::vector<unsigned char> block = lsmBlock(LsmLayout());
    const std::size_t start = whole.find(std::string(block.begin(), block.end()));
    ASSERT_NE(start, std::string::npos);
    for (const std::size_t field : {8, 12, 20, 24}) {
        for (const std::uint32_t value : {0U, 7U, 1000000U, 0x80000000U, 0xFFFFFFFFU}) {
            std::string damaged = whole;
            std::memcpy(damaged.data() + start + field, &value, sizeof(value));
            folder.write("cells.lsm", damaged);
            EXPECT_NE(reasonFor(path), "") << field << ' ' << value;
            if (field == 8 || field == 12) {
                testing::internal::CaptureStdout();
                Image0 image;
                EXPECT_THROW(ImageReader().read(image, path), FileFormatError);
                testing::internal::GetCapturedStdout();
            }
        }
    }
    folder.write("cells.lsm", whole);
    const Image2 image(path);
    for (std::size_t length = 0; length < whole.size(); length += 3) {
        std::filesystem::remove(path);
        folder.write("cells.lsm", whole.substr(0, length));
        // What the last thumbnail alone has lost does no harm.
        EXPECT_TRUE(reasonFor(path) != "" || Image2(path) == image) << length;
    }
}

TEST(ImageReader, Hdf5DatasetsOfTwoAndThreeDimensionsAreRead)
{
    const TemporaryFolder folder;
    makeHdf5<unsigned char>(folder.file("a.h5"), {2, 3, 4}, H5::PredType::NATIVE_UCHAR);
    ImageReader().setHDF5Keys({});
    const Image2 volume(folder.file("a.h5"));
    // The names of a first file stay for the next ones.
    EXPECT_EQ(ImageReader().getHDF5Keys(), (std::vector<std::string>{"volume", "z"}));
    H5::H5File(folder.file("other.h5"), H5F_ACC_TRUNC).createGroup("other");
    EXPECT_NE(reasonFor(folder.file("other.h5")), "");
    EXPECT_EQ(volume.getValueType(), ValueType::Int);
    EXPECT_EQ(volume.getSize(), vectorOf<int>({4, 3, 2}));
    EXPECT_EQ(volume.asVector<int>()[23], 23);
    makeHdf5<double>(folder.file("b.h5"), {2, 5}, H5::PredType::NATIVE_DOUBLE);
    const Image2 plane(folder.file("b.h5"));
    EXPECT_EQ(plane.getValueType(), ValueType::Float);
    EXPECT_EQ(plane.getSize(), vectorOf<int>({5, 2}));
    EXPECT_EQ(plane.asVector<float>()[9], 9.0F);
    makeHdf5<int>(folder.file("c.h5"), {6}, H5::PredType::NATIVE_INT);
    EXPECT_EQ(reasonFor(folder.file("c.h5")), "Cannot read a dataset of rank 1");
}

// Bytes in memory are four times those stored, and zeros are packed a thousand to one.
TEST(ImageReader, Hdf5MasksTakeHardlyAnyBytes)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("mask.h5");
    const hsize_t extent[] = {16, 512, 512};
    for (const bool written : {true, false}) {
        {
            H5::H5File file(path, H5F_ACC_TRUNC);
            H5::DSetCreatPropList properties;
            properties.setChunk(3, extent);
            properties.setDeflate(9);
            const H5::PredType& type = H5::PredType::NATIVE_UCHAR;
            const H5::DataSet dataSet =
                file.createDataSet("volume", type, H5::DataSpace(3, extent), properties);
            if (written) {
                std::vector<unsigned char> mask(std::size_t(16) * 512 * 512, 0);
                mask.back() = 255;
                dataSet.write(mask.data(), type);
            }
            file.createGroup("another");
        }
        ImageReader().setHDF5Key("volume");
        const Image2 image(path);
        EXPECT_EQ(image.asVector<int>()[16 * 512 * 512 - 1], written ? 255 : 0);
        const std::vector<HDF5DataSet> list = ImageReader().readHDF5DataSets(path);
        ASSERT_EQ(list.size(), 1U);
        EXPECT_TRUE(list[0].name == "volume" && list[0].rank == 3 && list[0].isByte);
    }
}

// A lock held at the fork is never released in the child.
TEST(ChildReader, AChildThatHangsIsWaitedForUntilItsDeadline)
{
    const ChildReader child([](const ChildReader::Sender&) { ::pause(); },
                            std::chrono::milliseconds(50));
    char byte = 0;
    EXPECT_FALSE(child.receive(&byte, 1));
    EXPECT_TRUE(child.isLate());
}

TEST(ImageReader, DamagedHdf5IsToldSilently)
{
    ImageReader().setHDF5Keys({});
    const TemporaryFolder folder;
    makeHdf5<short>(folder.file("a.h5"), {3, 4}, H5::PredType::NATIVE_SHORT);
    const std::string whole = folder.read("a.h5");
    testing::internal::CaptureStderr();
    for (std::size_t length = 0; length < whole.size(); length += 37) {
        std::filesystem::remove(folder.file("a.h5"));
        folder.write("a.h5", whole.substr(0, length));
        EXPECT_NE(reasonFor(folder.file("a.h5")), "") << length;
    }
    {
        H5::H5File file(folder.file("sparse.h5"), H5F_ACC_TRUNC);
        const hsize_t extent[] = {20000, 20000};
        const hsize_t chunk[] = {100, 100};
        H5::DSetCreatPropList properties;
        properties.setChunk(2, chunk);
        file.createDataSet("nothing", H5::PredType::NATIVE_FLOAT, H5::DataSpace(2, extent),
                           properties);
    }
    EXPECT_EQ(reasonFor(folder.file("sparse.h5")),
              "The file is too short for the image that it describes");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

// HDF5 believes the length of a chunk that is stored without its filter, and reads past its end.
TEST(ImageReader, ShortChunksOfHdf5AreRefused)
{
    ImageReader().setHDF5Key("a");
    const TemporaryFolder folder;
    const std::string path = folder.file("chunks.h5");
    const std::vector<short> values(32, 7);
    const hsize_t extent[] = {8, 8};
    const hsize_t chunk[] = {4, 8};
    for (const std::size_t length : {64, 63, 2}) {
        {
            H5::H5File file(path, H5F_ACC_TRUNC);
            H5::DSetCreatPropList properties;
            properties.setChunk(2, chunk);
            properties.setDeflate(1);
            const H5::PredType& type = H5::PredType::NATIVE_SHORT;
            const H5::DataSet dataSet =
                file.createDataSet("a", type, H5::DataSpace(2, extent), properties);
            const hsize_t offset[] = {4, 0};
            constexpr unsigned int leaveOutDeflate = 1;
            H5Dwrite_chunk(dataSet.getId(), H5P_DEFAULT, leaveOutDeflate, offset, length,
                           values.data());
        }
        if (length == 64) {
            EXPECT_EQ(Image2(path).asVector<int>()[32], 7);
        } else {
            EXPECT_EQ(reasonFor(path), "A chunk of the dataset is damaged");
        }
    }
}

TEST(ImageReader, RawImagesCountOnlyWithTheirSuffix)
{
    const TemporaryFolder folder;
    std::string bytes = "0000abcdefgh" + std::string(512 * 512, 'x');
    bytes.back() = 'y';
    const std::string path = folder.write("a.img", bytes);
    Image0 image;
    ImageReader().read(image, path);
    EXPECT_EQ(image.getWidth(), 512);
    EXPECT_EQ(image.getData()[0], 'x');
    EXPECT_EQ(image.getPixels()[511][511], 'y');
    const Image2 same(path);
    EXPECT_EQ(same.getValue<unsigned char>(511, 511), 'y');
    const std::string other = folder.write("a.raw", bytes);
    EXPECT_EQ(ImageReader().readImageFileFormat(other), ImageFormat::Unknown);
    EXPECT_EQ(reasonFor(other), "Unsupported image file format");
    const std::string shorter = folder.write("b.IMG", bytes.substr(0, 1000));
    EXPECT_THROW(ImageReader().read(image, shorter), FileReadError);
    EXPECT_NE(reasonFor(shorter), "");
    EXPECT_EQ(reasonFor(folder.write("a.czi", "ZISRAWFILE")), "Unsupported image file format");
}
