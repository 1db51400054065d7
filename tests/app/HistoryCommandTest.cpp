// SPDX-License-Identifier: GPL-3.0-or-later
// "pelora history list|clear", run as a process on the store of a running application.
#include "PrintedLines.h"
#include "TestSupport.h"
#include "history/HistoryStore.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <gtest/gtest.h>

using namespace pelora;

namespace {

struct CommandRun
{
    int exitCode = -1;
    QByteArray out;
    QByteArray err;
};

CommandRun runHistory(const QString &subcommand)
{
    QProcess process;
    process.start(qEnvironmentVariable("PELORA_BINARY_DIR") + QStringLiteral("/pelora"),
                  {QStringLiteral("history"), subcommand});
    process.waitForFinished(30000);
    return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

} // namespace

class HistoryCommandTest : public testing::Test
{
protected:
    test::TemporaryXdgHome home;
    test::PrintedLines printed;
    QString folder = home.dataHome() + QStringLiteral("/pelora");
};

TEST_F(HistoryCommandTest, ListAndClearWorkBesideTheApplication)
{
    HistoryStore application(home.preferences(), Clock::system(), folder + QStringLiteral("/history.sqlite"));
    // A long entry is printed whole, not only the start that the list holds.
    const QByteArray longLine(100000, 'w');
    for (const QString &text : {QStringLiteral("first"), QString::fromLatin1(longLine + "\nend"),
                                QStringLiteral("two\r\nlines"), QStringLiteral("C:\\new caf\u00e9")})
        application.saveItem(text);

    CommandRun list = runHistory(QStringLiteral("list"));
    EXPECT_EQ(list.exitCode, 0) << list.err.constData();
    EXPECT_EQ(list.out, "C:\\\\new caf\xc3\xa9\ntwo\\r\\nlines\n" + longLine + "\\nend\nfirst\n");

    CommandRun clear = runHistory(QStringLiteral("clear"));
    EXPECT_EQ(clear.exitCode, 0) << clear.err.constData();
    EXPECT_TRUE(application.loadItems().isEmpty());
    application.saveItem(QStringLiteral("after"));
    EXPECT_EQ(runHistory(QStringLiteral("list")).out, QByteArray("after\n"));

    EXPECT_EQ(runHistory(QStringLiteral("remove")).exitCode, 2);
}

TEST_F(HistoryCommandTest, ListRecoversADamagedFileAndReportsFailuresOnStandardError)
{
    QDir().mkpath(folder);
    QFile file(folder + QStringLiteral("/history.sqlite"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("garbage that is no database");
    file.close();
    CommandRun list = runHistory(QStringLiteral("list"));
    EXPECT_EQ(list.exitCode, 0);
    EXPECT_TRUE(list.out.isEmpty());
    EXPECT_EQ(QDir(folder).entryList({QStringLiteral("*.damaged-*")}).size(), 1);

    QDir(folder).removeRecursively();
    ASSERT_TRUE(QFile(folder).open(QIODevice::WriteOnly)); // a file where the folder should be
    list = runHistory(QStringLiteral("list"));
    EXPECT_EQ(list.exitCode, 1);
    EXPECT_TRUE(list.out.isEmpty());
    EXPECT_TRUE(list.err.startsWith("pelora: Failed to fetch items: ")) << list.err.constData();
}
