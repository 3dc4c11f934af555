#pragma once

#include "blade/landmarks/junctionplacing.h"

/// How the pixels of a slice stand to those of its file, in which a junction table counts: a slice shows
/// square pixels, and is narrower or lower than a file whose pixels are not.
class PixelScale
{
public:
    explicit PixelScale(const StackSlice& slice);

    /// Whether the slice has the pixels of its file.
    bool isOne() const { return width_ == columns_ && height_ == rows_; }

    JunctionPoints toSlice(const JunctionPoints& points) const;

    /// Places that `toSlice` brings back.
    JunctionPoints toFile(const JunctionPoints& points) const;

private:
    int columns_ = 1; ///< of the file
    int rows_ = 1;
    int width_ = 1; ///< of the slice
    int height_ = 1;
};
