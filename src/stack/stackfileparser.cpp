#include "stack/stackfileparser.h"

#include "image/sources/imagesource.h"
#include "shape/vertices/vertices.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/pose.h"
#include "stack/stack.h"
#include "stack/stackfilestatements.h"
#include "stack/stackslice.h"
#include "system/exception.h"
#include "system/fileinfo.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

namespace {

using Keyword = StackIO::Keyword;

constexpr int fatalLimit = 100;
// Far beyond what an image has of rows or columns.
constexpr int longestSide = 1000000;
constexpr int highestPower = 100;
// Of a vertex, in pixels: shapes of averages reach beyond their blank images.
constexpr int leastReach = 100000;
constexpr int sidesOfReach = 10;

[[noreturn]] void refuse(const std::string& reason)
{
    raise<FileFormatError>("bool StackReader::read(Stack&, const string&)", reason);
}

std::string inQuotes(const std::string& name)
{
    return '"' + name + '"';
}

} // namespace

StackFileParser::StackFileParser(StackReader& reader,
                                 Stack& stack,
                                 const std::string& path,
                                 std::string text)
    : reader_(reader)
    , stack_(stack)
    , filename_(path)
    , scanner_(std::move(text))
{}

StackFileParser::~StackFileParser() = default;

bool StackFileParser::isStackFile()
{
    return scanner_.nextStatement() && reader_.getKeyword(scanner_.keyword()) != Keyword::Unknown;
}

void StackFileParser::run()
{
    do {
        try {
            readStatement();
        } catch (const FileFormatError& error) {
            fail(scanner_.valueLine(), scanner_.keyword() + ": " + error.getWhat());
        }
    } while (reader_.numFatalErrors < fatalLimit && scanner_.nextStatement());
    if (reader_.numFatalErrors >= fatalLimit) {
        reader_.tell(filename_ + ": too many errors, the rest of the file was not read");
    }
    finish();
}

void StackFileParser::readStatement()
{
    const Keyword keyword = reader_.getKeyword(scanner_.keyword());
    if (keyword == Keyword::Unknown) {
        const std::string message =
            "the word " + inQuotes(scanner_.keyword()) + " is not known, its statement is left out";
        const bool ofLaterVersion = !StackIO().ensureFileFormatVersion(reader_.fileFormatVersion);
        ofLaterVersion ? tell(scanner_.line(), message) : fail(scanner_.line(), message);
        return;
    }
    if (beginBlock(keyword) || readHeader(keyword) || lost_ || readBlock(keyword)) {
        return;
    }
    switch (keyword) {
    case Keyword::Fit:
    case Keyword::PixHeight:
    case Keyword::Sample:
    case Keyword::SampleCoords:
    case Keyword::SampleValue:
    case Keyword::StandardImage:
    case Keyword::CalibrationCurve:
        tell(scanner_.line(), scanner_.keyword() + " has no meaning here and is left out");
        break;
    default:
        fail(scanner_.line(), scanner_.keyword() + " has no place here and is left out");
    }
}

bool StackFileParser::readHeader(Keyword keyword)
{
    switch (keyword) {
    case Keyword::FileFormatVersion:
        reader_.setFileFormatVersion(scanner_.lastNumber());
        if (!StackIO().ensureFileFormatVersion(reader_.fileFormatVersion)) {
            tell(scanner_.line(), "the file is of a later version than this program knows");
        }
        return true;
    case Keyword::Stack:
        stackNamed_ = true;
        stack_.setName(scanner_.lastQuoted());
        return true;
    case Keyword::LengthUnitScale: {
        LengthUnit unit;
        unit.setScale(scanner_.lastInteger(-highestPower, highestPower));
        stack_.setLengthUnit(unit);
        return true;
    }
    case Keyword::LastSegmentedSlice:
        stack_.setLastSegmentedSlice(scanner_.lastQuoted());
        return true;
    case Keyword::LastRegisteredSlice:
        stack_.setLastRegisteredSlice(scanner_.lastQuoted());
        return true;
    case Keyword::AbsoluteImagesPathPolicy:
        stack_.setAbsoluteImagesPathPolicy(scanner_.lastBoolean());
        return true;
    case Keyword::InvertZAxis:
        stack_.setInvertedZAxis(scanner_.lastBoolean());
        return true;
    case Keyword::ImagesPath:
        imagesFolder_ = scanner_.lastQuoted();
        if (stack_.getImagesPath().empty()) {
            stack_.setImagesPath(FileInfo::dirName(imagePath("x")));
        }
        return true;
    default:
        return false;
    }
}

