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
    defaultPixelCalibration_.setLengthUnit(unit);
}

Stack::~Stack()
{
    clear();
}

void Stack::setImagesPath(const std::string& path)
{
    imagesPath_ = path;
    if (!path.empty() && path.back() != '/') {
        imagesPath_ += '/';
    }
}

void Stack::setLengthUnit(const LengthUnit& unit)
{
    defaultPixelCalibration_.setLengthUnit(unit);
    for (StackSlice* slice : slices_) {
        PixelCalibration calibration = slice->getPixelCalibration();
        calibration.setLengthUnit(unit);
        slice->setPixelCalibration(calibration);
    }
}

int Stack::findSlice(const std::string& name) const
{
    return indexOf(slices_, name);
}

int Stack::findSlice(const StackSlice& slice) const
{
    return indexOf(slices_, slice);
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
        slices_.insert(slices_.begin() + index, &slice);
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
    slices_.erase(slices_.begin() + i);
}

void Stack::deleteSlice(int i)
{
    const StackSlice* slice = &getSlice(i);
    removeSlice(i);
    delete slice;
}

int Stack::findModel(const std::string& name) const
{
    return indexOf(models_, name);
}

int Stack::findModel(const Model& model) const
{
    return indexOf(models_, model);
}

void Stack::addModel(Model& model)
{
    if (findModel(model) < 0) {
        models_.push_back(&model);
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
    models_.erase(models_.begin() + index);
}

void Stack::deleteModel(int i)
{
    const Model* model = &getModel(i);
    models_.erase(models_.begin() + i);
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
    return std::any_of(models_.begin(), models_.end(), [geometry](const Model* model) {
        return hasGeometry(*model, geometry) && model->getNumItems() > 0;
    });
}

std::vector<Model*> Stack::listGeometryModels(MPrimitive geometry) const
{
    std::vector<Model*> found;
    std::copy_if(models_.begin(), models_.end(), std::back_inserter(found),
                 [geometry](const Model* model) { return hasGeometry(*model, geometry); });
    return found;
}

void Stack::clear()
{
    destroyAll(slices_);
    destroyAll(models_);
    destroyAll(standardImages_);
    lastSegmentedSlice_.clear();
    lastRegisteredSlice_.clear();
}

void Stack::print(const std::string& indent) const
{
    std::cout << indent << "Name = " << name_ << '\n'
              << indent << "Images path = " << imagesPath_ << '\n';
    for (const StackSlice* slice : slices_) {
        slice->print(indent + "  ");
    }
    for (const Model* model : models_) {
        model->print(indent + "  ");
    }
}
