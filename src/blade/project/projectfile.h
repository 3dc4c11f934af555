#pragma once

#include "blade/project/projectconfig.h"

#include <QByteArray>
#include <QString>

/// The project file: UTF-8 text, on each line a key, a tab and a value.
namespace ProjectFile {

/// The file's bytes: all eleven keys.
QByteArray text(const ProjectConfig& project);

/// Writes all eleven keys. False if the file can't be written; a file that stood there before is
/// then still whole.
[[nodiscard]] bool write(const ProjectConfig& project, const QString& filename);

/// Reads the keys that the file has into the project; fields without a line, and lines that are not
/// understood or have no value, leave the project as it is. False if the file can't be opened.
bool read(ProjectConfig& project, const QString& filename);

/// "PINNATE" or "PALMATE"; any other value is "unknow type".
QString venationName(VenationType type);

} // namespace ProjectFile
