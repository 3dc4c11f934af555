#include "host/view/editactions.h"

#include "blade/landmarks/junctionproposal.h"
#include "blade/process/landmarks.h"
#include "host/editing/sliceeditor.h"
#include "host/view/sliceview.h"
#include "interface/lmxstack.h"
#include "stack/model.h"
#include "stack/stackslice.h"

#include <QActionGroup>
#include <QIcon>
#include <QKeySequence>
#include <QMenu>
#include <QPainter>
#include <QToolBar>

#include <algorithm>

namespace {

struct ToolEntry
{
    SliceView::Tool tool;
    const char* text;
    const char* shortText; // on a tool bar
    const char* tip;
    const char* shortcut;
};

// Row i is tool i.
const ToolEntry toolEntries[] = {
    {SliceView::Tool::Select, "&Select and move", "Select",
     "Select landmarks and lines, and move landmarks", "Ctrl+1"},
    {SliceView::Tool::DrawJunctions, "Draw &junctions", "Junctions",
     "Click on the two places where the blade meets the petiole", "Ctrl+J"},
    {SliceView::Tool::AddLandmark, "&Add landmarks", "Landmarks",
     "Add landmarks of one model by clicks", "Ctrl+L"},
    {SliceView::Tool::RedrawContour, "&Redraw contour", "Contour",
     "Draw a piece of the contour again, by hand", "Ctrl+D"},
    {SliceView::Tool::MeasureScale, "&Measure a scale bar", "Scale bar",
     "Draw a line over the scale bar of the photograph", "Ctrl+B"},
};

QIcon colourIcon(const Model& model)
{
    constexpr int side = 12;
    QColor colour(Qt::gray);
    if (model.getItemProperties().definesColor()) {
        const Vector<int>& rgb = model.getItemProperties().getColor();
        colour = QColor(std::clamp(rgb[0], 0, 255), std::clamp(rgb[1], 0, 255),
                        std::clamp(rgb[2], 0, 255));
    }
    QPixmap pixmap(side, side);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(colour);
    painter.setPen(Qt::NoPen);
    painter.drawEllipse(1, 1, side - 2, side - 2);
    return QIcon(pixmap);
}

bool hasLandmarks(const SliceView& view, const VertexPlaces& places)
{
    return std::any_of(places.begin(), places.end(), [&](const VertexPlace& place) {
        return !place.isWholeItem() && view.exists(place);
    });
}

} // namespace

EditActions::EditActions(SliceEditor& editor, SliceView& view, QObject* parent)
    : QObject(parent)
    , editor_(editor)
    , view_(view)
    , tools_(new QActionGroup(this))
    , addMenu_(new QMenu("Add &landmark of", &view))
    , moveMenu_(new QMenu("Move to &model", &view))
{
    createHistoryActions();
    createToolActions();
    createZoomActions();
    connect(&editor_, &SliceEditor::changed, this, &EditActions::update);
    connect(&view_, &SliceView::selectionChanged, this, &EditActions::update);
    connect(&view_, &SliceView::proposalChanged, this, &EditActions::update);
    connect(&view_, &SliceView::sliceShown, this, &EditActions::update);
    connect(&view_, &SliceView::itemsChanged, this, &EditActions::update);
    connect(addMenu_, &QMenu::aboutToShow, this, &EditActions::fillAddMenu);
    connect(moveMenu_, &QMenu::aboutToShow, this, &EditActions::fillMoveMenu);
    update();
}

QAction* EditActions::add(const QString& text, const QString& tip, const QKeySequence& shortcut)
{
    auto* action = new QAction(text, this);
    action->setShortcut(shortcut);
    action->setStatusTip(tip);
    action->setToolTip(
        shortcut.isEmpty() ? tip : tip + " (" + shortcut.toString(QKeySequence::NativeText) + ")");
    return action;
}

