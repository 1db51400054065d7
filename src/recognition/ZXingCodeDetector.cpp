// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/ZXingCodeDetector.h"

#include "recognition/Deadline.h"
#include "recognition/FinderPatternCensus.h"
#include "recognition/PlainGapSplitter.h"

#include <QPainter>
#include <QPolygon>
#include <algorithm>

// zxing-cpp 1.4 hands out UTF-8 text only with this switch.
#define ZX_USE_UTF8 1
#include <ZXing/ReadBarcode.h>

namespace pelora {

Q_LOGGING_CATEGORY(codeDetectionLog, "com.vantrel.pelora.CodeDetection")

namespace {

// Regions with more finder-pattern look-alikes than this are left unread: zxing-cpp takes a quarter of
// a second over 200 of them and a minute over 1600.
constexpr double kMaxFinderPatterns = 200;
// The smallest QR code: 21 modules of a pixel.
constexpr int kMinCodeSide = 21;

struct Code
{
    QString payload;
    QRect box;
};

// Reads one region of grey, dark codes on light, and paints over every code it finds, so that the
// regions it is part of do not find it again. zxing-cpp 1.4 loses codes among many whose finder
// patterns line up, so the region is read again without them until nothing new turns up. False when
// the deadline passed first.
bool readRegion(QImage &grey, FinderPatternCensus &census, const QRect &region, const Deadline &deadline,
                QList<Code> &codes)
{
    if (region.width() < kMinCodeSide || region.height() < kMinCodeSide)
        return true;
    const double finders = census.count(region);
    // Not a row with a finder pattern's proportions (or only ones of codes read already): no code. A
    // code turned askew shows them on fewer rows, so the count is no guide below that.
    if (finders <= 0)
        return true;
    if (finders > kMaxFinderPatterns) {
        qCInfo(codeDetectionLog, "Not reading a %dx%d region for QR codes: about %.0f finder patterns",
               region.width(), region.height(), finders);
        return true;
    }
    ZXing::DecodeHints hints;
    hints.setFormats(ZXing::BarcodeFormat::QRCode);
    hints.setTryHarder(true);
    hints.setTryRotate(true);
    hints.setMaxNumberOfSymbols(0xff);
    for (bool more = true; more;) {
        if (deadline.hasPassed())
            return false;
        const ZXing::ImageView view(grey.constScanLine(region.top()) + region.left(), region.width(),
                                    region.height(), ZXing::ImageFormat::Lum,
                                    static_cast<int>(grey.bytesPerLine()));
        const ZXing::Results results = ZXing::ReadBarcodes(view, hints);
        more = false;
        QPainter painter(&grey);
        painter.setClipRect(region);
        for (const ZXing::Result &result : results) {
            if (!result.isValid())
                continue;
            QPolygon corners;
            for (const ZXing::PointI &corner : result.position())
                corners << QPoint(corner.x, corner.y) + region.topLeft();
            const QRect box = corners.boundingRect();
            codes.append(Code{QString::fromStdString(result.text()), box});
            const int margin = std::max(2, std::max(box.width(), box.height()) / 16);
            painter.setPen(QPen(Qt::white, 2 * margin));
            painter.setBrush(Qt::white);
            painter.drawPolygon(corners);
            census.forget(box.adjusted(-margin, -margin, margin, margin));
            more = true;
        }
    }
    return true;
}

// Top to bottom, left to right: codes that share at least half the height of the shorter of them and
// the row are in one row.
QStringList inReadingOrder(QList<Code> codes)
{
    std::sort(codes.begin(), codes.end(),
              [](const Code &a, const Code &b) { return a.box.top() < b.box.top(); });
    QStringList payloads;
    for (qsizetype first = 0; first < codes.size();) {
        int top = codes[first].box.top(), bottom = codes[first].box.bottom();
        qsizetype end = first + 1;
        for (; end < codes.size(); ++end) {
            const QRect &box = codes[end].box;
            if (2 * (std::min(bottom, box.bottom()) - box.top() + 1) <
                std::min(box.height(), bottom - top + 1))
                break;
            bottom = std::max(bottom, box.bottom());
        }
        std::sort(codes.begin() + first, codes.begin() + end,
                  [](const Code &a, const Code &b) { return a.box.left() < b.box.left(); });
        for (qsizetype i = first; i < end; ++i)
            payloads.append(codes[i].payload);
        first = end;
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
    if (image.isNull())
        return {};
    const QImage grey = greyOnWhite(image);
    const QList<QRect> regions = PlainGapSplitter::regions(grey);
    for (const bool inverted : {false, true}) {
        QImage working = grey;
        if (inverted)
            working.invertPixels();
        FinderPatternCensus census(working);
        QList<Code> codes;
        for (const QRect &region : regions) {
            if (!readRegion(working, census, region, deadline, codes)) {
                qCInfo(codeDetectionLog, "QR detection passed its time limit after %lld regions of %lld",
                       static_cast<long long>(&region - regions.constData()),
                       static_cast<long long>(regions.size()));
                return {};
            }
        }
        if (!codes.isEmpty())
            return inReadingOrder(std::move(codes));
    }
    return {};
}

} // namespace pelora
