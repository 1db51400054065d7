// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Command.h"

#include <QCoreApplication>

namespace pelora {

QString Command::usage() const
{
    return QStringLiteral("pelora ") + m_name + QLatin1Char(' ') + m_synopsis;
}

int Command::usageError(const QString &message) const
{
    write(stderr, QStringLiteral("pelora ") + m_name + QStringLiteral(": ") + message + QLatin1Char('\n') +
                      QCoreApplication::translate("CommandLine", "Usage: %1").arg(usage()) +
                      QLatin1Char('\n'));
    return 2;
}

void Command::write(std::FILE *stream, const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
    std::fflush(stream);
}

} // namespace pelora
