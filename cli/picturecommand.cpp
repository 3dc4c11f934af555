#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/failure.h"
#include "cli/outputs.h"
#include "cli/report.h"
#include "cli/stackfile.h"
#include "image/image0.h"
#include "interface/itempainter.h"
#include "interface/qimageconversion.h"
#include "stack/stackslice.h"
#include "system/exception.h"

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

} // namespace

int runPicture(const QStringList& arguments, Report& report)
{
    CommandLine line(
        "picture", "STACK.sdf --out DIR",
        "Draws the landmarks of each slice on its photograph, one PNG file per slice.");
    line.addOption("out", "Folder of the pictures.", "DIR");
    line.parse(arguments, 1, 1);
    const std::string folder = line.required("out");
    if (line.isSet("quiet")) {
        report.setQuiet();
    }

    StackFile file(line.argument(0), report);
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
    return report.exitStatus();
}
