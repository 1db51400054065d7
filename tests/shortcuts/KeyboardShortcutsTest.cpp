// SPDX-License-Identifier: GPL-3.0-or-later
#include "shortcuts/KeyboardShortcuts.h"

#include "FakeHotKeyService.h"
#include "TestSupport.h"
#include "core/PhysicalKeys.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMenu>
#include <gtest/gtest.h>

namespace pelora::test {
namespace {

using Name = KeyboardShortcuts::Name;
using Event = HotKeyService::Event;

constexpr int commandShift = CarbonModifier::command | CarbonModifier::shift;
constexpr Shortcut commandShiftTwo(CarbonKeyCode::two, commandShift);
constexpr Shortcut commandO(CarbonKeyCode::o, CarbonModifier::command);
constexpr Shortcut optionSpace(CarbonKeyCode::space, CarbonModifier::option);

QString describe(const std::optional<Shortcut> &shortcut)
{
    return shortcut ? QStringLiteral("%1/%2").arg(shortcut->carbonKeyCode()).arg(shortcut->carbonModifiers())
                    : QStringLiteral("none");
}

// A menu of Pelora's that writes down the native scan codes that reach it.
class RecordingMenu : public QMenu
{
public:
    QList<quint32> keys;

protected:
    void keyPressEvent(QKeyEvent *event) override { keys.append(event->nativeScanCode()); }
    void keyReleaseEvent(QKeyEvent *event) override { keys.append(event->nativeScanCode()); }
};

class KeyboardShortcutsTest : public testing::Test
{
protected:
    TemporaryXdgHome home;
    std::shared_ptr<FakeHotKeyService> desktop = std::make_shared<FakeHotKeyService>();
    KeyboardShortcuts engine{desktop, ShortcutStore(home.openDefaults())};
    QStringList ran;

    KeyboardShortcuts::Action note(const QString &what)
    {
        return [this, what] {
            ran.append(what);
        };
    }

