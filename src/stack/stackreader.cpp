#include "stack/stackreader.h"

#include "stack/pose.h"
#include "stack/stack.h"
#include "stack/stackfileparser.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace {

/// The bytes of a file; nothing if it can't be read, with the reason in `errno`. Only plain files
/// are read: a device may have no end.
std::optional<std::string> contentOf(const std::string& path)
{
    std::error_code unknown;
    const std::filesystem::file_status status = std::filesystem::status(path, unknown);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
        errno = std::filesystem::is_directory(status) ? EISDIR : EINVAL;
        return std::nullopt;
    }
    errno = 0;
    std::ifstream stream(path, std::ios_base::binary);
    std::string content;
    std::vector<char> block(1 << 16);
    while (stream) {
        stream.read(block.data(), static_cast<std::streamsize>(block.size()));
        content.append(block.data(), static_cast<std::size_t>(stream.gcount()));
    }
    return stream.eof() ? std::optional<std::string>(std::move(content)) : std::nullopt;
}

void makeEmpty(Stack& stack)
{
    stack.clear();
    while (stack.getNumPoses() > 0) {
        const std::unique_ptr<Pose> pose(&stack.getPose(0));
        stack.removePose(0);
    }
    const Stack fresh;
    stack.setName(fresh.getName());
    stack.setAnnotation(fresh.getAnnotation());
    stack.setImagesPath(fresh.getImagesPath());
    stack.setAbsoluteImagesPathPolicy(fresh.getAbsoluteImagesPathPolicy());
    stack.setInvertedZAxis(fresh.hasInvertedZAxis());
    stack.setDefaultSliceThickness(fresh.getDefaultSliceThickness());
    stack.setDefaultSliceSpacing(fresh.getDefaultSliceSpacing());
    stack.setDefaultPixelCalibration(fresh.getDefaultPixelCalibration());
}

} // namespace

bool StackReader::read(Stack& stack, const std::string& path)
{
    log.clear();
    numFatalErrors = 0;
    fileFormatVersion = StackIO().getFileFormatVersion();
    std::optional<std::string> content = contentOf(path);
    if (!content) {
        fail(path + ": the file can't be read: " + std::strerror(errno));
        return false;
    }
    const bool endsInLine = !content->empty() && content->back() == '\n';
    const auto lines = 1 + std::count(content->begin(), content->end(), '\n');
    StackFileParser parser(*this, stack, path, std::move(*content));
    if (!parser.isStackFile()) {
        fail(path + ":1: the file is no stack description file");
        return false;
    }
    makeEmpty(stack);
    parser.run();
    if (!endsInLine && numFatalErrors == 0) {
        tell(path + ":" + std::to_string(lines) +
             ": the file does not end in a line feed, as stack files do: it may be cut off");
    }
    return numFatalErrors == 0;
}

void StackReader::tell(const std::string& message)
{
    log.push_back(message);
    notifyWarning(message);
}

void StackReader::fail(const std::string& message)
{
    log.push_back(message);
    ++numFatalErrors;
    notifyError(message);
}
