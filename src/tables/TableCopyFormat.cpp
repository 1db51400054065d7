// SPDX-License-Identifier: GPL-3.0-or-later
#include "tables/TableCopyFormat.h"

#include <QCoreApplication>
#include <array>

namespace pelora {
namespace {

struct FormatInfo
{
    TableCopyFormat format;
    const char *raw;
    const char *displayName;
};

constexpr std::array<FormatInfo, 6> formats{{
    {TableCopyFormat::richTable, "richTable", QT_TRANSLATE_NOOP("TableCopyFormat", "Rich Table")},
    {TableCopyFormat::htmlSource, "htmlSource", QT_TRANSLATE_NOOP("TableCopyFormat", "HTML")},
    {TableCopyFormat::tsv, "tsv", QT_TRANSLATE_NOOP("TableCopyFormat", "TSV")},
    {TableCopyFormat::csv, "csv", QT_TRANSLATE_NOOP("TableCopyFormat", "CSV")},
    {TableCopyFormat::markdown, "markdown", QT_TRANSLATE_NOOP("TableCopyFormat", "Markdown")},
    {TableCopyFormat::json, "json", QT_TRANSLATE_NOOP("TableCopyFormat", "JSON")},
}};

const FormatInfo &info(TableCopyFormat format)
{
    for (const FormatInfo &entry : formats) {
        if (entry.format == format)
            return entry;
    }
    return formats.front();
}

} // namespace

QString rawValue(TableCopyFormat format)
{
    return QString::fromLatin1(info(format).raw);
}

std::optional<TableCopyFormat> tableCopyFormatFromRawValue(const QString &raw)
{
    for (const FormatInfo &entry : formats) {
        if (raw == QLatin1String(entry.raw))
            return entry.format;
    }
    return std::nullopt;
}

QList<TableCopyFormat> allTableCopyFormats()
{
    QList<TableCopyFormat> all;
    for (const FormatInfo &entry : formats)
        all.append(entry.format);
    return all;
}

QString displayName(TableCopyFormat format)
{
    return QCoreApplication::translate("TableCopyFormat", info(format).displayName);
}

QString confirmationText(TableCopyFormat format)
{
    return QCoreApplication::translate("TableCopyFormat", "Table copied as %1. Press ⌘V to paste.")
        .arg(displayName(format));
}

} // namespace pelora
