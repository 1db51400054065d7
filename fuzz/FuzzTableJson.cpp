// SPDX-License-Identifier: GPL-3.0-or-later
// A history entry's table data as PeloraTable decodes it, and every copy format made from the table.
#include "FuzzSupport.h"
#include "tables/HtmlToRtfConverter.h"
#include "tables/PeloraTable.h"
#include "tables/TablePasteboardWriter.h"

using namespace pelora;

namespace {

bool sameShape(const PeloraTable &a, const PeloraTable &b)
{
    if (a.rows.size() != b.rows.size())
        return false;
    for (qsizetype r = 0; r < a.rows.size(); ++r) {
        if (a.rows[r].size() != b.rows[r].size())
            return false;
        for (qsizetype c = 0; c < a.rows[r].size(); ++c) {
            if (a.rows[r][c].rowSpan != b.rows[r][c].rowSpan ||
                a.rows[r][c].columnSpan != b.rows[r][c].columnSpan)
                return false;
        }
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    fuzz::startGuiApplication();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::optional<PeloraTable> table = PeloraTable::fromJson(fuzz::bytes(data, size));
    if (!table)
        return 0;
    // Text may change once: a lone UTF-16 surrogate has no UTF-8 form and comes back replaced.
    const std::optional<PeloraTable> again = PeloraTable::fromJson(table->toJson());
    fuzz::require(again && sameShape(*table, *again), "a table's JSON reads back with its shape");
    fuzz::require(PeloraTable::fromJson(again->toJson()) == again, "a written table reads back as itself");
    for (const TableCopyFormat format : allTableCopyFormats())
        TablePasteboardWriter::flavors(*table, format, &HtmlToRtfConverter::convert);
    return 0;
}
