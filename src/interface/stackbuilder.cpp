#include "interface/stackbuilder.h"

#include "image/pixels/voxelmatrix.h"
#include "image/sources/imagesourcefile.h"
#include "image/sources/imagesourcefilemosaic.h"
#include "image/sources/imagesourcetiffstackplane.h"
#include "image/sources/imagesourcevoxelmatrixfileplane.h"
#include "image/values/pixelcalibration.h"
#include "interface/imageimport.h"
#include "interface/lmxstack.h"
#include "interface/photographimport.h"
#include "interface/photographrecord.h"
#include "stack/stackslice.h"
#include "system/exception.h"
#include "system/fileinfo.h"

#include <charconv>
#include <cmath>
#include <memory>
#include <new>

namespace {

constexpr int micrometres = -6;
const char* const where = "void StackBuilder::build(LMXStack&, const vector<string>&)";

/// The value as the text of a stack file brings it back.
float asWritten(double value)
{
    char text[64];
    const auto end = std::to_chars(text, text + sizeof text, static_cast<float>(value),
                                   std::chars_format::general, 6);
    float read = 0.0F;
    std::from_chars(text, end.ptr, read);
    return read;
}

bool isSize(float value)
{
    return std::isfinite(value) && value > 0.0F;
}

/// What a file states counts if it has a unit.
bool isCalibrated(const PixelCalibration& stated)
{
    return stated.getLengthUnit().getScale() != 0 && isSize(stated.getPixelWidth());
}

std::string list(const std::vector<std::string>& names)
{
    constexpr std::size_t shown = 5;
    std::string text;
    for (std::size_t i = 0; i < names.size() && i < shown; ++i) {
        text += (i == 0 ? "" : ", ") + names[i];
    }
    return names.size() > shown ? text + " and " + std::to_string(names.size() - shown) + " more"
                                : text;
}

/// The name of a page of several, "leaf-07" for the seventh of ten to 99.
std::string numbered(const std::string& name, int page, int pages)
{
    const std::string number = std::to_string(page + 1);
    return name + "-" + std::string(std::to_string(pages).size() - number.size(), '0') + number;
}

void checkName(const std::string& name, const std::string& photograph)
{
    if (name.find_first_of("\"\n\r") != std::string::npos) {
        raise<ValueError>(where, photograph + ": a stack file can't hold a name with a double "
                                              "quote or a line break");
    }
    if (name.find('\t') != std::string::npos) {
        raise<ValueError>(where, photograph + ": tables can't hold a name with a TAB");
    }
}

} // namespace

StackBuilder::StackBuilder()
{
    unit_.setScale(micrometres);
}

void StackBuilder::build(LMXStack& stack, const std::vector<std::string>& photographs)
{
    notes_.clear();
    refused_.clear();
    stack.setLengthUnit(unit_);
    const std::size_t tiles = std::size_t(rows_) * std::size_t(columns_);
    if (photographs.size() % tiles != 0) {
        raise<UsageError>(where, std::to_string(photographs.size()) +
                                     " images don't fill mosaics of " + std::to_string(rows_) +
                                     " by " + std::to_string(columns_));
    }
    for (auto first = photographs.begin(); first != photographs.end(); first += long(tiles)) {
        current_ = *first;
        const std::vector<std::string> files(first, first + long(tiles));
        try {
            append(stack, files);
        } catch (const NameError&) {
            throw;
        } catch (const ValueError&) {
            throw;
        } catch (const Exception& error) {
            if (!goesOn_) {
                throw;
            }
            const auto* file = dynamic_cast<const FileError*>(&error);
            refused_.push_back({*first, file ? file->getFilename() : current_, error.getWhat()});
        } catch (const std::bad_alloc&) {
            if (!goesOn_) {
                throw;
            }
            refused_.push_back({*first, current_, "there is not enough memory"});
        }
    }
    finish(stack);
}

void StackBuilder::addSlice(LMXStack& stack,
                            const SliceSource& source,
                            const std::string& photograph)
{
    current_ = photograph;
    checkName(source.name, current_);
    if (stack.findSlice(source.name) >= 0) {
        raise<NameError>(where, current_ + ": the stack has a slice \"" + source.name +
                                    "\" already; two photographs can't have one name");
    }
    auto slice = std::make_unique<StackSlice>();
    slice->setName(source.name);
    slice->setImageSource(*source.pixels);
    slice->setPixelCalibration(source.calibration);
    slice->setStack(stack);
    stack.addSlice(*slice.release());
}

