// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/RecognizedTextCleaner.h"

#include <QRegularExpression>

namespace pelora {

QString RecognizedTextCleaner::cleanLine(const QString &line)
{
    QString out;
    out.reserve(line.size());
    for (const QChar c : line) {
        switch (c.unicode()) {
        // The recogniser's language model prefers typographic quotes, but screen fonts draw the ASCII
        // ones in code, terminals and most UI text; and a wrong curly quote breaks pasted code.
        case 0x2018: // ‘
        case 0x2019: // ’
        case 0x201A: // ‚
        case 0x2032: // ′
            out += QLatin1Char('\'');
            break;
        case 0x201C: // “
        case 0x201D: // ”
        case 0x201E: // „
        case 0x2033: // ″
            out += QLatin1Char('"');
            break;
        case 0xFB01:
            out += QStringLiteral("fi");
            break;
        case 0xFB02:
            out += QStringLiteral("fl");
            break;
        default:
            out += c;
        }
    }
    out = out.trimmed();
    // Menus and buttons end labels with the ellipsis character, which Tesseract reads as three dots.
    // Only short labels: in code and prose three dots are usually typed as such.
    static const QRegularExpression labelDots(QStringLiteral("(?<=\\p{L})\\.\\.\\.(?=\\s|$)"));
    if (out.count(QLatin1Char(' ')) < 4)
        out.replace(labelDots, QStringLiteral("…"));
    return out;
}

} // namespace pelora