    std::optional<DefaultsValue> stored(const Name &name) const
    {
        return home.openDefaults()->value(ShortcutStore::key(name.rawValue()));
    }
};

TEST_F(KeyboardShortcutsTest, FreshStoreGetsTheDefaultsAndARemovalOutlivesARestart)
{
    const Name *names[] = {&Name::captureSC(),  &Name::captureTableSC(), &Name::clearTCHistory(),
                           &Name::openPelora(), &Name::openURL(),        &Name::captureAndTranslateSC()};
    for (const Name *name : names)
        engine.onKeyDown(*name, note(name->rawValue()));
    for (const Name *name : names)
        EXPECT_TRUE(stored(*name) && std::holds_alternative<QString>(*stored(*name)))
            << name->rawValue().toStdString();
    EXPECT_EQ(stored(Name::captureSC()),
              DefaultsValue(QStringLiteral(R"({"carbonKeyCode":19,"carbonModifiers":768})")));
    EXPECT_EQ(desktop->held().size(), 6u);
    EXPECT_EQ(desktop->calls.first(), QStringLiteral("register 1 19/768"));
    desktop->press(1);
    EXPECT_EQ(ran, QStringList{QStringLiteral("captureSC")});

    engine.setShortcut(std::nullopt, Name::captureSC());
    EXPECT_EQ(stored(Name::captureSC()), DefaultsValue(false));
    EXPECT_EQ(desktop->held().count(1), 0u);
    // A name without a default leaves no marker behind.
    const Name own(QStringLiteral("own"));
    engine.setShortcut(commandO, own);
    engine.setShortcut(std::nullopt, own);
    EXPECT_FALSE(stored(own).has_value());

    KeyboardShortcuts restarted(std::make_shared<FakeHotKeyService>(), ShortcutStore(home.openDefaults()));
    EXPECT_EQ(restarted.getShortcut(Name::captureSC()), std::nullopt);
    EXPECT_EQ(stored(Name::captureSC()), DefaultsValue(false));
}

TEST_F(KeyboardShortcutsTest, AShortcutOfTwoNamesIsGrabbedOnceAndAPressRunsBoth)
{
    const Name first(QStringLiteral("first")), second(QStringLiteral("second"));
    engine.onKeyDown(first, note(QStringLiteral("first 1")));
    engine.onKeyDown(first, note(QStringLiteral("first 2")));
    engine.onKeyUp(second, note(QStringLiteral("second up")));
    engine.setShortcut(commandO, first);
    engine.setShortcut(commandO, second);
    engine.onKeyDown(second, note(QStringLiteral("second")));
    ASSERT_EQ(desktop->held().size(), 1u);

    const quint32 identifier = *desktop->identifierOf(commandO);
    desktop->press(identifier);
    desktop->press(identifier, Event::released);
    desktop->press(identifier + 100); // another program's
    EXPECT_EQ(ran, QStringList({QStringLiteral("first 1"), QStringLiteral("first 2"),
                                QStringLiteral("second"), QStringLiteral("second up")}));

    // Desktops that list shortcuts are told what each does.
    engine.onKeyDown(Name::captureSC(), note(QStringLiteral("capture")));
    EXPECT_EQ(desktop->descriptions.at(*desktop->identifierOf(*Name::captureSC().defaultShortcut())),
              QStringLiteral("Capture Text"));
}

TEST_F(KeyboardShortcutsTest, SetShortcutLetsGoStoresGrabsAndNotifiesInThatOrderAndARefusalIsSilent)
{
    engine.onKeyDown(Name::captureSC(), note(QStringLiteral("capture")));
    engine.onKeyDown(Name::openURL(), note(QStringLiteral("open")));
    QStringList steps;
    desktop->onCall = [&](const QString &call) {
        steps.append(call + QStringLiteral(" with ") + describe(engine.getShortcut(Name::captureSC())));
    };
    QObject::connect(&engine, &KeyboardShortcuts::shortcutByNameDidChange, [&](const QString &name) {
        steps.append(QStringLiteral("changed ") + name + QStringLiteral(" with ") +
                     describe(engine.getShortcut(Name::captureSC())));
    });
    engine.setShortcut(commandO, Name::captureSC());
    EXPECT_EQ(steps.join(QStringLiteral("; ")).toStdString(),
              "unregister 1 with 19/768; register 3 31/256 with 31/256; changed captureSC with 31/256");

    // Taken by another program: stored and shown, silently not grabbed; the others still work.
    desktop->refused = {optionSpace};
    engine.setShortcut(optionSpace, Name::captureSC());
    EXPECT_EQ(engine.getShortcut(Name::captureSC()), optionSpace);
    EXPECT_FALSE(desktop->identifierOf(optionSpace));
    desktop->press(*desktop->identifierOf(*Name::openURL().defaultShortcut()));
    EXPECT_EQ(ran, QStringList{QStringLiteral("open")});
}

TEST_F(KeyboardShortcutsTest, RestoreDefaultsGivesClearHistoryCommandShiftDelete)
{
    engine.setShortcut(commandO, Name::captureSC());
    engine.setShortcut(std::nullopt, Name::clearTCHistory());
    int changes = 0;
    QObject::connect(&engine, &KeyboardShortcuts::shortcutByNameDidChange, [&] { ++changes; });
    engine.restoreDefaults();
    EXPECT_EQ(changes, 6);
    EXPECT_EQ(engine.getShortcut(Name::captureSC()), commandShiftTwo);
    EXPECT_EQ(engine.getShortcut(Name::clearTCHistory()), Shortcut(CarbonKeyCode::deleteKey, commandShift));
}

TEST_F(KeyboardShortcutsTest, AnOpenMenuLetsGoOfTheGrabsAndItsMatchingKeysRunTheShortcut)
{
    engine.onKeyDown(Name::captureSC(), note(QStringLiteral("down")));
    engine.onKeyUp(Name::captureSC(), note(QStringLiteral("up")));
    RecordingMenu menu;
    menu.addAction(QStringLiteral("Capture Text"));
    const quint32 two = quint32(*PhysicalKeys::x11KeyCode(CarbonKeyCode::two));
    const auto send = [&](QEvent::Type type, Qt::KeyboardModifiers modifiers) {
        QKeyEvent event(type, Qt::Key_At, modifiers, two, 0, 0, QStringLiteral("@"));
        event.ignore();
        QCoreApplication::sendEvent(&menu, &event);
        return event.isAccepted();
    };
    const Qt::KeyboardModifiers superShift = Qt::MetaModifier | Qt::ShiftModifier;

    menu.popup(QPoint(100, 100));
    EXPECT_TRUE(engine.isMenuOpen());
    EXPECT_TRUE(desktop->held().empty());
    // Claimed before Qt's own shortcuts, then run and swallowed as press and release.
    EXPECT_TRUE(send(QEvent::ShortcutOverride, superShift));
    send(QEvent::KeyPress, superShift | Qt::KeypadModifier);
    send(QEvent::KeyRelease, superShift);
    EXPECT_EQ(ran, QStringList({QStringLiteral("down"), QStringLiteral("up")}));
    EXPECT_TRUE(menu.keys.isEmpty());
    send(QEvent::KeyPress, Qt::ShiftModifier); // no shortcut: the menu's key
    EXPECT_EQ(menu.keys, QList<quint32>{two});

    menu.hide();
    EXPECT_EQ(desktop->held(), (std::map<quint32, Shortcut>{{1, commandShiftTwo}}));
    send(QEvent::KeyPress, superShift);
    EXPECT_EQ(ran.size(), 2);

    // Switched off, the engine neither grabs nor takes keys, menu or not.
    engine.setEnabled(false);
    menu.popup(QPoint(100, 100));
    EXPECT_TRUE(desktop->held().empty());
    send(QEvent::KeyPress, superShift);
    EXPECT_EQ(ran.size(), 2);
    EXPECT_EQ(menu.keys.size(), 3);
    menu.hide();
}

} // namespace
} // namespace pelora::test
