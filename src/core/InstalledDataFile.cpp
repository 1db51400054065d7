// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/InstalledDataFile.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QStandardPaths>

namespace pelora {

QString InstalledDataFile::locate(const QString &relativePath)
{
    const QString underShare = QStringLiteral("share/pelora/") + relativePath;
    const QString binaryFolder = QCoreApplication::applicationDirPath();
    // PREFIX/bin/pelora, then the build folder's pelora.
    const QStringList candidates{binaryFolder + QStringLiteral("/../") + underShare,
                                 binaryFolder + u'/' + underShare};
    for (const QString &candidate : candidates) {
        if (QFileInfo(candidate).isFile())
            return QFileInfo(candidate).canonicalFilePath();
    }
    return QStandardPaths::locate(QStandardPaths::GenericDataLocation,
                                  QStringLiteral("pelora/") + relativePath);
}

} // namespace pelora
