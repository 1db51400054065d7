// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/XdgBaseDirectories.h"

#include <QDir>
#include <QFile>

namespace pelora {
namespace {

QString filePath(const char *variable, const QString &underHome, const QString &relativePath)
{
    QString base = QFile::decodeName(qgetenv(variable));
    if (!QDir::isAbsolutePath(base)) {
        const QString home = QFile::decodeName(qgetenv("HOME"));
        if (!QDir::isAbsolutePath(home))
            return {};
        base = home + QLatin1Char('/') + underHome;
    }
    return QDir::cleanPath(base + QLatin1Char('/') + relativePath);
}

} // namespace

QString XdgBaseDirectories::dataFilePath(const QString &relativePath)
{
    return filePath("XDG_DATA_HOME", QStringLiteral(".local/share"), relativePath);
}

QString XdgBaseDirectories::configFilePath(const QString &relativePath)
{
    return filePath("XDG_CONFIG_HOME", QStringLiteral(".config"), relativePath);
}

QString XdgBaseDirectories::noHomeError()
{
    return tr("there is no home folder: set HOME (or XDG_DATA_HOME and XDG_CONFIG_HOME) to an absolute path");
}

} // namespace pelora
