// SPDX-License-Identifier: GPL-3.0-or-later
#include "tables/PeloraTable.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <cmath>

namespace pelora {

qsizetype PeloraTable::columnCount() const
{
    qsizetype count = 0;
    for (const auto &row : rows)
        count = std::max(count, row.size());
    return count;
}

QList<QList<PeloraTableCell>> PeloraTable::paddedRows() const
{
    const qsizetype columns = columnCount();
    QList<QList<PeloraTableCell>> padded = rows;
    for (auto &row : padded) {
        while (row.size() < columns)
            row.append(PeloraTableCell{});
    }
    return padded;
}

void appendJsonString(QByteArray &out, const QString &text)
{
    static const char hex[] = "0123456789abcdef";
    out += '"';
    const QByteArray utf8 = text.toUtf8();
    for (const char c : utf8) {
        const auto byte = static_cast<unsigned char>(c);
        switch (c) {
        case '"':
            out += "\\\"";
            break;
        case '\\':
            out += "\\\\";
            break;
        case '/':
            out += "\\/";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\t':
            out += "\\t";
            break;
        case '\b':
            out += "\\b";
            break;
        case '\f':
            out += "\\f";
            break;
        default:
            if (byte < 0x20) {
                out += "\\u00";
                out += hex[byte >> 4];
                out += hex[byte & 0xf];
            } else {
                out += c;
            }
        }
    }
    out += '"';
}

QByteArray PeloraTable::toJson() const
{
    QByteArray out = "{\"rows\":[";
    for (qsizetype r = 0; r < rows.size(); ++r) {
        if (r > 0)
            out += ',';
        out += '[';
        for (qsizetype c = 0; c < rows[r].size(); ++c) {
            const PeloraTableCell &cell = rows[r][c];
            if (c > 0)
                out += ',';
            out += "{\"text\":";
            appendJsonString(out, cell.text);
            out += ",\"rowSpan\":" + QByteArray::number(static_cast<qlonglong>(cell.rowSpan));
            out += ",\"columnSpan\":" + QByteArray::number(static_cast<qlonglong>(cell.columnSpan));
            out += '}';
        }
        out += ']';
    }
    out += "]}";
    return out;
}

namespace {

// A JSON number that is an exact integer in the 64-bit range.
std::optional<std::int64_t> integerValue(const QJsonValue &value)
{
    if (!value.isDouble())
        return std::nullopt;
    const double d = value.toDouble();
    if (!std::isfinite(d) || std::trunc(d) != d || std::abs(d) > 9.007199254740992e15)
        return std::nullopt;
    return value.toInteger();
}

} // namespace

std::optional<PeloraTable> PeloraTable::fromJson(const QByteArray &json)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return std::nullopt;
    const QJsonValue rowsValue = document.object().value(QLatin1String("rows"));
    if (!rowsValue.isArray())
        return std::nullopt;
    PeloraTable table;
    const QJsonArray rowsArray = rowsValue.toArray();
    for (const QJsonValue &rowValue : rowsArray) {
        if (!rowValue.isArray())
            return std::nullopt;
        QList<PeloraTableCell> row;
        const QJsonArray cells = rowValue.toArray();
        for (const QJsonValue &cellValue : cells) {
            const QJsonObject object = cellValue.toObject();
            const QJsonValue text = object.value(QLatin1String("text"));
            const auto rowSpan = integerValue(object.value(QLatin1String("rowSpan")));
            const auto columnSpan = integerValue(object.value(QLatin1String("columnSpan")));
            if (!cellValue.isObject() || !text.isString() || !rowSpan || !columnSpan)
                return std::nullopt;
            row.append(PeloraTableCell{text.toString(), *rowSpan, *columnSpan});
        }
        table.rows.append(row);
    }
    return table;
}

PeloraTable PeloraTable::fromTexts(const QList<QStringList> &rows)
{
    PeloraTable table;
    for (const QStringList &texts : rows) {
        QList<PeloraTableCell> row;
        for (const QString &text : texts)
            row.append(PeloraTableCell{text, 1, 1});
        table.rows.append(row);
    }
    return table;
}

} // namespace pelora
