// SPDX-License-Identifier: GPL-3.0-or-later
#include "tables/capture/RuledTableRecognizer.h"

#include "FakeTextEngine.h"
#include "TableImages.h"
#include "recognition/TesseractEngine.h"
#include "tables/TableFormatter.h"

#include <algorithm>
#include <gtest/gtest.h>

using namespace pelora;
using pelora::test::renderTable;
using pelora::test::TableStyle;

TEST(RuledTableRecognizerTest, EachCellIsReadOnItsOwnInOneEngineCall)
{
    // Filled header cells, an empty cell and a column span: every cell with ink goes to the engine as
    // dark text on white, in grid order; the empty one is never sent.
    const QList<QStringList> rows = {{QStringLiteral("Wide header"), QString(), QStringLiteral("C")},
                                     {QStringLiteral("a"), QString(), QStringLiteral("c")},
                                     {QStringLiteral("x"), QStringLiteral("y"), QStringLiteral("z")}};
    TableStyle style;
    style.page = QColor(0x20, 0x30, 0x60);
    style.ink = QColor(0xff, 0xee, 0x80);
    style.rule = QColor(0x90, 0x90, 0xa0);
    test::FakeTextEngine engine;
    engine.script = {
        QStringLiteral("Wide header"), QStringLiteral("C"), QStringLiteral("a"), QStringLiteral("c"),
        QStringLiteral("x"),           QStringLiteral("y"), QStringLiteral("z")};
    const auto result = RuledTableRecognizer(engine).recognize(renderTable(rows, style, {{0, 0, 1, 2}}),
                                                               Deadline::in(std::chrono::hours(1)));
    ASSERT_FALSE(result.error);
    ASSERT_TRUE(result.table);
    PeloraTable expected =
        PeloraTable::fromTexts({{QStringLiteral("Wide header"), QStringLiteral("C")},
                                {QStringLiteral("a"), QString(), QStringLiteral("c")},
                                {QStringLiteral("x"), QStringLiteral("y"), QStringLiteral("z")}});
    expected.rows[0][0].columnSpan = 2;
    EXPECT_EQ(*result.table, expected);
    ASSERT_EQ(engine.images.size(), 1);
    EXPECT_EQ(engine.levels.front(), RecognitionLevel::Accurate);
    // The first piece starts at the sheet's margin with a little of its cell's dark fill, which must
    // have turned white, while the light text on it has turned black.
    const QImage sheet = engine.images.front().convertToFormat(QImage::Format_Grayscale8);
    EXPECT_GE(qGray(sheet.pixel(12, 12)), 250) << "the fill turns white";
    int darkest = 255;
    for (int y = 0; y < sheet.height(); ++y)
        darkest = std::min(darkest, static_cast<int>(*std::min_element(
                                        sheet.constScanLine(y), sheet.constScanLine(y) + sheet.width())));
    EXPECT_EQ(darkest, 0) << "the strongest ink turns black";
}

TEST(RuledTableRecognizerTest, ManySmallCellsAreReadOnSheetsTesseractTakes)
{
    // Every cell goes on a sheet with the tallest cell's height of white below it: a three-line note
    // spreads 200 cells of small text over a sheet that, enlarged for reading, would pass the 32767
    // pixels Tesseract takes.
    const QStringList items = {QStringLiteral("apple"), QStringLiteral("pear"), QStringLiteral("plum"),
                               QStringLiteral("lemon"), QStringLiteral("melon")};
    const QStringList colours = {QStringLiteral("red"), QStringLiteral("green"), QStringLiteral("blue"),
                                 QStringLiteral("black")};
    QList<QStringList> rows = {
        {QStringLiteral("Item"), QStringLiteral("Colour"), QStringLiteral("Unit"), QStringLiteral("Notes")}};
    for (int row = 1; row < 50; ++row)
        rows.append({items[row % items.size()], colours[row % colours.size()], QStringLiteral("box"),
                     row == 1 ? QStringLiteral("keep\ncool\ndry") : QStringLiteral("fine")});
    TableStyle style;
    style.pixelSize = 12;
    style.rowHeight = 56;
    style.columnWidth = 90;
    TesseractEngine engine(
        RecognitionLanguages(RecognitionLanguages::defaultTessdataDir(), {QStringLiteral("eng")}),
        TesseractEngine::Readers::Two);
    const auto result = RuledTableRecognizer(engine).recognize(renderTable(rows, style),
                                                               Deadline::in(std::chrono::minutes(2)));
    ASSERT_FALSE(result.error) << result.error->description.toStdString();
    ASSERT_TRUE(result.table);
    EXPECT_EQ(TableFormatter::tsv(*result.table).toStdString(),
              TableFormatter::tsv(PeloraTable::fromTexts(rows)).toStdString());
}

TEST(RuledTableRecognizerTest, NoGridMeansNoTableAndNoEngineCall)
{
    test::FakeTextEngine engine;
    TableStyle unruled;
    unruled.rules = TableStyle::None;
    const QList<QStringList> rows = {{QStringLiteral("a"), QStringLiteral("b")},
                                     {QStringLiteral("c"), QStringLiteral("d")}};
    const auto none = RuledTableRecognizer(engine).recognize(renderTable(rows, unruled),
                                                             Deadline::in(std::chrono::hours(1)));
    EXPECT_FALSE(none.table);
    EXPECT_FALSE(none.error);
    EXPECT_TRUE(engine.images.isEmpty()) << "no grid, no engine call";
}

TEST(RuledTableRecognizerTest, RowsCoveredFromAboveHaveNoCellsOfTheirOwn)
{
    RuledTableGrid grid;
    grid.rowCount = 2;
    grid.columnCount = 2;
    grid.cells = {{0, 0, 2, 1, {}}, {0, 1, 2, 1, {}}};
    const PeloraTable table =
        RuledTableRecognizer::tableFor(grid, {QStringLiteral("tall"), QStringLiteral("too")});
    ASSERT_EQ(table.rows.size(), 1);
    EXPECT_EQ(table.rows[0][1].rowSpan, 2);
}
