// Image files as other programs write them, taken into a stack.

#include "image/pixels/image0.h"
#include "image/pixels/pixelmatrix.h"
#include "image/sources/imagesourcekinds.h"
#include "interface/lmxstack.h"
#include "interface/stackbuilder.h"
#include "stack/stackslice.h"
#include "support/temporaryfolder.h"
#include "support/tiffs.h"

#include <gtest/gtest.h>
#include <hdf5.h>

#include <cstring>

namespace {

/// What the first slice made of a file shows.
struct Shown
{
    int rows, columns;
    std::vector<int> red; ///< or grey
    float pixelWidth;
    std::vector<std::string> notes;
    std::vector<std::string> files;
};

Shown shown(const TemporaryFolder& folder, const std::string& name)
{
    LMXStack stack;
    StackBuilder builder;
    builder.setFolder(folder.path().string());
    builder.build(stack, {folder.file(name)});
    Image0 image;
    stack.getSlice(0).load(image);
    PixelMatrix<int> pixels;
    pixels.convertFromImage(image, ImageChannel::Red);
    Shown result = {pixels.getSize1(),
                    pixels.getSize2(),
                    {},
                    stack.getSlice(0).getPixelCalibration().getPixelWidth(),
                    builder.getNotes(),
                    filesOf(stack.getSlice(0).getImageSource())};
    for (int i = 0; i < result.rows; ++i) {
        for (int j = 0; j < result.columns; ++j) {
            result.red.push_back(pixels(i, j));
        }
    }
    return result;
}

using Pixels = std::vector<int>;

struct Tags
{
    int bits, samples, photometric;
    std::vector<std::pair<int, int>> others;
};

/// One page whose rows are those of `bytes`.
template <class T>
void makePage(const TemporaryFolder& folder,
              int rows,
              int columns,
              const Tags& tags,
              const std::vector<T>& values)
{
    TiffMaker maker(folder.file("page.tif"));
    maker.tags(columns, rows, tags.bits, tags.samples, tags.photometric);
    for (const auto& [tag, value] : tags.others) {
        TIFFSetField(maker.get(), static_cast<std::uint32_t>(tag), value);
    }
    std::vector<unsigned char> bytes(values.size() * sizeof(T));
    std::memcpy(bytes.data(), values.data(), bytes.size());
    const int line = static_cast<int>(TIFFScanlineSize(maker.get()));
    maker.rows(rows, [&](int i, int b) { return bytes[static_cast<std::size_t>(i * line + b)]; });
}

using Bytes = std::vector<unsigned char>;

} // namespace

TEST(ForeignImage, TiffPicturesAreShownAsTheyAreMeant)
{
    const TemporaryFolder folder;
    const auto look = [&] { return shown(folder, "page.tif"); };

    makePage(folder, 1, 3, {8, 1, PHOTOMETRIC_MINISWHITE, {}}, Bytes{0, 100, 255});
    EXPECT_EQ(look().red, (Pixels{255, 155, 0}));
    makePage(folder, 1, 4, {1, 1, PHOTOMETRIC_MINISBLACK, {}}, Bytes{0x60});
    EXPECT_EQ(look().red, (Pixels{0, 255, 255, 0}));

    // Row 0 of the file is the right side, column 0 the top.
    makePage(folder, 2, 3,
             {8, 1, PHOTOMETRIC_MINISBLACK, {{TIFFTAG_ORIENTATION, ORIENTATION_RIGHTTOP}}},
             Bytes{1, 2, 3, 4, 5, 6});
    const Shown turned = look();
    EXPECT_EQ(turned.rows, 3);
    EXPECT_EQ(turned.red, (Pixels{4, 1, 5, 2, 6, 3}));

    {
        TiffMaker maker(folder.file("page.tif"));
        maker.tags(2, 1, 8, 4, PHOTOMETRIC_RGB);
        std::uint16_t opacity = EXTRASAMPLE_UNASSALPHA;
        TIFFSetField(maker.get(), TIFFTAG_EXTRASAMPLES, 1, &opacity);
        const Bytes bytes = {10, 200, 30, 255, 10, 20, 30, 0};
        maker.rows(1, [&](int, int b) { return bytes[static_cast<std::size_t>(b)]; });
    }
    EXPECT_EQ(look().red, (Pixels{10, 255})) << "what is transparent is white";

    // Places in a palette tell of colours in a photograph, of leaves in a picture of labels.
    const auto makePalette = [&](const Bytes& indices) {
        TiffMaker maker(folder.file("page.tif"));
        maker.tags(static_cast<int>(indices.size()), 1, 8, 1, PHOTOMETRIC_PALETTE);
        std::vector<std::uint16_t> map(256);
        for (std::size_t i = 0; i < map.size(); ++i) {
            map[i] = static_cast<std::uint16_t>((7 * i % 256) << 8);
        }
        TIFFSetField(maker.get(), TIFFTAG_COLORMAP, map.data(), map.data(), map.data());
        maker.rows(1, [&](int, int b) { return indices[static_cast<std::size_t>(b)]; });
    };
    makePalette({1, 2, 3, 4, 5, 5, 6, 7});
    EXPECT_EQ(look().red, (Pixels{7, 14, 21, 28, 35, 35, 42, 49}));
    makePalette({1, 1, 1, 4, 4, 4, 7, 7});
    EXPECT_EQ(look().files, std::vector<std::string>{folder.file("page.tif")}) << "as it lies";
}

