#pragma once

#include "interface/lmxstack.h"

#include <QJsonArray>
#include <QJsonObject>

#include <string>
#include <vector>

class LeafAnalysis;

/// The file beside the tables that tells how they came about: version, parameters, the inputs with
/// their checksums, the unit of each column, the facts of the project, and the slices that were left
/// out. It has no date, so that equal runs leave equal files.
class RunRecord
{
public:
    explicit RunRecord(const std::string& command);

    /// The parameters of a stage.
    void addParameters(const std::string& stage, const QJsonObject& parameters);

    /// An input file with the SHA-256 of its bytes. Throws `Failure` if it can't be read.
    void addInput(const std::string& path);

    /// The stack file that the run left, likewise.
    void setStack(const std::string& path);

    /// Whether the record in the file `recordPath` tells of a stack file of this name, as an input or
    /// as what the run left, and its checksum is another one now. False without such a record.
    static bool tellsOtherStack(const std::string& recordPath, const std::string& stackPath);

    void setProject(const QJsonObject& facts);

    void addLeftOut(const std::string& slice, const std::string& reason);

    bool isLeftOut(const std::string& slice) const;

    /// The columns of the tables with their units, as the stack's calibration has them.
    void setTables(const LeafAnalysis& analysis, const LMXStack& stack);

    /// Raises `FileWriteError` if the file can't be written; one that was there then stays whole.
    void save(const std::string& path) const;

private:
    QJsonObject record_;
    QJsonObject parameters_;
    QJsonArray inputs_;
    QJsonArray leftOut_;
};
