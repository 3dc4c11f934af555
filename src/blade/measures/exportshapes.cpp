#include "blade/measures/exportshapes.h"

#include "interface/lmxstack.h"
#include "numerics/squarematrix.h"
#include "stack/stackslice.h"
#include "system/exception.h"
#include "system/stringtools.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <set>

namespace {

/// By the library and not by a shell, to which blanks and quotes in a name would be words. A folder
/// that can't be made ends the export at once.
void makeDirectory(const std::string& path)
{
    std::error_code error;
    std::filesystem::create_directories(path, error);
    if (error) {
        raiseFile<FileWriteError>("void makeDirectory(const string&)",
                                  "The folder can't be made: " + error.message(), path);
    }
}

/// Moves a curve of three coordinates so that vertex `origin` comes to the origin and the direction
/// from the first to the last vertex to that of the first axis.
void layOnFirstAxis(const ExportShapes& process, Curve<float>& curve, int origin)
{
    Vector<float> offset = curve[origin];
    offset *= -1.0f;
    offset[2] = 0.0f;
    curve.translate(offset);
    Vector<float> chord = curve[curve.getSize() - 1] - curve[0];
    chord[2] = 0.0f;
    Vector<float> firstAxis(3);
    firstAxis.setCanonical(0);
    curve.multiply(process.rotationMatrix(chord, firstAxis));
}

} // namespace

ExportShapes::ExportShapes() = default;

void ExportShapes::createModels() {}

void ExportShapes::run()
{
    teethPath = outputPath + "/teeth/";
    makeDirectory(teethPath);
    for (int i = 0; i < stack->getNumSlices(); ++i) {
        process(i);
    }
    std::string text = "Export is complete";
    for (const std::string& omission : leftOut) {
        text += "\n" + omission;
    }
    tell(text);
}

std::string ExportShapes::process(int slice)
{
    if (static_cast<int>(fileNames.size()) != stack->getNumSlices()) {
        nameFiles();
    }
    getModels(slice);
    if (!primarySinus || primarySinus->getSize() == 0) {
        return "";
    }
    if (!contour || !apex || apex->getSize() == 0) {
        leftOut.push_back(stack->getSlice(slice).getName() + ": no contour or no apex");
        return "";
    }
    const int apexPosition = apexIndex();
    Vector<int> sinuses = indexesPrimarySinuses();
    sinuses.sort();
    int upper = 0;
    while (upper < sinuses.getSize() && sinuses[upper] < apexPosition) {
        ++upper;
    }
    if (upper >= 2) {
        exportHalf(slice, sinuses.copyUntil(upper - 1), Half::Upper);
    }
    if (sinuses.getSize() - upper >= 2) {
        exportHalf(slice, sinuses.copyFrom(upper), Half::Lower);
    }
    return "";
}

void ExportShapes::exportHalf(int slice, const Vector<int>& sinuses, Half half)
{
    const StackSlice& picture = stack->getSlice(slice);
    const float pixelWidth = picture.getPixelCalibration().getPixelWidth();
    const std::string& name = fileNames[static_cast<std::size_t>(slice)];
    const int teeth = sinuses.getSize() - 1;
    for (int rank = 1; rank <= teeth; ++rank) {
        const int first = half == Half::Upper ? teeth - rank : rank - 1;
        const Curve<float> tooth = toothBetween(sinuses[first], sinuses[first + 1]);
        if (tooth[0] == tooth[tooth.getSize() - 1]) {
            leftOut.push_back(picture.getName() + ": two sinuses at one place give no tooth");
            continue;
        }
        if (half == Half::Upper) {
            SaveUpperTeeth(tooth, name, rank, "l", pixelWidth);
        } else {
            SaveLowerTeeth(tooth, name, rank, "l", pixelWidth);
        }
        ++numTeeth;
    }
}

