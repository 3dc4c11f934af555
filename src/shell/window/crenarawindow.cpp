#include "shell/window/crenarawindow.h"

#include "interface/lmxstack.h"
#include "shell/pages/averagingconfigpage.h"
#include "shell/pages/exportshapesconfigeditor.h"
#include "shell/pages/extractcontourconfigeditor.h"
#include "shell/pages/extractpeaksconfigeditor.h"
#include "shell/pages/extractsinusconfigeditor.h"
#include "shell/pages/hierarchyconfigeditor.h"
#include "shell/pages/leafmeasuresconfigeditor.h"
#include "shell/project/projectloaderconfigpage.h"

#include <QHBoxLayout>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

ProjectConfig CrenaraWindow::__projectConfig;
ExtractSinusLocalCurvatureConfig CrenaraWindow::__configLCMethod;
HierarchyArabidoConfig CrenaraWindow::__configHierarchyArabidoMethod;
HierarchyIterativeConfig CrenaraWindow::__configHierarchyIterativeMethod;
NoHierarchyConfig CrenaraWindow::__configNoHierarchyMethod;

namespace {

struct Row
{
    const char* text;
    const char* icon;
};

// Row i shows page i. The hierarchy stands where the guide has it, between tips and analysis.
const Row rows[] = {
    {"Project Manager", ":/images/oakFinal.png"}, {"Extract Contour", ":/images/Segmentation.png"},
    {"Extract Sinus ", ":/images/oakSinus.png"},  {"Extract Tips ", ":/images/oakSinusTips.png"},
    {"Hierarchy", ":/images/hierarchy.png"},      {"Analysis", ":/images/analyse.png"},
    {"Averaging", ":/images/means.png"},          {"Export Teeth", ":/images/exportTooth.png"},
};

} // namespace

CrenaraWindow::CrenaraWindow(QWidget* parent)
    : QDialog(parent)
    , iconsList(new QListWidget(this))
    , pagesStack(new QStackedWidget)
    , progressBar(new QProgressBar)
{
    iconsList->setViewMode(QListView::IconMode);
    iconsList->setIconSize(QSize(100, 100));
    iconsList->setFixedWidth(150);
    iconsList->setSpacing(5);
    iconsList->setMovement(QListView::Static);
    // One column as wide as the list leaves beside its scroll bar, and room for texts of two lines, so
    // that none is cut. The grid takes the place of the spacing.
    iconsList->setWordWrap(true);
    iconsList->setGridSize(QSize(124, 108 + 2 * iconsList->fontMetrics().lineSpacing()));
    iconsList->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    iconsList->setFrameStyle(QFrame::Raised);
    iconsList->setFrameShape(QFrame::StyledPanel);
    pagesStack->setFrameStyle(QFrame::Raised);
    pagesStack->setFrameShape(QFrame::StyledPanel);
    createPages();
    progressBar->setFixedWidth(150);
    progressBar->setRange(0, 100);
    layOut();
    setWindowFlags(Qt::Window);
    createIcons();
}

void CrenaraWindow::createPages()
{
    projectPage = new ProjectLoaderConfigPage(this);
    contourPage = new ExtractContourConfigEditor(this);
    sinusPage = new ExtractSinusConfigEditor(this);
    peaksPage = new ExtractPeaksConfigEditor(this);
    hierarchyPage = new HierarchyConfigEditor(this);
    measuresPage = new LeafMeasuresConfigEditor(this);
    averagingPage = new AveragingConfigPage(this);
    exportPage = new ExportShapesConfigEditor(this);
    sinusPage->setConfig(__configLCMethod); // before its gate opens, the page is seen all the same
    for (QWidget* page :
         std::initializer_list<QWidget*>{projectPage, contourPage, sinusPage, peaksPage,
                                         hierarchyPage, measuresPage, averagingPage, exportPage}) {
        pagesStack->addWidget(page);
    }
}

