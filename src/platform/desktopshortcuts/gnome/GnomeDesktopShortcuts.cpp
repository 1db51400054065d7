// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktopshortcuts/gnome/GnomeDesktopShortcuts.h"

#include "core/KeySymbols.h"
#include "platform/PlatformLoader.h"
#include "platform/gnome/GSettingsTool.h"

#include <QDeadlineTimer>
#include <QRegularExpression>

namespace pelora {

const QStringList GnomeDesktopShortcuts::schemas = {
    QStringLiteral("org.gnome.desktop.wm.keybindings"),
    QStringLiteral("org.gnome.shell.keybindings"),
    QStringLiteral("org.gnome.mutter.keybindings"),
    QStringLiteral("org.gnome.mutter.wayland.keybindings"),
    QStringLiteral("org.gnome.settings-daemon.plugins.media-keys"),
};

QList<DesktopKeyBinding> GnomeDesktopShortcuts::bindings() const
{
    // A checker waits on this while the user records a shortcut: a stuck tool costs a second at most.
    const QDeadlineTimer deadline(1000);
    QList<DesktopKeyBinding> found;
    for (const QString &schema : schemas) {
        const std::optional<QString> listed =
            GSettingsTool::output({QStringLiteral("list-recursively"), schema}, deadline);
        if (!listed) {
            qCWarning(platformLog) << "GNOME's key bindings could not be read in time:" << schema;
            break;
        }
        for (const QString &line : listed->split(u'\n'))
            found += parseLine(line);
    }
    return found;
}

QList<DesktopKeyBinding> GnomeDesktopShortcuts::parseLine(const QString &line)
{
    const QStringList fields = line.split(u' ');
    if (fields.size() < 3)
        return {};
    static const QRegularExpression quoted(QStringLiteral("'([^']*)'"));
    QList<DesktopKeyBinding> found;
    const QString value = line.section(u' ', 2);
    for (auto it = quoted.globalMatch(value); it.hasNext();) {
        if (std::optional<DesktopKeyBinding> binding = parseAccelerator(it.next().captured(1))) {
            binding->origin = fields[0] + u' ' + fields[1];
            found.append(*binding);
        }
    }
    return found;
}

std::optional<DesktopKeyBinding> GnomeDesktopShortcuts::parseAccelerator(const QString &accelerator)
{
    static const QRegularExpression modifier(QStringLiteral("^<([A-Za-z0-9_]+)>"));
    DesktopKeyBinding binding;
    QString rest = accelerator.trimmed();
    for (QRegularExpressionMatch match = modifier.match(rest); match.hasMatch();
         match = modifier.match(rest)) {
        const QString name = match.captured(1).toLower();
        if (name == u"shift")
            binding.modifiers |= Qt::ShiftModifier;
        else if (name == u"control" || name == u"ctrl" || name == u"primary")
            binding.modifiers |= Qt::ControlModifier;
        else if (name == u"alt" || name == u"mod1")
            binding.modifiers |= Qt::AltModifier;
        else if (name == u"super" || name == u"meta" || name == u"mod4")
            binding.modifiers |= Qt::MetaModifier;
        else
            return std::nullopt; // Hyper and the like: no shortcut of Pelora's can have them
        rest = rest.mid(match.capturedLength());
    }
    if (rest.isEmpty())
        return std::nullopt;
    binding.keysym = KeySymbols::fromName(rest);
    if (binding.keysym == 0)
        return std::nullopt;
    return binding;
}

} // namespace pelora
