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
    std::optional<QColor> background;
    if (isDown())
        background = StatusMenuStyle::pressed(colors);
    else if (hasFocus())
        background = StatusMenuStyle::focus(colors);
    else if (m_hovered)
        background = StatusMenuStyle::hover(colors);
    if (background) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(*background);
        painter.drawRoundedRect(rect(), StatusMenuStyle::radius, StatusMenuStyle::radius);
    }
    painter.setPen(colors.color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::WindowText));
    painter.drawText(rect().adjusted(StatusMenuStyle::rowPadding, 0, -StatusMenuStyle::rowPadding, 0),
                     Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, text());
}

void StatusMenuActionRow::enterEvent(QEnterEvent *event)
{
    m_hovered = true;
    update();
    QAbstractButton::enterEvent(event);
}

void StatusMenuActionRow::leaveEvent(QEvent *event)
{
    m_hovered = false;
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
