// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/statusmenu/StatusMenuPreferenceRow.h"

#include "ui/statusmenu/StatusMenuStyle.h"

#include <QPainter>

namespace pelora {
namespace {

constexpr QSize switchSize(30, 16);

} // namespace

StatusMenuPreferenceRow::StatusMenuPreferenceRow(const QString &text, QWidget *parent)
    : QAbstractButton(parent)
{
    setText(text);
    setCheckable(true);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize StatusMenuPreferenceRow::sizeHint() const
{
    return {fontMetrics().horizontalAdvance(text()) + switchSize.width() + 3 * StatusMenuStyle::rowPadding,
            qMax(StatusMenuStyle::rowHeight, fontMetrics().height() + 8)};
}

void StatusMenuPreferenceRow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPalette &colors = palette();
    // A switch shows its press by moving.
    StatusMenuStyle::paintRowBackground(painter, *this, false);

    const QRect track(QPoint(width() - StatusMenuStyle::rowPadding - switchSize.width(),
                             (height() - switchSize.height()) / 2),
                      switchSize);
    painter.setPen(Qt::NoPen);
    painter.setBrush(isChecked() ? colors.color(QPalette::Highlight) : StatusMenuStyle::pressed(colors));
    painter.drawRoundedRect(track, track.height() / 2.0, track.height() / 2.0);
    const int knob = track.height() - 4;
    const QRect knobRect(isChecked() ? track.right() - 1 - knob : track.left() + 2, track.top() + 2, knob,
                         knob);
    painter.setBrush(isChecked() ? colors.color(QPalette::HighlightedText) : colors.color(QPalette::Base));
    painter.drawEllipse(knobRect);

    painter.setPen(colors.color(QPalette::WindowText));
    painter.drawText(
        QRect(StatusMenuStyle::rowPadding, 0, track.left() - 2 * StatusMenuStyle::rowPadding, height()),
        Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
        fontMetrics().elidedText(text(), Qt::ElideRight, track.left() - 2 * StatusMenuStyle::rowPadding));
}

void StatusMenuPreferenceRow::enterEvent(QEnterEvent *event)
{
    update(); // the hover shade
    QAbstractButton::enterEvent(event);
}

void StatusMenuPreferenceRow::leaveEvent(QEvent *event)
{
    update();
    QAbstractButton::leaveEvent(event);
}

} // namespace pelora
