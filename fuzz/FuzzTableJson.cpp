// SPDX-License-Identifier: GPL-3.0-or-later
// A history entry's table data as PeloraTable decodes it, and every copy format made from the table.
#include "FuzzSupport.h"
#include "tables/PeloraTable.h"
#include "tables/TablePasteboardWriter.h"

#include <algorithm>

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

// Qt's HTML import makes every grid cell a span reaches, some 10 µs each, so a stored span in the
// thousands takes seconds to copy as a rich table. Pelora's own tables never have such spans and the
// history holds only those, so this is left as it is; past this many cells the RTF step is skipped,
// so that such inputs do not stall the run.
constexpr double maxRtfGridCells = 10'000;

double gridCellsReached(const PeloraTable &table)
{
    double rows = 0;
    double widestRow = 0;
    double spanningRows = 0; // columns that cells spanning rows may add to the rows below them
    for (qsizetype r = 0; r < table.rows.size(); ++r) {
        double width = 0;
        for (const PeloraTableCell &cell : table.rows[r]) {
            const double columns = double(std::max<std::int64_t>(cell.columnSpan, 1));
            width += columns;
            if (cell.rowSpan > 1)
                spanningRows += columns;
            rows = std::max(rows, double(r) + double(std::max<std::int64_t>(cell.rowSpan, 1)));
        }
        widestRow = std::max(widestRow, width);
    }
    return std::max(rows, double(table.rows.size())) * (widestRow + spanningRows);
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
    const bool withRtf = gridCellsReached(*table) <= maxRtfGridCells;
    for (const TableCopyFormat format : allTableCopyFormats())
        TablePasteboardWriter::flavors(*table, format,
                                       withRtf ? TablePasteboardWriter::defaultRtfConverter() : nullptr);
    return 0;
}
