#include "shell/widgets/helpbrowser.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QTextBrowser>
#include <QTextDocument>
#include <QVBoxLayout>

void HelpBrowser::showPage(const QString& page)
{
    HelpBrowser* window = new HelpBrowser("qrc:/html/index.html", page);
    window->resize(500, 400);
    window->show();
}

HelpBrowser::HelpBrowser(const QString& path, const QString& page, QWidget* parent)
    : QWidget(parent)
    , browser(new QTextBrowser)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_GroupLeader);

    QPushButton* home = new QPushButton("home");
    QPushButton* back = new QPushButton("back");
    QPushButton* close = new QPushButton("close");
    close->setShortcut(QKeySequence("Esc"));
    QHBoxLayout* buttons = new QHBoxLayout;
    buttons->addWidget(home);
    buttons->addWidget(back);
    buttons->addStretch();
    buttons->addWidget(close);
    QVBoxLayout* layout = new QVBoxLayout(this);
    layout->addLayout(buttons);
    layout->addWidget(browser);

    browser->setSearchPaths({path, ":/images"});
    browser->setSource(QUrl(page));
    browser->setFontWeight(2);

    connect(home, &QPushButton::clicked, browser, &QTextBrowser::home);
    connect(back, &QPushButton::clicked, browser, &QTextBrowser::backward);
    connect(close, &QPushButton::clicked, this, &QWidget::close);
    connect(browser, &QTextBrowser::sourceChanged, this, &HelpBrowser::updateWindowsTitle);
}

void HelpBrowser::updateWindowsTitle()
{
    setWindowTitle("Help: " + browser->document()->metaInformation(QTextDocument::DocumentTitle));
}
