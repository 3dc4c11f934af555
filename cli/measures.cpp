#include "cli/measures.h"

#include "blade/measures/leafanalysis.h"
#include "blade/project/projectconfig.h"
#include "cli/failure.h"
#include "cli/outputs.h"
#include "cli/ownfiles.h"
#include "cli/report.h"
#include "cli/runrecord.h"
#include "stack/stackslice.h"

namespace {

void configure(LeafAnalysis& analysis, const MeasureTarget& target, const ProjectConfig& project)
{
    analysis.setFacts(project.getFacts());
    analysis.setVenationType(project.getVenationType());
    analysis.setGrowth(project.getGrowth());
    analysis.setOutputPath(QString::fromStdString(target.folder));
    analysis.setPrefix(QString::fromStdString(target.prefix));
}

} // namespace

void checkPrefix(const MeasureTarget& target)
{
    if (target.prefix.empty() || target.prefix.find('/') != std::string::npos) {
        throw UsageFailure("'" + target.prefix + "' can't begin the names of the tables");
    }
}

void prepareTarget(const MeasureTarget& target, bool replace)
{
    LeafAnalysis analysis;
    configure(analysis, target, ProjectConfig());
    for (const std::string& table : {analysis.leafTablePath(), analysis.peakTablePath()}) {
        OwnFiles::requireReplaceable(table, OwnFiles::isMeasureTable, replace);
    }
    OwnFiles::requireReplaceable(target.recordPath(), OwnFiles::isRecord, replace);
    prepareFolder(target.folder);
    for (const std::string& file :
         {analysis.leafTablePath(), analysis.peakTablePath(), target.recordPath()}) {
        checkWritable(file);
    }
}

void measureLeaves(LMXStack& stack,
                   const MeasureTarget& target,
                   const ProjectConfig& project,
                   RunRecord& record,
                   Report& report)
{
    LeafAnalysis analysis;
    configure(analysis, target, project);
    analysis.setStack(stack);
    analysis.setProgressListener([&report](int percent) {
        if (percent >= 0) {
            report.progress("measure", percent, 100);
        }
    });
    analysis.run();
    for (const int i : analysis.getLeftOut()) {
        const std::string& slice = stack.getSlice(i).getName();
        if (!record.isLeftOut(slice)) {
            const std::string reason = "it lacks contour, junctions or apex";
            report.fault(stack.getFilename() + ": slice " + slice + ": " + reason +
                         "; the slice is left out");
            record.addLeftOut(slice, reason);
        }
    }
    if (!analysis.isSaved()) {
        throw Failure(analysis.leafTablePath() + ", " + analysis.peakTablePath() +
                      ": the tables can't be written");
    }
    record.addParameters("measure", {{"out", QString::fromStdString(target.folder)},
                                     {"prefix", QString::fromStdString(target.prefix)}});
    record.setTables(analysis, stack);
    record.save(target.recordPath());
}
