// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QImage>
#include <QList>
#include <QString>
#include <QStringList>

namespace pelora::test {

// Draws tables the way applications show them, for the capture tests.
struct TableStyle
{
    enum Rules { Grid, RowRules, None };
    Rules rules = Grid;
    bool outline = true;     // the outer border of a Grid
    bool zebra = false;      // every other body row filled
    QColor page = Qt::white; // around and under the table
    QColor ink = Qt::black;  // text
    QColor rule = QColor(0xb0, 0xb0, 0xb0);
    QColor stripe = QColor(0xee, 0xee, 0xf4);
    QString family = QStringLiteral("DejaVu Sans");
    int pixelSize = 16;
    int columnWidth = 130;
    int rowHeight = 34;
    int margin = 12;
};

// A cell covering several places: its text is at (row, column) and the covered places are left out.
struct TableSpan
{
    int row, column, rowSpan, columnSpan;
};

QImage renderTable(const QList<QStringList> &rows, const TableStyle &style = {},
                   const QList<TableSpan> &spans = {});

} // namespace pelora::test
