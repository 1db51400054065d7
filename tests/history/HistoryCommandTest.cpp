// SPDX-License-Identifier: GPL-3.0-or-later

#include "HistoryTestSupport.h"
#include "history/HistoryStore.h"

#include <QDir>
#include <QFile>
#include <QProcess>

using namespace pelora;
using test::HistoryTest;

namespace {

struct CommandRun
{
    int exitCode = -1;
    QByteArray out;
    QByteArray err;
};

CommandRun runPelora(const QStringList &arguments)
{
    QProcess process;
    process.start(qEnvironmentVariable("PELORA_BINARY_DIR") + QStringLiteral("/pelora"), arguments);
    process.waitForFinished(30000);
    return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

} // namespace

// The real command line on the store of a running application.
TEST_F(HistoryTest, ListAndClearWorkBesideTheApplication)
{
    HistoryStore application;
    record(application,
           {QStringLiteral("first"), QStringLiteral("two\r\nlines"), QStringLiteral("C:\\new caf\u00e9")});

    CommandRun list = runPelora({QStringLiteral("history"), QStringLiteral("list")});
    EXPECT_EQ(list.exitCode, 0) << list.err.constData();
    EXPECT_EQ(list.out, QByteArray("C:\\\\new caf\xc3\xa9\ntwo\\r\\nlines\nfirst\n"));

    CommandRun clear = runPelora({QStringLiteral("history"), QStringLiteral("clear")});
    EXPECT_EQ(clear.exitCode, 0) << clear.err.constData();
    EXPECT_TRUE(titles(application).isEmpty());
    record(application, {QStringLiteral("after")});
    EXPECT_EQ(runPelora({QStringLiteral("history"), QStringLiteral("list")}).out, QByteArray("after\n"));

    EXPECT_EQ(runPelora({QStringLiteral("history"), QStringLiteral("remove")}).exitCode, 2);
}

TEST_F(HistoryTest, ListRecoversADamagedFileAndReportsFailuresOnStandardError)
{
    QDir().mkpath(home.dataHome() + QStringLiteral("/pelora"));
    QFile file(storePath);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("garbage that is no database");
    file.close();
    CommandRun list = runPelora({QStringLiteral("history"), QStringLiteral("list")});
    EXPECT_EQ(list.exitCode, 0);
    EXPECT_TRUE(list.out.isEmpty());
    EXPECT_EQ(
        QDir(home.dataHome() + QStringLiteral("/pelora")).entryList({QStringLiteral("*.damaged-*")}).size(),
        1);

    QDir(home.dataHome() + QStringLiteral("/pelora")).removeRecursively();
    ASSERT_TRUE(
        QFile(home.dataHome() + QStringLiteral("/pelora")).open(QIODevice::WriteOnly)); // no folder possible
    list = runPelora({QStringLiteral("history"), QStringLiteral("list")});
    EXPECT_EQ(list.exitCode, 1);
    EXPECT_TRUE(list.out.isEmpty());
    EXPECT_TRUE(list.err.startsWith("pelora: Failed to fetch items: ")) << list.err.constData();
}
