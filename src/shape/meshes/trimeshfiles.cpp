// Part of `TriMesh`: the text form and the stereolithography files.

#include "shape/meshes/trimesh.h"
#include "shape/vertices/shapestream.h"
#include "system/exception.h"
#include "system/fileinfo.h"
#include "system/filereplacement.h"

#include <algorithm>
#include <fstream>

namespace {

template <class Numbers>
void writeLine(std::ostream& text, const Numbers& numbers)
{
    for (int i = 0; i < numbers.getSize(); ++i) {
        text << (i > 0 ? " " : "") << numbers[i];
    }
    text << "\n";
}

/// A zero is written without the sign that a normal along an axis gives it by chance.
template <class T>
void writePoint(std::ostream& text, const char* name, const Vector<T>& point)
{
    text << name;
    for (int i = 0; i < 3; ++i) {
        text << ' ' << (point[i] == 0 ? T(0) : point[i]);
    }
    text << "\n";
}

template <class T>
void writeFacet(std::ostream& text, const Triangle<T>& triangle)
{
    writePoint(text, "  facet normal", triangle.normal(true));
    text << "    outer loop\n";
    for (int i = 0; i < 3; ++i) {
        writePoint(text, "      vertex", triangle[i]);
    }
    text << "    endloop\n"
         << "  endfacet\n";
}

} // namespace

template <class T>
int TriMesh<T>::read(std::istream& stream)
{
    const ClassicFormat format(stream);
    TriMesh mesh;
    const int type = mesh.Vertices<T>::read(stream);
    if (stream) {
        mesh.clear();
        mesh.readTriangles(stream);
    }
    if (stream) {
        mesh.readNormals(stream);
    }
    if (!stream) {
        return -1;
    }
    assign(mesh);
    return type;
}

template <class T>
void TriMesh<T>::readTriangles(std::istream& stream)
{
    int count = 0;
    if (!readHeaderLine(stream, count) || !canHold(stream, 3, count)) {
        stream.setstate(std::ios::failbit);
        return;
    }
    Vector<int> vertices(3);
    for (int t = 0; t < count; ++t) {
        stream >> vertices[0] >> vertices[1] >> vertices[2];
        if (!stream || vertices.min() < 0 || vertices.max() >= this->getSize()) {
            stream.setstate(std::ios::failbit);
            return;
        }
        addTriangle(vertices);
    }
}

template <class T>
void TriMesh<T>::readNormals(std::istream& stream)
{
    int flag = 0;
    if (!readHeaderLine(stream, flag)) {
        return;
    }
    if (flag == 0) {
        if constexpr (!std::is_integral_v<T>) {
            if (this->getSpace() == 3) {
                computeNormals();
            }
        }
        return;
    }
    resetNormals();
    for (int i = 0; i < this->getSize() && stream; ++i) {
        Vector<T>& normal = normals_[i];
        for (int c = 0; c < normal.getSize(); ++c) {
            readNumber(stream, normal[c]);
        }
        if constexpr (!std::is_integral_v<T>) {
            normal.normalize();
        }
    }
}

template <class T>
void TriMesh<T>::write(std::ostream& stream) const
{
    Vertices<T>::write(stream);
    std::ostringstream text = textFor(stream);
    const auto removed = std::count(triangles_.begin(), triangles_.end(), nullptr);
    text << "# " << getNumTriangles() - removed << "\n";
    for (int t = 0; t < getNumTriangles(); ++t) {
        if (triangle(t) != nullptr) {
            writeLine(text, getTriangleIndexes(t));
        }
    }
    text << (hasNormals() ? "# 1\n" : "# 0\n");
    for (int i = 0; hasNormals() && i < this->getSize(); ++i) {
        writeLine(text, normals_[i]);
    }
    writeText(stream, text, "void TriMesh<T>::write(ostream&) const");
}

template <class T>
void TriMesh<T>::export2AsciiSTL(std::ostream& stream) const
{
    std::ostringstream text = textFor(stream);
    text << "solid " << this->getName() << "\n";
    for (const auto& triangle : triangles_) {
        if (triangle != nullptr) {
            writeFacet(text, *triangle);
        }
    }
    text << "endsolid " << this->getName() << "\n";
    writeText(stream, text, "void TriMesh<T>::export2AsciiSTL(ostream&) const");
}

template <class T>
void TriMesh<T>::saveAsSTL(const std::string& filename, bool overwrite) const
{
    const char* where = "void TriMesh::saveAsSTL(const string&, const bool) const";
    std::string target = filename;
    FileInfo::ensureSuffix(target, "stl");
    if (!overwrite && FileInfo::fileExists(target)) {
        raiseFile<FileWriteError>(where, "File already exists", target);
    }
    std::ostringstream text;
    export2AsciiSTL(text);
    FileReplacement replacement(where, target);
    std::ofstream stream(replacement.temporaryName());
    stream << text.str();
    stream.close();
    replacement.commit(stream.good());
}

#define INSTANTIATE_TRI_MESH_FILES(T)                                                              \
    template int TriMesh<T>::read(std::istream&);                                                  \
    template void TriMesh<T>::readTriangles(std::istream&);                                        \
    template void TriMesh<T>::readNormals(std::istream&);                                          \
    template void TriMesh<T>::write(std::ostream&) const;                                          \
    template void TriMesh<T>::export2AsciiSTL(std::ostream&) const;                                \
    template void TriMesh<T>::saveAsSTL(const std::string&, bool) const;

INSTANTIATE_TRI_MESH_FILES(int)
INSTANTIATE_TRI_MESH_FILES(float)
INSTANTIATE_TRI_MESH_FILES(double)
INSTANTIATE_TRI_MESH_FILES(long double)
