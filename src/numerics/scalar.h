#pragma once

#include <string>

/// One number whose type is chosen at run time, or nothing.
///
/// Holds an `unsigned char`, `unsigned short`, `short`, `int`, `unsigned int`, `float` or `double`
/// on the heap; the position in this list is the type's code.
class Scalar
{
public:
    /// Empty.
    Scalar() = default;
    Scalar(unsigned char value);
    Scalar(unsigned short value);
    Scalar(short value);
    Scalar(int value);
    Scalar(unsigned int value);
    Scalar(float value);
    Scalar(double value);

    /// A new heap value of the same type.
    Scalar(const Scalar& other);

    /// Takes the value and leaves `other` empty.
    Scalar(Scalar&& other) noexcept;
    ~Scalar();
    Scalar& operator=(const Scalar& other);
    Scalar& operator=(Scalar&& other) noexcept;

    bool isEmpty() const { return value_ == nullptr; }

    /// The code of the type; means nothing while this is empty.
    int type() const { return type_; }

    /// The stored value converted as by a cast. `UsageError` if there is none, as the next ones.
    operator unsigned char() const;
    operator unsigned short() const;
    operator short() const;
    operator int() const;
    operator unsigned int() const;
    operator float() const;
    operator double() const;

    /// The value as a default stream prints it, whatever the locale; small integers as numbers.
    std::string toString() const;

    /// The texts are equal, so the types need not be; an empty scalar equals only another one.
    bool operator==(const Scalar& other) const;
    bool operator!=(const Scalar& other) const;

private:
    template <class T>
    Scalar(T value, int type);
    template <class T>
    T toType() const;
    template <class Function>
    void visit(const char* where, Function function) const;
    void destroy();

    void* value_ = nullptr;
    int type_ = 0;
};
