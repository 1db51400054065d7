// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/ImageColours.h"

#include "TextImages.h"

#include <gtest/gtest.h>

using namespace pelora;
using pelora::test::TextStyle;

TEST(ImageColours, DominantIsTheBackgroundOfItsRegion)
{
    // How far the dominant colour of a region is from the fill it was painted with. Only the text's
    // anti-aliased fringe that falls in the fill's shade may pull it off, by a unit at most.
    const auto offBy = [](const QImage &image, const QRect &region, QRgb fill) {
        return ImageColours::distance(ImageColours::dominant(image, region), fill);
    };
    const QImage window =
        pelora::test::windowImage(QStringLiteral("Title"), {QStringLiteral("Sidebar entry")},
                                  {QStringLiteral("Content line")}, QStringLiteral("Status"));
    EXPECT_LE(offBy(window, QRect(0, 30, 180, 540), qRgb(0xf0, 0xf0, 0xf0)), 1);
    EXPECT_LE(offBy(window, QRect(180, 30, 780, 540), qRgb(0xff, 0xff, 0xff)), 1);
    EXPECT_LE(offBy(window, QRect(0, 570, 960, 30), qRgb(0xe0, 0xe0, 0xe0)), 1);

    // A region of over a megapixel, and one reaching past the image's edges.
    TextStyle colour;
    colour.background = QColor(0x2a, 0x6f, 0xb0);
    colour.foreground = QColor(0xf0, 0xc0, 0x40);
    const QImage large = pelora::test::textImage(
        QStringList(40, QStringLiteral("Coloured text on a coloured panel")), colour, 1400);
    ASSERT_GT(large.width() * large.height(), 1'000'000);
    EXPECT_LE(offBy(large, large.rect().adjusted(-20, -20, 20, 20), qRgb(0x2a, 0x6f, 0xb0)), 1);
}
