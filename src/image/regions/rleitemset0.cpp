#include "image/regions/rleitemset0.h"

#include "image/pixels/pixelmatrix.h"
#include "shape/vertices/boundingbox.h"
#include "shape/vertices/vertices.h"

#include <algorithm>
#include <limits>

namespace {

void requirePosition(const Vector<int>& position, const char* where)
{
    if (position.getSize() != 2) {
        raise<SizeError>(where, "The position does not have two coordinates");
    }
}

Vector<int> pixelAt(int row, int column)
{
    Vector<int> position(2);
    position[0] = row;
    position[1] = column;
    return position;
}

using Iterator = std::vector<RLEItem0>::iterator;

/// The first run that ends at or behind `column`.
Iterator firstEndingFrom(std::vector<RLEItem0>& runs, int column)
{
    return std::lower_bound(runs.begin(), runs.end(), column,
                            [](const RLEItem0& run, int c) { return run.end() < c; });
}

/// The run behind the last one that begins at or before `column`.
Iterator behindBeginningUntil(std::vector<RLEItem0>& runs, int column)
{
    return std::upper_bound(runs.begin(), runs.end(), column,
                            [](int c, const RLEItem0& run) { return c < run.begin(); });
}

} // namespace

int RLEItemSet0::numItems() const
{
    std::size_t items = 0;
    for (const auto& row : rows_) {
        items += row.second.size();
    }
    return static_cast<int>(items);
}

int RLEItemSet0::numVertices() const
{
    int vertices = 0;
    for (const auto& row : rows_) {
        for (const RLEItem0& item : row.second) {
            vertices += item.getLength();
        }
    }
    return vertices;
}

BoundingBox<int> RLEItemSet0::boundingBox() const
{
    if (rows_.empty()) {
        return BoundingBox<int>();
    }
    int first = std::numeric_limits<int>::max();
    int last = std::numeric_limits<int>::min();
    for (const auto& row : rows_) {
        first = std::min(first, row.second.front().begin());
        last = std::max(last, row.second.back().end());
    }
    return BoundingBox<int>(pixelAt(rows_.begin()->first, first),
                            pixelAt(rows_.rbegin()->first, last));
}

const RLEItem0& RLEItemSet0::getItem(int i) const
{
    int left = i;
    for (const auto& row : rows_) {
        const int items = static_cast<int>(row.second.size());
        if (left >= 0 && left < items) {
            return row.second[static_cast<std::size_t>(left)];
        }
        left -= items;
    }
    raise<RangeError>("const RLEItem& RLEItemSet::getItem(const int) const",
                      "There is no such item");
}

Vector<int> RLEItemSet0::vertex(int i) const
{
    int left = i;
    for (const auto& row : rows_) {
        for (const RLEItem0& item : row.second) {
            if (left >= 0 && left < item.getLength()) {
                return item.vertex(left);
            }
            left -= item.getLength();
        }
    }
    raise<RangeError>("Vector<int> RLEItemSet::vertex(const int) const", "There is no such vertex");
}

Vertices<int> RLEItemSet0::vertices() const
{
    const int size = numVertices();
    Vertices<int> result(2, size, size, 0);
    int position = 0;
    for (const auto& row : rows_) {
        for (const RLEItem0& item : row.second) {
            for (int i = 0; i < item.getLength(); ++i) {
                result[position++] = item.vertex(i);
            }
        }
    }
    return result;
}

void RLEItemSet0::addToRow(Runs& runs, const RLEItem0& item)
{
    const Iterator first = firstEndingFrom(runs, item.begin() - 1);
    const Iterator behind = behindBeginningUntil(runs, item.end() + 1);
    if (first >= behind) {
        runs.insert(first, item);
        return;
    }
    const int end = std::max(item.end(), std::prev(behind)->end());
    first->setBegin(std::min(item.begin(), first->begin()));
    first->setEnd(end);
    runs.erase(std::next(first), behind);
}

void RLEItemSet0::removeFromRow(Runs& runs, const RLEItem0& item)
{
    const Iterator first = firstEndingFrom(runs, item.begin());
    const Iterator behind = behindBeginningUntil(runs, item.end());
    if (first >= behind) {
        return;
    }
    Runs left;
    if (first->begin() < item.begin()) {
        left.push_back(*first);
        left.back().setEnd(item.begin() - 1);
    }
    if (std::prev(behind)->end() > item.end()) {
        left.push_back(*std::prev(behind));
        left.back().setBegin(item.end() + 1);
    }
    const Iterator gap = runs.erase(first, behind);
    runs.insert(gap, left.begin(), left.end());
}

void RLEItemSet0::add(const RLEItem0& item)
{
    addToRow(rows_[item.getOrigin()[0]], item);
}

void RLEItemSet0::add(const Vector<int>& position)
{
    requirePosition(position, "void RLEItemSet::add(const Vector<int>&)");
    add(position[0], position[1]);
}

