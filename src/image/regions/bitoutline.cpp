#include "image/regions/bitoutline.h"

#include "image/regions/outlinetrace.h"
#include "shape/curves/curve.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace {

using Word = BitPlane::Word;
using outlinetrace::Position;

/// The pixels whose left and right neighbours are set too; none at the ends of the row, nor in a row
/// outside the image.
void innerOfRow(const BitPlane& image, int i, std::vector<Word>& inner)
{
    if (i < 0 || i >= image.rows()) {
        std::fill(inner.begin(), inner.end(), 0);
        return;
    }
    const Word* row = image.row(i);
    Word before = 0;
    for (int k = 0; k < image.width(); ++k) {
        const Word after = k + 1 < image.width() ? row[k + 1] : 0;
        inner[static_cast<std::size_t>(k)] =
            row[k] & (row[k] << 1 | before >> 63) & (row[k] >> 1 | after << 63);
        before = row[k];
    }
}

Position startOf(const BitPlane& edges)
{
    for (int i = edges.rows() - 1; i >= 0; --i) {
        const Word* row = edges.row(i);
        const Word* found = std::find_if(row, row + edges.width(), [](Word w) { return w != 0; });
        if (found != row + edges.width()) {
            const int word = static_cast<int>(found - row);
            return {i, word * BitPlane::wordBits + __builtin_ctzll(*found)};
        }
    }
    return {0, 0};
}

} // namespace

BitPlane edgesOf(const BitPlane& image)
{
    BitPlane edges = image;
    const std::size_t width = static_cast<std::size_t>(image.width());
    std::vector<Word> above(width);
    std::vector<Word> current(width);
    std::vector<Word> below(width);
    innerOfRow(image, 0, below);
    for (int i = 0; i < image.rows(); ++i) {
        std::swap(above, current);
        std::swap(current, below);
        innerOfRow(image, i + 1, below);
        Word* row = edges.row(i);
        for (std::size_t k = 0; k < width; ++k) {
            row[k] &= ~(above[k] & current[k] & below[k]);
        }
    }
    return edges;
}

Curve<int> outlineOf(const BitPlane& image)
{
    const BitPlane edges = edgesOf(image);
    const auto isEdge = [&edges](const Position& p) {
        return p.row >= 0 && p.row < edges.rows() && p.column >= 0 && p.column < edges.columns() &&
               edges(p.row, p.column);
    };
    const std::vector<Position> vertices = outlinetrace::follow(startOf(edges), 0, isEdge);
    const int size = static_cast<int>(vertices.size());
    Curve<int> outline(2, size, size, 0, false);
    for (int k = 0; k < size; ++k) {
        outline[k][0] = vertices[static_cast<std::size_t>(k)].column;
        outline[k][1] = vertices[static_cast<std::size_t>(k)].row;
    }
    return outline;
}
