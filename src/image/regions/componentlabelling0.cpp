#include "image/regions/componentlabelling0.h"

#include <algorithm>
#include <limits>
#include <type_traits>

namespace {

/// The largest region number that an element can hold exactly.
template <class T>
long long largestLabel()
{
    if constexpr (std::is_floating_point_v<T>) {
        const int digits = std::min(std::numeric_limits<T>::digits, 62);
        return 1LL << digits;
    } else {
        return static_cast<long long>(std::numeric_limits<T>::max());
    }
}

template <class T>
PixelMatrix<int> foregroundOf(const PixelMatrix<T>& matrix)
{
    PixelMatrix<int> result(matrix.getSize1(), matrix.getSize2());
    for (int i = 0; i < matrix.getSize1(); ++i) {
        const T* in = matrix[i].data();
        int* out = result[i].data();
        for (int j = 0; j < matrix.getSize2(); ++j) {
            out[j] = in[j] != T(0);
        }
    }
    return result;
}

template <class T>
void copyLabels(PixelMatrix<T>& matrix, const PixelMatrix<int>& labels)
{
    for (int i = 0; i < matrix.getSize1(); ++i) {
        const int* in = labels[i].data();
        T* out = matrix[i].data();
        for (int j = 0; j < matrix.getSize2(); ++j) {
            out[j] = static_cast<T>(in[j]);
        }
    }
}

} // namespace

template <class T>
ComponentLabelling0<T>::ComponentLabelling0() = default;

template <class T>
ComponentLabelling0<T>::~ComponentLabelling0() = default;

template <class T>
void ComponentLabelling0<T>::start(int step)
{
    tableStep = std::max(step, 1);
    equivalences.setSize(tableStep);
    equivalences[0] = 0;
    numLabels = 0;
}

/// The table's step doubles each time, so that a noisy image does not make the table's growth
/// quadratic.
template <class T>
int ComponentLabelling0<T>::newLabel()
{
    ++numLabels;
    if (numLabels >= equivalences.getSize()) {
        // Entry 0 is there for the background, also before the first run.
        equivalences.append(Vector<int>(std::max(tableStep, 2)));
        tableStep = equivalences.getSize();
    }
    equivalences[numLabels] = numLabels;
    return numLabels;
}

template <class T>
void ComponentLabelling0<T>::equivLabel(int a, int b, int c)
{
    const int low = std::min(a, b);
    equivalences[std::max(a, b)] = low;
    equivalences[c] = low;
    if (low > c) {
        equivalences[a] = c;
        equivalences[b] = c;
        equivalences[c] = c;
    }
}

/// The lowest label known to be equivalent. Entries passed on the way are made to point lower, so
/// that long chains are walked once.
template <class T>
int ComponentLabelling0<T>::root(int label)
{
    int* table = equivalences.data();
    while (table[label] != label) {
        table[label] = table[table[label]];
        label = table[label];
    }
    return label;
}

template <class T>
int ComponentLabelling0<T>::join(int a, int b)
{
    const int rootA = root(a);
    const int rootB = root(b);
    const int low = std::min(rootA, rootB);
    equivalences[std::max(rootA, rootB)] = low;
    return low;
}

/// The label of an element whose neighbours have these labels, 0 standing for background.
template <class T>
int ComponentLabelling0<T>::joined(int left, int upper)
{
    if (left == upper) {
        return left != 0 ? left : newLabel();
    }
    if (left != 0 && upper != 0) {
        return join(left, upper);
    }
    return left + upper;
}

template <class T>
void ComponentLabelling0<T>::labelFirstPlane(PixelMatrix<int>& plane)
{
    const int columns = plane.getSize2();
    const std::vector<int> nothing(static_cast<std::size_t>(columns), 0);
    for (int i = 0; i < plane.getSize1(); ++i) {
        const int* upper = i > 0 ? plane[i - 1].data() : nothing.data();
        int* row = plane[i].data();
        int left = 0;
        for (int j = 0; j < columns; ++j) {
            left = row[j] != 0 ? joined(left, upper[j]) : 0;
            row[j] = left;
        }
    }
}

