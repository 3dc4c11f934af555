#pragma once

#include <QWidget>

class QVBoxLayout;
class RecentFiles;

/// What the window shows in place of a picture while no document is open: how to begin, and the files
/// used last.
class StartPage : public QWidget
{
    Q_OBJECT

public:
    /// The list is not owned and outlives the page.
    explicit StartPage(RecentFiles& recentFiles, QWidget* parent = nullptr);

signals:
    void openWanted();
    void fileChosen(const QString& file);

protected:
    /// The files may have changed since.
    void showEvent(QShowEvent* event) override;

private:
    RecentFiles& recentFiles_;
    QVBoxLayout* files_;
};
