// Part of `CrenaraWindow`: the stages: the gate and the filling of each page, and what a click on
// its "&Process" runs.

#include "blade/averages/averagingprocess.h"
#include "blade/contour/extractcontour.h"
#include "blade/hierarchy/hierarchyarabidoprocess.h"
#include "blade/hierarchy/hierarchyiterativeprocess.h"
#include "blade/hierarchy/nohierarchyprocess.h"
#include "blade/landmarks/extractconvexpoints.h"
#include "blade/landmarks/extractpeak.h"
#include "blade/measures/exportshapes.h"
#include "blade/measures/leafanalysis.h"
#include "interface/documentsnapshot.h"
#include "interface/lmxstack.h"
#include "interface/workingcopy.h"
#include "shell/pages/averagingconfigpage.h"
#include "shell/pages/exportshapesconfigeditor.h"
#include "shell/pages/extractcontourconfigeditor.h"
#include "shell/pages/extractpeaksconfigeditor.h"
#include "shell/pages/extractsinusconfigeditor.h"
#include "shell/pages/hierarchyconfigeditor.h"
#include "shell/pages/leafmeasuresconfigeditor.h"
#include "shell/project/newproject.h"
#include "shell/project/projectloader.h"
#include "shell/project/projectloaderconfigpage.h"
#include "shell/window/crenarawindow.h"
#include "system/exception.h"

#include <QMessageBox>
#include <QProgressBar>

/// Tests the stage's gate; a failed one closes the page and is told in boxes: which slice lacks what,
/// if one does, and what to do.
bool CrenaraWindow::passesGate(QWidget* page, GatedStage stage)
{
    const GateResult result = evaluateGate(stage, *stack);
    if (!result.missing.empty()) {
        QMessageBox::warning(this, "Warning", QString::fromStdString(result.missing));
    }
    page->setEnabled(result.passed);
    if (!result.passed) {
        QMessageBox::warning(this, stageGate(stage).title, stageGate(stage).text);
    }
    return result.passed;
}

/// Carries out what changes the stack. An error passes through, and the models and items are again
/// what they were.
template <class Work>
void CrenaraWindow::runOrRestore(Work work)
{
    DocumentSnapshot before(*stack);
    try {
        runReading(work);
    } catch (...) {
        before.restore(*stack);
        throw;
    }
}

/// Carries out what reads the stack alone. An error passes through.
template <class Work>
void CrenaraWindow::runReading(Work work)
{
    try {
        work();
    } catch (...) {
        progressBar->reset();
        throw;
    }
}

/// A run that is refused, since a leaf fails its checks, is carried out on a copy: the checks put
/// landmarks and contours in order, and nobody asked for that.
template <class Process>
void CrenaraWindow::sortStructures(Process& process)
{
    bool good = true;
    runReading([&] {
        const std::unique_ptr<LMXStack> trial = WorkingCopy::of(*stack);
        process.setStack(*trial);
        for (int i = 0; i < trial->getNumSlices(); ++i) {
            std::string report;
            process.checkLeaves(i, report);
            good = good && report.empty();
        }
        if (!good) {
            const std::unique_ptr<LMXStack> copy = WorkingCopy::of(*stack);
            process.setStack(*copy);
            process.run();
        }
        process.setStack(*stack);
    });
    if (good) {
        runOrRestore([&process] { process.run(); });
    }
}

void CrenaraWindow::initializeProjectLoader()
{
    connect(projectPage, &ProjectLoaderConfigPage::newProjectClicked, this,
            &CrenaraWindow::runNewProjectLoader);
    connect(projectPage, &ProjectLoaderConfigPage::loadProjectClicked, this,
            &CrenaraWindow::runProjectLoader);
}

void CrenaraWindow::runNewProjectLoader()
{
    NewProject maker;
    __projectConfig.setStack(stack);
    maker.setConfig(__projectConfig);
    maker.newProject();
    if (!maker.getUnwritten().isEmpty()) {
        QMessageBox::warning(this, "New Project",
                             maker.getUnwritten() + ": the project file can't be written");
    }
    enabledActions();
    kineticParametersEnabled = maker.getConfig().kineticIsEnabled();
}

