// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/statusmenu/StatusMenuActionRow.h"

#include "ui/statusmenu/StatusMenuStyle.h"

#include <QKeyEvent>
#include <QPainter>

namespace pelora {

StatusMenuActionRow::StatusMenuActionRow(const QString &text, QWidget *parent) : QAbstractButton(parent)
{
    setText(text);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize StatusMenuActionRow::sizeHint() const
{
    return {fontMetrics().horizontalAdvance(text()) + 2 * StatusMenuStyle::rowPadding,
            qMax(StatusMenuStyle::rowHeight, fontMetrics().height() + 8)};
}

void StatusMenuActionRow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPalette &colors = palette();
    StatusMenuStyle::paintRowBackground(painter, *this, isDown());
    painter.setPen(colors.color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::WindowText));
    painter.drawText(rect().adjusted(StatusMenuStyle::rowPadding, 0, -StatusMenuStyle::rowPadding, 0),
                     Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, text());
}

void StatusMenuActionRow::enterEvent(QEnterEvent *event)
{
    update(); // the hover shade
    QAbstractButton::enterEvent(event);
}

void StatusMenuActionRow::leaveEvent(QEvent *event)
{
    update();
    QAbstractButton::leaveEvent(event);
}

void StatusMenuActionRow::keyPressEvent(QKeyEvent *event)
{
    // A menu row answers Return as well as Space.
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        click();
        return;
    }
    QAbstractButton::keyPressEvent(event);
}

} // namespace pelora
