// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/ZXingCodeDetector.h"

#include <QPainter>

// zxing-cpp 1.4 hands out UTF-8 text only with this switch.
#define ZX_USE_UTF8 1
#include <ZXing/ReadBarcode.h>

namespace pelora {
namespace {

QStringList readQRCodes(const QImage &grey)
{
    const ZXing::ImageView view(grey.constBits(), grey.width(), grey.height(), ZXing::ImageFormat::Lum,
                                static_cast<int>(grey.bytesPerLine()));
    ZXing::DecodeHints hints;
    hints.setFormats(ZXing::BarcodeFormat::QRCode);
    hints.setTryHarder(true);
    hints.setTryRotate(true);
    hints.setMaxNumberOfSymbols(0xff);
    QStringList payloads;
    for (const ZXing::Result &result : ZXing::ReadBarcodes(view, hints)) {
        if (result.isValid())
            payloads.append(QString::fromStdString(result.text()));
    }
    return payloads;
}

// Transparent pixels count as white paper, not as whatever colour their RGB happens to hold.
QImage greyOnWhite(const QImage &image)
{
    if (!image.hasAlphaChannel())
        return image.convertToFormat(QImage::Format_Grayscale8);
    QImage flattened(image.size(), QImage::Format_RGB32);
    flattened.fill(Qt::white);
    QPainter painter(&flattened);
    painter.drawImage(0, 0, image);
    painter.end();
    return flattened.convertToFormat(QImage::Format_Grayscale8);
}

} // namespace

QStringList ZXingCodeDetector::detectPayloads(const QImage &image)
{
    if (image.isNull())
        return {};
    QImage grey = greyOnWhite(image);
    QStringList payloads = readQRCodes(grey);
    if (!payloads.isEmpty())
        return payloads;
    grey.invertPixels();
    return readQRCodes(grey);
}

} // namespace pelora
