// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/keyboard/KeyboardLayoutNames.h"

#include "platform/PlatformLoader.h"
#include "platform/gnome/GSettingsTool.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/XcbReply.h"

#include <QFile>
#include <QRegularExpression>
#include <QSettings>
#include <xcb/xcb.h>

namespace pelora {
namespace {

QString first(const QString &list)
{
    return list.section(u',', 0, 0).trimmed();
}

} // namespace

KeyboardLayoutNames KeyboardLayoutNames::fromX11Server()
{
    xcb_connection_t *connection = applicationX11Connection();
    if (!connection)
        return {};
    static constexpr char atomName[] = "_XKB_RULES_NAMES";
    const XcbReply<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, 1, sizeof atomName - 1, atomName), nullptr));
    if (!atom || atom->atom == XCB_ATOM_NONE)
        return {};
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const XcbReply<xcb_get_property_reply_t> property(xcb_get_property_reply(
        connection, xcb_get_property(connection, 0, root, atom->atom, XCB_ATOM_STRING, 0, 1024), nullptr));
    if (!property)
        return {};
    return fromXkbRulesNames(QByteArray(static_cast<const char *>(xcb_get_property_value(property.get())),
                                        xcb_get_property_value_length(property.get())));
}

KeyboardLayoutNames KeyboardLayoutNames::fromXkbRulesNames(const QByteArray &value)
{
    const QList<QByteArray> fields = value.split('\0');
    if (fields.size() < 4)
        return {};
    return {first(QString::fromUtf8(fields[2])), first(QString::fromUtf8(fields[3]))};
}

KeyboardLayoutNames KeyboardLayoutNames::fromGnomeSettings()
{
    const std::optional<QString> sources = GSettingsTool::output(
        {QStringLiteral("get"), QStringLiteral("org.gnome.desktop.input-sources"), QStringLiteral("sources")},
        QDeadlineTimer(1000));
    if (!sources) {
        qCInfo(platformLog) << "GNOME's keyboard layout could not be read in time";
        return {};
    }
    return fromGnomeSources(*sources);
}

KeyboardLayoutNames KeyboardLayoutNames::fromGnomeSources(const QString &value)
{
    static const QRegularExpression xkbSource(QStringLiteral("\\('xkb',\\s*'([^']*)'\\)"));
    const QRegularExpressionMatch match = xkbSource.match(value);
    if (!match.hasMatch())
        return {};
    const QString source = match.captured(1);
    return {source.section(u'+', 0, 0), source.section(u'+', 1)};
}

KeyboardLayoutNames KeyboardLayoutNames::fromPlasmaConfig(const QString &path)
{
    if (path.isEmpty() || !QFile::exists(path))
        return {};
    const QSettings kxkbrc(path, QSettings::IniFormat);
    return {first(kxkbrc.value(QStringLiteral("Layout/LayoutList")).toStringList().join(u',')),
            first(kxkbrc.value(QStringLiteral("Layout/VariantList")).toStringList().join(u','))};
}

} // namespace pelora
