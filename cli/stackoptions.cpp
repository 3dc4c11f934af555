#include "cli/stackoptions.h"

#include "cli/commandline.h"
#include "cli/failure.h"
#include "cli/report.h"
#include "interface/stackbuilder.h"
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
    line.addOption("unit", "Length unit of the stack: " + unitNames.join(", ") + ".", "UNIT", "um");
}

StackOptions::StackOptions(const CommandLine& line)
    : unitName(line.bytes("unit"))
{
    unit.setScale(unitScales[line.choice("unit", unitNames)]);
    if (line.isSet("pixel-width")) {
        pixelWidth = line.positive("pixel-width");
    }
}

QJsonObject StackOptions::toJson() const
{
    QJsonObject json;
    json["unit"] = QString::fromStdString(unitName);
    if (pixelWidth) {
        json["pixel-width"] = double(*pixelWidth);
    }
    return json;
}

void buildStack(LMXStack& stack,
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
    try {
        builder.build(stack, photographs);
    } catch (const FileError& error) {
        const auto reached = static_cast<std::size_t>(stack.getNumSlices());
        throw Failure(error.getFilename() + ": slice " + FileInfo::baseName(photographs[reached]) +
                      ": " + error.getWhat());
    }
    for (const std::string& note : builder.getNotes()) {
        report.note(note);
    }
    for (const std::string& note : StackBuilder::calibrationNotes(stack)) {
        report.note(note);
    }
}
