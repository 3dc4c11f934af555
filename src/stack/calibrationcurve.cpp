#include "stack/calibrationcurve.h"

CalibrationCurve::CalibrationCurve()
    : polynomial(0, 1)
{}

void CalibrationCurve::fit(int degree)
{
    std::vector<Vector<double>> points;
    Vector<double> values(static_cast<int>(samples.size()));
    for (const Sample& sample : samples) {
        values[static_cast<int>(points.size())] = sample.value;
        points.emplace_back(std::vector<double>{sample.grey});
    }
    polynomial.approximate(points, values, degree);
}

double CalibrationCurve::eval(double grey) const
{
    return polynomial.eval(Vector<double>(std::vector<double>{grey}));
}
