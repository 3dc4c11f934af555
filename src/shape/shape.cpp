#include "shape/shape.h"

#include "numerics/elementtype.h"
#include "numerics/squarematrix.h"
#include "shape/boundingbox.h"
#include "shape/curve.h"
#include "shape/quadmesh.h"
#include "shape/shapeset.h"
#include "shape/vertexdistance.h"
#include "system/exception.h"
#include "system/fileinfo.h"
#include "system/filereplacement.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <limits>
#include <locale>

namespace {

struct ShapeKind
{
    const char* name;
    const char* suffix;
};

constexpr ShapeKind shapeKinds[] = {
    {"ClosedCurve", "cv"},    {"OpenCurve", "cv"},      {"ClosedCurveStack", "cs"},
    {"OpenCurveStack", "cs"}, {"ClosedQuadMesh", "qm"}, {"OpenQuadMesh", "qm"},
    {"Vertices", "vx"},       {"VertexStack", "vs"},    {"TriMesh", "tm"},
};
constexpr int shapeKindCount = static_cast<int>(std::size(shapeKinds));

bool isShapeType(int type)
{
    return type >= 0 && type < shapeKindCount;
}

template <class T>
std::vector<const Vector<T>*> vertexPointers(const Shape<T>& shape)
{
    std::vector<const Vector<T>*> vertices;
    vertices.reserve(static_cast<std::size_t>(shape.getSize()));
    for (ConstVertexIterator<T> walk = shape.vertexIterator(); walk.current() != nullptr; walk++) {
        vertices.push_back(walk.current());
    }
    return vertices;
}

template <class T>
std::vector<Vector<unsigned int>> vertexLocators(const Shape<T>& shape)
{
    std::vector<Vector<unsigned int>> locators;
    locators.reserve(static_cast<std::size_t>(shape.getSize()));
    for (ConstVertexIterator<T> walk = shape.vertexIterator(); walk.current() != nullptr; walk++) {
        locators.push_back(walk.locator());
    }
    return locators;
}

template <class T>
const Vector<T>* firstNearest(const std::vector<const Vector<T>*>& vertices,
                              const Vector<T>& position)
{
    const Vector<T>* nearest = nullptr;
    T smallest = 0;
    for (const Vector<T>* vertex : vertices) {
        const T distance = squaredDistance(*vertex, position);
        if (nearest == nullptr || distance < smallest) {
            nearest = vertex;
            smallest = distance;
        }
    }
    return nearest;
}

template <class T>
void requireCompatible(const Shape<T>& a, const Shape<T>& b)
{
    if (a.getShapeType() != b.getShapeType() || a.getSpace() != b.getSpace() ||
        a.getSize() != b.getSize()) {
        raise<UsageError>("void Shape<T>::operator+=(const Shape&)",
                          "Shapes are not compatible for addition");
    }
}

void refuseFormat(const std::string& where, const std::string& filename)
{
    raiseFile<FileFormatError>(where, "Invalid shape description format", filename);
}

/// Fills the file `filename` through `write(stream)`, whole or not at all.
template <class Write>
void replaceFile(const std::string& where, const std::string& filename, Write&& write)
{
    FileReplacement replacement(where, filename);
    std::ofstream stream;
    stream.imbue(std::locale::classic());
    stream.open(replacement.temporaryName());
    try {
        write(stream);
    } catch (FileError& error) {
        error.setFilename(filename);
        throw;
    }
    stream.close();
    replacement.commit(stream.good());
}

} // namespace

template <class T>
Shape<T>::Shape() = default;

template <class T>
Shape<T>::Shape(int space, int size, int capacity, int growth)
    : VertexClient<T>(space, size, capacity, growth)
{}

template <class T>
Shape<T>::Shape(const Shape& other)
    : VertexClient<T>(other)
{}

template <class T>
Shape<T>::~Shape() = default;

template <class T>
Shape<T>& Shape<T>::operator=(const Shape& other)
{
    this->assign(other);
    return *this;
}

template <class T>
int Shape<T>::getSpace() const
{
    return this->server_ == nullptr ? 0 : this->server_->getSpace();
}

