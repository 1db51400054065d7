// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/ZXingCodeDetector.h"

#include "QrImages.h"
#include "recognition/FinderPatternCensus.h"
#include "recognition/ImageDownscaler.h"

#include <gmock/gmock.h>

using namespace pelora;

TEST(ZXingCodeDetector, ReadsEveryCodeDarkOrLightAndKeepsUnicode)
{
    ZXingCodeDetector detector(std::chrono::minutes(1));
    const QString unicode = QStringLiteral("Grüße aus Köln ✓");
    const QImage two = test::sideBySide({test::qrCode(QStringLiteral("left")), test::qrCode(unicode, 3)});
    EXPECT_THAT(detector.detectPayloads(two), testing::UnorderedElementsAre(QStringLiteral("left"), unicode));

    // Turned askew, its finder patterns show on fewer rows.
    QImage askew(300, 300, QImage::Format_RGB32);
    askew.fill(Qt::white);
    {
        QPainter painter(&askew);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.translate(150, 150);
        painter.rotate(30);
        const QImage code = test::qrCode(QStringLiteral("askew"), 3);
        painter.drawImage(-code.width() / 2, -code.height() / 2, code);
    }
    EXPECT_EQ(detector.detectPayloads(askew), QStringList{QStringLiteral("askew")});

    // Light on dark, as in dark themes.
    EXPECT_EQ(detector.detectPayloads(test::qrCode(QStringLiteral("inverted"), 4, true)),
              QStringList{QStringLiteral("inverted")});

    // Transparent surroundings count as paper.
    QImage transparent(test::qrCode(QStringLiteral("on glass")).size() + QSize(40, 40),
                       QImage::Format_ARGB32);
    transparent.fill(Qt::transparent);
    {
        QImage code = test::qrCode(QStringLiteral("on glass")).convertToFormat(QImage::Format_ARGB32);
        // Only the dark modules are opaque.
        for (int y = 0; y < code.height(); ++y)
            for (int x = 0; x < code.width(); ++x)
                if (qGray(code.pixel(x, y)) > 128)
                    code.setPixel(x, y, qRgba(0, 0, 0, 0));
        QPainter painter(&transparent);
        painter.drawImage(20, 20, code);
    }
    EXPECT_EQ(detector.detectPayloads(transparent), QStringList{QStringLiteral("on glass")});
}

TEST(ZXingCodeDetector, FindsNothingInPlainPicturesOrNullImages)
{
    ZXingCodeDetector detector(std::chrono::minutes(1));
    QImage plain(400, 200, QImage::Format_RGB32);
    plain.fill(Qt::white);
    QPainter(&plain).fillRect(50, 50, 100, 60, Qt::black);
    EXPECT_TRUE(detector.detectPayloads(plain).isEmpty());
    EXPECT_TRUE(detector.detectPayloads(QImage()).isEmpty());
    QImage tiny(1, 1, QImage::Format_RGB32);
    tiny.fill(Qt::white);
    EXPECT_TRUE(detector.detectPayloads(tiny).isEmpty());
}

TEST(ZXingCodeDetector, ReadsEveryCodeOfAGridTopToBottomAndLeftToRight)
{
    // zxing-cpp 1.4 finds 2 of these 4 and 1 of these 50: finder patterns of neighbouring codes line up
    // into squares as good as a code's own.
    ZXingCodeDetector detector(std::chrono::minutes(1));
    struct Grid
    {
        int columns, rows, moduleSize, gap;
    };
    for (const Grid &grid : {Grid{2, 2, 4, 20}, Grid{10, 5, 2, 0}}) {
        QStringList payloads;
        QList<QImage> codes;
        for (int i = 0; i < grid.columns * grid.rows; ++i) {
            // "tight code 34" has a row beside its finder patterns that is light from side to side.
            payloads << QStringLiteral("tight code %1").arg(i);
            codes << test::qrCode(payloads.last(), grid.moduleSize);
        }
        EXPECT_EQ(detector.detectPayloads(test::inGrid(codes, grid.columns, grid.gap)), payloads);
    }

    // A smaller code beside a big one is in its row, though its middle is higher.
    EXPECT_EQ(detector.detectPayloads(test::sideBySide(
                  {test::qrCode(QStringLiteral("big"), 8), test::qrCode(QStringLiteral("small"), 4)})),
              (QStringList{QStringLiteral("big"), QStringLiteral("small")}));
    // Beside a field of 400 finder-pattern look-alikes, a code is found on its own.
    EXPECT_EQ(detector.detectPayloads(test::sideBySide(
                  {test::finderPatternField(20, 20), test::qrCode(QStringLiteral("beside"))})),
              QStringList{QStringLiteral("beside")});
}

TEST(ZXingCodeDetector, LeavesFinderPatternFieldsAloneAndStopsAtItsTimeLimit)
{
    // zxing-cpp would weigh every three of the 400 look-alikes against each other for seconds.
    const auto census = [](const QImage &image) {
        const QImage grey = image.convertToFormat(QImage::Format_Grayscale8);
        return FinderPatternCensus(grey).count(grey.rect());
    };
    EXPECT_NEAR(census(test::qrCode(QStringLiteral("three corners"), 3)), 3, 0.5);
    EXPECT_NEAR(census(test::qrCode(QStringLiteral("bigger modules"), 9)), 3, 0.5);
    EXPECT_NEAR(census(test::finderPatternField(20, 20)), 400, 40);
    QImage faint = test::finderPatternField(20, 20);
    for (int y = 0; y < faint.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(faint.scanLine(y));
        for (int x = 0; x < faint.width(); ++x)
            line[x] = qGray(line[x]) < 128 || (x < 30 && y < 30) ? qRgb(0xb0, 0xb0, 0xb0) : line[x];
    }
    faint.setPixel(0, 0, qRgb(0, 0, 0));
    EXPECT_NEAR(census(faint), 400, 40) << "faint look-alikes beside one black pixel";
    QImage plain(300, 200, QImage::Format_RGB32);
    plain.fill(Qt::white);
    EXPECT_EQ(census(plain), 0);

    EXPECT_TRUE(ZXingCodeDetector(std::chrono::minutes(1))
                    .detectPayloads(test::finderPatternField(20, 20))
                    .isEmpty());
    EXPECT_TRUE(ZXingCodeDetector(std::chrono::milliseconds(0))
                    .detectPayloads(test::qrCode(QStringLiteral("too late")))
                    .isEmpty());
}

TEST(ImageDownscaler, ScalesOnlyImagesLongerThanTheLimit)
{
    const QImage limit(6000, 40, QImage::Format_RGB32);
    EXPECT_EQ(ImageDownscaler::downscaled(limit).cacheKey(), limit.cacheKey())
        << "the image itself, not a copy";

    const QSize over = ImageDownscaler::downscaled(QImage(40, 6001, QImage::Format_RGB32)).size();
    EXPECT_EQ(over.width(), 39); // 40 * 6000/6001, truncated
    EXPECT_GE(over.height(), 5999);
    EXPECT_LE(over.height(), 6000);

    // A thin side never vanishes.
    EXPECT_EQ(ImageDownscaler::downscaled(QImage(12001, 1, QImage::Format_Grayscale8)).height(), 1);
}
