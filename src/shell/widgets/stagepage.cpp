#include "shell/widgets/stagepage.h"

#include "shell/widgets/helpbrowser.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QTextBrowser>
#include <QVBoxLayout>

StagePage::StagePage(const QString& helpPage,
                     int helpHeight,
                     const QString& guidePage,
                     QWidget* parent)
    : QWidget(parent)
    , guide(guidePage)
    , controlsBox(new QGroupBox)
    , process(new QPushButton(QIcon(":/images/processIcon.png"), "&Process"))
{
    QTextBrowser* shortHelp = new QTextBrowser;
    shortHelp->setSearchPaths({"qrc:/html", ":/images"});
    shortHelp->setSource(QUrl(helpPage));
    shortHelp->setFixedHeight(helpHeight);
    QPushButton* helpButton = new QPushButton(QIcon(":/images/helpButton.png"), "Help");
    helpButton->setShortcut(QKeySequence("F1"));

    QVBoxLayout* helpPair = new QVBoxLayout;
    helpPair->addWidget(helpButton);
    helpPair->addStretch();
    QHBoxLayout* helpRow = new QHBoxLayout;
    helpRow->addWidget(shortHelp, 1);
    helpRow->addLayout(helpPair);
    QHBoxLayout* processRow = new QHBoxLayout;
    processRow->addStretch();
    processRow->addWidget(process);

    QVBoxLayout* layout = new QVBoxLayout(this);
    layout->addLayout(helpRow);
    layout->addWidget(controlsBox);
    layout->addStretch(1);
    layout->addLayout(processRow);

    connect(helpButton, &QPushButton::clicked, this, &StagePage::help);
}

void StagePage::help()
{
    HelpBrowser::showPage(guide);
}
