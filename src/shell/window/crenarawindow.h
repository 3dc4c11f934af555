#pragma once

#include "blade/process/stagegates.h"
#include "blade/project/projectconfig.h"
#include "shell/settings/extractsinuslocalcurvatureconfig.h"
#include "shell/settings/hierarchyarabidoconfig.h"
#include "shell/settings/hierarchyiterativeconfig.h"
#include "shell/settings/nohierarchyconfig.h"
#include "system/progressmonitor.h"

#include <QDialog>

#include <string>

class AveragingConfigPage;
class AveragingProcess;
class ExportShapesConfigEditor;
class ExtractContourConfigEditor;
class ExtractConvexPoints;
class ExtractPeaksConfigEditor;
class ExtractSinusConfigEditor;
class HierarchyConfigEditor;
class LMXRootMediator;
class LMXStack;
class LeafMeasuresConfigEditor;
class ProjectLoaderConfigPage;
class QListWidget;
class QListWidgetItem;
class QProgressBar;
class QStackedWidget;

/// The workflow: the stages on the left, the page of the chosen stage on the right, a progress bar
/// and a quit button below.
///
/// The window decides when a stage may be used by looking at the models that the stack holds, and
/// runs a stage by making a process, handing it the stack, the bar and the page's values. It holds
/// no logic on leaves. Exceptions pass through to the host's event loop; what a run has changed in
/// the models and items by then is put back, the rest is not touched.
///
/// The host owns the stack. A window whose stack was destroyed closes its pages and says so in its
/// title.
class CrenaraWindow : public QDialog, public ProgressMonitor
{
    Q_OBJECT

public:
    explicit CrenaraWindow(QWidget* parent = nullptr);

    /// The stack to work on, shown in the title; not owned.
    void setStack(LMXStack& live);

    void setMediator(LMXRootMediator& root) { mediator = &root; }

    using ProgressMonitor::subjectFinished;
    using ProgressMonitor::subjectProgressed;
    using ProgressMonitor::subjectStarted;
    void subjectStarted(const std::string& text) override;
    void subjectFinished(const std::string& text) override;
    void subjectProgressed(const std::string& text) override;
    void subjectProgressed(int value, int maximum) override;

    /// The current project of all windows.
    static ProjectConfig& project() { return __projectConfig; }

public slots:
    void pageChange(QListWidgetItem* current, QListWidgetItem* previous);
    void runProjectLoader();
    void runNewProjectLoader();
    void runExtractContour();
    void runExtractSinus();
    void runExtractPeaks();
    void runCheckStack();
    void runHierarchy();
    void runLeafMeasures();
    void runAveraging();
    void runExportShapes();
    void runImportShapes();

private:
    void createPages();
    void createIcons();
    void layOut();
    void enabledActions();
    void makeAction(int row);
    void closePages();

    void initializeProjectLoader();
    void initializeExtractContour();
    void initializeExtractSinus();
    void initializeExtractPeaks();
    void initializeHierarchy();
    void initializeLeafMeasures();
    void initializeAveraging();
    void initializeExportShapes();

    template <class Work>
    void runOrRestore(Work work);
    template <class Work>
    void runReading(Work work);
    template <class Process>
    void sortStructures(Process& process);
    void detectSinuses(ExtractConvexPoints& process);
    void runNoHierrachy();
    void runHierarchyIterative();
    void runHierarchyArabidoMethod();
    bool passesGate(QWidget* page, GatedStage stage);
    bool fillAveragingPage();
    void average(AveragingProcess& process);
    void showAveragingFault(const std::string& text);

    bool kineticParametersEnabled = false;
    QListWidget* iconsList = nullptr;
    QStackedWidget* pagesStack = nullptr;
    QProgressBar* progressBar = nullptr;

    ProjectLoaderConfigPage* projectPage = nullptr;
    ExtractContourConfigEditor* contourPage = nullptr;
    ExtractSinusConfigEditor* sinusPage = nullptr;
    ExtractPeaksConfigEditor* peaksPage = nullptr;
    HierarchyConfigEditor* hierarchyPage = nullptr;
    LeafMeasuresConfigEditor* measuresPage = nullptr;
    AveragingConfigPage* averagingPage = nullptr;
    ExportShapesConfigEditor* exportPage = nullptr;

    LMXStack* stack = nullptr;
    LMXRootMediator* mediator = nullptr;

    // Shared by all windows, for as long as the plug-in is loaded.
    static ProjectConfig __projectConfig;
    static ExtractSinusLocalCurvatureConfig __configLCMethod;
    static HierarchyArabidoConfig __configHierarchyArabidoMethod;
    static HierarchyIterativeConfig __configHierarchyIterativeMethod;
    static NoHierarchyConfig __configNoHierarchyMethod;
};
