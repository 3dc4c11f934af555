#include "shape/vertices/shapeset.h"

#include "numerics/squarematrix.h"
#include "shape/vertices/vertexdistance.h"
#include "system/exception.h"

#include <algorithm>
#include <memory>

namespace {

template <class T>
void addToStack(VertexStack<T>& stack, const ShapeSet<T>& set)
{
    for (int i = 0; i < set.getSize(); ++i) {
        const Shape<T>* shape = set[i];
        if (shape == nullptr) {
            continue;
        }
        if (const auto* levels = dynamic_cast<const VertexStack<T>*>(shape)) {
            stack.append(*levels);
        } else if (const auto* level = dynamic_cast<const Vertices<T>*>(shape)) {
            stack.append(*level);
        }
        if (shape->hasExtensions()) {
            addToStack(stack, shape->getExtensions());
        }
    }
}

} // namespace

template <class T>
ShapeSet<T>::ShapeSet() = default;

template <class T>
void ShapeSet<T>::addShape(Shape<T>* shape, bool reference)
{
    shapes_.push_back(shape);
    references_.push_back(reference);
}

template <class T>
void ShapeSet<T>::removeShape(const Shape<T>* shape)
{
    const auto entry = std::find(shapes_.begin(), shapes_.end(), shape);
    if (entry != shapes_.end()) {
        references_.erase(references_.begin() + (entry - shapes_.begin()));
        shapes_.erase(entry);
    }
}

template <class T>
void ShapeSet<T>::clear()
{
    for (const Shape<T>* shape : shapes_) {
        delete shape;
    }
    shapes_.clear();
    references_.clear();
}

template <class T>
ShapeSet<T>* ShapeSet<T>::clone() const
{
    auto copy = std::make_unique<ShapeSet>();
    copy->setName(name_);
    for (int i = 0; i < getSize(); ++i) {
        const Shape<T>* shape = (*this)[i];
        Shape<T>* shapeCopy = shape == nullptr ? nullptr : shape->clone();
        copy->addShape(shapeCopy, isReference(i));
        if (shapeCopy != nullptr) {
            shapeCopy->setName(shape->getName());
        }
    }
    return copy.release();
}

template <class T>
int ShapeSet<T>::numVertices() const
{
    int count = 0;
    for (const Shape<T>* shape : shapes_) {
        count += shape == nullptr ? 0 : shape->getSize();
    }
    return count;
}

template <class T>
bool ShapeSet<T>::onlyShapeType(int type) const
{
    bool any = false;
    for (const Shape<T>* shape : shapes_) {
        if (shape != nullptr && shape->getShapeType() != type) {
            return false;
        }
        any = any || shape != nullptr;
    }
    return any;
}

template <class T>
bool ShapeSet<T>::onlyReference() const
{
    return !references_.empty() &&
           std::all_of(references_.begin(), references_.end(), [](bool flag) { return flag; });
}

template <class T>
ShapeSet<T> ShapeSet<T>::referenceShapeSet() const
{
    ShapeSet references;
    references.setName(name_);
    for (int i = 0; i < getSize(); ++i) {
        if (isReference(i)) {
            references.addShape((*this)[i], true);
        }
    }
    return references;
}

template <class T>
Shape<T>* ShapeSet<T>::average() const
{
    std::unique_ptr<Shape<T>> sum;
    int count = 0;
    for (const Shape<T>* shape : shapes_) {
        if (shape == nullptr) {
            continue;
        }
        if (!onlyShapeType(shape->getShapeType())) {
            raise<UsageError>("Shape<T>& ShapeSet<T>::average() const",
                              "Shapes in this set are not of the same type");
        }
        if (sum == nullptr) {
            sum.reset(shape->clone());
            sum->detach();
        } else {
            *sum += *shape;
        }
        ++count;
    }
    if (sum != nullptr) {
        *sum /= static_cast<T>(count);
    }
    return sum.release();
}

template <class T>
std::vector<std::pair<Shape<T>*, Shape<T>*>> ShapeSet<T>::pairs(const ShapeSet& other) const
{
    std::vector<std::pair<Shape<T>*, Shape<T>*>> result;
    for (int i = 0; i < getSize(); ++i) {
        Shape<T>* counterpart = i < other.getSize() ? other[i] : nullptr;
        result.emplace_back((*this)[i], counterpart);
    }
    return result;
}

