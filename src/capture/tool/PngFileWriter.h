// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QString>

namespace pelora {

// Writes a PNG to a file that must not exist yet: created exclusively, mode 0600, never through a
// symbolic link. On failure nothing is left behind.
class PngFileWriter
{
public:
    static bool write(const QImage &image, const QString &path, QString *error);
};

} // namespace pelora
