#include "image/values/imageerrors.h"

ColormapError::ColormapError()
    : Exception("Colormap error")
{}

DepthError::DepthError()
    : Exception("Image depth error")
{}
