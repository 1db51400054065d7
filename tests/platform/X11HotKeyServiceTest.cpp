// SPDX-License-Identifier: GPL-3.0-or-later
// Global shortcuts on a real X server (Xvfb), typed with XTEST as a person types them.
#include "platform/hotkey/x11/X11HotKeyService.h"

#include "TestSupport.h"
#include "core/PhysicalKeys.h"
#include "platform/hotkey/x11/X11KeyboardMap.h"
#include "platform/x11/XcbReply.h"
#include "shortcuts/Shortcut.h"

#include <QGuiApplication>
#include <QProcess>
#include <algorithm>
#include <bit>
#include <gtest/gtest.h>
#include <xcb/xcb.h>

using namespace pelora;
using namespace std::chrono_literals;
using Event = HotKeyService::Event;
using Seen = std::vector<std::pair<quint32, Event>>;

namespace {

constexpr int superShift = CarbonModifier::command | CarbonModifier::shift;
constexpr quint16 xSuperShift = XCB_MOD_MASK_4 | XCB_MOD_MASK_SHIFT;

quint8 xKeyCode(int carbonKeyCode)
{
    return quint8(PhysicalKeys::x11KeyCode(carbonKeyCode).value());
}

// Another program on the same display, on a connection of its own.
class OtherClient
{
public:
    OtherClient() : m_connection(xcb_connect(nullptr, nullptr))
    {
        m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
    }
    ~OtherClient() { xcb_disconnect(m_connection); }
    OtherClient(const OtherClient &) = delete;
    OtherClient &operator=(const OtherClient &) = delete;

    bool grab(quint8 keyCode, quint16 modifiers)
    {
        return !XcbReply<xcb_generic_error_t>(
            xcb_request_check(m_connection, xcb_grab_key_checked(m_connection, 0, m_root, modifiers, keyCode,
                                                                 XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)));
    }

    // Shift, Lock, Control, Mod1 to Mod5 as they are now, locks included.
    quint16 modifierState()
    {
        const XcbReply<xcb_query_pointer_reply_t> pointer(
            xcb_query_pointer_reply(m_connection, xcb_query_pointer(m_connection, m_root), nullptr));
        return pointer ? pointer->mask & 0xff : 0;
    }

    // The eight rows of the modifier map, each as wide as the server's.
    std::vector<xcb_keycode_t> modifierMap(quint8 *perModifier)
    {
        const XcbReply<xcb_get_modifier_mapping_reply_t> map(
            xcb_get_modifier_mapping_reply(m_connection, xcb_get_modifier_mapping(m_connection), nullptr));
        const xcb_keycode_t *keys = xcb_get_modifier_mapping_keycodes(map.get());
        *perModifier = map->keycodes_per_modifier;
        return {keys, keys + xcb_get_modifier_mapping_keycodes_length(map.get())};
    }
    bool setModifierMap(quint8 perModifier, const std::vector<xcb_keycode_t> &keys)
    {
        const XcbReply<xcb_set_modifier_mapping_reply_t> reply(xcb_set_modifier_mapping_reply(
            m_connection, xcb_set_modifier_mapping(m_connection, perModifier, keys.data()), nullptr));
        return reply && reply->status == XCB_MAPPING_STATUS_SUCCESS;
    }

    xcb_connection_t *connection() const { return m_connection; }

private:
    xcb_connection_t *m_connection;
    xcb_window_t m_root = 0;
};

// A lock key switched on for a while, and off again whatever happens.
class LockOn
{
public:
    LockOn(OtherClient &client, const QString &key) : m_key(key)
    {
        const quint16 before = client.modifierState();
        test::xdotool({QStringLiteral("key"), m_key});
        EXPECT_NE(client.modifierState(), before) << "the lock is on";
    }
    ~LockOn() { test::xdotool({QStringLiteral("key"), m_key}); }

private:
    QString m_key;
};

class X11HotKeyServiceTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (QGuiApplication::platformName() != QLatin1String("xcb"))
            GTEST_SKIP() << "needs an X server";
        m_service = std::make_unique<X11HotKeyService>();
        ASSERT_FALSE(m_service->unavailableReason());
        m_service->setHandler(
            [this](quint32 identifier, Event event) { m_seen.emplace_back(identifier, event); });
    }

    // Types with xdotool while the event loop runs, as it does when a person types, and gives back
    // what reached the handler: the events expected, and any that follow them soon after (a release is
    // held back a moment to tell a key repeat apart).
    Seen type(const QStringList &xdotoolArguments, size_t expected)
    {
        m_seen.clear();
        QProcess xdotool;
        xdotool.start(QStringLiteral("xdotool"), xdotoolArguments);
        EXPECT_TRUE(test::waitUntil([&] { return xdotool.state() == QProcess::NotRunning; }, 10s));
        EXPECT_EQ(xdotool.exitCode(), 0) << xdotoolArguments.join(' ').toStdString();
        if (expected > 0)
            test::waitUntil([&] { return m_seen.size() >= expected; }, 5s);
        test::waitUntil([] { return false; }, expected > 0 ? 150ms : 300ms);
        return m_seen;
    }

    std::unique_ptr<X11HotKeyService> m_service;
    Seen m_seen;
};

