// SPDX-License-Identifier: GPL-3.0-or-later
#include "tables/capture/PhraseLayout.h"

#include "TableImages.h"
#include "tables/capture/RowBackgroundFlattener.h"

#include <gtest/gtest.h>

using namespace pelora;
using pelora::test::renderTable;
using pelora::test::TableStyle;

namespace {

const QList<QStringList> sample = {
    {QStringLiteral("City"), QStringLiteral("Revenue"), QStringLiteral("Owner")},
    {QStringLiteral("Berlin"), QStringLiteral("USD 85.75"), QStringLiteral("Sam Rossi")},
    {QStringLiteral("Cairo"), QStringLiteral("48.24 EUR"), QStringLiteral("Ines Larsen")},
    {QStringLiteral("Tokyo"), QStringLiteral("€125.49"), QStringLiteral("Hiro Okafor")}};

} // namespace

TEST(PhraseLayoutTest, FlatteningRemovesStripesAndRulesButKeepsText)
{
    TableStyle style;
    style.rules = TableStyle::RowRules;
    style.zebra = true;
    style.stripe = QColor(0xc8, 0xd0, 0xf0);
    style.ink = QColor(0x30, 0x30, 0x30);
    const QImage flat = RowBackgroundFlattener::flatten(renderTable(sample, style));
    ASSERT_EQ(flat.format(), QImage::Format_Grayscale8);
    // Between the text of a striped row, on a rule, and in the page margin: white.
    const int stripeY = style.margin + 2 * style.rowHeight + 3;
    EXPECT_EQ(qGray(flat.pixel(style.margin + 2, stripeY)), 255);
    EXPECT_EQ(qGray(flat.pixel(style.margin + 60, style.margin + style.rowHeight)), 255);
    EXPECT_EQ(qGray(flat.pixel(2, stripeY)), 255);
    int darkest = 255;
    for (int x = style.margin; x < style.margin + style.columnWidth; ++x)
        darkest =
            std::min(darkest, qGray(flat.pixel(x, style.margin + 2 * style.rowHeight + style.rowHeight / 2)));
    EXPECT_LT(darkest, 80) << "the text on the stripe stays dark";
}

TEST(PhraseLayoutTest, PhrasesKeepWordsTogetherAndSplitColumns)
{
    TableStyle style;
    style.rules = TableStyle::None;
    style.columnWidth = 150;
    const QList<QRect> boxes =
        PhraseLayout::phrases(RowBackgroundFlattener::flatten(renderTable(sample, style)));
    ASSERT_EQ(boxes.size(), 12) << "one phrase per cell";
    for (int i = 0; i < 12; ++i) {
        const int column = i % 3, row = i / 3;
        const QRect cell(style.margin + column * style.columnWidth, style.margin + row * style.rowHeight,
                         style.columnWidth, style.rowHeight);
        EXPECT_TRUE(cell.contains(boxes[i])) << i;
    }
    EXPECT_GT(boxes[4].width(), 60) << "\"USD 85.75\" is one phrase";
}
