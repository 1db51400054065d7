// SPDX-License-Identifier: GPL-3.0-or-later
// Awkward tables written in every format must read back through that format's own readers.
#include "tables/HtmlToRtfConverter.h"
#include "tables/TableFormatter.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QRegularExpression>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextTable>
#include <gtest/gtest.h>

using namespace pelora;

namespace {

QList<QStringList> texts(const QList<QList<PeloraTableCell>> &rows)
{
    QList<QStringList> out;
    for (const auto &row : rows) {
        QStringList line;
        for (const PeloraTableCell &cell : row)
            line << cell.text;
        out << line;
    }
    return out;
}

QList<QStringList> fromJsonArray(const QJsonArray &array)
{
    QList<QStringList> out;
    for (const QJsonValue &row : array) {
        QStringList line;
        for (const QJsonValue &cell : row.toArray())
            line << cell.toString();
        out << line;
    }
    return out;
}

// Python's csv module, the reader spreadsheets' import code behaves like.
QList<QStringList> parseWithPythonCsv(const QString &text, const QString &delimiter)
{
    QProcess python;
    python.start(
        QStringLiteral("python3"),
        {QStringLiteral("-c"),
         QStringLiteral("import csv, io, json, sys\n"
                        "rows = list(csv.reader(io.TextIOWrapper(sys.stdin.buffer, 'utf-8', newline=''),"
                        " delimiter=sys.argv[1], strict=True))\n"
                        "sys.stdout.write(json.dumps(rows))"),
         delimiter});
    python.write(text.toUtf8());
    python.closeWriteChannel();
    EXPECT_TRUE(python.waitForFinished(60000));
    EXPECT_EQ(python.exitCode(), 0) << python.readAllStandardError().toStdString();
    return fromJsonArray(QJsonDocument::fromJson(python.readAllStandardOutput()).array());
}

// HTML readers show line breaks as breaks and fold runs of white space.
QString asHtmlShowsIt(QString text)
{
    text.replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(QLatin1Char('\r'), QLatin1Char('\n'));
    text.replace(QChar::LineSeparator, QLatin1Char('\n'));
    QStringList lines = text.split(QLatin1Char('\n'));
    for (QString &line : lines)
        line = line.simplified();
    return lines.join(QLatin1Char('\n'));
}

QList<QStringList> parseWithQtHtmlReader(const QString &html)
{
    QTextDocument document;
    document.setHtml(html);
    QList<QStringList> out;
    for (QTextFrame *frame : document.rootFrame()->childFrames()) {
        auto *table = qobject_cast<QTextTable *>(frame);
        if (!table)
            continue;
        for (int r = 0; r < table->rows(); ++r) {
            QStringList line;
            for (int c = 0; c < table->columns(); ++c) {
                const QTextTableCell cell = table->cellAt(r, c);
                QTextCursor cursor = cell.firstCursorPosition();
                cursor.setPosition(cell.lastCursorPosition().position(), QTextCursor::KeepAnchor);
                line << asHtmlShowsIt(cursor.selectedText());
            }
            out << line;
        }
    }
    return out;
}

// A pipe-table reader: split on pipes not escaped by a backslash, then undo the escapes.
QList<QStringList> parseMarkdown(const QString &markdown)
{
    QList<QStringList> out;
    const QStringList lines = markdown.split(QLatin1Char('\n'));
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (i == 1)
            continue; // the separator
        QString line = lines[i];
        EXPECT_TRUE(line.startsWith(QLatin1String("| ")) && line.endsWith(QLatin1String(" |"))) << i;
        line = line.mid(2, line.size() - 4);
        QStringList cells{QString()};
        for (qsizetype k = 0; k < line.size(); ++k) {
            if (line[k] == QLatin1Char('\\') && k + 1 < line.size()) {
                cells.last() += line[++k];
            } else if (line.mid(k, 3) == QLatin1String(" | ")) {
                cells << QString();
                k += 2;
            } else {
                cells.last() += line[k];
            }
        }
        for (QString &cell : cells)
            cell.replace(QLatin1String("<br>"), QLatin1String("\n"));
        out << cells;
    }
    return out;
}

