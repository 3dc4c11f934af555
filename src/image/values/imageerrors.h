#pragma once

#include "system/exception.h"

/// Colormaps that do not fit each other.
class ColormapError : public Exception
{
public:
    ColormapError();
};

/// A number of bits a pixel that the operation can't take.
class DepthError : public Exception
{
public:
    DepthError();
};
