#include "host/results/averageshapes.h"

#include "blade/process/modelsmanager.h"
#include "host/results/tablecolumn.h"
#include "interface/lmxstack.h"
#include "shape/curves/curve.h"
#include "stack/stackslice.h"
#include "system/exception.h"
#include "system/fileinfo.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

namespace {

/// Reads the blades of a stack; creates and changes nothing.
class BladeReader : public ModelsManager
{
public:
    explicit BladeReader(LMXStack& openStack) { setStack(openStack); }

    void run() override {}

    std::string process(int) override { return ""; }

    void createModels() override {}

    /// From the first junction to the second over the apex, in pixels, with the apex; empty for a
    /// slice that lacks a landmark.
    QPolygonF blade(int slice, QPointF& tip)
    {
        getModels(slice);
        if (!contour || !petiole || petiole->getSize() != 2 || !apex || apex->getSize() == 0) {
            return {};
        }
        const Vector<int> junctions = findIndexPetiole(*contour);
        const int apexPosition = apexIndex();
        const int size = contour->getSize();
        // On a contour that does not begin in the petiole the blade may run over its vertex 0.
        const bool overTheOrigin = apexPosition < junctions[0] || apexPosition > junctions[1];
        const int first = overTheOrigin ? junctions[1] : junctions[0];
        const int last = overTheOrigin ? junctions[0] + size : junctions[1];
        QPolygonF outline;
        for (int i = first; i <= last; ++i) {
            const Vector<float>& vertex = (*contour)[i % size];
            outline.append(QPointF(double(vertex[0]), double(vertex[1])));
        }
        const Vector<float>& vertex = (*contour)[apexPosition];
        tip = QPointF(double(vertex[0]), double(vertex[1]));
        return outline;
    }
};

/// Into the frame of the averages, times `scale`.
QPolygonF framed(const QPolygonF& outline, const QPointF& tip, double scale)
{
    const QPointF base = (outline.first() + outline.last()) / 2.0;
    const QPointF axis = tip - base;
    const double length = std::hypot(axis.x(), axis.y());
    const QPointF unit = length > 0.0 ? axis / length : QPointF(1.0, 0.0);
    QPolygonF result;
    for (const QPointF& point : outline) {
        const QPointF way = (point - base) * scale;
        result.append(
            {way.x() * unit.x() + way.y() * unit.y(), way.y() * unit.x() - way.x() * unit.y()});
    }
    return result;
}

AverageShape shapeOfFile(const std::string& filename)
{
    const Curve<float> curve(filename);
    AverageShape shape;
    shape.name = QString::fromStdString(FileInfo::baseName(filename));
    shape.closed = curve.isClosed();
    for (int i = 0; curve.getSpace() >= 2 && i < curve.getSize(); ++i) {
        const double x = double(curve[i][0]);
        const double y = double(curve[i][1]);
        if (!std::isfinite(x) || !std::isfinite(y)) {
            raiseFile<FileFormatError>("vector<AverageShape> shapesOfFiles(const vector<string>&)",
                                       "The curve has a vertex without a place", filename);
        }
        shape.outline.append({x, y});
    }
    if (shape.outline.isEmpty()) {
        raiseFile<FileFormatError>("vector<AverageShape> shapesOfFiles(const vector<string>&)",
                                   "The file holds no curve in the plane", filename);
    }
    return shape;
}

bool isSampled(const std::string& filename)
{
    return QString::fromStdString(filename).endsWith("-sampled.cv");
}

} // namespace

std::vector<AverageShape> shapesOfStack(LMXStack& stack)
{
    BladeReader reader(stack);
    std::vector<AverageShape> shapes;
    for (int i = 0; i < stack.getNumSlices(); ++i) {
        QPointF tip;
        const QPolygonF outline = reader.blade(i, tip);
        if (!outline.isEmpty()) {
            const StackSlice& slice = stack.getSlice(i);
            const double pixel = double(slice.getPixelCalibration().getPixelWidth());
            shapes.push_back(
                {QString::fromStdString(slice.getName()), framed(outline, tip, pixel), false, i});
        }
    }
    return shapes;
}

std::vector<AverageShape> shapesOfFiles(const std::vector<std::string>& filenames)
{
    std::vector<AverageShape> shapes;
    for (const std::string& filename : filenames) {
        shapes.push_back(shapeOfFile(filename));
    }
    return shapes;
}

std::vector<std::string> curveFiles(const std::string& folder)
{
    std::vector<std::string> files;
    std::error_code error;
    std::filesystem::directory_iterator entry(folder, error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        if (entry->path().extension() == ".cv") {
            files.push_back(entry->path().string());
        }
    }
    if (error) {
        raiseFile<FileReadError>("vector<string> curveFiles(const string&)",
                                 "The folder can't be read: " + error.message(), folder);
    }
    if (!std::all_of(files.begin(), files.end(), isSampled)) {
        files.erase(std::remove_if(files.begin(), files.end(), isSampled), files.end());
    }
    std::sort(files.begin(), files.end(), [](const std::string& a, const std::string& b) {
        return naturallyLess(QString::fromStdString(a), QString::fromStdString(b));
    });
    return files;
}

std::vector<QString> shortNames(const std::vector<AverageShape>& shapes)
{
    int common = shapes.empty() ? 0 : shapes.front().name.size();
    for (const AverageShape& shape : shapes) {
        const QString& first = shapes.front().name;
        const auto end = std::mismatch(first.begin(), first.begin() + common, shape.name.begin(),
                                       shape.name.end());
        common = static_cast<int>(end.first - first.begin());
    }
    const int kept = shapes.size() < 2 ? 0 : shapes.front().name.left(common).lastIndexOf('-') + 1;
    std::vector<QString> names;
    for (const AverageShape& shape : shapes) {
        names.push_back(kept < shape.name.size() ? shape.name.mid(kept) : shape.name);
    }
    return names;
}
