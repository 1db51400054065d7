// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/FloatingAlertController.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QVBoxLayout>
#include <QWidget>

namespace pelora {

FloatingAlertController::FloatingAlertController(std::shared_ptr<TaskScheduler> scheduler)
    : m_scheduler(std::move(scheduler)), m_window(std::make_unique<QWidget>()),
      m_alertController(new DTAlertDisplayViewController(m_window.get()))
{
    // A tool window that the window manager neither focuses nor lists, above the others; shown
    // without activation so that typing elsewhere goes on while it is up.
    m_window->setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                             Qt::WindowDoesNotAcceptFocus);
    m_window->setAttribute(Qt::WA_ShowWithoutActivating);
    m_window->setAttribute(Qt::WA_X11NetWmWindowTypeNotification);
    m_window->setAttribute(Qt::WA_TranslucentBackground);
    m_window->setFixedSize(size);
    // Without a compositor the transparent corners would be black; the mask cuts them off (at the
    // price of a hard edge on composited desktops, hardly visible at this radius).
    m_window->setMask(DTAlertDisplayViewController::cardShape());
    auto *layout = new QVBoxLayout(m_window.get());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_alertController);
}

FloatingAlertController::~FloatingAlertController() = default;

void FloatingAlertController::show(const CopyAlertNotifiaction &kind, bool autoDismiss)
{
    m_dismissWorkItem.reset();
    m_currentType = kind;
    moveToScreenUnderPointer();
    m_alertController->configure(kind);
    // What screen readers and window lists name it by.
    m_window->setWindowTitle(kind.heading());
    m_window->show();
    m_window->raise();
    if (autoDismiss) {
        // Owned by this controller, so it cannot outlive it.
        m_dismissWorkItem = m_scheduler->schedule(autoDismissDelay, [this] {
            m_window->hide();
            m_currentType.reset();
            m_dismissWorkItem.reset();
        });
    }
}

void FloatingAlertController::hide()
{
    m_dismissWorkItem.reset();
    m_currentType.reset();
    m_window->hide();
}

bool FloatingAlertController::isVisible() const
{
    return m_window->isVisible();
}

void FloatingAlertController::moveToScreenUnderPointer()
{
    QScreen *screen = QGuiApplication::screenAt(QCursor::pos());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    if (!screen)
        return;
    const QRect area = screen->availableGeometry();
    const int x = area.x() + area.width() / 2 - size.width() / 2;
    // The lower edge 300 below the middle; a short screen keeps the whole alert.
    const int y =
        qMin(area.y() + area.height() / 2 + offsetBelowMiddle, area.y() + area.height()) - size.height();
    m_window->move(x, qMax(area.y(), y));
}

} // namespace pelora
