#include "blade/contour/extractcontour.h"

#include "blade/contour/lpetransform.h"
#include "image/filters/biterosion.h"
#include "image/filters/bytegradient.h"
#include "image/filters/gaussiangradient0.h"
#include "image/filters/minfilter0.h"
#include "image/pixels/bitplane.h"
#include "image/pixels/byteplane.h"
#include "image/pixels/voxelmatrix.h"
#include "image/regions/bitoutline.h"
#include "image/regions/componentlabelling0.h"
#include "image/regions/otsuthresholding0.h"
#include "image/regions/runlabelling.h"
#include "interface/lmxevent.h"
#include "interface/lmxeventserver.h"
#include "interface/lmxstack.h"
#include "shape/curves/curveresampling.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"
#include "stack/stacktovolume.h"

#include <utility>

namespace {

constexpr int white = 255;
// The frame that marks the background lies one pixel inside the image's edge.
constexpr int frameBegin = 1;
constexpr int frameEnd = 5;
constexpr int smallestImage = 10;
constexpr int coreErosion = 10;
constexpr int shortOutline = 150;

void drawFrame(PixelMatrix<int>& image)
{
    const int rows = image.getSize1();
    const int columns = image.getSize2();
    for (int k = frameBegin; k < frameEnd; ++k) {
        image[k].fill(white);
        image[rows - 1 - k].fill(white);
    }
    for (int i = 0; i < rows; ++i) {
        Vector<int>& line = image[i];
        for (int k = frameBegin; k < frameEnd; ++k) {
            line[k] = white;
            line[columns - 1 - k] = white;
        }
    }
}

void drawFrame(BitPlane& image)
{
    const int rows = image.rows();
    const int columns = image.columns();
    for (int k = frameBegin; k < frameEnd; ++k) {
        image.set(k, 0, columns);
        image.set(rows - 1 - k, 0, columns);
    }
    for (int i = 0; i < rows; ++i) {
        image.set(i, frameBegin, frameEnd);
        image.set(i, columns - frameEnd, columns - frameBegin);
    }
}

/// A tenth below Otsu's value, a little generous to the leaf.
int generous(int threshold)
{
    return static_cast<int>(static_cast<float>(threshold) - static_cast<float>(threshold) / 10.0f);
}

/// The largest bright region, eroded, and the frame. Without a bright pixel left all are markers.
BitPlane markersOf(const BytePlane& image, int threshold)
{
    BitPlane mask = BitPlane::notBelow(image, generous(threshold));
    erodeSquare(mask, coreErosion);
    const RunLabelling labelling(mask, RunLabelling::Corners::Apart);
    const int largest = labelling.largestRegion();
    BitPlane markers(image.rows(), image.columns());
    if (largest < 0) {
        markers.fill();
    }
    for (const RunLabelling::Run& run : labelling.runs()) {
        if (run.region == largest) {
            markers.set(run.row, run.begin, run.end);
        }
    }
    drawFrame(markers);
    return markers;
}

/// Replaces a closed curve by its resampling to `size` vertices, each truncated; vertices that
/// coincide before the truncation count once.
void resampleClosed(Curve<int>& curve, int size)
{
    if (size < 1 || curve.getSize() < 1) {
        curve.setSize(0, false);
        return;
    }
    Curve<float> outline(2, curve.getSize(), 0, 0, false);
    for (int i = 0; i < curve.getSize(); ++i) {
        outline[i][0] = static_cast<float>(curve[i][0]);
        outline[i][1] = static_cast<float>(curve[i][1]);
    }
    Curve<float> samples;
    CurveResampling<float>().apply(outline, samples, size);
    Curve<int> result(2, size, 0, 0, false);
    int kept = 0;
    for (int i = 0; i < size; ++i) {
        if (i > 0 && samples[i] == samples[i - 1]) {
            continue;
        }
        result[kept][0] = static_cast<int>(samples[i][0]);
        result[kept][1] = static_cast<int>(samples[i][1]);
        ++kept;
    }
    result.setSize(kept, false);
    curve = result;
}

} // namespace

void ExtractContour::createModels()
{
    createModelContour();
    createModelPetiole();
}

void ExtractContour::run()
{
    resetProgress();
    const int slices = stack->getNumSlices();
    const bool oneChannel = channel == ImageColorContent::Red ||
                            channel == ImageColorContent::Green ||
                            channel == ImageColorContent::Blue;
    VoxelMatrix<float> volume;
    stackToVolume<float>(*stack, volume, oneChannel ? static_cast<int>(channel) : 0);
    resetProgress();
    createModels();
    for (int i = 0; i < slices; ++i) {
        showProgress(i, slices);
        process(volume[i], i);
    }
}

std::string ExtractContour::process(int)
{
    return "";
}

void ExtractContour::process(const PixelMatrix<float>& image, int slice)
{
    store(outlineOf(image), slice);
}

void ExtractContour::store(const Curve<int>& outline, int slice)
{
    if (outline.getSize() == 0) {
        return;
    }
    contourItem = new ModelItem;
    contourItem->setModel(*contourModel);
    contourItem->setSlice(stack->getSlice(slice));
    contourItem->setVertices(outline);
    contourItem->setClockwise(false);
    contourItem->attach();
    LMXModelItemCreateEvent event(*contourItem);
    LMXEventServer::notifyEvent(event);
}

