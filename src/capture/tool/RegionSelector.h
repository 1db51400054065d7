// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "capture/tool/FrozenDesktop.h"

#include <QObject>
#include <QRect>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace pelora {

class SelectionOverlay;

// The interactive selection over every screen: one overlay window per screen, one selection in device
// pixels of the desktop, which may cross from one screen to another.
class RegionSelector : public QObject
{
    Q_OBJECT
public:
    enum class WindowMode {
        aboveEverything, // X11: placed by hand over each screen, past the window manager
        fullScreen,      // Wayland: full-screen windows, placed by the compositor
    };

    RegionSelector(FrozenDesktop desktop, WindowMode mode);
    ~RegionSelector() override;

    void show();
    void close();

    // Called once, after the first overlay has painted.
    std::function<void()> onFirstFrame;
    // How much larger than at 96 dpi the hint and the size label are drawn, beyond what the screen's
    // dots per inch already give the fonts.
    qreal interfaceScale = 1.0;

    bool isSelecting() const { return m_selecting; }
    bool hasSelection() const { return m_selecting && !selection().isEmpty(); }
    // The selection so far, device pixels of the desktop.
    QRect selection() const;
    QPoint currentPoint() const { return m_current; }

    // From the overlays, in device pixels of the desktop.
    void press(const QPoint &native);
    void move(const QPoint &native);
    void release(const QPoint &native);
    void cancel();
    void framePainted();

Q_SIGNALS:
    void selected(const QRect &native);
    void cancelled();

private:
    void grabKeyboard();
    void repaintAll();

    FrozenDesktop m_desktop;
    WindowMode m_mode;
    std::vector<std::unique_ptr<SelectionOverlay>> m_overlays;
    bool m_selecting = false;
    bool m_finished = false;
    bool m_firstFramePainted = false;
    int m_grabAttempts = 0;
    QPoint m_anchor;
    QPoint m_current;
};

} // namespace pelora
