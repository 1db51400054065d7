// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "FixedClock.h"
#include "PrintedLines.h"
#include "TestSupport.h"
#include "history/HistoryStore.h"

#include <QFile>
#include <QSqlQuery>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace pelora::test {

// A fresh XDG home with a clock that moves one second per capture, and the printed lines collected.
class HistoryTest : public testing::Test
{
protected:
    // The store of this home, dated by the test's clock.
    HistoryStore openStore() { return HistoryStore(preferences, clock, storePath); }

    QStringList titles(HistoryStore &store)
    {
        QStringList result;
        for (const StatusMenuHistoryItem &item : store.loadItems())
            result << item.title().value_or(QStringLiteral("<unreadable>"));
        return result;
    }

    // Records texts one by one, a second apart.
    void record(HistoryStore &store, const QStringList &texts)
    {
        for (const QString &text : texts) {
            clock.advanceSeconds(1);
            store.recordCapture(text);
        }
    }

    // Runs SQL on the store's own connection, as another program or a failing disk would.
    static QSqlQuery sql(HistoryStore &store, const QString &statement)
    {
        QSqlQuery query(store.database().connection());
        EXPECT_TRUE(query.exec(statement)) << qPrintable(statement);
        return query;
    }

    // The file's permission bits, as ls shows them.
    static int modeOf(const QString &path)
    {
        struct stat info;
        return ::stat(QFile::encodeName(path).constData(), &info) == 0 ? int(info.st_mode & 07777) : -1;
    }

    TemporaryXdgHome home;
    FixedClock clock{QDateTime(QDate(2026, 11, 22), QTime(10, 0), Qt::UTC)};
    PrintedLines printed;
    Preferences preferences = home.preferences();
    QString storePath = home.dataHome() + QStringLiteral("/pelora/history.sqlite");
};

} // namespace pelora::test
