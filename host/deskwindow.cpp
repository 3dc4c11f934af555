#include "host/deskwindow.h"

#include "host/document/desksettings.h"
#include "host/document/documentcontrol.h"
#include "host/document/lmxrootmediator.h"
#include "host/document/pixelsizedialog.h"
#include "host/editing/sliceeditor.h"
#include "host/panels/modelpanel.h"
#include "host/panels/slicepanel.h"
#include "host/results/resultswindow.h"
#include "host/runrepainting.h"
#include "host/stackplugin.h"
#include "host/startpage.h"
#include "host/view/editactions.h"
#include "host/view/sliceview.h"
#include "shell/plugin/lmxstackplugininterface.h"

#include <QCloseEvent>
#include <QDockWidget>
#include <QDropEvent>
#include <QFileInfo>
#include <QMenuBar>
#include <QMimeData>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>

namespace {

constexpr int layoutVersion = 1; // of the tool bars and panels
constexpr int messageTime = 8000;

QStringList localFiles(const QMimeData& data)
{
    QStringList files;
    for (const QUrl& url : data.urls()) {
        if (url.isLocalFile()) {
            files.append(url.toLocalFile());
        }
    }
    return files;
}

} // namespace

DeskWindow::DeskWindow(LMXRootMediator& mediator, StackPlugin& plugin, QWidget* parent)
    : QMainWindow(parent)
    , mediator_(mediator)
    , plugin_(plugin)
    , control_(new DocumentControl(mediator, *this))
    , slices_(new SlicePanel(mediator))
    , models_(new ModelPanel(mediator))
    , editor_(new SliceEditor(mediator, this))
    , middle_(new QStackedWidget)
    , startPage_(new StartPage(control_->recentFiles()))
    , view_(new SliceView)
    , editActions_(new EditActions(*editor_, *view_, this))
{
    view_->setEditor(editor_);
    middle_->addWidget(startPage_);
    middle_->addWidget(view_);
    setCentralWidget(middle_);
    setAcceptDrops(true);
    sliceDock_ = addPanel("Slices", slices_, Qt::LeftDockWidgetArea);
    modelDock_ = addPanel("Models", models_, Qt::RightDockWidgetArea);
    createFileMenu();
    createEditMenu();
    createViewMenu();
    createPluginMenu();
    createToolBar();
    connectParts();
    new RunRepainting(*this);
    statusBar();
    restoreLayout();
    updateTitle();
}

void DeskWindow::connectParts()
{
    connect(slices_, &SlicePanel::sliceChosen, this, &DeskWindow::showSlice);
    connect(startPage_, &StartPage::openWanted, control_, &DocumentControl::open);
    // Not at once: the button that was pressed goes with its page.
    connect(
        startPage_, &StartPage::fileChosen, this,
        [this](const QString& file) { openFiles({file}); }, Qt::QueuedConnection);
    connect(view_, &SliceView::statusText, this,
            [this](const QString& text) { statusBar()->showMessage(text); });
    connect(view_, &SliceView::scaleMeasured, this, &DeskWindow::takeBarLength);
    connect(control_, &DocumentControl::told, this,
            [this](const QString& text) { statusBar()->showMessage(text, messageTime); });
    connect(control_, &DocumentControl::pixelSizeWanted, this, &DeskWindow::askPixelSize);
}

QDockWidget* DeskWindow::addPanel(const QString& title, QWidget* content, Qt::DockWidgetArea area)
{
    auto* dock = new QDockWidget(title, this);
    dock->setObjectName(title);
    dock->setWidget(content);
    addDockWidget(area, dock);
    return dock;
}

QAction* DeskWindow::forDocument(QAction* action)
{
    documentActions_.push_back(action);
    return action;
}

void DeskWindow::createFileMenu()
{
    QMenu* file = menuBar()->addMenu("&File");
    file->addAction("&Open...", control_, &DocumentControl::open, QKeySequence::Open);
    control_->recentFiles().showIn(*file->addMenu("Open &recent"));
    file->addSeparator();
    forDocument(file->addAction("&Save", control_, &DocumentControl::save, QKeySequence::Save));
    forDocument(file->addAction("Save &as...", control_, &DocumentControl::saveAs,
                                QKeySequence("Ctrl+Shift+S")));
    forDocument(file->addAction("&Close", control_, &DocumentControl::close, QKeySequence::Close));
    file->addSeparator();
    file->addAction("&Quit", this, &QWidget::close, QKeySequence::Quit);
}

void DeskWindow::createEditMenu()
{
    QMenu* edit = menuBar()->addMenu("&Edit");
    editActions_->addToEditMenu(*edit);
    edit->addSeparator();
    forDocument(edit->addAction("Pi&xel size...", this, &DeskWindow::askPixelSize));
}

