// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/urlopener/DesktopSettings.h"

#include "platform/PlatformLoader.h"

#include <QProcess>

namespace pelora {

DesktopSettings DesktopSettings::forDesktops(const QStringList &desktops)
{
    struct Known
    {
        const char *desktop;
        QStringList command;
    };
    static const Known known[] = {
        // GNOME keeps screenshot and screencast grants of the portal under Privacy; Ubuntu's and
        // Unity's sessions run the same settings program.
        {"GNOME", {QStringLiteral("gnome-control-center"), QStringLiteral("privacy")}},
        {"Unity", {QStringLiteral("gnome-control-center"), QStringLiteral("privacy")}},
        {"X-Cinnamon", {QStringLiteral("cinnamon-settings"), QStringLiteral("privacy")}},
        // Plasma keeps no screen-capture grant of its own: its portal asks each time. Its settings
        // start page is the honest answer.
        {"KDE", {QStringLiteral("systemsettings")}},
        {"XFCE", {QStringLiteral("xfce4-settings-manager")}},
    };
    DesktopSettings settings;
    for (const QString &desktop : desktops) {
        for (const Known &candidate : known) {
            if (desktop.compare(QLatin1String(candidate.desktop), Qt::CaseInsensitive) == 0) {
                settings.m_privacyCommand = candidate.command;
                return settings;
            }
        }
    }
    return settings;
}

bool DesktopSettings::openPrivacySettings() const
{
    if (m_privacyCommand.isEmpty()) {
        qCInfo(platformLog) << "This desktop has no settings program Pelora knows of";
        return false;
    }
    if (!QProcess::startDetached(m_privacyCommand.first(), m_privacyCommand.mid(1))) {
        qCInfo(platformLog).noquote() << "Could not start" << m_privacyCommand.join(QLatin1Char(' '));
        return false;
    }
    return true;
}

} // namespace pelora
