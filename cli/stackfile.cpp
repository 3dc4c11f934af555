#include "cli/stackfile.h"

#include "cli/commandline.h"
#include "cli/failure.h"
#include "cli/outputs.h"
#include "cli/ownfiles.h"
#include "cli/report.h"
#include "cli/runrecord.h"
#include "image/sources/imagesourcekinds.h"
#include "stack/stackreader.h"
#include "stack/stackslice.h"
#include "stack/stackwriter.h"
#include "system/exception.h"
#include "system/fileinfo.h"

#include <algorithm>
#include <filesystem>
#include <new>
#include <sstream>

void StackFile::declareOutput(CommandLine& line)
{
    line.addOption("o", "Writes the stack to this file, and leaves the one read as it is.",
                   "OUT.sdf");
    if (!line.declares("replace")) {
        declareReplace(line);
    }
}

void StackFile::declareReplace(CommandLine& line)
{
    line.addFlag("replace", "Writes over files that have changes by hand, or that crenara did not "
                            "write at all.");
}

std::string StackFile::outputOf(const CommandLine& line)
{
    if (!line.isSet("o")) {
        return line.argument(0);
    }
    const std::string output = line.required("o");
    requireSuffix(output, "sdf");
    std::error_code missing;
    if (!std::filesystem::equivalent(output, line.argument(0), missing)) {
        OwnFiles::requireReplaceable(output, OwnFiles::isAsWritten, line.isSet("replace"));
    }
    return output;
}

StackFile::StackFile(const std::string& path, Report& report)
    : path_(path)
    , own_(OwnFiles::isAsWritten(path))
{
    read(report);
}

void StackFile::write(const std::string& output)
{
    writeStack(stack_, output, own_);
}

void StackFile::read(Report& report)
{
    constexpr int shown = 5;
    StackReader reader;
    bool whole = false;
    try {
        whole = reader.read(stack_, path_);
    } catch (const std::bad_alloc&) {
        throw Failure(path_ + ": the stack can't be read: there is not enough memory");
    }
    const std::vector<std::string>& log = reader.getLog();
    const int lines =
        whole ? static_cast<int>(log.size()) : std::min(shown, static_cast<int>(log.size()));
    for (int i = 0; i < lines; ++i) {
        report.note(log[static_cast<std::size_t>(i)]);
    }
    if (!whole) {
        const int faults = std::max(1, reader.getNumFatalErrors());
        throw Failure(path_ + ": the stack can't be read: " + std::to_string(faults) +
                      (faults == 1 ? " fault" : " faults"));
    }
    const std::string record = folderOf(path_) + "/" + FileInfo::baseName(path_) + "_run.json";
    if (!own_ && RunRecord::tellsOtherStack(record, path_)) {
        report.note(path_ + ": the stack is not the one that " + record +
                    " tells of: it was changed since then, or cut off");
    }
    stack_.setFilename(path_);
    stack_.setModified(false);
}

void writeStack(LMXStack& stack, const std::string& path, bool own)
{
    checkWritable(path);
    try {
        if (!stack.write(path)) {
            throw Failure(path + ": the stack can't be written");
        }
    } catch (const FileError&) {
        throw;
    } catch (const Exception& error) {
        throw Failure(path + ": the stack can't be written: " + error.getWhat());
    }
    OwnFiles::noteWritten(path, own);
}

void checkStorable(const LMXStack& stack, const std::string& path)
{
    try {
        std::ostringstream trial;
        StackWriter().writeSlices(stack, FileInfo::dirName(path), trial);
    } catch (const FileError&) {
        throw;
    } catch (const Exception& error) {
        throw Failure(path + ": the stack can't be written: " + error.getWhat());
    }
}

void checkTableNames(const LMXStack& stack)
{
    for (int i = 0; i < stack.getNumSlices(); ++i) {
        const std::string& name = stack.getSlice(i).getName();
        if (name.find_first_of("\t\r\n") != std::string::npos) {
            throw Failure(stack.getFilename() + ": slice '" + name +
                          "': tables can't hold a name with a TAB or a line break");
        }
    }
}

std::vector<std::string> imageFiles(const StackSlice& slice)
{
    return slice.isEmpty() ? std::vector<std::string>() : filesOf(slice.getImageSource());
}

std::string describe(const FileError& error, const Stack& stack)
{
    const std::string& filename = error.getFilename();
    for (int i = 0; i < stack.getNumSlices(); ++i) {
        const StackSlice& slice = stack.getSlice(i);
        const std::vector<std::string> files = imageFiles(slice);
        if (std::find(files.begin(), files.end(), filename) != files.end()) {
            return filename + ": slice " + slice.getName() + ": " + error.getWhat();
        }
    }
    return filename + ": " + error.getWhat();
}

std::string faultOn(const StackSlice& slice, const std::function<void()>& work)
{
    const std::vector<std::string> files = imageFiles(slice);
    const std::string named = ": slice " + slice.getName() + ": ";
    const std::string own = (files.empty() ? slice.getStack()->getName() : files.front()) + named;
    try {
        work();
    } catch (const FileError& error) {
        return error.getFilename() + named + error.getWhat();
    } catch (const Exception& error) {
        return own + error.getWhat();
    } catch (const std::bad_alloc&) {
        return own + "there is not enough memory";
    }
    return "";
}
