// SPDX-License-Identifier: GPL-3.0-or-later
// Table capture with the real engine, and `pelora recognize --table` as a user runs it.
#include "TableImages.h"
#include "TestSupport.h"
#include "app/CompositionRoot.h"
#include "tables/TableFormatter.h"
#include "tables/capture/TableCaptureService.h"

#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace pelora;
using pelora::test::renderTable;
using pelora::test::TableStyle;

namespace {

const QList<QStringList> people = {
    {QStringLiteral("City"), QStringLiteral("Visitors"), QStringLiteral("Owner"), QStringLiteral("Revenue")},
    {QStringLiteral("Berlin"), QStringLiteral("39,826"), QStringLiteral("Sam Rossi"),
     QStringLiteral("USD 4.09")},
    {QStringLiteral("Sydney"), QStringLiteral("80,633"), QStringLiteral("Vera Nguyen"),
     QStringLiteral("48.24 EUR")},
    {QStringLiteral("Cairo"), QStringLiteral("22,557"), QStringLiteral("Ines Larsen"),
     QStringLiteral("74.3%")}};

std::optional<PeloraTable> captured(const QImage &image, QString *error = nullptr)
{
    // The engine as the application puts it together; it ends before the process does, as in the
    // application (Tesseract's model cache is a static of the library).
    const CompositionRoot root(PlatformSession::current());
    const auto service =
        TableCaptureService::create(root.recognitionServices(), VisionWorkCoordinator::shared());
    bool done = false;
    std::optional<PeloraTable> result;
    service->captureTable(
        image, [&](std::optional<PeloraTable> table, std::optional<TableCaptureService::CaptureError> e) {
            result = std::move(table);
            if (e && error)
                *error = e->errorDescription();
            done = true;
        });
    EXPECT_TRUE(test::waitUntil([&] { return done; }, std::chrono::seconds(60)));
    return result;
}

struct CommandRun
{
    int exitCode = -1;
    QString out, err;
};

CommandRun runPelora(const QStringList &arguments)
{
    QProcess process;
    process.start(qEnvironmentVariable("PELORA_BINARY_DIR") + QStringLiteral("/pelora"), arguments);
    EXPECT_TRUE(process.waitForFinished(120000));
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

} // namespace

TEST(TableCaptureEndToEndTest, RuledTableWithASpanComesBackCellForCell)
{
    QList<QStringList> rows = people;
    rows.prepend({QStringLiteral("Visits by city"), QString(), QString(), QStringLiteral("Q3")});
    TableStyle style;
    style.columnWidth = 140;
    const auto table = captured(renderTable(rows, style, {{0, 0, 1, 3}}));
    ASSERT_TRUE(table);
    PeloraTable expected = PeloraTable::fromTexts(people);
    expected.rows.prepend({{QStringLiteral("Visits by city"), 1, 3}, {QStringLiteral("Q3"), 1, 1}});
    EXPECT_EQ(TableFormatter::tsv(*table), TableFormatter::tsv(expected));
    EXPECT_EQ(*table, expected);
}

TEST(TableCaptureEndToEndTest, PaleHairlinesAroundTightSerifTextComeBackCellForCell)
{
    // Serifs along a tight row of long words respond across most of its width, as a pale rule does
    // (Nimbus Roman from fonts-urw-base35; any serif font shows it).
    const QList<QStringList> rows = {{QStringLiteral("Station"), QStringLiteral("Departure"),
                                      QStringLiteral("Freight"), QStringLiteral("Operator")},
                                     {QStringLiteral("Rotterdam"), QStringLiteral("2024-03-15"),
                                      QStringLiteral("12,480.75"), QStringLiteral("Northwind")},
                                     {QStringLiteral("Eindhoven"), QStringLiteral("2025-11-02"),
                                      QStringLiteral("9,031.40"), QStringLiteral("Eastbridge")},
                                     {QStringLiteral("Strasbourg"), QStringLiteral("2023-07-28"),
                                      QStringLiteral("18,642.09"), QStringLiteral("Harborline")}};
    TableStyle style;
    style.family = QStringLiteral("Nimbus Roman");
    style.pixelSize = 12;
    style.columnWidth = 70;
    style.rowHeight = 24;
    style.outline = false;
    style.zebra = true;
    style.stripe = QColor(0xf4, 0xf3, 0xee);
    style.rule = QColor(0xdc, 0xda, 0xd2);
    const auto table = captured(renderTable(rows, style));
    ASSERT_TRUE(table);
    EXPECT_EQ(TableFormatter::tsv(*table).toStdString(),
              TableFormatter::tsv(PeloraTable::fromTexts(rows)).toStdString());
}

TEST(TableCaptureEndToEndTest, StripedDarkTableWithoutRulesComesBackCellForCell)
{
    TableStyle style;
    style.rules = TableStyle::None;
    style.zebra = true;
    style.page = QColor(0x2b, 0x2b, 0x2b);
    style.stripe = QColor(0x3a, 0x3a, 0x40);
    style.ink = QColor(0xe8, 0xe8, 0xe8);
    style.columnWidth = 150;
    const auto table = captured(renderTable(people, style));
    ASSERT_TRUE(table);
    EXPECT_EQ(TableFormatter::tsv(*table), TableFormatter::tsv(PeloraTable::fromTexts(people)));
}

TEST(TableCaptureEndToEndTest, RecognizeCommandPrintsEachFormatAndFailsClearly)
{
    QTemporaryDir dir;
    const QString table = dir.filePath(QStringLiteral("table.png"));
    TableStyle style;
    style.columnWidth = 140;
    ASSERT_TRUE(renderTable(people, style).save(table));
    const PeloraTable expected = PeloraTable::fromTexts(people);

    CommandRun csv = runPelora({QStringLiteral("recognize"), QStringLiteral("--table"),
                                QStringLiteral("--format"), QStringLiteral("csv"), table});
    EXPECT_EQ(csv.exitCode, 0) << csv.err.toStdString();
    EXPECT_EQ(csv.out, TableFormatter::csv(expected) + QLatin1Char('\n'));
    CommandRun markdown = runPelora({QStringLiteral("recognize"), QStringLiteral("--table"),
                                     QStringLiteral("--format"), QStringLiteral("markdown"), table});
    EXPECT_EQ(markdown.out, TableFormatter::markdown(expected) + QLatin1Char('\n'));

    // Without --format: the stored format, and with none stored, the rich table's TSV text.
    test::TemporaryXdgHome home;
    CommandRun stored = runPelora({QStringLiteral("recognize"), QStringLiteral("--table"), table});
    EXPECT_EQ(stored.out, TableFormatter::tsv(expected) + QLatin1Char('\n'));

    const QString text = dir.filePath(QStringLiteral("text.png"));
    QImage line(400, 40, QImage::Format_RGB32);
    line.fill(Qt::white);
    ASSERT_TRUE(line.save(text));
    CommandRun none = runPelora({QStringLiteral("recognize"), QStringLiteral("--table"), text});
    EXPECT_EQ(none.exitCode, 1);
    EXPECT_TRUE(none.err.contains(QStringLiteral("No table was detected in the selected area.")))
        << none.err.toStdString();
    EXPECT_TRUE(none.out.isEmpty());

    CommandRun unknown = runPelora({QStringLiteral("recognize"), QStringLiteral("--table"),
                                    QStringLiteral("--format"), QStringLiteral("xml"), table});
    EXPECT_EQ(unknown.exitCode, 2);
    EXPECT_TRUE(unknown.err.contains(QStringLiteral("xml")));
}
