#include "image/files/imagereader.h"
#include "image/files/imagewriter.h"
#include "image/pixels/image2.h"
#include "image/sources/imagemosaic.h"
#include "image/sources/imagesourcefile.h"
#include "image/sources/imagesourcefilemosaic.h"
#include "image/sources/imagesourcelsmstackplane.h"
#include "image/sources/imagesourcetiffstackplane.h"
#include "image/sources/imagesourcevoxelmatrixfileplane.h"
#include "image/sources/imagesourcevoxelmatrixplane.h"
#include "image/values/imageerrors.h"
#include "support/errors.h"
#include "support/images.h"
#include "support/temporaryfolder.h"

#include <cstring>
#include <memory>

namespace {

/// Writes an image of one value and returns its path.
std::string writeImage(const TemporaryFolder& folder,
                       const std::string& name,
                       int width,
                       int height,
                       int depth,
                       int value)
{
    Image0 image(width, height, depth);
    std::memset(image.getData(), value, image.dataLength());
    ImageWriter().write(image, folder.file(name), true);
    return folder.file(name);
}

Image0 readSource(const ImageSource& source)
{
    Image0 image;
    ImageReader().read(image, source);
    return image;
}

} // namespace

TEST(ImageSourceFile, KnowsItsHeaderWithoutPixels)
{
    const TemporaryFolder folder;
    ImageSourceFile source;
    EXPECT_FALSE(source.isDefined());
    EXPECT_EQ(source.getDepth(), 0);
    EXPECT_EQ(source.getColormap(), nullptr);
    EXPECT_THROW(source.getPixelCalibration(), UsageError);
    source.setFilename(writeImage(folder, "a.tif", 4, 3, 24, 9));
    const std::unique_ptr<ImageSource> clone(source.clone());
    EXPECT_EQ(clone->getType(), 0);
    EXPECT_EQ(clone->getSize(), vectorOf<int>({3, 4}));
    EXPECT_EQ(clone->getDepth(), 24);
    EXPECT_EQ(readSource(*clone).getData()[35], 9);
    try {
        source.setFilename(folder.file("missing.tif"));
        ADD_FAILURE() << "nothing raised";
    } catch (const FileReadError& error) {
        EXPECT_EQ(error.callStack(),
                  "[0] void ImageReader::readHeader(ImageHeader&,const string&) const\n"
                  "[1] void ImageSourceFile::setFilename(const string&)");
    }
    EXPECT_EQ(source.getFilename(), folder.file("missing.tif"));
    EXPECT_EQ(source.getSize1(), 0);
    EXPECT_EQ(clone->getSize1(), 3);
}

TEST(ImageSourceFileMosaic, CellsMustFitEachOther)
{
    const TemporaryFolder folder;
    const char* const where = "void ImageSourceFileMosaic::setFilename(...)";
    const std::string big = writeImage(folder, "big.tif", 4, 3, 8, 1);
    const std::string tall = writeImage(folder, "tall.tif", 4, 5, 8, 2);
    const std::string color = writeImage(folder, "color.tif", 4, 3, 24, 3);
    Image0 indexed(4, 3, 8);
    indexed.setGrayscale(256);
    indexed.clear();
    ImageWriter().write(indexed, folder.file("indexed.tif"), true);

    ImageSourceFileMosaic mosaic(2, 2);
    EXPECT_FALSE(mosaic.isDefined());
    EXPECT_EQ(mosaic.getSize1(), 0);
    mosaic.setFilename(1, 1, big);
    EXPECT_EQ(mosaic.getSize(), vectorOf<int>({3, 4}));
    EXPECT_EQ(mosaic.getDepth(), 8);
    EXPECT_RAISES(ValueError, where, "Mosaic position already set", mosaic.setFilename(1, 1, big));
    EXPECT_RAISES(DepthError, where, "Incompatible image depths", mosaic.setFilename(0, 0, color));
    EXPECT_RAISES(ColormapError, where, "Incompatible colormaps",
                  mosaic.setFilename(0, 0, folder.file("indexed.tif")));
    EXPECT_RAISES(SizeError, where, "Incompatible image dimensions",
                  mosaic.setFilename(1, 0, tall));
    EXPECT_EQ(mosaic.getFilename(1, 0), "");
    EXPECT_EQ(mosaic.colWidths()[0], 0);
    EXPECT_THROW(mosaic.setFilename(2, 0, big), RangeError);
    mosaic.setFilename(0, 0, tall);
    const std::unique_ptr<ImageSource> clone(mosaic.clone());
    mosaic.clear();
    EXPECT_FALSE(mosaic.isDefined());

    const Image0 image = readSource(*clone);
    EXPECT_EQ(PixelMatrix<int>(image), imageFrom<int>(8, 8, [](int i, int j) {
                  return i < 5 && j < 4 ? 2 : i >= 5 && j >= 4 ? 1 : 0;
              }));
}

