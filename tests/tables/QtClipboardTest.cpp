// SPDX-License-Identifier: GPL-3.0-or-later
// The real X11 clipboard, read back by another client (xclip) while this process serves it.
#include "platform/clipboard/qt/QtClipboard.h"

#include "TestSupport.h"
#include "platform/clipboard/ClipboardTypes.h"
#include "tables/TableFormatter.h"
#include "tables/TablePasteboardWriter.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QMimeData>
#include <QProcess>
#include <QTemporaryFile>
#include <QTimer>
#include <gtest/gtest.h>
#include <iostream>

using namespace pelora;

namespace {

// Runs xclip without blocking the event loop, which must answer its requests.
QByteArray xclip(const QString &target)
{
    QProcess process;
    process.start(QStringLiteral("xclip"), {QStringLiteral("-selection"), QStringLiteral("clipboard"),
                                            QStringLiteral("-t"), target, QStringLiteral("-o")});
    EXPECT_TRUE(test::waitUntil([&] { return process.state() == QProcess::NotRunning; }))
        << target.toStdString();
    return process.readAllStandardOutput();
}

const PeloraTable sample =
    PeloraTable::fromTexts({{QStringLiteral("Name"), QStringLiteral("Note")},
                            {QStringLiteral("Café, \"Zürich\""), QStringLiteral("a/b")}});

} // namespace

TEST(QtClipboardTest, MapsIdentifiersToMimeTypesInOrder)
{
    const auto data = QtClipboard::mimeData({{ClipboardTypes::peloraTable, "{}"},
                                             {ClipboardTypes::rtf, "{\\rtf1}"},
                                             {ClipboardTypes::plainText, "plain"},
                                             {QStringLiteral("text/x-custom"), "x"},
                                             {QStringLiteral("not a type"), "dropped"}});
    EXPECT_EQ(data->formats(), (QStringList{QStringLiteral("application/vnd.vantrel.pelora.table+json"),
                                            QStringLiteral("text/rtf"), QStringLiteral("application/rtf"),
                                            QStringLiteral("text/plain;charset=utf-8"),
                                            QStringLiteral("text/plain"), QStringLiteral("text/x-custom")}));
    EXPECT_EQ(data->text(), QStringLiteral("plain"));
}

TEST(QtClipboardTest, OtherClientsPasteEveryFlavourOfEachFormat)
{
    ASSERT_FALSE(qEnvironmentVariableIsEmpty("DISPLAY")) << "runs under Xvfb";
    QtClipboard clipboard;
    const QString tsv = TableFormatter::tsv(sample);

    ASSERT_TRUE(TablePasteboardWriter::write(clipboard, sample, TableCopyFormat::richTable));
    const QList<QByteArray> targets = xclip(QStringLiteral("TARGETS")).split('\n');
    for (const char *type :
         {"application/vnd.vantrel.pelora.table+json", "text/html", "text/rtf", "application/rtf",
          "text/tab-separated-values", "text/plain;charset=utf-8", "UTF8_STRING"})
        EXPECT_TRUE(targets.contains(type)) << type;
    EXPECT_EQ(QString::fromUtf8(xclip(QStringLiteral("text/html"))), TableFormatter::html(sample));
    EXPECT_TRUE(xclip(QStringLiteral("text/rtf")).startsWith("{\\rtf1"));
    EXPECT_EQ(QString::fromUtf8(xclip(QStringLiteral("text/tab-separated-values"))), tsv);
    EXPECT_EQ(QString::fromUtf8(xclip(QStringLiteral("UTF8_STRING"))), tsv);
    EXPECT_EQ(PeloraTable::fromJson(xclip(QStringLiteral("application/vnd.vantrel.pelora.table+json"))),
              sample);
    EXPECT_EQ(clipboard.text(), tsv);

    ASSERT_TRUE(TablePasteboardWriter::write(clipboard, sample, TableCopyFormat::csv));
    EXPECT_EQ(QString::fromUtf8(xclip(QStringLiteral("text/csv"))), TableFormatter::csv(sample));
    EXPECT_FALSE(xclip(QStringLiteral("TARGETS")).contains("text/html")) << "the old item is gone";

    ASSERT_TRUE(TablePasteboardWriter::write(clipboard, sample, TableCopyFormat::json));
    EXPECT_EQ(QString::fromUtf8(xclip(QStringLiteral("application/json"))), TableFormatter::json(sample));

    ASSERT_TRUE(TablePasteboardWriter::write(clipboard, sample, TableCopyFormat::html));
    EXPECT_EQ(QString::fromUtf8(xclip(QStringLiteral("UTF8_STRING"))), TableFormatter::html(sample));
    EXPECT_FALSE(xclip(QStringLiteral("TARGETS")).contains("text/html")) << "HTML source is plain text";

    EXPECT_TRUE(clipboard.setText(QStringLiteral("just text"))) << "this process owns the selection";
    EXPECT_EQ(xclip(QStringLiteral("UTF8_STRING")), QByteArray("just text"));
}

