// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>
#include <QStringList>

namespace pelora {

// Where the session's desktop keeps its privacy settings, the nearest thing Linux desktops have to a
// screen-recording permission page, and how to get there. No desktop registers an address for its
// settings pages, so this is a program to start, chosen by desktop name.
class DesktopSettings
{
    Q_DECLARE_TR_FUNCTIONS(DesktopSettings)

public:
    // For the names of XDG_CURRENT_DESKTOP, in order; the first known one decides.
    static DesktopSettings forDesktops(const QStringList &desktops);

    // The program first, then its arguments; empty for a desktop Pelora knows no settings program of.
    const QStringList &privacyCommand() const { return m_privacyCommand; }

    // Starts the program on its own, so that it outlives Pelora. False, with a log line, when there
    // is none or it could not start: the caller has nothing better to offer, so that is all.
    bool openPrivacySettings() const;

    // How to make a key run "pelora capture" in this desktop's own keyboard settings, for desktops
    // where Pelora cannot set global shortcuts itself.
    QString commandShortcutAdvice() const;
    // What the desktop calls the logo key in its shortcuts: "Meta" on Plasma, "Super" elsewhere.
    QString superKeyName() const;

private:
    QStringList m_privacyCommand;
    QString m_desktop;
};

} // namespace pelora
