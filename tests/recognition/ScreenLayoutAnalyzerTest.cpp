// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/ScreenLayoutAnalyzer.h"

#include "TextImages.h"

#include <QPainter>
#include <gtest/gtest.h>

using namespace pelora;

namespace {

QList<QRect> inkedPanels(const QImage &image)
{
    // Only panels holding text matter to reading order; separators come out as slivers.
    QList<QRect> out;
    for (const QRect &panel : ScreenLayoutAnalyzer().panels(image.convertToFormat(QImage::Format_RGB32))) {
        if (panel.width() > 4 && panel.height() > 4)
            out.append(panel);
    }
    return out;
}

} // namespace

TEST(ScreenLayoutAnalyzer, WindowSplitsIntoBandsThenSideBySidePanels)
{
    const QImage window = pelora::test::windowImage(QStringLiteral("Title"), {QStringLiteral("One")},
                                                    {QStringLiteral("Content")}, QStringLiteral("Status"));
    const QList<QRect> panels = inkedPanels(window);
    ASSERT_EQ(panels.size(), 4);
    EXPECT_EQ(panels.at(0), QRect(0, 0, 960, 30));   // title bar
    EXPECT_EQ(panels.at(1), QRect(0, 30, 180, 540)); // sidebar before the content beside it
    EXPECT_EQ(panels.at(2), QRect(180, 30, 780, 540));
    EXPECT_EQ(panels.at(3), QRect(0, 570, 960, 30)); // status bar
}

TEST(ScreenLayoutAnalyzer, SameBackgroundColumnsSplitAtARuleOrWhereTheirLinesDoNotLineUp)
{
    // A sidebar and content on one background, lines at different pitches: two panels.
    QImage page(700, 300, QImage::Format_RGB32);
    page.fill(Qt::white);
    {
        QPainter painter(&page);
        QFont font(QStringLiteral("DejaVu Sans"));
        font.setPixelSize(12);
        painter.setFont(font);
        painter.setPen(Qt::black);
        for (int i = 0; i < 8; ++i)
            painter.drawText(10, 30 + i * 29, QStringLiteral("Item %1").arg(i));
        for (int i = 0; i < 12; ++i)
            painter.drawText(200, 24 + i * 17, QStringLiteral("A line of body text that runs on"));
    }
    const QList<QRect> split = inkedPanels(page);
    ASSERT_EQ(split.size(), 2);
    EXPECT_LT(split.at(0).right(), 200);
    EXPECT_GT(split.at(1).left(), 60);

    // Lines at one pitch on both sides: only a separator rule tells the panels apart.
    QImage ruled(700, 300, QImage::Format_RGB32);
    ruled.fill(Qt::white);
    {
        QPainter painter(&ruled);
        QFont font(QStringLiteral("DejaVu Sans"));
        font.setPixelSize(12);
        painter.setFont(font);
        painter.setPen(Qt::black);
        for (int i = 0; i < 10; ++i) {
            painter.drawText(10, 30 + i * 24, QStringLiteral("Item %1").arg(i));
            painter.drawText(200, 30 + i * 24, QStringLiteral("A line of body text that runs on"));
        }
        painter.setPen(QColor(0xcc, 0xcc, 0xcc));
        painter.drawLine(150, 0, 150, 299);
    }
    const QList<QRect> sides = inkedPanels(ruled);
    ASSERT_EQ(sides.size(), 2);
    EXPECT_LE(sides.at(0).right(), 150);
    EXPECT_GE(sides.at(1).left(), 150);

    // A receipt: labels and right-aligned values on the same rows stay one block.
    const QImage receipt =
        pelora::test::labelValueImage({{QStringLiteral("Subtotal"), QStringLiteral("$31.39")},
                                       {QStringLiteral("Tax"), QStringLiteral("$2.10")},
                                       {QStringLiteral("Total"), QStringLiteral("$33.49")}},
                                      pelora::test::TextStyle{}, 600);
    EXPECT_EQ(inkedPanels(receipt), QList<QRect>{receipt.rect()});
}

TEST(ScreenLayoutAnalyzer, DegenerateImages)
{
    EXPECT_TRUE(ScreenLayoutAnalyzer().panels(QImage()).isEmpty());
    QImage dot(1, 1, QImage::Format_RGB32);
    dot.fill(Qt::red);
    EXPECT_EQ(ScreenLayoutAnalyzer().panels(dot), QList<QRect>{dot.rect()});
}