void CrenaraWindow::runProjectLoader()
{
    ProjectLoader loader(this);
    __projectConfig.setStack(stack);
    loader.setConfig(__projectConfig);
    loader.loadProject();
    if (loader.readFileCRP()) {
        kineticParametersEnabled = loader.getConfig().kineticIsEnabled();
        enabledActions();
    } else {
        QMessageBox::warning(this, "Project Loader", "The file crp is unreadable");
    }
}

void CrenaraWindow::initializeExtractContour()
{
    contourPage->setChannel(stack->colorContent());
    contourPage->setBackground(DarkBackground);
    contourPage->setImageType(false);
    connect(contourPage, &ExtractContourConfigEditor::processExtractContourClicked, this,
            &CrenaraWindow::runExtractContour);
}

void CrenaraWindow::runExtractContour()
{
    ExtractContour process;
    process.setStack(*stack);
    process.setProgressBar(*progressBar);
    process.setChannel(contourPage->getChannel());
    process.setBackground(contourPage->getBackground());
    process.setFidelity(contourPage->getFidelityValue());
    process.setBinaryImage(contourPage->getImageType());
    runOrRestore([&process] { process.run(); });
}

void CrenaraWindow::initializeExtractSinus()
{
    if (passesGate(sinusPage, GatedStage::ExtractSinus)) {
        sinusPage->setConfig(__configLCMethod);
        connect(sinusPage, &ExtractSinusConfigEditor::processExtractSinusClicked, this,
                &CrenaraWindow::runExtractSinus);
    }
}

void CrenaraWindow::runExtractSinus()
{
    __configLCMethod = sinusPage->getConfig();
    ExtractConvexPoints process;
    process.setStack(*stack);
    process.setNeigbourhood(__configLCMethod.getNeigbourhood());
    process.setThresholdAngle(__configLCMethod.getCurvatureAngle());
    runOrRestore([this, &process] { detectSinuses(process); });
}

void CrenaraWindow::detectSinuses(ExtractConvexPoints& process)
{
    QMessageBox box;
    progressBar->reset();
    const int slices = stack->getNumSlices();
    process.createModels();
    QString report;
    for (int i = 0; i < slices; ++i) {
        progressBar->setValue(static_cast<int>((i + 1) / static_cast<float>(slices) * 100.0f));
        const std::string text = process.process(i);
        if (!text.empty()) {
            report += QString::fromStdString(text) + "\n";
        }
    }
    if (report.isEmpty()) {
        box.setText("Detection of the sinuses is complete");
    } else {
        box.setIcon(QMessageBox::Warning);
        box.setModal(false);
        box.setText("Please add manually all missing sinuses\n" + report);
    }
    box.exec();
    progressBar->reset();
}

void CrenaraWindow::initializeExtractPeaks()
{
    if (passesGate(peaksPage, GatedStage::ExtractPeaks)) {
        peaksPage->setMethodToExtract(LocalCurvature);
        peaksPage->setExcludeNeighboorhood(10);
        connect(peaksPage, &ExtractPeaksConfigEditor::processExtractPeaksClicked, this,
                &CrenaraWindow::runExtractPeaks);
    }
}

void CrenaraWindow::runExtractPeaks()
{
    ExtractPeak process;
    process.setStack(*stack);
    process.setMethodToExtract(peaksPage->getMethodToExtract());
    process.setExcludeNeighbourhood(peaksPage->getExcludeNeighboorhood());
    process.setVenationType(__projectConfig.getVenationType());
    process.setProgressBar(*progressBar);
    runOrRestore([&process] { process.run(); });
}

