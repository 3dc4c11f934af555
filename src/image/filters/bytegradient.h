#pragma once

#include "image/pixels/byteplane.h"

#include <vector>

/// Norm of the gradient of a byte image, truncated, values above 255 as 255: the result of
/// `GaussianGradient0<float>` to the last digit, since every sum runs in its order.
///
/// Bytes come in and bytes go out; between them a ring of as many filtered rows as the kernel is
/// long stays in the cache, a strip of columns at a time.
class ByteGradient
{
public:
    /// Sigma in pixels, of the same range as there.
    explicit ByteGradient(float sigma);

    BytePlane apply(const BytePlane& image) const;

private:
    // In the order in which a convolution meets them.
    std::vector<float> smoothing_;
    std::vector<float> derivative_;
};
