#pragma once

#include "interface/lmxstack.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

/// Makes live stacks of files, and tells what a user should know about them.
class DocumentFiles
{
public:
    /// Called before each photograph that has to be converted, with its number and how many
    /// photographs there are; false ends the work.
    using Progress = std::function<bool(int, int)>;

    static bool isStackFile(const std::string& path);

    void setProgress(Progress progress) { progress_ = std::move(progress); }

    /// A stack file, or photographs that become a new stack, unsaved and named after their folder.
    /// Null if the progress ended the work. Raises `UsageError` for a stack file among other files,
    /// `FileFormatError` with the first messages of the reader for one that can't be read without
    /// loss, and the errors of `StackBuilder`.
    std::unique_ptr<LMXStack> open(const std::vector<std::string>& paths);

    /// The stack of `document` with changes that were never saved to it, as a copy beside or far
    /// from it holds them. Raises what `open` does.
    std::unique_ptr<LMXStack> openCopy(const std::string& copy, const std::string& document);

    /// What the last `open` has to tell, a sentence each.
    const std::vector<std::string>& getNotes() const { return notes_; }

private:
    std::unique_ptr<LMXStack> openStack(const std::string& path);
    std::unique_ptr<LMXStack> openPhotographs(const std::vector<std::string>& paths);

    Progress progress_;
    std::vector<std::string> notes_;
};
