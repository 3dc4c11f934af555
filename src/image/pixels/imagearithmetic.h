#pragma once

#include "image/values/valuetype.h"

#include <map>

class Image2;
class Scalar;

/// Arithmetic on all frames of an image, in place on the first argument and in its value type:
/// integers wrap around, nothing saturates. A scalar is converted to that type once.
///
/// Two images must have the same value type (`UsageError`). Each frame of the first meets that of the
/// same channel and timepoint of the other, which may have more; one that is missing or of another
/// size raises `SizeError`. A division of integers by 0 raises `MathError`.
class ImageArithmetic
{
public:
    enum class Operation {
        Add = 0,
        Subtract = 1,
        Multiply = 2,
        Divide = 3,
    };

    enum class UnaryOperation {
        Abs = 0,
    };

    /// The arithmetic of one value type.
    class AbstractImplementation
    {
    public:
        virtual ~AbstractImplementation();
        virtual void apply(Image2& image, UnaryOperation operation) const = 0;
        virtual void apply(Image2& image, const Scalar& scalar, Operation operation) const = 0;
        virtual void apply(Image2& image, const Image2& other, Operation operation) const = 0;
    };

    ImageArithmetic();
    ~ImageArithmetic();
    ImageArithmetic(const ImageArithmetic&) = delete;
    ImageArithmetic& operator=(const ImageArithmetic&) = delete;

    /// Absolute values; leaves unsigned types alone.
    void abs(Image2& image) const;

    void add(Image2& image, const Image2& other) const;
    void add(Image2& image, const Scalar& scalar) const;
    void subtract(Image2& image, const Image2& other) const;
    void subtract(Image2& image, const Scalar& scalar) const;
    void multiply(Image2& image, const Image2& other) const;
    void multiply(Image2& image, const Scalar& scalar) const;
    void divide(Image2& image, const Image2& other) const;
    void divide(Image2& image, const Scalar& scalar) const;

    void apply(Image2& image, UnaryOperation operation) const;
    void apply(Image2& image, const Scalar& scalar, Operation operation) const;
    void apply(Image2& image, const Image2& other, Operation operation) const;

private:
    template <class T>
    class Implementation;

    const AbstractImplementation& implementationFor(const Image2& image, const char* where) const;

    std::map<ValueType, AbstractImplementation*> implementations_;
};
