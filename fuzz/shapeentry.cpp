#include "fuzz/entries.h"
#include "shape/vertices/shape.h"

#include <memory>
#include <sstream>

namespace {

template <class T>
std::string textOf(const Shape<T>& shape)
{
    std::ostringstream stream;
    shape.write(stream);
    return stream.str();
}

template <class T>
bool readShape(const std::string& path)
{
    const std::unique_ptr<Shape<T>> shape(Shape<T>::loadFile(path));
    const std::string text = textOf(*shape);
    std::istringstream stream(text);
    shape->read(stream);
    require(!stream.fail(), "a shape that was written is read");
    // Normals are made units again when they are read, which can change their last digit.
    require(shape->getShapeType() == 8 || textOf(*shape) == text, "a shape comes back as written");
    return true;
}

bool readShapes(const std::string& path)
{
    return readShape<float>(path) && readShape<double>(path);
}

} // namespace

const FuzzEntry shapeEntry = {"shape", "cv", readShapes};
