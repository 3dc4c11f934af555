#pragma once

#include "interface/lmxstack.h"

#include <memory>
#include <string>
#include <vector>

/// Makes live stacks of files, and tells what a user should know about them.
class DocumentFiles
{
public:
    /// A stack file, or photographs that become a new stack, unsaved and named after their folder.
    /// Raises `UsageError` for a stack file among other files, `FileFormatError` with the first
    /// messages of the reader for one that can't be read without loss, and the errors of
    /// `StackBuilder`.
    std::unique_ptr<LMXStack> open(const std::vector<std::string>& paths);

    /// What the last `open` has to tell, a sentence each.
    const std::vector<std::string>& getNotes() const { return notes_; }

private:
    std::unique_ptr<LMXStack> openStack(const std::string& path);
    std::unique_ptr<LMXStack> openPhotographs(const std::vector<std::string>& paths);

    std::vector<std::string> notes_;
};
