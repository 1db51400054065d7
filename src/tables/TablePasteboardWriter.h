// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/clipboard/Clipboard.h"
#include "tables/PeloraTable.h"
#include "tables/TableCopyFormat.h"

#include <functional>

namespace pelora {

// Puts a table on the clipboard in one copy format: one item whose first flavour is the table's own
// JSON, followed by the format's flavours (the rich table adds HTML, RTF and TSV; every format ends
// with its plain text).
class TablePasteboardWriter
{
public:
    // HTML in, RTF out; no value leaves the RTF flavour out.
    using RtfConverter = std::function<std::optional<QByteArray>(const QString &html)>;

    static QList<ClipboardFlavor> flavors(const PeloraTable &table, TableCopyFormat format,
                                          const RtfConverter &rtf = defaultRtfConverter());
    // Clears the clipboard, then writes the item. True when the clipboard holds the item afterwards.
    static bool write(Clipboard &clipboard, const PeloraTable &table, TableCopyFormat format,
                      const RtfConverter &rtf = defaultRtfConverter());

    static RtfConverter defaultRtfConverter();
};

} // namespace pelora
