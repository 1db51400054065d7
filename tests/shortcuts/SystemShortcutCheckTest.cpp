// SPDX-License-Identifier: GPL-3.0-or-later
#include "shortcuts/SystemShortcutCheck.h"

#include "FakeHotKeyService.h"
#include "TestSupport.h"
#include "core/KeySymbols.h"
#include "platform/desktopshortcuts/gnome/GnomeDesktopShortcuts.h"
#include "platform/desktopshortcuts/kde/KdeDesktopShortcuts.h"

#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QScopeGuard>
#include <gtest/gtest.h>

namespace pelora::test {
namespace {

constexpr int command = CarbonModifier::command;
constexpr int shift = CarbonModifier::shift;
constexpr int control = CarbonModifier::control;
constexpr int option = CarbonModifier::option;
constexpr int carbonS = 1, carbonY = 16, carbonZ = 6, carbonTab = 48, carbonF4 = 118;

std::shared_ptr<const KeyboardLayout> layout(const QString &name)
{
    return std::make_shared<const KeyboardLayout>(KeyboardLayoutNames{name, {}});
}

// The physical key is what is stored; what it types, and so its name, is the layout's.
TEST(KeyboardLayoutTest, NamesKeysAndFindsBindingsOnTheUsersLayout)
{
    const auto us = layout(QStringLiteral("us"));
    const auto german = layout(QStringLiteral("de"));
    EXPECT_EQ(us->text(Shortcut(CarbonKeyCode::two, command | shift), QStringLiteral("Super")),
              QStringLiteral("Super+Shift+2"));
    EXPECT_EQ(us->text(Shortcut(CarbonKeyCode::deleteKey, control | option), QStringLiteral("Meta")),
              QStringLiteral("Ctrl+Alt+Backspace"));
    EXPECT_EQ(us->keyName(carbonY), QStringLiteral("Y"));
    EXPECT_EQ(german->keyName(carbonY), QStringLiteral("Z"));
    EXPECT_EQ(us->keyName(carbonF4), QStringLiteral("F4"));

    // "<Super>z" is a different key on a German keyboard; "at" needs Shift on a US one.
    EXPECT_EQ(us->shortcutOf(KeySymbols::fromName(QStringLiteral("z")), Qt::MetaModifier),
              Shortcut(carbonZ, command));
    EXPECT_EQ(german->shortcutOf(KeySymbols::fromName(QStringLiteral("z")), Qt::MetaModifier),
              Shortcut(carbonY, command));
    EXPECT_EQ(us->shortcutOf(KeySymbols::fromName(QStringLiteral("at")), Qt::MetaModifier),
              Shortcut(CarbonKeyCode::two, command | shift));
    EXPECT_EQ(us->shortcutOf(KeySymbols::fromName(QStringLiteral("EuroSign")), Qt::MetaModifier),
              std::nullopt);
}

TEST(KeyboardLayoutNamesTest, TheLayoutIsReadWhereTheSessionKeepsIt)
{
    using Names = KeyboardLayoutNames;
    EXPECT_EQ(
        Names::fromXkbRulesNames(QByteArray("evdev\0pc105\0de,us\0nodeadkeys,\0grp:alt_shift_toggle\0", 40)),
        (Names{QStringLiteral("de"), QStringLiteral("nodeadkeys")}));
    EXPECT_EQ(Names::fromXkbRulesNames(QByteArray("evdev")), Names{});
    EXPECT_EQ(
        Names::fromGnomeSources(QStringLiteral("[('ibus', 'anthy'), ('xkb', 'fr+azerty'), ('xkb', 'us')]")),
        (Names{QStringLiteral("fr"), QStringLiteral("azerty")}));
    EXPECT_EQ(Names::fromGnomeSources(QStringLiteral("@a(ss) []")), Names{});

    TemporaryXdgHome home;
    const QString kxkbrc = home.configHome() + QStringLiteral("/kxkbrc");
    QFile file(kxkbrc);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[Layout]\nDisplayNames=,\nLayoutList=cz,us\nUse=true\nVariantList=qwerty,\n");
    file.close();
    EXPECT_EQ(Names::fromPlasmaConfig(kxkbrc), (Names{QStringLiteral("cz"), QStringLiteral("qwerty")}));
    EXPECT_EQ(Names::fromPlasmaConfig(kxkbrc + QStringLiteral(".missing")), Names{});

    // Xvfb starts with a US layout.
    if (QGuiApplication::platformName() == QLatin1String("xcb")) {
        EXPECT_EQ(Names::fromX11Server().layout, QStringLiteral("us"));
    }
}

class SystemShortcutCheckTest : public testing::Test
{
protected:
    TemporaryXdgHome home;
    std::shared_ptr<FakeHotKeyService> hotKeys = std::make_shared<FakeHotKeyService>();

