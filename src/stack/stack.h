#pragma once

#include "image/pixels/voxelmatrix.h"
#include "image/values/imagecolorcontent.h"
#include "image/values/lengthunit.h"
#include "image/values/pixelcalibration.h"
#include "stack/modelproperties.h"
#include "stack/poseowner.h"

#include <string>
#include <vector>

class CalibrationCurve;
class Model;
class ModelItem;
class StackSlice;
class StandardImage;

/// The document: an ordered list of slices, the models drawn on them, views in space, and the
/// defaults that a slice inherits unless it says otherwise.
///
/// One slice holds the photograph of one leaf, so that a stack is a sample of leaves; it may as
/// well be a series of sections in space. The stack owns its slices, models, standard images and
/// poses, which have to come from `new`. Searches report a miss by -1; indices are not checked.
class Stack : public PoseOwner
{
public:
    Stack();
    virtual ~Stack();

    const std::string& getName() const { return name; }

    void setName(const std::string& newName) { name = newName; }

    const std::string& getAnnotation() const { return annotation; }

    void setAnnotation(const std::string& text) { annotation = text; }

    const std::string& getImagesPath() const { return imagesPath; }

    /// Adds a final directory separator where there is none; an empty path stays empty.
    void setImagesPath(const std::string& path);

    bool getAbsoluteImagesPathPolicy() const { return absoluteImagesPathPolicy; }

    /// Whether stack files hold image folders as absolute paths, not relative to the file.
    void setAbsoluteImagesPathPolicy(bool absolute) { absoluteImagesPathPolicy = absolute; }

    bool hasInvertedZAxis() const { return invertedZAxis; }

    void setInvertedZAxis(bool inverted) { invertedZAxis = inverted; }

    float getDefaultSliceThickness() const { return defaultSliceThickness; }

    void setDefaultSliceThickness(float thickness) { defaultSliceThickness = thickness; }

    /// Distance between two slices that say nothing else.
    float getDefaultSliceSpacing() const { return defaultSliceSpacing; }

    void setDefaultSliceSpacing(float spacing) { defaultSliceSpacing = spacing; }

    /// The same value as the default slice spacing.
    float getDefaultRelativePosition() const { return defaultSliceSpacing; }

    void setDefaultRelativePosition(float position) { defaultSliceSpacing = position; }

    const PixelCalibration& getDefaultPixelCalibration() const { return defaultPixelCalibration; }

    void setDefaultPixelCalibration(const PixelCalibration& calibration)
    {
        defaultPixelCalibration = calibration;
    }

    /// The unit of the default calibration: micrometres in a new stack.
    LengthUnit getLengthUnit() const { return defaultPixelCalibration.getLengthUnit(); }

    /// Sets the unit of the default calibration and of every slice; no size is converted.
    void setLengthUnit(const LengthUnit& unit);

    /// Name of the slice on which an item was created last.
    const std::string& getLastSegmentedSlice() const { return lastSegmentedSlice; }

    void setLastSegmentedSlice(const std::string& sliceName) { lastSegmentedSlice = sliceName; }

    const std::string& getLastRegisteredSlice() const { return lastRegisteredSlice; }

    void setLastRegisteredSlice(const std::string& sliceName) { lastRegisteredSlice = sliceName; }

    /// Counts the changes of the lists of slices and models: equal counts mean that nobody changed
    /// either.
    unsigned int revision() const { return revision_; }

    int getNumSlices() const { return static_cast<int>(slices.size()); }

    /// Index of the first slice of this name, or -1.
    int findSlice(const std::string& sliceName) const;

    /// Index of this very slice, or -1.
    int findSlice(const StackSlice& slice) const;

    StackSlice& getSlice(int i) { return *slices[static_cast<std::size_t>(i)]; }

    const StackSlice& getSlice(int i) const { return *slices[static_cast<std::size_t>(i)]; }

    StackSlice& getFirstSlice() { return *slices.front(); }

    const StackSlice& getFirstSlice() const { return *slices.front(); }

    StackSlice& getLastSlice() { return *slices.back(); }

    const StackSlice& getLastSlice() const { return *slices.back(); }

    /// The slice behind `slice`; the last slice gives itself. A slice that is not in the stack
    /// raises `ProgramError`, here and in `getPreviousSlice`.
    StackSlice& getNextSlice(const StackSlice& slice);
    const StackSlice& getNextSlice(const StackSlice& slice) const;

    /// The slice before `slice`; the first slice gives itself.
    StackSlice& getPreviousSlice(const StackSlice& slice);
    const StackSlice& getPreviousSlice(const StackSlice& slice) const;

    /// Appends a slice that is not in the stack yet; the caller tells the slice its stack by `StackSlice::setStack`.
    void addSlice(StackSlice& slice);

    /// Inserts in front of slice `index`; the number of slices appends.
    void addSlice(StackSlice& slice, int index);

