#include "stack/stackreconstruction.h"

#include "image/imagesource.h"
#include "stack/stack.h"
#include "stack/stackslice.h"
#include "system/exception.h"

#include <cmath>

template <class T>
void StackReconstruction<T>::setStack(const Stack& newStack)
{
    stack = &newStack;
    computeMaps();
}

template <class T>
void StackReconstruction<T>::computeMaps()
{
    if (stack == nullptr) {
        raise<UsageError>("void StackReconstruction<T>::computeMaps()", "There is no stack");
    }
    const int slices = stack->getNumSlices();
    maps.setZeros(slices, 6);
    zMap.setZeros(slices);
    const T radians = static_cast<T>(3.141592653589793238462643383279502884L / 180.0L);
    T theta = 0;
    T tx = 0;
    T ty = 0;
    for (int i = 0; i < slices; ++i) {
        const StackSlice& slice = stack->getSlice(i);
        const Registration& registration = slice.getRegistration();
        const T pw = slice.getPixelCalibration().getPixelWidth();
        const T ph = slice.getPixelCalibration().getPixelHeight();
        const T cx = slice.isEmpty() ? T(0) : static_cast<T>(slice.getImageSource().getSize2()) / 2;
        const T cy = slice.isEmpty() ? T(0) : static_cast<T>(slice.getImageSource().getSize1()) / 2;

        const T dx = pw * static_cast<T>(registration.horShift);
        const T dy = ph * static_cast<T>(registration.verShift);
        tx += dx * std::cos(theta) + dy * std::sin(theta);
        ty += dx * std::sin(theta) - dy * std::cos(theta);
        theta -= static_cast<T>(registration.rotationAngle) * radians;

        const T c = std::cos(theta);
        const T s = std::sin(theta);
        Vector<T>& map = maps[i];
        map[0] = pw * c;
        map[1] = ph * s;
        map[2] = -pw * cx * c - ph * cy * s + tx;
        map[3] = pw * s;
        map[4] = -ph * c;
        map[5] = -pw * cx * s + ph * cy * c + ty;

        const T z = slice.getAbsolutePosition();
        zMap[i] = stack->hasInvertedZAxis() ? -z : z;
    }
}

template class StackReconstruction<float>;
template class StackReconstruction<double>;
template class StackReconstruction<long double>;
