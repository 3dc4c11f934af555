#include "stack/standardimage.h"

StandardImage::StandardImage(const StandardImage& other)
    : Slice(other)
    , calibrationCurve(other.calibrationCurve
                           ? std::make_unique<CalibrationCurve>(*other.calibrationCurve)
                           : nullptr)
{}

void StandardImage::setCalibrationCurve(CalibrationCurve& curve)
{
    if (&curve != calibrationCurve.get()) {
        calibrationCurve.reset(&curve);
    }
}
