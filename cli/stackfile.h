#pragma once

#include "interface/lmxstack.h"

#include <functional>
#include <string>
#include <vector>

class CommandLine;
class FileError;
class Report;

/// The stack file that a subcommand works on, read whole.
class StackFile
{
public:
    /// Declares the option that names another file for the result, and that which lets the result
    /// replace one.
    static void declareOutput(CommandLine& line);

    /// The option that lets the result replace a file that no subcommand wrote.
    static void declareReplace(CommandLine& line);

    /// The file for the result: that of the option, else the one that is read, the first argument.
    /// Throws `UsageFailure` if another stack lies there that has to be replaced by the option.
    static std::string outputOf(const CommandLine& line);

    /// Reads the file. Throws `Failure` if something of it can't be read; what is merely not as it
    /// should be, a missing image for one, is noted.
    StackFile(const std::string& path, Report& report);

    LMXStack& stack() { return stack_; }

    const std::string& path() const { return path_; }

    /// Writes the stack; errors as for `writeStack`. The result is the work of subcommands if what
    /// was read is.
    void write(const std::string& output);

private:
    void read(Report& report);

    LMXStack stack_;
    std::string path_;
    bool own_ = false;
};

/// Writes a stack file that is all the work of subcommands, or not `own`, or throws `Failure` with the reason; a file that was there then stays whole.
void writeStack(LMXStack& stack, const std::string& path, bool own = true);

/// Throws `Failure` if the stack has something that a stack file has no form for, a name with a
/// double quote for one; so that long work is not lost at its end.
void checkStorable(const LMXStack& stack, const std::string& path);

/// Throws `Failure` if a slice has a name that a table has no form for, with a TAB or a line break.
void checkTableNames(const LMXStack& stack);

/// The files from which the image of a slice comes.
std::vector<std::string> imageFiles(const StackSlice& slice);

/// Does work on a slice, and gives what stood in its way, with file and slice; empty for nothing.
std::string faultOn(const StackSlice& slice, const std::function<void()>& work);

/// The message of an error with the file and the slice whose image that is, if one is.
std::string describe(const FileError& error, const Stack& stack);
