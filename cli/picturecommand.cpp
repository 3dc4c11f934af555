#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/contactsheet.h"
#include "cli/failure.h"
#include "cli/outputs.h"
#include "cli/report.h"
#include "cli/stackfile.h"
#include "image/pixels/image0.h"
#include "interface/itempainter.h"
#include "interface/qimageconversion.h"
#include "stack/stackslice.h"
#include "system/exception.h"
#include "system/fileinfo.h"

#include <QImage>
#include <QPainter>
#include <QSaveFile>

#include <set>

namespace {

QImage draw(const StackSlice& slice)
{
    Image0 image;
    slice.load(image);
    QImage picture = toQImage(image).convertToFormat(QImage::Format_RGB32);
    const ItemPainter items(QTransform(),
                            ItemPainter::symbolScaleFor(picture.width(), picture.height()));
    QPainter painter(&picture);
    items.paintItems(painter, slice);
    return picture;
}

void save(const QImage& picture, const std::string& path)
{
    QSaveFile file(QString::fromStdString(path));
    if (!file.open(QIODevice::WriteOnly) || !picture.save(&file, "PNG") || !file.commit()) {
        throw Failure(path + ": the picture can't be written: " + file.errorString().toStdString());
    }
}

/// The slice's name as a file's name that no earlier slice has.
std::string fileName(const std::string& slice, std::set<std::string>& taken)
{
    std::string base = slice;
    for (char& c : base) {
        c = c == '/' ? '_' : c;
    }
    std::string name = base;
    for (int number = 2; !taken.insert(name).second; ++number) {
        name = base + "-" + std::to_string(number);
    }
    return name + ".png";
}

void drawSlices(StackFile& file, const std::string& folder, Report& report)
{
    prepareFolder(folder);
    std::set<std::string> taken;
    const int slices = file.stack().getNumSlices();
    for (int i = 0; i < slices; ++i) {
        const StackSlice& slice = file.stack().getSlice(i);
        const std::string path = folder + "/" + fileName(slice.getName(), taken);
        try {
            save(draw(slice), path);
        } catch (const FileError& error) {
            report.fault(describe(error, file.stack()));
        }
        report.progress("picture", i + 1, slices);
    }
}

void saveSheet(const ContactSheet& sheet, const std::string& path)
{
    if (sheet.isEmpty()) {
        throw Failure(path + ": there is nothing to draw");
    }
    prepareFolder(folderOf(path));
    save(sheet.draw(), path);
}

void drawSheet(StackFile& file, const std::string& path, Report& report)
{
    ContactSheet sheet(file.stack().getLengthUnit());
    for (int i = 0; i < file.stack().getNumSlices(); ++i) {
        try {
            sheet.addSlice(file.stack().getSlice(i));
        } catch (const FileError& error) {
            report.fault(describe(error, file.stack()));
        }
    }
    saveSheet(sheet, path);
}

/// The files' names without suffix; with the folder's where two would be alike.
std::vector<std::string> curveNames(const std::vector<std::string>& files)
{
    std::set<std::string> names;
    for (const std::string& file : files) {
        names.insert(FileInfo::baseName(file));
    }
    std::vector<std::string> result;
    for (const std::string& file : files) {
        const std::string folder =
            names.size() < files.size() ? FileInfo::fileName(folderOf(file)) + "/" : "";
        result.push_back(folder + FileInfo::baseName(file));
    }
    return result;
}

void drawCurves(const std::vector<std::string>& files, const std::string& path)
{
    ContactSheet sheet;
    const std::vector<std::string> names = curveNames(files);
    for (std::size_t i = 0; i < files.size(); ++i) {
        sheet.addCurve(names[i], Curve<float>(files[i]));
    }
    saveSheet(sheet, path);
}

} // namespace

int runPicture(const QStringList& arguments, Report& report)
{
    CommandLine line(
        "picture", "STACK.sdf|CURVE.cv...",
        "Draws the landmarks of each slice on its photograph, one PNG file per slice, or all "
        "slices, or curves, side by side at one scale.");
    line.addOption("out", "Folder of the pictures.", "DIR");
    line.addOption("sheet",
                   "One picture of all slices, at one scale and with their names. Curve files, as "
                   "averages and teeth are, have this one alone.",
                   "FILE.png");
    line.parse(arguments, 1, -1);
    const bool curves = FileInfo::suffixName(line.argument(0)) == "cv";
    if (!curves && line.argumentCount() > 1) {
        throw UsageFailure("one stack at a time");
    }
    if (line.isSet("sheet")) {
        requireSuffix(line.required("sheet"), "png");
    }
    const std::string folder =
        curves || line.isSet("sheet") ? line.bytes("out") : line.required("out");
    if (line.isSet("quiet")) {
        report.setQuiet();
    }

    if (curves) {
        drawCurves(line.argumentsFrom(0), line.required("sheet"));
        return report.exitStatus();
    }
    StackFile file(line.argument(0), report);
    if (!folder.empty()) {
        drawSlices(file, folder, report);
    }
    if (line.isSet("sheet")) {
        drawSheet(file, line.required("sheet"), report);
    }
    return report.exitStatus();
}
