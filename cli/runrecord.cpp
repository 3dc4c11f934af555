#include "cli/runrecord.h"

#include "blade/geometry/measureunit.h"
#include "blade/measures/leafanalysis.h"
#include "cli/failure.h"
#include "interface/stackbuilder.h"
#include "stack/stackslice.h"

#include <QCryptographicHash>
#include <QFile>
#include <QJsonDocument>
#include <QSaveFile>

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
    QFile file(QString::fromStdString(path));
    QCryptographicHash hash(QCryptographicHash::Sha256);
    if (!file.open(QIODevice::ReadOnly) || !hash.addData(&file)) {
        throw Failure(path + ": the file can't be read");
    }
    inputs_.append(QJsonObject{{"file", QString::fromStdString(path)},
                               {"sha256", QString::fromLatin1(hash.result().toHex())}});
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
    QSaveFile file(QString::fromStdString(path));
    const QByteArray text = QJsonDocument(whole).toJson();
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.commit()) {
        throw Failure(path + ": the file can't be written: " + file.errorString().toStdString());
    }
}
