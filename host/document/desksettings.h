#pragma once

#include <QByteArray>
#include <QSettings>
#include <QStringList>

/// What the desk keeps between starts, in the user's configuration folder.
class DeskSettings
{
public:
    DeskSettings();

    /// The folder that the last file was opened from or saved to; empty at first.
    QString lastFolder() const;
    void setLastFolder(const QString& folder);

    /// Absolute paths, the latest first.
    QStringList recentFiles() const;
    void setRecentFiles(const QStringList& files);

    /// Place and size of a window, and the arrangement of its parts; empty at first.
    QByteArray layout(const QString& part) const;
    void setLayout(const QString& part, const QByteArray& layout);

private:
    QSettings settings_;
};
