#include "host/deskwindow.h"

#include "blade/junctionplacing.h"
#include "host/documentfiles.h"
#include "host/lmxrootmediator.h"
#include "host/sliceview.h"
#include "host/stackplugin.h"
#include "shell/lmxstackplugininterface.h"
#include "stack/stackslice.h"
#include "system/exception.h"

#include <QCloseEvent>
#include <QDir>
#include <QFileDialog>
#include <QListWidget>
#include <QMenuBar>
#include <QMessageBox>
#include <QSplitter>
#include <QStatusBar>

#include <algorithm>

DeskWindow::DeskWindow(LMXRootMediator& mediator, StackPlugin& plugin, QWidget* parent)
    : QMainWindow(parent)
    , mediator_(mediator)
    , plugin_(plugin)
    , sliceList_(new QListWidget)
    , view_(new SliceView)
{
    QSplitter* splitter = new QSplitter;
    splitter->addWidget(sliceList_);
    splitter->addWidget(view_);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({180, 720});
    setCentralWidget(splitter);
    createMenus();
    statusBar();
    connect(sliceList_, &QListWidget::currentRowChanged, this, &DeskWindow::showSlice);
    connect(view_, &SliceView::pairClicked, this, &DeskWindow::placeJunctions);
    resize(1000, 750);
    updateTitle();
}

void DeskWindow::createMenus()
{
    QMenu* file = menuBar()->addMenu("&File");
    file->addAction("&Open...", this, &DeskWindow::open, QKeySequence::Open);
    documentActions_ = {
        file->addAction("&Save", this, &DeskWindow::save, QKeySequence::Save),
        file->addAction("Save &As...", this, &DeskWindow::saveAs, QKeySequence("Ctrl+Shift+S")),
    };
    file->addSeparator();
    file->addAction("&Quit", this, &QWidget::close, QKeySequence::Quit);

    QMenu* edit = menuBar()->addMenu("&Edit");
    QAction* draw = edit->addAction("Draw &junctions");
    draw->setCheckable(true);
    draw->setShortcut(QKeySequence("Ctrl+J"));
    draw->setStatusTip("Click on the two places where the blade meets the petiole");
    connect(draw, &QAction::toggled, view_, &SliceView::askForPairs);
    connect(draw, &QAction::toggled, this, [this, draw](bool on) {
        statusBar()->showMessage(on ? draw->statusTip() : QString());
    });
    documentActions_.push_back(draw);
    addPluginEntry();
}

void DeskWindow::addPluginEntry()
{
    QMenu* plugins = menuBar()->addMenu("&Plugins");
    plugins->setToolTipsVisible(true);
    if (plugin_.get()) {
        plugins->addAction(plugin_.get()->getPluginName(), this, &DeskWindow::runPlugin);
    } else {
        QAction* missing = plugins->addAction("No plug-in");
        missing->setEnabled(false);
        missing->setToolTip(plugin_.getFault());
    }
}

void DeskWindow::open()
{
    const LMXStack* stack = mediator_.stack();
    const QString folder =
        stack ? QFileInfo(QString::fromStdString(stack->getFilename())).path() : QString();
    const QStringList paths = QFileDialog::getOpenFileNames(
        this, "Open", folder,
        "Stacks and photographs (*.sdf *.tif *.tiff *.png *.jpg *.jpeg);;All files (*)");
    if (!paths.isEmpty()) {
        openFiles(paths);
    }
}

void DeskWindow::openFiles(const QStringList& paths)
{
    if (!mayClose()) {
        return;
    }
    std::vector<std::string> files;
    for (const QString& path : paths) {
        files.push_back(path.toStdString());
    }
    DocumentFiles opener;
    mediator_.open(opener.open(files));
    tellNotes(opener.getNotes());
}

