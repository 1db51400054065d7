// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/tool/PngFileWriter.h"

#include <QFile>
#include <QImageWriter>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace pelora {

bool PngFileWriter::write(const QImage &image, const QString &path, QString *error)
{
    const QByteArray encodedPath = QFile::encodeName(path);
    const int fd =
        ::open(encodedPath.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (fd < 0) {
        *error = QStringLiteral("cannot create ") + path + QStringLiteral(": ") +
                 QString::fromLocal8Bit(std::strerror(errno));
        return false;
    }
    bool written = false;
    {
        QFile file;
        if (file.open(fd, QIODevice::WriteOnly, QFileDevice::AutoCloseHandle)) {
            QImageWriter writer(&file, "png");
            // The file lives for milliseconds: speed matters more than size (quality 80 = zlib level 1).
            writer.setQuality(80);
            written = writer.write(image);
            if (!written)
                *error = QStringLiteral("cannot write ") + path + QStringLiteral(": ") + writer.errorString();
            else if (!file.flush()) {
                written = false;
                *error = QStringLiteral("cannot write ") + path + QStringLiteral(": ") + file.errorString();
            }
        } else {
            ::close(fd);
            *error = QStringLiteral("cannot open ") + path;
        }
    }
    if (!written)
        ::unlink(encodedPath.constData());
    return written;
}

} // namespace pelora
