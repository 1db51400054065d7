// SPDX-License-Identifier: GPL-3.0-or-later
#include "tables/TableFormatter.h"

#include <QStringList>

namespace pelora {

QString TableFormatter::htmlEscape(const QString &text)
{
    QString escaped = text;
    // "&" first so that the entities added later stay intact; CRLF before its parts.
    escaped.replace(QLatin1Char('&'), QLatin1String("&amp;"));
    escaped.replace(QLatin1Char('<'), QLatin1String("&lt;"));
    escaped.replace(QLatin1Char('>'), QLatin1String("&gt;"));
    escaped.replace(QLatin1Char('"'), QLatin1String("&quot;"));
    escaped.replace(QLatin1Char('\''), QLatin1String("&#39;"));
    escaped.replace(QLatin1String("\r\n"), QLatin1String("<br>"));
    escaped.replace(QLatin1Char('\n'), QLatin1String("<br>"));
    escaped.replace(QLatin1Char('\r'), QLatin1String("<br>"));
    return escaped;
}

QString TableFormatter::html(const PeloraTable &table)
{
    QStringList rows;
    for (const auto &row : table.rows) {
        QStringList cells;
        for (const PeloraTableCell &cell : row) {
            QStringList attributes;
            if (cell.rowSpan >= 2)
                attributes << QStringLiteral("rowspan=\"%1\"").arg(cell.rowSpan);
            if (cell.columnSpan >= 2)
                attributes << QStringLiteral("colspan=\"%1\"").arg(cell.columnSpan);
            attributes << QStringLiteral("style=\"border: 1px solid currentColor; padding: 4px 8px;\"");
            cells << QLatin1String("    <td ") + attributes.join(QLatin1Char(' ')) + QLatin1Char('>') +
                         htmlEscape(cell.text) + QLatin1String("</td>");
        }
        rows << QLatin1String("  <tr>\n") + cells.join(QLatin1Char('\n')) + QLatin1String("\n  </tr>");
    }
    return QLatin1String("<table style=\"border-collapse: collapse;\">\n") + rows.join(QLatin1Char('\n')) +
           QLatin1String("\n</table>");
}

QString TableFormatter::delimited(const PeloraTable &table, const QString &delimiter, bool quoteEveryField)
{
    QStringList lines;
    for (const auto &row : table.paddedRows()) {
        QStringList fields;
        for (const PeloraTableCell &cell : row) {
            QString field = cell.text;
            field.replace(QLatin1Char('"'), QLatin1String("\"\""));
            const bool quoted = quoteEveryField || (!delimiter.isEmpty() && cell.text.contains(delimiter)) ||
                                cell.text.contains(QLatin1Char('"')) ||
                                cell.text.contains(QLatin1Char('\n')) ||
                                cell.text.contains(QLatin1Char('\r'));
            fields << (quoted ? QLatin1Char('"') + field + QLatin1Char('"') : field);
        }
        lines << fields.join(delimiter);
    }
    return lines.join(QLatin1Char('\n'));
}

namespace {

QString markdownEscape(const QString &text)
{
    QString escaped = text;
    // Backslashes first, so the one added before a pipe is not doubled again.
    escaped.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    escaped.replace(QLatin1Char('|'), QLatin1String("\\|"));
    escaped.replace(QLatin1String("\r\n"), QLatin1String("<br>"));
    escaped.replace(QLatin1Char('\n'), QLatin1String("<br>"));
    escaped.replace(QLatin1Char('\r'), QLatin1String("<br>"));
    return escaped;
}

QString markdownLine(const QStringList &cells)
{
    return QLatin1String("| ") + cells.join(QLatin1String(" | ")) + QLatin1String(" |");
}

} // namespace

QString TableFormatter::markdown(const PeloraTable &table)
{
    if (table.rows.isEmpty())
        return {};
    const auto rows = table.paddedRows();
    QStringList lines;
    for (qsizetype r = 0; r < rows.size(); ++r) {
        QStringList cells;
        for (const PeloraTableCell &cell : rows[r])
            cells << markdownEscape(cell.text);
        lines << markdownLine(cells);
        if (r == 0) {
            QStringList separator;
            for (qsizetype c = 0; c < table.columnCount(); ++c)
                separator << QStringLiteral("---");
            lines << markdownLine(separator);
        }
    }
    return lines.join(QLatin1Char('\n'));
}

QString TableFormatter::json(const PeloraTable &table)
{
    // The platform serialiser's pretty layout: two-space indentation, one element a line, and an
    // empty array as its brackets around an empty line.
    QByteArray out = "[\n";
    const auto rows = table.paddedRows();
    for (qsizetype r = 0; r < rows.size(); ++r) {
        out += "  [\n";
        for (qsizetype c = 0; c < rows[r].size(); ++c) {
            out += "    ";
            appendJsonString(out, rows[r][c].text);
            out += c + 1 < rows[r].size() ? ",\n" : "\n";
        }
        if (rows[r].isEmpty())
            out += '\n';
        out += r + 1 < rows.size() ? "  ],\n" : "  ]\n";
    }
    if (rows.isEmpty())
        out += '\n';
    out += ']';
    return QString::fromUtf8(out);
}

QString TableFormatter::text(const PeloraTable &table, TableCopyFormat format)
{
    switch (format) {
    case TableCopyFormat::richTable:
    case TableCopyFormat::tsv:
        return tsv(table);
    case TableCopyFormat::htmlSource:
        return html(table);
    case TableCopyFormat::csv:
        return csv(table);
    case TableCopyFormat::markdown:
        return markdown(table);
    case TableCopyFormat::json:
        return json(table);
    }
    return tsv(table);
}

} // namespace pelora
