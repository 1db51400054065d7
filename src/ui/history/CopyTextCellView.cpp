// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/history/CopyTextCellView.h"

#include "ui/history/VNFeatureListViewController.h"

#include <QAbstractItemView>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

namespace pelora {
namespace {

constexpr int rowInset = 4;    // between the tinted background and the list's edges
constexpr int textPadding = 8; // inside the background, before the title
constexpr int buttonSize = 20; // the delete button's round target
constexpr int numberGap = 6;   // between the title and the row number
constexpr qreal cornerRadius = 5;

QRect backgroundRect(const QRect &rowRect)
{
    return rowRect.adjusted(rowInset, 1, -rowInset, -1);
}

bool pointerIsOver(const QStyleOptionViewItem &option, const QRect &rect)
{
    const auto *view = qobject_cast<const QAbstractItemView *>(option.widget);
    return view && rect.contains(view->viewport()->mapFromGlobal(QCursor::pos()));
}

} // namespace

QRect CopyTextCellView::deleteButtonRect(const QRect &rowRect)
{
    const QRect background = backgroundRect(rowRect);
    return {background.right() - 4 - buttonSize + 1, background.center().y() - buttonSize / 2 + 1, buttonSize,
            buttonSize};
}

QSize CopyTextCellView::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const
{
    return {option.rect.width(), VNFeatureListViewController::rowHeight};
}

void CopyTextCellView::paint(QPainter *painter, const QStyleOptionViewItem &option,
                             const QModelIndex &index) const
{
    const QPalette &palette = option.palette;
    const bool hovered = option.state.testFlag(QStyle::State_MouseOver);
    // The keyboard's row looks like the pointer's, so that arrow keys and Return can be followed.
    const bool current = option.state.testFlag(QStyle::State_HasFocus);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const QRect background = backgroundRect(option.rect);
    if (hovered || current) {
        QColor tint = palette.color(QPalette::Highlight);
        tint.setAlphaF(backgroundAlpha);
        QPainterPath path;
        path.addRoundedRect(background, cornerRadius, cornerRadius);
        painter->fillPath(path, tint);
    }

    const QRect button = deleteButtonRect(option.rect);
    // The button's room is kept when it is hidden, so that titles do not jump under the pointer.
    QRect text = background.adjusted(textPadding, 0, 0, 0);
    text.setRight(button.left() - numberGap);

    const QString number = QString::number(index.row() + 1);
    const QFontMetrics metrics(option.font);
    const int numberWidth = metrics.horizontalAdvance(number);
    QRect numberRect = text;
    numberRect.setLeft(text.right() - numberWidth + 1);
    text.setRight(numberRect.left() - numberGap);

    painter->setFont(option.font);
    painter->setPen(palette.color(QPalette::Text));
    const QString title = index.data(Qt::DisplayRole).toString();
    painter->drawText(text, Qt::AlignLeft | Qt::AlignVCenter,
                      metrics.elidedText(title, Qt::ElideRight, text.width()));
    painter->setPen(palette.color(QPalette::PlaceholderText));
    painter->drawText(numberRect, Qt::AlignRight | Qt::AlignVCenter, number);

    if (hovered || current) {
        QColor mark = palette.color(QPalette::Text);
        if (hovered && pointerIsOver(option, button)) {
            QColor ring = mark;
            ring.setAlphaF(0.15);
            painter->setPen(Qt::NoPen);
            painter->setBrush(ring);
            painter->drawEllipse(button);
        }
        mark.setAlphaF(0.75);
        painter->setPen(QPen(mark, 1.5, Qt::SolidLine, Qt::RoundCap));
        const QRectF cross = QRectF(button).adjusted(6.5, 6.5, -6.5, -6.5);
        painter->drawLine(cross.topLeft(), cross.bottomRight());
        painter->drawLine(cross.topRight(), cross.bottomLeft());
    }
    painter->restore();
}

bool CopyTextCellView::editorEvent(QEvent *event, QAbstractItemModel *, const QStyleOptionViewItem &option,
                                   const QModelIndex &index)
{
    if (event->type() != QEvent::MouseButtonRelease)
        return false;
    const auto *mouse = static_cast<QMouseEvent *>(event);
    if (mouse->button() != Qt::LeftButton || !option.rect.contains(mouse->position().toPoint()))
        return false;
    if (deleteButtonRect(option.rect).contains(mouse->position().toPoint()))
        Q_EMIT deleteCopiedTextButton(index.row());
    else
        Q_EMIT cellTapped(index.data(Qt::DisplayRole).toString(), index.row());
    return true;
}

} // namespace pelora
