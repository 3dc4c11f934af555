// Part of `QuadMesh`: the caps that close its ends.

#include "shape/curves/shapeinterpolation.h"
#include "shape/meshes/quadmesh.h"
#include "shape/vertices/shapeset.h"
#include "system/exception.h"

#include <cmath>

template <class T>
void QuadMesh<T>::destroyCap(std::unique_ptr<QuadMesh>& cap)
{
    if (cap != nullptr) {
        this->getExtensions().removeShape(cap.get());
        cap.reset();
    }
}

template <class T>
void QuadMesh<T>::copyCaps(const QuadMesh& other)
{
    // The other mesh may be one of the caps.
    const auto copyOf = [](const std::unique_ptr<QuadMesh>& cap) {
        return cap == nullptr ? nullptr : std::make_unique<QuadMesh>(*cap);
    };
    std::unique_ptr<QuadMesh> begin = copyOf(other.beginCap);
    std::unique_ptr<QuadMesh> end = copyOf(other.endCap);
    destroyCaps();
    beginCap = std::move(begin);
    endCap = std::move(end);
    for (QuadMesh* cap : {beginCap.get(), endCap.get()}) {
        if (cap != nullptr) {
            this->getExtensions().addShape(cap, false);
        }
    }
}

template <class T>
void QuadMesh<T>::destroyBeginCap()
{
    destroyCap(beginCap);
}

template <class T>
void QuadMesh<T>::destroyEndCap()
{
    destroyCap(endCap);
}

template <class T>
void QuadMesh<T>::destroyCaps()
{
    destroyBeginCap();
    destroyEndCap();
}

template <class T>
void QuadMesh<T>::replaceCap(std::unique_ptr<QuadMesh>& cap, const Curve<T>& curve)
{
    auto fresh = std::make_unique<QuadMesh>(this->getSpace(), 10, getWidth(), 0, 0, false);
    buildCap(curve, *fresh);
    destroyCap(cap);
    cap = std::move(fresh);
}

template <class T>
void QuadMesh<T>::buildBeginCap()
{
    if (this->getHeight() == 0) {
        raise<SizeError>("void QuadMesh<T>::buildBeginCap()", "This mesh contains no contour");
    }
    if (this->isClosed()) {
        replaceCap(beginCap, this->getFirstCurve());
    }
}

template <class T>
void QuadMesh<T>::buildEndCap()
{
    if (this->getHeight() == 0) {
        raise<SizeError>("void QuadMesh<T>::buildEndCap()", "This mesh contains no contour");
    }
    if (this->isClosed()) {
        replaceCap(endCap, this->getLastCurve());
    }
}

template <class T>
void QuadMesh<T>::buildCaps()
{
    buildBeginCap();
    buildEndCap();
}

template <class T>
void QuadMesh<T>::buildCap([[maybe_unused]] const Curve<T>& curve, [[maybe_unused]] QuadMesh& cap)
{
    if constexpr (std::is_integral_v<T>) {
        raise<TypeError>("void QuadMesh<int>::buildCap(const Curve<int>&, QuadMesh&)",
                         "Method undefined for type 'int'");
    } else {
        const Vector<T> centre = curve.cog();
        Curve<T> tip(curve);
        tip.detach();
        tip.center();
        tip *= T(0.01);
        tip.translate(centre);

        ShapeInterpolation<T> interpolation;
        interpolation.setSourceShape(curve);
        interpolation.setTargetShape(tip);
        const int n = cap.getHeight() - 1;
        cap[0] = curve;
        cap[n] = tip;
        for (int k = n - 1; k > 0; --k) {
            const T share = static_cast<T>(k) / static_cast<T>(n);
            interpolation.apply(1 - std::sqrt(share), cap[n - k]);
        }
        cap.detach();
        this->getExtensions().removeShape(&cap);
        this->getExtensions().addShape(&cap, false);
    }
}

template <class T>
void QuadMesh<T>::extendToCaps()
{
    // Adding a level destroys the cap at its end, so the caps are taken first.
    CurveStack<T> begin;
    CurveStack<T> end;
    if (hasBeginCap()) {
        begin = *beginCap;
        begin.remove(0);
        begin.reverse();
    }
    if (hasEndCap()) {
        end = *endCap;
        end.remove(0);
    }
    destroyCaps();
    if (begin.getHeight() > 0) {
        this->prepend(begin);
    }
    if (end.getHeight() > 0) {
        this->append(end);
    }
}

#define INSTANTIATE_QUAD_MESH_CAPS(T)                                                              \
    template void QuadMesh<T>::destroyCap(std::unique_ptr<QuadMesh<T>>&);                          \
    template void QuadMesh<T>::copyCaps(const QuadMesh<T>&);                                       \
    template void QuadMesh<T>::destroyBeginCap();                                                  \
    template void QuadMesh<T>::destroyEndCap();                                                    \
    template void QuadMesh<T>::destroyCaps();                                                      \
    template void QuadMesh<T>::replaceCap(std::unique_ptr<QuadMesh<T>>&, const Curve<T>&);         \
    template void QuadMesh<T>::buildBeginCap();                                                    \
    template void QuadMesh<T>::buildEndCap();                                                      \
    template void QuadMesh<T>::buildCaps();                                                        \
    template void QuadMesh<T>::buildCap(const Curve<T>&, QuadMesh<T>&);                            \
    template void QuadMesh<T>::extendToCaps();

INSTANTIATE_QUAD_MESH_CAPS(int)
INSTANTIATE_QUAD_MESH_CAPS(float)
INSTANTIATE_QUAD_MESH_CAPS(double)
INSTANTIATE_QUAD_MESH_CAPS(long double)