TEST(ForeignImage, NumbersTakeTheWholeRangeOfBytes)
{
    const TemporaryFolder folder;
    const auto format = [](int bits, int kind) {
        return Tags{bits, 1, PHOTOMETRIC_MINISBLACK, {{TIFFTAG_SAMPLEFORMAT, kind}}};
    };
    const Pixels ends = {0, 128, 255};
    makePage(folder, 1, 3, format(8, SAMPLEFORMAT_INT), Bytes{0x80, 0x00, 0x7F});
    EXPECT_EQ(shown(folder, "page.tif").red, ends);
    makePage(folder, 1, 3, format(16, SAMPLEFORMAT_INT), std::vector<short>{-255, 1, 255});
    EXPECT_EQ(shown(folder, "page.tif").red, ends);
    makePage(folder, 1, 3, format(16, SAMPLEFORMAT_IEEEFP),
             std::vector<std::uint16_t>{0xC000, 0x0000, 0x4000}); // -2, 0, 2
    EXPECT_EQ(shown(folder, "page.tif").red, ends);
    makePage(folder, 1, 3, format(64, SAMPLEFORMAT_UINT), std::vector<std::uint64_t>{10, 20, 30});
    EXPECT_EQ(shown(folder, "page.tif").red, ends);

    // A camera's offset and one hot pixel left a leaf of 16 bits hardly any grey.
    std::vector<std::uint16_t> dim(2500, 4000);
    std::fill(dim.begin() + 1200, dim.end(), std::uint16_t(4200));
    dim[7] = 65535;
    makePage(folder, 50, 50, format(16, SAMPLEFORMAT_UINT), dim);
    const Shown stretched = shown(folder, "page.tif");
    EXPECT_TRUE(stretched.red[0] == 0 && stretched.red[7] == 255 && stretched.red[2000] == 255);
    EXPECT_EQ(stretched.notes.size(), 1U);
    dim.assign(2500, 60000);
    dim[0] = 0;
    std::fill(dim.begin(), dim.begin() + 1000, std::uint16_t(100));
    makePage(folder, 50, 50, format(16, SAMPLEFORMAT_UINT), dim);
    EXPECT_EQ(shown(folder, "page.tif").red[2000], 60000) << "an even range stays";
}

TEST(ForeignImage, AScaleIsAUnitAndAResolution)
{
    const TemporaryFolder folder;
    const auto width = [&](int unit, bool resolution, const char* description) {
        {
            TiffMaker maker(folder.file("page.tif"));
            maker.tags(2, 1, 8, 3, PHOTOMETRIC_RGB);
            TIFFSetField(maker.get(), TIFFTAG_RESOLUTIONUNIT, unit);
            TIFFSetField(maker.get(), TIFFTAG_IMAGEDESCRIPTION, description);
            if (resolution) {
                TIFFSetField(maker.get(), TIFFTAG_XRESOLUTION, 4.0);
                TIFFSetField(maker.get(), TIFFTAG_YRESOLUTION, 4.0);
            }
            maker.rows(1, [](int, int) { return 1; });
        }
        return shown(folder, "page.tif").pixelWidth;
    };
    EXPECT_FLOAT_EQ(width(RESUNIT_NONE, true, "ImageJ=1.53k\nunit=\\u00B5m\n"), 0.25F);
    EXPECT_FLOAT_EQ(width(RESUNIT_CENTIMETER, true, ""), 2500.0F);
    EXPECT_EQ(width(RESUNIT_CENTIMETER, false, ""), 1.0F) << "no scale, and no leaf of 8 m";
}

TEST(ForeignImage, Hdf5DatasetsKeepRowsColumnsAndBytes)
{
    const TemporaryFolder folder;
    {
        const hid_t file =
            H5Fcreate(folder.file("sets.h5").c_str(), H5F_ACC_TRUNC, H5P_DEFAULT, H5P_DEFAULT);
        const hsize_t extent[] = {2, 3};
        const hid_t space = H5Screate_simple(2, extent, nullptr);
        const unsigned char bytes[] = {10, 11, 12, 20, 21, 22};
        for (const char* name : {"mask", "other"}) {
            const hid_t dataSet = H5Dcreate2(file, name, H5T_NATIVE_UCHAR, space, H5P_DEFAULT,
                                             H5P_DEFAULT, H5P_DEFAULT);
            H5Dwrite(dataSet, H5T_NATIVE_UCHAR, H5S_ALL, H5S_ALL, H5P_DEFAULT, bytes);
            H5Dclose(dataSet);
        }
        H5Gclose(H5Gcreate2(file, "a group", H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT));
        H5Sclose(space);
        H5Fclose(file);
    }
    const Shown picture = shown(folder, "sets.h5");
    EXPECT_EQ(picture.rows, 2);
    EXPECT_EQ(picture.red, (Pixels{10, 11, 12, 20, 21, 22}));
    ASSERT_EQ(picture.notes.size(), 1U);
    EXPECT_NE(picture.notes[0].find("the dataset mask of mask, other is taken"), std::string::npos);
}
