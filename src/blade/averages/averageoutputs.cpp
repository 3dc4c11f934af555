// Part of `AveragingProcess`: what a run leaves: curve files, blank images, and a stack that shows
// the averages as slices of their own.

#include "blade/averages/averageseries.h"
#include "blade/averages/averagingprocess.h"
#include "blade/geometry/bladesymmetrization.h"
#include "blade/measures/leafanalysis.h"
#include "image/pixels/image2.h"
#include "image/sources/imagesourcefile.h"
#include "interface/lmxevent.h"
#include "interface/lmxeventserver.h"
#include "interface/lmxstack.h"
#include "shape/vertices/boundingbox.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"
#include "stack/stackwriter.h"
#include "system/exception.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <memory>
#include <set>

namespace fs = std::filesystem;

namespace {

// The blank image, and how much of it the larger extent of an average takes, in pixels.
constexpr int imageSize = 1000;
constexpr float shapeSize = 800.0f;
constexpr float imageMiddle = 500.0f;

/// A place of the resampling; the curve may be a vertex short.
int within(const Curve<float>& curve, int index)
{
    return std::min(index, curve.getSize() - 1);
}

Vertices<int> pixels(const Curve<float>& curve, const std::vector<int>& indexes)
{
    Vertices<int> result(2, static_cast<int>(indexes.size()), 0, 0);
    for (std::size_t k = 0; k < indexes.size(); ++k) {
        const Vector<float>& vertex = curve[within(curve, indexes[k])];
        result[static_cast<int>(k)][0] = static_cast<int>(vertex[0]);
        result[static_cast<int>(k)][1] = static_cast<int>(vertex[1]);
    }
    return result;
}

Vertices<int> allPixels(const Curve<float>& curve)
{
    std::vector<int> indexes;
    for (int i = 0; i < curve.getSize(); ++i) {
        indexes.push_back(i);
    }
    return pixels(curve, indexes);
}

/// Middle of the junctions to the origin, vertex `middle` onto the positive first axis.
void bringToFrame(Curve<float>& shape, int middle)
{
    shape.translate((shape[0] + shape[shape.getSize() - 1]) * -0.5f);
    Vector<float> axis = shape[within(shape, middle)];
    if (!(axis.norm() > 0.0f)) {
        return;
    }
    axis.normalize();
    SquareMatrix<float> rotation(3);
    rotation.setZeros();
    rotation[0][0] = rotation[1][1] = axis[0];
    rotation[0][1] = axis[1];
    rotation[1][0] = -axis[1];
    shape.multiply(rotation);
}

float pixelWidthFor(const Curve<float>& curve)
{
    const BoundingBox<float> box = curve.boundingBox();
    const float extent = std::max(box.width(0), box.width(1));
    if (!(extent > 0.0f)) {
        raise<ValueError>("void AveragingProcess::createTiff(...)", "The average has no extent");
    }
    return extent / shapeSize;
}

void addSlice(Stack& target,
              const std::string& name,
              const std::string& imageFile,
              float position,
              const PixelCalibration& calibration)
{
    auto slice = std::make_unique<StackSlice>();
    slice->setImageSource(ImageSourceFile(imageFile));
    slice->setName(name);
    slice->setPixelCalibration(calibration);
    slice->setRelativePosition(position);
    slice->setStack(target);
    target.addSlice(*slice);
    slice.release();
}

/// The landmarks of the teeth on an average.
struct Teeth
{
    std::vector<int> sinuses;
    std::vector<int> tips;
};

/// The teeth higher than `leastHeight`. Every second end of an interval is a tip, those beside it
/// are its sinuses; the apex is no tip of a tooth.
Teeth teethOf(const Curve<float>& curve,
              const Vector<int>& O,
              int apexPosition,
              float pixelWidth,
              float leastHeight)
{
    const Vector<int> ends = O.csum();
    const LeafAnalysis analysis;
    Teeth teeth;
    for (int k = 1; k + 1 <= ends.getSize() - 1; k += 2) {
        if (ends[k] == apexPosition) {
            continue;
        }
        const int s0 = within(curve, ends[k - 1]);
        const int s1 = within(curve, ends[k + 1]);
        if (analysis.computeHeightTooth(curve, s0, s1) * pixelWidth > leastHeight) {
            teeth.sinuses.insert(teeth.sinuses.end(), {s0, s1});
            teeth.tips.push_back(ends[k]);
        }
    }
    std::sort(teeth.sinuses.begin(), teeth.sinuses.end());
    teeth.sinuses.erase(std::unique(teeth.sinuses.begin(), teeth.sinuses.end()),
                        teeth.sinuses.end());
    return teeth;
}

/// The name is `start` and a label, which has a digit at each end.
bool isAverageOf(const std::string& start, const std::string& name)
{
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    return name.size() > start.size() && name.compare(0, start.size(), start) == 0 &&
           isDigit(name[start.size()]) && isDigit(name.back());
}

} // namespace

