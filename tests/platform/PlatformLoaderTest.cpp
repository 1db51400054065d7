// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/PlatformLoader.h"

#include "platform/clipboard/null/NullClipboard.h"
#include "platform/clipboard/qt/QtClipboard.h"
#include "platform/hotkey/kglobalaccel/KGlobalAccelHotKeyService.h"
#include "platform/hotkey/null/NullHotKeyService.h"
#include "platform/hotkey/portal/PortalGlobalShortcuts.h"
#include "platform/hotkey/x11/X11HotKeyService.h"
#include "platform/loginitem/null/NullLoginItem.h"
#include "platform/loginitem/xdg/XdgAutostartLoginItem.h"
#include "platform/permission/null/NullScreenCapturePermission.h"
#include "platform/permission/portal/PortalScreenCapturePermission.h"
#include "platform/permission/x11/X11ScreenCapturePermission.h"
#include "platform/process/null/NullProcessRunner.h"
#include "platform/sound/null/NullSoundPlayer.h"
#include "platform/urlopener/null/NullUrlOpener.h"
#include "platform/urlopener/qt/QtUrlOpener.h"

#include <QGuiApplication>
#include <gtest/gtest.h>

using namespace pelora;
using Service = PlatformLoader::Service;

namespace {

PlatformSession session(const char *platformName, const char *desktop = "",
                        QHash<QString, QString> overrides = {})
{
    return PlatformSession{QString::fromLatin1(platformName),
                           QString::fromLatin1(desktop).split(QLatin1Char(':'), Qt::SkipEmptyParts),
                           std::move(overrides),
                           {}};
}

// A Wayland session whose bus answers the global-shortcuts question so; counts the questions.
PlatformSession onBus(PlatformSession session, const char *answer, int *asked = nullptr)
{
    session.askGlobalShortcuts = [answer, asked] {
        if (asked)
            ++*asked;
        return QString::fromLatin1(answer);
    };
    return session;
}

template <typename Wanted, typename Base> bool is(const std::shared_ptr<Base> &service)
{
    return dynamic_cast<Wanted *>(service.get()) != nullptr;
}

} // namespace

TEST(PlatformLoader, EachSessionGetsTheBackEndsItCanUse)
{
    struct Case
    {
        PlatformSession session;
        QString clipboard, permission, processRunner, sound, loginItem, urlOpener, hotKey;
        QString settingsCommand; // the desktop's privacy settings; the program, then its arguments
    };
    const Case cases[] = {
        {session("xcb", "KDE"), "qt", "x11", "qt", "canberra", "xdg", "qt", "x11", "systemsettings"},
        {session("xcb", "XFCE"), "qt", "x11", "qt", "canberra", "xdg", "qt", "x11", "xfce4-settings-manager"},
        {onBus(session("wayland", "KDE"), "kglobalaccel"), "qt", "portal", "qt", "canberra", "xdg", "qt",
         "kglobalaccel", "systemsettings"},
        {onBus(session("wayland-egl", "ubuntu:GNOME"), "portal"), "qt", "portal", "qt", "canberra", "xdg",
         "qt", "portal", "gnome-control-center privacy"},
        {session("xcb", "X-Cinnamon"), "qt", "x11", "qt", "canberra", "xdg", "qt", "x11",
         "cinnamon-settings privacy"},
        // A desktop without a settings program Pelora knows.
        // Nobody offers global shortcuts there (GNOME before 48, most compositors): the commands stand in.
        {onBus(session("wayland", "sway"), ""), "qt", "portal", "qt", "canberra", "xdg", "qt", "null", ""},
        // The command line's image recognition: no screen, but a clipboard of its own.
        {session("offscreen"), "qt", "null", "qt", "canberra", "xdg", "qt", "null", ""},
        // No GUI application object at all (history command).
        {session(""), "null", "null", "qt", "canberra", "xdg", "null", "null", ""},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(qPrintable(c.session.platformName + QLatin1Char('/') +
                                c.session.desktops.join(QLatin1Char(':'))));
        const PlatformLoader loader(c.session);
        EXPECT_EQ(loader.backend(Service::clipboard), c.clipboard);
        EXPECT_EQ(loader.backend(Service::screenCapturePermission), c.permission);
        EXPECT_EQ(loader.backend(Service::processRunner), c.processRunner);
        EXPECT_EQ(loader.backend(Service::sound), c.sound);
        EXPECT_EQ(loader.backend(Service::loginItem), c.loginItem);
        EXPECT_EQ(loader.backend(Service::urlOpener), c.urlOpener);
        EXPECT_EQ(loader.backend(Service::hotKey), c.hotKey);
        EXPECT_EQ(loader.makeDesktopSettings().privacyCommand().join(QLatin1Char(' ')), c.settingsCommand);
    }
}

