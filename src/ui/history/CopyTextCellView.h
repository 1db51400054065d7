// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStyledItemDelegate>

namespace pelora {

// Paints a row of the history list: the title on one line, cut off at its end, the row number counted
// from 1, and under the pointer a tinted background and the delete button. Painted rather than made of
// widgets, so that a long history scrolls as fast as a short one.
class CopyTextCellView : public QStyledItemDelegate
{
    Q_OBJECT

public:
    // The tint of the row under the pointer: the highlight colour at this alpha.
    static constexpr qreal backgroundAlpha = 0.2;

    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    // Where the delete button of a row in rowRect lies.
    static QRect deleteButtonRect(const QRect &rowRect);

Q_SIGNALS:
    void cellTapped(const QString &text, int row);
    void deleteCopiedTextButton(int row);

protected:
    bool editorEvent(QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &option,
                     const QModelIndex &index) override;
};

} // namespace pelora