void EditActions::createHistoryActions()
{
    undo_ = add("&Undo", "Take the last edit of this slice back", QKeySequence::Undo);
    redo_ = add("&Redo", "Make the edit again that was taken back", QKeySequence::Redo);
    connect(undo_, &QAction::triggered, this, [this] {
        const QString step = editor_.undoText(view_.sliceIndex());
        if (editor_.undo(view_.sliceIndex())) {
            emit view_.statusText("Undone: " + step);
        }
    });
    connect(redo_, &QAction::triggered, this, [this] {
        const QString step = editor_.redoText(view_.sliceIndex());
        if (editor_.redo(view_.sliceIndex())) {
            emit view_.statusText("Redone: " + step);
        }
    });

    delete_ = add("&Delete", "Delete what is selected", QKeySequence::Delete);
    selectAll_ = add("Select a&ll", "Select all landmarks of this slice", QKeySequence::SelectAll);
    for (QAction* action : {delete_, selectAll_}) {
        action->setShortcutContext(Qt::WidgetShortcut); // elsewhere the keys edit texts
        view_.addAction(action);
    }
    connect(delete_, &QAction::triggered, &view_, &SliceView::deleteSelection);
    connect(selectAll_, &QAction::triggered, &view_, &SliceView::selectAll);
    deleteContour_ = add("Delete &contour", "Delete the contour of this slice", QKeySequence());
    connect(deleteContour_, &QAction::triggered, this,
            [this] { editor_.deleteContour(view_.sliceIndex()); });
}

void EditActions::createToolActions()
{
    for (std::size_t i = 0; i < toolActions_.size(); ++i) {
        const ToolEntry& entry = toolEntries[i];
        QAction* action = add(entry.text, entry.tip, QKeySequence(entry.shortcut));
        action->setIconText(entry.shortText);
        action->setCheckable(true);
        tools_->addAction(action);
        toolActions_[i] = action;
        connect(action, &QAction::triggered, &view_, [this, entry] { choose(entry.tool); });
    }
    toolActions_[0]->setChecked(true);
    connect(&view_, &SliceView::toolChanged, this, [this](SliceView::Tool tool) {
        toolActions_[static_cast<std::size_t>(tool)]->setChecked(true);
    });
    addMenu_->menuAction()->setStatusTip("Choose a model, and click where its landmarks lie");
    moveMenu_->menuAction()->setStatusTip("Make the selected landmarks those of another model");

    propose_ = add("&Propose junctions", "Look for the junctions where the contour narrows",
                   QKeySequence("Ctrl+P"));
    accept_ = add("A&ccept the proposal", "Make the proposed junctions those of this slice",
                  QKeySequence("Ctrl+Return"));
    propose_->setIconText("Propose");
    accept_->setIconText("Accept");
    connect(propose_, &QAction::triggered, this, &EditActions::propose);
    connect(accept_, &QAction::triggered, &view_, &SliceView::acceptProposal);
}

/// The keys are the view's, too, from now on.
void EditActions::choose(SliceView::Tool tool)
{
    view_.setTool(tool);
    view_.setFocus();
}

void EditActions::createZoomActions()
{
    QAction* in = add("Zoom &in", "Show the photograph larger", QKeySequence::ZoomIn);
    QAction* out = add("Zoom &out", "Show the photograph smaller", QKeySequence::ZoomOut);
    QAction* fit = add("&Fit", "Show the whole photograph", QKeySequence("Ctrl+0"));
    QAction* pixels = add("&Pixel by pixel", "Show each pixel of the photograph as one",
                          QKeySequence("Ctrl+Shift+0"));
    connect(in, &QAction::triggered, &view_, &SliceView::zoomIn);
    connect(out, &QAction::triggered, &view_, &SliceView::zoomOut);
    connect(fit, &QAction::triggered, &view_, &SliceView::zoomToFit);
    connect(pixels, &QAction::triggered, &view_, &SliceView::zoomToPixels);
    in->setIconText("+");
    out->setIconText("\u2212");
    pixels->setIconText("1:1");
    zoom_ = {in, out, fit, pixels};
}