template <class T>
void Shape<T>::operator+=(const Shape& shape)
{
    requireCompatible(*this, shape);
    ConstVertexIterator<T> other = shape.vertexIterator();
    for (VertexIterator<T> walk = vertexIterator(); walk.current() != nullptr; walk++, other++) {
        *walk.current() += *other.current();
    }
}

template <class T>
void Shape<T>::operator-=(const Shape& shape)
{
    requireCompatible(*this, shape);
    ConstVertexIterator<T> other = shape.vertexIterator();
    for (VertexIterator<T> walk = vertexIterator(); walk.current() != nullptr; walk++, other++) {
        *walk.current() -= *other.current();
    }
}

template <class T>
void Shape<T>::print(const std::string& title, std::ostream& stream) const
{
    stream << title << "\n";
    VertexClient<T>::print("Shape: " + name_, stream);
}

template <class T>
VertexIterator<T> Shape<T>::vertexIterator()
{
    return VertexIterator<T>(new ConcreteVertexIterator<T>());
}

template <class T>
ConstVertexIterator<T> Shape<T>::vertexIterator() const
{
    return ConstVertexIterator<T>(new ConcreteVertexIterator<T>());
}

template <class T>
std::unique_ptr<ConcreteEdgeIterator<T>> Shape<T>::edgeIterator()
{
    return std::make_unique<ConcreteEdgeIterator<T>>();
}

template <class T>
std::unique_ptr<ConcreteEdgeIterator<T>> Shape<T>::edgeIterator() const
{
    return std::make_unique<ConcreteEdgeIterator<T>>();
}

template <class T>
std::string Shape<T>::getShapeTypeName() const
{
    const int type = getShapeType();
    return isShapeType(type) ? shapeKinds[type].name : "UnkwownShape";
}

template <class T>
bool Shape<T>::hasExtensions() const
{
    return extensions_ != nullptr && extensions_->getSize() > 0;
}

template <class T>
ShapeSet<T>& Shape<T>::getExtensions()
{
    if (extensions_ == nullptr) {
        extensions_ = std::make_unique<ShapeSet<T>>();
    }
    return *extensions_;
}

template <class T>
const ShapeSet<T>& Shape<T>::getExtensions() const
{
    return const_cast<Shape*>(this)->getExtensions();
}

template <class T>
void Shape<T>::operator*=(T factor)
{
    for (VertexIterator<T> walk = vertexIterator(); walk.current() != nullptr; walk++) {
        *walk.current() *= factor;
    }
}

template <class T>
void Shape<T>::operator/=(T divisor)
{
    if (std::is_integral_v<T> && divisor == 0) {
        raise<MathError>("void Shape<T>::operator/=(const T)", "Division by zero");
    }
    for (VertexIterator<T> walk = vertexIterator(); walk.current() != nullptr; walk++) {
        *walk.current() /= divisor;
    }
    for (int i = 0; hasExtensions() && i < extensions_->getSize(); ++i) {
        if ((*extensions_)[i] != nullptr) {
            *(*extensions_)[i] /= divisor;
        }
    }
}

template <class T>
void Shape<T>::translate(const Vector<T>& offset)
{
    // The offset may be a vertex of this shape.
    const Vector<T> step(offset);
    for (VertexIterator<T> walk = vertexIterator(); walk.current() != nullptr; walk++) {
        *walk.current() += step;
    }
}

template <class T>
void Shape<T>::scale(const Vector<T>& factors)
{
    if (factors.getSize() != getSpace()) {
        raise<SizeError>("void Shape<T>::scale(const Vector<T>&)", "Incorrect number of scales");
    }
    const Vector<T> constantFactors(factors);
    for (VertexIterator<T> walk = vertexIterator(); walk.current() != nullptr; walk++) {
        *walk.current() *= constantFactors;
    }
}

template <class T>
void Shape<T>::scale(const T& factor)
{
    Vector<T> factors(getSpace());
    factors.fill(factor);
    scale(factors);
}

template <class T>
void Shape<T>::center()
{
    translate(-cog());
}

