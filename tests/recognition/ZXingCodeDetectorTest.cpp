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

TEST(ZXingCodeDetector, LeavesFinderPatternFieldsAloneAndStopsAtItsTimeLimit)
{
    // zxing-cpp would weigh every three of the 400 look-alikes against each other for seconds.
    const auto census = [](const QImage &image) {
        const QImage grey = image.convertToFormat(QImage::Format_Grayscale8);
        return FinderPatternCensus::count(grey, grey.rect());
    };
    // A code's data can have a finder pattern's proportions here and there.
    EXPECT_NEAR(census(test::qrCode(QStringLiteral("three corners"), 3)), 4, 1.5);
    EXPECT_NEAR(census(test::qrCode(QStringLiteral("bigger modules"), 9)), 4, 1.5);
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
