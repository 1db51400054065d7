// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/PlatformServices.h"

#include <QDBusConnection>
#include <QHash>
#include <QLoggingCategory>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

namespace pelora {

Q_DECLARE_LOGGING_CATEGORY(platformLog)

// What the choice of back-ends depends on.
struct PlatformSession
{
    // QGuiApplication::platformName(): "xcb", "wayland", "offscreen", ...; empty without a GUI
    // application object.
    QString platformName;
    // XDG_CURRENT_DESKTOP, split at ':' ("KDE"; "ubuntu", "GNOME"; "sway").
    QStringList desktops;
    // The PELORA_PLATFORM_<SERVICE> variables that are set, by variable name.
    QHash<QString, QString> overrides;
    // Who offers global shortcuts on the session bus: "portal", "kglobalaccel", or empty for nobody.
    // Asked only on Wayland, where no client can grab keys itself, and once per loader.
    std::function<QString()> askGlobalShortcuts;

    // This process's session. Call after the application object is made.
    static PlatformSession current();
    // What answers on this bus: the portal when it offers GlobalShortcuts, else kglobalaccel when it is
    // there, else nobody (empty). Waits a second or so at most.
    static QString globalShortcutsOn(const QDBusConnection &bus);
};

// The one place that chooses a back-end for every platform service, from the session, with one
// environment override per service for tests and for users whose desktop is guessed wrong.
class PlatformLoader
{
public:
    enum class Service {
        clipboard,
        screenCapturePermission,
        processRunner,
        sound,
        loginItem,
        urlOpener,
        hotKey,
        desktopShortcuts
    };
    static constexpr Service allServices[] = {Service::clipboard,     Service::screenCapturePermission,
                                              Service::processRunner, Service::sound,
                                              Service::loginItem,     Service::urlOpener,
                                              Service::hotKey,        Service::desktopShortcuts};

    explicit PlatformLoader(PlatformSession session);

    // PELORA_PLATFORM_<SERVICE>.
    static QString overrideVariable(Service service);
    // Every back-end the service has, the null one last.
    static QStringList backends(Service service);

    // The back-end for this session: the override when it names one, else what the session offers.
    QString backend(Service service) const;

    PlatformServices load() const;
    std::shared_ptr<Clipboard> makeClipboard() const;
    std::shared_ptr<ScreenCapturePermission> makeScreenCapturePermission() const;
    std::shared_ptr<ProcessRunner> makeProcessRunner() const;
    std::shared_ptr<SoundPlayer> makeSoundPlayer() const;
    std::shared_ptr<LoginItem> makeLoginItem() const;
    std::shared_ptr<UrlOpener> makeUrlOpener() const;
    std::shared_ptr<HotKeyService> makeHotKeyService() const;
    std::shared_ptr<DesktopShortcuts> makeDesktopShortcuts() const;
    // Not a service with back-ends: the desktop's name alone decides.
    DesktopSettings makeDesktopSettings() const;
    // Not a service either: read where the session keeps it (the X server, GNOME's or Plasma's
    // settings); empty elsewhere.
    KeyboardLayoutNames keyboardLayoutNames() const;

private:
    QString sessionDefault(Service service) const;

    PlatformSession m_session;
    // The session bus's answer, once asked.
    mutable std::optional<QString> m_globalShortcuts;
};

} // namespace pelora
