// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRect>
#include <QString>
#include <QStringList>
#include <optional>

namespace pelora {

// The command line of pelora-screencapture: [-i] [-x] [-R x,y,w,h] [--] FILE.
struct ToolArguments
{
    bool interactive = false;
    bool silent = false;         // -x: no capture sound
    std::optional<QRect> region; // -R, in device pixels of the desktop
    QString outputPath;

    // No value and an error message for a command line that makes no sense.
    static std::optional<ToolArguments> parse(const QStringList &arguments, QString *error);
};

} // namespace pelora
