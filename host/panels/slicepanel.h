#pragma once

#include <QWidget>

class LMXRootMediator;
class QListView;
class SliceListModel;

/// The slices of the open document as small pictures with name and mark, of which one is chosen.
class SlicePanel : public QWidget
{
    Q_OBJECT

public:
    explicit SlicePanel(LMXRootMediator& mediator, QWidget* parent = nullptr);

    /// The chosen slice; -1 without a document.
    int currentSlice() const;

    /// The list, for who wants to look at its rows.
    const SliceListModel& slices() const { return *model_; }

    QSize sizeHint() const override { return {260, 600}; }

public slots:
    /// Chooses a slice and brings it into sight; an index outside is ignored.
    void chooseSlice(int index);

    void chooseNext() { chooseSlice(currentSlice() + 1); }

    void choosePrevious() { chooseSlice(currentSlice() - 1); }

signals:
    /// A slice is chosen, or none: -1. Comes also when another document brings another slice of the
    /// same number.
    void sliceChosen(int index);

private:
    void followDocument();

    SliceListModel* model_;
    QListView* list_;
    int rowBeforeReset_ = -1;
};