void CrenaraWindow::initializeHierarchy()
{
    if (passesGate(hierarchyPage, GatedStage::Hierarchy)) {
        hierarchyPage->setConfigHierarchyIterativeMethod(__configHierarchyIterativeMethod);
        hierarchyPage->setConfigHierarchyArabidoMethod(__configHierarchyArabidoMethod);
        hierarchyPage->setConfigNoHierarchyMethod(__configNoHierarchyMethod);
        hierarchyPage->setVenationType(__projectConfig.getVenationType());
        connect(hierarchyPage, &HierarchyConfigEditor::processHierarchyClicked, this,
                &CrenaraWindow::runHierarchy);
    }
}

void CrenaraWindow::runHierarchy()
{
    // All three are kept, so that the page comes back with the one choice that was made.
    __configNoHierarchyMethod = hierarchyPage->getConfigNoHierarchyMethod();
    __configHierarchyIterativeMethod = hierarchyPage->getConfigHierarchyIterativeMethod();
    __configHierarchyArabidoMethod = hierarchyPage->getConfigHierarchyArabidoMethod();
    if (__configNoHierarchyMethod.isSettingsEnabled()) {
        runNoHierrachy();
    }
    if (__configHierarchyIterativeMethod.isSettingsEnabled()) {
        runHierarchyIterative();
    }
    if (__configHierarchyArabidoMethod.isSettingsEnabled()) {
        runHierarchyArabidoMethod();
    }
}

void CrenaraWindow::runNoHierrachy()
{
    NoHierarchyProcess process;
    process.setProgressBar(*progressBar);
    sortStructures(process);
}

void CrenaraWindow::runHierarchyIterative()
{
    HierarchyIterativeProcess process;
    process.setTolerance(__configHierarchyIterativeMethod.getTolerance());
    process.setProgressBar(*progressBar);
    sortStructures(process);
}

void CrenaraWindow::runHierarchyArabidoMethod()
{
    HierarchyArabidoProcess process;
    process.setLimitAngle(__configHierarchyArabidoMethod.getAngleLimit());
    process.setEnableDistalTeeth(__configHierarchyArabidoMethod.getEnabledDistalTeeth());
    process.setProgressBar(*progressBar);
    sortStructures(process);
}

void CrenaraWindow::initializeLeafMeasures()
{
    if (passesGate(measuresPage, GatedStage::LeafMeasures)) {
        measuresPage->setConfig(__projectConfig);
        connect(measuresPage, &LeafMeasuresConfigEditor::processLeafMeasuresClicked, this,
                &CrenaraWindow::runLeafMeasures);
    }
}

void CrenaraWindow::runLeafMeasures()
{
    LeafAnalysis process;
    process.setVenationType(__projectConfig.getVenationType());
    process.setFacts(__projectConfig.getFacts());
    process.setGrowth(__projectConfig.getGrowth());
    process.setOutputPath(measuresPage->getOutputPath());
    process.setPrefix(measuresPage->getPrefix());
    process.setStack(*stack);
    process.setProgressBar(*progressBar);
    runReading([&process] { process.run(); });
}

void CrenaraWindow::initializeAveraging()
{
    if (passesGate(averagingPage, GatedStage::Averaging) && fillAveragingPage()) {
        connect(averagingPage, &AveragingConfigPage::averagingClicked, this,
                &CrenaraWindow::runAveraging);
    }
}

/// Measures the leaves for the page. Leaves that can't be measured are told in a box and close the
/// page, since the user can mend them; so are the faults of a run of averages.
bool CrenaraWindow::fillAveragingPage()
{
    AveragingProcess process;
    process.setStack(*stack);
    process.setKineticParameters(kineticParametersEnabled);
    process.setGrowth(__projectConfig.getGrowth());
    Matrix<float> measures;
    QString fault;
    float smallest = 0.0f; // of what the averages go by, lengths or ages, where that is a number
    float largest = 0.0f;
    try {
        process.initializationMeasure(measures);
        process.setMeasurement(measures);
        if (!process.keyRange(smallest, largest)) {
            fault = "No age follows from the length of any leaf";
        }
    } catch (const Exception& error) {
        fault = QString::fromStdString(error.getWhat());
    }
    if (!fault.isEmpty()) {
        averagingPage->setEnabled(false);
        QMessageBox::warning(this, "Averaging", fault);
        return false;
    }
    averagingPage->setMeasurement(measures);
    averagingPage->setMinimun(smallest);
    averagingPage->setMaximun(largest);
    averagingPage->setUnity(kineticParametersEnabled ? " hours" : " µm");
    averagingPage->setAveragesNumber(100);
    averagingPage->setPath(__projectConfig.getProjectPath());
    averagingPage->setFile("");
    return true;
}

