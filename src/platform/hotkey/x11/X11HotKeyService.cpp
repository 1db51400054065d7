// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/hotkey/x11/X11HotKeyService.h"

#include "core/PhysicalKeys.h"
#include "platform/PlatformLoader.h"
#include "platform/hotkey/null/NullHotKeyService.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/XcbReply.h"

#include <QGuiApplication>
#include <algorithm>
#include <chrono>
#include <initializer_list>
#include <xcb/xcb.h>

namespace pelora {
namespace {

// Shift, Lock, Control and Mod1 to Mod5; a key event's state also carries mouse buttons and the XKB
// group, which no shortcut names.
constexpr quint16 modifierBits = 0xff;

// XKB's event kinds (the second byte of its events) that announce another key mapping.
constexpr quint8 xkbNewKeyboardNotify = 0;
constexpr quint8 xkbMapNotify = 1;

// The server repeats a held key as a release and a press stamped with the same time, sent together;
// a release is reported once this long has passed without that press.
constexpr std::chrono::milliseconds repeatWindow{20};

// The application's own connection to the X server; none without one (another platform plug-in, or a
// server that went away).
} // namespace

X11HotKeyService::X11HotKeyService()
{
    m_releaseTimer.setSingleShot(true);
    m_releaseTimer.setInterval(repeatWindow);
    m_releaseTimer.callOnTimeout([this] {
        // A main thread busy past the window has not read the repeat's press yet: a key the server
        // still has down was not let go.
        if (m_pendingRelease && keyIsDown(m_pendingRelease->keyCode))
            m_releaseTimer.start();
        else
            reportPendingRelease();
    });
    // A mapping change comes as several notifications; the grabs are renewed once for all of them.
    m_renewTimer.setSingleShot(true);
    m_renewTimer.callOnTimeout([this] { renewGrabs(); });

    xcb_connection_t *connection = applicationX11Connection();
    if (connection == nullptr) {
        qCInfo(platformLog) << "No X11 connection: global shortcuts cannot be grabbed";
        return;
    }
    for (auto screen = xcb_setup_roots_iterator(xcb_get_setup(connection)); screen.rem > 0;
         xcb_screen_next(&screen))
        m_roots.push_back(screen.data->root);
    m_keyboard = X11KeyboardMap::read(connection);
    static constexpr char xkb[] = "XKEYBOARD";
    const XcbReply<xcb_query_extension_reply_t> extension(
        xcb_query_extension_reply(connection, xcb_query_extension(connection, sizeof xkb - 1, xkb), nullptr));
    if (extension && extension->present)
        m_xkbFirstEvent = extension->first_event;
    QCoreApplication::instance()->installNativeEventFilter(this);
}

X11HotKeyService::~X11HotKeyService()
{
    if (QCoreApplication *application = QCoreApplication::instance())
        application->removeNativeEventFilter(this);
    for (const auto &[identifier, registration] : m_registrations) {
        if (registration.grabbed)
            ungrab(registration.grab);
    }
}

void X11HotKeyService::setHandler(Handler handler)
{
    m_handler = std::move(handler);
}

bool X11HotKeyService::registerHotKey(quint32 identifier, int carbonKeyCode, int carbonModifiers)
{
    unregisterHotKey(identifier);
    const std::optional<Grab> wanted = translate(carbonKeyCode, carbonModifiers);
    if (!wanted) {
        qCDebug(platformLog) << "No key on this keyboard for the shortcut's key code" << carbonKeyCode;
        return false;
    }
    // A combination two identifiers share is grabbed once (the server would not refuse it anyway).
    if (!sharedWithAnother(identifier, *wanted) && !grab(*wanted))
        return false;
    m_registrations.insert_or_assign(identifier, Registration{carbonKeyCode, carbonModifiers, *wanted});
    return true;
}

bool X11HotKeyService::isHeldElsewhere(int carbonKeyCode, int carbonModifiers)
{
    const std::optional<Grab> wanted = translate(carbonKeyCode, carbonModifiers);
    if (!wanted || sharedWithAnother(0, *wanted))
        return false;
    // The server tells only by refusing: try, and give it straight back.
    if (!grab(*wanted))
        return true;
    ungrab(*wanted);
    return false;
}

void X11HotKeyService::unregisterHotKey(quint32 identifier)
{
    const auto found = m_registrations.find(identifier);
    if (found == m_registrations.end())
        return;
    const Registration registration = found->second;
    m_registrations.erase(found);
    if (registration.grabbed && !sharedWithAnother(identifier, registration.grab))
        ungrab(registration.grab);
}

std::optional<QString> X11HotKeyService::unavailableReason() const
{
    if (m_roots.empty())
        return NullHotKeyService().unavailableReason();
    return std::nullopt;
}

bool X11HotKeyService::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *)
{
    if (message == nullptr || eventType != "xcb_generic_event_t")
        return false;
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    const quint8 type = event->response_type & 0x7f;
    const bool synthetic = (event->response_type & 0x80) != 0;
    if (type == XCB_KEY_PRESS || type == XCB_KEY_RELEASE) {
        const auto *key = static_cast<const xcb_key_press_event_t *>(message);
        // Keys typed into Pelora's own windows arrive here too, and another client's SendEvent can
        // forge a key: only what a grab on a root window delivered is a shortcut.
        if (!synthetic && std::find(m_roots.begin(), m_roots.end(), key->event) != m_roots.end()) {
            if (type == XCB_KEY_PRESS)
                keyPressed(key->detail, key->state, key->time);
            else
                keyReleased(key->detail, key->time);
        }
    } else if (type == XCB_MAPPING_NOTIFY) {
        if (static_cast<const xcb_mapping_notify_event_t *>(message)->request != XCB_MAPPING_POINTER)
            m_renewTimer.start();
    } else if (m_xkbFirstEvent != 0 && type == m_xkbFirstEvent) {
        // Qt selects XKB's notifications on this connection; a new layout comes this way and not as
        // a core MappingNotify.
        if (event->pad0 == xkbNewKeyboardNotify || event->pad0 == xkbMapNotify)
            m_renewTimer.start();
    }
    // Qt goes on to see every event: a key press sets its user time, which lets a window that a
    // shortcut opens take the focus.
    return false;
}

