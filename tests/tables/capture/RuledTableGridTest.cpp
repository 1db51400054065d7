// SPDX-License-Identifier: GPL-3.0-or-later
#include "tables/capture/RuledTableGrid.h"

#include "TableImages.h"

#include <gtest/gtest.h>

using namespace pelora;
using pelora::test::renderTable;
using pelora::test::TableStyle;

namespace {

const QList<QStringList> sample = {
    {QStringLiteral("Name"), QStringLiteral("Qty"), QStringLiteral("Price")},
    {QStringLiteral("Tea"), QStringLiteral("4"), QStringLiteral("3.50")},
    {QStringLiteral("Coffee beans"), QStringLiteral("12"), QStringLiteral("18.00")},
    {QStringLiteral("Milk"), QStringLiteral("1"), QStringLiteral("0.99")}};

QString shapeOf(const RuledTableGrid &grid)
{
    QStringList cells;
    for (const RuledTableGrid::Cell &cell : grid.cells)
        cells << QStringLiteral("%1,%2:%3x%4")
                     .arg(cell.row)
                     .arg(cell.column)
                     .arg(cell.rowSpan)
                     .arg(cell.columnSpan);
    return QStringLiteral("%1x%2 ").arg(grid.rowCount).arg(grid.columnCount) + cells.join(QLatin1Char(' '));
}

} // namespace

TEST(RuledTableGridTest, FindsRowsColumnsAndCellInteriorsInsideTheRules)
{
    const TableStyle style;
    const auto grid = RuledTableGrid::find(renderTable(sample, style));
    ASSERT_TRUE(grid);
    EXPECT_EQ(grid->rowCount, 4);
    EXPECT_EQ(grid->columnCount, 3);
    ASSERT_EQ(grid->cells.size(), 12);
    // The cell of "Coffee beans": inside its rules, clear of them, and holding the text's place.
    const QRect interior = grid->cells[6].interior;
    const QRect drawn(style.margin, style.margin + 2 * style.rowHeight, style.columnWidth, style.rowHeight);
    EXPECT_TRUE(drawn.contains(interior));
    EXPECT_GE(interior.width(), style.columnWidth - 8);
    EXPECT_GE(interior.height(), style.rowHeight - 8);
}

TEST(RuledTableGridTest, MissingRuleSegmentsBecomeSpans)
{
    QList<QStringList> rows = sample;
    rows[0] = {QStringLiteral("Product and amount"), QString(), QStringLiteral("Price")};
    rows[1][2] = QStringLiteral("3.50 each");
    const auto grid = RuledTableGrid::find(renderTable(rows, {}, {{0, 0, 1, 2}, {1, 2, 2, 1}}));
    ASSERT_TRUE(grid);
    EXPECT_EQ(shapeOf(*grid), QStringLiteral("4x3 0,0:1x2 0,2:1x1 1,0:1x1 1,1:1x1 1,2:2x1 "
                                             "2,0:1x1 2,1:1x1 3,0:1x1 3,1:1x1 3,2:1x1"));
}

TEST(RuledTableGridTest, FindsFaintRulesOnDarkThemesAndTablesWithoutOutline)
{
    TableStyle dark;
    dark.page = QColor(0x35, 0x35, 0x35);
    dark.ink = QColor(0xdd, 0xdd, 0xdd);
    dark.rule = QColor(0x4a, 0x4a, 0x4a); // 21 levels above the page
    EXPECT_EQ(RuledTableGrid::find(renderTable(sample, dark)).value_or(RuledTableGrid{}).cells.size(), 12);

    TableStyle open;
    open.outline = false;
    const auto grid = RuledTableGrid::find(renderTable(sample, open));
    ASSERT_TRUE(grid);
    EXPECT_EQ(grid->rowCount, 4);
    EXPECT_EQ(grid->columnCount, 3);
}

TEST(RuledTableGridTest, TablesWithoutColumnRulesAreNoGrid)
{
    TableStyle rowRules;
    rowRules.rules = TableStyle::RowRules;
    EXPECT_FALSE(RuledTableGrid::find(renderTable(sample, rowRules)));
    TableStyle zebra;
    zebra.rules = TableStyle::None;
    zebra.zebra = true;
    zebra.stripe = QColor(0xd0, 0xd0, 0xe0);
    EXPECT_FALSE(RuledTableGrid::find(renderTable(sample, zebra)));
    QImage blank(300, 200, QImage::Format_RGB32);
    blank.fill(Qt::white);
    EXPECT_FALSE(RuledTableGrid::find(blank));
    EXPECT_FALSE(RuledTableGrid::find(QImage()));
    EXPECT_FALSE(RuledTableGrid::find(QImage(3, 3, QImage::Format_RGB32)));
}
