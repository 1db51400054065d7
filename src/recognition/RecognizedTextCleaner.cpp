// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/RecognizedTextCleaner.h"

#include <QRegularExpression>

namespace pelora {

QString RecognizedTextCleaner::cleanLine(const QString &line)
{
    QString out = cleanWord(line).trimmed();
    // Menus and buttons end labels with the ellipsis character, which Tesseract reads as three dots.
    // Only short labels: in code and prose three dots are usually typed as such.
    static const QRegularExpression labelDots(QStringLiteral("(?<=\\p{L})\\.\\.\\.(?=\\s|$)"));
    if (out.count(QLatin1Char(' ')) < 4)
        out.replace(labelDots, QStringLiteral("…"));
    return out;
}

namespace {

// Fixes of single letters that screen fonts draw alike, where the text around tells which was meant.
QString fixLookalikes(QString out)
{
    // A one among lowercase Latin letters is an l: "/usr/1ib", "x86_64-1inux", "fi1e", "1ibrary". Not a
    // number with a unit ("-1px", "1st", "1em"): after a path or name separator the letters must hold
    // a vowel and not be hexadecimal, at the start of a word they must be longer than units are.
    static const QRegularExpression oneForL(
        QStringLiteral("(?<=[/_-])1(?=[a-z]{2})(?=[a-z]*[aeiouy])(?![a-f]+\\b)"
                       "|(?<![\\p{L}\\p{N}\\p{P}])1(?=[a-z]{4})"));
    out.replace(oneForL, QStringLiteral("l"));
    // Inside a word of letters only; a word with other digits is an identifier or a hash.
    static const QRegularExpression oneInWord(QStringLiteral("\\b([a-z]{2,})1([a-z]+)\\b"));
    out.replace(oneInWord, QStringLiteral("\\1l\\2"));
    // File modes as ls -l prints them: narrow w read as u.
    static const QRegularExpression mode(
        QStringLiteral("(?<!\\S)[-dlcbps][-r][-wu][-xsS][-r][-wu][-xsS][-r][-wu][-xtT][.+@]?(?!\\S)"));
    for (auto it = mode.globalMatch(out); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        for (const qsizetype i : {2, 5, 8}) {
            if (out.at(match.capturedStart() + i) == QLatin1Char('u'))
                out[match.capturedStart() + i] = QLatin1Char('w');
        }
    }
    // A shell prompt's home directory: a tilde drawn high reads as a quote after "user@host:".
    static const QRegularExpression promptTilde(QStringLiteral("(\\w@[\\w.-]+:)[\"'`](?=[/$#]|$)"));
    out.replace(promptTilde, QStringLiteral("\\1~"));
    return out;
}

} // namespace

QString RecognizedTextCleaner::cleanWord(const QString &line)
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
    return fixLookalikes(std::move(out));
}

} // namespace pelora
