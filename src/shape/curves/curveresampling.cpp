#include "shape/curves/curveresampling.h"

#include "numerics/elementtype.h"
#include "shape/vertices/vertexdistance.h"
#include "system/exception.h"

#include <cmath>
#include <optional>
#include <vector>

namespace {

/// Arc lengths at the vertices of a source, summed in `T`; a closed source ends at vertex 0.
template <class T>
std::vector<T> cumulativeLengths(const Curve<T>& source, bool closed)
{
    const int size = source.getSize();
    std::vector<T> lengths;
    lengths.reserve(static_cast<std::size_t>(size) + 1);
    lengths.push_back(0);
    for (int i = 1; i < size + (closed ? 1 : 0); ++i) {
        const Vector<T>& a = source[i - 1];
        const Vector<T>& b = source[i < size ? i : 0];
        if constexpr (std::is_integral_v<T>) {
            const double square = squaredDistance(a, b);
            lengths.push_back(lengths.back() + static_cast<T>(std::sqrt(square)));
        } else {
            lengths.push_back(lengths.back() + vertexDistance(a, b));
        }
    }
    return lengths;
}

/// Writes the point at arc length `s` on the edge that ends at entry `k` of `lengths`.
template <class T>
void sample(
    const Curve<T>& source, const std::vector<T>& lengths, std::size_t k, T s, Vector<T>& vertex)
{
    const int end = static_cast<int>(k);
    const Vector<T>& a = source[end - 1];
    const Vector<T>& b = source[end < source.getSize() ? end : 0];
    const T weight = (s - lengths[k - 1]) / (lengths[k] - lengths[k - 1]);
    vertex.setSize(a.getSize());
    for (int c = 0; c < a.getSize(); ++c) {
        vertex[c] = a[c] + (b[c] - a[c]) * weight;
    }
}

/// The source, or a copy of it where writing the target would change it.
template <class T>
const Curve<T>&
unsharedSource(const Curve<T>& source, const Curve<T>& target, std::optional<Curve<T>>& copy)
{
    if (source.getServer() != target.getServer()) {
        return source;
    }
    copy.emplace(source);
    copy->detach();
    return *copy;
}

template <class T>
void sizeTarget(const Curve<T>& source, Curve<T>& target, int size)
{
    if (target.getSpace() != source.getSpace() || target.getSize() != size) {
        target = Curve<T>(source.getSpace(), size, 0, 0, false);
    }
}

template <class T>
void requireVertices(const Curve<T>& source, int size, const char* where)
{
    if (size > 0 && source.getSize() == 0) {
        raise<SizeError>(where, "This shape contains no vertex");
    }
}

} // namespace

template <class T>
CurveResampling<T>::CurveResampling() = default;

template <class T>
void CurveResampling<T>::apply(const Curve<T>& source, Curve<T>& target, int size) const
{
    const bool open = source.isOpen();
    if (open) {
        resamplePolyline(source, target, size);
    } else {
        resamplePolygon(source, target, size);
    }
    target.setOpen(open);
}

template <class T>
void CurveResampling<T>::resamplePolygon([[maybe_unused]] const Curve<T>& source,
                                         [[maybe_unused]] Curve<T>& target,
                                         [[maybe_unused]] int size) const
{
    const char* where = "void Curve<T>::resamplePolygon(Curve&) const";
    if constexpr (std::is_integral_v<T>) {
        raise<TypeError>(where, std::string("Method not available for type '") +
                                    elementTypeName<T>() + "'");
    } else {
        requireVertices(source, size, where);
        std::optional<Curve<T>> copy;
        const Curve<T>& from = unsharedSource(source, target, copy);
        sizeTarget(from, target, size);
        if (size < 1) {
            return;
        }
        target[0] = from[0];
        const std::vector<T> lengths = cumulativeLengths(from, true);
        const T step = lengths.back() / static_cast<T>(size);
        std::size_t k = 1;
        for (int i = 1; i < size; ++i) {
            const T s = step * static_cast<T>(i);
            while (k < lengths.size() && !(lengths[k] >= s)) {
                ++k;
            }
            if (s > 0 && k < lengths.size()) {
                sample(from, lengths, k, s, target[i]);
            } else {
                target[i] = from[0];
            }
        }
    }
}

template <class T>
void CurveResampling<T>::resamplePolyline(const Curve<T>& source, Curve<T>& target, int size) const
{
    requireVertices(source, size, "void Curve<T>::resamplePolyline(Curve&) const");
    std::optional<Curve<T>> copy;
    const Curve<T>& from = unsharedSource(source, target, copy);
    sizeTarget(from, target, size);
    if (size < 1) {
        return;
    }
    const int last = from.getSize() - 1;
    target[0] = from[0];
    target[size - 1] = from[last];
    if (size < 3) {
        return;
    }
    const std::vector<T> lengths = cumulativeLengths(from, false);
    const T step = lengths.back() / static_cast<T>(size - 1);
    T s = 0;
    std::size_t k = 0;
    for (int i = 1; i < size - 1; ++i) {
        s += step;
        while (k < lengths.size() && !(lengths[k] > s)) {
            ++k;
        }
        // The sum of steps can drift past the end of the curve.
        if (k < lengths.size()) {
            sample(from, lengths, k, s, target[i]);
        } else {
            target[i] = from[last];
        }
    }
}

template class CurveResampling<int>;
template class CurveResampling<float>;
template class CurveResampling<double>;
template class CurveResampling<long double>;
