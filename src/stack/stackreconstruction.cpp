#include "stack/stackreconstruction.h"

#include "image/sources/imagesource.h"
#include "shape/curves/curvestack.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stack.h"
#include "stack/stackslice.h"
#include "system/exception.h"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <memory>
#include <utility>

namespace {

constexpr const char* unknownPrimitive = "PRIMITIVE_UNKNOWN in switch is not handled";

} // namespace

template <class T>
void StackReconstruction<T>::setStack(const Stack& newStack)
{
    stack = &newStack;
    computeMaps();
}

template <class T>
void StackReconstruction<T>::computeMaps()
{
    if (stack == nullptr) {
        raise<UsageError>("void StackReconstruction<T>::computeMaps()", "There is no stack");
    }
    const int slices = stack->getNumSlices();
    maps.setZeros(slices, 6);
    zMap.setZeros(slices);
    const T radians = static_cast<T>(3.141592653589793238462643383279502884L / 180.0L);
    T theta = 0;
    T tx = 0;
    T ty = 0;
    for (int i = 0; i < slices; ++i) {
        const StackSlice& slice = stack->getSlice(i);
        const Registration& registration = slice.getRegistration();
        const T pw = slice.getPixelCalibration().getPixelWidth();
        const T ph = slice.getPixelCalibration().getPixelHeight();
        // A slice without an image turns about its first pixel: the others still have their places.
        const T cx = slice.isEmpty() ? T(0) : static_cast<T>(slice.getImageSource().getSize2()) / 2;
        const T cy = slice.isEmpty() ? T(0) : static_cast<T>(slice.getImageSource().getSize1()) / 2;

        const T dx = pw * static_cast<T>(registration.horShift);
        const T dy = ph * static_cast<T>(registration.verShift);
        tx += dx * std::cos(theta) + dy * std::sin(theta);
        ty += dx * std::sin(theta) - dy * std::cos(theta);
        theta -= static_cast<T>(registration.rotationAngle) * radians;

        const T c = std::cos(theta);
        const T s = std::sin(theta);
        Vector<T>& map = maps[i];
        map[0] = pw * c;
        map[1] = ph * s;
        map[2] = -pw * cx * c - ph * cy * s + tx;
        map[3] = pw * s;
        map[4] = -ph * c;
        map[5] = -pw * cx * s + ph * cy * c + ty;

        const T z = slice.getAbsolutePosition();
        zMap[i] = stack->hasInvertedZAxis() ? -z : z;
    }
}

template <class T>
Vertices<T>* StackReconstruction<T>::apply(const ModelItem& item) const
{
    const Model* model = item.getModel();
    const MPrimitive geometry =
        model == nullptr ? PRIMITIVE_UNKNOWN : model->getProperties().getGeometry();
    std::unique_ptr<Vertices<T>> shape;
    switch (geometry) {
    case PRIMITIVE_POLYGON:
    case PRIMITIVE_POLYLINE:
        shape = std::make_unique<Curve<T>>(3, 0, 0, 0, geometry == PRIMITIVE_POLYLINE);
        break;
    case PRIMITIVE_POLYPOINT:
    case PRIMITIVE_REGION:
        shape = std::make_unique<Vertices<T>>(3, 0, 0, 0);
        break;
    default:
        raise<ProgramError>("Vertices<T>* StackReconstruction<T>::apply(const ModelItem&) const",
                            unknownPrimitive);
    }
    map(*shape, item);
    return shape.release();
}

template <class T>
VertexStack<T>* StackReconstruction<T>::apply(const Model& model) const
{
    const MPrimitive geometry = model.getProperties().getGeometry();
    std::unique_ptr<VertexStack<T>> levels;
    switch (geometry) {
    case PRIMITIVE_POLYGON:
    case PRIMITIVE_POLYLINE:
        levels = std::make_unique<CurveStack<T>>(3, 0, 0, 0, 0, geometry == PRIMITIVE_POLYLINE);
        break;
    case PRIMITIVE_POLYPOINT:
    case PRIMITIVE_REGION:
        levels = std::make_unique<VertexStack<T>>(3, 0, 0, 0, 0);
        break;
    default:
        raise<ProgramError>("VertexStack<T>* StackReconstruction<T>::apply(const Model&) const",
                            unknownPrimitive);
    }
    for (const ModelItem* item : itemsInOrder(model)) {
        levels->append(*std::unique_ptr<Vertices<T>>(apply(*item)));
    }
    levels->detach(); // brings the levels together on one server
    return levels.release();
}

template <class T>
void StackReconstruction<T>::map(Vertices<T>& out, const ModelItem& item) const
{
    const int i = sliceOf(item);
    if (i < 0) {
        return;
    }
    const Vertices<int> pixels = item.pixels();
    VertexClient<T> fresh(3, pixels.getSize(), 0, 0);
    const Vector<T>& m = maps[i];
    for (int k = 0; k < pixels.getSize(); ++k) {
        const T x = static_cast<T>(pixels[k][0]);
        const T y = static_cast<T>(pixels[k][1]);
        Vector<T>& vertex = *fresh.getServer()->vertex(k);
        vertex[0] = m[0] * x + m[1] * y + m[2];
        vertex[1] = m[3] * x + m[4] * y + m[5];
        vertex[2] = zMap[i];
    }
    out.setServer(*fresh.getServer());
    out.setSize(0, false);
    out.setSize(pixels.getSize(), true);
}

template <class T>
std::vector<CurveStackTriangulationContourTag>
StackReconstruction<T>::contourTags(const Model& model) const
{
    std::vector<CurveStackTriangulationContourTag> tags;
    for (const ModelItem* item : itemsInOrder(model)) {
        tags.push_back(item->getTriangulationTag());
    }
    return tags;
}

// The index of the item's slice, -1 for an item to ignore.
template <class T>
int StackReconstruction<T>::sliceOf(const ModelItem& item) const
{
    const StackSlice* slice = item.getSlice();
    const int i = stack != nullptr && slice != nullptr ? stack->findSlice(*slice) : -1;
    if (i < 0) {
        std::cerr << "invalid stack/item pair in StackReconstruction (ignored)\n";
    } else if (i >= zMap.getSize()) {
        raise<UsageError>("int StackReconstruction<T>::sliceOf(const ModelItem&) const",
                          "The stack has got slices since its maps were computed");
    }
    return i;
}

template <class T>
std::vector<const ModelItem*> StackReconstruction<T>::itemsInOrder(const Model& model) const
{
    std::vector<std::pair<int, const ModelItem*>> places;
    for (int k = 0; k < model.getNumItems(); ++k) {
        const int i = sliceOf(model.getItem(k));
        if (i >= 0) {
            places.emplace_back(i, &model.getItem(k));
        }
    }
    std::stable_sort(places.begin(), places.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<const ModelItem*> items;
    for (const auto& place : places) {
        items.push_back(place.second);
    }
    return items;
}

template class StackReconstruction<float>;
template class StackReconstruction<double>;
template class StackReconstruction<long double>;
