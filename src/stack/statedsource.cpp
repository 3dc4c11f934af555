#include "stack/statedsource.h"

StatedMosaic::StatedMosaic(const ImageSourceFileMosaic& source,
                           int size1,
                           int size2,
                           const Names& missing)
    : StatedSource(source, size1, size2)
    , missing_(missing)
{}

ImageSource* StatedMosaic::clone() const
{
    return new StatedMosaic(*this);
}

std::string StatedMosaic::missingName(int row, int col) const
{
    const auto found = missing_.find({row, col});
    return found == missing_.end() ? std::string() : found->second;
}
