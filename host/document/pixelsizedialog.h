#pragma once

#include <QDialog>

#include <optional>

class LMXStack;
class QButtonGroup;
class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QLabel;
class QPushButton;

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

public slots:
    /// A line was drawn over a scale bar; its length is in pixels. This is the way of the user's
    /// choice from now on.
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
    QComboBox* measure_;
    QDoubleSpinBox* barLength_;
    QComboBox* barUnit_;
    QLabel* drawn_;
    QLabel* result_;
    QCheckBox* all_;
    QPushButton* ok_ = nullptr;
    double barPixels_ = 0.0;
};
