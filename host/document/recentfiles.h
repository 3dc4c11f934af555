#pragma once

#include <QObject>
#include <QStringList>

class QMenu;

/// The stack files that were opened or saved last, as the settings keep them and a menu shows them.
class RecentFiles : public QObject
{
    Q_OBJECT

public:
    explicit RecentFiles(QObject* parent = nullptr);

    /// The latest first, ten at most. Files that are not there at the moment are among them: a disk
    /// may come back.
    QStringList files() const;

    /// Puts a file in front.
    void add(const QString& file);
    void clear();

    /// Makes the menu show the files whenever it opens, and an entry that forgets them.
    void showIn(QMenu& menu);

signals:
    /// An entry of the menu was chosen.
    void chosen(const QString& file);

private:
    void fill(QMenu& menu);
};