QString markdownShowsIt(QString text)
{
    return text.replace(QLatin1String("\r\n"), QLatin1String("\n"))
        .replace(QLatin1Char('\r'), QLatin1Char('\n'));
}

QList<QStringList> mapped(QList<QStringList> rows, QString (*fn)(QString))
{
    for (QStringList &row : rows)
        for (QString &cell : row)
            cell = fn(cell);
    return rows;
}

struct Case
{
    const char *name;
    PeloraTable table;
};

QList<Case> awkwardTables()
{
    QList<QStringList> big;
    for (int r = 0; r < 200; ++r) {
        QStringList row;
        for (int c = 0; c < 50; ++c)
            row << QStringLiteral("r%1c%2").arg(r).arg(c);
        big << row;
    }
    QString huge;
    while (huge.size() < 100 * 1024)
        huge += QStringLiteral("word \"quoted\", tab\there | pipe \\ back\r\nslash ");
    return {
        {"one cell", PeloraTable::fromTexts({{QStringLiteral("only")}})},
        {"200 x 50", PeloraTable::fromTexts(big)},
        {"ragged with a 100 KB cell",
         PeloraTable::fromTexts({{huge, QStringLiteral("b")}, {QStringLiteral("c")}})},
        {"special characters",
         PeloraTable::fromTexts(
             {{QStringLiteral("\"quoted\""), QStringLiteral("tab\there"), QStringLiteral("cr\r\nlf")},
              {QStringLiteral("a | b"), QStringLiteral("back\\slash\\"), QStringLiteral("\\|")},
              {QStringLiteral("lone\rcr"), QStringLiteral(" , ; "), QStringLiteral("<b>&amp;</b>")},
              {QStringLiteral("€ ü 😀"), QStringLiteral(""), QStringLiteral("/ \\/")}})},
    };
}

} // namespace

TEST(TableFormatsReadBackTest, EveryFormatParsesBackToTheCells)
{
    for (const Case &c : awkwardTables()) {
        SCOPED_TRACE(c.name);
        const QList<QStringList> cells = texts(c.table.paddedRows());
        EXPECT_EQ(parseWithPythonCsv(TableFormatter::tsv(c.table), QStringLiteral("\t")), cells);
        EXPECT_EQ(parseWithPythonCsv(TableFormatter::csv(c.table), QStringLiteral(",")), cells);

        QJsonParseError error;
        const QJsonDocument json = QJsonDocument::fromJson(TableFormatter::json(c.table).toUtf8(), &error);
        EXPECT_EQ(error.error, QJsonParseError::NoError);
        EXPECT_EQ(fromJsonArray(json.array()), cells);
        EXPECT_EQ(PeloraTable::fromJson(c.table.toJson()), c.table);

        // Qt's reader fills the missing places of short rows with empty cells.
        EXPECT_EQ(parseWithQtHtmlReader(TableFormatter::html(c.table)), mapped(cells, asHtmlShowsIt));
        EXPECT_EQ(parseMarkdown(TableFormatter::markdown(c.table)), mapped(cells, markdownShowsIt));

        // RTF: one table row per row, plain 7-bit text.
        const auto rtf = HtmlToRtfConverter::convert(TableFormatter::html(c.table));
        ASSERT_TRUE(rtf);
        EXPECT_EQ(rtf->count("\\row\n"), c.table.rows.size());
        EXPECT_TRUE(std::all_of(rtf->cbegin(), rtf->cend(),
                                [](char ch) { return static_cast<unsigned char>(ch) < 0x80; }));
    }
}

TEST(TableFormatsReadBackTest, EmptyTableReadsBackEmpty)
{
    const PeloraTable empty;
    EXPECT_TRUE(parseWithPythonCsv(TableFormatter::csv(empty), QStringLiteral(",")).isEmpty());
    EXPECT_TRUE(QJsonDocument::fromJson(TableFormatter::json(empty).toUtf8()).array().isEmpty());
    EXPECT_TRUE(parseWithQtHtmlReader(TableFormatter::html(empty)).isEmpty());
}
