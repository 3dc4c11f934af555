#include "stack/modelitem.h"

#include "shape/curves/curve.h"
#include "stack/model.h"
#include "stack/stackslice.h"
#include "system/exception.h"
#include "system/trace.h"

#include <algorithm>
#include <memory>

namespace {

constexpr int growth = 20;

void checkDimension(int dimension, const char* where)
{
    if (dimension != 2) {
        raise<SizeError>(where, "A vertex of an item has two coordinates");
    }
}

Vector<int> point(int x, int y)
{
    Vector<int> p(2);
    p[0] = x;
    p[1] = y;
    return p;
}

template <class T>
void copyCoordinates(const Vertices<int>& from, Vertices<T>& to)
{
    for (int i = 0; i < from.getSize(); ++i) {
        const Vector<int>& source = from[i];
        Vector<T>& target = to[i];
        target[0] = static_cast<T>(source[0]);
        target[1] = static_cast<T>(source[1]);
    }
}

Vertices<int> copyOf(const Vertices<int>& vertices)
{
    Vertices<int> copy(2, vertices.getSize(), 0, growth);
    copyCoordinates(vertices, copy);
    return copy;
}

} // namespace

ModelItem::ModelItem()
    : vertices(2, 0, 0, growth)
{}

ModelItem::ModelItem(const ModelItem& other)
    : model(other.model)
    , slice(other.slice)
    , vertices(copyOf(other.vertices))
    , rleItemSet(other.rleItemSet)
    , selection(other.selection)
    , properties(other.properties)
    , triangulationTag(other.triangulationTag)
{}

ModelItem::~ModelItem()
{
    while (!owners_.empty()) {
        owners_.back()->removeItem(*this);
    }
}

void ModelItem::setModel(Model& newModel)
{
    detachFromModel();
    model = &newModel;
}

void ModelItem::setSlice(StackSlice& newSlice)
{
    detachFromSlice();
    slice = &newSlice;
}

void ModelItem::attachToModel()
{
    if (model != nullptr) {
        model->addItem(*this);
    }
}

void ModelItem::attachToSlice()
{
    if (slice != nullptr) {
        slice->addItem(*this);
    }
}

void ModelItem::attach()
{
    attachToModel();
    attachToSlice();
}

// Only a list that holds the item is touched: an item that was never attached may outlive the
// model and the slice that it names.
void ModelItem::detachFrom(ModelItemOwner* owner)
{
    if (std::find(owners_.begin(), owners_.end(), owner) != owners_.end()) {
        owner->removeItem(*this);
    }
}

void ModelItem::detachFromModel()
{
    detachFrom(model);
}

void ModelItem::detachFromSlice()
{
    detachFrom(slice);
}

void ModelItem::detach()
{
    detachFromModel();
    detachFromSlice();
}

MPrimitive ModelItem::primitive() const
{
    return model != nullptr && model->getProperties().definesGeometry()
               ? model->getProperties().getGeometry()
               : PRIMITIVE_UNKNOWN;
}

bool ModelItem::isConnected() const
{
    const MPrimitive p = primitive();
    return p == PRIMITIVE_POLYGON || p == PRIMITIVE_POLYLINE || p == PRIMITIVE_REGION;
}

bool ModelItem::isClosed() const
{
    return primitive() == PRIMITIVE_POLYGON;
}

bool ModelItem::isClockwise() const
{
    if (!isClosed()) {
        return false;
    }
    Curve<double> outline(2, getSize(), 0, 0, false);
    copyCoordinates(vertices, outline);
    return outline.twiceArea(0, 1) < 0.0;
}

void ModelItem::setClockwise(bool clockwise)
{
    if (isClosed() && isClockwise() != clockwise) {
        vertices.reverse();
        selection.reverse();
    }
}

int ModelItem::getSize() const
{
    return primitive() == PRIMITIVE_REGION ? rleItemSet.numVertices() : vertices.getSize();
}

void ModelItem::setVertices(const Vertices<int>& newVertices)
{
    if (newVertices.getSize() > 0) {
        checkDimension(newVertices.getSpace(), "void ModelItem::setVertices(const Vertices<int>&)");
    }
    vertices = copyOf(newVertices);
    selection.reset(vertices.getSize());
}

void ModelItem::insertVertex(int i, const Vector<int>& vertex)
{
    checkDimension(vertex.getSize(), "void ModelItem::insertVertex(const int,const Vector<int>&)");
    vertices.insert(i, vertex);
    selection.insert(i, false);
}

void ModelItem::appendVertex(const Vector<int>& vertex)
{
    checkDimension(vertex.getSize(), "void ModelItem::appendVertex(const Vector<int>&)");
    vertices.append(vertex);
    selection.reset(vertices.getSize());
}

void ModelItem::appendVertices(const Vertices<int>& others)
{
    const int count = others.getSize();
    if (count > 0) {
        checkDimension(others.getSpace(), "void ModelItem::appendVertices(const Vertices<int>&)");
    }
    for (int i = 0; i < count; ++i) {
        vertices.append(others[i]);
    }
    selection.reset(vertices.getSize());
}

void ModelItem::moveVertex(int i, const Vector<int>& vertex)
{
    checkDimension(vertex.getSize(), "void ModelItem::moveVertex(const int,const Vector<int>&)");
    vertices[i] = vertex;
}

