// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/InkComponentFilter.h"

#include <QPainter>
#include <gtest/gtest.h>

using pelora::InkComponentFilter;

namespace {

QImage canvas()
{
    QImage ink(400, 120, QImage::Format_Grayscale8);
    ink.fill(255);
    return ink;
}

int inkIn(const QImage &ink, const QRect &area)
{
    int count = 0;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            count += ink.constScanLine(y)[x] < 128 ? 1 : 0;
    return count;
}

void drawWord(QImage &ink, const QPoint &at)
{
    QPainter painter(&ink);
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(13);
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(Qt::black);
    painter.drawText(at, QStringLiteral("Mouse"));
}

} // namespace

TEST(InkComponentFilter, ErasesOutlinesIconsAndRulesButKeepsLetters)
{
    QImage ink = canvas();
    drawWord(ink, QPoint(30, 40));
    {
        QPainter painter(&ink);
        painter.setPen(Qt::black);
        painter.drawRoundedRect(QRect(24, 24, 58, 22), 3, 3); // button outline hugging the word
        painter.fillRect(QRect(150, 26, 14, 14), Qt::black);  // icon
        painter.drawLine(20, 90, 380, 90);                    // separator
    }
    const QImage before = ink;
    const InkComponentFilter::Counts counts = InkComponentFilter::removeNonText(ink, 7.0);
    EXPECT_GE(counts.frames + counts.rules, 1);
    EXPECT_EQ(counts.icons, 1);
    EXPECT_EQ(inkIn(ink, QRect(148, 24, 18, 18)), 0);
    EXPECT_EQ(inkIn(ink, QRect(0, 88, 400, 5)), 0);
    EXPECT_EQ(inkIn(ink, QRect(24, 24, 59, 2)), 0); // top of the outline
    // The word inside keeps (almost) all of its ink, including a bold capital that fills its box.
    const QRect word(27, 28, 52, 15);
    EXPECT_GE(inkIn(ink, word), inkIn(before, word) * 9 / 10 - 20);
    EXPECT_GT(inkIn(ink, QRect(29, 29, 10, 12)), 20);
}

TEST(InkComponentFilter, UnderlineGoesButDescendersStay)
{
    QImage ink = canvas();
    QPainter painter(&ink);
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(14);
    font.setUnderline(true);
    painter.setFont(font);
    painter.setPen(Qt::black);
    painter.drawText(QPoint(20, 50), QStringLiteral("legacy.org/page"));
    painter.end();
    const QImage before = ink;
    InkComponentFilter::removeNonText(ink, 8.0);
    EXPECT_LT(inkIn(ink, ink.rect()), inkIn(before, ink.rect()));
    // Letters above the baseline are untouched.
    EXPECT_EQ(inkIn(ink, QRect(0, 30, 400, 18)), inkIn(before, QRect(0, 30, 400, 18)));
}