/// The words that in front of the slices give the defaults of the stack.
bool StackFileParser::readDefaults(Keyword keyword)
{
    PixelCalibration calibration = stack_.getDefaultPixelCalibration();
    switch (keyword) {
    case Keyword::PixAspect:
        calibration.setAspectRatio(scanner_.lastPositive());
        break;
    case Keyword::PixWidth:
        calibration.setPixelWidth(scanner_.lastPositive());
        break;
    case Keyword::RelPosition:
        stack_.setDefaultRelativePosition(scanner_.lastNumber());
        return true;
    case Keyword::Annotation:
        stack_.setAnnotation(reader_.importString(scanner_.lastQuoted()));
        return true;
    default:
        return false;
    }
    calibration.compute();
    stack_.setDefaultPixelCalibration(calibration);
    return true;
}

bool StackFileParser::beginBlock(Keyword keyword)
{
    switch (keyword) {
    case Keyword::Slice:
        begin(Block::Slice, &StackFileParser::beginSlice);
        return true;
    case Keyword::StackSlice:
        begin(Block::Slice, &StackFileParser::beginStackSlice);
        return true;
    case Keyword::Model:
        begin(Block::Model, &StackFileParser::beginModel);
        return true;
    case Keyword::ModelItem:
        begin(Block::Item, &StackFileParser::beginItem);
        return true;
    case Keyword::Pose:
        begin(Block::Pose, &StackFileParser::beginPose);
        return true;
    default:
        return false;
    }
}

void StackFileParser::begin(Block next, void (StackFileParser::*beginNext)())
{
    endBlock();
    block_ = next;
    lost_ = true;
    (this->*beginNext)();
    lost_ = false;
}

void StackFileParser::beginSlice()
{
    StackFileSlice begun;
    begun.line = scanner_.line();
    begun.slice = std::make_unique<StackSlice>();
    begun.slice->setName(scanner_.quoted());
    if (scanner_.atQuote()) {
        begun.file = imagePath(scanner_.lastQuoted());
    } else {
        // So many cells as an image with one pixel in each could have, for all mosaics of the file:
        // they take memory, and the file needs no byte for an empty one.
        constexpr int mostCells = 1 << 20;
        begun.kind = StackFileSlice::Kind::Mosaic;
        begun.rows = scanner_.integer(0, mostCells - mosaicCells_);
        const int rows = std::max(begun.rows, 1);
        begun.columns = scanner_.lastInteger(0, (mostCells - mosaicCells_) / rows);
        mosaicCells_ += rows * std::max(begun.columns, 1);
    }
    slice_.emplace(std::move(begun));
}

void StackFileParser::beginStackSlice()
{
    StackFileSlice begun;
    begun.line = scanner_.line();
    begun.kind = StackFileSlice::Kind::Plane;
    begun.slice = std::make_unique<StackSlice>();
    begun.slice->setName(scanner_.quoted());
    begun.file = imagePath(scanner_.quoted());
    begun.plane = scanner_.lastInteger();
    slice_.emplace(std::move(begun));
}

void StackFileParser::beginModel()
{
    auto begun = std::make_unique<Model>();
    begun->setName(scanner_.lastQuoted());
    model_ = begun.release();
    stack_.addModel(*model_);
    modelsByName_.add(model_->getName(), *model_);
}

void StackFileParser::beginItem()
{
    const std::string modelName = scanner_.quoted();
    const std::string sliceName = scanner_.lastQuoted();
    Model* itemModel = modelsByName_.find(modelName);
    StackSlice* itemSlice = slicesByName_.find(sliceName);
    if (itemModel == nullptr) {
        refuse("there is no model " + inQuotes(modelName));
    }
    if (itemSlice == nullptr) {
        refuse("there is no slice " + inQuotes(sliceName));
    }
    if (slicesByName_.isShared(sliceName)) {
        tell(scanner_.line(),
             "several slices are called " + inQuotes(sliceName) + ", the item goes to the first");
    }
    // Of models that share a name, the item stands behind its own.
    if (modelsByName_.isShared(modelName) && model_ != nullptr && model_->getName() == modelName) {
        itemModel = model_;
    }
    item_ = std::make_unique<ModelItem>();
    item_->setModel(*itemModel);
    item_->setSlice(*itemSlice);
    itemLine_ = scanner_.line();
    itemHasData_ = false;
    itemDamaged_ = false;
}

