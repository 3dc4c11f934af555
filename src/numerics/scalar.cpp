#include "numerics/scalar.h"

#include "system/exception.h"

#include <locale>
#include <sstream>
#include <type_traits>
#include <utility>

/// Calls `function` with the pointer to the value in its own type.
template <class Function>
void Scalar::visit(const char* where, Function function) const
{
    switch (type_) {
    case 0:
        return function(static_cast<unsigned char*>(value_));
    case 1:
        return function(static_cast<unsigned short*>(value_));
    case 2:
        return function(static_cast<short*>(value_));
    case 3:
        return function(static_cast<int*>(value_));
    case 4:
        return function(static_cast<unsigned int*>(value_));
    case 5:
        return function(static_cast<float*>(value_));
    case 6:
        return function(static_cast<double*>(value_));
    default:
        raise<ProgramError>(where, "unknown value type");
    }
}

template <class T>
Scalar::Scalar(T value, int type)
    : value_(new T(value))
    , type_(type)
{}

Scalar::Scalar(unsigned char value)
    : Scalar(value, 0)
{}

Scalar::Scalar(unsigned short value)
    : Scalar(value, 1)
{}

Scalar::Scalar(short value)
    : Scalar(value, 2)
{}

Scalar::Scalar(int value)
    : Scalar(value, 3)
{}

Scalar::Scalar(unsigned int value)
    : Scalar(value, 4)
{}

Scalar::Scalar(float value)
    : Scalar(value, 5)
{}

Scalar::Scalar(double value)
    : Scalar(value, 6)
{}

Scalar::Scalar(const Scalar& other)
    : type_(other.type_)
{
    if (other.value_ != nullptr) {
        other.visit("Scalar::Scalar(const Scalar&)", [this](auto* value) {
            value_ = new std::remove_pointer_t<decltype(value)>(*value);
        });
    }
}

Scalar::Scalar(Scalar&& other) noexcept
    : value_(std::exchange(other.value_, nullptr))
    , type_(other.type_)
{}

Scalar::~Scalar()
{
    destroy();
}

Scalar& Scalar::operator=(const Scalar& other)
{
    return *this = Scalar(other);
}

Scalar& Scalar::operator=(Scalar&& other) noexcept
{
    std::swap(value_, other.value_);
    std::swap(type_, other.type_);
    if (this != &other) {
        other.destroy();
    }
    return *this;
}

void Scalar::destroy()
{
    if (value_ != nullptr) {
        visit("void Scalar::destroy()", [](auto* value) { delete value; });
        value_ = nullptr;
    }
}

template <class T>
T Scalar::toType() const
{
    const char* const where = "T Scalar::toType() const";
    if (value_ == nullptr) {
        raise<UsageError>(where, "This scalar is empty");
    }
    T result{};
    visit(where, [&result](const auto* value) { result = static_cast<T>(*value); });
    return result;
}

Scalar::operator unsigned char() const
{
    return toType<unsigned char>();
}

Scalar::operator unsigned short() const
{
    return toType<unsigned short>();
}

Scalar::operator short() const
{
    return toType<short>();
}

Scalar::operator int() const
{
    return toType<int>();
}

Scalar::operator unsigned int() const
{
    return toType<unsigned int>();
}

Scalar::operator float() const
{
    return toType<float>();
}

Scalar::operator double() const
{
    return toType<double>();
}

std::string Scalar::toString() const
{
    const char* const where = "std::string Scalar::toString() const";
    if (value_ == nullptr) {
        raise<UsageError>(where, "This scalar is empty");
    }
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    // The sign promotes small integers to int, so that they do not print as characters.
    visit(where, [&stream](const auto* value) { stream << +*value; });
    return stream.str();
}

bool Scalar::operator==(const Scalar& other) const
{
    if (value_ == nullptr || other.value_ == nullptr) {
        return value_ == other.value_;
    }
    return toString() == other.toString();
}

bool Scalar::operator!=(const Scalar& other) const
{
    return !(*this == other);
}
