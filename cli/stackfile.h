#pragma once

#include "interface/lmxstack.h"

#include <string>
#include <vector>

class CommandLine;
class FileError;
class Report;

/// The stack file that a subcommand works on, read whole.
class StackFile
{
public:
    /// Declares the option that names another file for the result.
    static void declareOutput(CommandLine& line);

    /// The file for the result: that of the option, else the one that is read, the first argument.
    static std::string outputOf(const CommandLine& line);

    /// Reads the file. Throws `Failure` if something of it can't be read; what is merely not as it
    /// should be, a missing image for one, is noted.
    StackFile(const std::string& path, Report& report);

    LMXStack& stack() { return stack_; }

    const std::string& path() const { return path_; }

private:
    void read(Report& report);

    LMXStack stack_;
    std::string path_;
};

/// Writes a stack file, or throws `Failure` with the reason; a file that was there then stays whole.
void writeStack(LMXStack& stack, const std::string& path);

/// Throws `Failure` if the stack has something that a stack file has no form for, a name with a
/// double quote for one; so that long work is not lost at its end.
void checkStorable(const LMXStack& stack, const std::string& path);

/// The files from which the image of a slice comes.
std::vector<std::string> imageFiles(const StackSlice& slice);

/// The message of an error with the file and the slice whose image that is, if one is.
std::string describe(const FileError& error, const Stack& stack);