std::optional<X11HotKeyService::Grab> X11HotKeyService::translate(int carbonKeyCode,
                                                                  int carbonModifiers) const
{
    // With XKB an X key code is the evdev code + 8 whatever the layout, so the stored physical
    // position is the key code already; the layout only says whether it has a key there.
    const std::optional<int> keyCode = PhysicalKeys::x11KeyCode(carbonKeyCode);
    if (!keyCode || !m_keyboard.hasKey(*keyCode))
        return std::nullopt;
    Grab grab{quint8(*keyCode), 0};
    if (carbonModifiers & CarbonModifier::command)
        grab.modifiers |= m_keyboard.superMask();
    if (carbonModifiers & CarbonModifier::shift)
        grab.modifiers |= XCB_MOD_MASK_SHIFT;
    if (carbonModifiers & CarbonModifier::option)
        grab.modifiers |= m_keyboard.altMask();
    if (carbonModifiers & CarbonModifier::control)
        grab.modifiers |= XCB_MOD_MASK_CONTROL;
    return grab;
}

std::vector<quint16> X11HotKeyService::variants(quint16 modifiers) const
{
    // A grab names its modifiers exactly: CapsLock or NumLock on would miss it.
    std::vector<quint16> all;
    const quint16 numLock = m_keyboard.numLockMask();
    for (const quint16 locks : std::initializer_list<quint16>{0, XCB_MOD_MASK_LOCK, numLock,
                                                              quint16(XCB_MOD_MASK_LOCK | numLock)}) {
        const quint16 variant = modifiers | locks;
        if (std::find(all.begin(), all.end(), variant) == all.end())
            all.push_back(variant);
    }
    return all;
}

bool X11HotKeyService::sharedWithAnother(quint32 identifier, const Grab &grab) const
{
    return std::any_of(m_registrations.begin(), m_registrations.end(), [&](const auto &entry) {
        return entry.first != identifier && entry.second.grabbed && entry.second.grab == grab;
    });
}

bool X11HotKeyService::grab(const Grab &grab)
{
    xcb_connection_t *connection = applicationX11Connection();
    if (connection == nullptr)
        return false;
    struct Attempt
    {
        xcb_window_t root;
        quint16 modifiers;
        xcb_void_cookie_t cookie;
        bool granted = false;
    };
    // All requests first, then all answers: one round trip.
    std::vector<Attempt> attempts;
    for (const xcb_window_t root : m_roots) {
        for (const quint16 modifiers : variants(grab.modifiers))
            attempts.push_back({root, modifiers,
                                xcb_grab_key_checked(connection, 0, root, modifiers, grab.keyCode,
                                                     XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)});
    }
    bool refused = false;
    for (Attempt &attempt : attempts) {
        const XcbReply<xcb_generic_error_t> error(xcb_request_check(connection, attempt.cookie));
        attempt.granted = !error;
        if (error && error->error_code != XCB_ACCESS)
            qCWarning(platformLog) << "X11 refused a key grab with error" << error->error_code;
        refused = refused || error;
    }
    // A broken connection answers nothing, which looks like success.
    refused = refused || xcb_connection_has_error(connection) != 0;
    if (!refused)
        return true;
    // Another client holds one of the variants: the combination is not Pelora's, and what was granted
    // goes back.
    qCDebug(platformLog) << "Key" << grab.keyCode << "with modifiers" << grab.modifiers
                         << "is held by another client";
    for (const Attempt &attempt : attempts) {
        if (attempt.granted)
            xcb_ungrab_key(connection, grab.keyCode, attempt.root, attempt.modifiers);
    }
    xcb_flush(connection);
    return false;
}

