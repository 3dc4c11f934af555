#include "stack/stack.h"

#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"
#include "stack/standardimage.h"
#include "system/exception.h"

#include <algorithm>
#include <iostream>

namespace {

constexpr int micrometres = -6;

template <class Element>
int indexOf(const std::vector<Element*>& list, const std::string& name)
{
    const auto found = std::find_if(list.begin(), list.end(),
                                    [&name](const Element* e) { return e->getName() == name; });
    return found == list.end() ? -1 : static_cast<int>(found - list.begin());
}

template <class Element>
int indexOf(const std::vector<Element*>& list, const Element& element)
{
    const auto found = std::find(list.begin(), list.end(), &element);
    return found == list.end() ? -1 : static_cast<int>(found - list.begin());
}

// Empties the list first: what the elements' destructors reach finds no half-destroyed ones.
template <class Element>
void destroyAll(std::vector<Element*>& list)
{
    std::vector<Element*> elements;
    elements.swap(list);
    for (const Element* element : elements) {
        delete element;
    }
}

bool hasGeometry(const Model& model, MPrimitive geometry)
{
    return model.getProperties().definesGeometry() &&
           model.getProperties().getGeometry() == geometry;
}

int existing(int index, const char* where)
{
    if (index < 0) {
        raise<ProgramError>(where, "This slice does not stand in the stack");
    }
    return index;
}

} // namespace

Stack::Stack()
{
    LengthUnit unit;
    unit.setScale(micrometres);
    defaultPixelCalibration.setLengthUnit(unit);
}

Stack::~Stack()
{
    clear();
}

void Stack::setImagesPath(const std::string& path)
{
    imagesPath = path;
    if (!path.empty() && path.back() != '/') { // no folder is no root folder
        imagesPath += '/';
    }
}

void Stack::setLengthUnit(const LengthUnit& unit)
{
    defaultPixelCalibration.setLengthUnit(unit);
    for (StackSlice* slice : slices) {
        PixelCalibration calibration = slice->getPixelCalibration();
        calibration.setLengthUnit(unit);
        slice->setPixelCalibration(calibration);
    }
}

int Stack::findSlice(const std::string& sliceName) const
{
    return indexOf(slices, sliceName);
}

int Stack::findSlice(const StackSlice& slice) const
{
    return indexOf(slices, slice);
}

const StackSlice& Stack::getNextSlice(const StackSlice& slice) const
{
    const int i = existing(findSlice(slice), "StackSlice& Stack::getNextSlice(const StackSlice&)");
    return getSlice(std::min(i + 1, getNumSlices() - 1));
}

StackSlice& Stack::getNextSlice(const StackSlice& slice)
{
    return const_cast<StackSlice&>(static_cast<const Stack&>(*this).getNextSlice(slice));
}

const StackSlice& Stack::getPreviousSlice(const StackSlice& slice) const
{
    const int i =
        existing(findSlice(slice), "StackSlice& Stack::getPreviousSlice(const StackSlice&)");
    return getSlice(std::max(i - 1, 0));
}

StackSlice& Stack::getPreviousSlice(const StackSlice& slice)
{
    return const_cast<StackSlice&>(static_cast<const Stack&>(*this).getPreviousSlice(slice));
}

void Stack::addSlice(StackSlice& slice)
{
    addSlice(slice, getNumSlices());
}

void Stack::addSlice(StackSlice& slice, int index)
{
    if (findSlice(slice) < 0) {
        slices.insert(slices.begin() + index, &slice);
        ++revision_;
    }
}

void Stack::keepPositionBehind(int i)
{
    if (i <= 0 || i >= getNumSlices() - 1) {
        return;
    }
    StackSlice& next = getSlice(i + 1);
    if (next.useRelativePosition()) {
        next.setRelativePosition(StackSlice::absolutePosition(*this, i + 1) -
                                 StackSlice::absolutePosition(*this, i - 1));
    }
}

void Stack::removeSlice(int i)
{
    keepPositionBehind(i);
    slices.erase(slices.begin() + i);
    ++revision_;
}

void Stack::deleteSlice(int i)
{
    const StackSlice* slice = &getSlice(i);
    removeSlice(i);
    delete slice;
}

int Stack::findModel(const std::string& modelName) const
{
    return indexOf(models, modelName);
}

int Stack::findModel(const Model& model) const
{
    return indexOf(models, model);
}

void Stack::addModel(Model& model)
{
    addModel(model, getNumModels());
}

void Stack::addModel(Model& model, int index)
{
    if (findModel(model) < 0) {
        models.insert(models.begin() + index, &model);
        ++revision_;
    }
    for (int i = 0; i < model.getNumItems(); ++i) {
        model.getItem(i).attachToSlice();
    }
}

void Stack::removeModel(Model& model)
{
    const int index = findModel(model);
    if (index < 0) {
        return;
    }
    for (int i = 0; i < model.getNumItems(); ++i) {
        model.getItem(i).detachFromSlice();
    }
    models.erase(models.begin() + index);
    ++revision_;
}

void Stack::deleteModel(int i)
{
    const Model* model = &getModel(i);
    models.erase(models.begin() + i);
    ++revision_;
    delete model;
}

void Stack::deleteAllModels()
{
    for (int i = getNumModels() - 1; i >= 0; --i) {
        deleteModel(i);
    }
}

bool Stack::hasGeometryModels(MPrimitive geometry) const
{
    return !listGeometryModels(geometry).empty();
}

bool Stack::hasGeometryModelItems(MPrimitive geometry) const
{
    return std::any_of(models.begin(), models.end(), [geometry](const Model* model) {
        return hasGeometry(*model, geometry) && model->getNumItems() > 0;
    });
}

std::vector<Model*> Stack::listGeometryModels(MPrimitive geometry) const
{
    std::vector<Model*> found;
    std::copy_if(models.begin(), models.end(), std::back_inserter(found),
                 [geometry](const Model* model) { return hasGeometry(*model, geometry); });
    return found;
}

void Stack::addStandardImage(StandardImage* image)
{
    standardImages.push_back(image);
    image->setStack(*this);
}

int Stack::getNumCalibration() const
{
    return static_cast<int>(calibrationCurves().size());
}

CalibrationCurve* Stack::getCalibration(int i) const
{
    const std::vector<CalibrationCurve*> curves = calibrationCurves();
    const auto k = static_cast<std::size_t>(i);
    return k < curves.size() ? curves[k] : nullptr;
}

CalibrationCurve* Stack::getCalibration(const std::string& curveName) const
{
    for (CalibrationCurve* curve : calibrationCurves()) {
        if (curve->getName() == curveName) {
            return curve;
        }
    }
    return nullptr;
}

std::vector<CalibrationCurve*> Stack::calibrationCurves() const
{
    std::vector<CalibrationCurve*> curves;
    for (const StandardImage* image : standardImages) {
        if (CalibrationCurve* curve = image->getCalibrationCurve()) {
            curves.push_back(curve);
        }
    }
    return curves;
}

void Stack::clear()
{
    ++revision_;
    destroyAll(slices);
    destroyAll(models);
    destroyAll(standardImages);
    lastSegmentedSlice.clear();
    lastRegisteredSlice.clear();
}

void Stack::print(const std::string& indent) const
{
    std::cout << indent << "Name = " << name << '\n'
              << indent << "Images path = " << imagesPath << '\n';
    for (const StackSlice* slice : slices) {
        slice->print(indent + "  ");
    }
    for (const Model* model : models) {
        model->print(indent + "  ");
    }
}
