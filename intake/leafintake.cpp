#include "intake/leafintake.h"

#include "blade/contour/extractcontour.h"
#include "image/files/imagewriter.h"
#include "image/pixels/image0.h"
#include "image/sources/imagesourcefile.h"
#include "interface/conversion.h"
#include "interface/imageimport.h"
#include "interface/lmxstack.h"
#include "interface/photographimport.h"
#include "stack/stackslice.h"
#include "system/exception.h"
#include "system/fileinfo.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

Image0 toImage(const cv::Mat& rgb)
{
    Image0 image(rgb.cols, rgb.rows, 24);
    for (int y = 0; y < rgb.rows; ++y) {
        std::memcpy(image.getPixels()[y], rgb.ptr(y), image.bytesPerLine());
    }
    return image;
}

const char* nameOf(BackgroundValue background)
{
    return background == LightBackground ? "light" : "dark";
}

/// The object that a row of the settings means: the one most of which lies in its part.
int objectIn(const FoundLeaves& found, const cv::Rect& part)
{
    constexpr double most = 0.8;
    int best = -1;
    for (std::size_t i = 0; i < found.objects.size(); ++i) {
        const FoundObject& object = found.objects[i];
        const double inside = (object.box & part).area() / double(std::max(1, object.box.area()));
        const bool larger = best < 0 || object.area > found.objects[std::size_t(best)].area;
        if (inside > most && larger) {
            best = static_cast<int>(i);
        }
    }
    return best;
}

} // namespace

LeafIntake::LeafIntake(const Options& options)
    : options_(options)
{
    builder_.setLengthUnit(options.unit);
    builder_.setFolder(options.folder);
    if (options.pixelWidth) {
        builder_.setPixelWidth(*options.pixelWidth);
    }
}

/// Puts the scale found into the picture's calibration, and notes where there is none.
void LeafIntake::findScaleOf(IntakePicture& picture)
{
    if (options_.scale.kind == ScaleRequest::Kind::None) {
        return;
    }
    picture.scale = findScale(picture.pixels.pixels(), options_.scale);
    const float ratio = picture.calibration.getAspectRatio();
    PixelCalibration stated;
    stated.setAspectRatio(ratio);
    if (picture.scale.found) {
        LengthUnit millimetre;
        millimetre.setScale(-3);
        stated.setLengthUnit(millimetre);
        // A slice shows square pixels as wide as the longer side of the file's.
        stated.setPixelWidth(static_cast<float>(picture.scale.pixelSize) / std::max(1.0F, ratio));
        stated.compute();
    } else {
        notes_.push_back(picture.path + ": " + options_.scale.text() + " not found (" +
                         picture.scale.reason +
                         "); its leaves have no scale but that of a table "
                         "of settings");
    }
    picture.calibration = builder_.sliceCalibration(stated);
}

/// The calibration of a leaf's slice; tells the row where it comes from.
PixelCalibration LeafIntake::calibrationOf(const IntakePicture& picture, LeafRow& row) const
{
    PixelCalibration calibration = picture.calibration;
    if (options_.pixelWidth) {
        row.scaleSource = "option";
    } else if (picture.scale.found) {
        row.scaleSource = options_.scale.text();
    } else if (row.pixelWidth) {
        calibration.setPixelWidth(static_cast<float>(*row.pixelWidth));
        calibration.compute();
        row.scaleSource = "table";
    } else {
        row.scaleSource = "file";
    }
    return calibration;
}

std::vector<IntakePicture> LeafIntake::open(const std::string& path)
{
    std::vector<IntakePicture> pictures;
    if (ImageImport::kindOf(path) == ImageImport::Kind::Photograph) {
        const Image0 image = PhotographImport::read(path);
        IntakePicture picture;
        picture.path = path;
        picture.name = FileInfo::baseName(path);
        picture.pixels = Photograph(image);
        picture.calibration = builder_.sliceCalibration(
            builder_.believed(image.getHeader().getPixelCalibration(), path));
        pictures.push_back(std::move(picture));
    } else {
        for (SliceSource& source : builder_.sourcesOf(path)) {
            StackSlice slice;
            slice.setImageSource(*source.pixels);
            slice.setPixelCalibration(source.calibration); // the stages see square pixels, too
            IntakePicture picture;
            picture.path = path;
            picture.name = source.name;
            picture.pixels = Photograph::ofSlice(slice);
            picture.calibration = source.calibration;
            picture.source = std::move(source.pixels);
            pictures.push_back(std::move(picture));
        }
    }
    for (const std::string& note : builder_.takeNotes()) {
        notes_.push_back(note);
    }
    for (IntakePicture& picture : pictures) {
        findScaleOf(picture);
    }
    return pictures;
}

