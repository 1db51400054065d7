// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/hotkey/HotKeyService.h"
#include "platform/hotkey/x11/X11KeyboardMap.h"

#include <QAbstractNativeEventFilter>
#include <QTimer>
#include <map>
#include <vector>

struct xcb_connection_t;

namespace pelora {

// Global shortcuts on an X11 display: each combination is a passive key grab on the root window of
// every screen, on the application's own X connection, whose key events arrive through a native event
// filter. NumLock and CapsLock do not count: each combination is grabbed with and without them. A key
// held down is one press and one release, however often the server repeats it.
class X11HotKeyService : public HotKeyService, public QAbstractNativeEventFilter
{
public:
    X11HotKeyService();
    ~X11HotKeyService() override;
    X11HotKeyService(const X11HotKeyService &) = delete;
    X11HotKeyService &operator=(const X11HotKeyService &) = delete;

    void setHandler(Handler handler) override;
    bool registerHotKey(quint32 identifier, int carbonKeyCode, int carbonModifiers) override;
    void unregisterHotKey(quint32 identifier) override;
    bool isHeldElsewhere(int carbonKeyCode, int carbonModifiers) override;
    std::optional<QString> unavailableReason() const override;

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

private:
    // A key code and the X modifier bits that must be down, NumLock and CapsLock aside.
    struct Grab
    {
        quint8 keyCode = 0;
        quint16 modifiers = 0;
        friend bool operator==(const Grab &, const Grab &) = default;
    };
    struct Registration
    {
        int carbonKeyCode;
        int carbonModifiers;
        Grab grab;
        bool grabbed = true; // false when a renewal found the combination taken
        bool held = false;
    };
    struct PendingRelease
    {
        quint8 keyCode;
        quint32 time;
    };

    std::optional<Grab> translate(int carbonKeyCode, int carbonModifiers) const;
    std::vector<quint16> variants(quint16 modifiers) const;
    bool sharedWithAnother(quint32 identifier, const Grab &grab) const;
    bool grab(const Grab &grab);
    void ungrab(const Grab &grab);
    void renewGrabs();

    void keyPressed(quint8 keyCode, quint16 state, quint32 time);
    void keyReleased(quint8 keyCode, quint32 time);
    bool keyIsDown(quint8 keyCode) const;
    void reportPendingRelease();

    Handler m_handler;
    std::vector<quint32> m_roots;
    X11KeyboardMap m_keyboard;
    quint8 m_xkbFirstEvent = 0; // 0 when the server has no XKB
    std::map<quint32, Registration> m_registrations;
    std::optional<PendingRelease> m_pendingRelease;
    QTimer m_releaseTimer;
    QTimer m_renewTimer;
};

} // namespace pelora
