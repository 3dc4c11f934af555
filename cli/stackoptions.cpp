#include "cli/stackoptions.h"

#include "cli/commandline.h"
#include "cli/failure.h"
#include "cli/report.h"
#include "system/exception.h"
#include "system/fileinfo.h"

namespace {

const QStringList unitNames = {"um", "mm", "cm", "m"};
constexpr int unitScales[] = {-6, -3, -2, 0};

} // namespace

void StackOptions::declare(CommandLine& line)
{
    line.addOption("pixel-width",
                   "Width of a pixel in the stack's unit, in place of what the photographs state.",
                   "W");
    line.addOption("mosaic",
                   "Join every ROWS x COLUMNS images, row by row, into one slice, named after the "
                   "first.",
                   "ROWSxCOLUMNS");
    line.addOption("unit", "Length unit of the stack: " + unitNames.join(", ") + ".", "UNIT", "um");
}

StackOptions::StackOptions(const CommandLine& line)
    : unitName(line.bytes("unit"))
{
    unit.setScale(unitScales[line.choice("unit", unitNames)]);
    if (line.isSet("pixel-width")) {
        pixelWidth = line.positive("pixel-width");
    }
    if (line.isSet("mosaic")) {
        const QStringList sizes = QString::fromStdString(line.bytes("mosaic")).split('x');
        bool isNumber[2] = {};
        if (sizes.size() == 2) {
            rows = sizes[0].toInt(&isNumber[0]);
            columns = sizes[1].toInt(&isNumber[1]);
        }
        constexpr int most = 1000;
        if (!isNumber[0] || !isNumber[1] || rows < 1 || columns < 1 || rows > most ||
            columns > most) {
            throw UsageFailure("option 'mosaic' needs rows and columns as in 2x3, not '" +
                               line.bytes("mosaic") + "'");
        }
    }
}

QJsonObject StackOptions::toJson() const
{
    QJsonObject json;
    json["unit"] = QString::fromStdString(unitName);
    if (pixelWidth) {
        json["pixel-width"] = double(*pixelWidth);
    }
    if (rows * columns > 1) {
        json["mosaic"] = QString("%1x%2").arg(rows).arg(columns);
    }
    return json;
}

std::vector<StackBuilder::Refusal> buildStack(LMXStack& stack,
                                              const std::string& path,
                                              const std::vector<std::string>& photographs,
                                              const StackOptions& options,
                                              Report& report)
{
    StackBuilder builder;
    builder.setLengthUnit(options.unit);
    if (options.pixelWidth) {
        builder.setPixelWidth(*options.pixelWidth);
    }
    builder.setFolder(FileInfo::dirName(path));
    builder.setMosaic(options.rows, options.columns);
    builder.setGoesOn(true);
    builder.build(stack, photographs);
    for (const StackBuilder::Refusal& refusal : builder.getRefused()) {
        report.fault(refusal.file + ": slice " + FileInfo::baseName(refusal.photograph) + ": " +
                     refusal.reason + "; the photograph is left out");
    }
    if (stack.getNumSlices() == 0) {
        throw Failure(path + ": there is no photograph to make the stack of");
    }
    for (const std::string& note : builder.getNotes()) {
        report.note(note);
    }
    for (const std::string& note : StackBuilder::calibrationNotes(stack)) {
        report.note(note);
    }
    return builder.getRefused();
}