void StackFileParser::beginPose()
{
    auto begun = std::make_unique<Pose>();
    begun->setName(scanner_.lastQuoted());
    begun->setStack(stack_);
    pose_ = begun.release();
    stack_.addPose(*pose_);
}

void StackFileParser::endBlock()
{
    if (slice_) {
        endSlice();
    }
    if (item_) {
        endItem();
    }
}

void StackFileParser::endSlice()
{
    for (const std::string& message : slice_->makeSource()) {
        tell(slice_->line, message);
    }
    StackSlice* made = slice_->slice.release();
    made->setStack(stack_);
    stack_.addSlice(*made);
    slicesByName_.add(made->getName(), *made);
    slices_.push_back(std::move(*slice_));
    slice_.reset();
}

void StackFileParser::endItem()
{
    if (itemHasData_ && !itemDamaged_) {
        item_->attach();
        item_.release();
        return;
    }
    if (!itemHasData_) {
        fail(itemLine_, "the item has no data");
    }
    item_.reset();
}

bool StackFileParser::readBlock(Keyword keyword)
{
    switch (block_) {
    case Block::Header:
        return readDefaults(keyword);
    case Block::Slice:
        return readSlice(keyword);
    case Block::Model:
        return readModelStatement(keyword, scanner_, model_->getProperties()) ||
               readDrawingStatement(keyword, scanner_, model_->getItemProperties());
    case Block::Item:
        return readItem(keyword) || readDrawingStatement(keyword, scanner_, item_->getProperties());
    case Block::Pose:
        return readPoseStatement(keyword, scanner_, *pose_);
    }
    return false;
}

bool StackFileParser::readSlice(Keyword keyword)
{
    StackSlice& target = *slice_->slice;
    Registration registration = target.getRegistration();
    switch (keyword) {
    case Keyword::SliceSize1:
        slice_->size1 = scanner_.lastInteger(0, longestSide);
        return true;
    case Keyword::SliceSize2:
        slice_->size2 = scanner_.lastInteger(0, longestSide);
        return true;
    case Keyword::RelPosition:
        target.setRelativePosition(scanner_.lastNumber());
        return true;
    case Keyword::Position:
        target.setAbsolutePosition(scanner_.lastNumber());
        return true;
    case Keyword::PixAspect:
        slice_->aspectRatio = scanner_.lastPositive();
        return true;
    case Keyword::PixWidth:
        slice_->pixelWidth = scanner_.lastPositive();
        return true;
    case Keyword::Rotate:
        registration.rotationAngle = scanner_.lastNumber();
        target.setRegistration(registration);
        return true;
    case Keyword::Shift:
        registration.horShift = scanner_.integer(-longestSide, longestSide);
        registration.verShift = scanner_.lastInteger(-longestSide, longestSide);
        target.setRegistration(registration);
        return true;
    case Keyword::Annotation:
        target.setAnnotation(reader_.importString(scanner_.lastQuoted()));
        return true;
    case Keyword::Image:
        readTile();
        return true;
    default:
        return false;
    }
}

void StackFileParser::readTile()
{
    const int row = scanner_.integer(1, slice_->rows);
    const int column = scanner_.integer(1, slice_->columns);
    std::string file = scanner_.rest();
    scanner_.end();
    if (file.empty()) {
        refuse("the name of the tile is missing");
    }
    if (!FileInfo::fileExists(file)) {
        file = tilePath(file);
    }
    if (!slice_->tiles.emplace(std::make_pair(row - 1, column - 1), file).second) {
        refuse("the cell of the mosaic is filled already");
    }
}

bool StackFileParser::readItem(Keyword keyword)
{
    switch (keyword) {
    case Keyword::TriangulationTag: {
        const std::string tag = scanner_.lastWord();
        if (tag != "Begin" && tag != "End") {
            refuse("there is no tag " + inQuotes(tag));
        }
        item_->setTriangulationTag(tag == "Begin" ? CurveStackTriangulationContourTag::Begin
                                                  : CurveStackTriangulationContourTag::End);
        return true;
    }
    case Keyword::ModelItemData:
        readItemData();
        return true;
    default:
        return false;
    }
}

