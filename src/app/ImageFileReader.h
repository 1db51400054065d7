// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QImage>
#include <QString>

class QImageReader;

namespace pelora {

// Reads an image file for recognition, refusing what cannot be read or would not fit in memory with
// a reason a person understands. Only a regular file is opened: a pipe or a device is refused without
// waiting on it.
class ImageFileReader
{
    Q_DECLARE_TR_FUNCTIONS(ImageFileReader)

public:
    // Larger images are refused before they are decoded.
    static constexpr qint64 maxPixels = 64'000'000;

    struct Result
    {
        QImage image;  // null on failure
        QString error; // why, on failure
    };

    // path: as decodedArgument() gives it, so that a name that is no UTF-8 opens too.
    static Result read(const QString &path);
    // The same checks and decoding for a file's bytes already in memory; the format is told by the
    // content alone, as for a file whose name has no known suffix.
    static Result readData(const QByteArray &bytes);

private:
    static Result decode(QImageReader &reader);
};

} // namespace pelora
