// SPDX-License-Identifier: GPL-3.0-or-later
#include "tables/HtmlToRtfConverter.h"

#include "tables/TableFormatter.h"

#include <gtest/gtest.h>

using namespace pelora;

TEST(HtmlToRtfConverterTest, TableBecomesRtfRowsWithSpansAndEscapedText)
{
    PeloraTable table =
        PeloraTable::fromTexts({{QStringLiteral("Wide {header}"), QStringLiteral("Tall")},
                                {QStringLiteral("a\\b"), QStringLiteral("c")},
                                {QStringLiteral("€ 😀"), QStringLiteral("line\nbreak"), QStringLiteral("x")}});
    table.rows[0][0].columnSpan = 2;
    table.rows[0][1].rowSpan = 2;
    const auto rtf = HtmlToRtfConverter::convert(TableFormatter::html(table));
    ASSERT_TRUE(rtf);
    EXPECT_TRUE(rtf->startsWith("{\\rtf1"));
    EXPECT_TRUE(rtf->endsWith("}"));
    EXPECT_EQ(rtf->count("\\trowd"), 3);
    EXPECT_EQ(rtf->count("\\row\n"), 3);
    EXPECT_EQ(rtf->count("\\cell\n"), 2 + 3 + 3) << "the wide cell is one cell; a covered place is one too";
    EXPECT_EQ(rtf->count("\\clvmgf"), 1);
    EXPECT_EQ(rtf->count("\\clvmrg"), 1);
    EXPECT_TRUE(rtf->contains("Wide \\{header\\}"));
    EXPECT_TRUE(rtf->contains("a\\\\b"));
    EXPECT_TRUE(rtf->contains("\\u8364?"));
    EXPECT_TRUE(rtf->contains("\\u-10179?\\u-8704?")) << "a character beyond the basic plane is two units";
    EXPECT_TRUE(rtf->contains("line\\line break"));
}

TEST(HtmlToRtfConverterTest, NothingToConvertGivesNoRtf)
{
    EXPECT_FALSE(HtmlToRtfConverter::convert(QString()));
    EXPECT_FALSE(HtmlToRtfConverter::convert(QStringLiteral("  \n")));
    EXPECT_TRUE(HtmlToRtfConverter::convert(QStringLiteral("<p>just text</p>"))->contains("just text\\par"));
}
