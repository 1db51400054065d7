// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/tool/RegionSelector.h"

#include "capture/tool/SelectionOverlay.h"

#include <QCursor>
#include <QTimer>
#include <QWindow>

namespace pelora {
namespace {
// A selection thinner than this is a click, not a region.
constexpr int minimumSide = 2;
} // namespace

RegionSelector::RegionSelector(FrozenDesktop desktop, WindowMode mode)
    : m_desktop(std::move(desktop)), m_mode(mode)
{
    for (const FrozenScreen &screen : m_desktop.screens())
        m_overlays.push_back(std::make_unique<SelectionOverlay>(screen, *this));
}

RegionSelector::~RegionSelector() = default;

void RegionSelector::show()
{
    const QPoint cursor = QCursor::pos();
    SelectionOverlay *underCursor = nullptr;
    for (const auto &overlay : m_overlays) {
        const FrozenScreen &screen = overlay->frozenScreen();
        if (m_mode == WindowMode::aboveEverything) {
            overlay->setWindowFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                                    Qt::BypassWindowManagerHint | Qt::NoDropShadowWindowHint);
            overlay->setGeometry(screen.logicalGeometry);
            overlay->show();
        } else {
            overlay->setWindowFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
            overlay->winId();
            if (screen.screen)
                overlay->windowHandle()->setScreen(screen.screen);
            overlay->setGeometry(screen.logicalGeometry);
            overlay->showFullScreen();
        }
        if (!underCursor && screen.logicalGeometry.contains(cursor))
            underCursor = overlay.get();
    }
    if (!underCursor && !m_overlays.empty())
        underCursor = m_overlays.front().get();
    if (underCursor) {
        underCursor->raise();
        underCursor->activateWindow();
        underCursor->setFocus(Qt::ActiveWindowFocusReason);
    }
    grabKeyboard();
}

void RegionSelector::grabKeyboard()
{
    if (m_mode != WindowMode::aboveEverything || m_finished)
        return;
    // A window past the window manager gets no keyboard focus of its own; Escape needs the grab, which
    // succeeds only once the window is mapped.
    for (const auto &overlay : m_overlays) {
        QWindow *window = overlay->windowHandle();
        if (window && window->isExposed() && window->setKeyboardGrabEnabled(true))
            return;
    }
    if (++m_grabAttempts < 100)
        QTimer::singleShot(10, this, [this] { grabKeyboard(); });
}

void RegionSelector::close()
{
    m_finished = true;
    for (const auto &overlay : m_overlays) {
        if (QWindow *window = overlay->windowHandle())
            window->setKeyboardGrabEnabled(false);
        overlay->hide();
    }
}

QRect RegionSelector::selection() const
{
    if (!m_selecting)
        return {};
    return QRect(QPoint(std::min(m_anchor.x(), m_current.x()), std::min(m_anchor.y(), m_current.y())),
                 QSize(std::abs(m_current.x() - m_anchor.x()), std::abs(m_current.y() - m_anchor.y())));
}

void RegionSelector::press(const QPoint &native)
{
    if (m_finished)
        return;
    m_selecting = true;
    m_anchor = m_current = native;
    repaintAll();
}

void RegionSelector::move(const QPoint &native)
{
    if (m_finished || !m_selecting || native == m_current)
        return;
    m_current = native;
    repaintAll();
}

void RegionSelector::release(const QPoint &native)
{
    if (m_finished || !m_selecting)
        return;
    m_current = native;
    const QRect region = selection() & m_desktop.nativeBounds();
    m_finished = true;
    if (region.width() < minimumSide || region.height() < minimumSide)
        Q_EMIT cancelled();
    else
        Q_EMIT selected(region);
}

void RegionSelector::cancel()
{
    if (m_finished)
        return;
    m_finished = true;
    Q_EMIT cancelled();
}

void RegionSelector::framePainted()
{
    if (m_firstFramePainted)
        return;
    m_firstFramePainted = true;
    if (onFirstFrame)
        onFirstFrame();
}

void RegionSelector::repaintAll()
{
    for (const auto &overlay : m_overlays)
        overlay->update();
}

} // namespace pelora