void StackBuilder::finish(LMXStack& stack) const
{
    stack.setLengthUnit(unit_);
    // What the slices have in common is the default of the stack.
    if (stack.getNumSlices() > 0) {
        const PixelCalibration& first = stack.getFirstSlice().getPixelCalibration();
        bool common = true;
        for (int i = 1; i < stack.getNumSlices(); ++i) {
            common = common && stack.getSlice(i).getPixelCalibration() == first;
        }
        if (common) {
            stack.setDefaultPixelCalibration(first);
        }
    }
    stack.updateReconstruction();
}

void StackBuilder::setMosaic(int rows, int columns)
{
    if (rows < 1 || columns < 1) {
        raise<ValueError>("void StackBuilder::setMosaic(int, int)",
                          "A mosaic has at least one row and one column");
    }
    rows_ = rows;
    columns_ = columns;
}

/// The file of one image, converted if it can't be used as it lies.
std::string StackBuilder::imageFile(const std::string& photograph)
{
    current_ = photograph;
    checkName(FileInfo::fileName(photograph), photograph);
    const ImageImport::Kind kind = ImageImport::kindOf(photograph);
    if (kind != ImageImport::Kind::Convertible && kind != ImageImport::Kind::Photograph) {
        return photograph;
    }
    std::string note;
    const std::string file = kind == ImageImport::Kind::Convertible
                                 ? ImageImport::convert(photograph, folder_, note)
                                 : PhotographImport::convert(photograph, folder_, note);
    if (!note.empty()) {
        notes_.push_back(note);
    }
    return file;
}

void StackBuilder::append(LMXStack& stack, const std::vector<std::string>& tiles)
{
    if (tiles.size() == 1) {
        append(stack, tiles.front());
    } else {
        appendMosaic(stack, tiles);
    }
}

PixelCalibration StackBuilder::believed(const PixelCalibration& stated,
                                        const std::string& photograph)
{
    const std::string doubt = PhotographRecord(photograph).doubt();
    if (doubt.empty()) {
        return stated;
    }
    if (!doubtTold_ && !pixelWidth_) {
        doubtTold_ = true;
        notes_.push_back(photograph + " " + doubt +
                         "; such photographs count as uncalibrated, unless their scale is given");
    }
    return {};
}

void StackBuilder::append(LMXStack& stack, const std::string& photograph)
{
    for (const SliceSource& source : sourcesOf(photograph)) {
        addSlice(stack, source, photograph);
    }
}

std::vector<SliceSource> StackBuilder::sourcesOf(const std::string& photograph)
{
    const std::string name = FileInfo::baseName(photograph);
    const std::string file = imageFile(photograph);
    switch (ImageImport::kindOf(file)) {
    case ImageImport::Kind::Volume:
        return planesOf(name, file);
    case ImageImport::Kind::Pages:
        return pagesOf(name, file);
    default:
        const ImageSourceFile source(file);
        std::vector<SliceSource> sources;
        sources.push_back(
            sourceOf(name, source, believed(ImageImport::statedCalibration(file), photograph)));
        return sources;
    }
}

void StackBuilder::appendMosaic(LMXStack& stack, const std::vector<std::string>& tiles)
{
    ImageSourceFileMosaic mosaic(rows_, columns_);
    PixelCalibration stated;
    for (std::size_t i = 0; i < tiles.size(); ++i) {
        const std::string file = imageFile(tiles[i]);
        if (i == 0) {
            stated = believed(ImageImport::statedCalibration(file), tiles[i]);
        }
        const int place = static_cast<int>(i);
        mosaic.setFilename(place / columns_, place % columns_, file);
    }
    current_ = tiles.front();
    addSlice(stack, sourceOf(FileInfo::baseName(tiles.front()), mosaic, stated), tiles.front());
}