Curve<int> ExtractContour::outlineOf(const PixelMatrix<float>& image) const
{
    const Curve<int> none(2, 0, 0, 0, false);
    // Too small for the frame of the markers, and for a leaf.
    if (image.getSize1() < smallestImage || image.getSize2() < smallestImage) {
        return none;
    }
    BytePlane bytes;
    Curve<int> outline =
        bytes.convert(image) ? traceBytes(bytes) : traceInts(convertPixelMatrixToInt(image));
    if (outline.getSize() <= image.getSize1() / 5) {
        return none;
    }
    curveResampling(outline);
    curveResamplingInverse(outline);
    return outline;
}

Curve<int> ExtractContour::traceInts(PixelMatrix<int> work) const
{
    if (background == LightBackground) {
        invertPixelMatrix(work);
    }
    if (!binaryImage) {
        LPETransform watershed;
        {
            PixelMatrix<int> marker = work;
            makeMarkerLPE(marker);
            watershed.setMarker(marker);
        }
        gradient(work);
        watershed.apply(work);
    }
    return extractContour(work);
}

Curve<int> ExtractContour::traceBytes(BytePlane& work) const
{
    if (background == LightBackground) {
        work.invert();
    }
    const int threshold = OtsuThresholding0<int>().computeThreshold(work.histogram());
    if (binaryImage) {
        return ::outlineOf(BitPlane::notBelow(work, threshold));
    }
    const BitPlane markers = markersOf(work, threshold);
    work = ByteGradient(gradientSigma()).apply(work);
    BitPlane leaf = LPETransform().applyBeyondFirst(markers, work);
    // Otsu's threshold parts two labels. Of one alone it makes all bright.
    if (leaf.count() == 0) {
        leaf.fill();
    }
    return ::outlineOf(leaf);
}

PixelMatrix<int> ExtractContour::convertPixelMatrixToInt(const PixelMatrix<float>& image) const
{
    PixelMatrix<int> result(image.getSize1(), image.getSize2());
    for (int i = 0; i < image.getSize1(); ++i) {
        const Vector<float>& from = image[i];
        Vector<int>& to = result[i];
        for (int j = 0; j < image.getSize2(); ++j) {
            to[j] = static_cast<int>(from[j]);
        }
    }
    return result;
}

void ExtractContour::invertPixelMatrix(PixelMatrix<int>& image) const
{
    for (int i = 0; i < image.getSize1(); ++i) {
        Vector<int>& line = image[i];
        for (int j = 0; j < image.getSize2(); ++j) {
            line[j] = 255 - line[j];
        }
    }
}

PixelMatrix<int> ExtractContour::threshoding(PixelMatrix<int>& image) const
{
    Thresholding0<int> thresholding;
    thresholding.setThreshold(generous(OtsuThresholding0<int>().computeThreshold(image)));
    thresholding.setForeground(0);
    thresholding.setBackground(white);
    thresholding.setForegroundIsAbove(false);
    PixelMatrix<int> mask = image;
    thresholding.apply(mask);
    MinFilter0<int> erosion;
    erosion.setRadius(coreErosion);
    erosion.apply(mask);
    return mask;
}

void ExtractContour::makeMarkerLPE(PixelMatrix<int>& image) const
{
    PixelMatrix<int> mask = threshoding(image);
    ComponentLabelling0<int> labelling;
    labelling.apply(mask);
    const unsigned int bins = static_cast<unsigned int>(labelling.getNumLabels()) + 1;
    const int largest = mask.histogram(0.0f, 1.0f, bins, mask).maxPos();
    for (int i = 0; i < image.getSize1(); ++i) {
        const Vector<int>& labels = mask[i];
        Vector<int>& line = image[i];
        for (int j = 0; j < image.getSize2(); ++j) {
            line[j] = labels[j] == largest ? white : 0;
        }
    }
    drawFrame(image);
}

void ExtractContour::gradient(PixelMatrix<int>& image) const
{
    PixelMatrix<float> norm(image.getSize1(), image.getSize2());
    for (int i = 0; i < image.getSize1(); ++i) {
        const Vector<int>& from = image[i];
        Vector<float>& to = norm[i];
        for (int j = 0; j < image.getSize2(); ++j) {
            to[j] = static_cast<float>(from[j]);
        }
    }
    GaussianGradient0<float> filter(gradientSigma());
    filter.apply(norm);
    image = convertPixelMatrixToInt(norm);
}

Curve<int> ExtractContour::extractContour(PixelMatrix<int>& image) const
{
    OtsuThresholding0<int> thresholding;
    thresholding.setForeground(white);
    thresholding.setBackground(0);
    thresholding.apply(image);
    thresholding.contours(image);

    int startRow = 0;
    int startColumn = 0;
    for (int i = 0; i < image.getSize1(); ++i) {
        const int column = image[i].find(white);
        if (column >= 0) {
            startRow = i;
            startColumn = column;
        }
    }
    Curve<int> outline(2, 0, 0, 1024, false);
    thresholding.extractCurve(outline, startRow, startColumn, image, 0);
    for (int k = 0; k < outline.getSize(); ++k) {
        std::swap(outline[k][0], outline[k][1]);
    }
    return outline;
}

void ExtractContour::curveResampling(Curve<int>& curve) const
{
    const int size = curve.getSize();
    if (size > shortOutline) {
        resampleClosed(curve, static_cast<int>(static_cast<float>(size) * fidelity));
    }
}

void ExtractContour::curveResamplingInverse(Curve<int>& curve) const
{
    const float size = static_cast<float>(curve.getSize()) * fidelity;
    resampleClosed(curve, static_cast<int>(static_cast<double>(size) * 0.9));
}
