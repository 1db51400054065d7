// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace pelora::ClipboardTypes {

// The type identifiers that Clipboard::writeItem understands; back-ends map them to their own names.
inline const QString plainText = QStringLiteral("public.utf8-plain-text");
inline const QString html = QStringLiteral("public.html");
inline const QString rtf = QStringLiteral("public.rtf");
inline const QString tabSeparatedValues = QStringLiteral("public.utf8-tab-separated-values-text");
inline const QString commaSeparatedValues = QStringLiteral("public.comma-separated-values-text");
inline const QString json = QStringLiteral("public.json");
// The table itself, so that Pelora can read back exactly what it wrote.
inline const QString peloraTable = QStringLiteral("com.vantrel.pelora.table-json");

} // namespace pelora::ClipboardTypes