template <class T>
void Shape<T>::multiply(const Matrix<T>& matrix)
{
    for (VertexIterator<T> walk = vertexIterator(); walk.current() != nullptr; walk++) {
        *walk.current() = matrix * *walk.current();
    }
}

template <class T>
Vector<T> Shape<T>::cog() const
{
    ConstVertexIterator<T> walk = vertexIterator();
    if (walk.current() == nullptr) {
        raise<SizeError>("Vector<T> Shape<T>::cog() const", "This shape contains no vertex");
    }
    Vector<T> centre(getSpace());
    centre.setZeros();
    for (; walk.current() != nullptr; walk++) {
        centre += *walk.current();
    }
    centre /= static_cast<T>(getSize());
    return centre;
}

template <class T>
Vector<T> Shape<T>::toVector() const
{
    Vector<T> coordinates(getSize() * getSpace());
    coordinates.setZeros();
    int position = 0;
    for (ConstVertexIterator<T> walk = vertexIterator(); walk.current() != nullptr; walk++) {
        coordinates.paste(position, *walk.current());
        position += getSpace();
    }
    return coordinates;
}

template <class T>
void Shape<T>::fromVector(const Vector<T>& coordinates)
{
    if (coordinates.getSize() != getSize() * getSpace()) {
        raise<UsageError>("void Shape<T>::fromVector(const Vector<T>&)",
                          "Size mismatch between this shape and the argument vector");
    }
    int position = 0;
    for (VertexIterator<T> walk = vertexIterator(); walk.current() != nullptr; walk++) {
        Vector<T>& vertex = *walk.current();
        vertex.setSize(getSpace());
        std::copy_n(coordinates.data() + position, getSpace(), vertex.data());
        position += getSpace();
    }
}

template <class T>
void Shape<T>::stats(T& mean, T& max) const
{
    T sum = 0;
    T largest = 0;
    for (ConstVertexIterator<T> walk = vertexIterator(); walk.current() != nullptr; walk++) {
        const T norm = walk.current()->norm();
        sum += norm;
        largest = std::max(largest, norm);
    }
    mean = getSize() > 0 ? sum / static_cast<T>(getSize()) : T(0);
    max = largest;
}

template <class T>
BoundingBox<T> Shape<T>::boundingBox() const
{
    ConstVertexIterator<T> walk = vertexIterator();
    if (walk.current() == nullptr) {
        Vector<T> zero(getSpace());
        zero.setZeros();
        return BoundingBox<T>(zero, zero);
    }
    Vector<T> smallest(*walk.current());
    Vector<T> largest(*walk.current());
    for (walk++; walk.current() != nullptr; walk++) {
        const Vector<T>& vertex = *walk.current();
        for (int i = 0; i < std::min(smallest.getSize(), vertex.getSize()); ++i) {
            smallest[i] = std::min(smallest[i], vertex[i]);
            largest[i] = std::max(largest[i], vertex[i]);
        }
    }
    return BoundingBox<T>(smallest, largest);
}

template <class T>
const Vector<T>* Shape<T>::nearestVertex(const Vector<T>& position) const
{
    return firstNearest(vertexPointers(*this), position);
}

template <class T>
Vector<T>* Shape<T>::nearestVertex(const Vector<T>& position)
{
    return const_cast<Vector<T>*>(std::as_const(*this).nearestVertex(position));
}

template <class T>
Vector<T> Shape<T>::squareDistances(const Shape& shape) const
{
    const char* where = "Vector<T> Shape<T>::squareDistances(const Shape<T>&) const";
    if (this == &shape) {
        raise<ValueError>(where, "Argument shape is equal to this");
    }
    if (getSize() != shape.getSize()) {
        raise<SizeError>(where, "The two shapes have distinct sizes");
    }
    const std::vector<const Vector<T>*> vertices = vertexPointers(*this);
    const std::vector<const Vector<T>*> others = vertexPointers(shape);
    Vector<T> distances(static_cast<int>(std::min(vertices.size(), others.size())));
    for (int i = 0; i < distances.getSize(); ++i) {
        const auto place = static_cast<std::size_t>(i);
        distances[i] = squaredDistance(*vertices[place], *others[place]);
    }
    return distances;
}

