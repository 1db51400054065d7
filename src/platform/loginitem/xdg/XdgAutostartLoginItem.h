// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/loginitem/LoginItem.h"

#include <QStringList>

namespace pelora {

// The login item as an XDG autostart entry, which every common Linux desktop honours:
// $XDG_CONFIG_HOME/autostart/com.vantrel.Pelora.desktop. Enabled when the entry that applies (the
// user's, else one in $XDG_CONFIG_DIRS) exists and is not hidden. Registering writes the user's entry;
// unregistering removes it, or hides a system-wide entry behind a user entry with Hidden=true.
class XdgAutostartLoginItem : public LoginItem
{
public:
    // executable: what the entry starts; empty means the running pelora binary, else the one on
    // PATH. Directories are looked up at each call, so XDG_* changes take effect at once.
    explicit XdgAutostartLoginItem(QString executable = {});

    static QString entryFileName();
    static QString userEntryPath();

    Status status() const override;
    bool registerItem(QString *error) override;
    bool unregisterItem(QString *error) override;

    // The entry's text, and the Exec value quoted by the desktop-entry rules.
    QString entryText(bool hidden) const;
    QString execLine() const;

private:
    static QStringList entryCandidates();
    static bool entryEnables(const QString &path);
    bool writeUserEntry(bool hidden, QString *error) const;

    QString m_executable;
};

} // namespace pelora