void RLEItemSet0::add(int row, int column)
{
    add(RLEItem0(row, column, 1));
}

void RLEItemSet0::add(const RLEItemSet0& other)
{
    if (this == &other) {
        return;
    }
    for (const auto& row : other.rows_) {
        for (const RLEItem0& item : row.second) {
            add(item);
        }
    }
}

void RLEItemSet0::remove(const RLEItem0& item)
{
    const auto row = rows_.find(item.getOrigin()[0]);
    if (row == rows_.end()) {
        return;
    }
    removeFromRow(row->second, item);
    if (row->second.empty()) {
        rows_.erase(row);
    }
}

void RLEItemSet0::remove(const Vector<int>& position)
{
    requirePosition(position, "void RLEItemSet::remove(const Vector<int>&)");
    remove(RLEItem0(position[0], position[1], 1));
}

void RLEItemSet0::remove(const RLEItemSet0& other)
{
    if (this == &other) {
        clear();
        return;
    }
    for (const auto& row : other.rows_) {
        for (const RLEItem0& item : row.second) {
            remove(item);
        }
    }
}

void RLEItemSet0::setBall(const Vector<int>& centre, int radius)
{
    requirePosition(centre, "void RLEItemSet::setBall(const Vector<int>&, const int)");
    const int row = centre[0];
    const int column = centre[1];
    clear();
    int chord = 0;
    for (int di = -radius; di <= radius; ++di) {
        const long long square = 1LL * radius * radius - 1LL * di * di;
        while (1LL * (chord + 1) * (chord + 1) <= square) {
            ++chord;
        }
        while (1LL * chord * chord > square) {
            --chord;
        }
        add(RLEItem0(row + di, column - chord, 2 * chord + 1));
    }
    add(row, column);
}

void RLEItemSet0::fromMask(const PixelMatrix<int>& mask, int value)
{
    clear();
    for (int i = 0; i < mask.getSize1(); ++i) {
        const int* row = mask[i].data();
        const int* const end = row + mask.getSize2();
        const int* begin = std::find(row, end, value);
        while (begin != end) {
            const int* const behind = std::find_if(begin, end, [&](int v) { return v != value; });
            add(RLEItem0(i, static_cast<int>(begin - row), static_cast<int>(behind - begin)));
            begin = std::find(behind, end, value);
        }
    }
}

void RLEItemSet0::toMask(PixelMatrix<int>& mask, int value, bool add) const
{
    for (const auto& row : rows_) {
        if (row.first < 0 || row.first >= mask.getSize1()) {
            continue;
        }
        int* pixels = mask[row.first].data();
        for (const RLEItem0& item : row.second) {
            const int last = std::min(item.end(), mask.getSize2() - 1);
            for (int j = std::max(item.begin(), 0); j <= last; ++j) {
                pixels[j] = add ? pixels[j] + value : value;
            }
        }
    }
}

void RLEItemSet0::translate(const Vector<int>& shift)
{
    requirePosition(shift, "void RLEItemSet::translate(const Vector<int>&)");
    std::map<int, Runs> moved;
    for (auto& row : rows_) {
        for (RLEItem0& item : row.second) {
            item.translate(shift);
        }
        moved[row.first + shift[0]].swap(row.second);
    }
    rows_.swap(moved);
}

int RLEItemSet0::findNearestVertex(const Vector<int>& position) const
{
    requirePosition(position, "int RLEItemSet::findNearestVertex(const Vector<int>&) const");
    long long smallest = std::numeric_limits<long long>::max();
    int nearest = -1;
    int offset = 0;
    for (const auto& row : rows_) {
        for (const RLEItem0& item : row.second) {
            const int i = item.findNearestVertex(position);
            const long long rows = 1LL * position[0] - row.first;
            const long long columns = 1LL * position[1] - (item.begin() + i);
            if (rows * rows + columns * columns < smallest) {
                smallest = rows * rows + columns * columns;
                nearest = offset + i;
            }
            offset += item.getLength();
        }
    }
    return nearest;
}

int RLEItemSet0::findNearVertex(const Vector<int>& position, int tolerance) const
{
    const int nearest = findNearestVertex(position);
    if (nearest < 0 || tolerance < 0) {
        return -1;
    }
    const Vector<int> pixel = vertex(nearest);
    const long long rows = 1LL * position[0] - pixel[0];
    const long long columns = 1LL * position[1] - pixel[1];
    return rows * rows + columns * columns <= 1LL * tolerance * tolerance ? nearest : -1;
}

void RLEItemSet0::print(std::ostream& stream) const
{
    for (const auto& row : rows_) {
        for (const RLEItem0& item : row.second) {
            stream << row.first << ' ' << item.begin() << ' ' << item.getLength() << '\n';
        }
    }
}
