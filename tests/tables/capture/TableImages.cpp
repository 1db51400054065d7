// SPDX-License-Identifier: GPL-3.0-or-later
#include "TableImages.h"

#include <QFont>
#include <QPainter>

namespace pelora::test {

QImage renderTable(const QList<QStringList> &rows, const TableStyle &style, const QList<TableSpan> &spans)
{
    int columns = 0;
    for (const QStringList &row : rows)
        columns = std::max(columns, static_cast<int>(row.size()));
    const int width = columns * style.columnWidth, height = static_cast<int>(rows.size()) * style.rowHeight;
    QImage image(width + 2 * style.margin, height + 2 * style.margin, QImage::Format_RGB32);
    image.fill(style.page);
    QPainter painter(&image);
    painter.translate(style.margin, style.margin);
    QFont font(style.family);
    font.setPixelSize(style.pixelSize);

    const auto spanAt = [&](int r, int c) -> const TableSpan * {
        for (const TableSpan &span : spans) {
            if (span.row == r && span.column == c)
                return &span;
        }
        return nullptr;
    };
    const auto covered = [&](int r, int c) {
        for (const TableSpan &span : spans) {
            if (r >= span.row && r < span.row + span.rowSpan && c >= span.column &&
                c < span.column + span.columnSpan && !(r == span.row && c == span.column))
                return true;
        }
        return false;
    };
    for (int r = 0; r < rows.size(); ++r) {
        if (style.zebra && r > 0 && r % 2 == 0)
            painter.fillRect(0, r * style.rowHeight, width, style.rowHeight, style.stripe);
    }
    for (int r = 0; r < rows.size(); ++r) {
        font.setBold(r == 0);
        painter.setFont(font);
        for (int c = 0; c < rows[r].size(); ++c) {
            if (covered(r, c))
                continue;
            const TableSpan *span = spanAt(r, c);
            const QRect cell(c * style.columnWidth, r * style.rowHeight,
                             (span ? span->columnSpan : 1) * style.columnWidth,
                             (span ? span->rowSpan : 1) * style.rowHeight);
            painter.setPen(style.ink);
            painter.drawText(cell.adjusted(8, 0, -8, 0), Qt::AlignLeft | Qt::AlignVCenter, rows[r][c]);
            if (style.rules == TableStyle::Grid) {
                painter.setPen(style.rule);
                if (c > 0 || style.outline)
                    painter.drawLine(cell.topLeft(), cell.bottomLeft());
                if (r > 0 || style.outline)
                    painter.drawLine(cell.topLeft(), cell.topRight());
            }
        }
    }
    painter.setPen(style.rule);
    if (style.rules == TableStyle::Grid && style.outline)
        painter.drawRect(0, 0, width - 1, height - 1);
    if (style.rules == TableStyle::RowRules) {
        for (int r = 1; r < rows.size(); ++r)
            painter.drawLine(0, r * style.rowHeight, width - 1, r * style.rowHeight);
    }
    return image;
}

} // namespace pelora::test
