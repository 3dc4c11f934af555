#include "stack/stackfilestatements.h"

#include "image/regions/rleitemset0.h"
#include "shape/vertices/vertices.h"
#include "stack/modelitemproperties.h"
#include "stack/modelproperties.h"
#include "stack/pose.h"
#include "stack/stackfilescanner.h"
#include "system/exception.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace {

using Keyword = StackIO::Keyword;

constexpr int highest = std::numeric_limits<int>::max();

// Bounds that leave room for sums and squares of what is read, and for its conversion to other
// number types.
constexpr float largestExtent = 1e6f;
constexpr int largestAngle = 1000000;
constexpr int farthest = 100000000;
constexpr std::int64_t mostPixels = 100000000;

[[noreturn]] void refuse(const std::string& reason)
{
    raise<FileFormatError>("bool StackReader::read(Stack&, const string&)", reason);
}

[[noreturn]] void refuseName(const std::string& kind, const std::string& name)
{
    refuse("there is no " + kind + " \"" + name + "\"");
}

float readExtent(StackFileScanner& scanner)
{
    const float extent = scanner.lastNumber();
    if (std::abs(extent) > largestExtent) {
        refuse("the number is out of range");
    }
    return extent;
}

void requireNear(int coordinate)
{
    if (coordinate < -farthest || coordinate > farthest) {
        refuse("the coordinate " + std::to_string(coordinate) + " is out of range");
    }
}

} // namespace

bool readModelStatement(StackIO::Keyword keyword,
                        StackFileScanner& scanner,
                        ModelProperties& properties)
{
    switch (keyword) {
    case Keyword::Brilliancy:
        properties.setSurfaceShininess(scanner.lastNumber());
        return true;
    case Keyword::Transparency:
        properties.setSurfaceOpacity(scanner.lastNumber());
        return true;
    case Keyword::EcoRendering:
        properties.setEconomicRendering(scanner.lastBoolean());
        return true;
    case Keyword::BeginCap:
        properties.setBeginCapFlag(scanner.lastBoolean());
        return true;
    case Keyword::EndCap:
        properties.setEndCapFlag(scanner.lastBoolean());
        return true;
    case Keyword::MeshVertexSmoothing:
        properties.setVertexSmoothing(scanner.lastInteger(0, highest));
        return true;
    case Keyword::MeshNormalSmoothing:
        properties.setNormalSmoothing(scanner.lastInteger(0, highest));
        return true;
    case Keyword::Resampling: {
        const int width = scanner.integer(0, highest);
        properties.setQuadMeshHeight(scanner.lastInteger(0, highest));
        properties.setQuadMeshWidth(width);
        return true;
    }
    case Keyword::Primitive: {
        const std::string name = scanner.lastWord();
        const MPrimitive primitive = ModelProperties::toPrimitive(name);
        if (ModelProperties::toString(primitive) != name) {
            refuseName("primitive", name);
        }
        properties.setGeometry(primitive);
        return true;
    }
    case Keyword::RenderingMode: {
        const std::string name = scanner.lastWord();
        const RenderingMode mode = ModelProperties::toRenderingMode(name);
        if (ModelProperties::toString(mode) != name) {
            refuseName("rendering mode", name);
        }
        properties.setRenderingMode(mode);
        return true;
    }
    default:
        return false;
    }
}

bool readDrawingStatement(StackIO::Keyword keyword,
                          StackFileScanner& scanner,
                          ModelItemProperties& properties)
{
    switch (keyword) {
    case Keyword::Color: {
        Vector<int> color(3);
        color[0] = scanner.integer(0, 255);
        color[1] = scanner.integer(0, 255);
        color[2] = scanner.lastInteger(0, 255);
        properties.setColor(color);
        return true;
    }
    case Keyword::FilledIn:
        properties.setVertexSymbolFilling(scanner.lastBoolean());
        return true;
    case Keyword::Hidden3D:
        properties.setRenderingVisibility(!scanner.lastBoolean());
        return true;
    case Keyword::PointSize:
        properties.setPointSize(readExtent(scanner));
        return true;
    case Keyword::Thickness:
        properties.setLineWidth(readExtent(scanner));
        return true;
    case Keyword::VertexSymbol: {
        const std::string name = scanner.lastWord();
        const VertexSymbol symbol = ModelItemProperties::toVertexSymbol(name);
        if (ModelItemProperties::toString(symbol) != name) {
            refuseName("vertex symbol", name);
        }
        properties.setVertexSymbol(symbol);
        return true;
    }
    default:
        return false;
    }
}

Vertices<int> readVertices(StackFileScanner& scanner)
{
    const std::vector<int> coordinates = scanner.groups(2);
    scanner.end();
    std::for_each(coordinates.begin(), coordinates.end(), requireNear);
    const int count = static_cast<int>(coordinates.size() / 2);
    Vertices<int> vertices(2, count, 0, 1);
    for (int i = 0; i < count; ++i) {
        Vector<int>& vertex = vertices[i];
        vertex[0] = coordinates[static_cast<std::size_t>(2 * i)];
        vertex[1] = coordinates[static_cast<std::size_t>(2 * i + 1)];
    }
    return vertices;
}

RLEItemSet0 readRegion(StackFileScanner& scanner)
{
    const std::vector<int> runs = scanner.groups(3);
    scanner.end();
    RLEItemSet0 region;
    std::int64_t pixels = 0;
    for (std::size_t i = 0; i < runs.size(); i += 3) {
        const int length = runs[i + 2];
        requireNear(runs[i]);
        requireNear(runs[i + 1]);
        pixels += length;
        if (length < 1 || pixels > mostPixels) {
            refuse("the length " + std::to_string(length) + " is out of range");
        }
        region.add(RLEItem0(runs[i], runs[i + 1], length));
    }
    return region;
}

bool readPoseStatement(StackIO::Keyword keyword, StackFileScanner& scanner, Pose& pose)
{
    switch (keyword) {
    case Keyword::PoseRotation: {
        const int x = scanner.integer(-largestAngle, largestAngle);
        const int y = scanner.integer(-largestAngle, largestAngle);
        pose.setZRotation(scanner.lastInteger(-largestAngle, largestAngle));
        pose.setXRotation(x);
        pose.setYRotation(y);
        return true;
    }
    case Keyword::PoseShift: {
        const int x = scanner.integer();
        pose.setTranslation(x, scanner.lastInteger());
        return true;
    }
    case Keyword::PoseZoom:
        pose.setZoom(scanner.lastInteger());
        return true;
    case Keyword::AmbientLight:
        pose.setAmbientLight(scanner.lastInteger());
        return true;
    case Keyword::DiffuseLight:
        pose.setDiffuseLight(scanner.lastInteger());
        return true;
    case Keyword::SpecularLight:
        pose.setSpecularLight(scanner.lastInteger());
        return true;
    default:
        return false;
    }
}
