#pragma once

#include "host/document/autosave.h"
#include "host/document/recentfiles.h"

#include <QObject>
#include <QStringList>

#include <string>
#include <vector>

class LMXRootMediator;

/// Opening, saving and closing of the document, with the questions that go with them.
///
/// What can't be done ends in an exception, and the document stays as it is.
class DocumentControl : public QObject
{
    Q_OBJECT

public:
    /// The window, not owned, is the parent of all dialogs.
    DocumentControl(LMXRootMediator& mediator, QWidget& window);

    /// Asks for files and opens them.
    void open();

    /// Opens a stack file or photographs in place of the open document. Nothing happens if the user
    /// wants to keep that one. Changes that a crash left behind are offered before.
    void openFiles(const QStringList& paths);

    /// Writes the document to its file. False if the user gave no file to a new one.
    bool save();
    bool saveAs();

    /// Closes the document unless the user wants to keep it open, which gives false.
    bool close();

    /// Offers the changes that a crash left behind, the latest of each document, unless a document
    /// is open.
    void offerLeftovers();

    RecentFiles& recentFiles() { return recentFiles_; }

    Autosave& autosave() { return autosave_; }

signals:
    /// A line for the status bar.
    void told(const QString& text);

    /// A stack was made of photographs, not all of which state their pixel size.
    void pixelSizeWanted();

private:
    enum class Answer { Recover, Discard, Later };

    bool mayClose();
    void saveTo(const QString& path);
    Answer offer(const Autosave::Leftover& leftover);
    void recover(const Autosave::Leftover& leftover);
    void openDirectly(const QStringList& paths);
    void tellNotes(const std::vector<std::string>& notes);

    LMXRootMediator& mediator_;
    QWidget& window_;
    RecentFiles recentFiles_;
    Autosave autosave_;
};