void CrenaraWindow::initializeExportShapes()
{
    connect(exportPage, &ExportShapesConfigEditor::processExportShapesClicked, this,
            &CrenaraWindow::runExportShapes);
}

void CrenaraWindow::runExportShapes()
{
    ExportShapes process;
    process.setStack(*stack);
    process.setOutputPath(__projectConfig.getProjectPath());
    runReading([&process] { process.run(); });
}

void CrenaraWindow::runAveraging()
{
    const QString outputPath = averagingPage->getOutputPath();
    if (outputPath.isEmpty()) { // "/" alone would be the root of the file system
        QMessageBox::warning(this, "Averaging", "Please choose an output path");
        return;
    }
    AveragingProcess process;
    process.setStack(*stack);
    process.setProgressBar(*progressBar);
    process.setVenationType(__projectConfig.getVenationType());
    process.setSymmetrizationState(averagingPage->getBladeSymmetrization());
    process.sinusIsEnabled(averagingPage->getPrimarySinusCheck());
    // The page keeps the last click on the peaks, though their box is cleared with that of the sinuses.
    process.peakIsEnabled(averagingPage->getPrimarySinusCheck() &&
                          averagingPage->getPrimaryPeaksCheck());
    process.setGrowth(__projectConfig.getGrowth());
    process.setResamplingPointsNumber(averagingPage->getResamplingPointsNumber());
    process.setMinimaToothHeight(averagingPage->getMinimaToothHeight());
    process.setOutPath(outputPath.toStdString() + "/");
    process.setKineticParameters(kineticParametersEnabled);
    process.setAveragesNumber(averagingPage->getAveragesNumber());
    process.setMeasurement(averagingPage->getMeasurement());
    process.setBegin(averagingPage->getBegin());
    process.setEnd(averagingPage->getEnd());
    process.setSteps(averagingPage->getStepsNumber());
    try {
        runReading([this, &process] { average(process); });
    } catch (const FileError& error) {
        showAveragingFault(error.getFilename() + ": " + error.getWhat());
    } catch (const Exception& error) {
        showAveragingFault(error.getWhat());
    }
}

/// Runs the method of the page: bins, sliding averages, and the two with a file of the user's own.
void CrenaraWindow::average(AveragingProcess& process)
{
    const int method = averagingPage->getMethodAveraging();
    const std::string file = averagingPage->getFile().toStdString();
    if (method >= 2 && file.empty()) { // without it the run would be the automatic one, unasked
        showAveragingFault("Please upload a file first");
        return;
    }
    switch (method) {
    case 1:
        if (stack->getNumSlices() <= 3) {
            QMessageBox box;
            box.setText("Average aborted \n insufficient number of leaves");
            box.exec();
            return;
        }
        process.setkOptima(process.computeOptimaKnn());
        process.runSlidingAveragingMethod();
        break;
    case 2:
        process.setInputFileName(file);
        process.runHomogeousAveragingMethod();
        break;
    case 3:
        process.setkOptimaFile(file);
        process.runSlidingAveragingMethod();
        break;
    default:
        process.runHomogeousAveragingMethod();
        break;
    }
}

void CrenaraWindow::showAveragingFault(const std::string& text)
{
    progressBar->reset();
    QMessageBox::warning(this, "Averaging", QString::fromStdString(text));
}

// No stage of this version stands behind the slots below: their pages keep "&Process" closed, or
// there is no page. They hold their places in the order of the window's slots.

void CrenaraWindow::runCheckStack() {}

void CrenaraWindow::runImportShapes() {}
