#include "cli/vertexcode.h"

#include <charconv>
#include <cstdint>
#include <cstdlib>

namespace {

constexpr int reach = 4;
constexpr int side = 2 * reach + 1;
constexpr int farthest = 100000;
constexpr char longStep = '~';

/// The characters of the short steps, in the order of their numbers.
const std::string& alphabet()
{
    static const std::string characters = [] {
        std::string text;
        for (char c = '!'; static_cast<int>(text.size()) < side * side; ++c) {
            if (c != '"' && c != ';' && c != '_' && c != longStep) {
                text += c;
            }
        }
        return text;
    }();
    return characters;
}

/// Reads "dx,dy~" and moves `place` behind it.
bool readLongStep(const std::string& code, std::size_t& place, int& dx, int& dy)
{
    const char* end = code.data() + code.size();
    const auto first = std::from_chars(code.data() + place, end, dx);
    if (first.ec != std::errc() || first.ptr == end || *first.ptr != ',') {
        return false;
    }
    const auto second = std::from_chars(first.ptr + 1, end, dy);
    if (second.ec != std::errc() || second.ptr == end || *second.ptr != longStep) {
        return false;
    }
    place = static_cast<std::size_t>(second.ptr + 1 - code.data());
    return std::abs(dx) <= 2 * farthest && std::abs(dy) <= 2 * farthest;
}

} // namespace

std::string VertexCode::encode(const Vertices<int>& vertices)
{
    std::string code;
    int x = 0;
    int y = 0;
    for (int i = 0; i < vertices.getSize(); ++i) {
        const int dx = vertices[i][0] - x;
        const int dy = vertices[i][1] - y;
        x += dx;
        y += dy;
        if (std::abs(dx) <= reach && std::abs(dy) <= reach) {
            code += alphabet()[static_cast<std::size_t>((dx + reach) * side + dy + reach)];
        } else {
            code += longStep + std::to_string(dx) + ',' + std::to_string(dy) + longStep;
        }
    }
    return code;
}

std::optional<Vertices<int>> VertexCode::decode(const std::string& code)
{
    Vertices<int> vertices(2, 0, 0, 1024);
    Vector<int> vertex(2);
    vertex[0] = vertex[1] = 0;
    for (std::size_t place = 0; place < code.size();) {
        int dx = 0;
        int dy = 0;
        const char c = code[place++];
        if (c == longStep) {
            if (!readLongStep(code, place, dx, dy)) {
                return std::nullopt;
            }
        } else {
            const std::size_t number = alphabet().find(c);
            if (number == std::string::npos) {
                return std::nullopt;
            }
            dx = static_cast<int>(number) / side - reach;
            dy = static_cast<int>(number) % side - reach;
        }
        vertex[0] += dx;
        vertex[1] += dy;
        if (std::abs(vertex[0]) > farthest || std::abs(vertex[1]) > farthest) {
            return std::nullopt;
        }
        vertices.append(vertex);
    }
    return vertices;
}

// FNV-1a, 64 bits.
std::string VertexCode::checksum(const Vertices<int>& vertices)
{
    std::uint64_t hash = 0xcbf29ce484222325u;
    const auto add = [&hash](int value) {
        for (int shift = 0; shift < 32; shift += 8) {
            hash ^= static_cast<std::uint32_t>(value) >> shift & 0xffu;
            hash *= 0x100000001b3u;
        }
    };
    add(vertices.getSize());
    for (int i = 0; i < vertices.getSize(); ++i) {
        add(vertices[i][0]);
        add(vertices[i][1]);
    }
    char digits[17] = "0000000000000000";
    char text[17];
    const auto end = std::to_chars(text, text + sizeof text, hash, 16);
    const auto length = static_cast<std::size_t>(end.ptr - text);
    return std::string(digits, 16 - length) + std::string(text, length);
}
