#include "cli/projectoptions.h"

#include "cli/commandline.h"
#include "cli/failure.h"
#include "cli/report.h"
#include "shell/project/projectfile.h"

namespace {

const QStringList venationNames = {"pinnate", "palmate"};

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
