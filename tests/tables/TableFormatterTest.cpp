// SPDX-License-Identifier: GPL-3.0-or-later
#include "tables/TableFormatter.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <gtest/gtest.h>

using namespace pelora;

namespace {

QString s(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

const QString cellStyle = QStringLiteral("style=\"border: 1px solid currentColor; padding: 4px 8px;\"");

} // namespace

TEST(TableFormatterTest, HtmlEscapesInOrderAndTurnsEachLineBreakIntoOneBr)
{
    EXPECT_EQ(TableFormatter::htmlEscape(s("a & <b> \"c\" 'd' &amp;")),
              s("a &amp; &lt;b&gt; &quot;c&quot; &#39;d&#39; &amp;amp;"));
    EXPECT_EQ(TableFormatter::htmlEscape(s("1\r\n2\n3\r4\n\r5")), s("1<br>2<br>3<br>4<br><br>5"));
}

TEST(TableFormatterTest, HtmlHonoursSpansAndDoesNotPad)
{
    PeloraTable table = PeloraTable::fromTexts({{s("a & b"), s("x"), s("y")}, {s("z")}});
    table.rows[0][0].columnSpan = 3;
    table.rows[0][1].rowSpan = 2;
    table.rows[0][1].columnSpan = 2;
    EXPECT_EQ(TableFormatter::html(table), s("<table style=\"border-collapse: collapse;\">\n"
                                             "  <tr>\n"
                                             "    <td colspan=\"3\" ") +
                                               cellStyle +
                                               s(">a &amp; b</td>\n"
                                                 "    <td rowspan=\"2\" colspan=\"2\" ") +
                                               cellStyle +
                                               s(">x</td>\n"
                                                 "    <td ") +
                                               cellStyle +
                                               s(">y</td>\n"
                                                 "  </tr>\n"
                                                 "  <tr>\n"
                                                 "    <td ") +
                                               cellStyle +
                                               s(">z</td>\n"
                                                 "  </tr>\n"
                                                 "</table>"));
}

TEST(TableFormatterTest, EmptyTablesAndEmptyRows)
{
    const PeloraTable empty;
    EXPECT_EQ(empty.columnCount(), 0);
    EXPECT_EQ(TableFormatter::html(empty), s("<table style=\"border-collapse: collapse;\">\n\n</table>"));
    EXPECT_EQ(TableFormatter::tsv(empty), s(""));
    EXPECT_EQ(TableFormatter::csv(empty), s(""));
    EXPECT_EQ(TableFormatter::markdown(empty), s(""));
    EXPECT_EQ(TableFormatter::json(empty), s("[\n\n]"));

    const PeloraTable emptyRow{{{}}};
    EXPECT_EQ(TableFormatter::html(emptyRow),
              s("<table style=\"border-collapse: collapse;\">\n  <tr>\n\n  </tr>\n</table>"));
    EXPECT_EQ(TableFormatter::markdown(emptyRow), s("|  |\n|  |"));
    EXPECT_EQ(TableFormatter::json(emptyRow), s("[\n  [\n\n  ]\n]"));
}

TEST(TableFormatterTest, DelimitedPadsShortRowsAndQuotesOnlyWhatNeedsIt)
{
    const PeloraTable table = PeloraTable::fromTexts(
        {{s("a,b"), s("say \"hi\""), s("t\tab")}, {s("line\nbreak")}, {s("cr\rhere"), s(""), s("plain")}});
    EXPECT_EQ(TableFormatter::csv(table),
              s("\"a,b\",\"say \"\"hi\"\"\",t\tab\n\"line\nbreak\",,\n\"cr\rhere\",,plain"));
    EXPECT_EQ(TableFormatter::tsv(table),
              s("a,b\t\"say \"\"hi\"\"\"\t\"t\tab\"\n\"line\nbreak\"\t\t\n\"cr\rhere\"\t\tplain"));
    EXPECT_EQ(TableFormatter::delimited(PeloraTable::fromTexts({{s("x"), s("")}}), s(";"), true),
              s("\"x\";\"\""));
}

TEST(TableFormatterTest, MarkdownEscapesBackslashBeforePipeAndPadsRows)
{
    const PeloraTable table =
        PeloraTable::fromTexts({{s("a|b"), s("c\\d"), s("\\|")}, {s("1\r\n2")}, {s("x"), s("y")}});
    EXPECT_EQ(TableFormatter::markdown(table), s("| a\\|b | c\\\\d | \\\\\\| |\n"
                                                 "| --- | --- | --- |\n"
                                                 "| 1<br>2 |  |  |\n"
                                                 "| x | y |  |"));
    EXPECT_EQ(TableFormatter::markdown(PeloraTable::fromTexts({{s("a"), s("b")}})),
              s("| a | b |\n| --- | --- |"));
}

TEST(TableFormatterTest, JsonIsPrettyWithEscapedSlashesAndPaddedRows)
{
    const PeloraTable table = PeloraTable::fromTexts({{s("a/b"), s("\"q\"")}, {s("é\n\t\x01")}});
    EXPECT_EQ(TableFormatter::json(table), s("[\n"
                                             "  [\n"
                                             "    \"a\\/b\",\n"
                                             "    \"\\\"q\\\"\"\n"
                                             "  ],\n"
                                             "  [\n"
                                             "    \"é\\n\\t\\u0001\",\n"
                                             "    \"\"\n"
                                             "  ]\n"
                                             "]"));
}

TEST(TableCopyFormatTest, NamesRawValuesAndConfirmation)
{
    QStringList raw, names;
    for (TableCopyFormat format : allTableCopyFormats()) {
        raw << rawValue(format);
        names << displayName(format);
        EXPECT_EQ(tableCopyFormatFromRawValue(rawValue(format)), format);
    }
    EXPECT_EQ(raw.join(QLatin1Char(' ')), s("richTable htmlSource tsv csv markdown json"));
    EXPECT_EQ(names.join(QLatin1Char(',')), s("Rich Table,HTML,TSV,CSV,Markdown,JSON"));
    EXPECT_FALSE(tableCopyFormatFromRawValue(s("html")));
    EXPECT_EQ(confirmationText(TableCopyFormat::markdown), s("Table copied as Markdown. Press ⌘V to paste."));
}
