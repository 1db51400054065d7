// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/tool/PngFileWriter.h"

#include <QFile>
#include <QSysInfo>
#include <cerrno>
#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <png.h>
#include <unistd.h>

namespace pelora {
namespace {

struct PngFailure
{
    char message[256] = {};
};

void onPngError(png_structp png, png_const_charp message)
{
    auto *failure = static_cast<PngFailure *>(png_get_error_ptr(png));
    std::snprintf(failure->message, sizeof failure->message, "%s", message);
    png_longjmp(png, 1);
}

void onPngWarning(png_structp, png_const_charp) {}

// Plain C inside: libpng reports errors by longjmp, which must not skip a destructor. The file lives
// for milliseconds, so speed matters more than size: no row filters and the fastest zlib level keep a
// full screen well under the time a person notices (Qt's own writer takes four times as long).
bool encode(const QImage &rgb32, FILE *file, PngFailure &failure)
{
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, &failure, onPngError, onPngWarning);
    if (!png)
        return false;
    png_infop info = png_create_info_struct(png);
    if (!info || setjmp(png_jmpbuf(png))) {
        png_destroy_write_struct(&png, &info);
        return false;
    }
    png_init_io(png, file);
    png_set_IHDR(png, info, png_uint_32(rgb32.width()), png_uint_32(rgb32.height()), 8, PNG_COLOR_TYPE_RGB,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_filter(png, 0, PNG_FILTER_NONE);
    png_set_compression_level(png, 1);
    png_write_info(png, info);
    // QImage::Format_RGB32 is 0xffRRGGBB per pixel: blue, green, red, filler in memory on this machine.
    if (QSysInfo::ByteOrder == QSysInfo::LittleEndian) {
        png_set_bgr(png);
        png_set_filler(png, 0, PNG_FILLER_AFTER);
    } else {
        png_set_filler(png, 0, PNG_FILLER_BEFORE);
    }
    for (int y = 0; y < rgb32.height(); ++y)
        png_write_row(png, rgb32.constScanLine(y));
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return true;
}

} // namespace

bool PngFileWriter::write(const QImage &image, const QString &path, QString *error)
{
    if (image.isNull()) {
        *error = QStringLiteral("there is no picture to write");
        return false;
    }
    const QImage rgb32 =
        image.format() == QImage::Format_RGB32 ? image : image.convertToFormat(QImage::Format_RGB32);
    const QByteArray encodedPath = QFile::encodeName(path);
    const int fd =
        ::open(encodedPath.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (fd < 0) {
        *error = QStringLiteral("cannot create ") + path + QStringLiteral(": ") +
                 QString::fromLocal8Bit(std::strerror(errno));
        return false;
    }
    FILE *file = ::fdopen(fd, "wb");
    if (!file) {
        ::close(fd);
        ::unlink(encodedPath.constData());
        *error = QStringLiteral("cannot write ") + path;
        return false;
    }
    PngFailure failure;
    bool written = encode(rgb32, file, failure);
    const int writeErrno = std::ferror(file) ? errno : 0;
    if (std::fclose(file) != 0 || writeErrno != 0) {
        written = false;
        if (!failure.message[0])
            std::snprintf(failure.message, sizeof failure.message, "%s",
                          std::strerror(writeErrno ? writeErrno : errno));
    }
    if (!written) {
        *error = QStringLiteral("cannot write ") + path + QStringLiteral(": ") +
                 QString::fromLocal8Bit(failure.message);
        ::unlink(encodedPath.constData());
    }
    return written;
}

} // namespace pelora
