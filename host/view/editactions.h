#pragma once

#include "host/view/sliceview.h"

#include <QObject>

#include <array>
#include <functional>
#include <string>
#include <vector>

class QAction;
class QActionGroup;
class QMenu;
class QToolBar;
class SliceEditor;

/// The actions of editing and viewing a slice, for menus and tool bars. They are enabled as the
/// slice that the view shows allows.
class EditActions : public QObject
{
    Q_OBJECT

public:
    /// Neither is owned; both outlive the actions.
    EditActions(SliceEditor& editor, SliceView& view, QObject* parent = nullptr);

    void addToEditMenu(QMenu& menu);
    void addToViewMenu(QMenu& menu);
    void addToToolBar(QToolBar& bar);

public slots:
    /// Looks again at what is possible. Edits, selections and another slice call it themselves.
    void update();

private:
    void createHistoryActions();
    void createToolActions();
    void createZoomActions();
    QAction* add(const QString& text, const QString& tip, const QKeySequence& shortcut);
    void fillAddMenu();
    void fillMoveMenu();
    void fill(QMenu& menu, const std::function<void(const std::string&)>& chosen);
    void choose(SliceView::Tool tool);
    void propose();

    SliceEditor& editor_;
    SliceView& view_;
    QAction* undo_;
    QAction* redo_;
    QAction* delete_;
    QAction* deleteContour_;
    QAction* selectAll_;
    QAction* propose_;
    QAction* accept_;
    QActionGroup* tools_;
    std::array<QAction*, 5> toolActions_;
    QMenu* addMenu_;
    QMenu* moveMenu_;
    std::vector<QAction*> zoom_;
};
