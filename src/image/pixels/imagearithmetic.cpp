#include "image/pixels/imagearithmetic.h"

#include "image/pixels/image2.h"
#include "numerics/elementarithmetic.h"
#include "numerics/scalar.h"
#include "system/exception.h"

#include <algorithm>
#include <type_traits>

namespace {

const char* const imageWhere = "void ImageArithmetic::apply(Image2&,const Image2&,Operation) const";
const char* const scalarWhere =
    "void ImageArithmetic::apply(Image2&,const Scalar&,Operation) const";

/// The quotient; of the smallest integer and -1 the wrapped one, which the processor refuses.
template <class T>
T quotient(T a, T b)
{
    if constexpr (std::is_integral_v<T> && sizeof(T) <= 2) {
        // Processors divide vectors of floats alone. A quotient that is no integer is farther from
        // the next one than 2^-16 of it, and the rounding less than 2^-24.
        return static_cast<T>(static_cast<int>(static_cast<float>(a) / static_cast<float>(b)));
    } else if constexpr (std::is_integral_v<T> && std::is_signed_v<T>) {
        return b == T(-1) ? negated(a) : divided(a, b);
    } else {
        return divided(a, b);
    }
}

template <class T>
void requireNoZero([[maybe_unused]] const Vector<T>& divisors, [[maybe_unused]] const char* where)
{
    if constexpr (std::is_integral_v<T>) {
        if (divisors.find(T(0)) >= 0) {
            raise<MathError>(where, "Division by zero");
        }
    }
}

template <class T>
void divideBy(Vector<T>& values, const Vector<T>& divisors)
{
    if (values.getSize() != divisors.getSize() || !std::is_integral_v<T>) {
        values /= divisors;
        return;
    }
    requireNoZero(divisors, imageWhere);
    T* const value = values.data();
    const T* const divisor = divisors.data();
    for (int i = 0, size = values.getSize(); i < size; ++i) {
        value[i] = quotient(value[i], divisor[i]);
    }
}

/// Calls `work(channel, timepoint)` for each frame.
template <class Work>
void forEachFrame(const Image2& image, Work work)
{
    for (int channel = 0; channel < image.getNumChannels(); ++channel) {
        for (int timepoint = 0; timepoint < image.getNumTimepoints(); ++timepoint) {
            work(channel, timepoint);
        }
    }
}

} // namespace

ImageArithmetic::AbstractImplementation::~AbstractImplementation() = default;

template <class T>
class ImageArithmetic::Implementation : public AbstractImplementation
{
public:
    void apply(Image2& image, UnaryOperation) const override
    {
        forEachFrame(image, [&](int channel, int timepoint) {
            Vector<T> values = image.asVector<T>(channel, timepoint);
            std::transform(values.data(), values.data() + values.getSize(), values.data(),
                           [](T value) { return absolute(value); });
        });
    }

    void apply(Image2& image, const Scalar& scalar, Operation operation) const override
    {
        Vector<T> value(1);
        value[0] = static_cast<T>(scalar);
        if (operation == Operation::Divide) {
            requireNoZero(value, scalarWhere);
        }
        forEachFrame(image, [&](int channel, int timepoint) {
            Vector<T> values = image.asVector<T>(channel, timepoint);
            apply(values, value[0], operation);
        });
    }

    void apply(Image2& image, const Image2& other, Operation operation) const override
    {
        // A frame that doesn't fit raises the error of the vectors before any frame has changed.
        forEachFrame(image, [&](int channel, int timepoint) {
            Vector<T> values = image.asVector<T>(channel, timepoint);
            const Vector<T> others = other.asVector<T>(channel, timepoint);
            if (values.getSize() != others.getSize()) {
                apply(values, others, operation);
            }
        });
        forEachFrame(image, [&](int channel, int timepoint) {
            Vector<T> values = image.asVector<T>(channel, timepoint);
            apply(values, other.asVector<T>(channel, timepoint), operation);
        });
    }

private:
    static void apply(Vector<T>& values, T scalar, Operation operation)
    {
        switch (operation) {
        case Operation::Add:
            values += scalar;
            break;
        case Operation::Subtract:
            values -= scalar;
            break;
        case Operation::Multiply:
            values *= scalar;
            break;
        case Operation::Divide:
            std::transform(values.data(), values.data() + values.getSize(), values.data(),
                           [scalar](T value) { return quotient(value, scalar); });
            break;
        }
    }

    static void apply(Vector<T>& values, const Vector<T>& others, Operation operation)
    {
        switch (operation) {
        case Operation::Add:
            values += others;
            break;
        case Operation::Subtract:
            values -= others;
            break;
        case Operation::Multiply:
            values *= others;
            break;
        case Operation::Divide:
            divideBy(values, others);
            break;
        }
    }
};

ImageArithmetic::ImageArithmetic()
    : implementations_{{ValueType::UnsignedChar, new Implementation<unsigned char>},
                       {ValueType::Short, new Implementation<short>},
                       {ValueType::UnsignedShort, new Implementation<unsigned short>},
                       {ValueType::Int, new Implementation<int>},
                       {ValueType::UnsignedInt, new Implementation<unsigned int>},
                       {ValueType::Float, new Implementation<float>},
                       {ValueType::Double, new Implementation<double>}}
{}

ImageArithmetic::~ImageArithmetic()
{
    for (const auto& entry : implementations_) {
        delete entry.second;
    }
}

const ImageArithmetic::AbstractImplementation&
ImageArithmetic::implementationFor(const Image2& image, const char* where) const
{
    const auto entry = implementations_.find(image.getValueType());
    if (entry == implementations_.end()) {
        raise<UsageError>(where, "no implementation found for the given image");
    }
    return *entry->second;
}

void ImageArithmetic::abs(Image2& image) const
{
    apply(image, UnaryOperation::Abs);
}

void ImageArithmetic::add(Image2& image, const Image2& other) const
{
    apply(image, other, Operation::Add);
}

void ImageArithmetic::add(Image2& image, const Scalar& scalar) const
{
    apply(image, scalar, Operation::Add);
}

void ImageArithmetic::subtract(Image2& image, const Image2& other) const
{
    apply(image, other, Operation::Subtract);
}

void ImageArithmetic::subtract(Image2& image, const Scalar& scalar) const
{
    apply(image, scalar, Operation::Subtract);
}

void ImageArithmetic::multiply(Image2& image, const Image2& other) const
{
    apply(image, other, Operation::Multiply);
}

void ImageArithmetic::multiply(Image2& image, const Scalar& scalar) const
{
    apply(image, scalar, Operation::Multiply);
}

void ImageArithmetic::divide(Image2& image, const Image2& other) const
{
    apply(image, other, Operation::Divide);
}

void ImageArithmetic::divide(Image2& image, const Scalar& scalar) const
{
    apply(image, scalar, Operation::Divide);
}

void ImageArithmetic::apply(Image2& image, UnaryOperation operation) const
{
    implementationFor(image, "void ImageArithmetic::apply(Image2&,UnaryOperation) const")
        .apply(image, operation);
}

void ImageArithmetic::apply(Image2& image, const Scalar& scalar, Operation operation) const
{
    implementationFor(image, scalarWhere).apply(image, scalar, operation);
}

void ImageArithmetic::apply(Image2& image, const Image2& other, Operation operation) const
{
    if (image.getValueType() != other.getValueType()) {
        raise<UsageError>(imageWhere, "the two images have different numerical types");
    }
    implementationFor(image, imageWhere).apply(image, other, operation);
}
