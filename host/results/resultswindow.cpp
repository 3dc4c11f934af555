#include "host/results/resultswindow.h"

#include "blade/project/projectfile.h"
#include "host/document/documentfiles.h"
#include "host/document/lmxrootmediator.h"
#include "host/results/averagespage.h"
#include "host/results/plotpage.h"
#include "host/results/resulttableview.h"
#include "interface/lmxstack.h"
#include "stack/stackslice.h"
#include "system/exception.h"

#include <QComboBox>
#include <QFileDialog>
#include <QLabel>
#include <QMenuBar>
#include <QShowEvent>
#include <QStatusBar>
#include <QTabWidget>
#include <QToolBar>

namespace {

enum Tab { LeavesTab, TeethTab, PlotTab, ShapesTab };

/// The names behind a text; nothing without names.
QString list(const QString& text, const std::vector<std::string>& names)
{
    QStringList shown;
    for (const std::string& name : names) {
        shown.append(QString::fromStdString(name));
    }
    return shown.isEmpty() ? QString() : text + shown.join(", ");
}

} // namespace

ResultsWindow::ResultsWindow(LMXRootMediator& mediator, QWidget* parent)
    : QMainWindow(parent)
    , mediator_(mediator)
    , tabs_(new QTabWidget)
    , plots_(new PlotPage)
    , averages_(new AveragesPage)
    , venation_(new QComboBox)
    , state_(new QLabel)
{
    setWindowTitle("Results");
    setObjectName("results");
    createPages();
    createMenus();
    state_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    statusBar()->addWidget(state_, 1);
    resize(960, 640);
}

void ResultsWindow::createPages()
{
    leaves_ = createTable(MeasureTables::Kind::Leaves);
    teeth_ = createTable(MeasureTables::Kind::Teeth);
    tabs_->addTab(leaves_, "&Leaves");
    tabs_->addTab(teeth_, "T&eeth");
    tabs_->addTab(plots_, "&Plot");
    tabs_->addTab(averages_, "S&hapes");
    setCentralWidget(tabs_);
    connect(plots_, &PlotPage::rowChosen, this, &ResultsWindow::choose);
    connect(averages_, &AveragesPage::sliceChosen, this, &ResultsWindow::sliceChosen);
}

ResultTableView* ResultsWindow::createTable(MeasureTables::Kind kind)
{
    ResultTableView* table = new ResultTableView;
    table->setObjectName(kind == MeasureTables::Kind::Leaves ? "leaves" : "teeth");
    connect(table, &ResultTableView::rowChosen, this, [this, kind](int row) { choose(kind, row); });
    return table;
}

void ResultsWindow::createMenus()
{
    QMenu* file = menuBar()->addMenu("&File");
    QAction* measures =
        file->addAction("&Measure", this, &ResultsWindow::measure, QKeySequence(Qt::Key_F5));
    measures->setToolTip("Measures the leaves of the open document");
    QAction* project = file->addAction("P&roject file...", this, &ResultsWindow::openProject);
    project->setToolTip("Takes venation and growth curve from a project file");
    file->addSeparator();
    file->addAction("&Open table...", this, &ResultsWindow::openTable, QKeySequence::Open);
    file->addAction("Open &shapes...", this, &ResultsWindow::openShapes);
    file->addAction("Open &folder of curves...", this, &ResultsWindow::openFolderOfCurves);
    file->addSeparator();
    // Of the two entries with this key only one is open at a time.
    const QKeySequence exporting(Qt::CTRL | Qt::Key_E);
    QAction* table =
        file->addAction("&Export table...", this, &ResultsWindow::exportTable, exporting);
    QAction* picture =
        file->addAction("Save p&icture...", this, &ResultsWindow::savePicture, exporting);
    file->addSeparator();
    file->addAction("&Close", this, &QWidget::close, QKeySequence::Close);
    QMenu* edit = menuBar()->addMenu("&Edit");
    QAction* copying = edit->addAction("&Copy", this, &ResultsWindow::copy, QKeySequence::Copy);

    const auto enable = [=](int tab) {
        table->setEnabled(tab <= TeethTab);
        copying->setEnabled(tab <= TeethTab);
        picture->setEnabled(tab > TeethTab);
    };
    connect(tabs_, &QTabWidget::currentChanged, this, enable);
    enable(tabs_->currentIndex());
    createToolBar({measures, table, picture, copying}, project);
}

