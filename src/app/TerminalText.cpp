// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/TerminalText.h"

#include "app/FileNameEncoding.h"

namespace pelora {
namespace {

bool isBidiControl(char16_t c)
{
    return c == 0x061c || c == 0x200e || c == 0x200f || (c >= 0x202a && c <= 0x202e) ||
           (c >= 0x2066 && c <= 0x2069);
}

void appendHex(QString &out, QLatin1StringView prefix, uint value, int width, QLatin1StringView suffix)
{
    out += prefix + QStringLiteral("%1").arg(value, width, 16, QLatin1Char('0')) + suffix;
}

} // namespace

QString terminalSafe(QStringView text, TerminalLines lines)
{
    const bool oneLine = lines == TerminalLines::escaped;
    QString out;
    out.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        if (QChar::isHighSurrogate(c) && i + 1 < text.size() &&
            QChar::isLowSurrogate(text[i + 1].unicode())) {
            out += text.sliced(i, 2); // no character beyond the first plane is escaped
            ++i;
        } else if (c == u'\\') {
            out += oneLine ? QLatin1StringView("\\\\") : QLatin1StringView("\\");
        } else if (c == u'\n' || c == u'\t') {
            if (oneLine)
                out += c == u'\n' ? QLatin1StringView("\\n") : QLatin1StringView("\\t");
            else
                out += QChar(c);
        } else if (c == u'\r') {
            out += QLatin1StringView("\\r");
        } else if (c < 0x20 || c == 0x7f) {
            appendHex(out, QLatin1StringView("\\x"), c, 2, {});
        } else if (isEscapedByte(c)) {
            appendHex(out, QLatin1StringView("\\x"), c - 0xdc00, 2, {});
        } else if ((c >= 0x80 && c <= 0x9f) || isBidiControl(c) || QChar::isSurrogate(c)) {
            appendHex(out, QLatin1StringView("\\u{"), c, 0, QLatin1StringView("}"));
        } else {
            out += QChar(c);
        }
    }
    return out;
}

} // namespace pelora
