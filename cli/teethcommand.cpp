#include "blade/measures/exportshapes.h"
#include "blade/process/landmarks.h"
#include "cli/commandline.h"
#include "cli/commands.h"
#include "cli/failure.h"
#include "cli/outputs.h"
#include "cli/report.h"
#include "cli/stackfile.h"

int runTeeth(const QStringList& arguments, Report& report)
{
    CommandLine line("teeth", "STACK.sdf --out DIR",
                     "Writes each tooth of each leaf as a curve file, in the stack's length unit "
                     "and in one frame for all, as DIR/teeth/l/RANK/SLICE_up.cv and _down.cv; rank "
                     "1 is next to the apex. Needs the sinus stage.");
    line.addOption("out", "Folder in which 'teeth' comes to stand.", "DIR");
    line.parse(arguments, 1, 1);
    const std::string folder = line.required("out");
    if (line.isSet("quiet")) {
        report.setQuiet();
    }

    StackFile file(line.argument(0), report);
    if (file.stack().findModel(Landmarks::primarySinus) < 0) {
        throw Failure(file.path() + ": there are no sinuses; 'crenara sinus' finds them");
    }
    prepareFolder(folder);
    ExportShapes process;
    process.setStack(file.stack());
    process.setOutputPath(QString::fromStdString(folder));
    process.run();
    report.note(std::to_string(process.getNumTeeth()) + " teeth in " + folder + "/teeth");
    return process.getLeftOut().empty() ? report.exitStatus() : 1;
}
