#pragma once

#include <string>

/// What a TIFF file was made from, as `ImageWriter::setOrigin` left it in the first page; empty where
/// nothing is stated, and for what is no TIFF file. Raises nothing.
std::string tiffOrigin(const std::string& path);
