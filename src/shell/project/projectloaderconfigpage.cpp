#include "shell/project/projectloaderconfigpage.h"

#include "shell/widgets/helpbrowser.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace {

QPushButton* pageButton(const QString& icon, const QString& text)
{
    QPushButton* button = new QPushButton(QIcon(icon), text);
    button->setIconSize(QSize(24, 24));
    return button;
}

} // namespace

ProjectLoaderConfigPage::ProjectLoaderConfigPage(QWidget* parent)
    : QWidget(parent)
{
    QLabel* credits = new QLabel("<p style=font-size:40px;> Crenara </p>"
                                 "<p>Contours, teeth and average shapes of leaves</p>"
                                 "<p>Version 1.16</p>");
    credits->setTextFormat(Qt::RichText);
    credits->setAlignment(Qt::AlignLeft);
    QLabel* logo = new QLabel;
    logo->setPixmap(QPixmap(":/images/logoCrenara.png"));
    logo->setAlignment(Qt::AlignRight);
    QHBoxLayout* head = new QHBoxLayout;
    head->addWidget(credits);
    head->addWidget(logo);

    QPushButton* helpButton = pageButton(":/images/helpButton.png", "Help");
    QPushButton* newButton = pageButton(":/images/document_add.png", "New Project");
    QPushButton* openButton = pageButton(":/images/loadProject.png", "Open Project");
    newButton->setShortcut(QKeySequence("Ctrl+p"));
    openButton->setShortcut(QKeySequence("Ctrl+l"));
    QHBoxLayout* buttons = new QHBoxLayout;
    buttons->addWidget(helpButton);
    buttons->addWidget(newButton);
    buttons->addWidget(openButton);

    QTextBrowser* intro = new QTextBrowser;
    intro->setSearchPaths({"qrc:/html", ":/images"});
    intro->setSource(QUrl("qrc:/html/intro.html"));

    QVBoxLayout* layout = new QVBoxLayout(this);
    layout->addLayout(head);
    layout->addLayout(buttons);
    layout->addWidget(intro);

    connect(helpButton, &QPushButton::clicked, this, &ProjectLoaderConfigPage::help);
    connect(newButton, &QPushButton::clicked, this, &ProjectLoaderConfigPage::newProjectClicked);
    connect(openButton, &QPushButton::clicked, this, &ProjectLoaderConfigPage::loadProjectClicked);
}

void ProjectLoaderConfigPage::help()
{
    HelpBrowser::showPage("qrc:/html/index.html#newProject");
}
