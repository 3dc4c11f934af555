#pragma once

#include "stack/statedsource.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

class StackSlice;

/// A slice while its statements are read. Its image source is made when all are known, since the
/// size that the file tells stands behind the name.
struct StackFileSlice
{
    enum class Kind { File, Mosaic, Plane };

    StackFileSlice();
    StackFileSlice(StackFileSlice&& other) noexcept;
    ~StackFileSlice();

    /// Sets the source of `slice`. Gives a message for each image that can't be read, or that has
    /// another size than the stack file tells.
    std::vector<std::string> makeSource();

    std::unique_ptr<StackSlice> slice;
    int line = 0; ///< where the slice begins
    Kind kind = Kind::File;
    std::string file;          ///< path of the image file, but for a mosaic
    int plane = 0;             ///< of a file with several
    int rows = 0;              ///< of a mosaic, as are the columns
    int columns = 0;           ///<
    StatedMosaic::Names tiles; ///< paths by row and column, counted from 0
    int size1 = 0;             ///< rows and columns of the image as told, 0 if not
    int size2 = 0;             ///<
    std::optional<float> aspectRatio;
    std::optional<float> pixelWidth;

private:
    template <class Source>
    void makeFileSource(Source& source,
                        void (Source::*setName)(const std::string&),
                        std::vector<std::string>& messages);
    void makeMosaic(std::vector<std::string>& messages);
    void checkSize(std::vector<std::string>& messages) const;
};
