#include "shell/widgets/folderchoice.h"

#include <QFileDialog>
#include <QLineEdit>
#include <QToolButton>

bool chooseFolder(QString& folder)
{
    QFileDialog chooser;
    chooser.setModal(true);
    chooser.setFileMode(QFileDialog::Directory);
    chooser.setOption(QFileDialog::ShowDirsOnly);
    if (chooser.exec() != QDialog::Accepted || chooser.selectedFiles().isEmpty()) {
        return false;
    }
    folder = chooser.selectedFiles().first();
    return true;
}

QToolButton* iconButton(const QString& icon, const QString& text)
{
    QToolButton* button = new QToolButton;
    button->setIcon(QIcon(icon));
    button->setText(text);
    button->setToolTip(text);
    return button;
}

QLineEdit* displayLine()
{
    QLineEdit* line = new QLineEdit;
    line->setEnabled(false);
    return line;
}
