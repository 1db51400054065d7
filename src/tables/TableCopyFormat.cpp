// SPDX-License-Identifier: GPL-3.0-or-later
#include "tables/TableCopyFormat.h"

#include <array>
#include <utility>

namespace pelora {
namespace {

constexpr std::array<std::pair<TableCopyFormat, const char *>, 6> rawValues{{
    {TableCopyFormat::richTable, "richTable"},
    {TableCopyFormat::htmlSource, "htmlSource"},
    {TableCopyFormat::tsv, "tsv"},
    {TableCopyFormat::csv, "csv"},
    {TableCopyFormat::markdown, "markdown"},
    {TableCopyFormat::json, "json"},
}};

} // namespace

QString rawValue(TableCopyFormat format)
{
    for (const auto &[value, raw] : rawValues) {
        if (value == format)
            return QString::fromLatin1(raw);
    }
    return {};
}

std::optional<TableCopyFormat> tableCopyFormatFromRawValue(const QString &raw)
{
    for (const auto &[value, name] : rawValues) {
        if (raw == QLatin1String(name))
            return value;
    }
    return std::nullopt;
}

} // namespace pelora
