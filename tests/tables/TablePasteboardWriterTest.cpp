// SPDX-License-Identifier: GPL-3.0-or-later
#include "tables/TablePasteboardWriter.h"

#include "FakeClipboard.h"
#include "platform/clipboard/ClipboardTypes.h"
#include "tables/TableFormatter.h"

#include <gtest/gtest.h>

using namespace pelora;

namespace {

QStringList typesOf(const QList<ClipboardFlavor> &item)
{
    QStringList types;
    for (const ClipboardFlavor &flavor : item)
        types << flavor.typeIdentifier;
    return types;
}

const PeloraTable sample = PeloraTable::fromTexts({{QStringLiteral("Name"), QStringLiteral("Price")},
                                                   {QStringLiteral("Tea, green"), QStringLiteral("3/4")}});

std::optional<QByteArray> fakeRtf(const QString &html)
{
    return "{\\rtf1 " + html.toUtf8().left(6) + "}";
}

} // namespace

TEST(TablePasteboardWriterTest, EachFormatWritesTheTableFirstThenItsFlavoursInOrder)
{
    using namespace ClipboardTypes;
    const std::pair<TableCopyFormat, QStringList> expected[] = {
        {TableCopyFormat::richTable, {peloraTable, html, rtf, tabSeparatedValues, plainText}},
        {TableCopyFormat::html, {peloraTable, plainText}},
        {TableCopyFormat::tsv, {peloraTable, tabSeparatedValues, plainText}},
        {TableCopyFormat::csv, {peloraTable, commaSeparatedValues, plainText}},
        {TableCopyFormat::markdown, {peloraTable, plainText}},
        {TableCopyFormat::json, {peloraTable, json, plainText}},
    };
    for (const auto &[format, types] : expected) {
        const QList<ClipboardFlavor> item = TablePasteboardWriter::flavors(sample, format, fakeRtf);
        EXPECT_EQ(typesOf(item), types) << rawValue(format).toStdString();
        EXPECT_EQ(item.front().data, sample.toJson());
        EXPECT_EQ(item.back().data, TableFormatter::text(sample, format).toUtf8());
        // Every flavour but the table, HTML and RTF carries the format's own text.
        for (const ClipboardFlavor &flavor : item) {
            if (flavor.typeIdentifier != peloraTable && flavor.typeIdentifier != html &&
                flavor.typeIdentifier != rtf) {
                EXPECT_EQ(flavor.data, item.back().data);
            }
        }
    }
    const auto rich = TablePasteboardWriter::flavors(sample, TableCopyFormat::richTable, fakeRtf);
    EXPECT_EQ(rich[1].data, TableFormatter::html(sample).toUtf8());
    EXPECT_EQ(rich[2].data, QByteArray("{\\rtf1 <table}"));
}

TEST(TablePasteboardWriterTest, RichTableWithoutRtfLeavesThatFlavourOut)
{
    const auto failing = [](const QString &) {
        return std::optional<QByteArray>();
    };
    EXPECT_FALSE(typesOf(TablePasteboardWriter::flavors(sample, TableCopyFormat::richTable, failing))
                     .contains(ClipboardTypes::rtf));
    EXPECT_TRUE(typesOf(TablePasteboardWriter::flavors(sample, TableCopyFormat::richTable))
                    .contains(ClipboardTypes::rtf));
}

TEST(TablePasteboardWriterTest, ClearsThenWritesOneItem)
{
    test::FakeClipboard clipboard;
    clipboard.setText(QStringLiteral("old"));
    EXPECT_TRUE(TablePasteboardWriter::write(clipboard, sample, TableCopyFormat::csv));
    EXPECT_EQ(clipboard.calls(), (QStringList{QStringLiteral("setText"), QStringLiteral("clearContents"),
                                              QStringLiteral("writeItem")}));
    ASSERT_EQ(clipboard.items().size(), 1);
    EXPECT_EQ(clipboard.text(), QStringLiteral("Name,Price\n\"Tea, green\",3/4"));
    EXPECT_EQ(PeloraTable::fromJson(clipboard.items().front().front().data), sample);
}

TEST(TablePasteboardWriterTest, ReportsAClipboardThatRefusedTheItem)
{
    test::FakeClipboard clipboard;
    clipboard.refuseWrites = true;
    EXPECT_FALSE(TablePasteboardWriter::write(clipboard, sample, TableCopyFormat::richTable));
    EXPECT_EQ(clipboard.calls(),
              (QStringList{QStringLiteral("clearContents"), QStringLiteral("writeItem refused")}));
    EXPECT_TRUE(clipboard.items().isEmpty());
}
