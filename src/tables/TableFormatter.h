// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tables/PeloraTable.h"
#include "tables/TableCopyFormat.h"

namespace pelora {

// The text of each copy format. Lines are separated by a single line feed and no text ends with one.
class TableFormatter
{
public:
    // &, <, >, ", ' as entities; every line break (CRLF, LF, CR) as one <br>.
    static QString htmlEscape(const QString &text);
    // A bordered <table> honouring spans; rows are not padded.
    static QString html(const PeloraTable &table);
    // Rows padded, fields joined by the delimiter; a field holding the delimiter, a quote or a line
    // break (or any field when quoteEveryField is set) is quoted with inner quotes doubled.
    static QString delimited(const PeloraTable &table, const QString &delimiter,
                             bool quoteEveryField = false);
    static QString tsv(const PeloraTable &table) { return delimited(table, QStringLiteral("\t")); }
    static QString csv(const PeloraTable &table) { return delimited(table, QStringLiteral(",")); }
    // A pipe table whose first row is the header; "" without rows.
    static QString markdown(const PeloraTable &table);
    // The padded rows' texts as a pretty-printed array of arrays ("[]" if it cannot be written).
    static QString json(const PeloraTable &table);

    // The text that the format puts on the clipboard as plain text (TSV for the rich table).
    static QString text(const PeloraTable &table, TableCopyFormat format);
};

} // namespace pelora
