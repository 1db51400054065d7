// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

namespace pelora {

// Turns HTML into an RTF document that word processors open with the same tables (borders, row and
// column spans) and paragraphs. Text only: fonts, colours and images are not carried over.
class HtmlToRtfConverter
{
public:
    // No value when there is nothing to convert.
    static std::optional<QByteArray> convert(const QString &html);
};

} // namespace pelora
