#pragma once

#include "blade/landmarks/junctionplacing.h"
#include "blade/process/landmarks.h"
#include "host/editing/vertexplace.h"
#include "host/view/pictureloader.h"
#include "host/view/sliceviewport.h"
#include "interface/lmxeventclient.h"

#include <QPoint>
#include <QPointer>
#include <QString>
#include <QTransform>
#include <QWidget>

#include <array>
#include <memory>
#include <optional>
#include <string>

class LMXStack;
class LandmarkPicker;
class SliceEditor;
class SliceTool;
class StackSlice;

/// The photograph of one slice with its landmarks, and the place where they are edited.
///
/// Wheel and "+", "-" zoom, the middle button and Space with the left one move the picture. What is
/// done with the left button is the tool's. All of it can be done by the keyboard: Tab walks the
/// landmarks, arrows move what is selected by a pixel (with Shift by 10), or the tool's own pointer,
/// which Return clicks; without either they move the picture. Delete deletes, Escape gives up what
/// was begun, then the tool, then the selection.
///
/// Models and items that are not visible are not drawn. An error of the editor passes through the
/// event handlers.
class SliceView : public QWidget, public LMXEventClient
{
    Q_OBJECT

public:
    enum class Tool { Select, DrawJunctions, AddLandmark, RedrawContour, MeasureScale };

    explicit SliceView(QWidget* parent = nullptr);
    ~SliceView() override;

    /// By which the tools edit; not owned. Without it nothing can be edited.
    void setEditor(SliceEditor* editor);

    SliceEditor* editor() const;

    /// Shows slice `index` of the stack; nothing without a stack or with an index out of it. Ends
    /// what was begun on another slice, and tries again to read an image that could not be read.
    void showSlice(LMXStack* stack, int index);

    int sliceIndex() const { return index_; }

    /// Null if none is shown.
    StackSlice* slice() const;

    Tool tool() const { return tool_; }

    /// The model of the landmarks that `Tool::AddLandmark` adds.
    const std::string& landmarkModel() const { return landmarkModel_; }

    void setLandmarkModel(const std::string& name);

    const VertexPlaces& selection() const { return selection_; }

    /// Places that name nothing that can be seen are left out.
    void setSelection(const VertexPlaces& places);

    /// Two junctions that are drawn as a proposal, until the user accepts them (Return), drags them
    /// to where they belong, or gives them up (Escape). Another slice ends it, too.
    void setProposal(const std::optional<JunctionPoints>& proposal);

    const std::optional<JunctionPoints>& proposal() const { return proposal_; }

    /// From pixels of the image, (0, 0) being the corner of the first one, to the widget's.
    QTransform imageToWidget() const { return viewport_.imageToView(); }

    /// Moves the picture as little as brings a pixel of it into sight.
    void reveal(const QPoint& pixel);

    /// The pixel of the image under a place of the widget, which may lie outside of it.
    QPoint pixelAt(const QPointF& widgetPoint) const;

    const QSize& imageSize() const { return viewport_.imageSize(); }

    /// The landmark within a few screen pixels of a place; else the line of an item, as a whole.
    std::optional<VertexPlace> placeAt(const QPointF& widgetPoint) const;

    /// The landmarks whose points lie in a rectangle of the widget.
    VertexPlaces placesIn(const QRectF& widgetRect) const;

    /// All landmarks that can be seen, in the order of the items.
    VertexPlaces landmarks() const;

    /// The place names a vertex or an item that can be seen.
    bool exists(const VertexPlace& place) const;

    /// The vertex of a place that names one.
    QPoint vertexAt(const VertexPlace& place) const;

    /// "Primary Sinus 3 at (120, 45)".
    QString describe(const VertexPlace& place) const;

    /// The picture is still on its way.
    bool isLoading() const { return loader_.isBusy(); }

    /// Reads images afresh, say since a file that was missing is back.
    void reloadPictures();

    QSize sizeHint() const override { return {700, 600}; }

    void stackCloseEvent(LMXStackCloseEvent& event) override;

    void sliceImageCalibrationEvent(LMXSliceImageCalibrationEvent& event) override;

    void sliceItemSelectionEvent(LMXSliceItemSelectionEvent&) override { update(); }

    void modelCreateEvent(LMXModelCreateEvent&) override { update(); }

    void modelDeleteEvent(LMXModelDeleteEvent&) override { update(); }

    void modelPropertiesEvent(LMXModelPropertiesEvent&) override
    {
        setSelection(selection_);
        update();
    }

    void modelItemCreateEvent(LMXModelItemCreateEvent& event) override { noteChange(event); }

    void modelItemDeleteEvent(LMXModelItemDeleteEvent& event) override { noteChange(event); }

    void modelItemVertexEvent(LMXModelItemVertexEvent& event) override { noteChange(event); }

    void modelItemAttributeEvent(LMXModelItemAttributeEvent&) override { update(); }

    void modelItemSelectEvent(LMXModelItemSelectEvent&) override { update(); }

    void modelItemConvertEvent(LMXModelItemConvertEvent& event) override { noteChange(event); }

public slots:
    void setTool(SliceView::Tool tool);
    void zoomIn();
    void zoomOut();
    void zoomToFit();

    /// A pixel of the image to each pixel of the screen.
    void zoomToPixels();

    void acceptProposal();
    void deleteSelection();
    void selectAll();

signals:
    /// Another slice, or none, is shown.
    void sliceShown(int index);

    /// Items of the slice that is shown came, went or changed.
    void itemsChanged();
    void toolChanged(SliceView::Tool tool);
    void selectionChanged();
    void proposalChanged();
    void zoomChanged(double scale);

    /// What a user may want to read at the moment; empty to end it.
    void statusText(const QString& text);

    /// A line was drawn with `Tool::MeasureScale`, so many pixels long.
    void scaleMeasured(double pixels);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void leaveEvent(QEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    SliceTool& currentTool() const;
    void readImageSize();
    LandmarkPicker picker() const;
    void noteChange(const LMXModelItemEvent& event);
    void paintPicture(QPainter& painter, const QRectF& exposed);
    void paintLines(QPainter& painter) const;
    void paintLandmarks(QPainter& painter) const;
    void paintItems(QPainter& painter, bool points) const;
    void paintProposal(QPainter& painter) const;
    void paintText(QPainter& painter, const QString& text) const;
    bool moveByKey(const QKeyEvent& event);
    bool actByKey(const QKeyEvent& event);
    bool escape();
    bool enter();
    void zoomAtCentre(double factor);
    void zoomed();

    QPointer<SliceEditor> editor_;
    LMXStack* stack_ = nullptr;
    int index_ = -1;
    QString fault_; // why the slice has no size
    SliceViewport viewport_;
    PictureLoader loader_;
    Tool tool_ = Tool::Select;
    std::array<std::unique_ptr<SliceTool>, 5> tools_;
    std::string landmarkModel_ = Landmarks::primarySinus;
    VertexPlaces selection_;
    std::optional<JunctionPoints> proposal_;
    std::optional<QPointF> panFrom_;
    bool spaceHeld_ = false;
};
