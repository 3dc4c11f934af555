// Part of `Stack`: what it does with the pixels of its slices.

#include "image/files/imagereader.h"
#include "image/pixels/image0.h"
#include "image/sources/imagesource.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stack.h"
#include "stack/stackslice.h"
#include "stack/stacktovolume.h"
#include "system/exception.h"

namespace {

ImageColorContent contentOf(const Slice& slice)
{
    Image0 image;
    ImageReader reader;
    reader.read(image, slice.getImageSource());
    return image.colorContent();
}

/// What an item has outside the image is no part of a mask.
void writePixel(VoxelMatrix<int>& mask, int x, int y, int plane, int value)
{
    if (mask.contains(x, y, plane)) {
        mask(x, y, plane) = value;
    }
}

} // namespace

bool Stack::isRegular() const
{
    if (slices.empty()) {
        return false;
    }
    const StackSlice& first = getFirstSlice();
    for (int i = 1; i < getNumSlices(); ++i) {
        const StackSlice& slice = getSlice(i);
        if (slice.height() != first.height() || slice.width() != first.width() ||
            !slice.getRegistration().isNull()) {
            return false;
        }
        if (i > 1 && slice.getRelativePosition() != getSlice(1).getRelativePosition()) {
            return false;
        }
    }
    return true;
}

ImageColorContent Stack::colorContent() const
{
    if (slices.empty()) {
        return ImageColorContent::Unknown;
    }
    const ImageColorContent content = contentOf(getFirstSlice());
    for (int i = 1; i < getNumSlices(); ++i) {
        if (contentOf(getSlice(i)) != content) {
            return ImageColorContent::Mixed;
        }
    }
    return content;
}

VoxelCalibration Stack::voxelCalibration() const
{
    VoxelCalibration calibration;
    calibration.setLengthUnit(defaultPixelCalibration.getLengthUnit());
    calibration.setVoxelWidth(defaultPixelCalibration.getPixelWidth());
    calibration.setVoxelHeight(defaultPixelCalibration.getPixelHeight());
    calibration.setVoxelDepth(defaultSliceSpacing);
    return calibration;
}

template <class T>
VoxelMatrix<T> Stack::toVoxelMatrix(ImageColorContent content) const
{
    const StackSlice* first = slices.empty() ? nullptr : &getFirstSlice();
    const int height = first != nullptr ? first->height() : 0;
    const int width = first != nullptr ? first->width() : 0;
    // A volume has planes of one size; a smaller image would leave a part of its plane without values.
    for (const StackSlice* slice : slices) {
        if (slice->height() != height || slice->width() != width) {
            raise<SizeError>("VoxelMatrix<T> Stack::toVoxelMatrix(const ImageColorContent) const",
                             "The slices differ in size");
        }
    }
    VoxelMatrix<T> volume(height, width, getNumSlices());
    volume.setZeros();
    for (int i = 0; i < getNumSlices(); ++i) {
        loadPlane(getSlice(i), volume[i], static_cast<int>(content));
    }
    volume.setVoxelCalibration(voxelCalibration());
    return volume;
}

void Stack::writeModelItemMask(VoxelMatrix<int>& mask, const ModelItem& item, int value) const
{
    const int plane = item.getSlice() != nullptr ? findSlice(*item.getSlice()) : -1;
    if (plane < 0) { // it has no plane in this volume
        raise<ProgramError>(
            "void Stack::writeModelItemMask(VoxelMatrix<int>&,const ModelItem&,const int) const",
            "The slice of the item does not stand in the stack");
    }
    const Vertices<int> pixels = item.pixels();
    for (int i = 0; i < pixels.getSize(); ++i) {
        writePixel(mask, pixels[i][0], pixels[i][1], plane, value);
    }
}

void Stack::writeModelMask(VoxelMatrix<int>& mask, const Model& model, int value) const
{
    for (int i = 0; i < model.getNumItems(); ++i) {
        writeModelItemMask(mask, model.getItem(i), value);
    }
}

void Stack::writeModelMasks(VoxelMatrix<int>& mask) const
{
    if (slices.empty()) {
        mask.setSize(0, 0, 0);
    } else {
        mask.setSize(getFirstSlice().width(), getFirstSlice().height(), getNumSlices());
    }
    mask.setZeros();
    mask.setVoxelCalibration(voxelCalibration());
    for (int i = 0; i < getNumModels(); ++i) {
        writeModelMask(mask, getModel(i), i + 1);
    }
}

template VoxelMatrix<int> Stack::toVoxelMatrix<int>(ImageColorContent) const;
template VoxelMatrix<float> Stack::toVoxelMatrix<float>(ImageColorContent) const;
template VoxelMatrix<double> Stack::toVoxelMatrix<double>(ImageColorContent) const;
template VoxelMatrix<long double> Stack::toVoxelMatrix<long double>(ImageColorContent) const;
