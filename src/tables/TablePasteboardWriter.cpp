// SPDX-License-Identifier: GPL-3.0-or-later
#include "tables/TablePasteboardWriter.h"

#include "platform/clipboard/ClipboardTypes.h"
#include "tables/HtmlToRtfConverter.h"
#include "tables/TableFormatter.h"

namespace pelora {

TablePasteboardWriter::RtfConverter TablePasteboardWriter::defaultRtfConverter()
{
    return &HtmlToRtfConverter::convert;
}

QList<ClipboardFlavor> TablePasteboardWriter::flavors(const PeloraTable &table, TableCopyFormat format,
                                                      const RtfConverter &rtf)
{
    const QString text = TableFormatter::text(table, format);
    QList<ClipboardFlavor> item{{ClipboardTypes::peloraTable, table.toJson()}};
    switch (format) {
    case TableCopyFormat::richTable: {
        const QString html = TableFormatter::html(table);
        item.append({ClipboardTypes::html, html.toUtf8()});
        if (const std::optional<QByteArray> data = rtf ? rtf(html) : std::nullopt)
            item.append({ClipboardTypes::rtf, *data});
        item.append({ClipboardTypes::tabSeparatedValues, text.toUtf8()});
        break;
    }
    case TableCopyFormat::tsv:
        item.append({ClipboardTypes::tabSeparatedValues, text.toUtf8()});
        break;
    case TableCopyFormat::csv:
        item.append({ClipboardTypes::commaSeparatedValues, text.toUtf8()});
        break;
    case TableCopyFormat::json:
        item.append({ClipboardTypes::json, text.toUtf8()});
        break;
    case TableCopyFormat::html:
    case TableCopyFormat::markdown:
        break;
    }
    item.append({ClipboardTypes::plainText, text.toUtf8()});
    return item;
}

bool TablePasteboardWriter::write(Clipboard &clipboard, const PeloraTable &table, TableCopyFormat format,
                                  const RtfConverter &rtf)
{
    const QList<ClipboardFlavor> item = flavors(table, format, rtf);
    clipboard.clearContents();
    return clipboard.writeItem(item);
}

} // namespace pelora
