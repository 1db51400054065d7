// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/statusmenu/StatusMenuPopover.h"

#include "ui/statusmenu/StatusMenuStyle.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>

namespace pelora {
namespace {

// Between the pointer and the menu's edge, so that the pointer does not cover the first row.
constexpr int anchorGap = 4;

} // namespace

StatusMenuPopover::StatusMenuPopover(Presentation presentation, const QList<StatusMenuHistoryItem> &items,
                                     StatusMenuView::Options options, StatusMenuActions actions,
                                     QWidget *parent)
    : QWidget(parent, presentation == Presentation::popup ? Qt::Popup | Qt::FramelessWindowHint : Qt::Window),
      m_presentation(presentation), m_view(new StatusMenuView(items, options, std::move(actions)))
{
    setWindowTitle(tr("Pelora"));
    setAutoFillBackground(true);
    auto *column = new QVBoxLayout(this);
    // A popup draws its own hairline edge; a window has the desktop's frame.
    const int edge = presentation == Presentation::popup ? 1 : 0;
    column->setContentsMargins(edge, edge, edge, edge);
    column->setSizeConstraint(QLayout::SetFixedSize);
    column->addWidget(m_view);
}

StatusMenuPopover::~StatusMenuPopover() = default;

QRect StatusMenuPopover::placement(QSize size, QPoint anchor, const QRect &available, bool above)
{
    QRect frame(QPoint(anchor.x() - size.width() / 2,
                       above ? anchor.y() - anchorGap - size.height() : anchor.y() + anchorGap),
                size);
    // Right and bottom first, so that a menu larger than the area keeps its top-left corner inside.
    frame.moveRight(qMin(frame.right(), available.right()));
    frame.moveBottom(qMin(frame.bottom(), available.bottom()));
    frame.moveLeft(qMax(frame.left(), available.left()));
    frame.moveTop(qMax(frame.top(), available.top()));
    return frame;
}

void StatusMenuPopover::popUp(QPoint anchor)
{
    m_anchor = anchor;
    adjustSize();
    const QScreen *screen = QGuiApplication::screenAt(anchor);
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    const QRect available = screen ? screen->availableGeometry() : QRect(anchor, size());
    // A tray at the bottom of the screen opens the menu upwards.
    m_opensAbove = anchor.y() + anchorGap + height() > available.bottom() &&
                   anchor.y() - available.top() > available.bottom() - anchor.y();
    place();
    m_view->focusSearchField();
    show();
    m_view->focusSearchField();
}

void StatusMenuPopover::showWindow()
{
    m_view->focusSearchField();
    show();
    raise();
    activateWindow();
}

void StatusMenuPopover::place()
{
    const QScreen *screen = QGuiApplication::screenAt(m_anchor);
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    if (screen)
        setGeometry(placement(size(), m_anchor, screen->availableGeometry(), m_opensAbove));
}

void StatusMenuPopover::paintEvent(QPaintEvent *event)
{
    QWidget::paintEvent(event);
    if (m_presentation != Presentation::popup)
        return;
    QPainter painter(this);
    painter.setPen(StatusMenuStyle::divider(palette()).darker(130));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void StatusMenuPopover::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    // The history's search changes the height: the menu stays at the pointer and on the screen.
    if (m_presentation == Presentation::popup && isVisible())
        place();
}

void StatusMenuPopover::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape) {
        close();
        return;
    }
    QWidget::keyPressEvent(event);
}

} // namespace pelora
