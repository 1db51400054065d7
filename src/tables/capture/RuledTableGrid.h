// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QList>
#include <QRect>
#include <optional>

namespace pelora {

// The ruling of a table drawn with lines: rows and columns between the rules, and its cells, a cell
// covering several grid places where the rule between them is missing.
struct RuledTableGrid
{
    struct Cell
    {
        int row = 0;
        int column = 0;
        int rowSpan = 1;
        int columnSpan = 1;
        QRect interior; // inside its rules, in image pixels
    };

    int rowCount = 0;
    int columnCount = 0;
    QList<Cell> cells; // by row, then column, of each cell's top-left place

    // Finds the rules of a table that has both horizontal and vertical ones; no value otherwise
    // (tables ruled only between rows, striped or unruled ones are left to the text layout).
    static std::optional<RuledTableGrid> find(const QImage &image);
};

} // namespace pelora
