#include "stack/stackfileslice.h"

#include "image/sources/imagesourcefile.h"
#include "image/sources/imagesourcetiffstackplane.h"
#include "image/sources/imagesourcevoxelmatrixfileplane.h"
#include "stack/stackslice.h"
#include "system/exception.h"
#include "system/fileinfo.h"

namespace {

std::string unreadable(const std::string& file, const Exception& error)
{
    return "the image file \"" + file + "\" can't be read: " +
           (FileInfo::fileExists(file) ? error.getWhat() : "there is no such file");
}

std::string sizeText(int rows, int columns)
{
    return std::to_string(rows) + " x " + std::to_string(columns);
}

} // namespace

StackFileSlice::StackFileSlice() = default;

StackFileSlice::StackFileSlice(StackFileSlice&& other) noexcept = default;

StackFileSlice::~StackFileSlice() = default;

template <class Source>
void StackFileSlice::makeFileSource(Source& source,
                                    void (Source::*setName)(const std::string&),
                                    std::vector<std::string>& messages)
{
    try {
        (source.*setName)(file);
        slice->setImageSource(source);
    } catch (const Exception& error) {
        messages.push_back(unreadable(file, error));
        slice->setImageSource(StatedSource<Source>(source, size1, size2));
    }
}

void StackFileSlice::makeMosaic(std::vector<std::string>& messages)
{
    ImageSourceFileMosaic mosaic(rows, columns);
    StatedMosaic::Names missing;
    for (const auto& [cell, name] : tiles) {
        try {
            mosaic.setFilename(cell.first, cell.second, name);
        } catch (const Exception& error) {
            messages.push_back(unreadable(name, error));
            missing[cell] = name;
        }
    }
    if (missing.empty()) {
        slice->setImageSource(mosaic);
    } else {
        slice->setImageSource(StatedMosaic(mosaic, size1, size2, missing));
    }
}

void StackFileSlice::checkSize(std::vector<std::string>& messages) const
{
    const ImageSource& source = slice->getImageSource();
    const bool other = source.getSize1() != size1 || source.getSize2() != size2;
    if (size1 > 0 && size2 > 0 && other) {
        messages.push_back("the image has " + sizeText(source.getSize1(), source.getSize2()) +
                           " pixels, not " + sizeText(size1, size2) + " as the stack file tells");
    }
}

std::vector<std::string> StackFileSlice::makeSource()
{
    std::vector<std::string> messages;
    if (kind == Kind::Mosaic) {
        makeMosaic(messages);
    } else if (kind == Kind::File) {
        ImageSourceFile source;
        makeFileSource(source, &ImageSourceFile::setFilename, messages);
    } else if (FileInfo::suffixName(file) == "vm") {
        ImageSourceVoxelMatrixFilePlane source;
        source.setPlane(plane);
        makeFileSource(source, &ImageSourceVoxelMatrixFilePlane::setVoxelMatrixFilename, messages);
    } else {
        ImageSourceTiffStackPlane source;
        source.setPlane(plane);
        makeFileSource(source, &ImageSourceTiffStackPlane::setTiffStackFilename, messages);
    }
    checkSize(messages);
    return messages;
}
