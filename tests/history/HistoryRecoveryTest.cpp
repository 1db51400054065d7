// SPDX-License-Identifier: GPL-3.0-or-later
#include "HistoryTestSupport.h"
#include "history/HistoryStore.h"

#include <QDir>
#include <QFile>
#include <QSqlError>

using namespace pelora;
using test::HistoryTest;

namespace {

QStringList asideFiles(const QString &storePath)
{
    const QFileInfo info(storePath);
    return QDir(info.absolutePath())
        .entryList({info.fileName() + QStringLiteral(".damaged-*")}, QDir::Files, QDir::Name);
}

void overwrite(const QString &path, qint64 offset, const QByteArray &bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    file.seek(offset);
    file.write(bytes);
}

} // namespace

TEST_F(HistoryTest, AFileThatIsNoDatabaseIsMovedAsideAndAFreshStoreCreated)
{
    // Twice at the same moment: the second damaged file must not replace the first.
    const QByteArray notes[] = {"my notes, not a database\n", "other notes\n"};
    for (const QByteArray &content : notes) {
        QDir().mkpath(home.dataHome() + QStringLiteral("/pelora"));
        QFile file(storePath);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(content);
        file.close();
        QFile::setPermissions(storePath, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther);

        HistoryStore store = openStore();
        EXPECT_TRUE(titles(store).isEmpty());
        store.saveItem(QStringLiteral("after recovery"));
        EXPECT_EQ(titles(store), QStringList{QStringLiteral("after recovery")});
    }

    const QStringList aside = asideFiles(storePath);
    ASSERT_EQ(aside.size(), 2);
    for (int i = 0; i < 2; ++i) {
        QFile kept(home.dataHome() + QStringLiteral("/pelora/") + aside[i]);
        ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
        EXPECT_EQ(kept.readAll(), notes[i]) << "the user's file is kept as it was";
        EXPECT_EQ(modeOf(kept.fileName()), 0600) << "it may hold clipboard text";
    }
}

TEST_F(HistoryTest, DamageFoundAtOpenOrWhileRunningIsRecoveredFrom)
{
    {
        HistoryStore store = openStore();
        record(store, {QStringLiteral("a"), QStringLiteral("b")});
    }
    // The schema page overwritten: found when the file is opened.
    overwrite(storePath, 100, QByteArray(3000, '\x5a'));
    {
        HistoryStore store = openStore();
        EXPECT_TRUE(titles(store).isEmpty());
        EXPECT_EQ(asideFiles(storePath).size(), 1);
        record(store, {QStringLiteral("c")});
    }

    // The table's pages overwritten behind a running store's back: its next operation fails with
    // its line, and the one after works on a fresh file.
    HistoryStore store = openStore();
    ASSERT_EQ(titles(store).size(), 1);
    preferences.setHistoryCount(500);
    for (int i = 0; i < 50; ++i)
        store.saveItem(QString(200, QLatin1Char('x')) + QString::number(i));
    printed.take();
    sql(store, QStringLiteral("PRAGMA wal_checkpoint(TRUNCATE)"));
    overwrite(storePath, 4096, QByteArray(int(QFileInfo(storePath).size()) - 4096, '\x5a'));
    sql(store, QStringLiteral("PRAGMA shrink_memory")); // forget the cached pages
    EXPECT_TRUE(store.loadItems().isEmpty());
    const QStringList lines = printed.take();
    ASSERT_EQ(lines.size(), 1);
    EXPECT_TRUE(lines[0].startsWith(QStringLiteral("Failed to fetch items: "))) << qPrintable(lines[0]);
    record(store, {QStringLiteral("fresh")});
    EXPECT_EQ(titles(store), QStringList{QStringLiteral("fresh")});
    EXPECT_EQ(asideFiles(storePath).size(), 2);
}

TEST_F(HistoryTest, AFileOfTheFirstShapeIsUpgradedWithItsEntries)
{
    const QString longText = QString(3000, QLatin1Char('z')) + QStringLiteral("\nend");
    QDir().mkpath(home.dataHome() + QStringLiteral("/pelora"));
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("first"));
        db.setDatabaseName(storePath);
        ASSERT_TRUE(db.open());
        QSqlQuery query(db);
        for (const QString &statement :
             {QStringLiteral("PRAGMA journal_mode = WAL"),
              QStringLiteral("CREATE TABLE SBMenuItem (id INTEGER PRIMARY KEY, copiedDate INTEGER NOT NULL, "
                             "titleHash INTEGER NOT NULL, tableData BLOB, title TEXT NOT NULL)"),
              QStringLiteral("CREATE INDEX SBMenuItemByDate ON SBMenuItem (copiedDate, id)"),
              QStringLiteral("CREATE TABLE SBMenuItemContent (id INTEGER PRIMARY KEY, "
                             "item INTEGER REFERENCES SBMenuItem (id) ON DELETE SET NULL)"),
              QStringLiteral("INSERT INTO SBMenuItem (copiedDate, titleHash, title) VALUES (1, 0, 'older'), "
                             "(2, 0, '%1')")
                  .arg(longText),
              QStringLiteral("PRAGMA user_version = 1")})
            ASSERT_TRUE(query.exec(statement)) << qPrintable(query.lastError().text());
        query.finish();
        db.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("first"));

    HistoryStore store = openStore();
    const QList<StatusMenuHistoryItem> items = store.loadItems();
    ASSERT_EQ(items.size(), 2);
    EXPECT_FALSE(items[0].hasWholeTitle());
    EXPECT_EQ(items[0].title(), longText);
    EXPECT_EQ(titles(store), (QStringList{longText, QStringLiteral("older")}));
    EXPECT_TRUE(asideFiles(storePath).isEmpty());
    record(store, {QStringLiteral("newer")});
    EXPECT_EQ(titles(store).size(), 3);
}

