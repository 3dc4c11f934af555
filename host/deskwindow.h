#pragma once

#include "interface/lmxeventclient.h"

#include <QMainWindow>
#include <QPointer>

#include <vector>

class DocumentControl;
class EditActions;
class LMXRootMediator;
class ModelPanel;
class PixelSizeDialog;
class QAction;
class QDockWidget;
class QStackedWidget;
class ResultsWindow;
class SliceEditor;
class SlicePanel;
class SliceView;
class StackPlugin;
class StartPage;

/// The window on the open document: its slices on the left, the picture of the chosen one in the
/// middle, its models on the right, and the menus.
///
/// Whatever can't be done ends in an exception, which the application tells.
class DeskWindow : public QMainWindow, public LMXEventClient
{
    Q_OBJECT

public:
    /// Neither is owned; both outlive the window. A plug-in that is not loaded leaves a closed menu
    /// entry with the reason.
    DeskWindow(LMXRootMediator& mediator, StackPlugin& plugin, QWidget* parent = nullptr);

    /// Opens a stack file or photographs in place of the open document. Nothing happens if the user
    /// wants to keep that one; if the files can't be opened, it stays.
    void openFiles(const QStringList& paths);

    /// Offers what a crash left behind; for the start without files.
    void offerLeftovers();

    DocumentControl& documentControl() { return *control_; }

    void stackOpenEvent(LMXStackOpenEvent& event) override;
    void stackCloseEvent(LMXStackCloseEvent& event) override;

    void stackFileNameEvent(LMXStackFileNameEvent&) override { updateTitle(); }

    void stackNameEvent(LMXStackNameEvent&) override { updateTitle(); }

    void stackModifyEvent(LMXStackModifyEvent&) override { updateTitle(); }

public slots:
    void runPlugin();

    /// Opens the dialog for the pixel size of the document.
    void askPixelSize();

    /// Opens the window of the tables, plots and shapes.
    void showResults();

signals:
    /// The window was closed and the document with it.
    void closed();

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void showSlice(int index);
    void takeBarLength(double pixels);
    void connectParts();
    QDockWidget* addPanel(const QString& title, QWidget* content, Qt::DockWidgetArea area);
    void createFileMenu();
    void createEditMenu();
    void createViewMenu();
    void createPluginMenu();
    void createToolBar();
    QAction* forDocument(QAction* action);
    void restoreLayout();
    void keepLayout() const;
    void updateTitle();

    LMXRootMediator& mediator_;
    StackPlugin& plugin_;
    DocumentControl* control_;
    SlicePanel* slices_;
    ModelPanel* models_;
    SliceEditor* editor_;
    QStackedWidget* middle_; // the start page or the view
    StartPage* startPage_;
    SliceView* view_;
    EditActions* editActions_;
    ResultsWindow* results_ = nullptr; // made when it is asked for
    QDockWidget* sliceDock_;
    QDockWidget* modelDock_;
    QPointer<PixelSizeDialog> pixelSize_;
    std::vector<QAction*> documentActions_; // closed without a document
};
