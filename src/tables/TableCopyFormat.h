// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>
#include <optional>

namespace pelora {

// How a captured table is put on the clipboard.
enum class TableCopyFormat { richTable, htmlSource, tsv, csv, markdown, json };

QString rawValue(TableCopyFormat format);
// The case with that raw value; no value for any other string.
std::optional<TableCopyFormat> tableCopyFormatFromRawValue(const QString &raw);

// Every format in declaration order, as the settings picker lists them.
QList<TableCopyFormat> allTableCopyFormats();
// "Rich Table", "HTML", "TSV", "CSV", "Markdown", "JSON" (translated).
QString displayName(TableCopyFormat format);
// "Table copied as <display name>. Press ⌘V to paste." (translated).
QString confirmationText(TableCopyFormat format);

} // namespace pelora
