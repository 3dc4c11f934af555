#include "host/document/desksettings.h"

DeskSettings::DeskSettings()
    : settings_("Crenara", "crenara-desk")
{}

QString DeskSettings::lastFolder() const
{
    return settings_.value("lastFolder").toString();
}

void DeskSettings::setLastFolder(const QString& folder)
{
    settings_.setValue("lastFolder", folder);
}

QStringList DeskSettings::recentFiles() const
{
    return settings_.value("recentFiles").toStringList();
}

void DeskSettings::setRecentFiles(const QStringList& files)
{
    settings_.setValue("recentFiles", files);
}

QByteArray DeskSettings::layout(const QString& part) const
{
    return settings_.value("layout/" + part).toByteArray();
}

void DeskSettings::setLayout(const QString& part, const QByteArray& layout)
{
    settings_.setValue("layout/" + part, layout);
}
