#pragma once

#include "support/temporaryfolder.h"

#include <QByteArray>
#include <QDir>

/// Settings and data of the user that runs the tests are left alone: both folders are temporary ones
/// for the whole program, set before the application asks for them. Empties them for the next test.
inline void clearUserFolders()
{
    static const TemporaryFolder folder;
    for (const char* name : {"config", "data"}) {
        const QString path = QString::fromStdString(folder.file(name));
        QDir(path).removeRecursively();
        QDir().mkpath(path);
    }
    qputenv("XDG_CONFIG_HOME", QByteArray::fromStdString(folder.file("config")));
    qputenv("XDG_DATA_HOME", QByteArray::fromStdString(folder.file("data")));
}