void CrenaraWindow::layOut()
{
    QPushButton* quit = new QPushButton(QIcon(":/images/exit.png"), "&Quit");
    connect(quit, &QPushButton::clicked, this, &QWidget::close);
    QHBoxLayout* pages = new QHBoxLayout;
    pages->addWidget(iconsList);
    pages->addWidget(pagesStack, 1);
    QHBoxLayout* bottom = new QHBoxLayout;
    bottom->addStretch(1);
    bottom->addWidget(progressBar);
    bottom->addWidget(quit);
    QVBoxLayout* layout = new QVBoxLayout(this);
    layout->addLayout(pages);
    layout->addLayout(bottom);
    // Enter in a box of numbers confirms the number, and presses no button of the dialog.
    for (QPushButton* button : findChildren<QPushButton*>()) {
        button->setAutoDefault(false);
    }
}

void CrenaraWindow::createIcons()
{
    for (const Row& row : rows) {
        QListWidgetItem* item = new QListWidgetItem(QIcon(row.icon), row.text, iconsList);
        item->setTextAlignment(Qt::AlignHCenter);
        item->setFlags(Qt::NoItemFlags);
    }
    iconsList->item(0)->setFlags(Qt::ItemIsEnabled);
    connect(iconsList, &QListWidget::currentItemChanged, this, &CrenaraWindow::pageChange);
}

void CrenaraWindow::enabledActions()
{
    for (int row = 1; row < iconsList->count(); ++row) {
        iconsList->item(row)->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled);
    }
}

void CrenaraWindow::setStack(LMXStack& live)
{
    if (stack) {
        disconnect(stack, nullptr, this, nullptr);
    }
    stack = &live;
    setWindowTitle("Crenara : " + QString::fromStdString(live.getName()) + " " +
                   QString::fromStdString(live.getFilename()));
    connect(&live, &QObject::destroyed, this, &CrenaraWindow::closePages);
}

void CrenaraWindow::closePages()
{
    if (__projectConfig.getStack() == stack) {
        __projectConfig.setStack(nullptr);
    }
    stack = nullptr;
    iconsList->setEnabled(false);
    pagesStack->setEnabled(false);
    setWindowTitle("Crenara : the stack was closed");
}

void CrenaraWindow::subjectStarted(const std::string&) {}

void CrenaraWindow::subjectFinished(const std::string&)
{
    progressBar->reset();
}

void CrenaraWindow::subjectProgressed(const std::string&) {}

void CrenaraWindow::subjectProgressed(int value, int maximum)
{
    if (progressBar->maximum() != maximum) {
        progressBar->setMaximum(maximum);
    }
    progressBar->setValue(value);
}

void CrenaraWindow::pageChange(QListWidgetItem* current, QListWidgetItem* previous)
{
    pagesStack->setCurrentIndex(iconsList->row(current ? current : previous));
    makeAction(iconsList->currentRow());
}

void CrenaraWindow::makeAction(int row)
{
    switch (row) {
    case 0:
        disconnect(projectPage, nullptr, this, nullptr);
        initializeProjectLoader();
        break;
    case 1:
        disconnect(contourPage, nullptr, this, nullptr);
        initializeExtractContour();
        break;
    case 2:
        disconnect(sinusPage, nullptr, this, nullptr);
        initializeExtractSinus();
        break;
    case 3:
        disconnect(peaksPage, nullptr, this, nullptr);
        initializeExtractPeaks();
        break;
    case 4:
        disconnect(hierarchyPage, nullptr, this, nullptr);
        initializeHierarchy();
        break;
    case 5:
        disconnect(measuresPage, nullptr, this, nullptr);
        initializeLeafMeasures();
        break;
    case 6:
        disconnect(averagingPage, nullptr, this, nullptr);
        initializeAveraging();
        break;
    case 7:
        disconnect(exportPage, nullptr, this, nullptr);
        initializeExportShapes();
        break;
    }
}