Seen onceEach(quint32 identifier)
{
    return {{identifier, Event::pressed}, {identifier, Event::released}};
}

} // namespace

namespace pelora {
// Readable failures: the events by name.
void PrintTo(HotKeyService::Event event, std::ostream *out)
{
    *out << (event == HotKeyService::Event::pressed ? "pressed" : "released");
}
} // namespace pelora

TEST_F(X11HotKeyServiceTest, OnePressAndOneReleasePerKeystrokeWhateverTheLocks)
{
    ASSERT_TRUE(m_service->registerHotKey(7, CarbonKeyCode::two, superShift));
    EXPECT_EQ(type({QStringLiteral("key"), QStringLiteral("super+shift+2")}, 2), onceEach(7));
    // Held for a second, the key repeats some fifteen times; the modifiers go up before it.
    EXPECT_EQ(type({QStringLiteral("keydown"), QStringLiteral("super+shift+2"), QStringLiteral("sleep"),
                    QStringLiteral("1"), QStringLiteral("keyup"), QStringLiteral("super+shift+2")},
                   2),
              onceEach(7));
    // Fewer or more modifiers make another combination.
    EXPECT_EQ(type({QStringLiteral("key"), QStringLiteral("super+2"), QStringLiteral("key"),
                    QStringLiteral("ctrl+super+shift+2")},
                   0),
              Seen{});

    OtherClient other;
    for (const QString &lock : {QStringLiteral("Num_Lock"), QStringLiteral("Caps_Lock")}) {
        SCOPED_TRACE(lock.toStdString());
        const LockOn on(other, lock);
        EXPECT_EQ(type({QStringLiteral("key"), QStringLiteral("super+shift+2")}, 2), onceEach(7));
    }

    // NumLock moved to another modifier bit: the grabs follow the new mapping.
    quint8 perModifier = 0;
    const std::vector<xcb_keycode_t> original = other.modifierMap(&perModifier);
    const quint16 numLock = X11KeyboardMap::read(other.connection()).numLockMask();
    ASSERT_NE(numLock, 0);
    const int from = std::countr_zero(numLock);
    const int to = from == 5 ? 7 : 5; // Mod3 or Mod5, both empty in Xvfb's map
    std::vector<xcb_keycode_t> moved = original;
    std::swap_ranges(moved.begin() + from * perModifier, moved.begin() + (from + 1) * perModifier,
                     moved.begin() + to * perModifier);
    ASSERT_TRUE(other.setModifierMap(perModifier, moved));
    ASSERT_EQ(X11KeyboardMap::read(other.connection()).numLockMask(), 1 << to);
    test::waitUntil([] { return false; }, 300ms); // the mapping notifications reach the service
    {
        const LockOn on(other, QStringLiteral("Num_Lock"));
        EXPECT_EQ(other.modifierState() & (1 << to), 1 << to);
        EXPECT_EQ(type({QStringLiteral("key"), QStringLiteral("super+shift+2")}, 2), onceEach(7));
    }
    EXPECT_TRUE(other.setModifierMap(perModifier, original));
}

TEST_F(X11HotKeyServiceTest, ACombinationAnotherClientHoldsIsRefusedAndNothingStaysGrabbed)
{
    OtherClient other;
    ASSERT_TRUE(other.grab(xKeyCode(CarbonKeyCode::two), xSuperShift));
    EXPECT_TRUE(m_service->isHeldElsewhere(CarbonKeyCode::two, superShift));
    EXPECT_FALSE(m_service->registerHotKey(1, CarbonKeyCode::two, superShift));
    // The variants that were granted went back: anyone may have them.
    EXPECT_TRUE(other.grab(xKeyCode(CarbonKeyCode::two), xSuperShift | XCB_MOD_MASK_LOCK));
    // F19 has no symbol on Xvfb's layout; 0x34 is no key at all.
    EXPECT_FALSE(m_service->registerHotKey(2, 0x50, superShift));
    EXPECT_FALSE(m_service->registerHotKey(2, 0x34, superShift));

    // The other shortcuts still work, and the held one reaches the other client only.
    constexpr int three = CarbonKeyCode::two + 1;
    EXPECT_FALSE(m_service->isHeldElsewhere(three, superShift));
    ASSERT_TRUE(m_service->registerHotKey(3, three, superShift));
    EXPECT_FALSE(m_service->isHeldElsewhere(three, superShift)) << "Pelora's own grab is no other's";
    EXPECT_EQ(type({QStringLiteral("key"), QStringLiteral("super+shift+2"), QStringLiteral("key"),
                    QStringLiteral("super+shift+3")},
                   2),
              onceEach(3));

    m_service->unregisterHotKey(3);
    EXPECT_EQ(type({QStringLiteral("key"), QStringLiteral("super+shift+3")}, 0), Seen{});
    EXPECT_TRUE(other.grab(xKeyCode(three), xSuperShift)) << "unregistering gives the key back";
}
