#include "shell/widgets/averagingfile.h"

#include "shell/widgets/folderchoice.h"

#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

AveragingFile::AveragingFile(QWidget* parent)
    : QGroupBox("Choice a method", parent)
    , fileEdit(displayLine())
{
    setCheckable(true);
    setChecked(false);
    // The text stands beside the line and is the tool tip of the button without one.
    QToolButton* button = iconButton(":/images/inode-directory-32.png", "Upload file :");
    QHBoxLayout* row = new QHBoxLayout(this);
    row->setSpacing(2);
    row->addWidget(new QLabel("Upload file :"));
    row->addWidget(fileEdit);
    row->addWidget(button);
    connect(button, &QToolButton::clicked, this, &AveragingFile::fileChooser);
    connect(this, &QGroupBox::clicked, this, &AveragingFile::groupBoxAveragingFileState);
}

void AveragingFile::setFile(const QString& name)
{
    fileEdit->setText(name);
}

QString AveragingFile::getFile() const
{
    return fileEdit->text();
}

void AveragingFile::fileChooser()
{
    const QString name =
        QFileDialog::getOpenFileName(this, "Open class size file", path, "Files (*.txt)");
    if (name != "") {
        fileEdit->setText(name);
    }
}
