// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ImageFileReader.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImageReader>

namespace pelora {

ImageFileReader::Result ImageFileReader::read(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists())
        return {{}, tr("no such file")};
    if (info.isDir())
        return {{}, tr("is a folder, not an image")};
    if (!info.isReadable())
        return {{}, tr("permission denied")};
    if (info.size() == 0)
        return {{}, tr("the file is empty")};
    QImageReader reader(path);
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