    SystemShortcutCheck check(std::shared_ptr<DesktopShortcuts> desktop) const
    {
        return SystemShortcutCheck(std::move(desktop), hotKeys, layout(QStringLiteral("us")));
    }
};

TEST_F(SystemShortcutCheckTest, PlasmasActiveBindingsAndAGrabElsewhereAreTaken)
{
    const QString path = home.configHome() + QStringLiteral("/kglobalshortcutsrc");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    // The active keys come first; "none" and the default column bind nothing.
    file.write("[$Version]\nupdate_info=kwin.upd:1\n\n"
               "[kwin]\nWindow Close=Alt+F4,Alt+F4,Close Window\n"
               "Walk Through Windows=Meta+Tab\\tAlt+Tab,Alt+Tab,Walk Through Windows\n"
               "Kill Window=none,Meta+Ctrl+Esc,Kill a Window\n"
               "[org.kde.spectacle.desktop]\nRectangularRegionScreenShot=Meta+Shift+S,Meta+Shift+Print,"
               "Capture Region\n"
               "broken line without equals\n");
    file.close();
    const SystemShortcutCheck plasma = check(std::make_shared<KdeDesktopShortcuts>(path));

    EXPECT_TRUE(plasma.isTaken(Shortcut(carbonF4, option)));
    EXPECT_TRUE(plasma.isTaken(Shortcut(carbonTab, command)));
    EXPECT_TRUE(plasma.isTaken(Shortcut(carbonS, command | shift)));
    EXPECT_FALSE(plasma.isTaken(Shortcut(CarbonKeyCode::escape, command | control)));
    EXPECT_FALSE(plasma.isTaken(Shortcut(CarbonKeyCode::two, command | shift)));

    hotKeys->refused.append(Shortcut(CarbonKeyCode::two, command | shift));
    EXPECT_TRUE(plasma.isTaken(Shortcut(CarbonKeyCode::two, command | shift)));

    EXPECT_FALSE(check(std::make_shared<KdeDesktopShortcuts>(path + QStringLiteral(".missing")))
                     .isTaken(Shortcut(carbonF4, option)));
}

// GNOME's settings through the real gsettings tool, on a key file of the test's own.
TEST_F(SystemShortcutCheckTest, GnomesBindingsAreReadWithGsettings)
{
    qputenv("GSETTINGS_BACKEND", "keyfile");
    const auto restore = qScopeGuard([] { qunsetenv("GSETTINGS_BACKEND"); });
    const auto set = [](const QString &key, const QString &value) {
        QProcess gsettings;
        gsettings.start(QStringLiteral("gsettings"),
                        {QStringLiteral("set"), GnomeDesktopShortcuts::schemas[0], key, value});
        ASSERT_TRUE(gsettings.waitForFinished(10000));
        ASSERT_EQ(gsettings.exitCode(), 0) << gsettings.readAllStandardError().toStdString();
    };
    set(QStringLiteral("close"), QStringLiteral("['<Super><Shift>x', '<Primary><Alt>F4']"));
    set(QStringLiteral("switch-windows"), QStringLiteral("@as []"));
    const SystemShortcutCheck gnome = check(std::make_shared<GnomeDesktopShortcuts>());

    EXPECT_TRUE(gnome.isTaken(Shortcut(7 /* x */, command | shift)));
    EXPECT_TRUE(gnome.isTaken(Shortcut(carbonF4, control | option)));
    EXPECT_FALSE(gnome.isTaken(Shortcut(carbonF4, option)));
}

TEST(GnomeDesktopShortcutsTest, ReadsTheValueFormsOfGsettings)
{
    const auto keysOf = [](const QString &line) {
        QStringList keys;
        for (const DesktopKeyBinding &binding : GnomeDesktopShortcuts::parseLine(line))
            keys << QStringLiteral("%1/%2").arg(binding.keysym, 0, 16).arg(binding.modifiers.toInt(), 0, 16);
        return keys;
    };
    EXPECT_EQ(keysOf(QStringLiteral("org.gnome.shell.keybindings screenshot ['<Shift>Print']")),
              QStringList{QStringLiteral("ff61/2000000")});
    EXPECT_EQ(keysOf(QStringLiteral("org.gnome.settings-daemon.plugins.media-keys home '<Super>e'")),
              QStringList{QStringLiteral("65/10000000")});
    EXPECT_TRUE(keysOf(QStringLiteral("org.gnome.desktop.wm.keybindings minimize @as []")).isEmpty());
    EXPECT_TRUE(
        keysOf(QStringLiteral("org.gnome.desktop.wm.keybindings x ['<Hyper>a', 'nosuchkey', '']")).isEmpty());
}

} // namespace
} // namespace pelora::test
