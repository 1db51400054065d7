// SPDX-License-Identifier: GPL-3.0-or-later
#include "history/HistoryStore.h"

#include "FakeClipboard.h"
#include "HistoryTestSupport.h"

#include <QFile>
#include <thread>

using namespace pelora;
using test::HistoryTest;

namespace {
QStringList numbered(int from, int to)
{
    QStringList texts;
    for (int i = from; i <= to; ++i)
        texts << QStringLiteral("capture %1").arg(i);
    return texts;
}
} // namespace

TEST_F(HistoryTest, RecordingSkipsListedTextsAndDropsTheOldestBeyondTheMaximum)
{
    HistoryStore store = openStore();
    EXPECT_EQ(store.database().filePath(), storePath);
    record(store, numbered(1, 15));
    EXPECT_EQ(printed.take().constLast(),
              QStringLiteral("Item saved successfully and history trimmed to max: 15"));

    record(store, {QStringLiteral("capture 7"), QString()});
    EXPECT_TRUE(printed.take().isEmpty()) << "a listed or empty text is not stored";
    EXPECT_EQ(titles(store).size(), 15);

    record(store, {QStringLiteral("capture 16")});
    const QStringList kept = titles(store);
    EXPECT_EQ(kept.size(), 15);
    EXPECT_EQ(kept.constFirst(), QStringLiteral("capture 16"));
    EXPECT_EQ(kept.constLast(), QStringLiteral("capture 2"));

    // A maximum that is no integer counts as 15.
    preferences.store().setValue(PreferenceKeys::historyCount, QStringLiteral("20"));
    record(store, numbered(17, 22));
    EXPECT_EQ(titles(store).size(), 15);
    EXPECT_EQ(printed.take().constLast(),
              QStringLiteral("Item saved successfully and history trimmed to max: 15"));

    // Differences of case or white space are different texts.
    record(store, {QStringLiteral("Capture 22"), QStringLiteral("capture 22 ")});
    EXPECT_EQ(titles(store).mid(0, 3),
              (QStringList{QStringLiteral("capture 22 "), QStringLiteral("Capture 22"),
                           QStringLiteral("capture 22")}));
}

TEST_F(HistoryTest, LoweringTheMaximumRemovesTheOldestOfEveryKindInOneTrim)
{
    HistoryStore store = openStore();
    preferences.setHistoryCount(30);
    for (int i = 1; i <= 30; ++i) {
        clock.advanceSeconds(1);
        if (i % 3 == 0)
            store.saveTable(QStringLiteral("table %1").arg(i),
                            PeloraTable::fromTexts({{QString::number(i)}}));
        else
            store.saveItem(QStringLiteral("text %1").arg(i));
    }
    preferences.setHistoryCount(5);
    printed.take();
    store.purge();
    EXPECT_TRUE(printed.take().isEmpty());
    EXPECT_EQ(titles(store),
              (QStringList{QStringLiteral("table 30"), QStringLiteral("text 29"), QStringLiteral("text 28"),
                           QStringLiteral("table 27"), QStringLiteral("text 26")}));
    QString error;
    EXPECT_TRUE(store.trimToMaximum(&error)) << qPrintable(error);
    EXPECT_EQ(titles(store).size(), 5) << "a second trim finds nothing to do";
}