std::string AveragingProcess::prefix() const
{
    return stack->getName() + "-trajectory";
}

void AveragingProcess::prepareOutput(const char* where)
{
    if (stack->getName().find_first_of("/\"\r\n") != std::string::npos) {
        raise<ValueError>(where, "The stack's name '" + stack->getName() +
                                     "' can't stand in the names of files: it holds a slash, a "
                                     "double quote or a line break");
    }
    if (outPath.find_first_of("\"\r\n") != std::string::npos) {
        raise<ValueError>(where, "The output folder '" + outPath +
                                     "' can't stand in a stack file: it holds a double quote or a "
                                     "line break");
    }
    std::error_code error;
    // The new stack names its images by absolute paths.
    outPath = fs::absolute(outPath, error).lexically_normal().string();
    outPath += outPath.empty() || outPath.back() != '/' ? "/" : "";
    fs::create_directories(outPath, error);
    if (!fs::is_directory(outPath)) {
        raiseFile<FileWriteError>(where, "The output folder can't be made: " + error.message(),
                                  outPath);
    }
    if (access(outPath.c_str(), W_OK | X_OK) != 0) {
        raiseFile<FileWriteError>(
            where, std::string("The output folder can't be written: ") + std::strerror(errno),
            outPath);
    }
}

void AveragingProcess::trajectoriesSymmetrization(const Curves& in, Curves& out, int middle) const
{
    BladeSymmetrization symmetrizer;
    symmetrizer.setAlignment(alignment);
    out.clear();
    for (const Curve<float>& curve : in) {
        Curve<float> shape =
            symmetrization ? symmetrizer.computeSymetrizeContour(curve, false) : curve;
        shape.detach();
        if (shape.getSize() > 0) {
            bringToFrame(shape, middle);
        }
        out.push_back(shape);
    }
    out.resize(static_cast<std::size_t>(averagesNumber), Curve<float>(3, 0, 0, 0, true));
}

void AveragingProcess::trajectoriesSymmetrization(const std::vector<Curve<float>*>& in,
                                                  Curves& out,
                                                  int middle) const
{
    Curves curves;
    for (const Curve<float>* curve : in) {
        curves.push_back(*curve);
    }
    trajectoriesSymmetrization(curves, out, middle);
}

void AveragingProcess::fillTarget(Stack& target)
{
    PixelCalibration calibration;
    LengthUnit micrometre;
    micrometre.setScale(-6);
    calibration.setAspectRatio(1.0f);
    calibration.setPixelWidth(1.0f);
    calibration.setLengthUnit(micrometre);
    calibration.compute();
    target.setName(prefix());
    target.setAbsoluteImagesPathPolicy(true);
    target.setDefaultRelativePosition(stack->getDefaultRelativePosition());
    target.setDefaultPixelCalibration(calibration);
    target.setImagesPath(outPath);
    createModelContour(target);
    createModelPetiole(target);
    createModelApex(target);
    if (sinusFlag) {
        createModelPrimarySinus(target);
    }
    if (sinusFlag && peakFlag) {
        createModelPrimaryPeaks(target);
    }
}

/// Removes the averages of an earlier run of the same set that this one did not write again.
void AveragingProcess::removeFormer(const std::string& start,
                                    const std::set<std::string>& written) const
{
    std::vector<std::string> former;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(outPath, error)) {
        const std::string name = entry.path().stem().string();
        if (entry.path().extension() == ".cv" && isAverageOf(start, name) &&
            written.count(name) == 0 && fs::exists(outPath + name + "-sampled.cv", error) &&
            fs::exists(outPath + name + ".tif", error)) {
            former.push_back(name);
        }
    }
    for (const std::string& name : former) {
        for (const char* ending : {".cv", "-sampled.cv", ".tif"}) {
            fs::remove(outPath + name + ending, error);
        }
    }
}

