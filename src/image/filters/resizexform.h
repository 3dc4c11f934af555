#pragma once

#include "image/filters/imageprocessing.h"
#include "image/values/interpolationmode.h"
#include "system/progressproxy.h"

class Image0;

/// Brings an `Image0` to another size. The operation on an `Image2`, which it inherits, has no
/// implementation and raises `UsageError`.
class ResizeXForm : public ImageProcessing, public ProgressProxy
{
public:
    explicit ResizeXForm(InterpolationMode mode);
    ~ResizeXForm() override;

    /// Whether proportions are kept: the result then fits into the target size.
    void setAspectFriendly(bool friendly) { aspectFriendly = friendly; }

    bool isAspectFriendly() const { return aspectFriendly; }

    /// The target.
    void setSize(int newWidth, int newHeight);

    /// Replaces the size of an image by the one that it is brought to.
    void convertSize(int& columns, int& rows) const;

    using ImageProcessing::apply;

    /// `out` becomes the resized image, or a copy of one that has the size. Only the nearest pixel
    /// can be taken (`UsageError` for another mode). `UsageError` without a target, `SizeError` for
    /// an image without pixels.
    void apply(Image0& out, const Image0& in) const;

    /// The same in place; nothing happens to an image that has the size.
    void apply(Image0& image) const;

    /// Half the width and height, each pixel the mean of 2 x 2 pixels, rounded down. An image with
    /// a colormap other than the identity becomes one of 24 bits; 16 bits are not halved, and `out`
    /// then stays as it was.
    void halve(Image0& out, const Image0& in);

    /// Brings an image to the size that `convertSize` gives, also where it has it; errors as `apply`.
    void nearestResize(Image0& out, const Image0& in) const;

    /// The steps of `halve`: the grey values, or the red ones, of 8 bits a sample; and all samples of
    /// 24 or 32 bits a pixel. `DepthError` for other images.
    void halveGrayscaleImage(Image0& out, const Image0& in);
    void halveTrueColorImage(Image0& out, const Image0& in);

private:
    void requireTarget() const;

    InterpolationMode interpolationMode;
    bool aspectFriendly = false;
    int width = 0;
    int height = 0;
};