template <class T>
T Shape<T>::rmsDistance(const Shape& shape) const
{
    return static_cast<T>(std::sqrt(squareDistances(shape).mean()));
}

template <class T>
Vector<T> Shape<T>::squareNearestNeighborDistances() const
{
    const std::vector<const Vector<T>*> vertices = vertexPointers(*this);
    Vector<T> distances(static_cast<int>(vertices.size()));
    distances.fill(vertices.size() == 1 ? T(0) : std::numeric_limits<T>::max());
    for (int i = 0; i < distances.getSize(); ++i) {
        for (int j = 0; j < i; ++j) {
            const T distance = squaredDistance(*vertices[static_cast<std::size_t>(i)],
                                               *vertices[static_cast<std::size_t>(j)]);
            distances[i] = std::min(distances[i], distance);
            distances[j] = std::min(distances[j], distance);
        }
    }
    return distances;
}

template <class T>
Vector<T> Shape<T>::squareNearestNeighborDistances(const Shape& shape) const
{
    if (this == &shape) {
        raise<ValueError>(
            "Vector<T> Shape<T>::squareNearestNeighborDistances(const Shape<T>&) const",
            "Argument s is equal to this");
    }
    const std::vector<const Vector<T>*> others = vertexPointers(shape);
    Vector<T> distances(getSize());
    distances.fill(std::numeric_limits<T>::max());
    int i = 0;
    for (const Vector<T>* vertex : vertexPointers(*this)) {
        const Vector<T>* nearest = firstNearest(others, *vertex);
        if (nearest != nullptr) {
            distances[i] = squaredDistance(*vertex, *nearest);
        }
        ++i;
    }
    return distances;
}

template <class T>
Vector<T> Shape<T>::nearestNeighborDistances([[maybe_unused]] const Shape& shape) const
{
    if constexpr (std::is_integral_v<T>) {
        raiseNotAvailable<T>("Vector<T> Shape<T>::nearestNeighborDistances(const Shape<T>&) const");
    } else {
        Vector<T> distances = squareNearestNeighborDistances(shape);
        for (int i = 0; i < distances.getSize(); ++i) {
            distances[i] = std::sqrt(distances[i]);
        }
        return distances;
    }
}

template <class T>
std::vector<Vector<unsigned int>> Shape<T>::nearestNeighbors() const
{
    using Start = std::conditional_t<std::is_integral_v<T>, T, float>;
    const std::vector<const Vector<T>*> vertices = vertexPointers(*this);
    const std::vector<Vector<unsigned int>> locators = vertexLocators(*this);
    std::vector<Vector<unsigned int>> neighbours(vertices.size());
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        T smallest = static_cast<T>(std::numeric_limits<Start>::max());
        std::size_t nearest = vertices.size();
        for (std::size_t j = 0; j < vertices.size(); ++j) {
            const T distance = squaredDistance(*vertices[i], *vertices[j]);
            if (distance > 0 && distance < smallest) {
                smallest = distance;
                nearest = j;
            }
        }
        if (nearest < vertices.size()) {
            neighbours[i] = locators[nearest];
        }
    }
    return neighbours;
}

template <class T>
std::vector<Vector<unsigned int>> Shape<T>::nearestNeighbors(const Shape& shape) const
{
    const std::vector<const Vector<T>*> others = vertexPointers(shape);
    const std::vector<Vector<unsigned int>> locators = vertexLocators(shape);
    std::vector<Vector<unsigned int>> neighbours;
    for (const Vector<T>* vertex : vertexPointers(*this)) {
        const Vector<T>* nearest = firstNearest(others, *vertex);
        const auto place = std::find(others.begin(), others.end(), nearest) - others.begin();
        neighbours.push_back(nearest == nullptr ? Vector<unsigned int>()
                                                : locators[static_cast<std::size_t>(place)]);
    }
    return neighbours;
}

template <class T>
SquareMatrix<T> Shape<T>::inertia() const
{
    Vector<T> centre;
    return inertia(centre);
}

