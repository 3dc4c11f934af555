#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/contactsheet.h"
#include "cli/failure.h"
#include "cli/outputs.h"
#include "cli/ownfiles.h"
#include "cli/report.h"
#include "cli/stackfile.h"
#include "image/pixels/image0.h"
#include "interface/itempainter.h"
#include "interface/qimageconversion.h"
#include "stack/stackslice.h"
#include "system/fileinfo.h"
#include "system/filereplacement.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>

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

void save(QImage picture, const std::string& path)
{
    picture.setText("Software", OwnFiles::program);
    QBuffer bytes;
    if (!bytes.open(QIODevice::WriteOnly) || !picture.save(&bytes, "PNG")) {
        throw Failure(path + ": the picture can't be made");
    }
    FileReplacement::write("void save(const QImage&, const string&)", path,
                           bytes.data().toStdString());
}

/// The slice's name as a file's name that no earlier slice has, and that is none of a photograph.
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
    return name + "_landmarks.png";
}

/// The files of the slices' pictures. Throws `UsageFailure` for one that may not be replaced.
std::vector<std::string> pictureFiles(const Stack& stack, const std::string& folder, bool replace)
{
    std::set<std::string> taken;
    std::vector<std::string> files;
    for (int i = 0; i < stack.getNumSlices(); ++i) {
        files.push_back(folder + "/" + fileName(stack.getSlice(i).getName(), taken));
        OwnFiles::requireReplaceable(files.back(), OwnFiles::isPicture, replace);
    }
    return files;
}

void drawSlices(StackFile& file, const std::string& folder, bool replace, Report& report)
{
    const std::vector<std::string> files = pictureFiles(file.stack(), folder, replace);
    prepareFolder(folder);
    const int slices = file.stack().getNumSlices();
    for (int i = 0; i < slices; ++i) {
        const StackSlice& slice = file.stack().getSlice(i);
        const std::string fault =
            faultOn(slice, [&] { save(draw(slice), files[static_cast<std::size_t>(i)]); });
        if (!fault.empty()) {
            report.fault(fault);
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
        const StackSlice& slice = file.stack().getSlice(i);
        const std::string fault = faultOn(slice, [&] { sheet.addSlice(slice); });
        if (!fault.empty()) {
            report.fault(fault);
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
        const Curve<float> curve(files[i]);
        if (curve.getSpace() < 2) {
            throw Failure(files[i] + ": a curve of " + std::to_string(curve.getSpace()) +
                          " dimensions can't be drawn");
        }
        sheet.addCurve(names[i], curve);
    }
    saveSheet(sheet, path);
}

} // namespace

int runPicture(const QStringList& arguments, Report& report)
{
    CommandLine line("picture", "STACK.sdf|CURVE.cv...",
                     "Draws the landmarks of each slice on its photograph, one PNG file per slice, "
                     "SLICE_landmarks.png, or all slices, or curves, side by side at one scale.");
    line.addOption("out", "Folder of the pictures.", "DIR");
    line.addOption("sheet",
                   "One picture of all slices, at one scale and with their names. Curve files, as "
                   "averages and teeth are, have this one alone.",
                   "FILE.png");
    StackFile::declareReplace(line);
    line.parse(arguments, 1, -1);
    const bool curves = FileInfo::suffixName(line.argument(0)) == "cv";
    if (!curves && line.argumentCount() > 1) {
        throw UsageFailure("one stack at a time");
    }
    const bool replace = line.isSet("replace");
    if (line.isSet("sheet")) {
        requireSuffix(line.required("sheet"), "png");
        OwnFiles::requireReplaceable(line.bytes("sheet"), OwnFiles::isPicture, replace);
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
        drawSlices(file, folder, replace, report);
    }
    if (line.isSet("sheet")) {
        drawSheet(file, line.required("sheet"), report);
    }
    return report.exitStatus();
}