void DeskWindow::createViewMenu()
{
    QMenu* menu = menuBar()->addMenu("&View");
    QAction* next = forDocument(menu->addAction("&Next slice", slices_, &SlicePanel::chooseNext));
    next->setShortcuts({Qt::Key_PageDown, Qt::CTRL + Qt::Key_Right, Qt::CTRL + Qt::Key_Down});
    QAction* previous =
        forDocument(menu->addAction("&Previous slice", slices_, &SlicePanel::choosePrevious));
    previous->setShortcuts({Qt::Key_PageUp, Qt::CTRL + Qt::Key_Left, Qt::CTRL + Qt::Key_Up});
    menu->addSeparator();
    editActions_->addToViewMenu(*menu);
    menu->addSeparator();
    menu->addAction(sliceDock_->toggleViewAction());
    menu->addAction(modelDock_->toggleViewAction());
    menu->addSeparator();
    menu->addAction("&Results", this, &DeskWindow::showResults, QKeySequence("Ctrl+R"));
}

void DeskWindow::createToolBar()
{
    QToolBar* bar = addToolBar("Tools");
    bar->setObjectName("Tools");
    editActions_->addToToolBar(*bar);
}

void DeskWindow::createPluginMenu()
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

void DeskWindow::restoreLayout()
{
    const DeskSettings settings;
    if (!restoreGeometry(settings.layout("window"))) {
        resize(1280, 800);
    }
    if (!restoreState(settings.layout("panels"), layoutVersion)) {
        resizeDocks({sliceDock_, modelDock_}, {260, 290}, Qt::Horizontal);
    }
}

void DeskWindow::keepLayout() const
{
    DeskSettings settings;
    settings.setLayout("window", saveGeometry());
    settings.setLayout("panels", saveState(layoutVersion));
}

void DeskWindow::openFiles(const QStringList& paths)
{
    control_->openFiles(paths);
}

void DeskWindow::offerLeftovers()
{
    control_->offerLeftovers();
}

void DeskWindow::closeEvent(QCloseEvent* event)
{
    // Before anything can fail: a document that could not be saved stays open.
    event->ignore();
    if (control_->close()) {
        event->accept();
        keepLayout();
        emit closed();
    }
}

void DeskWindow::dragEnterEvent(QDragEnterEvent* event)
{
    if (!localFiles(*event->mimeData()).isEmpty()) {
        event->acceptProposedAction();
    }
}

void DeskWindow::dropEvent(QDropEvent* event)
{
    const QStringList files = localFiles(*event->mimeData());
    event->acceptProposedAction();
    // The program that the files come from waits for the end of this event, not for our questions.
    QTimer::singleShot(0, this, [this, files] { openFiles(files); });
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

void DeskWindow::askPixelSize()
{
    delete pixelSize_;
    pixelSize_ = new PixelSizeDialog(*mediator_.stack(), this);
    pixelSize_->setAttribute(Qt::WA_DeleteOnClose);
    connect(pixelSize_, &PixelSizeDialog::measureWanted, view_, [this](bool on) {
        view_->setTool(on ? SliceView::Tool::MeasureScale : SliceView::Tool::Select);
    });
    pixelSize_->show();
}

void DeskWindow::takeBarLength(double pixels)
{
    if (!pixelSize_) {
        askPixelSize();
    }
    pixelSize_->setBarLength(pixels);
}

void DeskWindow::showResults()
{
    if (!results_) {
        results_ = new ResultsWindow(mediator_, this);
        connect(results_, &ResultsWindow::sliceChosen, slices_, &SlicePanel::chooseSlice);
    }
    results_->show();
    results_->raise();
    results_->activateWindow();
    results_->showSlice(slices_->currentSlice());
}

void DeskWindow::stackOpenEvent(LMXStackOpenEvent& event)
{
    if (&event.getStack() == mediator_.stack()) {
        middle_->setCurrentWidget(view_);
        view_->setFocus();
        updateTitle();
    }
}

void DeskWindow::stackCloseEvent(LMXStackCloseEvent& event)
{
    if (&event.getStack() != mediator_.stack()) {
        return;
    }
    delete pixelSize_;
    middle_->setCurrentWidget(startPage_);
    for (QAction* action : documentActions_) {
        action->setEnabled(false);
    }
    setWindowModified(false);
    setWindowTitle("Crenara desk");
}

void DeskWindow::showSlice(int index)
{
    view_->showSlice(mediator_.stack(), index);
    models_->setSlice(index);
    editActions_->update();
    if (results_) {
        results_->showSlice(index);
    }
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
