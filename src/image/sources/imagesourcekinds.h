#pragma once

#include "image/sources/imagesourcefile.h"
#include "image/sources/imagesourcefilemosaic.h"
#include "image/sources/imagesourcelsmstackplane.h"
#include "image/sources/imagesourcetiffstackplane.h"
#include "image/sources/imagesourcevoxelmatrixfileplane.h"
#include "image/sources/imagesourcevoxelmatrixplane.h"
#include "system/exception.h"

#include <string>
#include <vector>

/// The one place that knows all kinds of image sources.

/// Several works in one, of which the kind of the source chooses: `Kinds{[](const ImageSourceFile&) {...},
/// [](const ImageSource&) {...}}`.
template <class... Works>
struct Kinds : Works...
{
    using Works::operator()...;
};

template <class... Works>
Kinds(Works...) -> Kinds<Works...>;

/// Calls `work` with the source as the kind that it is. Raises `UsageError` as the operation `where` for
/// a kind that is not known.
template <class Work>
void withKind(const ImageSource& source, const char* where, Work&& work)
{
    if (const auto* file = dynamic_cast<const ImageSourceFile*>(&source)) {
        work(*file);
    } else if (const auto* mosaic = dynamic_cast<const ImageSourceFileMosaic*>(&source)) {
        work(*mosaic);
    } else if (const auto* plane = dynamic_cast<const ImageSourceVoxelMatrixPlane*>(&source)) {
        work(*plane);
    } else if (const auto* filePlane =
                   dynamic_cast<const ImageSourceVoxelMatrixFilePlane*>(&source)) {
        work(*filePlane);
    } else if (const auto* page = dynamic_cast<const ImageSourceTiffStackPlane*>(&source)) {
        work(*page);
    } else if (const auto* lsm = dynamic_cast<const ImageSourceLSMStackPlane*>(&source)) {
        work(*lsm);
    } else {
        raise<UsageError>(where, "Unknown kind of image source");
    }
}

/// The files that the source reads, in the order of a mosaic's cells; none for a plane in memory.
std::vector<std::string> filesOf(const ImageSource& source);
