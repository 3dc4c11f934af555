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

    QSize sizeHint() const override;

public slots:
    /// Chooses a slice and shows it in the list; an index outside is ignored.
    void chooseSlice(int index);
    void chooseNext();
    void choosePrevious();

signals:
    /// Another slice is chosen, or none: -1.
    void sliceChosen(int index);

private:
    void followDocument();

    SliceListModel* model_;
    QListView* list_;
};
