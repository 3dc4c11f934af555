#include "cli/projectoptions.h"

#include "blade/project/projectfile.h"
#include "cli/commandline.h"
#include "cli/failure.h"
#include "cli/report.h"

#include <QFile>
#include <QMap>

#include <cmath>
#include <utility>

namespace {

const QStringList venationNames = {"pinnate", "palmate"};

/// The values of the file's lines, without quotes.
QMap<QString, QString> valuesOf(const std::string& path)
{
    QMap<QString, QString> values;
    QFile file(QString::fromStdString(path));
    if (file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        for (const QString& text : QString::fromUtf8(file.readAll()).split('\n')) {
            const QStringList pieces = text.split('\t');
            if (pieces.size() >= 2) {
                values[pieces[0]] = QString(pieces[1]).remove('"');
            }
        }
    }
    return values;
}

[[noreturn]] void refuse(const std::string& path, const QString& text)
{
    throw UsageFailure(path + ": " + text.toStdString());
}

/// Holds the file's values to what the options are held to, where no option takes their place: the
/// reader passes over what it doesn't understand.
void checkValues(const std::string& path, const CommandLine& line)
{
    const QMap<QString, QString> values = valuesOf(path);
    const QString venation = values.value("VenationType", "PINNATE");
    if (!line.isSet("venation") && venation != "PINNATE" && venation != "PALMATE") {
        refuse(path, "'VenationType' needs one of PINNATE, PALMATE, not '" + venation + "'");
    }
    const std::pair<const char*, const char*> numbers[] = {
        {"StrengthFactor", "strength"}, {"InflectionPoint", "inflection"}, {"Scaling", "scaling"}};
    for (const auto& [key, option] : numbers) {
        const float value = values.value(key).toFloat();
        if (line.declares(option) && !line.isSet(option) &&
            !(value > 0.0F && std::isfinite(value))) {
            refuse(
                path,
                values.contains(key)
                    ? QString("'%1' needs a number above 0, not '%2'").arg(key, values.value(key))
                    : QString("'%1' is missing, a number above 0").arg(key));
        }
    }
}

} // namespace

VenationType venationOption(const CommandLine& line)
{
    return static_cast<VenationType>(line.choice("venation", venationNames));
}

void ProjectOptions::declareVenation(CommandLine& line)
{
    line.addOption("project", "Project file.", "P.crp");
    line.addOption("venation", "Venation: pinnate or palmate (as the project says, else pinnate).",
                   "TYPE");
}

void ProjectOptions::declareGrowth(CommandLine& line)
{
    line.addOption("strength", "Exponent of the growth curve (project, else 1).", "S");
    line.addOption("inflection",
                   "Days at which a leaf has half its final length (project, else 1).", "I");
    line.addOption("scaling", "Final length of a leaf in the stack's unit (project, else 1).", "C");
}

ProjectOptions::ProjectOptions(const CommandLine& line, Report& report)
{
    if (line.isSet("project")) {
        path = line.required("project");
        if (!ProjectFile::read(config, QString::fromStdString(path))) {
            throw Failure(path + ": Project Loader: The file crp is unreadable");
        }
        checkValues(path, line);
        if (config.getProjectName().isEmpty()) {
            report.note(path + ": the project has no name; is this a project file?");
        }
    }
    if (line.isSet("venation")) {
        config.setVenationType(venationOption(line));
    }
    if (line.isSet("strength")) {
        config.setStrengthFactor(line.positive("strength"));
    }
    if (line.isSet("inflection")) {
        config.setInflectionPoint(line.positive("inflection"));
    }
    if (line.isSet("scaling")) {
        config.setScaling(line.positive("scaling"));
    }
}

QJsonObject ProjectOptions::toJson() const
{
    return {{"name", config.getProjectName()},
            {"species", config.getSpecie()},
            {"genotype", config.getGenotype()},
            {"growth condition", config.getGrowthCondition()},
            {"leaf group", config.getLeafGroup()},
            {"venation", venationNames[config.getVenationType()]},
            {"kinetic parameters enabled", config.kineticIsEnabled()},
            {"strength", double(config.getStrengthFactor())},
            {"inflection", double(config.getInflectionPoint())},
            {"scaling", double(config.getScaling())}};
}
