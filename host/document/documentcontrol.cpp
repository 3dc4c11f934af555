#include "host/document/documentcontrol.h"

#include "host/document/desksettings.h"
#include "host/document/documentfiles.h"
#include "host/document/lmxrootmediator.h"
#include "interface/stackbuilder.h"
#include "stack/stackslice.h"
#include "system/exception.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>

#include <algorithm>

namespace {

/// The part of the notes that fits into a box.
QString shortened(const std::vector<std::string>& notes)
{
    constexpr std::size_t shown = 10;
    QStringList lines;
    for (std::size_t i = 0; i < std::min(shown, notes.size()); ++i) {
        lines.append(QString::fromStdString(notes[i]));
    }
    if (notes.size() > shown) {
        lines.append(QString("and %1 more").arg(notes.size() - shown));
    }
    return lines.join('\n');
}

/// Why a file can't be created or replaced, where that can be seen; begins with ": ".
QString reasonAgainstWriting(const QString& path)
{
    const QFileInfo file(path);
    const QFileInfo folder(file.absolutePath());
    if (!folder.isDir()) {
        return ": there is no folder " + folder.filePath();
    }
    if (file.isDir()) {
        return ": it is a folder";
    }
    if (file.exists() && !file.isWritable()) {
        return ": the file is write-protected";
    }
    return folder.isWritable() ? QString() : ": the folder is write-protected";
}

bool lacksPixelSize(const LMXStack& stack)
{
    for (int i = 0; i < stack.getNumSlices(); ++i) {
        if (!StackBuilder::hasPixelSize(stack.getSlice(i))) {
            return true;
        }
    }
    return false;
}

std::vector<std::string> toStrings(const QStringList& paths)
{
    std::vector<std::string> files;
    for (const QString& path : paths) {
        files.push_back(path.toStdString());
    }
    return files;
}

QString fileFilter()
{
    QStringList patterns;
    for (const char* suffix :
         {"sdf", "tif", "tiff", "png", "jpg", "jpeg", "lsm", "h5", "hdf5", "vm", "img"}) {
        // Some dialogs tell upper case from lower.
        patterns.append(QString("*.%1 *.%2").arg(suffix, QString(suffix).toUpper()));
    }
    return "Stacks and images (" + patterns.join(' ') + ");;All files (*)";
}

void rememberFolderOf(const QString& file)
{
    DeskSettings().setLastFolder(QFileInfo(file).absolutePath());
}

} // namespace

DocumentControl::DocumentControl(LMXRootMediator& mediator, QWidget& window)
    : QObject(&window)
    , mediator_(mediator)
    , window_(window)
    , autosave_(mediator)
{
    connect(&autosave_, &Autosave::failed, this, &DocumentControl::told);
    connect(&recentFiles_, &RecentFiles::chosen, this,
            [this](const QString& file) { openFiles({file}); });
}

void DocumentControl::open()
{
    const QStringList paths =
        QFileDialog::getOpenFileNames(&window_, "Open", DeskSettings().lastFolder(), fileFilter());
    if (!paths.isEmpty()) {
        openFiles(paths);
    }
}

void DocumentControl::openFiles(const QStringList& paths)
{
    if (!mayClose()) {
        return;
    }
    if (paths.size() == 1 && DocumentFiles::isStackFile(paths.first().toStdString())) {
        const auto leftover = Autosave::leftoverOf(paths.first());
        if (leftover && offer(*leftover) != Answer::Discard) {
            return;
        }
    }
    openDirectly(paths);
}

void DocumentControl::openDirectly(const QStringList& paths)
{
    QProgressDialog progress("Converting photographs", "Cancel", 0, 0, &window_);
    progress.setWindowTitle("Open");
    progress.setWindowModality(Qt::WindowModal);
    DocumentFiles opener;
    opener.setProgress([&progress](int done, int count) {
        progress.setMaximum(count);
        progress.setValue(done);
        return !progress.wasCanceled();
    });
    std::unique_ptr<LMXStack> stack = opener.open(toStrings(paths));
    if (!stack) {
        return;
    }
    progress.reset();
    const bool isNew = stack->getFilename().empty();
    mediator_.open(std::move(stack));
    rememberFolderOf(paths.first());
    if (!isNew) {
        recentFiles_.add(paths.first());
    } else if (lacksPixelSize(*mediator_.stack())) {
        emit pixelSizeWanted();
    }
    tellNotes(opener.getNotes());
}

