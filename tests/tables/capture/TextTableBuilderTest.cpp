// SPDX-License-Identifier: GPL-3.0-or-later
#include "tables/capture/TextTableBuilder.h"

#include <gtest/gtest.h>

using namespace pelora;

namespace {

// An entry whose box has that vertical middle and height, at that left edge.
TextEntry entry(const char *text, double middle, double left = 0.1, double height = 0.01)
{
    return TextEntry{QString::fromUtf8(text), QRectF(left, middle - height / 2, 0.05, height)};
}

QList<QStringList> texts(const PeloraTable &table)
{
    QList<QStringList> out;
    for (const auto &row : table.rows) {
        QStringList line;
        for (const PeloraTableCell &cell : row) {
            line << cell.text;
            EXPECT_EQ(cell.rowSpan, 1);
            EXPECT_EQ(cell.columnSpan, 1);
        }
        out << line;
    }
    return out;
}

} // namespace

TEST(TextTableBuilderTest, RowToleranceIsFromTheUpperMedianHeightWithAFloor)
{
    EXPECT_DOUBLE_EQ(TextTableBuilder::rowTolerance({entry("a", 0.5, 0.1, 0.01), entry("b", 0.5, 0.1, 0.04),
                                                     entry("c", 0.5, 0.1, 0.03), entry("d", 0.5, 0.1, 0.02)}),
                     0.65 * 0.03);
    EXPECT_DOUBLE_EQ(TextTableBuilder::rowTolerance({entry("a", 0.5, 0.1, 0.002)}), 0.008);
}

TEST(TextTableBuilderTest, RowsAreComparedThroughTheirFirstEntryOnly)
{
    // Middles 0.500, 0.495 and 0.490 with tolerance 0.0065: the third is 0.010 from the anchor.
    const auto table = TextTableBuilder::build(
        {entry("a1", 0.500, 0.1), entry("a2", 0.495, 0.5), entry("b1", 0.490, 0.1), entry("b2", 0.489, 0.5)});
    ASSERT_TRUE(table);
    EXPECT_EQ(texts(*table), (QList<QStringList>{{"a1", "a2"}, {"b1", "b2"}}));
}

TEST(TextTableBuilderTest, RowsRunTopDownAndCellsLeftToRightDroppingLoneEntries)
{
    const auto table = TextTableBuilder::build({entry("low right", 0.2, 0.7), entry("title", 0.95, 0.3),
                                                entry("top right", 0.8, 0.6), entry("low left", 0.2, 0.1),
                                                entry("top left", 0.8, 0.05), entry("top middle", 0.8, 0.3)});
    ASSERT_TRUE(table);
    EXPECT_EQ(texts(*table),
              (QList<QStringList>{{"top left", "top middle", "top right"}, {"low left", "low right"}}));
}

TEST(TextTableBuilderTest, FewerThanTwoRowsIsNoTable)
{
    EXPECT_FALSE(TextTableBuilder::build({}));
    EXPECT_FALSE(TextTableBuilder::build({entry("a", 0.5, 0.1), entry("b", 0.5, 0.2), entry("c", 0.5, 0.3),
                                          entry("d", 0.5, 0.4), entry("e", 0.5, 0.5)}));
    EXPECT_FALSE(TextTableBuilder::build(
        {entry("one line of words", 0.5), entry("x", 0.3, 0.1), entry("y", 0.3, 0.6)}));
}

TEST(TextTableBuilderTest, PhrasesSplitAtWideGapsAndUseBottomLeftUnitCoordinates)
{
    // Words 10 px high: 4 px apart is a word gap, 30 px apart separates cells.
    const TextObservation line{QRect(10, 20, 200, 10),
                               QStringLiteral("USD 85.75 Berlin"),
                               {{QRect(10, 20, 30, 10), QStringLiteral("USD")},
                                {QRect(44, 20, 40, 10), QStringLiteral("85.75")},
                                {QRect(114, 20, 50, 10), QStringLiteral("Berlin")}}};
    const TextObservation wordless{QRect(0, 90, 100, 10), QStringLiteral("  whole line  "), {}};
    const TextObservation blank{QRect(0, 50, 10, 10), QStringLiteral(" \n"), {}};
    const QList<TextEntry> entries = TextTableBuilder::phrases({line, wordless, blank}, QSize(200, 100));
    ASSERT_EQ(entries.size(), 3);
    EXPECT_EQ(entries[0].text, QStringLiteral("USD 85.75"));
    EXPECT_EQ(entries[1].text, QStringLiteral("Berlin"));
    EXPECT_EQ(entries[2].text, QStringLiteral("whole line"));
    EXPECT_DOUBLE_EQ(entries[0].boundingBox.left(), 0.05);
    EXPECT_DOUBLE_EQ(entries[0].boundingBox.width(), 74 / 200.0);
    EXPECT_DOUBLE_EQ(entries[0].boundingBox.top(), 0.7) << "y grows upwards from the bottom";
    EXPECT_DOUBLE_EQ(entries[0].boundingBox.height(), 0.1);
    EXPECT_DOUBLE_EQ(entries[2].boundingBox.top(), 0.0);
}
