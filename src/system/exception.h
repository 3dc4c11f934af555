#pragma once

#include <ostream>
#include <string>

/// Base of every error that ends an operation.
///
/// `where` is the signature of the operation that raised it, as text and with template parameters
/// left symbolic; `what` is the message. Code that passes an error on may extend the call trail
/// with `addCall`. Errors are thrown by value and caught by reference.
class Exception
{
public:
    Exception();
    virtual ~Exception();

    void setWhere(const std::string& where) { where_ = where; }

    const std::string& getWhere() const { return where_; }

    void setWhat(const std::string& what) { what_ = what; }

    const std::string& getWhat() const { return what_; }

    /// Extends the call trail by one numbered entry.
    void addWhere(const std::string& where);

    /// The same as `addWhere`.
    void addCall(const std::string& call) { addWhere(call); }

    /// Entry 0 is the operation that raised the error; the trail follows if there is one.
    std::string callStack() const;

    /// Writes message, operation and trail, a line each; the stream operator calls it.
    virtual void print(std::ostream& stream) const;

protected:
    explicit Exception(const char* defaultWhat);

private:
    std::string where_;
    std::string what_;
    std::string calls_;
    int callCount_ = 0;
};

std::ostream& operator<<(std::ostream& stream, const Exception& exception);

/// An error that no caller can mend.
class FatalError : public Exception
{
public:
    FatalError();
};

/// Base of the failures of reading and writing; adds the name of the file.
class FileError : public Exception
{
public:
    FileError();

    void setFilename(const std::string& filename) { filename_ = filename; }

    const std::string& getFilename() const { return filename_; }

    void print(std::ostream& stream) const override;

protected:
    explicit FileError(const char* defaultWhat);

private:
    std::string filename_;
};

/// The file is there, but is not what its format demands.
class FileFormatError : public FileError
{
public:
    FileFormatError();
};

/// The file can't be opened or read.
class FileReadError : public FileError
{
public:
    FileReadError();
};

/// The file can't be created or written.
class FileWriteError : public FileError
{
public:
    FileWriteError();
};

/// A computation without a result: singular, divided by zero, not converging.
class MathError : public Exception
{
public:
    MathError();
};

/// A name that does not exist, or exists already.
class NameError : public Exception
{
public:
    NameError();
};

/// A fault of this program itself.
class ProgramError : public Exception
{
public:
    ProgramError();
};

/// Sizes that do not fit each other or the operation.
class SizeError : public Exception
{
public:
    SizeError();
};

/// An operation that has no meaning for the element type.
class TypeError : public Exception
{
public:
    TypeError();
};

/// An operation called in a state that does not allow it.
class UsageError : public Exception
{
public:
    UsageError();
};

/// A value that the operation can't take.
class ValueError : public Exception
{
public:
    ValueError();

protected:
    explicit ValueError(const char* defaultWhat);
};

/// A value outside its range.
class RangeError : public ValueError
{
public:
    RangeError();
};

/// Throws an `Error` raised by the operation `where` with the message `what`.
template <class Error>
[[noreturn]] void raise(const std::string& where, const std::string& what)
{
    Error error;
    error.setWhere(where);
    error.setWhat(what);
    throw error;
}

/// Throws a file error (`FileError` or a class derived from it) about the file `filename`.
template <class Error>
[[noreturn]] void
raiseFile(const std::string& where, const std::string& what, const std::string& filename)
{
    Error error;
    error.setWhere(where);
    error.setWhat(what);
    error.setFilename(filename);
    throw error;
}
