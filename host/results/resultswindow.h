#pragma once

#include "blade/project/projectconfig.h"
#include "host/results/measuretables.h"
#include "interface/lmxeventclient.h"

#include <QList>
#include <QMainWindow>

class AveragesPage;
class LMXRootMediator;
class PlotPage;
class QAction;
class QComboBox;
class QLabel;
class QTabWidget;
class ResultTableView;

/// The results of the open document: the tables of leaves and teeth, plots of their columns, and the
/// shapes laid over each other.
///
/// The document is measured when the window comes up, when another one is opened while it is shown,
/// and on demand; after a change the window tells that its tables are older than the document.
/// Tables and shapes can be taken from files, too. The document is never changed.
class ResultsWindow : public QMainWindow, public LMXEventClient
{
    Q_OBJECT

public:
    /// The mediator is not owned and outlives the window.
    explicit ResultsWindow(LMXRootMediator& mediator, QWidget* parent = nullptr);

    const MeasureTables& tables() const { return tables_; }

    void stackOpenEvent(LMXStackOpenEvent& event) override;
    void stackCloseEvent(LMXStackCloseEvent& event) override;

    /// Every change of a document marks it as modified.
    void stackModifyEvent(LMXStackModifyEvent& event) override;

public slots:
    /// Measures the open document and shows its tables and shapes.
    void measure();

    /// Reads venation and growth curve from a project file, and measures.
    void openProject();
    void openTable();
    void openShapes();
    void openFolderOfCurves();

    /// Writes the table shown, of leaves or teeth, as the command line does.
    void exportTable();
    void savePicture();
    void copy() const;

    /// Selects the rows of a slice of the open document; nothing is told.
    void showSlice(int index);

signals:
    /// The user wants to see this slice of the open document.
    void sliceChosen(int index);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void createMenus();
    void createToolBar(const QList<QAction*>& actions, QAction* project);
    void createPages();
    ResultTableView* createTable(MeasureTables::Kind kind);
    MeasureTables::Kind currentKind() const;
    void showTables();
    void showShapes();
    void tell();
    void choose(MeasureTables::Kind kind, int row);
    QString chosenFile(const QString& title, const QString& proposal, const QString& filter);

    LMXRootMediator& mediator_;
    MeasureTables tables_;
    ProjectConfig project_;
    QTabWidget* tabs_;
    ResultTableView* leaves_ = nullptr;
    ResultTableView* teeth_ = nullptr;
    PlotPage* plots_;
    AveragesPage* averages_;
    QComboBox* venation_;
    QLabel* state_;
    bool old_ = true;        // the document has changed since it was measured
    bool fromFiles_ = false; // the tables are not those of the document
};