void ModelItem::removeVertex(int i)
{
    vertices.remove(i);
    selection.remove(i);
}

void ModelItem::removeVertices(int first, int last)
{
    vertices.remove(first, last);
    selection.remove(first, last);
}

void ModelItem::removeDuplicates()
{
    vertices.removeDuplicates(isClosed());
    selection.reset(vertices.getSize());
}

void ModelItem::translate(int dx, int dy)
{
    for (int i = 0; i < vertices.getSize(); ++i) {
        vertices[i][0] += dx;
        vertices[i][1] += dy;
    }
    rleItemSet.translate(point(dy, dx));
}

void ModelItem::setRLEItemSet(const RLEItemSet0& set)
{
    const bool selected = !selection.isEmpty();
    rleItemSet = set;
    selection.reset(1);
    selection.set(selected);
}

void ModelItem::addRLEItemSet(const RLEItemSet0& set)
{
    rleItemSet.add(set);
    if (selection.getLength() != 1) {
        selection.reset(1);
    }
}

void ModelItem::removeRLEItemSet(const RLEItemSet0& set)
{
    rleItemSet.remove(set);
    if (selection.getLength() != 1) {
        selection.reset(1);
    }
}

BoundingBox<int> ModelItem::boundingBox() const
{
    BoundingBox<int> box = pixels().boundingBox();
    rectifyBox(box);
    return box;
}

void ModelItem::rectifyBox(BoundingBox<int>& box) const
{
    ModelItemProperties drawn = properties;
    if (model != nullptr) {
        drawn = drawn + model->getItemProperties();
    }
    const int pointSize = drawn.definesPointSize() ? static_cast<int>(drawn.getPointSize()) : 0;
    const int lineWidth = drawn.definesLineWidth() ? static_cast<int>(drawn.getLineWidth()) : 0;
    const int extent = std::max(pointSize, lineWidth);
    box.setVertex1(box.getVertex1() - extent);
    box.setVertex2(box.getVertex2() + (extent + 1));
}

Vertices<int> ModelItem::pixels() const
{
    if (primitive() != PRIMITIVE_REGION) {
        return copyOf(vertices);
    }
    Vertices<int> pixels = rleItemSet.vertices();
    for (int i = 0; i < pixels.getSize(); ++i) {
        std::swap(pixels[i][0], pixels[i][1]);
    }
    return pixels;
}

Vertices<int> ModelItem::verticesByFlag(bool selected) const
{
    if (primitive() == PRIMITIVE_REGION) {
        return selection.isEmpty() == selected ? Vertices<int>(2, 0, 0, growth) : pixels();
    }
    Vertices<int> result(2, 0, 0, growth);
    for (int i = 0; i < vertices.getSize(); ++i) {
        if ((i < selection.getLength() && selection.isSelected(i)) == selected) {
            result.append(vertices[i]);
        }
    }
    return result;
}

Vertices<int> ModelItem::selectedVertices() const
{
    return verticesByFlag(true);
}

Vertices<int> ModelItem::unselectedVertices() const
{
    return verticesByFlag(false);
}

void ModelItem::removeSelectedVertices()
{
    if (selection.isEmpty()) {
        return;
    }
    if (primitive() == PRIMITIVE_REGION) {
        rleItemSet.clear();
        selection.reset(1);
    } else {
        setVertices(unselectedVertices());
    }
}

void ModelItem::removeUnselectedVertices()
{
    if (selection.isComplete()) {
        return;
    }
    if (primitive() == PRIMITIVE_REGION) {
        rleItemSet.clear();
        selection.reset(1);
    } else {
        setVertices(selectedVertices());
    }
    selection.set(true);
}

void ModelItem::removeSelection()
{
    OBSOLETE("void ModelItem::removeSelection()", "void ModelItem::removeSelectedVertices()");
    removeSelectedVertices();
}

template <class T>
Shape<T>* ModelItem::toShape() const
{
    const char* where = "Shape<CoordType>* ModelItem::toShape() const";
    const int size = vertices.getSize();
    std::unique_ptr<Vertices<T>> shape;
    switch (primitive()) {
    case PRIMITIVE_POLYGON:
        shape = std::make_unique<Curve<T>>(2, size, 0, 0, false);
        break;
    case PRIMITIVE_POLYLINE:
        shape = std::make_unique<Curve<T>>(2, size, 0, 0, true);
        break;
    case PRIMITIVE_POLYPOINT:
        shape = std::make_unique<Vertices<T>>(2, size, 0, 0);
        break;
    case PRIMITIVE_REGION:
        raise<ProgramError>(where, "PRIMITIVE_REGION in switch is not handled");
    case PRIMITIVE_UNKNOWN:
        raise<ProgramError>(where, "PRIMITIVE_UNKNOWN in switch is not handled");
    default:
        return nullptr;
    }
    copyCoordinates(vertices, *shape);
    return shape.release();
}

template Shape<int>* ModelItem::toShape<int>() const;
template Shape<float>* ModelItem::toShape<float>() const;
template Shape<double>* ModelItem::toShape<double>() const;
template Shape<long double>* ModelItem::toShape<long double>() const;
