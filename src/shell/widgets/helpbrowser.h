#pragma once

#include <QWidget>

class QTextBrowser;

/// The help window that every "Help" button opens on an anchor of the guide. Each window stands on
/// its own and deletes itself when it is closed.
class HelpBrowser : public QWidget
{
    Q_OBJECT

public:
    /// Opens a further help window on a full address such as "qrc:/html/index.html#analysis".
    static void showPage(const QString& page);

    /// Shows `page`; `path` and the pictures' folder are where bare file names are looked up.
    HelpBrowser(const QString& path, const QString& page, QWidget* parent = nullptr);

public slots:
    void updateWindowsTitle();

private:
    QTextBrowser* browser;
};
