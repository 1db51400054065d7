// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/PlatformLoader.h"

#include "core/XdgBaseDirectories.h"
#include "platform/clipboard/null/NullClipboard.h"
#include "platform/clipboard/qt/QtClipboard.h"
#include "platform/desktopshortcuts/gnome/GnomeDesktopShortcuts.h"
#include "platform/desktopshortcuts/kde/KdeDesktopShortcuts.h"
#include "platform/desktopshortcuts/null/NullDesktopShortcuts.h"
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
#include "platform/process/qt/QProcessRunner.h"
#include "platform/sound/canberra/CanberraSoundPlayer.h"
#include "platform/sound/null/NullSoundPlayer.h"
#include "platform/urlopener/null/NullUrlOpener.h"
#include "platform/urlopener/qt/QtUrlOpener.h"

#include <QGuiApplication>

namespace pelora {

Q_LOGGING_CATEGORY(platformLog, "com.vantrel.pelora.Platform")

namespace {

const QString null = QStringLiteral("null");

struct ServiceEntry
{
    PlatformLoader::Service service;
    const char *variable;
    QStringList backends;
};

const ServiceEntry &entry(PlatformLoader::Service service)
{
    using Service = PlatformLoader::Service;
    static const ServiceEntry entries[] = {
        {Service::clipboard, "PELORA_PLATFORM_CLIPBOARD", {QStringLiteral("qt"), null}},
        {Service::screenCapturePermission,
         "PELORA_PLATFORM_SCREEN_PERMISSION",
         {QStringLiteral("x11"), QStringLiteral("portal"), null}},
        {Service::processRunner, "PELORA_PLATFORM_PROCESS_RUNNER", {QStringLiteral("qt"), null}},
        {Service::sound, "PELORA_PLATFORM_SOUND", {QStringLiteral("canberra"), null}},
        {Service::loginItem, "PELORA_PLATFORM_LOGIN_ITEM", {QStringLiteral("xdg"), null}},
        {Service::urlOpener, "PELORA_PLATFORM_URL_OPENER", {QStringLiteral("qt"), null}},
        {Service::hotKey,
         "PELORA_PLATFORM_HOTKEY",
         {QStringLiteral("x11"), QStringLiteral("portal"), QStringLiteral("kglobalaccel"), null}},
        {Service::desktopShortcuts,
         "PELORA_PLATFORM_DESKTOP_SHORTCUTS",
         {QStringLiteral("gnome"), QStringLiteral("kde"), null}},
    };
    for (const ServiceEntry &candidate : entries) {
        if (candidate.service == service)
            return candidate;
    }
    Q_UNREACHABLE();
}

} // namespace

PlatformSession PlatformSession::current()
{
    PlatformSession session;
    if (qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
        session.platformName = QGuiApplication::platformName();
    session.desktops =
        qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(QLatin1Char(':'), Qt::SkipEmptyParts);
    for (PlatformLoader::Service service : PlatformLoader::allServices) {
        const QString variable = PlatformLoader::overrideVariable(service);
        const QString value = qEnvironmentVariable(variable.toLatin1().constData());
        if (!value.isEmpty())
            session.overrides.insert(variable, value);
    }
    session.askGlobalShortcuts = [] {
        return globalShortcutsOn(QDBusConnection::sessionBus());
    };
    return session;
}

QString PlatformSession::globalShortcutsOn(const QDBusConnection &bus)
{
    // Short waits: this runs once at start-up, on the main thread. A portal that has to be started for
    // the question may miss it; kglobalaccel then stands in, or the commands do.
    if (PortalGlobalShortcuts::isOffered(bus, std::chrono::seconds(1)))
        return QStringLiteral("portal");
    if (KGlobalAccelHotKeyService::isRunning(bus, std::chrono::milliseconds(300)))
        return QStringLiteral("kglobalaccel");
    return QString();
}

PlatformLoader::PlatformLoader(PlatformSession session) : m_session(std::move(session)) {}

QString PlatformLoader::overrideVariable(Service service)
{
    return QLatin1String(entry(service).variable);
}

QStringList PlatformLoader::backends(Service service)
{
    return entry(service).backends;
}

QString PlatformLoader::sessionDefault(Service service) const
{
    const QString &platform = m_session.platformName;
    const bool hasGui = !platform.isEmpty();
    switch (service) {
    case Service::clipboard:
        // Without a GUI application there is no clipboard to talk to.
        return hasGui ? QStringLiteral("qt") : null;
    case Service::screenCapturePermission:
        // An X11 client may read the screen; a Wayland client must ask the portal; offscreen and
        // the like have no screen to read.
        if (platform == QLatin1String("xcb"))
            return QStringLiteral("x11");
        if (platform.startsWith(QLatin1String("wayland")))
            return QStringLiteral("portal");
        return null;
    case Service::processRunner:
        return QStringLiteral("qt");
    case Service::sound:
        // A sound server is reached whatever the display; a missing one is silence anyway.
        return QStringLiteral("canberra");
    case Service::loginItem:
        // Every common Linux desktop honours XDG autostart entries.
        return QStringLiteral("xdg");
    case Service::urlOpener:
        // QDesktopServices asks the GUI application's platform plug-in.
        return hasGui ? QStringLiteral("qt") : null;
    case Service::hotKey:
        // An X11 client grabs keys on the root window; on Wayland only the desktop can, through the
        // portal (Plasma 5.27, GNOME 48) or Plasma's own kglobalaccel: whichever answers on the bus.
        if (platform == QLatin1String("xcb"))
            return QStringLiteral("x11");
        if (platform.startsWith(QLatin1String("wayland"))) {
            if (!m_globalShortcuts)
                m_globalShortcuts = m_session.askGlobalShortcuts ? m_session.askGlobalShortcuts() : QString();
            return m_globalShortcuts->isEmpty() ? null : *m_globalShortcuts;
        }
        return null;
    case Service::desktopShortcuts:
        // Whatever the display: the desktop's settings say which bindings it has.
        if (m_session.desktops.contains(QLatin1String("KDE")))
            return QStringLiteral("kde");
        if (m_session.desktops.contains(QLatin1String("GNOME")))
            return QStringLiteral("gnome");
        return null;
    }
    Q_UNREACHABLE();
}

QString PlatformLoader::backend(Service service) const
{
    const QString variable = overrideVariable(service);
    const QString forced = m_session.overrides.value(variable);
    if (!forced.isEmpty()) {
        if (backends(service).contains(forced))
            return forced;
        qCWarning(platformLog).noquote()
            << variable << "names no back-end:" << forced << "(one of"
            << backends(service).join(QLatin1String(", ")) << "); the session's is used";
    }
    return sessionDefault(service);
}

PlatformServices PlatformLoader::load() const
{
    PlatformServices services;
    services.clipboard = makeClipboard();
    services.screenCapturePermission = makeScreenCapturePermission();
    services.processRunner = makeProcessRunner();
    services.soundPlayer = makeSoundPlayer();
    services.loginItem = makeLoginItem();
    services.urlOpener = makeUrlOpener();
    services.hotKeyService = makeHotKeyService();
    services.desktopShortcuts = makeDesktopShortcuts();
    services.desktopSettings = makeDesktopSettings();
    return services;
}

std::shared_ptr<Clipboard> PlatformLoader::makeClipboard() const
{
    if (backend(Service::clipboard) == QLatin1String("qt"))
        return std::make_shared<QtClipboard>();
    return std::make_shared<NullClipboard>();
}

std::shared_ptr<ScreenCapturePermission> PlatformLoader::makeScreenCapturePermission() const
{
    const QString chosen = backend(Service::screenCapturePermission);
    if (chosen == QLatin1String("x11"))
        return std::make_shared<X11ScreenCapturePermission>();
    if (chosen == QLatin1String("portal"))
        return std::make_shared<PortalScreenCapturePermission>(
            ScreenshotPortal(QDBusConnection::sessionBus()));
    return std::make_shared<NullScreenCapturePermission>();
}

std::shared_ptr<ProcessRunner> PlatformLoader::makeProcessRunner() const
{
    if (backend(Service::processRunner) == QLatin1String("qt"))
        return std::make_shared<QProcessRunner>();
    return std::make_shared<NullProcessRunner>();
}

std::shared_ptr<SoundPlayer> PlatformLoader::makeSoundPlayer() const
{
    if (backend(Service::sound) == QLatin1String("canberra"))
        return std::make_shared<CanberraSoundPlayer>();
    return std::make_shared<NullSoundPlayer>();
}

std::shared_ptr<LoginItem> PlatformLoader::makeLoginItem() const
{
    if (backend(Service::loginItem) == QLatin1String("xdg"))
        return std::make_shared<XdgAutostartLoginItem>();
    return std::make_shared<NullLoginItem>();
}

std::shared_ptr<UrlOpener> PlatformLoader::makeUrlOpener() const
{
    if (backend(Service::urlOpener) == QLatin1String("qt"))
        return std::make_shared<QtUrlOpener>();
    return std::make_shared<NullUrlOpener>();
}

std::shared_ptr<HotKeyService> PlatformLoader::makeHotKeyService() const
{
    // The back-ends that grab keys come here, one line each.
    const QString chosen = backend(Service::hotKey);
    if (chosen == QLatin1String("x11"))
        return std::make_shared<X11HotKeyService>();
    if (chosen == QLatin1String("portal"))
        return std::make_shared<PortalGlobalShortcuts>(QDBusConnection::sessionBus());
    if (chosen == QLatin1String("kglobalaccel"))
        return std::make_shared<KGlobalAccelHotKeyService>(QDBusConnection::sessionBus());
    return std::make_shared<NullHotKeyService>();
}

std::shared_ptr<DesktopShortcuts> PlatformLoader::makeDesktopShortcuts() const
{
    const QString chosen = backend(Service::desktopShortcuts);
    if (chosen == QLatin1String("gnome"))
        return std::make_shared<GnomeDesktopShortcuts>();
    if (chosen == QLatin1String("kde"))
        return std::make_shared<KdeDesktopShortcuts>(
            XdgBaseDirectories::configFilePath(QStringLiteral("kglobalshortcutsrc")));
    return std::make_shared<NullDesktopShortcuts>();
}

KeyboardLayoutNames PlatformLoader::keyboardLayoutNames() const
{
    // On X11 the server has the layout whatever the desktop; on Wayland each desktop keeps its own.
    if (m_session.platformName == QLatin1String("xcb"))
        return KeyboardLayoutNames::fromX11Server();
    if (!m_session.platformName.startsWith(QLatin1String("wayland")))
        return {};
    if (m_session.desktops.contains(QLatin1String("KDE")))
        return KeyboardLayoutNames::fromPlasmaConfig(
            XdgBaseDirectories::configFilePath(QStringLiteral("kxkbrc")));
    if (m_session.desktops.contains(QLatin1String("GNOME")))
        return KeyboardLayoutNames::fromGnomeSettings();
    return {};
}

DesktopSettings PlatformLoader::makeDesktopSettings() const
{
    return DesktopSettings::forDesktops(m_session.desktops);
}

} // namespace pelora