void DocumentControl::tellNotes(const std::vector<std::string>& notes)
{
    if (!notes.empty()) {
        auto* box = new QMessageBox(QMessageBox::Information, "Open", shortened(notes),
                                    QMessageBox::Ok, &window_);
        box->setAttribute(Qt::WA_DeleteOnClose);
        box->open();
    }
}

DocumentControl::Answer DocumentControl::offer(const Autosave::Leftover& leftover)
{
    const QString name = leftover.document.isEmpty() ? QString("A stack that was never saved")
                                                     : QFileInfo(leftover.document).fileName();
    QMessageBox box(QMessageBox::Question, "Recover changes",
                    name + " was not closed at its last use. Its changes up to " +
                        leftover.time.toString("d MMMM, hh:mm") + " were kept.",
                    QMessageBox::Yes | QMessageBox::Discard | QMessageBox::Cancel, &window_);
    box.button(QMessageBox::Yes)->setText("&Recover");
    box.button(QMessageBox::Discard)->setText("&Discard changes");
    box.button(QMessageBox::Cancel)->setText("&Later");
    box.setDefaultButton(QMessageBox::Yes);
    switch (box.exec()) {
    case QMessageBox::Yes:
        recover(leftover);
        return Answer::Recover;
    case QMessageBox::Discard:
        Autosave::discard(leftover);
        return Answer::Discard;
    default:
        return Answer::Later;
    }
}

void DocumentControl::recover(const Autosave::Leftover& leftover)
{
    DocumentFiles opener;
    mediator_.open(opener.openCopy(leftover.copy.toStdString(), leftover.document.toStdString()));
    autosave_.adopt(leftover);
    tellNotes(opener.getNotes());
}

void DocumentControl::offerLeftovers()
{
    for (const Autosave::Leftover& leftover : Autosave::leftovers(recentFiles_.files())) {
        if (mediator_.stack() || offer(leftover) == Answer::Recover) {
            return;
        }
    }
}

bool DocumentControl::save()
{
    const std::string& filename = mediator_.stack()->getFilename();
    if (filename.empty()) {
        return saveAs();
    }
    saveTo(QString::fromStdString(filename));
    return true;
}

bool DocumentControl::saveAs()
{
    const LMXStack& stack = *mediator_.stack();
    const QString suggested = QString::fromStdString(
        stack.getFilename().empty() ? stack.getName() + ".sdf" : stack.getFilename());
    const QString folder = stack.getFilename().empty() ? DeskSettings().lastFolder()
                                                       : QFileInfo(suggested).absolutePath();
    QFileDialog chooser(&window_, "Save As", folder, "Stacks (*.sdf)");
    chooser.setAcceptMode(QFileDialog::AcceptSave);
    chooser.setDefaultSuffix("sdf");
    chooser.selectFile(QFileInfo(suggested).fileName());
    if (chooser.exec() != QDialog::Accepted || chooser.selectedFiles().isEmpty()) {
        return false;
    }
    saveTo(chooser.selectedFiles().first());
    return true;
}

void DocumentControl::saveTo(const QString& path)
{
    if (!mediator_.stack()->write(path.toStdString())) {
        raiseFile<FileWriteError>("void DocumentControl::saveTo(const QString&)",
                                  "The stack can't be written" +
                                      reasonAgainstWriting(path).toStdString(),
                                  path.toStdString());
    }
    recentFiles_.add(path);
    rememberFolderOf(path);
    emit told("Saved " + path);
}

bool DocumentControl::mayClose()
{
    const LMXStack* stack = mediator_.stack();
    if (!stack || !stack->isModified()) {
        return true;
    }
    const QMessageBox::StandardButton answer = QMessageBox::warning(
        &window_, "Unsaved changes",
        "The stack " + QString::fromStdString(stack->getName()) + " has unsaved changes.",
        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
    return answer == QMessageBox::Discard || (answer == QMessageBox::Save && save());
}

bool DocumentControl::close()
{
    if (!mayClose()) {
        return false;
    }
    mediator_.close();
    return true;
}
