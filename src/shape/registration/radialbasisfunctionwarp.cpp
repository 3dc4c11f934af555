#include "shape/registration/radialbasisfunctionwarp.h"

#include "numerics/squarematrix.h"

template <class T>
RadialBasisFunctionWarp<T>::RadialBasisFunctionWarp() = default;

template <class T>
RadialBasisFunctionWarp<T>::~RadialBasisFunctionWarp() = default;

template <class T>
void RadialBasisFunctionWarp<T>::fit(const Shape<T>& source, const Shape<T>& target)
{
    const auto sample = this->displacements(
        source, target, "void RadialBasisFunctionWarp<T>::fit(const Shape<T>&,const Shape<T>&)");
    const std::vector<Vector<T>>& points = sample.points;
    const int n = static_cast<int>(points.size());
    const int space = source.getSpace();
    SquareMatrix<T> system(n + space + 1);
    system.setZeros();
    for (int i = 0; i < n; ++i) {
        const Vector<T>& point = points[static_cast<std::size_t>(i)];
        for (int j = i + 1; j < n; ++j) {
            system(i, j) = system(j, i) = rbf(point, points[static_cast<std::size_t>(j)]);
        }
        for (int k = 0; k < space; ++k) {
            system(n + k, i) = system(i, n + k) = point[k];
        }
        system(n + space, i) = system(i, n + space) = 1;
    }
    const SquareMatrix<T> inverse = system.inverse();
    Matrix<T> weights(space, n + space + 1);
    weights.setZeros();
    for (int k = 0; k < space; ++k) {
        for (int i = 0; i < n; ++i) {
            weights[k] += inverse[i] * sample.steps[static_cast<std::size_t>(i)][k];
        }
    }
    weights_.swap(weights);
    controlPoints.reset(source.clone());
    controlPoints->detach();
}

template <class T>
Vector<T> RadialBasisFunctionWarp<T>::eval(const Vector<T>& x) const
{
    const int space = weights_.getSize1();
    this->requirePoint(x, space,
                       "Vector<T> RadialBasisFunctionWarp<T>::eval(const Vector<T>&) const");
    Vector<T> step;
    step.setZeros(space);
    int column = 0;
    const Shape<T>& points = *controlPoints;
    for (ConstVertexIterator<T> walk = points.vertexIterator(); walk.current() != nullptr; walk++) {
        const T value = rbf(x, *walk.current());
        for (int k = 0; k < space; ++k) {
            step[k] += weights_(k, column) * value;
        }
        ++column;
    }
    for (int k = 0; k < space; ++k) {
        for (int i = 0; i < space; ++i) {
            step[k] += weights_(k, column + i) * x[i];
        }
        step[k] += weights_(k, column + space);
    }
    return step;
}

template <class T>
void RadialBasisFunctionWarp<T>::apply(Vector<T>& x) const
{
    x += eval(x);
}

template class RadialBasisFunctionWarp<float>;
template class RadialBasisFunctionWarp<double>;
template class RadialBasisFunctionWarp<long double>;
