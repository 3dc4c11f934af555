// Part of `Shape`: its files, of all kinds of shapes.

#include "numerics/matrix.h"
#include "shape/curves/curve.h"
#include "shape/meshes/quadmesh.h"
#include "shape/meshes/trimesh.h"
#include "shape/vertices/shape.h"
#include "shape/vertices/shapeset.h"
#include "system/exception.h"
#include "system/fileinfo.h"
#include "system/filereplacement.h"

#include <fstream>
#include <locale>
#include <memory>

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
std::string Shape<T>::getShapeTypeName() const
{
    const int type = getShapeType();
    return isShapeType(type) ? shapeKinds[type].name : "UnkwownShape";
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
    // A list of vertices keeps what it could read, stacks keep what they were.
    const std::unique_ptr<Shape> former(isComposite() ? nullptr : clone());
    read(stream);
    if (!stream && former != nullptr) {
        this->assign(*former);
    }
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
    case 8:
        shape = std::make_unique<TriMesh<T>>(filename);
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

#define INSTANTIATE_SHAPE_FILES(T)                                                                 \
    template std::string Shape<T>::getShapeTypeName() const;                                       \
    template void Shape<T>::load(const std::string&);                                              \
    template Shape<T>* Shape<T>::loadFile(const std::string&);                                     \
    template void Shape<T>::save(const std::string&, bool) const;                                  \
    template void Shape<T>::saveDeformations(const Shape<T>&, const std::string&, bool) const;

INSTANTIATE_SHAPE_FILES(int)
INSTANTIATE_SHAPE_FILES(float)
INSTANTIATE_SHAPE_FILES(double)
INSTANTIATE_SHAPE_FILES(long double)
