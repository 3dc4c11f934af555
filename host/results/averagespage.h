#pragma once

#include "host/results/averageshapes.h"

#include <QWidget>

class AveragesView;
class LMXStack;
class QLabel;
class QListWidget;

/// The shapes laid over each other, with a list of their names, which is the legend and lets each be
/// hidden.
class AveragesPage : public QWidget
{
    Q_OBJECT

public:
    explicit AveragesPage(QWidget* parent = nullptr);

    /// Shows the shapes of a stack; of the open document if `open`, so that a click on a name can
    /// lead to its slice.
    void showStack(LMXStack& stack, bool open);

    /// Shows curve files. Errors of `shapesOfFiles`.
    void showFiles(const std::vector<std::string>& filenames);

    void clear();

    const AveragesView& view() const { return *view_; }

    void savePicture(const QString& filename) const;

signals:
    /// The name of a shape of the open document was chosen.
    void sliceChosen(int index);

protected:
    void changeEvent(QEvent* event) override;

private:
    void show(const std::vector<AverageShape>& shapes, const QString& unit);
    void colorNames();

    AveragesView* view_;
    QListWidget* names_;
    QLabel* note_;
};
