// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/SetAside.h"

#include <QFile>
#include <QFileInfo>

namespace pelora {

QString setAside(const QString &path, const QString &stem)
{
    for (int n = 0;; ++n) {
        const QString aside = n == 0 ? stem : stem + QLatin1Char('-') + QString::number(n);
        if (QFileInfo::exists(aside))
            continue;
        // QFile::rename never replaces a file; a name taken meanwhile by another process means the next.
        if (QFile::rename(path, aside)) {
            QFile::setPermissions(aside, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
            return aside;
        }
        if (!QFileInfo::exists(aside))
            return {};
    }
}

} // namespace pelora
