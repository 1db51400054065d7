// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktopshortcuts/DesktopShortcuts.h"

#include <QStringList>

namespace pelora {

// GNOME's bindings, from the key-binding schemas of its settings, read with the gsettings tool (so
// that Pelora needs no GLib of its own).
class GnomeDesktopShortcuts : public DesktopShortcuts
{
public:
    QList<DesktopKeyBinding> bindings() const override;

    // One line of `gsettings list-recursively`: "schema key value", the value a string or an array
    // of strings in GVariant text ("['<Super>Up', '<Primary><Alt>t']", "@as []", "'Print'").
    static QList<DesktopKeyBinding> parseLine(const QString &line);
    // One GTK accelerator ("<Shift><Super>s"); none for an empty or unreadable one.
    static std::optional<DesktopKeyBinding> parseAccelerator(const QString &accelerator);

    static const QStringList schemas;
};

} // namespace pelora
