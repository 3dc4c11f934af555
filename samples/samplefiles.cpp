#include "samples/samplefiles.h"

#include "samples/labelcomparison.h"
#include "system/dataset.h"
#include "system/exception.h"
#include "system/filereplacement.h"

#include <tiffio.h>

#include <cmath>
#include <filesystem>
#include <memory>

namespace {

constexpr int pictureWidth = 900;
constexpr int pictureHeight = 1300;

int pixel(double position)
{
    return static_cast<int>(std::floor(position));
}

void addRows(
    DataSet& junctions, DataSet& truth, int row, const LeafPlan& plan, const LeafOutline& leaf)
{
    const bool palmate = plan.kind == LeafKind::Palmate;
    junctions.setValue<std::string>("Slice_Name", row, plan.name);
    junctions.setValue("X1", row, pixel(leaf.leftJunction.x));
    junctions.setValue("Y1", row, pixel(leaf.leftJunction.y));
    junctions.setValue("X2", row, pixel(leaf.rightJunction.x));
    junctions.setValue("Y2", row, pixel(leaf.rightJunction.y));

    truth.setValue<std::string>("Slice_Name", row, plan.name);
    truth.setValue<std::string>("Kind", row, kindName(plan.kind));
    truth.setValue<std::string>("Venation", row, palmate ? "palmate" : "pinnate");
    truth.setValue("Upper_Teeth", row, plan.upperTeeth);
    truth.setValue("Lower_Teeth", row, plan.lowerTeeth);
    truth.setValue("Terminal_Teeth", row, palmate ? 1 : 0);
    truth.setValue("Small_Teeth", row, plan.smallTeeth);
    truth.setValue<std::string>("Background", row, plan.lightBackground ? "light" : "dark");
    truth.setValue<std::string>("Colour", row, plan.colour ? "rgb" : "grey");
    truth.setValue("Apex_X", row, pixel(leaf.apex.x));
    truth.setValue("Apex_Y", row, pixel(leaf.apex.y));
    truth.setValue("Blade_Length", row,
                   length(leaf.apex - (leaf.leftJunction + leaf.rightJunction) * 0.5));
    truth.setValue("Blade_Area", row, leaf.bladeArea);
}

void addLabels(DataSet& labels, const LeafPlan& plan, const LeafOutline& leaf)
{
    for (const TrueLandmark& landmark : leaf.landmarks) {
        const int row = labels.numRows();
        labels.setValue<std::string>("Slice_Name", row, plan.name);
        labels.setValue<std::string>("Structure", row, structureName(landmark.structure));
        labels.setValue<std::string>("Class", row, className(landmark.label));
        labels.setValue("X", row, pixel(landmark.place.x));
        labels.setValue("Y", row, pixel(landmark.place.y));
    }
}

void saveTable(const DataSet& table, const std::string& filename)
{
    if (!table.save(filename, true)) {
        raiseFile<FileWriteError>("void writeSamples(const string&, int, long, Series)",
                                  "The file can't be written", filename);
    }
}

void writePixels(TIFF* tiff, const Picture& picture, bool& written)
{
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(picture.width));
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(picture.height));
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, picture.samples);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC,
                 picture.samples == 3 ? PHOTOMETRIC_RGB : PHOTOMETRIC_MINISBLACK);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, TIFFDefaultStripSize(tiff, 0));
    TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
    TIFFSetField(tiff, TIFFTAG_XRESOLUTION, 300.0);
    TIFFSetField(tiff, TIFFTAG_YRESOLUTION, 300.0);
    const auto rowSize = static_cast<std::size_t>(picture.width * picture.samples);
    std::vector<std::uint8_t> row(rowSize);
    for (int y = 0; written && y < picture.height; ++y) {
        const auto begin = picture.bytes.begin() + static_cast<std::ptrdiff_t>(rowSize) * y;
        std::copy_n(begin, rowSize, row.begin()); // the library may change what it is given
        written = TIFFWriteScanline(tiff, row.data(), static_cast<std::uint32_t>(y), 0) == 1;
    }
    written = written && TIFFFlush(tiff) == 1;
}

} // namespace

void writeTiff(const Picture& picture, const std::string& filename)
{
    FileReplacement replacement("void writeTiff(const Picture&, const string&)", filename);
    bool written = false;
    {
        const std::unique_ptr<TIFF, void (*)(TIFF*)> tiff(
            TIFFOpen(replacement.temporaryName().c_str(), "w"), TIFFClose);
        if (tiff) {
            written = true;
            writePixels(tiff.get(), picture, written);
        }
    }
    replacement.commit(written);
}

void writeSamples(const std::string& folder, int count, long seed, Series series)
{
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) {
        raiseFile<FileWriteError>("void writeSamples(const string&, int, long, Series)",
                                  "The folder can't be made: " + error.message(), folder);
    }
    DataSet junctions;
    DataSet truth;
    DataSet labels;
    for (int index = 0; index < count; ++index) {
        const LeafPlan plan =
            series == Series::Growing ? planGrowingLeaf(index, count, seed) : planLeaf(index, seed);
        const LeafOutline leaf = makeOutline(plan, pictureWidth, pictureHeight);
        writeTiff(drawLeaf(plan, leaf, pictureWidth, pictureHeight),
                  folder + "/" + plan.name + ".tif");
        addRows(junctions, truth, index, plan, leaf);
        addLabels(labels, plan, leaf);
    }
    saveTable(junctions, folder + "/junctions.tsv");
    saveTable(truth, folder + "/truth.tsv");
    saveTable(labels, folder + "/labels.tsv");
}
