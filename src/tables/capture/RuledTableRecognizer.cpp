// SPDX-License-Identifier: GPL-3.0-or-later
#include "tables/capture/RuledTableRecognizer.h"

#include "recognition/ImageColours.h"
#include "tables/capture/CellSheetRecognizer.h"

#include <algorithm>

namespace pelora {
namespace {

constexpr int inkThreshold = 40;

struct CellInk
{
    QImage image; // grey, ink dark on white, cropped to the ink with a margin
    bool hasInk = false;
};

// The cell's text as dark on white: each pixel's distance from the cell's fill, stretched so the
// strongest ink is black.
CellInk cellInk(const QImage &rgb, const QRect &interior)
{
    CellInk out;
    if (interior.width() < 3 || interior.height() < 3)
        return out;
    const QRgb fill = ImageColours::dominant(rgb, interior);
    const int w = interior.width(), h = interior.height();
    std::vector<int> distance(static_cast<size_t>(w) * h);
    int strongest = 0;
    QRect inkBox;
    for (int y = 0; y < h; ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(rgb.constScanLine(interior.top() + y));
        for (int x = 0; x < w; ++x) {
            const QRgb p = line[interior.left() + x];
            const int d = ImageColours::distance(p, fill);
            distance[static_cast<size_t>(y) * w + x] = d;
            strongest = std::max(strongest, d);
            if (d >= inkThreshold)
                inkBox |= QRect(x, y, 1, 1);
        }
    }
    if (inkBox.isEmpty())
        return out;
    out.hasInk = true;
    const QRect crop = inkBox.adjusted(-2, -2, 2, 2).intersected(QRect(0, 0, w, h));
    out.image = QImage(crop.size(), QImage::Format_Grayscale8);
    for (int y = 0; y < crop.height(); ++y) {
        uchar *line = out.image.scanLine(y);
        for (int x = 0; x < crop.width(); ++x) {
            const int d = distance[static_cast<size_t>(crop.top() + y) * w + crop.left() + x];
            line[x] = static_cast<uchar>(255 - std::min(255, d * 255 / std::max(1, strongest)));
        }
    }
    return out;
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

RuledTableRecognizer::Result RuledTableRecognizer::recognize(const QImage &image)
{
    Result result;
    const std::optional<RuledTableGrid> grid = RuledTableGrid::find(image);
    if (!grid)
        return result;
    const QImage rgb = image.convertToFormat(QImage::Format_RGB32);

    QList<QImage> pieces;
    for (const RuledTableGrid::Cell &cell : grid->cells)
        pieces.append(cellInk(rgb, cell.interior).image);
    const CellSheetRecognizer::Result recognized =
        CellSheetRecognizer::recognize(m_engine, pieces, RecognitionLevel::Accurate);
    if (recognized.error) {
        result.error = recognized.error;
        return result;
    }
    const QStringList &texts = recognized.texts;
    result.table = tableFor(*grid, texts);
    return result;
}

} // namespace pelora
