#pragma once

#include <tuple>
#include <vector>

/// A vertex of an item, or a whole item, by their places in the lists of a slice. A place outlives
/// any change of the document: who uses it looks first whether it still names something.
struct VertexPlace
{
    static constexpr int wholeItem = -1;

    int item = 0;
    int vertex = wholeItem;

    bool isWholeItem() const { return vertex == wholeItem; }

    bool operator==(const VertexPlace& other) const
    {
        return item == other.item && vertex == other.vertex;
    }

    bool operator!=(const VertexPlace& other) const { return !(*this == other); }

    bool operator<(const VertexPlace& other) const
    {
        return std::tie(item, vertex) < std::tie(other.item, other.vertex);
    }
};

using VertexPlaces = std::vector<VertexPlace>;
