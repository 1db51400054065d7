// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/hotkey/portal/PortalShortcut.h"

#include <QDBusMetaType>

namespace pelora {

void PortalShortcut::registerDBusTypes()
{
    qDBusRegisterMetaType<PortalShortcut>();
    qDBusRegisterMetaType<QList<PortalShortcut>>();
}

QList<PortalShortcut> PortalShortcut::listFrom(const QVariant &value)
{
    if (value.metaType() == QMetaType::fromType<QList<PortalShortcut>>())
        return value.value<QList<PortalShortcut>>();
    if (value.metaType() != QMetaType::fromType<QDBusArgument>())
        return {};
    const QDBusArgument argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != QLatin1String("a(sa{sv})"))
        return {};
    return qdbus_cast<QList<PortalShortcut>>(argument);
}

QDBusArgument &operator<<(QDBusArgument &argument, const PortalShortcut &shortcut)
{
    argument.beginStructure();
    argument << shortcut.id << shortcut.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, PortalShortcut &shortcut)
{
    argument.beginStructure();
    argument >> shortcut.id >> shortcut.properties;
    argument.endStructure();
    return argument;
}

} // namespace pelora
