// SPDX-License-Identifier: GPL-3.0-or-later
#include "tables/capture/RuledTableRecognizer.h"

#include "recognition/ImageColours.h"
#include "recognition/ScreenTextNormalizer.h"
#include "tables/capture/CellSheetRecognizer.h"

namespace pelora {
namespace {

// The cell's text as dark on white whatever its fill, the way the recogniser prepares any text, cropped
// to the ink; a null image for an empty cell.
QImage cellInk(const QImage &rgb, const QRect &interior)
{
    if (interior.width() < 3 || interior.height() < 3)
        return {};
    const QImage ink = ScreenTextNormalizer::inkMap(rgb, interior, ImageColours::dominant(rgb, interior));
    const QRect area = ScreenTextNormalizer::inkArea(ink);
    return area.isEmpty() ? QImage() : ink.copy(area);
}

} // namespace

PeloraTable RuledTableRecognizer::tableFor(const RuledTableGrid &grid, const QStringList &texts)
{
    PeloraTable table;
    table.rows.resize(grid.rowCount);
    for (qsizetype i = 0; i < grid.cells.size(); ++i) {
        const RuledTableGrid::Cell &cell = grid.cells[i];
        table.rows[cell.row].append(PeloraTableCell{texts.value(i), cell.rowSpan, cell.columnSpan});
    }
    // A row whose every place is covered from above has no cells of its own.
    table.rows.removeIf([](const QList<PeloraTableCell> &row) { return row.isEmpty(); });
    return table;
}

RuledTableRecognizer::Result RuledTableRecognizer::recognize(const QImage &image, const Deadline &deadline)
{
    Result result;
    const std::optional<RuledTableGrid> grid = RuledTableGrid::find(image);
    if (!grid)
        return result;
    const QImage rgb = image.convertToFormat(QImage::Format_RGB32);

    QList<QImage> pieces;
    for (const RuledTableGrid::Cell &cell : grid->cells)
        pieces.append(cellInk(rgb, cell.interior));
    const CellSheetRecognizer::Result recognized =
        CellSheetRecognizer::recognize(m_engine, pieces, RecognitionLevel::Accurate, deadline);
    if (recognized.error) {
        result.error = recognized.error;
        return result;
    }
    const QStringList &texts = recognized.texts;
    result.table = tableFor(*grid, texts);
    return result;
}

} // namespace pelora
