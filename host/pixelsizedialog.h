#pragma once

#include <QDialog>

#include <optional>

class LMXStack;
class QButtonGroup;
class QCheckBox;
class QDoubleSpinBox;
class QLabel;

/// Asks for the pixel size of a stack: as the files state it, typed, or measured on a scale bar over
/// which the user draws a line. It blocks no other window, so that the line can be drawn.
class PixelSizeDialog : public QDialog
{
    Q_OBJECT

public:
    /// The stack, not owned, must outlive the dialog.
    explicit PixelSizeDialog(LMXStack& stack, QWidget* parent = nullptr);

    /// The width of a pixel in the unit of the stack that the user has given; nothing while the
    /// input is incomplete, or if the sizes are to stay as they are.
    std::optional<float> pixelWidth() const;

    /// Also slices that have a size get the new one.
    bool isForAll() const;

public slots:
    /// A line was drawn over the scale bar; its length is in pixels.
    void setBarLength(double pixels);

    /// Gives the slices their size and tells all clients.
    void accept() override;

signals:
    /// The user wants to draw a line over the scale bar, or no longer.
    void measureWanted(bool on);

private:
    void layOut();
    void refresh();

    LMXStack& stack_;
    QButtonGroup* ways_;
    QDoubleSpinBox* typed_;
    QDoubleSpinBox* barLength_;
    QLabel* drawn_;
    QLabel* result_;
    QCheckBox* all_;
    double barPixels_ = 0.0;
};
