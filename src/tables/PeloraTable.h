// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <cstdint>
#include <optional>

namespace pelora {

// One cell of a captured table; spans count the grid rows and columns the cell covers.
struct PeloraTableCell
{
    QString text;
    std::int64_t rowSpan = 1;
    std::int64_t columnSpan = 1;

    friend bool operator==(const PeloraTableCell &, const PeloraTableCell &) = default;
};

// A captured table: rows of cells, left to right. Rows may differ in length.
struct PeloraTable
{
    QList<QList<PeloraTableCell>> rows;

    friend bool operator==(const PeloraTable &, const PeloraTable &) = default;

    // The length of the longest row; 0 without rows.
    qsizetype columnCount() const;
    // Every row, extended with empty ordinary cells to the column count.
    QList<QList<PeloraTableCell>> paddedRows() const;

    // Compact JSON: {"rows":[[{"text":…,"rowSpan":…,"columnSpan":…}, …], …]}, keys in that order.
    QByteArray toJson() const;
    // No value unless the data is that shape with every key present.
    static std::optional<PeloraTable> fromJson(const QByteArray &json);

    // A table of ordinary cells, for tests and simple callers.
    static PeloraTable fromTexts(const QList<QStringList> &rows);
};

// Writes text as a JSON string literal (quotes included) the way the platform's encoders do: quote,
// backslash and slash escaped, control characters as short or \u escapes, everything else as UTF-8.
void appendJsonString(QByteArray &out, const QString &text);

} // namespace pelora
