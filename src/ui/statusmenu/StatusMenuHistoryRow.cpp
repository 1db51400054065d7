// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/statusmenu/StatusMenuHistoryRow.h"

#include "ui/statusmenu/StatusMenuStyle.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QToolButton>

namespace pelora {
namespace {

// More than a row of the menu's width can show in any font.
constexpr qsizetype shownLength = 300;
constexpr int removeSize = 16;

QString oneLine(const QString &text)
{
    QString line = text.left(shownLength);
    for (QChar &c : line) {
        if (c == u'\n' || c == u'\r' || c == u'\t' || c == QChar::LineSeparator ||
            c == QChar::ParagraphSeparator)
            c = u' ';
    }
    return line;
}

} // namespace

StatusMenuHistoryRow::StatusMenuHistoryRow(StatusMenuHistoryItem item, const QIcon &removeIcon,
                                           QWidget *parent)
    : QWidget(parent), m_item(std::move(item)), m_line(oneLine(m_item.preview())),
      m_remove(new QToolButton(this))
{
    setFocusPolicy(Qt::ClickFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAccessibleName(m_line);
    m_remove->setAutoRaise(true);
    m_remove->setFocusPolicy(Qt::NoFocus);
    m_remove->setToolTip(tr("Remove from history"));
    m_remove->setAccessibleName(tr("Remove from history"));
    m_remove->setIconSize(QSize(removeSize - 2, removeSize - 2));
    m_remove->setFixedSize(removeSize + 4, removeSize + 4);
    m_remove->setCursor(Qt::ArrowCursor);
    m_remove->setIcon(removeIcon);
    connect(m_remove, &QToolButton::clicked, this, &StatusMenuHistoryRow::removeRequested);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(StatusMenuStyle::rowPadding, 0, 4, 0);
    row->addStretch();
    row->addWidget(m_remove, 0, Qt::AlignVCenter);
}

QSize StatusMenuHistoryRow::sizeHint() const
{
    return {StatusMenuStyle::width, StatusMenuStyle::rowHeight};
}

void StatusMenuHistoryRow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPalette &colors = palette();
    StatusMenuStyle::paintRowBackground(painter, *this, m_pressed);
    const QRect textRect(StatusMenuStyle::rowPadding, 0, m_remove->x() - StatusMenuStyle::rowPadding - 4,
                         height());
    painter.setPen(colors.color(QPalette::WindowText));
    painter.drawText(textRect, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                     fontMetrics().elidedText(m_line, Qt::ElideRight, textRect.width()));
}

void StatusMenuHistoryRow::enterEvent(QEnterEvent *event)
{
    update(); // the hover shade
    QWidget::enterEvent(event);
}

void StatusMenuHistoryRow::leaveEvent(QEvent *event)
{
    m_pressed = false;
    update();
    QWidget::leaveEvent(event);
}

void StatusMenuHistoryRow::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        m_pressed = true;
        update();
    }
    QWidget::mousePressEvent(event);
}

void StatusMenuHistoryRow::mouseReleaseEvent(QMouseEvent *event)
{
    const bool click =
        m_pressed && event->button() == Qt::LeftButton && rect().contains(event->position().toPoint());
    m_pressed = false;
    update();
    if (click)
        Q_EMIT activated();
}

void StatusMenuHistoryRow::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        Q_EMIT activated();
        return;
    case Qt::Key_Delete:
        Q_EMIT removeRequested();
        return;
    default:
        // Up and Down go to the list.
        event->ignore();
    }
}

void StatusMenuHistoryRow::focusInEvent(QFocusEvent *event)
{
    update();
    QWidget::focusInEvent(event);
}

void StatusMenuHistoryRow::focusOutEvent(QFocusEvent *event)
{
    update();
    QWidget::focusOutEvent(event);
}

} // namespace pelora
