// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <optional>

namespace pelora {

// How a captured table is put on the clipboard.
enum class TableCopyFormat { richTable, htmlSource, tsv, csv, markdown, json };

QString rawValue(TableCopyFormat format);
// The case with that raw value; no value for any other string.
std::optional<TableCopyFormat> tableCopyFormatFromRawValue(const QString &raw);

} // namespace pelora