template <class T>
Vector<T> ShapeSet<T>::rmsDistances(const ShapeSet& other) const
{
    Vector<T> distances(getSize());
    distances.setZeros();
    int i = 0;
    for (const auto& [shape, counterpart] : pairs(other)) {
        if (shape != nullptr && counterpart != nullptr) {
            distances[i] = shape->rmsDistance(*counterpart);
        }
        ++i;
    }
    return distances;
}

template <class T>
std::vector<Vector<T>> ShapeSet<T>::squareDistances(const ShapeSet& other) const
{
    std::vector<Vector<T>> distances;
    for (const auto& [shape, counterpart] : pairs(other)) {
        const bool both = shape != nullptr && counterpart != nullptr;
        distances.push_back(both ? shape->squareDistances(*counterpart) : Vector<T>());
    }
    return distances;
}

template <class T>
std::vector<std::vector<Vector<unsigned int>>>
ShapeSet<T>::nearestNeighbors(const ShapeSet& other) const
{
    std::vector<std::vector<Vector<unsigned int>>> neighbours;
    for (const auto& [shape, counterpart] : pairs(other)) {
        neighbours.emplace_back();
        if (shape != nullptr && counterpart != nullptr) {
            neighbours.back() = shape->nearestNeighbors(*counterpart);
        }
    }
    return neighbours;
}

template <class T>
Vertices<T> ShapeSet<T>::centroids() const
{
    int space = 0;
    for (const Shape<T>* shape : shapes_) {
        space = shape != nullptr ? std::max(space, shape->getSpace()) : space;
    }
    Vertices<T> centres(space, getSize(), 0, 0);
    for (int i = 0; i < getSize(); ++i) {
        centres[i].setZeros();
        if ((*this)[i] != nullptr) {
            centres[i] = (*this)[i]->cog();
        }
    }
    return centres;
}

template <class T>
VertexStack<T> ShapeSet<T>::asVertexStack() const
{
    VertexStack<T> stack;
    addToStack(stack, *this);
    return stack;
}

template <class T>
void ShapeSet<T>::save(const std::string& directory, bool overwrite) const
{
    const bool endsInSlash = !directory.empty() && directory.back() == '/';
    const std::string prefix = directory + (endsInSlash ? "" : "/") + name_ + "-";
    for (const Shape<T>* shape : shapes_) {
        if (shape != nullptr) {
            shape->save(prefix + shape->getName(), overwrite);
        }
    }
}

template <class T>
VertexStack<T> ShapeSet<T>::joinedStack() const
{
    VertexStack<T> stack;
    for (const Shape<T>* shape : shapes_) {
        if (shape != nullptr) {
            stack.append(dynamic_cast<const VertexStack<T>&>(*shape));
        }
    }
    return stack;
}

template <class T>
void ShapeSet<T>::computePAT(Vector<T>& translation, SquareMatrix<T>& rotation) const
{
    joinedStack().computePAT(translation, rotation);
}

template <class T>
void ShapeSet<T>::applyPAT()
{
    Vector<T> translation;
    SquareMatrix<T> rotation;
    computePAT(translation, rotation);
    for (Shape<T>* shape : shapes_) {
        if (shape != nullptr) {
            shape->translate(translation);
            shape->multiply(rotation);
        }
    }
}

template <class T>
void ShapeSet<T>::computeLSRegistration(const ShapeSet& target,
                                        Vector<T>& translation,
                                        SquareMatrix<T>& rotation) const
{
    joinedStack().computeLSRegistration(translation, rotation, target.joinedStack());
}

template <class T>
void ShapeSet<T>::computeICPLSRegistration(const ShapeSet& target,
                                           Vector<T>& translation,
                                           SquareMatrix<T>& rotation) const
{
    // A neighbour's level counts from the first level of its own shape: in the joined stack it
    // stands behind the levels of the shapes before.
    std::vector<Vector<unsigned int>> correspondences;
    unsigned int firstLevel = 0;
    for (const auto& [shape, counterpart] : pairs(target)) {
        if (shape != nullptr && counterpart != nullptr) {
            for (Vector<unsigned int>& locator : shape->nearestNeighbors(*counterpart)) {
                locator[0] += firstLevel;
                correspondences.push_back(locator);
            }
        }
        if (counterpart != nullptr) {
            firstLevel += static_cast<unsigned int>(
                dynamic_cast<const VertexStack<T>&>(*counterpart).getHeight());
        }
    }
    joinedStack().computeLSRegistration(translation, rotation, target.joinedStack(),
                                        correspondences);
}

template class ShapeSet<int>;
template class ShapeSet<float>;
template class ShapeSet<double>;
template class ShapeSet<long double>;
