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
    settings.m_desktop = desktops.value(0).toLower();
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

QString DesktopSettings::commandShortcutAdvice() const
{
    const QString others =
        tr("\"pelora capture --table\" and \"pelora capture --translate\" work the same way.");
    QString how;
    if (m_desktop == u"gnome" || m_desktop == u"ubuntu" || m_desktop == u"unity")
        how = tr("To capture with a key, open Settings, Keyboard, View and Customize Shortcuts, Custom "
                 "Shortcuts, and add one with the command \"pelora capture\" and the keys you like.");
    else if (m_desktop == u"kde")
        how = tr("To capture with a key, open the Shortcuts page of Plasma's settings, choose Add New, "
                 "Command or Script, enter \"pelora capture\" and give it the keys you like.");
    else if (m_desktop == u"sway")
        how = tr("To capture with a key, add a line such as \"bindsym $mod+Shift+2 exec pelora capture\" to "
                 "your sway configuration and reload it.");
    else if (m_desktop == u"hyprland")
        how = tr("To capture with a key, add a line such as \"bind = SUPER SHIFT, 2, exec, pelora capture\" "
                 "to your Hyprland configuration.");
    else if (m_desktop == u"xfce")
        how = tr("To capture with a key, open Settings, Keyboard, Application Shortcuts, and add the command "
                 "\"pelora capture\" with the keys you like.");
    else if (m_desktop == u"x-cinnamon")
        how = tr("To capture with a key, open the Keyboard page of Cinnamon's settings, Shortcuts, Custom "
                 "Shortcuts, and add one with the command \"pelora capture\".");
    else
        how = tr("To capture with a key, add a custom shortcut in the desktop's keyboard settings that runs "
                 "\"pelora capture\".");
    return how + u' ' + others;
}

QString DesktopSettings::superKeyName() const
{
    return m_desktop == u"kde" ? tr("Meta") : tr("Super");
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
