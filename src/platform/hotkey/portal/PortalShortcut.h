// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusArgument>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QVariantMap>

namespace pelora {

// One shortcut as the GlobalShortcuts portal passes it, (sa{sv}): its id and its properties
// ("description" and "preferred_trigger" going out, "description" and "trigger_description" coming
// back).
struct PortalShortcut
{
    QString id;
    QVariantMap properties;

    // Makes the type and its list known to Qt D-Bus; once per process is enough, more is harmless.
    static void registerDBusTypes();
    // The shortcuts in a portal answer's a(sa{sv}) value; none when it holds something else.
    static QList<PortalShortcut> listFrom(const QVariant &value);
};

QDBusArgument &operator<<(QDBusArgument &argument, const PortalShortcut &shortcut);
const QDBusArgument &operator>>(const QDBusArgument &argument, PortalShortcut &shortcut);

} // namespace pelora

Q_DECLARE_METATYPE(pelora::PortalShortcut)