    /// Drops slice `i`, which belongs to the caller then. A slice behind it that has a relative
    /// position keeps its place; behind a removed first slice nothing is corrected.
    void removeSlice(int i);

    /// The same, and destroys the slice with its items.
    void deleteSlice(int i);

    int getNumModels() const { return static_cast<int>(models.size()); }

    /// Index of the first model of this name, or -1.
    int findModel(const std::string& modelName) const;

    /// Index of this very model, or -1.
    int findModel(const Model& model) const;

    Model& getModel(int i) { return *models[static_cast<std::size_t>(i)]; }

    const Model& getModel(int i) const { return *models[static_cast<std::size_t>(i)]; }

    /// Appends the model and attaches each of its items to its slice.
    void addModel(Model& model);

    /// The same in front of model `index`; the number of models appends.
    void addModel(Model& model, int index);

    /// Detaches each item of the model from its slice and drops the model, which belongs to the
    /// caller then. Another stack's model is left alone.
    void removeModel(Model& model);

    /// Destroys model `i` with its items on all slices.
    void deleteModel(int i);
    void deleteAllModels();

    /// There is a model of this geometry.
    bool hasGeometryModels(MPrimitive geometry) const;

    /// There is a model of this geometry that has items.
    bool hasGeometryModelItems(MPrimitive geometry) const;

    /// The models of this geometry, in stack order.
    std::vector<Model*> listGeometryModels(MPrimitive geometry) const;

    int getNumStandardImages() const { return static_cast<int>(standardImages.size()); }

    StandardImage& getStandardImage(int i) { return *standardImages[static_cast<std::size_t>(i)]; }

    const StandardImage& getStandardImage(int i) const
    {
        return *standardImages[static_cast<std::size_t>(i)];
    }

    /// Appends an image from `new` and tells it its stack.
    void addStandardImage(StandardImage* image);

    /// Number of calibration curves that the standard images have.
    int getNumCalibration() const;

    /// Curve `i` in the order of their images; null if there are fewer.
    CalibrationCurve* getCalibration(int i) const;

    /// The first curve of this name; null if there is none.
    CalibrationCurve* getCalibration(const std::string& curveName) const;

    /// Destroys slices, models and standard images and forgets the two last slices; name,
    /// defaults and poses stay.
    void clear();

    /// Writes a summary to the standard output, for debugging.
    void print(const std::string& indent = "") const;

    /// All slices have the size of the first, no registration, and one spacing. False for an
    /// empty stack, true for one slice.
    bool isRegular() const;

    /// The content that the images of all slices have in common, else `mixed`; `unknown` for an
    /// empty stack. Reads the images up to the first difference.
    ImageColorContent colorContent() const;

    /// The images as one volume of (height, width, slices), with the default calibration and
    /// spacing. Grey content makes each image grey, red, green or blue takes that channel, any
    /// other gives zeros. An empty stack gives an empty volume; slices of different size raise
    /// `SizeError`.
    template <class T>
    VoxelMatrix<T> toVoxelMatrix(ImageColorContent content) const;

    /// Writes `value` at each vertex of the item, or at each pixel of a region, into the plane of
    /// its slice. A mask is indexed (x, y, slice), column first; vertices outside are skipped. An
    /// item whose slice is not in the stack raises `ProgramError`.
    void writeModelItemMask(VoxelMatrix<int>& mask, const ModelItem& item, int value) const;

    void writeModelMask(VoxelMatrix<int>& mask, const Model& model, int value) const;

    /// Sizes the mask to (width, height, slices) of the first slice, zeroes it, calibrates it and
    /// writes model i with the value i + 1, later models over earlier ones.
    void writeModelMasks(VoxelMatrix<int>& mask) const;

private:
    std::vector<CalibrationCurve*> calibrationCurves() const;
    VoxelCalibration voxelCalibration() const;
    void keepPositionBehind(int i);

    unsigned int revision_ = 0;
    std::vector<StackSlice*> slices;
    float defaultSliceSpacing = 0.0f;
    PixelCalibration defaultPixelCalibration;
    std::string name;
    std::string annotation;
    std::string imagesPath;
    bool absoluteImagesPathPolicy = false;
    bool invertedZAxis = false;
    float defaultSliceThickness = 0.0f;
    std::vector<Model*> models;
    std::vector<StandardImage*> standardImages;
    std::string lastSegmentedSlice;
    std::string lastRegisteredSlice;
};

extern template VoxelMatrix<int> Stack::toVoxelMatrix<int>(ImageColorContent) const;
extern template VoxelMatrix<float> Stack::toVoxelMatrix<float>(ImageColorContent) const;
extern template VoxelMatrix<double> Stack::toVoxelMatrix<double>(ImageColorContent) const;
extern template VoxelMatrix<long double> Stack::toVoxelMatrix<long double>(ImageColorContent) const;
