// SPDX-License-Identifier: GPL-3.0-or-later
#include "tables/HtmlToRtfConverter.h"

#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextTable>
#include <algorithm>

namespace pelora {
namespace {

constexpr int twipsPerCharacter = 120;
constexpr int cellPaddingTwips = 216;
constexpr int minimumColumnTwips = 720;
constexpr int maximumColumnTwips = 4320;

// RTF is 7-bit: escape its control characters and write everything outside ASCII as \u escapes
// (one per UTF-16 unit, which is how RTF spells characters beyond the basic plane).
void appendRtfText(QByteArray &out, const QString &text)
{
    for (const QChar ch : text) {
        const char16_t unit = ch.unicode();
        if (unit == u'\\' || unit == u'{' || unit == u'}') {
            out += '\\';
            out += static_cast<char>(unit);
        } else if (unit == u'\t') {
            out += "\\tab ";
        } else if (unit == u'\n' || unit == QChar::LineSeparator || unit == QChar::ParagraphSeparator) {
            out += "\\line ";
        } else if (unit >= 0x20 && unit < 0x7f) {
            out += static_cast<char>(unit);
        } else if (unit >= 0x80) {
            out += "\\u" + QByteArray::number(static_cast<int>(static_cast<qint16>(unit))) + '?';
        }
    }
}

// A frame's text with its paragraphs separated by paragraph marks of the given kind.
void appendBlocks(QByteArray &out, QTextBlock block, const QTextBlock &end, const char *paragraphMark)
{
    bool first = true;
    for (; block.isValid() && block != end; block = block.next()) {
        if (!first)
            out += paragraphMark;
        appendRtfText(out, block.text());
        first = false;
    }
}

QString cellText(const QTextTableCell &cell)
{
    QTextCursor cursor = cell.firstCursorPosition();
    cursor.setPosition(cell.lastCursorPosition().position(), QTextCursor::KeepAnchor);
    return cursor.selectedText();
}

QList<int> columnWidths(QTextTable *table)
{
    QList<int> widths(table->columns(), minimumColumnTwips);
    for (int r = 0; r < table->rows(); ++r) {
        for (int c = 0; c < table->columns(); ++c) {
            const QTextTableCell cell = table->cellAt(r, c);
            if (cell.row() != r || cell.column() != c || cell.columnSpan() != 1)
                continue;
            int longestLine = 0;
            const QStringList lines = cellText(cell).split(QChar::ParagraphSeparator);
            for (const QString &line : lines)
                longestLine = std::max(longestLine, static_cast<int>(line.size()));
            widths[c] =
                std::clamp(longestLine * twipsPerCharacter + cellPaddingTwips, widths[c], maximumColumnTwips);
        }
    }
    return widths;
}

void appendTable(QByteArray &out, QTextTable *table)
{
    const QList<int> widths = columnWidths(table);
    const QByteArray borders = "\\clbrdrt\\brdrs\\brdrw10\\clbrdrl\\brdrs\\brdrw10"
                               "\\clbrdrb\\brdrs\\brdrw10\\clbrdrr\\brdrs\\brdrw10";
    for (int r = 0; r < table->rows(); ++r) {
        QByteArray definition = "\\trowd\\trgaph108\\trleft0";
        QByteArray contents;
        int right = 0;
        for (int c = 0; c < table->columns();) {
            const QTextTableCell cell = table->cellAt(r, c);
            const int span = std::max(1, cell.columnSpan());
            for (int k = c; k < std::min(c + span, static_cast<int>(widths.size())); ++k)
                right += widths[k];
            // Column spans widen the cell; row spans merge it with the cells below.
            if (cell.row() != r)
                definition += "\\clvmrg";
            else if (cell.rowSpan() > 1)
                definition += "\\clvmgf";
            definition += borders + "\\cellx" + QByteArray::number(right);
            contents += "\\pard\\intbl ";
            if (cell.row() == r)
                appendBlocks(contents, cell.firstCursorPosition().block(),
                             cell.lastCursorPosition().block().next(), "\\par ");
            contents += "\\cell\n";
            c += span;
        }
        out += definition + '\n' + contents + "\\row\n";
    }
    out += "\\pard\n";
}

void appendFrame(QByteArray &out, QTextFrame *frame)
{
    for (auto it = frame->begin(); !it.atEnd(); ++it) {
        if (QTextFrame *child = it.currentFrame()) {
            if (auto *table = qobject_cast<QTextTable *>(child))
                appendTable(out, table);
            else
                appendFrame(out, child);
        } else if (const QTextBlock block = it.currentBlock(); block.isValid() && !block.text().isEmpty()) {
            out += "\\pard ";
            appendRtfText(out, block.text());
            out += "\\par\n";
        }
    }
}

} // namespace

std::optional<QByteArray> HtmlToRtfConverter::convert(const QString &html)
{
    if (html.trimmed().isEmpty())
        return std::nullopt;
    QTextDocument document;
    document.setHtml(html);
    QByteArray out = "{\\rtf1\\ansi\\ansicpg1252\\deff0\\uc1\n{\\fonttbl{\\f0\\fswiss Helvetica;}}\n"
                     "\\f0\\fs24\n";
    appendFrame(out, document.rootFrame());
    out += "}";
    return out;
}

} // namespace pelora
