#include "system/exception.h"

Exception::Exception()
    : Exception("Undocumented error")
{}

Exception::Exception(const char* defaultWhat)
    : where_("<unknown>")
    , what_(defaultWhat)
    , calls_("<unknown>")
{}

Exception::~Exception() = default;

void Exception::addWhere(const std::string& where)
{
    ++callCount_;
    const std::string entry = "[" + std::to_string(callCount_) + "] " + where;
    if (callCount_ == 1) {
        calls_ = entry;
    } else {
        calls_ += "\n  " + entry;
    }
}

std::string Exception::callStack() const
{
    std::string trail = "[0] " + where_;
    if (callCount_ != 0) {
        trail += "\n" + calls_;
    }
    return trail;
}

void Exception::print(std::ostream& stream) const
{
    stream << "Exception raised:\n";
    stream << "  What: " << what_ << "\n";
    stream << "  Where: " << where_ << "\n";
    stream << "  Calls: " << callStack() << "\n";
}

std::ostream& operator<<(std::ostream& stream, const Exception& exception)
{
    exception.print(stream);
    return stream;
}

FatalError::FatalError()
    : Exception("Undocumented fatal error")
{}

FileError::FileError()
    : FileError("Undocumented file error")
{}

FileError::FileError(const char* defaultWhat)
    : Exception(defaultWhat)
{}

void FileError::print(std::ostream& stream) const
{
    Exception::print(stream);
    stream << "  Filename: " << filename_ << "\n";
}

FileFormatError::FileFormatError()
    : FileError("Undocumented file format error")
{}

FileReadError::FileReadError()
    : FileError("Undocumented file read error")
{}

FileWriteError::FileWriteError()
    : FileError("Undocumented file write error")
{}

MathError::MathError()
    : Exception("Undocumented mathematical error")
{}

NameError::NameError()
    : Exception("Undocumented name error")
{}

ProgramError::ProgramError()
    : Exception("Undocumented program error")
{}

SizeError::SizeError()
    : Exception("Undocumented size error")
{}

TypeError::TypeError()
    : Exception("Undocumented type error")
{}

UsageError::UsageError()
    : Exception("Undocumented usage error")
{}

ValueError::ValueError()
    : ValueError("Undocumented value error")
{}

ValueError::ValueError(const char* defaultWhat)
    : Exception(defaultWhat)
{}

RangeError::RangeError()
    : ValueError("Undocumented range error")
{}
