#pragma once

#include "shape/vertices/vertices.h"

#include <optional>
#include <string>

/// Integer vertices as a short text without blanks, for a note in a stack file.
///
/// Each vertex is the step from the one before it (from (0, 0) the first): one printable character
/// for a step of at most 4 along both axes, else `~dx,dy~`. No character has a meaning in stack files.
class VertexCode
{
public:
    static std::string encode(const Vertices<int>& vertices);

    /// Nothing if the text is no such code, or a coordinate lies beyond 100000.
    static std::optional<Vertices<int>> decode(const std::string& code);

    /// 16 hexadecimal digits from the number of vertices and their coordinates in order.
    static std::string checksum(const Vertices<int>& vertices);
};
