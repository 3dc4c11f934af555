#pragma once

#include "interface/lmxeventclient.h"

#include <QMainWindow>

#include <string>
#include <vector>

class LMXRootMediator;
class QAction;
class QListWidget;
class SliceView;
class StackPlugin;

/// The window on the open document: its slices, the picture of the chosen one, and the menus.
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

    void stackOpenEvent(LMXStackOpenEvent& event) override;
    void stackCloseEvent(LMXStackCloseEvent& event) override;

    void stackFileNameEvent(LMXStackFileNameEvent&) override { updateTitle(); }

    void stackNameEvent(LMXStackNameEvent&) override { updateTitle(); }

    void stackModifyEvent(LMXStackModifyEvent&) override { updateTitle(); }

    void sliceNameEvent(LMXSliceNameEvent&) override { listSlices(); }

    void processSliceInsertionDeletionAction(LMXSliceInsertionDeletionAction&) override
    {
        listSlices();
    }

public slots:
    void open();

    /// Writes the document to its file. False if the user gave no file to a new one.
    bool save();
    bool saveAs();
    void runPlugin();

signals:
    /// The window was closed and the document with it.
    void closed();

protected:
    void closeEvent(QCloseEvent* event) override;

private slots:
    void showSlice(int index);
    void placeJunctions(const QPoint& first, const QPoint& second);

private:
    void createMenus();
    void addPluginEntry();
    void listSlices();
    void updateTitle();
    bool mayClose();
    bool saveTo(const QString& path);
    void tellNotes(const std::vector<std::string>& notes);

    LMXRootMediator& mediator_;
    StackPlugin& plugin_;
    QListWidget* sliceList_;
    SliceView* view_;
    std::vector<QAction*> documentActions_; // closed without a document
};