void DeskWindow::tellNotes(const std::vector<std::string>& notes)
{
    if (notes.empty()) {
        return;
    }
    constexpr std::size_t shown = 10;
    QStringList lines;
    for (std::size_t i = 0; i < std::min(shown, notes.size()); ++i) {
        lines.append(QString::fromStdString(notes[i]));
    }
    if (notes.size() > shown) {
        lines.append(QString("and %1 more").arg(notes.size() - shown));
    }
    QMessageBox* box =
        new QMessageBox(QMessageBox::Information, "Open", lines.join('\n'), QMessageBox::Ok, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

bool DeskWindow::save()
{
    const std::string& filename = mediator_.stack()->getFilename();
    return filename.empty() ? saveAs() : saveTo(QString::fromStdString(filename));
}

bool DeskWindow::saveAs()
{
    const LMXStack& stack = *mediator_.stack();
    const QString name = QString::fromStdString(
        stack.getFilename().empty() ? stack.getName() + ".sdf" : stack.getFilename());
    QFileDialog chooser(this, "Save As", QFileInfo(name).path(), "Stacks (*.sdf)");
    chooser.setAcceptMode(QFileDialog::AcceptSave);
    chooser.setDefaultSuffix("sdf");
    chooser.selectFile(QFileInfo(name).fileName());
    if (chooser.exec() != QDialog::Accepted || chooser.selectedFiles().isEmpty()) {
        return false;
    }
    return saveTo(chooser.selectedFiles().first());
}

bool DeskWindow::saveTo(const QString& path)
{
    if (!mediator_.stack()->write(path.toStdString())) {
        raiseFile<FileWriteError>("bool DeskWindow::saveTo(const QString&)",
                                  "The stack can't be written", path.toStdString());
    }
    statusBar()->showMessage("Saved " + path, 5000);
    return true;
}

bool DeskWindow::mayClose()
{
    const LMXStack* stack = mediator_.stack();
    if (!stack || !stack->isModified()) {
        return true;
    }
    const QMessageBox::StandardButton answer = QMessageBox::warning(
        this, "Unsaved changes",
        "The stack " + QString::fromStdString(stack->getName()) + " has unsaved changes.",
        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
    return answer == QMessageBox::Discard || (answer == QMessageBox::Save && save());
}

void DeskWindow::closeEvent(QCloseEvent* event)
{
    // Before anything can fail: a document that could not be saved stays open.
    event->ignore();
    if (mayClose()) {
        event->accept();
        mediator_.close();
        emit closed();
    }
}

void DeskWindow::runPlugin()
{
    LMXStackPluginInterface& plugin = *plugin_.get();
    if (LMXStack* stack = mediator_.stack()) {
        plugin.setStack(*stack);
    }
    plugin.setMediator(mediator_);
    plugin.run();
}

void DeskWindow::stackOpenEvent(LMXStackOpenEvent&)
{
    listSlices();
    updateTitle();
}

void DeskWindow::stackCloseEvent(LMXStackCloseEvent&)
{
    const QSignalBlocker blocker(sliceList_);
    sliceList_->clear();
    setWindowModified(false);
    setWindowTitle("Crenara desk");
}

void DeskWindow::listSlices()
{
    const LMXStack* stack = mediator_.stack();
    const int chosen = std::max(0, sliceList_->currentRow());
    {
        const QSignalBlocker blocker(sliceList_);
        sliceList_->clear();
        for (int i = 0; stack && i < stack->getNumSlices(); ++i) {
            sliceList_->addItem(QString::fromStdString(stack->getSlice(i).getName()));
        }
        sliceList_->setCurrentRow(std::min(chosen, sliceList_->count() - 1));
    }
    showSlice(sliceList_->currentRow());
}

void DeskWindow::showSlice(int index)
{
    view_->showSlice(mediator_.stack(), index);
}

void DeskWindow::updateTitle()
{
    const LMXStack* stack = mediator_.stack();
    for (QAction* action : documentActions_) {
        action->setEnabled(stack != nullptr);
    }
    if (!stack) {
        setWindowTitle("Crenara desk");
        return;
    }
    const QString file = QFileInfo(QString::fromStdString(stack->getFilename())).fileName();
    setWindowTitle((file.isEmpty() ? QString::fromStdString(stack->getName()) : file) +
                   "[*] - Crenara desk");
    setWindowModified(stack->isModified());
}

void DeskWindow::placeJunctions(const QPoint& first, const QPoint& second)
{
    LMXStack& stack = *mediator_.stack();
    const int index = sliceList_->currentRow();
    const std::string slice = stack.getSlice(index).getName();
    const JunctionPoints points = {{first.x(), second.x()}, {first.y(), second.y()}};
    const std::string fault = junctionFault(points, stack.getSlice(index));
    if (!fault.empty()) {
        ::raise<ValueError>("void DeskWindow::placeJunctions(const QPoint&, const QPoint&)",
                            "Slice " + slice + ": " + fault);
    }
    JunctionPlacing placing;
    placing.setStack(stack);
    placing.place(points, index);
    statusBar()->showMessage("The junctions of " + QString::fromStdString(slice) + " are drawn");
}
