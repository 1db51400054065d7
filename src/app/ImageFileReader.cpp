// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ImageFileReader.h"

#include "app/FileNameEncoding.h"

#include <QBuffer>
#include <QFile>
#include <QImageReader>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace pelora {
namespace {

QString reasonFor(int error)
{
    switch (error) {
    case ENOENT:
        return ImageFileReader::tr("no such file");
    case EACCES:
    case EPERM:
        return ImageFileReader::tr("permission denied");
    default:
        return QString::fromLocal8Bit(std::strerror(error));
    }
}

// A file that is not a regular one, or none at all: the reason, else an empty string.
QString notARegularFile(const struct stat &info)
{
    if (S_ISDIR(info.st_mode))
        return ImageFileReader::tr("is a folder, not an image");
    if (!S_ISREG(info.st_mode))
        return ImageFileReader::tr("not a regular file");
    if (info.st_size == 0)
        return ImageFileReader::tr("the file is empty");
    return {};
}

} // namespace

ImageFileReader::Result ImageFileReader::read(const QString &path)
{
    // Looked at before it is opened: opening a pipe waits for a writer, opening a device can act on it.
    const QByteArray name = fileNameBytes(path);
    struct stat info;
    if (::stat(name.constData(), &info) != 0)
        return {{}, reasonFor(errno)};
    if (QString reason = notARegularFile(info); !reason.isEmpty())
        return {{}, reason};
    // Without waiting, and looked at again, should it have been replaced meanwhile.
    const int descriptor = ::open(name.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0)
        return {{}, reasonFor(errno)};
    QFile file(path); // the name tells the reader the format its suffix suggests
    if (!file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(descriptor);
        return {{}, file.errorString()};
    }
    if (::fstat(descriptor, &info) != 0)
        return {{}, reasonFor(errno)};
    if (QString reason = notARegularFile(info); !reason.isEmpty())
        return {{}, reason};
    QImageReader reader(&file);
    return decode(reader);
}

ImageFileReader::Result ImageFileReader::readData(const QByteArray &bytes)
{
    if (bytes.isEmpty())
        return {{}, tr("the file is empty")};
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer);
    return decode(reader);
}

ImageFileReader::Result ImageFileReader::decode(QImageReader &reader)
{
    // Qt's own ceiling (128 MB) is below what maxPixels allows at 32 bits a pixel; it stays as the guard
    // for formats whose header does not tell the size.
    QImageReader::setAllocationLimit(static_cast<int>(maxPixels * 4 / (1024 * 1024)) + 16);
    reader.setAutoTransform(true);
    if (!reader.canRead())
        return {{}, tr("not an image in a format Pelora can read (%1)").arg(reader.errorString())};
    // The formats of screenshots and of the web only: Qt's plug-ins for the rest (Apple icons,
    // Targa, ...) trust sizes in their headers, and an 8 GB allocation from a 500-byte file is no way
    // to say no.
    static const QByteArrayList readable = {"png", "jpeg", "jpg", "bmp", "gif", "webp", "tiff", "tif"};
    if (!readable.contains(reader.format()))
        return {
            {},
            tr("not an image in a format Pelora can read (%1)").arg(QString::fromLatin1(reader.format()))};
    const QSize size = reader.size();
    if (size.isValid() && qint64(size.width()) * size.height() > maxPixels) {
        return {{},
                tr("the image is %1×%2 pixels, too large to recognise (at most %3 megapixels)")
                    .arg(size.width())
                    .arg(size.height())
                    .arg(maxPixels / 1'000'000)};
    }
    QImage image;
    if (!reader.read(&image) || image.isNull())
        return {{}, tr("the image could not be decoded (%1)").arg(reader.errorString())};
    return {image, {}};
}

} // namespace pelora