template <class T>
void ComponentLabelling0<T>::labelPlane(PixelMatrix<int>& plane, const PixelMatrix<int>& previous)
{
    const int columns = plane.getSize2();
    const std::vector<int> nothing(static_cast<std::size_t>(columns), 0);
    for (int i = 0; i < plane.getSize1(); ++i) {
        const int* upper = i > 0 ? plane[i - 1].data() : nothing.data();
        const int* before = previous[i].data();
        int* row = plane[i].data();
        int left = 0;
        for (int j = 0; j < columns; ++j) {
            if (row[j] == 0) {
                left = 0;
            } else if (before[j] == 0) {
                left = joined(left, upper[j]);
            } else if (left != 0 && upper[j] != 0) {
                equivLabel(root(left), root(upper[j]), root(before[j]));
                left = root(before[j]);
            } else {
                left = joined(left + upper[j], before[j]);
            }
            row[j] = left;
        }
    }
}

/// Makes each entry the number of its region. An entry points to a lower label, which is settled by
/// then.
template <class T>
void ComponentLabelling0<T>::compactTable()
{
    int removed = 0;
    for (int label = 1; label <= numLabels; ++label) {
        if (equivalences[label] != label) {
            ++removed;
            equivalences[label] = equivalences[equivalences[label]];
        } else {
            equivalences[label] = label - removed;
        }
    }
    numLabels -= removed;
}

template <class T>
void ComponentLabelling0<T>::relabel(PixelMatrix<int>& plane) const
{
    const int* table = equivalences.data();
    for (int i = 0; i < plane.getSize1(); ++i) {
        int* row = plane[i].data();
        for (int j = 0; j < plane.getSize2(); ++j) {
            row[j] = table[row[j]];
        }
    }
}

template <class T>
void ComponentLabelling0<T>::requireRange() const
{
    if (numLabels > largestLabel<T>()) {
        raise<RangeError>("void ComponentLabelling<T>::apply(...)",
                          "There are more regions than the elements of the image can number");
    }
}

template <class T>
void ComponentLabelling0<T>::apply(PixelMatrix<T>& matrix)
{
    start((matrix.getSize1() + matrix.getSize2()) / 2);
    if constexpr (std::is_same_v<T, int>) {
        labelFirstPlane(matrix);
        compactTable();
        relabel(matrix);
    } else {
        PixelMatrix<int> labels = foregroundOf(matrix);
        labelFirstPlane(labels);
        compactTable();
        requireRange();
        relabel(labels);
        copyLabels(matrix, labels);
    }
}

template <class T>
void ComponentLabelling0<T>::apply(VoxelMatrix<T>& matrix)
{
    start((matrix.getSize1() + matrix.getSize2()) / 2);
    std::vector<PixelMatrix<int>> labels;
    for (int k = 0; k < matrix.getSize3(); ++k) {
        labels.push_back(foregroundOf(matrix[k]));
        if (k == 0) {
            labelFirstPlane(labels.back());
        } else {
            labelPlane(labels.back(), labels[static_cast<std::size_t>(k) - 1]);
        }
    }
    compactTable();
    requireRange();
    for (int k = 0; k < matrix.getSize3(); ++k) {
        relabel(labels[static_cast<std::size_t>(k)]);
        copyLabels(matrix[k], labels[static_cast<std::size_t>(k)]);
    }
}

template class ComponentLabelling0<char>;
template class ComponentLabelling0<unsigned char>;
template class ComponentLabelling0<short>;
template class ComponentLabelling0<unsigned short>;
template class ComponentLabelling0<int>;
template class ComponentLabelling0<unsigned int>;
template class ComponentLabelling0<float>;
template class ComponentLabelling0<double>;
template class ComponentLabelling0<long double>;
