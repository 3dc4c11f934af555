#pragma once

#include "image/sources/imagesourcefilemosaic.h"

#include <map>
#include <string>
#include <utility>

/// A source whose image can't be read at present. It keeps the name of the file and has the size
/// that the stack file states, so that the slice stands where it stood and is written as it was.
template <class Source>
class StatedSource : public Source
{
public:
    StatedSource(const Source& source, int size1, int size2)
        : Source(source)
        , size1_(size1)
        , size2_(size2)
    {}

    ImageSource* clone() const override { return new StatedSource(*this); }

    int getSize1() const override { return size1_; }

    int getSize2() const override { return size2_; }

private:
    int size1_;
    int size2_;
};

/// A mosaic that keeps the names of the tiles that can't be read; its cells are empty there.
class StatedMosaic : public StatedSource<ImageSourceFileMosaic>
{
public:
    using Names = std::map<std::pair<int, int>, std::string>;

    /// `missing` tells the names by row and column, counted from 0.
    StatedMosaic(const ImageSourceFileMosaic& source, int size1, int size2, const Names& missing);

    ImageSource* clone() const override;

    /// Empty for a cell that misses no file.
    std::string missingName(int row, int col) const;

private:
    Names missing_;
};