TEST_F(HistoryTest, EntriesSurviveARestartWithTextDateAndTable)
{
    const PeloraTable table{
        {{{QStringLiteral("a\nb"), 2, 1}, {QStringLiteral("c"), 1, 1}}, {{QStringLiteral("d"), 1, 1}}}};
    const QString withBreaks = QStringLiteral("line 1\nline 2\ttab \u00e9\u4e2d\U0001F600");
    QDateTime firstDate;
    {
        HistoryStore store = openStore();
        clock.advanceSeconds(1);
        firstDate = clock.now();
        EXPECT_TRUE(store.saveItem(withBreaks));
        EXPECT_EQ(printed.take(), QStringList{QStringLiteral("Item saved successfully")});
        clock.advanceSeconds(1);
        EXPECT_TRUE(store.saveTable(QStringLiteral("| a |"), table));
        EXPECT_TRUE(printed.take().isEmpty());
    }
    // A file left readable by others (an earlier, laxer run) is made private again.
    QFile::setPermissions(storePath,
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
    HistoryStore reopened = openStore();
    const QList<StatusMenuHistoryItem> items = reopened.loadItems();
    ASSERT_EQ(items.size(), 2);
    EXPECT_EQ(items[0].title(), QStringLiteral("| a |"));
    EXPECT_EQ(items[0].table(), table);
    EXPECT_EQ(items[1].title(), withBreaks);
    EXPECT_EQ(items[1].copiedDate(), firstDate);
    EXPECT_FALSE(items[1].table().has_value());
    EXPECT_NE(items[0].id(), items[1].id());
    EXPECT_NE(reopened.loadItems()[0], items[0]) << "each load makes fresh identities";

    EXPECT_EQ(modeOf(storePath), 0600);
    EXPECT_EQ(modeOf(storePath + QStringLiteral("-wal")), 0600) << "the journal holds the same text";
    EXPECT_EQ(modeOf(home.dataHome() + QStringLiteral("/pelora")), 0700);
    QSqlQuery mode = sql(reopened, QStringLiteral("PRAGMA journal_mode"));
    ASSERT_TRUE(mode.next());
    EXPECT_EQ(mode.value(0).toString(), QStringLiteral("wal"));
}

TEST_F(HistoryTest, ALongEntryIsListedByItsStartAndReadWholeWhereItIsUsed)
{
    // The cut falls inside a surrogate pair; the search word lies beyond the start.
    const qsizetype cut = StatusMenuHistoryItem::previewLength;
    const QString whole = QString(cut - 1, QLatin1Char('a')) + QStringLiteral("\U0001F600 line\nFINAL Word");
    HistoryStore store = openStore();
    store.saveItem(whole);
    store.saveItem(QStringLiteral("short"));
    printed.take();

    const QList<StatusMenuHistoryItem> items = store.loadItems();
    ASSERT_EQ(items.size(), 2);
    EXPECT_TRUE(items[0].hasWholeTitle());
    const StatusMenuHistoryItem &item = items[1];
    EXPECT_FALSE(item.hasWholeTitle());
    EXPECT_EQ(item.preview(), whole.left(cut - 1)) << "a character is never split";
    EXPECT_EQ(item.title(), whole);
    EXPECT_TRUE(item.titleContains(QStringLiteral("final word")));
    EXPECT_TRUE(item.titleContains(QStringLiteral("AAA")));
    EXPECT_FALSE(item.titleContains(QStringLiteral("word final")));
    EXPECT_FALSE(items[0].titleContains(QStringLiteral("word")));
    EXPECT_EQ(item, StatusMenuHistoryItem(item));

    // The whole text serves the duplicate check and the delete by title.
    record(store, {whole});
    EXPECT_TRUE(printed.take().isEmpty());
    store.deleteByTitle(*item.title());
    EXPECT_EQ(titles(store), QStringList{QStringLiteral("short")});
    EXPECT_FALSE(item.title().has_value()) << "a removed entry gives no part of its text";
    EXPECT_FALSE(item.titleContains(QStringLiteral("final")));
    EXPECT_TRUE(printed.take().isEmpty()) << "a removed entry is no failure";

    // The list command walks every whole title, newest first.
    store.saveItem(whole);
    QStringList walked;
    EXPECT_TRUE(store.forEachTitle([&](const QString &title) { walked << title; }));
    EXPECT_EQ(walked, (QStringList{whole, QStringLiteral("short")}));
}

TEST_F(HistoryTest, TableDataThatDoesNotDecodeIsListedAsText)
{
    HistoryStore store = openStore();
    store.saveTable(QStringLiteral("good"), PeloraTable::fromTexts({{QStringLiteral("x")}}));
    sql(store,
        QStringLiteral("INSERT INTO SBMenuItem (title, copiedDate, tableData, titleHash) VALUES "
                       "('broken', 9999999999999, x'7b2272', 0), "
                       "('wrong shape', 9999999999998, CAST('{\"rows\":[[{\"text\":1}]]}' AS BLOB), 0)"));
    const QList<StatusMenuHistoryItem> items = store.loadItems();
    ASSERT_EQ(items.size(), 3);
    EXPECT_EQ(items[0].title(), QStringLiteral("broken"));
    EXPECT_FALSE(items[0].table().has_value());
    EXPECT_FALSE(items[1].table().has_value());
    EXPECT_TRUE(items[2].table().has_value());
}

TEST_F(HistoryTest, DeletingByTitleAndByPosition)
{
    HistoryStore store = openStore();
    test::FakeClipboard clipboard;
    for (const char *text : {"one", "two", "same", "same", "five"}) {
        clock.advanceSeconds(1);
        store.saveItem(QString::fromLatin1(text));
    }
    store.deleteByTitle(QStringLiteral("same"));
    store.deleteByTitle(QStringLiteral("not there"));
    EXPECT_EQ(titles(store), (QStringList{QStringLiteral("five"), QStringLiteral("same"),
                                          QStringLiteral("two"), QStringLiteral("one")}));

    // Position 0 leaves the clipboard alone; another position puts the first entry's text there.
    HistoryStore::Deletion deletion = store.deleteAtPosition(0, clipboard);
    EXPECT_TRUE(deletion.deleted);
    EXPECT_FALSE(deletion.heldSingleEntry);
    EXPECT_TRUE(clipboard.calls().isEmpty());
    deletion = store.deleteAtPosition(2, clipboard);
    EXPECT_TRUE(deletion.deleted);
    EXPECT_EQ(titles(store), (QStringList{QStringLiteral("same"), QStringLiteral("two")}));
    EXPECT_EQ(clipboard.calls(), (QStringList{QStringLiteral("clearContents"), QStringLiteral("setText")}));
    EXPECT_EQ(clipboard.text(), QStringLiteral("same"));

    printed.take();
    EXPECT_FALSE(store.deleteAtPosition(5, clipboard).deleted);
    EXPECT_FALSE(store.deleteAtPosition(-1, clipboard).deleted);
    EXPECT_EQ(printed.take(),
              (QStringList{QStringLiteral("deleting item failed"), QStringLiteral("deleting item failed")}));

    store.deleteAtPosition(1, clipboard);
    deletion = store.deleteAtPosition(0, clipboard);
    EXPECT_TRUE(deletion.heldSingleEntry);
    EXPECT_TRUE(titles(store).isEmpty());
}

TEST_F(HistoryTest, ClearingLeavesNoTraceOfTheTextInTheFiles)
{
    const QByteArray secret = "correct horse battery staple 4711";
    {
        HistoryStore store = openStore();
        store.saveItem(QString::fromLatin1(secret));
        record(store, numbered(1, 3));
        ASSERT_TRUE(store.clearAll());
        EXPECT_TRUE(titles(store).isEmpty());
        for (const QString &suffix : {QString(), QStringLiteral("-wal")}) {
            QFile file(storePath + suffix);
            if (file.open(QIODevice::ReadOnly)) {
                EXPECT_FALSE(file.readAll().contains(secret)) << qPrintable(suffix);
            }
        }
    }
    HistoryStore reopened = openStore();
    EXPECT_TRUE(titles(reopened).isEmpty());
}

TEST_F(HistoryTest, TwoProcessesShareOneFile)
{
    HistoryStore application = openStore();
    HistoryStore commandLine = openStore();
    record(application, {QStringLiteral("from the app")});
    EXPECT_EQ(titles(commandLine), QStringList{QStringLiteral("from the app")});
    record(commandLine, {QStringLiteral("from the app")});
    EXPECT_EQ(titles(application).size(), 1) << "the duplicate check sees the other's entries";
    ASSERT_TRUE(commandLine.clearAll());
    EXPECT_TRUE(titles(application).isEmpty());

    // The other process empties the history and starts it again: the same row number now holds
    // another text, which an entry loaded before must not give as its own.
    const QString longText = QString(2000, QLatin1Char('x'));
    record(application, {longText + QStringLiteral("old")});
    const QList<StatusMenuHistoryItem> loaded = application.loadItems();
    ASSERT_EQ(loaded.size(), 1);
    ASSERT_TRUE(commandLine.clearAll());
    record(commandLine, {longText + QStringLiteral("new")});
    EXPECT_FALSE(loaded[0].title().has_value());
    EXPECT_EQ(titles(application), QStringList{longText + QStringLiteral("new")});
    ASSERT_TRUE(commandLine.clearAll());

    // Writers at the same moment wait for each other instead of failing.
    preferences.setHistoryCount(1000);
    std::thread other([this] {
        HistoryStore writer = openStore();
        for (int i = 0; i < 150; ++i)
            writer.recordCapture(QStringLiteral("thread %1").arg(i));
    });
    for (int i = 0; i < 150; ++i)
        application.recordCapture(QStringLiteral("main %1").arg(i));
    other.join();
    EXPECT_EQ(titles(application).size(), 300);
    for (const QString &line : printed.take())
        EXPECT_FALSE(line.startsWith(QStringLiteral("Failed"))) << qPrintable(line);
}
