#include "cli/runrecord.h"

#include "blade/geometry/measureunit.h"
#include "blade/measures/leafanalysis.h"
#include "cli/failure.h"
#include "cli/ownfiles.h"
#include "interface/stackbuilder.h"
#include "stack/stackslice.h"
#include "system/filereplacement.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

#include <algorithm>

namespace {

QJsonArray columns(const DataSet& table, const std::string& length)
{
    QJsonArray list;
    for (const std::string& name : table.variableNames()) {
        list.append(QJsonObject{{"column", QString::fromStdString(name)},
                                {"unit", QString::fromStdString(measureUnit(name, length))}});
    }
    return list;
}

/// The file's name and checksum.
QJsonObject fileEntry(const std::string& path)
{
    const std::string sum = OwnFiles::checksum(path);
    if (sum.empty()) {
        throw Failure(path + ": the file can't be read");
    }
    return {{"file", QString::fromStdString(path)}, {"sha256", QString::fromStdString(sum)}};
}

} // namespace

RunRecord::RunRecord(const std::string& command)
{
    record_["program"] = "crenara";
    record_["version"] = CRENARA_VERSION;
    record_["command"] = QString::fromStdString(command);
}

void RunRecord::addParameters(const std::string& stage, const QJsonObject& parameters)
{
    parameters_[QString::fromStdString(stage)] = parameters;
}

void RunRecord::addInput(const std::string& path)
{
    inputs_.append(fileEntry(path));
}

void RunRecord::setStack(const std::string& path)
{
    record_["stack"] = fileEntry(path);
}

bool RunRecord::tellsOtherStack(const std::string& recordPath, const std::string& stackPath)
{
    QFile file(QString::fromStdString(recordPath));
    if (!file.open(QIODevice::ReadOnly)) {
        return false;
    }
    const QJsonObject record = QJsonDocument::fromJson(file.readAll()).object();
    QJsonArray files = record["inputs"].toArray();
    files.append(record["stack"]);
    const QString name = QFileInfo(QString::fromStdString(stackPath)).fileName();
    bool other = false;
    for (const QJsonValue& entry : files) {
        if (QFileInfo(entry["file"].toString()).fileName() == name) {
            other = entry["sha256"] != fileEntry(stackPath)["sha256"];
        }
    }
    return other;
}

void RunRecord::setProject(const QJsonObject& facts)
{
    record_["project"] = facts;
}

void RunRecord::addLeftOut(const std::string& slice, const std::string& reason)
{
    leftOut_.append(QJsonObject{{"slice", QString::fromStdString(slice)},
                                {"reason", QString::fromStdString(reason)}});
}

bool RunRecord::isLeftOut(const std::string& slice) const
{
    const QString name = QString::fromStdString(slice);
    return std::any_of(leftOut_.begin(), leftOut_.end(), [&name](const QJsonValue& entry) {
        return entry.toObject()["slice"].toString() == name;
    });
}

void RunRecord::setTables(const LeafAnalysis& analysis, const LMXStack& stack)
{
    QJsonArray uncalibrated;
    for (int i = 0; i < stack.getNumSlices(); ++i) {
        if (!StackBuilder::hasPixelSize(stack.getSlice(i))) {
            uncalibrated.append(QString::fromStdString(stack.getSlice(i).getName()));
        }
    }
    const std::string length = lengthUnitOf(stack);
    record_["slices in pixels"] = uncalibrated;
    record_["leaf table"] = QJsonObject{{"file", QString::fromStdString(analysis.leafTablePath())},
                                        {"columns", columns(analysis.getLeafTable(), length)}};
    record_["tooth table"] = QJsonObject{{"file", QString::fromStdString(analysis.peakTablePath())},
                                         {"columns", columns(analysis.getPeakTable(), length)}};
}

void RunRecord::save(const std::string& path) const
{
    QJsonObject whole = record_;
    whole["parameters"] = parameters_;
    whole["inputs"] = inputs_;
    whole["slices left out"] = leftOut_;
    FileReplacement::write("void RunRecord::save(const string&) const", path,
                           QJsonDocument(whole).toJson().toStdString());
}
