// The caps that close the ends of `QuadMesh`.

#include "shape/quadmesh.h"
#include "shape/shapeinterpolation.h"
#include "shape/shapeset.h"
#include "system/exception.h"

#include <cmath>

template <class T>
void QuadMesh<T>::enterCap(std::unique_ptr<QuadMesh>& cap, std::unique_ptr<QuadMesh> mesh)
{
    destroyCap(cap);
    cap = std::move(mesh);
    this->getExtensions().addShape(cap.get(), false);
}

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
    destroyCaps();
    if (other.hasBeginCap()) {
        enterCap(beginCap, std::make_unique<QuadMesh>(*other.beginCap));
    }
    if (other.hasEndCap()) {
        enterCap(endCap, std::make_unique<QuadMesh>(*other.endCap));
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
std::unique_ptr<QuadMesh<T>> QuadMesh<T>::newCap() const
{
    return std::make_unique<QuadMesh>(this->getSpace(), 10, getWidth(), 0, 0, false);
}

template <class T>
void QuadMesh<T>::buildBeginCap()
{
    if (this->getHeight() == 0) {
        raise<SizeError>("void QuadMesh<T>::buildBeginCap()", "This mesh contains no contour");
    }
    if (this->isClosed()) {
        std::unique_ptr<QuadMesh> cap = newCap();
        buildCap(this->getFirstCurve(), *cap);
        enterCap(beginCap, std::move(cap));
    }
}

template <class T>
void QuadMesh<T>::buildEndCap()
{
    if (this->getHeight() == 0) {
        raise<SizeError>("void QuadMesh<T>::buildEndCap()", "This mesh contains no contour");
    }
    if (this->isClosed()) {
        std::unique_ptr<QuadMesh> cap = newCap();
        buildCap(this->getLastCurve(), *cap);
        enterCap(endCap, std::move(cap));
    }
}

template <class T>
void QuadMesh<T>::buildCaps()
{
    buildBeginCap();
    buildEndCap();
}

template <class T>
void QuadMesh<T>::buildCap([[maybe_unused]] const Curve<T>& curve,
                           [[maybe_unused]] QuadMesh& cap) const
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
    template void QuadMesh<T>::enterCap(std::unique_ptr<QuadMesh<T>>&,                             \
                                        std::unique_ptr<QuadMesh<T>>);                             \
    template void QuadMesh<T>::destroyCap(std::unique_ptr<QuadMesh<T>>&);                          \
    template void QuadMesh<T>::copyCaps(const QuadMesh<T>&);                                       \
    template void QuadMesh<T>::destroyBeginCap();                                                  \
    template void QuadMesh<T>::destroyEndCap();                                                    \
    template void QuadMesh<T>::destroyCaps();                                                      \
    template std::unique_ptr<QuadMesh<T>> QuadMesh<T>::newCap() const;                             \
    template void QuadMesh<T>::buildBeginCap();                                                    \
    template void QuadMesh<T>::buildEndCap();                                                      \
    template void QuadMesh<T>::buildCaps();                                                        \
    template void QuadMesh<T>::buildCap(const Curve<T>&, QuadMesh<T>&) const;                      \
    template void QuadMesh<T>::extendToCaps();

INSTANTIATE_QUAD_MESH_CAPS(int)
INSTANTIATE_QUAD_MESH_CAPS(float)
INSTANTIATE_QUAD_MESH_CAPS(double)
INSTANTIATE_QUAD_MESH_CAPS(long double)
