#include "blade/averages/bladeaveraging.h"

#include "shape/meshes/quadmesh.h"
#include "shape/registration/fusion.h"
#include "system/exception.h"

#include <memory>

namespace {

constexpr int registrationRounds = 15;

/// The curve twice, as a strip of its own that the registration works on.
QuadMesh<float>* stripOf(const Curve<float>& curve)
{
    auto* strip = new QuadMesh<float>(3, 2, curve.getSize(), 0, 0, true);
    for (int level = 0; level < 2; ++level) {
        for (int i = 0; i < curve.getSize(); ++i) {
            (*strip)[level][i] = curve[i];
        }
    }
    return strip;
}

/// A leaf in a registration: a copy of its curve, and the strip. Owns both.
class LeafShapes
{
public:
    explicit LeafShapes(const Curve<float>& curve)
    {
        set_.setName("contour");
        auto copy = std::make_unique<Curve<float>>(curve);
        copy->detach();
        set_.addShape(copy.release(), false);
        set_.addShape(stripOf(curve), true);
    }

    ~LeafShapes() { set_.clear(); }

    LeafShapes(const LeafShapes&) = delete;
    LeafShapes& operator=(const LeafShapes&) = delete;

    ShapeSet<float>* set() { return &set_; }

    const Shape<float>& curve() const { return *set_[0]; }

private:
    ShapeSet<float> set_;
};

} // namespace

void BladeAveraging::setTargets(const Vector<float>& keys)
{
    targets = keys;
    if (keys.getSize() > 0) {
        numberOfAverages = keys.getSize();
    }
}

SquareMatrix<float> BladeAveraging::computeRotationMatrix(const Vector<float>& a,
                                                          const Vector<float>& b) const
{
    return axisRotation(a, b, alignment);
}

void BladeAveraging::computeNewHomogeneousAverages(const std::vector<Curve<float>*>& curves,
                                                   std::vector<Curve<float>>& averages,
                                                   const Matrix<float>& sorted,
                                                   const Vector<int>& counts) const
{
    averages.clear();
    for (int bin = 0; bin < numberOfAverages; ++bin) {
        if (progressListener) {
            progressListener(bin, numberOfAverages);
        }
        std::vector<const Curve<float>*> leaves;
        for (int j = 0; j < sorted.getSize2(); ++j) {
            if (static_cast<int>(sorted[4][j]) == bin) {
                leaves.push_back(curves[static_cast<std::size_t>(sorted[0][j])]);
            }
        }
        averages.push_back(counts[bin] > 1 ? averageOfBin(leaves) : Curve<float>(3, 0, 0, 0, true));
    }
}

Curve<float> BladeAveraging::averageOfBin(const std::vector<const Curve<float>*>& leaves) const
{
    std::vector<std::unique_ptr<LeafShapes>> shapes;
    Fusion<float> fusion;
    for (const Curve<float>* leaf : leaves) {
        shapes.push_back(std::make_unique<LeafShapes>(*leaf));
        fusion.addShapeSet(shapes.back()->set());
    }
    fusion.amibRegistration(registrationRounds, false, false);

    Curve<float> average;
    average.assign(shapes.front()->curve());
    average.detach();
    average.setOpen(true);
    for (std::size_t k = 1; k < shapes.size(); ++k) {
        average += shapes[k]->curve();
    }
    average /= static_cast<float>(shapes.size());
    return average;
}
