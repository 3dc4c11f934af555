#include "cli/runrecord.h"

#include "blade/leafanalysis.h"
#include "cli/failure.h"
#include "interface/stackbuilder.h"
#include "stack/stackslice.h"

#include <QCryptographicHash>
#include <QFile>
#include <QJsonDocument>
#include <QSaveFile>

#include <map>

namespace {

/// What the numbers of a column are.
enum class Kind { Text, Count, Ratio, Percent, Length, Area, Day, Hour, Calibration };

Kind kindOf(const std::string& column)
{
    static const std::map<std::string, Kind> kinds = {
        {"Slice_Name", Kind::Text},
        {"Calibration", Kind::Calibration},
        {"Blade_Length", Kind::Length},
        {"Age(day)", Kind::Day},
        {"Age(hours)", Kind::Hour},
        {"Blade_Width(BB)", Kind::Length},
        {"Blade_Width(IS)", Kind::Length},
        {"Blade_Area", Kind::Area},
        {"Blade_Perimeter", Kind::Length},
        {"HullPerimeter", Kind::Length},
        {"HullArea", Kind::Area},
        {"Petiole_Width", Kind::Length},
        {"Upper_Peak_Number", Kind::Count},
        {"Lower_Peak_Number", Kind::Count},
        {"Terminal_Peak_Number", Kind::Count},
        {"Total_Peak_Number", Kind::Count},
        {"Tooth_Position", Kind::Count},
        {"Side", Kind::Text},
        {"Tooth_Width", Kind::Length},
        {"Tooth_Height (altitude)", Kind::Length},
        {"Tooth_Height (median)", Kind::Length},
        {"Tooth_Area", Kind::Area},
        {"Tooth_Perimeter", Kind::Length},
        {"Tooth_Position_From_The_Tip", Kind::Percent},
        {"Tooth_Position_From_The_Base", Kind::Percent},
    };
    const auto kind = kinds.find(column);
    return kind == kinds.end() ? Kind::Ratio : kind->second;
}

QString unitOf(Kind kind, const QString& length)
{
    switch (kind) {
    case Kind::Text:
        return "text";
    case Kind::Count:
        return "count";
    case Kind::Ratio:
        return "1";
    case Kind::Percent:
        return "%";
    case Kind::Length:
        return length;
    case Kind::Area:
        return length + "²";
    case Kind::Day:
        return "day";
    case Kind::Hour:
        return "hour";
    case Kind::Calibration:
        return length + " per pixel";
    }
    return "";
}

QJsonArray columns(const DataSet& table, const QString& length)
{
    QJsonArray list;
    for (const std::string& name : table.variableNames()) {
        list.append(QJsonObject{{"column", QString::fromStdString(name)},
                                {"unit", unitOf(kindOf(name), length)}});
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
    const QString symbol = QString::fromStdString(stack.getLengthUnit().symbol());
    const bool none = uncalibrated.size() == stack.getNumSlices() && !uncalibrated.isEmpty();
    const QString length = none ? QString("pixel") : symbol;
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
