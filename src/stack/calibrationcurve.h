#pragma once

#include "numerics/polynomial.h"

#include <string>
#include <vector>

/// A named polynomial from the grey values of an image to the known values of a standard, fitted to
/// samples of both.
class CalibrationCurve
{
public:
    /// A grey value and the value that it stands for.
    struct Sample
    {
        double grey;
        double value;
    };

    /// No samples; the curve is 0 everywhere.
    CalibrationCurve();

    const std::string& getName() const { return name; }

    void setName(const std::string& newName) { name = newName; }

    const std::vector<Sample>& getSamples() const { return samples; }

    /// The fit stays as it was until the next `fit`.
    void addSample(double grey, double value) { samples.push_back({grey, value}); }

    void removeSamples() { samples.clear(); }

    /// Fits a polynomial of this degree to the samples by least squares. `SizeError` without
    /// samples, `ValueError` for a negative degree.
    void fit(int degree);

    const Polynomial<double>& getPolynomial() const { return polynomial; }

    /// The value that a grey value stands for.
    double eval(double grey) const;

private:
    std::string name;
    Polynomial<double> polynomial;
    std::vector<Sample> samples;
};