void ResultsWindow::createToolBar(const QList<QAction*>& actions, QAction* project)
{
    QToolBar* bar = addToolBar("Results");
    bar->setObjectName("resultsToolBar");
    bar->addActions(actions);
    bar->addSeparator();
    bar->addWidget(new QLabel("Venation: "));
    bar->addWidget(venation_);
    bar->addAction(project);
    venation_->addItems({"Pinnate", "Palmate"});
    venation_->setAccessibleName("Venation");
    connect(venation_, QOverload<int>::of(&QComboBox::activated), this, [this](int type) {
        project_.setVenationType(static_cast<VenationType>(type));
        measure();
    });
}

void ResultsWindow::measure()
{
    LMXStack* stack = mediator_.stack();
    if (!stack) {
        tables_.clear();
    } else {
        tables_.measure(*stack, project_);
    }
    old_ = false;
    fromFiles_ = false;
    showTables();
    showShapes();
}

void ResultsWindow::showTables()
{
    leaves_->setTable(tables_.table(MeasureTables::Kind::Leaves));
    teeth_->setTable(tables_.table(MeasureTables::Kind::Teeth));
    plots_->setTables(tables_);
    tell();
}

void ResultsWindow::showShapes()
{
    if (LMXStack* stack = mediator_.stack()) {
        averages_->showStack(*stack, true);
    } else {
        averages_->clear();
    }
}

void ResultsWindow::tell()
{
    QString text = QString("%1 leaves, %2 teeth")
                       .arg(tables_.table(MeasureTables::Kind::Leaves).numRows())
                       .arg(tables_.table(MeasureTables::Kind::Teeth).numRows());
    text += list("; without contour, two junctions or apex: ", tables_.leftOut());
    text += list("; lengths in pixels, without a pixel size: ", tables_.inPixels());
    if (fromFiles_) {
        text = "From files: " + text;
    } else if (old_) {
        text += ". The leaves have changed since: F5 measures them again";
    }
    state_->setText(text);
    state_->setToolTip(text);
}

void ResultsWindow::stackModifyEvent(LMXStackModifyEvent& event)
{
    const LMXStack& stack = event.getStack();
    if (!old_ && &stack == mediator_.stack() && stack.isModified()) {
        old_ = true;
        tell();
    }
}

void ResultsWindow::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    if (old_ && !fromFiles_ && !event->spontaneous()) {
        measure();
    }
}

void ResultsWindow::stackOpenEvent(LMXStackOpenEvent&)
{
    old_ = true;
    fromFiles_ = false;
    if (isVisible()) {
        measure();
    }
}

void ResultsWindow::stackCloseEvent(LMXStackCloseEvent& event)
{
    if (&event.getStack() == mediator_.stack()) {
        tables_.clear();
        averages_->clear();
        old_ = true;
        fromFiles_ = false;
        showTables();
    }
}

MeasureTables::Kind ResultsWindow::currentKind() const
{
    return tabs_->currentIndex() == TeethTab ? MeasureTables::Kind::Teeth
                                             : MeasureTables::Kind::Leaves;
}

void ResultsWindow::choose(MeasureTables::Kind kind, int row)
{
    plots_->markRow(kind, row);
    const LMXStack* stack = mediator_.stack();
    const int slice = stack ? tables_.slice(kind, row, *stack) : -1;
    if (slice >= 0) {
        emit sliceChosen(slice);
    } else {
        statusBar()->showMessage("The open stack has no slice of this name", 5000);
    }
}

void ResultsWindow::showSlice(int index)
{
    const LMXStack* stack = mediator_.stack();
    for (const MeasureTables::Kind kind :
         {MeasureTables::Kind::Leaves, MeasureTables::Kind::Teeth}) {
        ResultTableView& table = kind == MeasureTables::Kind::Leaves ? *leaves_ : *teeth_;
        const int selected = table.tableModel().tableRow(table.currentIndex().row());
        if (!stack || tables_.slice(kind, selected, *stack) == index) {
            continue;
        }
        for (int row = 0; row < tables_.table(kind).numRows(); ++row) {
            if (tables_.slice(kind, row, *stack) == index) {
                table.selectTableRow(row);
                break;
            }
        }
    }
}