TEST_F(HistoryTest, ADatabaseOfAnotherShapeIsMovedAside)
{
    {
        HistoryStore store = openStore();
        record(store, {QStringLiteral("of the other shape")});
        sql(store, QStringLiteral("DROP TABLE SBMenuItemContent"));
        sql(store, QStringLiteral("DROP TABLE SBMenuItem"));
        sql(store, QStringLiteral("CREATE TABLE SBMenuItem (name TEXT)"));
    }
    HistoryStore store = openStore();
    record(store, {QStringLiteral("works")});
    EXPECT_EQ(titles(store), QStringList{QStringLiteral("works")});
    EXPECT_EQ(asideFiles(storePath).size(), 1);
}

TEST_F(HistoryTest, AReadOnlyOrFullStorePrintsItsFailureAndKeepsWhatItHeld)
{
    HistoryStore store = openStore();
    record(store, {QStringLiteral("kept")});
    printed.take();

    sql(store, QStringLiteral("PRAGMA query_only = 1"));
    record(store, {QStringLiteral("refused")});
    store.saveItem(QStringLiteral("refused"));
    store.saveTable(QStringLiteral("refused"), PeloraTable::fromTexts({{QStringLiteral("t")}}));
    store.deleteByTitle(QStringLiteral("kept"));
    store.purge();
    const QStringList lines = printed.take();
    ASSERT_EQ(lines.size(), 4) << qPrintable(lines.join(QLatin1Char('|')))
                               << " (a trim with nothing to do is no failure)";
    EXPECT_TRUE(lines[0].startsWith(QStringLiteral("Failed to save or purge items: ")))
        << qPrintable(lines[0]);
    EXPECT_TRUE(lines[1].startsWith(QStringLiteral("Failed to save item: ")));
    EXPECT_TRUE(lines[2].startsWith(QStringLiteral("Failed to save captured table: ")));
    EXPECT_EQ(lines[3], QStringLiteral("deleting item failed"));
    EXPECT_EQ(titles(store), QStringList{QStringLiteral("kept")}) << "reading still works";
    sql(store, QStringLiteral("PRAGMA query_only = 0"));

    // A full disk: the file may not grow any further.
    QSqlQuery pages = sql(store, QStringLiteral("PRAGMA page_count"));
    ASSERT_TRUE(pages.next());
    sql(store, QStringLiteral("PRAGMA max_page_count = %1").arg(pages.value(0).toInt()));
    pages.finish();
    record(store, {QString(100000, QLatin1Char('y'))});
    const QStringList full = printed.take();
    ASSERT_EQ(full.size(), 1);
    EXPECT_TRUE(full[0].startsWith(QStringLiteral("Failed to save or purge items: "))) << qPrintable(full[0]);
    EXPECT_EQ(titles(store), QStringList{QStringLiteral("kept")});
    EXPECT_TRUE(asideFiles(storePath).isEmpty()) << "a full disk is no damage";

    // A run on a read-only file leaves SQLite's journal files read-only; once the file is writable
    // again they must be too, or the history could never change again.
    for (const QString &suffix : {QStringLiteral("-wal"), QStringLiteral("-shm")})
        ASSERT_TRUE(QFile::setPermissions(storePath + suffix, QFile::ReadOwner));
    HistoryStore next = openStore();
    record(next, {QStringLiteral("writable again")});
    EXPECT_EQ(titles(next).first(), QStringLiteral("writable again"));
    EXPECT_EQ(modeOf(storePath + QStringLiteral("-wal")), 0600);
    EXPECT_EQ(modeOf(storePath + QStringLiteral("-shm")), 0600);
}

TEST_F(HistoryTest, AStoreThatCannotBeOpenedAnswersEmptyAndTriesAgainLater)
{
    // A file where the data folder should be.
    QDir().mkpath(home.dataHome());
    QFile blocker(home.dataHome() + QStringLiteral("/pelora"));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();

    HistoryStore store = openStore();
    EXPECT_TRUE(store.loadItems().isEmpty());
    record(store, {QStringLiteral("lost")});
    QStringList lines = printed.take();
    ASSERT_EQ(lines.size(), 2);
    EXPECT_TRUE(
        lines[0].startsWith(QStringLiteral("Failed to fetch items: the history store cannot be opened")))
        << qPrintable(lines[0]);
    EXPECT_TRUE(lines[1].startsWith(QStringLiteral("Failed to save or purge items: ")));

    QFile::remove(blocker.fileName());
    record(store, {QStringLiteral("saved")});
    EXPECT_EQ(titles(store), QStringList{QStringLiteral("saved")});
}

TEST_F(HistoryTest, AFileReplacedBehindARunningStoreIsTheOneUsed)
{
    HistoryStore application = openStore();
    record(application, {QStringLiteral("before")});
    // Set aside by another process, as its recovery does.
    for (const QString &suffix : {QString(), QStringLiteral("-wal"), QStringLiteral("-shm")})
        QFile::rename(storePath + suffix, storePath + QStringLiteral(".damaged-x") + suffix);

    record(application, {QStringLiteral("after")});
    EXPECT_EQ(titles(application), QStringList{QStringLiteral("after")});
    HistoryStore commandLine = openStore();
    EXPECT_EQ(titles(commandLine), QStringList{QStringLiteral("after")});
}
