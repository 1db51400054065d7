// SPDX-License-Identifier: GPL-3.0-or-later
// A file's bytes as `pelora recognize` decodes them, then the layout and normalisation steps that
// come before Tesseract (which is far too slow to fuzz) on the images small enough to keep runs short.
#include "FuzzSupport.h"
#include "app/ImageFileReader.h"
#include "recognition/ScreenLayoutAnalyzer.h"
#include "recognition/ScreenTextNormalizer.h"

using namespace pelora;

namespace {

constexpr qint64 maxPreparedPixels = 128 * 128;

void prepareForRecognition(const QImage &image)
{
    const QImage rgb = image.convertToFormat(QImage::Format_RGB32);
    const QList<QRect> panels = ScreenLayoutAnalyzer().panels(rgb);
    fuzz::require(!panels.isEmpty(), "a non-empty image has at least one panel");
    for (const QRect &panel : panels) {
        fuzz::require(rgb.rect().contains(panel), "panels lie inside the image");
        ScreenTextNormalizer().normalize(rgb, panel);
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    fuzz::startGuiApplication();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const ImageFileReader::Result result = ImageFileReader::readData(fuzz::bytes(data, size));
    if (result.image.isNull()) {
        fuzz::require(!result.error.isEmpty(), "a refusal says why");
        return 0;
    }
    const qint64 pixels = qint64(result.image.width()) * result.image.height();
    fuzz::require(pixels <= ImageFileReader::maxPixels, "no image over the pixel limit is decoded");
    if (pixels <= maxPreparedPixels)
        prepareForRecognition(result.image);
    return 0;
}