void EditActions::addToEditMenu(QMenu& menu)
{
    menu.addActions({undo_, redo_});
    menu.addSeparator();
    menu.addActions({delete_, deleteContour_, selectAll_});
    menu.addSeparator();
    for (QAction* action : toolActions_) {
        menu.addAction(action);
    }
    menu.addMenu(addMenu_);
    menu.addMenu(moveMenu_);
    menu.addSeparator();
    menu.addActions({propose_, accept_});
}

void EditActions::addToViewMenu(QMenu& menu)
{
    for (QAction* action : zoom_) {
        menu.addAction(action);
    }
}

void EditActions::addToToolBar(QToolBar& bar)
{
    bar.addActions({undo_, redo_});
    bar.addSeparator();
    for (QAction* action : toolActions_) {
        bar.addAction(action);
    }
    bar.addSeparator();
    bar.addActions({propose_, accept_});
    bar.addSeparator();
    for (QAction* action : zoom_) {
        bar.addAction(action);
    }
}

void EditActions::update()
{
    const int index = view_.sliceIndex();
    StackSlice* slice = view_.slice();
    const auto offer = [](QAction* action, const char* verb, const QString& step) {
        action->setEnabled(!step.isEmpty());
        action->setText(step.isEmpty() ? QString(verb) : QString("%1 \"%2\"").arg(verb, step));
        action->setIconText(QString(verb).remove('&'));
    };
    offer(undo_, "&Undo", slice ? editor_.undoText(index) : QString());
    offer(redo_, "&Redo", slice ? editor_.redoText(index) : QString());
    const bool hasContour = slice && contourOf(*slice);
    delete_->setEnabled(!view_.selection().empty());
    deleteContour_->setEnabled(hasContour);
    propose_->setEnabled(hasContour);
    accept_->setEnabled(view_.proposal().has_value());
    selectAll_->setEnabled(slice != nullptr);
    tools_->setEnabled(slice != nullptr);
    addMenu_->setEnabled(slice != nullptr);
    moveMenu_->setEnabled(hasLandmarks(view_, view_.selection()));
    for (QAction* action : zoom_) {
        action->setEnabled(slice != nullptr);
    }
}

void EditActions::fillAddMenu()
{
    fill(*addMenu_, [this](const std::string& model) {
        view_.setLandmarkModel(model);
        choose(SliceView::Tool::AddLandmark);
    });
}

void EditActions::fillMoveMenu()
{
    fill(*moveMenu_, [this](const std::string& model) {
        const VertexPlaces moved =
            editor_.moveToModel(view_.sliceIndex(), view_.selection(), model);
        view_.setSelection(moved);
    });
}

void EditActions::fill(QMenu& menu, const std::function<void(const std::string&)>& chosen)
{
    menu.clear();
    int number = 0;
    for (const std::string& name : editor_.landmarkModels()) {
        QString text = QString::fromStdString(name).replace('&', "&&");
        if (++number < 10) {
            text = QString("&%1 %2").arg(number).arg(text);
        }
        QAction* action = menu.addAction(text, this, [chosen, name] { chosen(name); });
        const int index = editor_.stack() ? editor_.stack()->findModel(name) : -1;
        if (index >= 0) {
            action->setIcon(colourIcon(editor_.stack()->getModel(index)));
        }
    }
}

void EditActions::propose()
{
    const std::optional<ProposedJunctions> proposal = JunctionProposal::propose(*view_.slice());
    view_.setProposal(proposal);
    if (proposal) {
        choose(SliceView::Tool::Select);
    }
    emit view_.statusText(
        proposal
            ? QString("Press Return to accept the junctions, or drag them first (confidence %1)")
                  .arg(proposal->confidence, 0, 'f', 2)
            : "No junctions can be told from the contour; please draw them");
}
