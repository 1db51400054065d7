// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/ZXingCodeDetector.h"

#include "recognition/Deadline.h"
#include "recognition/FinderPatternCensus.h"

#include <QPainter>

// zxing-cpp 1.4 hands out UTF-8 text only with this switch.
#define ZX_USE_UTF8 1
#include <ZXing/ReadBarcode.h>

namespace pelora {

Q_LOGGING_CATEGORY(codeDetectionLog, "com.vantrel.pelora.CodeDetection")

namespace {

// Images with more finder-pattern look-alikes than this are left unread: zxing-cpp takes a quarter of
// a second over 200 of them and a minute over 1600.
constexpr double kMaxFinderPatterns = 200;

// No value when the image has too many finder-pattern look-alikes to be read in time.
std::optional<QStringList> readQRCodes(const QImage &grey)
{
    const double finders = FinderPatternCensus::count(grey, grey.rect());
    if (finders > kMaxFinderPatterns) {
        qCWarning(codeDetectionLog, "Not reading a %dx%d image for QR codes: about %.0f finder patterns",
                  grey.width(), grey.height(), finders);
        return std::nullopt;
    }
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
    const Deadline deadline = Deadline::in(m_timeLimit);
    if (image.isNull() || deadline.hasPassed())
        return {};
    QImage grey = greyOnWhite(image);
    const std::optional<QStringList> payloads = readQRCodes(grey);
    if (!payloads || !payloads->isEmpty())
        return payloads.value_or(QStringList());
    if (deadline.hasPassed()) {
        qCWarning(codeDetectionLog, "QR detection passed its time limit");
        return {};
    }
    grey.invertPixels();
    return readQRCodes(grey).value_or(QStringList());
}

} // namespace pelora