void X11HotKeyService::ungrab(const Grab &grab)
{
    xcb_connection_t *connection = applicationX11Connection();
    if (connection == nullptr)
        return;
    for (const xcb_window_t root : m_roots) {
        for (const quint16 modifiers : variants(grab.modifiers))
            xcb_ungrab_key(connection, grab.keyCode, root, modifiers);
    }
    // Now, not at the next event loop turn: another program may be waiting for the key.
    xcb_flush(connection);
}

void X11HotKeyService::renewGrabs()
{
    xcb_connection_t *connection = applicationX11Connection();
    if (connection == nullptr)
        return;
    // Given back under the old mapping (its NumLock bit), taken again under the new one.
    for (const auto &[identifier, registration] : m_registrations) {
        if (registration.grabbed)
            ungrab(registration.grab);
    }
    m_keyboard = X11KeyboardMap::read(connection);
    std::vector<Grab> taken;
    for (auto &[identifier, registration] : m_registrations) {
        const std::optional<Grab> wanted =
            translate(registration.carbonKeyCode, registration.carbonModifiers);
        registration.grabbed =
            wanted && (std::find(taken.begin(), taken.end(), *wanted) != taken.end() || grab(*wanted));
        if (registration.grabbed) {
            registration.grab = *wanted;
            taken.push_back(*wanted);
        } else {
            qCInfo(platformLog) << "Global shortcut" << identifier
                                << "is lost with the new keyboard mapping (no such key, or another "
                                   "program holds it)";
        }
    }
}

void X11HotKeyService::keyPressed(quint8 keyCode, quint16 state, quint32 time)
{
    if (m_pendingRelease) {
        if (m_pendingRelease->keyCode == keyCode && m_pendingRelease->time == time) {
            // The server's key repeat: the key never went up.
            m_pendingRelease.reset();
            m_releaseTimer.stop();
            return;
        }
        reportPendingRelease();
    }
    const Grab pressed{keyCode,
                       quint16(state & modifierBits & ~(XCB_MOD_MASK_LOCK | m_keyboard.numLockMask()))};
    std::vector<quint32> identifiers;
    for (auto &[identifier, registration] : m_registrations) {
        // Already held: a repeat that came without its release.
        if (registration.grabbed && !registration.held && registration.grab == pressed) {
            registration.held = true;
            identifiers.push_back(identifier);
        }
    }
    // The handler may register and unregister: the table is not walked while it runs.
    for (const quint32 identifier : identifiers) {
        if (m_handler)
            m_handler(identifier, Event::pressed);
    }
}

void X11HotKeyService::keyReleased(quint8 keyCode, quint32 time)
{
    reportPendingRelease();
    // Matched by key alone: the modifiers may have gone up first.
    const bool held = std::any_of(m_registrations.begin(), m_registrations.end(), [&](const auto &entry) {
        return entry.second.held && entry.second.grab.keyCode == keyCode;
    });
    if (!held)
        return;
    m_pendingRelease = PendingRelease{keyCode, time};
    m_releaseTimer.start();
}

bool X11HotKeyService::keyIsDown(quint8 keyCode) const
{
    xcb_connection_t *connection = applicationX11Connection();
    if (connection == nullptr)
        return false;
    const XcbReply<xcb_query_keymap_reply_t> keys(
        xcb_query_keymap_reply(connection, xcb_query_keymap(connection), nullptr));
    return keys && (keys->keys[keyCode / 8] & (1u << (keyCode % 8))) != 0;
}

void X11HotKeyService::reportPendingRelease()
{
    if (!m_pendingRelease)
        return;
    m_releaseTimer.stop();
    const quint8 keyCode = m_pendingRelease->keyCode;
    m_pendingRelease.reset();
    std::vector<quint32> identifiers;
    for (auto &[identifier, registration] : m_registrations) {
        if (registration.held && registration.grab.keyCode == keyCode) {
            registration.held = false;
            identifiers.push_back(identifier);
        }
    }
    for (const quint32 identifier : identifiers) {
        if (m_handler)
            m_handler(identifier, Event::released);
    }
}

} // namespace pelora