template <class T>
SquareMatrix<T> Shape<T>::inertia(Vector<T>& centre) const
{
    const int space = getSpace();
    SquareMatrix<T> scatter(space);
    scatter.setZeros();
    if (getSize() == 0) {
        return scatter;
    }
    centre = cog();
    for (ConstVertexIterator<T> walk = vertexIterator(); walk.current() != nullptr; walk++) {
        const Vector<T> offset = *walk.current() - centre;
        for (int i = 0; i < space; ++i) {
            for (int j = 0; j < space; ++j) {
                scatter(i, j) += offset[i] * offset[j];
            }
        }
    }
    return scatter;
}

template <class T>
SquareMatrix<T> Shape<T>::principalAxes() const
{
    Vector<T> eigenvalues;
    return principalAxes(eigenvalues);
}

template <class T>
SquareMatrix<T> Shape<T>::principalAxes(Vector<T>& eigenvalues) const
{
    SquareMatrix<T> covariance = inertia();
    if (getSize() > 0) {
        covariance /= static_cast<T>(getSize());
    }
    SquareMatrix<T> axes;
    covariance.eigenJacobi(eigenvalues, axes, true);
    return axes;
}

template <class T>
void Shape<T>::computePAT(Vector<T>& translation, SquareMatrix<T>& rotation) const
{
    Vector<T> centre = cog();
    Vector<T> eigenvalues;
    SquareMatrix<T> axes;
    inertia(centre).eigenJacobi(eigenvalues, axes, true);
    rotation = axes.transpose();
    translation = -centre;
}

template <class T>
void Shape<T>::applyPAT()
{
    Vector<T> translation;
    SquareMatrix<T> rotation;
    computePAT(translation, rotation);
    translate(translation);
    multiply(rotation);
}

template <class T>
void Shape<T>::computeLSRegistration(Vector<T>& translation,
                                     SquareMatrix<T>& rotation,
                                     const Shape& target) const
{
    registerPoints(vertexPointers(*this), vertexPointers(target), target.cog(), translation,
                   rotation);
}

template <class T>
void Shape<T>::computeLSRegistration(Vector<T>& translation,
                                     SquareMatrix<T>& rotation,
                                     const Shape& target,
                                     const std::vector<Vector<unsigned int>>& correspondences) const
{
    std::vector<const Vector<T>*> targets;
    targets.reserve(correspondences.size());
    for (const Vector<unsigned int>& locator : correspondences) {
        targets.push_back(&target[locator]);
    }
    registerPoints(vertexPointers(*this), targets, target.cog(), translation, rotation);
}

template <class T>
void Shape<T>::registerPoints(const std::vector<const Vector<T>*>& points,
                              const std::vector<const Vector<T>*>& targets,
                              const Vector<T>& targetCentre,
                              Vector<T>& translation,
                              SquareMatrix<T>& rotation) const
{
    if (targets.size() < points.size()) {
        raise<SizeError>("void Shape<T>::computeLSRegistration(...) const",
                         "The target contains less vertices than this shape");
    }
    const Vector<T> centre = cog();
    const int space = centre.getSize();
    SquareMatrix<T> covariance(space);
    covariance.setZeros();
    for (std::size_t i = 0; i < points.size(); ++i) {
        covariance += (*points[i] - centre).outerProduct(*targets[i] - targetCentre);
    }
    SquareMatrix<T> u;
    SquareMatrix<T> v;
    covariance.svd(&u, &v);
    SquareMatrix<T> best = v * u;
    if (best.det() < 0) {
        SquareMatrix<T> mirror;
        mirror.setIdentity(space);
        mirror(space - 1, space - 1) = SquareMatrix<T>(u * v).det();
        best = v * mirror * u;
    }
    translation = targetCentre - best * centre;
    rotation = best;
}

