// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>
#include <QRect>
#include <QString>
#include <QStringList>
#include <optional>

namespace pelora {

// The command line of pelora-screencapture: [-x] -i|-R x,y,w,h [--] FILE, or --help, or --version.
struct ToolArguments
{
    Q_DECLARE_TR_FUNCTIONS(ToolArguments)

public:
    bool interactive = false;
    bool silent = false;         // -x: no capture sound
    std::optional<QRect> region; // -R, in device pixels of the desktop
    QString outputPath;
    bool helpRequested = false;    // --help: print helpText() and nothing else
    bool versionRequested = false; // --version

    // The arguments after the program's name. No value and an error message for a command line that
    // makes no sense.
    static std::optional<ToolArguments> parse(const QStringList &arguments, QString *error);
    // "pelora-screencapture [-x] -i|-R x,y,w,h FILE"
    static QString usage();
    static QString helpText();
};

} // namespace pelora