void StackFileParser::readItemData()
{
    if (itemHasData_) {
        refuse("the item has data already");
    }
    itemHasData_ = true;
    itemDamaged_ = true;
    if (item_->getModel()->getProperties().getGeometry() == PRIMITIVE_REGION) {
        item_->setRLEItemSet(readRegion(scanner_));
    } else {
        item_->setVertices(readVertices(scanner_));
        requireReach();
    }
    itemDamaged_ = false;
}

/// A contour is resampled to a vertex a pixel: one point far outside would take all memory.
void StackFileParser::requireReach() const
{
    const ImageSource& image = item_->getSlice()->getImageSource();
    const Vertices<int>& vertices = item_->getVertices();
    for (int i = 0; i < vertices.getSize(); ++i) {
        const int x = vertices[i][0];
        const int y = vertices[i][1];
        const int reach = std::max(std::abs(x), std::abs(y));
        if (reach > leastReach &&
            reach / sidesOfReach > std::max(image.getSize1(), image.getSize2())) {
            refuse("the point (" + std::to_string(x) + ", " + std::to_string(y) +
                   ") lies far outside its image");
        }
    }
}

void StackFileParser::calibrateSlices()
{
    for (int i = 0; i < stack_.getNumSlices(); ++i) {
        const StackFileSlice& stated = slices_[static_cast<std::size_t>(i)];
        PixelCalibration calibration = stack_.getDefaultPixelCalibration();
        if (stated.aspectRatio) {
            calibration.setAspectRatio(*stated.aspectRatio);
        }
        if (stated.pixelWidth) {
            calibration.setPixelWidth(*stated.pixelWidth);
        }
        calibration.compute();
        stack_.getSlice(i).setPixelCalibration(calibration);
    }
}

void StackFileParser::finish()
{
    endBlock();
    block_ = Block::Header;
    calibrateSlices();
    if (!stackNamed_) {
        fail(scanner_.valueLine(), "the statement STACK is missing");
    }
    for (const std::string& name :
         {stack_.getLastSegmentedSlice(), stack_.getLastRegisteredSlice()}) {
        if (!name.empty() && slicesByName_.find(name) == nullptr) {
            tell(scanner_.valueLine(),
                 "the header names a slice " + inQuotes(name) + " that is not in the file");
        }
    }
}

std::string StackFileParser::imagePath(const std::string& file) const
{
    if (FileInfo::isAbsolutePath(file)) {
        return file;
    }
    std::string folder = imagesFolder_;
    if (!folder.empty() && folder.back() != '/') {
        folder += '/';
    }
    if (FileInfo::isAbsolutePath(folder)) {
        return folder + file;
    }
    const std::string path = FileInfo::dirName(filename_) + folder + file;
    // Names that will be written as they are must not hang on the current folder.
    return stack_.getAbsoluteImagesPathPolicy() ? std::filesystem::absolute(path).string() : path;
}

/// The whole name of a tile, since tiles are written without a folder. One that is missing from a
/// folder with a semicolon, which no tile's name can hold, counts from the folder of the stack file.
std::string StackFileParser::tilePath(const std::string& file) const
{
    const std::string path = std::filesystem::absolute(imagePath(file)).string();
    if (path.find(';') == std::string::npos || FileInfo::fileExists(path)) {
        return path;
    }
    return std::filesystem::absolute(FileInfo::dirName(filename_) + file).string();
}

std::string StackFileParser::context() const
{
    if (slice_) {
        return "slice " + inQuotes(slice_->slice->getName()) + ": ";
    }
    if (item_) {
        return "item of model " + inQuotes(item_->getModel()->getName()) + " on slice " +
               inQuotes(item_->getSlice()->getName()) + ": ";
    }
    return block_ == Block::Model && !lost_ ? "model " + inQuotes(model_->getName()) + ": " : "";
}

void StackFileParser::tell(int line, const std::string& message)
{
    reader_.tell(filename_ + ":" + std::to_string(line) + ": " + context() + message);
}

void StackFileParser::fail(int line, const std::string& message)
{
    reader_.fail(filename_ + ":" + std::to_string(line) + ": " + context() + message);
}