std::vector<SliceSource> StackBuilder::pagesOf(const std::string& name,
                                               const std::string& file) const
{
    ImageSourceTiffStackPlane source;
    source.setTiffStackFilename(file);
    const int pages = source.getNumImages();
    const PixelCalibration stated = ImageImport::statedCalibration(file);
    std::vector<SliceSource> sources;
    for (int page = 0; page < pages; ++page) {
        source.setPlane(page);
        sources.push_back(sourceOf(numbered(name, page, pages), source, stated));
    }
    return sources;
}

std::vector<SliceSource> StackBuilder::planesOf(const std::string& name,
                                                const std::string& file) const
{
    VoxelMatrix<float> volume;
    volume.loadHeader(file);
    const VoxelCalibration& size = volume.getVoxelCalibration();
    PixelCalibration stated;
    stated.setLengthUnit(size.getLengthUnit());
    stated.setPixelWidth(size.getVoxelWidth());
    stated.setPixelHeight(size.getVoxelHeight());
    stated.compute();
    ImageSourceVoxelMatrixFilePlane source;
    source.setVoxelMatrixFilename(file);
    std::vector<SliceSource> sources;
    for (int plane = 0; plane < volume.getSize3(); ++plane) {
        source.setPlane(plane);
        sources.push_back(sourceOf(numbered(name, plane, volume.getSize3()), source, stated));
    }
    return sources;
}

SliceSource StackBuilder::sourceOf(const std::string& name,
                                   const ImageSource& source,
                                   const PixelCalibration& stated) const
{
    return {name, std::unique_ptr<ImageSource>(source.clone()), sliceCalibration(stated)};
}

PixelCalibration StackBuilder::sliceCalibration(const PixelCalibration& stated) const
{
    PixelCalibration calibration;
    calibration.setLengthUnit(unit_);
    const float ratio = isSize(stated.getAspectRatio()) ? stated.getAspectRatio() : 1.0F;
    double width = 1.0;
    if (pixelWidth_) {
        width = double(*pixelWidth_) * std::max(1.0F, ratio);
    } else if (isCalibrated(stated)) {
        const int powers = stated.getLengthUnit().getScale() - unit_.getScale();
        width = double(stated.getPixelWidth()) * std::max(1.0F, ratio) * std::pow(10.0, powers);
    }
    calibration.setPixelWidth(asWritten(width));
    calibration.setAspectRatio(asWritten(ratio));
    calibration.compute();
    return calibration;
}

bool StackBuilder::hasPixelSize(const StackSlice& slice)
{
    const float width = slice.getPixelCalibration().getPixelWidth();
    return isSize(width) && width != 1.0F;
}

std::vector<std::string> StackBuilder::calibrationNotes(const Stack& stack)
{
    std::vector<std::string> notes;
    std::vector<std::string> uncalibrated;
    std::vector<std::string> otherUnit;
    for (int i = 0; i < stack.getNumSlices(); ++i) {
        const StackSlice& slice = stack.getSlice(i);
        if (!hasPixelSize(slice)) {
            uncalibrated.push_back(slice.getName());
        } else if (slice.getPixelCalibration().getLengthUnit() != stack.getLengthUnit()) {
            otherUnit.push_back(slice.getName());
        }
    }
    const auto slices = static_cast<std::size_t>(stack.getNumSlices());
    for (const std::string& name : uncalibrated) {
        notes.push_back("slice " + name + " has no pixel size; its lengths are in pixels");
    }
    if (!uncalibrated.empty() && uncalibrated.size() < slices) {
        notes.push_back("the stack mixes slices with and without pixel size; its lengths can't be "
                        "compared");
    }
    if (!otherUnit.empty()) {
        notes.push_back("the stack mixes length units: " + list(otherUnit) +
                        " not in its own unit, " + stack.getLengthUnit().symbol());
    }
    return notes;
}

void StackBuilder::setPixelWidth(StackSlice& slice, float width)
{
    if (!isSize(width)) {
        raise<ValueError>("void StackBuilder::setPixelWidth(StackSlice&, float)",
                          "The width of a pixel is a number above 0");
    }
    PixelCalibration calibration = slice.getPixelCalibration();
    calibration.setLengthUnit(slice.getStack()->getLengthUnit());
    calibration.setPixelWidth(asWritten(width));
    calibration.compute();
    slice.setPixelCalibration(calibration);
}
