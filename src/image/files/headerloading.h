#pragma once

#include <memory>
#include <string>

class ImageHeader;

/// What the sources that name a file share.

/// A copy of a header that may be null.
std::unique_ptr<ImageHeader> copyOf(const std::unique_ptr<ImageHeader>& header);

/// Replaces `header` by a new one and fills it from the file. An error goes on with the operation
/// `where` added to its trail; the header then is incomplete.
void loadHeader(std::unique_ptr<ImageHeader>& header, const std::string& path, const char* where);
