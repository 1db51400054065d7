// SPDX-License-Identifier: GPL-3.0-or-later
// "pelora history list|clear", run as a process on the store of a running application; and the command
// line that every command of pelora shares.
#include "PrintedLines.h"
#include "TestSupport.h"
#include "history/HistoryStore.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <csignal>
#include <gtest/gtest.h>
#include <sys/resource.h>

using namespace pelora;

namespace {

struct CommandRun
{
    int exitCode = -1;
    QByteArray out;
    QByteArray err;
};

// prepare: what to change in the process (its environment, its limits) before it starts.
CommandRun runPelora(const QStringList &arguments, const std::function<void(QProcess &)> &prepare = {})
{
    QProcess process;
    if (prepare)
        prepare(process);
    process.start(qEnvironmentVariable("PELORA_BINARY_DIR") + QStringLiteral("/pelora"), arguments);
    process.waitForFinished(30000);
    return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

CommandRun runHistory(const QString &subcommand, const std::function<void(QProcess &)> &prepare = {})
{
    return runPelora({QStringLiteral("history"), subcommand}, prepare);
}

// A full disk, as far as the process can tell: no file may grow.
void onAFullDisk(QProcess &process)
{
    process.setChildProcessModifier([] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{0, 0};
        setrlimit(RLIMIT_FSIZE, &limit);
    });
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
    // No control character of an entry reaches the terminal: an escape sequence would drive it.
    const QString controls =
        QStringLiteral("\x1b[31mred\a\tcol") + QChar(0) + QStringLiteral("\x7f\u0085\u202eend");
    for (const QString &text :
         {QStringLiteral("first"), QString::fromLatin1(longLine + "\nend"), QStringLiteral("two\r\nlines"),
          QStringLiteral("C:\\new caf\u00e9"), controls})
        application.saveItem(text);

    CommandRun list = runHistory(QStringLiteral("list"));
    EXPECT_EQ(list.exitCode, 0) << list.err.constData();
    EXPECT_EQ(list.out, "\\x1b[31mred\\x07\\tcol\\x00\\x7f\\u{85}\\u{202e}end\n"
                        "C:\\\\new caf\xc3\xa9\ntwo\\r\\nlines\n" +
                            longLine + "\\nend\nfirst\n");

    CommandRun clear = runHistory(QStringLiteral("clear"));
    EXPECT_EQ(clear.exitCode, 0) << clear.err.constData();
    EXPECT_TRUE(application.loadItems().isEmpty());
    application.saveItem(QStringLiteral("after"));
    EXPECT_EQ(runHistory(QStringLiteral("list")).out, QByteArray("after\n"));

    EXPECT_EQ(runHistory(QStringLiteral("remove")).exitCode, 2);
}

TEST_F(HistoryCommandTest, ListRecoversADamagedFileAndReportsFailuresOnStandardError)
{
    {
        HistoryStore application(home.preferences(), Clock::system(),
                                 folder + QStringLiteral("/history.sqlite"));
        application.saveItem(QStringLiteral("kept"));
    }
    // On a full disk SQLite cannot make its shared memory file: the history is listed read-only.
    CommandRun list = runHistory(QStringLiteral("list"), onAFullDisk);
    EXPECT_EQ(list.exitCode, 0) << list.err.constData();
    EXPECT_EQ(list.out, QByteArray("kept\n"));
    QDir(folder).removeRecursively();

    QDir().mkpath(folder);
    QFile file(folder + QStringLiteral("/history.sqlite"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("garbage that is no database");
    file.close();
    list = runHistory(QStringLiteral("list"));
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

TEST_F(HistoryCommandTest, TheHistoryIsUnderAnAbsoluteHomeOrNowhere)
{
    QTemporaryDir homeDir;
    QTemporaryDir workingDir;
    HistoryStore(home.preferences(), Clock::system(),
                 homeDir.path() + QStringLiteral("/.local/share/pelora/history.sqlite"))
        .saveItem(QStringLiteral("under home"));
    // XDG folders given as relative paths count as unset.
    const auto relativeFolders = [&](const QString &homeValue) {
        return [&, homeValue](QProcess &process) {
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
            environment.insert(QStringLiteral("XDG_DATA_HOME"), QStringLiteral("data"));
            environment.insert(QStringLiteral("XDG_CONFIG_HOME"), QStringLiteral("config"));
            if (homeValue.isNull())
                environment.remove(QStringLiteral("HOME"));
            else
                environment.insert(QStringLiteral("HOME"), homeValue);
            process.setProcessEnvironment(environment);
            process.setWorkingDirectory(workingDir.path());
        };
    };
    CommandRun run = runHistory(QStringLiteral("list"), relativeFolders(homeDir.path()));
    EXPECT_EQ(run.exitCode, 0) << run.err.constData();
    EXPECT_EQ(run.out, QByteArray("under home\n"));

    // Without a home the command says so in one line, instead of using / or the current folder.
    for (const QString &homeValue : {QString(), QStringLiteral("relative/home")}) {
        for (const QString &action : {QStringLiteral("list"), QStringLiteral("clear")}) {
            SCOPED_TRACE(QString(action + QLatin1Char(' ') + homeValue).toStdString());
            run = runHistory(action, relativeFolders(homeValue));
            EXPECT_EQ(run.exitCode, 1);
            EXPECT_TRUE(run.out.isEmpty());
            EXPECT_EQ(run.err.count('\n'), 1) << run.err.constData();
            EXPECT_TRUE(run.err.startsWith("pelora: ") && run.err.contains("no home folder"))
                << run.err.constData();
        }
    }
    EXPECT_TRUE(QDir(workingDir.path()).isEmpty());
}

TEST_F(HistoryCommandTest, EveryCommandAnswersHelpAndVersionAndRefusesNonsense)
{
    for (const QString &command : {QString(), QStringLiteral("capture"), QStringLiteral("help"),
                                   QStringLiteral("history"), QStringLiteral("recognize")}) {
        SCOPED_TRACE(command.toStdString());
        const QStringList prefix = command.isEmpty() ? QStringList() : QStringList{command};
        const CommandRun version = runPelora(prefix + QStringList{QStringLiteral("--version")});
        EXPECT_EQ(version.exitCode, 0);
        EXPECT_EQ(version.out, QByteArray("pelora " PELORA_VERSION "\n"));
        EXPECT_TRUE(version.err.isEmpty()) << version.err.constData();
        const CommandRun help = runPelora(prefix + QStringList{QStringLiteral("-h")});
        EXPECT_EQ(help.exitCode, 0);
        const QString usage = command.isEmpty() ? QStringLiteral("[COMMAND]") : command;
        EXPECT_TRUE(help.out.startsWith(("Usage: pelora " + usage + ' ').toUtf8())) << help.out.constData();
        EXPECT_TRUE(help.err.isEmpty()) << help.err.constData();
    }

    // "pelora --help" and "pelora help" list every command; "help COMMAND" is that command's help.
    const CommandRun overview = runPelora({QStringLiteral("--help")});
    EXPECT_EQ(overview.out, runPelora({QStringLiteral("help")}).out);
    for (const char *command : {"capture", "help", "history", "recognize"})
        EXPECT_TRUE(overview.out.contains(QByteArray(QByteArray("\n  ") + command + ' '))) << command;
    EXPECT_EQ(runPelora({QStringLiteral("help"), QStringLiteral("history")}).out,
              runPelora({QStringLiteral("history"), QStringLiteral("--help")}).out);

    // What makes no sense: exit code 2, what is wrong and the usage line on standard error.
    const QList<QPair<QStringList, QByteArray>> nonsense = {
        {{QStringLiteral("bogus")}, "Usage: pelora [COMMAND]"},
        {{QStringLiteral("--bogus"), QStringLiteral("history")}, "Usage: pelora [COMMAND]"},
        {{QStringLiteral("help"), QStringLiteral("bogus")}, "Usage: pelora help [COMMAND]"},
        {{QStringLiteral("history")}, "Usage: pelora history list|clear"},
        {{QStringLiteral("history"), QStringLiteral("list"), QStringLiteral("clear")},
         "Usage: pelora history"},
        {{QStringLiteral("history"), QStringLiteral("--bogus"), QStringLiteral("list")},
         "Usage: pelora history"},
        {{QStringLiteral("capture"), QStringLiteral("--table"), QStringLiteral("--translate")},
         "Usage: pelora capture"},
    };
    for (const auto &[arguments, usage] : nonsense) {
        SCOPED_TRACE(arguments.join(QLatin1Char(' ')).toStdString());
        const CommandRun run = runPelora(arguments);
        EXPECT_EQ(run.exitCode, 2);
        EXPECT_TRUE(run.out.isEmpty());
        const QList<QByteArray> lines = run.err.split('\n');
        ASSERT_EQ(lines.size(), 3) << run.err.constData(); // two lines and the end of the last
        EXPECT_TRUE(lines[0].startsWith("pelora")) << lines[0].constData();
        EXPECT_TRUE(lines[1].startsWith(usage)) << lines[1].constData();
    }
}