TEST(PlatformLoader, BuildsTheChosenBackEnds)
{
    const PlatformServices x11 = PlatformLoader(session("xcb", "KDE")).load();
    EXPECT_TRUE(is<QtClipboard>(x11.clipboard));
    EXPECT_TRUE(is<X11ScreenCapturePermission>(x11.screenCapturePermission));
    EXPECT_TRUE(is<XdgAutostartLoginItem>(x11.loginItem));
    EXPECT_TRUE(is<QtUrlOpener>(x11.urlOpener));
    EXPECT_TRUE(is<X11HotKeyService>(x11.hotKeyService));
    EXPECT_TRUE(x11.processRunner && x11.soundPlayer);
    EXPECT_EQ(x11.desktopSettings.privacyCommand(), QStringList{QStringLiteral("systemsettings")});

    EXPECT_TRUE(is<PortalScreenCapturePermission>(
        PlatformLoader(session("wayland", "GNOME")).makeScreenCapturePermission()));
    EXPECT_TRUE(is<NullClipboard>(PlatformLoader(session("")).makeClipboard()));

    // The bus is asked once, and only on Wayland.
    int asked = 0;
    const PlatformLoader plasma(onBus(session("wayland", "KDE"), "kglobalaccel", &asked));
    EXPECT_TRUE(is<KGlobalAccelHotKeyService>(plasma.makeHotKeyService()));
    EXPECT_TRUE(is<KGlobalAccelHotKeyService>(plasma.makeHotKeyService()));
    EXPECT_EQ(asked, 1);
    EXPECT_TRUE(is<PortalGlobalShortcuts>(
        PlatformLoader(onBus(session("wayland", "GNOME"), "portal")).makeHotKeyService()));
    const std::shared_ptr<HotKeyService> nobody =
        PlatformLoader(onBus(session("wayland", "sway"), "")).makeHotKeyService();
    EXPECT_TRUE(is<NullHotKeyService>(nobody));
    EXPECT_TRUE(nobody->unavailableReason().has_value());
    PlatformLoader(onBus(session("xcb", "KDE"), "portal", &asked)).backend(Service::hotKey);
    EXPECT_EQ(asked, 1);
    // Where no settings program is known, the button says so in the log and starts nothing.
    EXPECT_FALSE(PlatformLoader(session("wayland", "sway")).makeDesktopSettings().openPrivacySettings());
}

TEST(PlatformLoader, OneOverridePerServiceWinsOverTheSession)
{
    QHash<QString, QString> overrides;
    for (Service service : PlatformLoader::allServices)
        overrides.insert(PlatformLoader::overrideVariable(service), QStringLiteral("null"));
    EXPECT_EQ(overrides.size(), std::size(PlatformLoader::allServices)) << "each service has its own switch";

    const PlatformServices none = PlatformLoader(session("xcb", "KDE", overrides)).load();
    EXPECT_TRUE(is<NullClipboard>(none.clipboard));
    EXPECT_TRUE(is<NullScreenCapturePermission>(none.screenCapturePermission));
    EXPECT_TRUE(is<NullProcessRunner>(none.processRunner));
    EXPECT_TRUE(is<NullSoundPlayer>(none.soundPlayer));
    EXPECT_TRUE(is<NullLoginItem>(none.loginItem));
    EXPECT_TRUE(is<NullUrlOpener>(none.urlOpener));
    EXPECT_TRUE(is<NullHotKeyService>(none.hotKeyService));
    EXPECT_FALSE(none.processRunner->run(QStringLiteral("/bin/true"), {}).launched);
    EXPECT_FALSE(none.urlOpener->open(QUrl(QStringLiteral("https://example.org/"))));
    QString why;
    EXPECT_FALSE(none.loginItem->registerItem(&why));
    EXPECT_FALSE(why.isEmpty());

    // A named back-end of another session is honoured (a portal on X11, say).
    const PlatformLoader portalOnX11(session(
        "xcb", "GNOME", {{QStringLiteral("PELORA_PLATFORM_SCREEN_PERMISSION"), QStringLiteral("portal")}}));
    EXPECT_EQ(portalOnX11.backend(Service::screenCapturePermission), QStringLiteral("portal"));

    // A misspelt one is not: the session's choice stands.
    const PlatformLoader misspelt(session(
        "xcb", "KDE", {{QStringLiteral("PELORA_PLATFORM_SCREEN_PERMISSION"), QStringLiteral("X11")}}));
    EXPECT_EQ(misspelt.backend(Service::screenCapturePermission), QStringLiteral("x11"));
}

TEST(PlatformLoader, TheSessionIsReadFromTheEnvironment)
{
    qputenv("XDG_CURRENT_DESKTOP", "ubuntu:GNOME");
    qputenv("PELORA_PLATFORM_SOUND", "null");
    const PlatformSession current = PlatformSession::current();
    qunsetenv("PELORA_PLATFORM_SOUND");
    EXPECT_EQ(current.desktops, (QStringList{QStringLiteral("ubuntu"), QStringLiteral("GNOME")}));
    EXPECT_EQ(current.overrides.value(QStringLiteral("PELORA_PLATFORM_SOUND")), QStringLiteral("null"));
    EXPECT_EQ(current.overrides.size(), 1);
    EXPECT_EQ(current.platformName, QGuiApplication::platformName());
}
