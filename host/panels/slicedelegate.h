#pragma once

#include <QStyledItemDelegate>

/// Draws a row of the list of slices: the small picture, the name, and below it a mark and a few
/// words on what the slice lacks. The marks differ in shape, not in colour alone.
class SliceDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    /// The side of the square that holds the small picture, in the widget's pixels.
    static constexpr int pictureSide = 64;

    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter,
               const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    void paintGround(QPainter& painter,
                     const QStyleOptionViewItem& option,
                     const QModelIndex& index) const;
};
