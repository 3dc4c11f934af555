#include "stack/slice.h"

#include "image/files/imagereader.h"
#include "image/filters/resizexform.h"
#include "image/pixels/image0.h"
#include "image/sources/imagesource.h"
#include "system/exception.h"

#include <cmath>

namespace {

int nearestInteger(float value)
{
    return static_cast<int>(std::lround(value));
}

unsigned quotient(unsigned long long numerator, unsigned long long denominator)
{
    const double value = static_cast<double>(numerator) / static_cast<double>(denominator);
    return static_cast<unsigned>(std::llround(value));
}

float aspectRatio(const PixelCalibration& calibration, const char* where)
{
    const float ratio = calibration.getAspectRatio();
    if (!(ratio > 0.0f) || !std::isfinite(ratio)) {
        raise<ValueError>(where, "The aspect ratio of the pixels is not a positive number");
    }
    return ratio;
}

} // namespace

Slice::Slice() = default;

Slice::Slice(const Slice& other)
    : name(other.name)
    , annotation(other.annotation)
    , imageSource(other.imageSource ? other.imageSource->clone() : nullptr)
    , pixelCalibration(other.pixelCalibration)
{}

Slice& Slice::operator=(const Slice& other)
{
    if (this != &other) {
        name = other.name;
        annotation = other.annotation;
        imageSource.reset(other.imageSource ? other.imageSource->clone() : nullptr);
        pixelCalibration = other.pixelCalibration;
    }
    return *this;
}

Slice::~Slice() = default;

const ImageSource& Slice::getImageSource() const
{
    if (!imageSource) {
        raise<ProgramError>("const ImageSource& Slice::getImageSource() const",
                            "This slice has no image source");
    }
    return *imageSource;
}

void Slice::setImageSource(const ImageSource& source)
{
    imageSource.reset(source.clone());
}

bool Slice::isEmpty() const
{
    return !imageSource || !imageSource->isDefined();
}

int Slice::width() const
{
    const int columns = getImageSource().getSize2();
    const float ratio = aspectRatio(pixelCalibration, "int Slice::width() const");
    return ratio > 1.0f ? nearestInteger(static_cast<float>(columns) / ratio) : columns;
}

int Slice::height() const
{
    const int rows = getImageSource().getSize1();
    const float ratio = aspectRatio(pixelCalibration, "int Slice::height() const");
    return ratio > 1.0f ? rows : nearestInteger(ratio * static_cast<float>(rows));
}

BoundingBox<int> Slice::boundingBox() const
{
    Vector<int> lower(2);
    lower.setZeros();
    Vector<int> upper(2);
    upper[0] = width() - 1;
    upper[1] = height() - 1;
    return BoundingBox<int>(lower, upper);
}

void Slice::sizeForSize(unsigned& w, unsigned& h) const
{
    const auto ownWidth = static_cast<unsigned long long>(width());
    const auto ownHeight = static_cast<unsigned long long>(height());
    const unsigned long long p = ownWidth * h;
    const unsigned long long q = ownHeight * w;
    if (p > q) {
        h = quotient(q, ownWidth);
    } else if (p < q) {
        w = quotient(p, ownHeight);
    }
}

void Slice::load(Image0& image) const
{
    const int columns = width();
    const int rows = height();
    ImageReader reader;
    reader.read(image, getImageSource());
    if (columns < 1 || rows < 1) {
        raise<SizeError>("void Slice::load(Image0&) const",
                         "The image of slice \"" + name + "\" has no size");
    }
    ResizeXForm resize(InterpolationMode::Nearest);
    resize.setSize(columns, rows);
    resize.apply(image);
}
