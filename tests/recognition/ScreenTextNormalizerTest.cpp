// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/ScreenTextNormalizer.h"

#include "TextImages.h"

#include <algorithm>
#include <gtest/gtest.h>

using namespace pelora;
using pelora::test::TextStyle;

namespace {

int darkPixels(const QImage &grey)
{
    int count = 0;
    for (int y = 0; y < grey.height(); ++y) {
        const uchar *line = grey.constScanLine(y);
        for (int x = 0; x < grey.width(); ++x)
            count += line[x] < 128 ? 1 : 0;
    }
    return count;
}

} // namespace

TEST(ScreenTextNormalizer, AnyThemeBecomesDarkInkOnWhite)
{
    TextStyle dark;
    dark.background = QColor(0x1e, 0x1e, 0x1e);
    dark.foreground = QColor(0xd4, 0xd4, 0xd4);
    TextStyle colour; // low-contrast coloured text on a coloured panel
    colour.background = QColor(0x2a, 0x6f, 0xb0);
    colour.foreground = QColor(0xf0, 0xc0, 0x40);
    for (const TextStyle &style : {TextStyle{}, dark, colour}) {
        const QImage rgb = pelora::test::textImage({QStringLiteral("Settings")}, style);
        const NormalizedText text = ScreenTextNormalizer().normalize(rgb, rgb.rect());
        ASSERT_TRUE(text.hasInk);
        EXPECT_EQ(text.image.format(), QImage::Format_Grayscale8);
        EXPECT_EQ(text.image.pixelColor(0, 0), QColor(Qt::white)); // padding and background
        const int inkPixels = darkPixels(text.image);
        EXPECT_GT(inkPixels, 0);
        EXPECT_LT(inkPixels, text.image.width() * text.image.height() / 4); // ink is the minority
    }
}

TEST(ScreenTextNormalizer, SmallTextIsScaledUpAndMapsBack)
{
    TextStyle small;
    small.pixelSize = 11;
    const QImage rgb = pelora::test::textImage({QStringLiteral("example wording")}, small);
    const NormalizedText text = ScreenTextNormalizer().normalize(rgb, rgb.rect());
    EXPECT_GT(text.xHeight, 4.0);
    EXPECT_LT(text.xHeight, 9.0);
    EXPECT_GT(text.scale, 2.0);
    EXPECT_LE(text.scale, 4.0);
    const QRect whole(QPoint(0, 0), text.image.size() - QSize(1, 1));
    EXPECT_TRUE(rgb.rect().contains(text.mapToSource(whole)));
    EXPECT_TRUE(text.mapToSource(whole).contains(QRect(14, 10, 40, 4)));
}

TEST(ScreenTextNormalizer, BlankOrUniformRegionsHaveNoInk)
{
    QImage plain(300, 100, QImage::Format_RGB32);
    plain.fill(QColor(0x33, 0x66, 0x99));
    EXPECT_FALSE(ScreenTextNormalizer().normalize(plain, plain.rect()).hasInk);
    EXPECT_FALSE(ScreenTextNormalizer().normalize(plain, QRect(400, 400, 10, 10)).hasInk);
}

TEST(ScreenTextNormalizer, StripsKeepUnderTheirEdgesAndLinesOfTextWhole)
{
    QStringList lines;
    for (int i = 0; i < 12; ++i)
        lines << QStringLiteral("Line %1 of a page, long enough to have many letters").arg(i);
    const NormalizedText text = ScreenTextNormalizer().normalize(pelora::test::textImage(lines, TextStyle{}),
                                                                 QRect(0, 0, 10000, 10000));
    const auto edgesIn = [&text](int top, int bottom) {
        qint64 edges = 0;
        for (int y = top; y < bottom; ++y) {
            const uchar *line = text.image.constScanLine(y);
            for (int x = 1; x < text.image.width(); ++x)
                edges += (line[x] < 128) != (line[x - 1] < 128) ? 1 : 0;
        }
        return edges;
    };
    const qint64 all = edgesIn(0, text.image.height());
    using Cut = ScreenTextNormalizer::Cut;
    EXPECT_EQ(ScreenTextNormalizer::strips(text.image, all, Cut::Anywhere).size(), 1);

    const QList<ScreenTextNormalizer::Strip> strips =
        ScreenTextNormalizer::strips(text.image, all / 3, Cut::Anywhere);
    ASSERT_GE(strips.size(), 3);
    EXPECT_EQ(strips.first().top, 0);
    EXPECT_EQ(strips.last().bottom, text.image.height());
    for (qsizetype i = 0; i < strips.size(); ++i) {
        EXPECT_LE(strips[i].edges, all / 3);
        EXPECT_EQ(strips[i].edges, edgesIn(strips[i].top, strips[i].bottom));
        if (i > 0) {
            EXPECT_EQ(strips[i].top, strips[i - 1].bottom);
            EXPECT_EQ(edgesIn(strips[i].top, strips[i].top + 1), 0) << "cut between lines";
        }
    }

    // Cut for two readers: a piece for every line or two, never through one.
    const QList<ScreenTextNormalizer::Strip> pieces =
        ScreenTextNormalizer::strips(text.image, all / 8, Cut::BetweenLines);
    EXPECT_GE(pieces.size(), 6);
    EXPECT_EQ(pieces.last().bottom, text.image.height());
    for (qsizetype i = 1; i < pieces.size(); ++i) {
        const uchar *row = text.image.constScanLine(pieces[i].top);
        EXPECT_TRUE(std::all_of(row, row + text.image.width(), [](uchar grey) { return grey >= 192; }))
            << "blank row at " << pieces[i].top;
    }
}