template <class T>
CurveStack<T> Shape<T>::deformations(const Shape& shape) const
{
    if (getSpace() != shape.getSpace() || getSize() != shape.getSize()) {
        raise<SizeError>("CurveStack<T> Shape<T>::deformations(const Shape&) const",
                         "Space or size mismatch between shapes");
    }
    CurveStack<T> steps(getSpace(), getSize(), 2, 0, 0, true);
    ConstVertexIterator<T> other = shape.vertexIterator();
    ConstVertexIterator<T> walk = vertexIterator();
    for (int i = 0; walk.current() != nullptr && other.current() != nullptr; ++i) {
        steps[i][0] = *walk.current();
        steps[i][1] = *other.current();
        walk++;
        other++;
    }
    return steps;
}

template <class T>
void Shape<T>::load(const std::string& filename)
{
    const char* where = "Shape<T>::load(const string&)";
    std::ifstream stream;
    stream.imbue(std::locale::classic());
    stream.open(filename);
    if (!stream) {
        raiseFile<FileReadError>(where, "Cannot open file for reading", filename);
    }
    read(stream);
    if (stream.bad()) {
        raiseFile<FileReadError>(where, "Cannot read file", filename);
    }
    if (stream.fail()) {
        refuseFormat(where, filename);
    }
}

template <class T>
Shape<T>* Shape<T>::loadFile(const std::string& filename)
{
    const char* where = "Shape<T>* Shape<T>::loadFile(const string&)";
    std::ifstream stream;
    stream.imbue(std::locale::classic());
    stream.open(filename);
    if (!stream) {
        raiseFile<FileReadError>(where, "Cannot open file for reading", filename);
    }
    char mark = 0;
    int type = 0;
    stream >> mark >> type;
    if (stream.fail() || mark != '#') {
        refuseFormat(where, filename);
    }
    stream.close();

    std::unique_ptr<Shape> shape;
    switch (type) {
    case 0:
    case 1:
        shape = std::make_unique<Curve<T>>(filename);
        break;
    case 2:
    case 3:
        shape = std::make_unique<CurveStack<T>>(filename);
        break;
    case 4:
    case 5:
        shape = std::make_unique<QuadMesh<T>>(filename);
        break;
    case 7:
        shape = std::make_unique<VertexStack<T>>(filename);
        break;
    case 6:
        shape = std::make_unique<Vertices<T>>(filename);
        break;
    default:
        raiseFile<FileFormatError>(where, "Unknown shape type", filename);
    }
    shape->setName(FileInfo::baseName(filename));
    return shape.release();
}

template <class T>
void Shape<T>::save(const std::string& filename, bool overwrite) const
{
    const char* where = "void Shape::save(const string&,const bool) const";
    std::string target = filename;
    if (isShapeType(getShapeType())) {
        FileInfo::ensureSuffix(target, shapeKinds[getShapeType()].suffix);
    }
    if (!overwrite && FileInfo::fileExists(target)) {
        raiseFile<FileWriteError>(where, "File already exists", target);
    }
    replaceFile(where, target, [this](std::ostream& stream) { write(stream); });
}

template <class T>
void Shape<T>::saveDeformations(const Shape& shape,
                                const std::string& filename,
                                bool overwrite) const
{
    const char* where = "void Shape<T>::saveDeformations(const Shape&,const string&) const";
    if (getSpace() != shape.getSpace() || getSize() != shape.getSize()) {
        raise<SizeError>(where, "Space or size mismatch between shapes");
    }
    if (!overwrite && FileInfo::fileExists(filename)) {
        raiseFile<FileWriteError>(where, "File " + filename + " already exists", filename);
    }
    replaceFile(where, filename, [&](std::ostream& stream) {
        ConstVertexIterator<T> other = shape.vertexIterator();
        ConstVertexIterator<T> walk = vertexIterator();
        for (; walk.current() != nullptr; walk++, other++) {
            const Vector<T> step = *other.current() - *walk.current();
            for (const Vector<T>* numbers : {walk.current(), &step}) {
                for (int i = 0; i < numbers->getSize(); ++i) {
                    stream << (*numbers)[i] << "\t";
                }
            }
            stream << "\n";
        }
    });
}

template class Shape<int>;
template class Shape<float>;
template class Shape<double>;
template class Shape<long double>;
