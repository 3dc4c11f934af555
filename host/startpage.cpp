#include "host/startpage.h"

#include "host/document/recentfiles.h"

#include <QCommandLinkButton>
#include <QFileInfo>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int columnWidth = 420;
constexpr int mostShown = 5;

} // namespace

StartPage::StartPage(RecentFiles& recentFiles, QWidget* parent)
    : QWidget(parent)
    , recentFiles_(recentFiles)
    , files_(new QVBoxLayout)
{
    auto* hint = new QLabel("Open photographs of leaves or a stack, or drop the files here.");
    hint->setWordWrap(true);
    auto* open = new QPushButton("&Open...");
    open->setDefault(true);
    connect(open, &QPushButton::clicked, this, &StartPage::openWanted);
    auto* column = new QVBoxLayout;
    column->addStretch(1);
    column->addWidget(hint);
    column->addWidget(open, 0, Qt::AlignLeft);
    column->addSpacing(20);
    column->addLayout(files_);
    column->addStretch(2);
    auto* middle = new QWidget;
    middle->setLayout(column);
    middle->setFixedWidth(columnWidth);
    auto* layout = new QHBoxLayout(this);
    layout->addWidget(middle);
    setFocusProxy(open);
}

void StartPage::showEvent(QShowEvent* event)
{
    while (QLayoutItem* item = files_->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    for (const QString& file : recentFiles_.files().mid(0, mostShown)) {
        const QFileInfo info(file);
        if (info.exists()) {
            auto* button = new QCommandLinkButton(info.fileName().replace('&', "&&"), info.path());
            button->setIcon(QIcon());
            connect(button, &QPushButton::clicked, this, [this, file] { emit fileChosen(file); });
            files_->addWidget(button);
        }
    }
    QWidget::showEvent(event);
}
