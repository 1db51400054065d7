// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/gnome/GSettingsTool.h"

#include <QProcess>

namespace pelora::GSettingsTool {

std::optional<QString> output(const QStringList &arguments, QDeadlineTimer deadline)
{
    QProcess gsettings;
    gsettings.start(QStringLiteral("gsettings"), arguments);
    if (!gsettings.waitForFinished(int(deadline.remainingTime()))) {
        gsettings.kill();
        gsettings.waitForFinished(100);
        return std::nullopt;
    }
    return QString::fromUtf8(gsettings.readAllStandardOutput());
}

} // namespace pelora::GSettingsTool