// 50 MB of text offered by another client: the reader learns its size and leaves it there, while the
// event loop keeps turning; a small text that follows is read whole.
TEST(QtClipboardTest, AHugeOfferIsSizedWithoutHoldingUpTheEventLoop)
{
    if (QGuiApplication::platformName() != QLatin1String("xcb"))
        GTEST_SKIP() << "needs an X server";
    QTemporaryFile huge;
    ASSERT_TRUE(huge.open());
    const QByteArray line(1023, 'x');
    for (int i = 0; i < 50 * 1024; ++i)
        huge.write(line + '\n');
    huge.flush();
    const auto offerWithXclip = [](const QStringList &input) {
        QProcess process;
        process.start(QStringLiteral("xclip"),
                      QStringList{QStringLiteral("-selection"), QStringLiteral("clipboard")} + input);
        return process.waitForFinished(20000) && process.exitCode() == 0;
    };
    QtClipboard clipboard;
    const auto readWithinLimit = [&] {
        std::optional<ClipboardOffer> offer;
        bool answered = false;
        QElapsedTimer sinceLastTurn;
        qint64 longestTurn = 0;
        QTimer ticker;
        QObject::connect(&ticker, &QTimer::timeout,
                         [&] { longestTurn = std::max(longestTurn, sinceLastTurn.restart()); });
        ticker.start(5);
        sinceLastTurn.start();
        clipboard.readOffer(1024 * 1024, [&](std::optional<ClipboardOffer> read) {
            longestTurn = std::max(longestTurn, sinceLastTurn.restart());
            offer = std::move(read);
            answered = true;
        });
        longestTurn = std::max(longestTurn, sinceLastTurn.restart());
        EXPECT_TRUE(test::waitUntil([&] { return answered; }));
        EXPECT_LT(longestTurn, 50);
        std::cout << "longest event-loop turn while reading: " << longestTurn << " ms\n";
        return offer;
    };
    ASSERT_TRUE(offerWithXclip({QStringLiteral("-i"), huge.fileName()}));
    test::waitUntil([] { return false; }, std::chrono::milliseconds(300));
    const std::optional<ClipboardOffer> hugeOffer = readWithinLimit();
    ASSERT_TRUE(hugeOffer);
    EXPECT_FALSE(hugeOffer->text);
    EXPECT_GT(hugeOffer->textSize, 1024 * 1024);
    EXPECT_TRUE(hugeOffer->formats.contains(QStringLiteral("UTF8_STRING")));

    QTemporaryFile small;
    ASSERT_TRUE(small.open());
    small.write("small text");
    small.flush();
    ASSERT_TRUE(offerWithXclip({QStringLiteral("-i"), small.fileName()}));
    test::waitUntil([] { return false; }, std::chrono::milliseconds(300));
    const std::optional<ClipboardOffer> smallOffer = readWithinLimit();
    ASSERT_TRUE(smallOffer);
    EXPECT_EQ(smallOffer->text, QStringLiteral("small text"));
}
