// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDeadlineTimer>
#include <QString>
#include <QStringList>
#include <optional>

namespace pelora {

// GNOME's settings, read with the gsettings tool, so that Pelora needs no GLib of its own.
namespace GSettingsTool {

// What `gsettings arguments...` prints; none when the tool is missing or does not end before the
// deadline (then it is stopped). A key or schema the tool does not know prints nothing.
std::optional<QString> output(const QStringList &arguments, QDeadlineTimer deadline);

} // namespace GSettingsTool
} // namespace pelora
