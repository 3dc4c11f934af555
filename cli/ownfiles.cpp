#include "cli/ownfiles.h"

#include "blade/project/projectfile.h"
#include "cli/failure.h"
#include "system/exception.h"
#include "system/fileinfo.h"
#include "system/filereplacement.h"

#include <QCryptographicHash>
#include <QFile>
#include <QImageReader>

#include <unistd.h>

#include <filesystem>

const char* const OwnFiles::program = "crenara " CRENARA_VERSION;

namespace {

std::string notePath(const std::string& stack)
{
    return FileInfo::dirName(stack) + "." + FileInfo::fileName(stack) + ".sha256";
}

/// A line as the usual programs for checksums read it.
std::string noteOf(const std::string& stack)
{
    const std::string sum = OwnFiles::checksum(stack);
    return sum.empty() ? "" : sum + "  " + FileInfo::fileName(stack) + "\n";
}

QByteArray beginOf(const std::string& path, qint64 length)
{
    QFile file(QString::fromStdString(path));
    return file.open(QIODevice::ReadOnly) ? file.read(length) : QByteArray();
}

bool begins(const std::string& path, const QByteArray& header)
{
    return beginOf(path, header.size()) == header;
}

} // namespace

std::string OwnFiles::checksum(const std::string& path)
{
    QFile file(QString::fromStdString(path));
    QCryptographicHash hash(QCryptographicHash::Sha256);
    const bool read = file.open(QIODevice::ReadOnly) && hash.addData(&file);
    return read ? hash.result().toHex().toStdString() : "";
}

bool OwnFiles::isAsWritten(const std::string& path)
{
    constexpr qint64 most = 4096;
    const std::string note = noteOf(path);
    return !note.empty() && beginOf(notePath(path), most).toStdString() == note;
}

void OwnFiles::noteWritten(const std::string& path, bool own)
{
    const std::string note = notePath(path);
    if (!own) {
        unlink(note.c_str());
        return;
    }
    try {
        FileReplacement::write("void OwnFiles::noteWritten(const string&, bool)", note,
                               noteOf(path));
    } catch (const FileWriteError&) {
        // In a closed folder the next run asks, though it need not.
    }
}

bool OwnFiles::isPicture(const std::string& path)
{
    return QImageReader(QString::fromStdString(path)).text("Software").startsWith("crenara");
}

bool OwnFiles::isLandmarkTable(const std::string& path)
{
    return begins(path, "Slice_Name\tModel\tX\tY\n");
}

bool OwnFiles::isMeasureTable(const std::string& path)
{
    std::error_code error;
    return begins(path, "Slice_Name\tCalibration\t") ||
           std::filesystem::file_size(path, error) == 0;
}

bool OwnFiles::isRecord(const std::string& path)
{
    constexpr qint64 most = 1 << 24;
    return beginOf(path, most).contains("\"program\": \"crenara\"");
}

bool OwnFiles::isProject(const std::string& path)
{
    ProjectConfig project;
    const QString name = QString::fromStdString(path);
    return ProjectFile::read(project, name) &&
           beginOf(path, QFile(name).size()) == ProjectFile::text(project);
}

void OwnFiles::requireReplaceable(const std::string& path,
                                  bool (*isOwn)(const std::string&),
                                  bool replace)
{
    std::error_code error;
    if (!replace && std::filesystem::is_regular_file(path, error) && !isOwn(path)) {
        throw UsageFailure(path + ": crenara did not write this file, or it was changed since; "
                                  "'--replace' writes over it");
    }
}