QString
ResultsWindow::chosenFile(const QString& title, const QString& proposal, const QString& filter)
{
    QFileDialog chooser(this, title, QFileInfo(proposal).path(), filter);
    chooser.setAcceptMode(QFileDialog::AcceptSave);
    chooser.setDefaultSuffix(QFileInfo(proposal).suffix());
    chooser.selectFile(QFileInfo(proposal).fileName());
    return chooser.exec() == QDialog::Accepted ? chooser.selectedFiles().value(0) : QString();
}

void ResultsWindow::openProject()
{
    const QString file =
        QFileDialog::getOpenFileName(this, "Project file", {}, "Projects (*.crp);;All files (*)");
    if (file.isEmpty()) {
        return;
    }
    ProjectConfig project;
    if (!ProjectFile::read(project, file)) {
        raiseFile<FileReadError>("void ResultsWindow::openProject()",
                                 "The project file can't be read", file.toStdString());
    }
    project_ = project;
    venation_->setCurrentIndex(project_.getVenationType());
    measure();
}

void ResultsWindow::openTable()
{
    const QStringList files = QFileDialog::getOpenFileNames(
        this, "Open table", {}, "Tables of measures (*.data);;All files (*)");
    MeasureTables read;
    for (const QString& file : files) {
        const MeasureTables::Kind kind = read.load(file.toStdString());
        tabs_->setCurrentIndex(kind == MeasureTables::Kind::Leaves ? LeavesTab : TeethTab);
    }
    if (!files.isEmpty()) {
        tables_ = read;
        fromFiles_ = true;
        showTables();
    }
}

void ResultsWindow::openShapes()
{
    const QStringList files = QFileDialog::getOpenFileNames(
        this, "Open shapes", {}, "Stacks and curves (*.sdf *.cv);;All files (*)");
    if (files.isEmpty()) {
        return;
    }
    std::vector<std::string> names;
    for (const QString& file : files) {
        names.push_back(file.toStdString());
    }
    if (files.size() == 1 && files.first().endsWith(".sdf")) {
        averages_->showStack(*DocumentFiles().open(names), false);
    } else {
        averages_->showFiles(names);
    }
    tabs_->setCurrentIndex(ShapesTab);
}

void ResultsWindow::openFolderOfCurves()
{
    const QString folder = QFileDialog::getExistingDirectory(this, "Folder of curves");
    if (folder.isEmpty()) {
        return;
    }
    const std::vector<std::string> files = curveFiles(folder.toStdString());
    if (files.empty()) {
        raiseFile<FileReadError>("void ResultsWindow::openFolderOfCurves()",
                                 "The folder holds no curve files (.cv)", folder.toStdString());
    }
    averages_->showFiles(files);
    tabs_->setCurrentIndex(ShapesTab);
}

void ResultsWindow::exportTable()
{
    const LMXStack* stack = mediator_.stack();
    const bool leaves = currentKind() == MeasureTables::Kind::Leaves;
    const QString proposal =
        stack ? QString::fromStdString(MeasureTables::usualPath(currentKind(), *stack))
              : QString(leaves ? "LeafMeasures.data" : "PeakMeasures.data");
    const QString file = chosenFile("Export table", proposal, "Tables of measures (*.data)");
    if (file.isEmpty()) {
        return;
    }
    if (!tables_.table(currentKind()).save(file.toStdString(), true)) {
        raiseFile<FileWriteError>("void ResultsWindow::exportTable()", "The table can't be written",
                                  file.toStdString());
    }
    statusBar()->showMessage("Exported " + file, 5000);
}

void ResultsWindow::savePicture()
{
    const bool plot = tabs_->currentIndex() == PlotTab;
    const QString file =
        chosenFile("Save picture", plot ? "plot.png" : "shapes.png", "Pictures (*.png *.svg)");
    if (file.isEmpty()) {
        return;
    }
    if (plot) {
        plots_->savePicture(file);
    } else {
        averages_->savePicture(file);
    }
    statusBar()->showMessage("Saved " + file, 5000);
}

void ResultsWindow::copy() const
{
    if (tabs_->currentIndex() <= TeethTab) {
        (currentKind() == MeasureTables::Kind::Leaves ? leaves_ : teeth_)->copy();
    }
}
