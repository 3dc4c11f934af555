#include "host/document/recentfiles.h"

#include "host/document/desksettings.h"

#include <QDir>
#include <QFileInfo>
#include <QMenu>

namespace {

constexpr int mostFiles = 10;

QString inHomeFolder(const QString& file)
{
    const QString home = QDir::homePath() + "/";
    return file.startsWith(home) ? "~/" + file.mid(home.size()) : file;
}

} // namespace

RecentFiles::RecentFiles(QObject* parent)
    : QObject(parent)
{}

QStringList RecentFiles::files() const
{
    return DeskSettings().recentFiles().mid(0, mostFiles);
}

void RecentFiles::add(const QString& file)
{
    const QString path = QFileInfo(file).absoluteFilePath();
    QStringList list = files();
    list.removeAll(path);
    list.prepend(path);
    DeskSettings().setRecentFiles(list.mid(0, mostFiles));
}

void RecentFiles::clear()
{
    DeskSettings().setRecentFiles({});
}

void RecentFiles::showIn(QMenu& menu)
{
    connect(&menu, &QMenu::aboutToShow, this, [this, &menu] { fill(menu); });
    fill(menu);
}

void RecentFiles::fill(QMenu& menu)
{
    menu.clear();
    int number = 0;
    for (const QString& file : files()) {
        // An ampersand of a name is none of a shortcut.
        const QString text = inHomeFolder(file).replace('&', "&&");
        QAction* entry = menu.addAction(QString("&%1  %2").arg(++number % 10).arg(text), this,
                                        [this, file] { emit chosen(file); });
        entry->setEnabled(QFileInfo::exists(file));
    }
    if (number > 0) {
        menu.addSeparator();
    }
    menu.addAction("&Clear list", this, &RecentFiles::clear)->setEnabled(number > 0);
}
