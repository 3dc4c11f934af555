#include "host/document/documentfiles.h"

#include "interface/photographimport.h"
#include "interface/stackbuilder.h"
#include "stack/stackreader.h"
#include "system/exception.h"
#include "system/fileinfo.h"

#include <algorithm>
#include <filesystem>

bool DocumentFiles::isStackFile(const std::string& path)
{
    return FileInfo::suffixName(path) == "sdf";
}

std::unique_ptr<LMXStack> DocumentFiles::open(const std::vector<std::string>& paths)
{
    notes_.clear();
    if (paths.size() == 1 && isStackFile(paths.front())) {
        std::unique_ptr<LMXStack> stack = openStack(paths.front());
        stack->setFilename(paths.front());
        stack->setModified(false);
        return stack;
    }
    if (paths.empty() || std::any_of(paths.begin(), paths.end(), isStackFile)) {
        raise<UsageError>("unique_ptr<LMXStack> DocumentFiles::open(const vector<string>&)",
                          "Either one stack file or photographs can be opened");
    }
    return openPhotographs(paths);
}

std::unique_ptr<LMXStack> DocumentFiles::openCopy(const std::string& copy,
                                                  const std::string& document)
{
    notes_.clear();
    std::unique_ptr<LMXStack> stack = openStack(copy);
    stack->setFilename(document);
    stack->setModified(true);
    return stack;
}

std::unique_ptr<LMXStack> DocumentFiles::openStack(const std::string& path)
{
    auto stack = std::make_unique<LMXStack>();
    StackReader reader;
    if (!reader.read(*stack, path)) {
        constexpr std::size_t shown = 5;
        std::string what = "The stack can't be read";
        for (std::size_t i = 0; i < std::min(shown, reader.getLog().size()); ++i) {
            what += "\n" + reader.getLog()[i];
        }
        raiseFile<FileFormatError>("unique_ptr<LMXStack> DocumentFiles::openStack(const string&)",
                                   what, path);
    }
    stack->updateReconstruction();
    notes_ = reader.getLog();
    return stack;
}

std::unique_ptr<LMXStack> DocumentFiles::openPhotographs(const std::vector<std::string>& paths)
{
    const std::filesystem::path folder =
        std::filesystem::absolute(paths.front()).lexically_normal().parent_path();
    auto stack = std::make_unique<LMXStack>();
    stack->setName(folder.filename().string());
    StackBuilder builder;
    builder.setFolder(folder.string());
    const int count = static_cast<int>(paths.size());
    for (int i = 0; i < count; ++i) {
        const std::string& path = paths[static_cast<std::size_t>(i)];
        if (progress_ && !PhotographImport::isTiff(path) && !progress_(i, count)) {
            return nullptr;
        }
        builder.build(*stack, {path});
        notes_.insert(notes_.end(), builder.getNotes().begin(), builder.getNotes().end());
    }
    stack->setModified(true);
    return stack;
}