FoundLeaves LeafIntake::find(const IntakePicture& picture) const
{
    FoundLeaves found = LeafFinder::find(picture.pixels);
    if (!options_.settings) {
        return found;
    }
    std::vector<cv::Rect> parts;
    for (const LeafRow* row : options_.settings->rowsOf(picture.path)) {
        if (row->part.area() > 0) {
            parts.push_back(row->part);
        }
    }
    if (parts.empty()) {
        return found;
    }
    for (FoundObject& object : found.objects) {
        object.verdict = object.isLeaf ? "not in the settings" : object.verdict;
        object.isLeaf = false;
    }
    for (const cv::Rect& part : parts) {
        const int object = objectIn(found, part);
        if (object >= 0 && !found.objects[std::size_t(object)].isLeaf) {
            found.setLeaf(object, true);
        } else {
            found.addLeaf(picture.pixels, part);
        }
    }
    return found;
}

IntakeLeaf
LeafIntake::prepare(const IntakePicture& picture, const FoundLeaves& found, int place) const
{
    const int object = found.leaves.at(std::size_t(place));
    IntakeLeaf leaf;
    leaf.name = picture.name;
    if (found.leaves.size() > 1) {
        leaf.name += "-" + std::to_string(place + 1);
    }
    const LeafRow* row = options_.settings ? options_.settings->find(leaf.name) : nullptr;
    std::optional<cv::Rect> part;
    OutlineWish wish = options_.wish;
    if (row) {
        if (row->part.area() > 0) {
            part = row->part;
        }
        if (!wish.channel && !row->channel.empty()) {
            wish.channel = ChosenOutline::channelOf(row->channel);
        }
        if (!wish.background && !row->background.empty()) {
            wish.background = row->background == "light" ? LightBackground : DarkBackground;
        }
        leaf.row = *row;
    }
    leaf.cut = SliceCutter::cut(picture.pixels, found, object, part);
    leaf.outline = OutlineChoice::choose(leaf.cut, wish);
    const FoundObject& seen = found.objects[std::size_t(object)];
    leaf.row.slice = leaf.name;
    leaf.row.photograph = picture.path;
    leaf.row.part = leaf.cut.part;
    leaf.row.background = nameOf(leaf.outline.background);
    leaf.row.channel = ChosenOutline::nameOf(leaf.outline.channel);
    leaf.row.overlap = leaf.outline.overlap;
    leaf.row.contrast = seen.contrast;
    leaf.row.touchesEdge = seen.touchesEdge;
    return leaf;
}

std::string LeafIntake::writeCut(const IntakePicture& picture, const IntakeLeaf& leaf)
{
    const std::string base = FileInfo::baseName(picture.path);
    std::string part = leaf.name.substr(std::min(base.size(), leaf.name.size()));
    part += leaf.name == picture.name ? "-1" : "";
    // A cut of the same leaf is made anew, since the settings may have moved it.
    const Conversion cut(picture.path, options_.folder, part);
    ImageWriter writer;
    writer.setOrigin(cut.origin());
    writer.writeCompressed(toImage(leaf.cut.pixels), cut.path(), true);
    if (!cut.note().empty()) {
        notes_.push_back(cut.note());
    }
    return cut.path();
}

void LeafIntake::add(LMXStack& stack,
                     ExtractContour& stage,
                     const IntakePicture& picture,
                     IntakeLeaf& leaf)
{
    SliceSource source{leaf.name, nullptr, calibrationOf(picture, leaf.row)};
    if (stack.findSlice(leaf.name) >= 0) {
        raise<NameError>("void LeafIntake::add(...)",
                         picture.path + ": the stack has a slice \"" + leaf.name +
                             "\" already; two photographs can't have one name");
    }
    if (leaf.cut.isWhole && picture.source) {
        source.pixels.reset(picture.source->clone());
    } else if (leaf.cut.isWhole) {
        std::string note;
        source.pixels = std::make_unique<ImageSourceFile>(
            PhotographImport::convert(picture.path, options_.folder, note));
        if (!note.empty()) {
            notes_.push_back(note);
        }
    } else {
        source.pixels = std::make_unique<ImageSourceFile>(writeCut(picture, leaf));
        if (source.calibration.getAspectRatio() != 1.0F) { // the cut has square pixels
            source.calibration.setPixelHeight(source.calibration.getPixelWidth());
            source.calibration.setAspectRatio(1.0F);
        }
    }
    builder_.addSlice(stack, source, picture.path);
    const int place = stack.getNumSlices() - 1;
    stage.store(leaf.outline.outline, place);
    const StackSlice& slice = stack.getSlice(place);
    leaf.row.pixelWidth.reset();
    if (StackBuilder::hasPixelSize(slice)) {
        leaf.row.pixelWidth = double(slice.getPixelCalibration().getPixelWidth());
    } else {
        leaf.row.scaleSource = "none";
    }
}