TEST(ImageMosaic, LoadsAsTheReaderReadsIt)
{
    const TemporaryFolder folder;
    writeImage(folder, "a.tif", 2, 2, 24, 7);
    // The header is looked for behind a separator, the pixels without one.
    std::filesystem::create_directory(folder.file("sub"));
    ImageMosaic mosaic(1, 2);
    const std::string path = folder.path().string() + "/";
    mosaic.setItemFilename(0, 1, "a.tif", path);
    EXPECT_EQ(mosaic.getImageDirName(), path);
    mosaic.setItemFilename(0, 0, "a.tif", path);
    Image0 loaded;
    mosaic.load(loaded);
    Image0 read;
    ImageReader().read(read, mosaic);
    ASSERT_EQ(loaded.getWidth(), 4);
    EXPECT_EQ(bytesOf(loaded), std::vector<int>(24, 7));
    EXPECT_EQ(bytesOf(read), bytesOf(loaded));
    EXPECT_RAISES(ValueError, "void ImageMosaic::setItemFileName(...)",
                  "Mosaic position already set", mosaic.setItemFilename(0, 0, "a.tif", path));
    ImageMosaic single(1, 1);
    single.setItemFilename(0, 0, "a.tif", path);
    std::filesystem::remove(folder.file("a.tif"));
    try {
        single.load(loaded);
        ADD_FAILURE() << "nothing raised";
    } catch (const FileReadError& error) {
        EXPECT_NE(error.callStack().find("ImageMosaic::load"), std::string::npos);
    }
}

TEST(ImageSourceTiffStackPlane, EveryPageIsReadOnItsOwn)
{
    const TemporaryFolder folder;
    Image2 stack(ValueType::UnsignedChar, 3, 2, 4, 1, 1, 1);
    for (int k = 0; k < 4; ++k) {
        std::memset(stack.frame(0, 0) + 6 * k, 10 + k, 6);
    }
    stack.setSpatialCalibration(calibrationOf(-6, 0.5F, 0.25F, 3.0F));
    stack.saveAsTiff(folder.file("stack.tif"), false, false);

    ImageSourceTiffStackPlane source;
    EXPECT_EQ(source.getNumImages(), 0);
    EXPECT_THROW(source.getVoxelSizeZ(), UsageError);
    source.setTiffStackFilename(folder.file("stack.tif"));
    EXPECT_EQ(source.getNumImages(), 4);
    EXPECT_FLOAT_EQ(source.getVoxelSizeZ(), 3.0F);
    EXPECT_FLOAT_EQ(source.getPixelCalibration().getPixelWidth(), 0.25F);
    EXPECT_EQ(source.getPixelCalibration().getLengthUnit().getScale(), -6);
    ImageSourceTiffStackPlane copy;
    copy = source;
    EXPECT_FLOAT_EQ(copy.getVoxelSizeZ(), 3.0F);
    for (int k = 3; k >= 0; --k) {
        copy.setPlane(k);
        const Image0 image = readSource(copy);
        EXPECT_EQ(image.getHeight(), 3);
        EXPECT_EQ(image.getData()[5], 10 + k);
    }
    copy.setPlane(4);
    EXPECT_THROW(readSource(copy), FileReadError);

    VoxelMatrix<float> volume(folder.file("stack.tif"));
    EXPECT_EQ(volume.getSize3(), 4);
    EXPECT_EQ(volume(2, 1, 3), 13.0F);
    Image2 whole;
    ImageReader().read(whole, static_cast<const ImageSource&>(source));
    EXPECT_TRUE(whole == stack);
}

TEST(ImageSourceVoxelMatrixPlane, PlanesOfVolumesAreRead)
{
    const TemporaryFolder folder;
    VoxelMatrix<float> volume(2, 3, 2);
    volume.fill(1.0F);
    volume(1, 2, 1) = 300.0F;
    volume.save(folder.file("volume.vm"), false);

    ImageSourceVoxelMatrixPlane memory;
    EXPECT_THROW(memory.getVoxelMatrix(), UsageError);
    memory.setVoxelMatrix(volume);
    EXPECT_FALSE(memory.isDefined());
    memory.setPlane(1);
    EXPECT_TRUE(memory.isDefined());
    ImageSourceVoxelMatrixFilePlane file;
    file.setVoxelMatrixFilename(folder.file("volume.vm"));
    EXPECT_EQ(file.getPlane(), -1);
    file.setPlane(1);
    for (const ImageSource* source :
         {static_cast<const ImageSource*>(&memory), static_cast<const ImageSource*>(&file)}) {
        EXPECT_EQ(source->getSize(), vectorOf<int>({2, 3}));
        EXPECT_EQ(source->getDepth(), 32);
        testing::internal::CaptureStdout();
        const Image0 image = readSource(*source);
        const std::string listing = testing::internal::GetCapturedStdout();
        EXPECT_EQ(listing.find("image read from voxel matrix"), 0U);
        EXPECT_EQ(image.getDepth(), source->getType() == 2 ? 16 : 8);
        EXPECT_NE(listing.find(source->getType() == 2 ? " 300\n" : "  44\n"), std::string::npos);
    }
    memory.setPlane(2);
    EXPECT_THROW(readSource(memory), RangeError);
    Image2 image;
    EXPECT_THROW(ImageReader().read(image, static_cast<const ImageSource&>(memory)), UsageError);
}