void AveragingProcess::writeAverages(const AverageSeries& series,
                                     Curves& shapes,
                                     const Vector<int>& O)
{
    const int number = static_cast<int>(shapes.size());
    const auto isEmpty = [](const Curve<float>& shape) { return shape.getSize() == 0; };
    if (std::all_of(shapes.begin(), shapes.end(), isEmpty)) {
        raise<ValueError>("void AveragingProcess::writeAverages(...)",
                          "No average was computed: each bin has fewer than two leaves");
    }
    Stack target;
    fillTarget(target);
    PixelCalibration calibration = target.getDefaultPixelCalibration();
    AverageNames names(prefix() + series.infix);
    // The label of an empty bin may be that of no centre.
    const std::vector<std::string> numbers = numberLabels(number);
    std::string leftOut;
    std::set<std::string> written;
    int index = 0;
    for (int i = 0; i < number; ++i) {
        showProgress(i, number);
        Curve<float>& shape = shapes[static_cast<std::size_t>(i)];
        if (isEmpty(shape)) {
            leftOut += (leftOut.empty() ? "" : ", ") + numbers[static_cast<std::size_t>(i)];
            continue;
        }
        const std::string name = names.next(series.labels[static_cast<std::size_t>(i)]);
        written.insert(name);
        shape.save(outPath + name, true);
        createTiff(index++, name, series.positions[i], O, target, shape, calibration);
    }
    const std::string filename = outPath + prefix() + ".sdf";
    if (!StackWriter().write(target, filename)) {
        raiseFile<FileWriteError>("void AveragingProcess::writeAverages(...)",
                                  "Cannot write the stack of the averages", filename);
    }
    removeFormer(prefix() + series.infix, written);
    std::string warning = leavesWithoutAge();
    if (!leftOut.empty()) {
        warning += (warning.empty() ? "" : "\n") +
                   ("Bins with fewer than two leaves, left out: " + leftOut);
    }
    if (!warning.empty()) {
        tell(warning);
    }
    resetProgress();
    tell("Averaging is complete");
}

void AveragingProcess::createTiff(int index,
                                  const std::string& name,
                                  float position,
                                  const Vector<int>& O,
                                  Stack& target,
                                  Curve<float>& curve,
                                  PixelCalibration& calibration)
{
    const std::string imageFile = outPath + name + ".tif";
    Image2 image;
    image.create(ValueType::UnsignedChar, imageSize, imageSize, 1, 1, 1, 1);
    image.saveAsTiff(imageFile, true, true);

    const float pixelWidth = pixelWidthFor(curve);
    calibration.setPixelWidth(pixelWidth);
    calibration.compute();
    addSlice(target, name, imageFile, position, calibration);

    curve /= pixelWidth;
    curve.save(outPath + name + "-sampled.cv", true);
    Vector<float> offset(3);
    offset[0] = imageMiddle - curve[within(curve, resamplingPoints / 2)][0] * 0.5f;
    offset[1] = imageMiddle;
    offset[2] = 0.0f;
    curve.translate(offset);
    drawLandmarks(target, index, curve, O, pixelWidth);
}

void AveragingProcess::drawLandmarks(
    Stack& target, int index, const Curve<float>& curve, const Vector<int>& O, float pixelWidth)
{
    const int apexPosition = resamplingPoints / 2;
    const Vertices<int> apexPixel = pixels(curve, {apexPosition});
    contourItem = drawItem(target, index, *contourModel, allPixels(curve));
    petioleItem = drawItem(target, index, *petioleModel, pixels(curve, {resamplingPoints - 1, 0}));
    apexItem = drawItem(target, index, *apexModel, apexPixel);
    Teeth teeth;
    if (sinusFlag && peakFlag) {
        teeth = teethOf(curve, O, apexPosition, pixelWidth, minimaToothHeight);
    }
    if (sinusFlag) {
        primarySinusItem =
            drawItem(target, index, *primarySinusModel, pixels(curve, teeth.sinuses));
    }
    if (sinusFlag && peakFlag) {
        Vertices<int> tips = pixels(curve, teeth.tips);
        if (getVenationType() == PALMATE) {
            tips.append(apexPixel);
        }
        primaryPeakItem = drawItem(target, index, *primaryPeakModel, tips);
    }
}

ModelItem*
AveragingProcess::drawItem(Stack& target, int index, Model& model, const Vertices<int>& vertices)
{
    auto* item = new ModelItem;
    item->setModel(model);
    item->setSlice(target.getSlice(index));
    item->setVertices(vertices);
    item->setClockwise(false);
    item->attach();
    LMXModelItemCreateEvent event(*item);
    LMXEventServer::notifyEvent(event);
    return item;
}