Curve<float> ExportShapes::toothBetween(int s0, int s1) const
{
    Curve<float> tooth(2, s1 - s0 + 1, 0, 0, true);
    for (int i = s0; i <= s1; ++i) {
        tooth[i - s0] = (*contour)[i];
    }
    return tooth;
}

/// The names of the slices as names of files: no file in another folder, none over another slice's.
void ExportShapes::nameFiles()
{
    std::set<std::string> taken;
    fileNames.clear();
    for (int i = 0; i < stack->getNumSlices(); ++i) {
        std::string base = stack->getSlice(i).getName();
        std::replace(base.begin(), base.end(), '/', '_');
        std::string name = base;
        for (int number = 2; !taken.insert(name).second; ++number) {
            name = base + "-" + StringTools::toString(number);
        }
        fileNames.push_back(name);
    }
}

std::string ExportShapes::rankDirectory(const std::string& subdirectory, int rank) const
{
    const std::string path = teethPath + subdirectory + "/" + StringTools::toString(rank) + "/";
    makeDirectory(path);
    return path;
}

void ExportShapes::SaveUpperTeeth(const Curve<float>& tooth,
                                  const std::string& sliceName,
                                  int rank,
                                  const std::string& subdirectory,
                                  float calibration) const
{
    Curve<float> curve = make2Dto3D(tooth);
    curve *= calibration;
    const std::string directory = rankDirectory(subdirectory, rank);
    layOnFirstAxis(*this, curve, 0);
    for (int i = 0; i < curve.getSize(); ++i) {
        curve[i][1] = -curve[i][1];
    }
    curve.save(directory + sliceName + "_up", true);
}

void ExportShapes::SaveLowerTeeth(const Curve<float>& tooth,
                                  const std::string& sliceName,
                                  int rank,
                                  const std::string& subdirectory,
                                  float calibration) const
{
    Curve<float> curve = make2Dto3D(tooth);
    curve *= calibration;
    const std::string directory = rankDirectory(subdirectory, rank);
    layOnFirstAxis(*this, curve, curve.getSize() - 1);
    SquareMatrix<float> halfTurn(3);
    halfTurn.setIdentity();
    halfTurn[0][0] = halfTurn[1][1] = -1.0f;
    curve.multiply(halfTurn);
    curve.save(directory + sliceName + "_down", true);
}

Curve<float> ExportShapes::make2Dto3D(const Curve<float>& curve) const
{
    Curve<float> result(3, curve.getSize(), 0, 0, curve.isOpen());
    for (int i = 0; i < curve.getSize(); ++i) {
        result[i][0] = curve[i][0];
        result[i][1] = curve[i][1];
        result[i][2] = 0.0f;
    }
    return result;
}

SquareMatrix<float> ExportShapes::rotationMatrix(const Vector<float>& a,
                                                 const Vector<float>& b) const
{
    // In double, since the rounding of a float cosine near 1 is an angle that can be seen.
    const Vector<double> from = a.toType<double>();
    const Vector<double> to = b.toType<double>();
    const double lengths = from.norm() * to.norm();
    if (!(lengths > 0.0)) {
        raise<MathError>(
            "SquareMatrix<float> ExportShapes::rotationMatrix(const Vector<float>&,const "
            "Vector<float>&)",
            "A zero vector has no direction");
    }
    // Rounding may lead a little beyond 1, where the arc cosine has no value.
    const double cosine = std::clamp(from.scalarProduct(to) / lengths, -1.0, 1.0);
    double angle = std::acos(cosine);
    if (from[0] * to[1] - from[1] * to[0] < 0.0) {
        angle = -angle;
    }
    SquareMatrix<float> rotation(a.getSize());
    rotation.setIdentity();
    rotation[0][0] = rotation[1][1] = static_cast<float>(cosine);
    rotation[1][0] = static_cast<float>(std::sin(angle));
    rotation[0][1] = -rotation[1][0];
    return rotation;
}
