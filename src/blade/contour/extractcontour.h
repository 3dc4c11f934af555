#pragma once

#include "blade/contour/backgroundvalue.h"
#include "blade/process/modelsmanager.h"
#include "image/pixels/pixelmatrix.h"
#include "image/values/imagecolorcontent.h"

class BytePlane;

/// First stage: turns the image of each slice into the outline of its leaf, a closed polygon in the
/// model "Contour".
///
/// A leaf brighter than its background (a light background is inverted first) is told from it by a
/// marker-controlled watershed on the gradient. One marker is the largest region above 90 % of
/// Otsu's threshold, eroded; the other is a frame just inside the image's edge. Of a binary image
/// the bright part is taken without a watershed.
///
/// Images have rows as their first index; vertices are (column, row).
class ExtractContour : public ModelsManager
{
public:
    ExtractContour() = default;

    /// 10 to 100. Below 100 the gradient is wide (sigma 3.5 pixels) and the outline is thinned to
    /// about 0.9 (value / 100)^2 of its vertices, which smooths it.
    void setFidelity(int value) { fidelity = float(value) / 100.0f; }

    /// Grey, red, green or blue.
    void setChannel(const ImageColorContent& content) { channel = content; }

    void setBackground(const BackgroundValue& value) { background = value; }

    /// The images have two values and need no watershed.
    void setBinaryImage(bool binary) { binaryImage = binary; }

    /// Deletes contours and junctions of an earlier run and creates both models anew.
    void createModels() override;

    /// Loads the images of all slices and works on each. A slice whose outline is too short for a
    /// leaf gets no contour.
    void run() override;

    /// Does nothing: the work needs the image.
    std::string process(int slice) override;

    /// Finds the leaf in an image and stores its outline on the slice. An image of fewer than 10
    /// rows or columns has no contour, nor has one whose outline has at most a fifth of its rows.
    void process(const PixelMatrix<float>& image, int slice);

    /// The outline that `process` stores; empty where it stores none. Needs no stack, and may be
    /// called from several threads.
    Curve<int> outlineOf(const PixelMatrix<float>& image) const;

    /// Stores an outline as the contour of a slice; nothing for an empty one.
    void store(const Curve<int>& outline, int slice);

    /// Each value truncated.
    PixelMatrix<int> convertPixelMatrixToInt(const PixelMatrix<float>& image) const;

    /// Each value v becomes 255 - v.
    void invertPixelMatrix(PixelMatrix<int>& image) const;

    /// The bright part of the image, eroded by a square of 21 pixels a side; 255 inside, 0 outside.
    PixelMatrix<int> threshoding(PixelMatrix<int>& image) const;

    /// Turns the image into its markers: 255 on the largest bright region and on the frame, 0
    /// elsewhere.
    void makeMarkerLPE(PixelMatrix<int>& image) const;

    /// Turns the image into the norm of its gradient, truncated.
    void gradient(PixelMatrix<int>& image) const;

    /// The outline of the bright part of an image of two values; the image holds that outline on
    /// return. A vertex stands where the outline turns.
    Curve<int> extractContour(PixelMatrix<int>& image) const;

    /// Resamples an outline of more than 150 vertices to `fidelity` of its vertices; a shorter one
    /// stays as it is.
    void curveResampling(Curve<int>& curve) const;

    /// Resamples an outline to 90 % of `fidelity` of its vertices.
    void curveResamplingInverse(Curve<int>& curve) const;

private:
    /// The pixels' outline by way of the operations above, for any values.
    Curve<int> traceInts(PixelMatrix<int> work) const;

    /// The same outline for values from 0 to 255, on bytes and bits: several times faster, in a
    /// fraction of the memory. Uses up the image.
    Curve<int> traceBytes(BytePlane& work) const;

    float gradientSigma() const { return fidelity < 1.0f ? 3.5f : 1.0f; }

    float fidelity = 1.0f;
    ImageColorContent channel = ImageColorContent::Red;
    BackgroundValue background = DarkBackground;
    bool binaryImage = false;
};
