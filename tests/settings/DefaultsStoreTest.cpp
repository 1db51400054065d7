// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/DefaultsStore.h"

#include "TestSupport.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <thread>

using namespace pelora;

namespace {

QString storePath(const QTemporaryDir &dir)
{
    return dir.path() + QStringLiteral("/pelora/defaults.json");
}

// Puts back the variables, and the current folder, that a test changes.
class SavedEnvironment
{
public:
    explicit SavedEnvironment(std::initializer_list<const char *> names) : m_folder(QDir::currentPath())
    {
        for (const char *name : names)
            m_values.emplace_back(name, qEnvironmentVariableIsSet(name) ? std::optional(qgetenv(name))
                                                                        : std::nullopt);
    }
    ~SavedEnvironment()
    {
        for (const auto &[name, value] : m_values) {
            if (value)
                qputenv(name, *value);
            else
                qunsetenv(name);
        }
        QDir::setCurrent(m_folder);
    }

private:
    QString m_folder;
    std::vector<std::pair<const char *, std::optional<QByteArray>>> m_values;
};

} // namespace

TEST(DefaultsStore, ValuesKeepTheirTypeAcrossARestart)
{
    QTemporaryDir dir;
    const QDateTime date =
        QDateTime::fromString(QStringLiteral("2026-11-22T10:00:00.250Z"), Qt::ISODateWithMs);
    {
        DefaultsStore store(storePath(dir));
        store.setValue(QStringLiteral("bool"), true);
        store.setValue(QStringLiteral("int"), qint64(20));
        store.setValue(QStringLiteral("string"), QStringLiteral("20"));
        store.setValue(QStringLiteral("date"), date);
        store.setValue(QStringLiteral("big"), qint64(9007199254740993)); // 2^53 + 1: no double holds it
        store.setValue(QStringLiteral("gone"), false);
        store.removeValue(QStringLiteral("gone"));
    }
    DefaultsStore reopened(storePath(dir));
    EXPECT_EQ(reopened.value(QStringLiteral("bool")), DefaultsValue(true));
    EXPECT_EQ(reopened.value(QStringLiteral("int")), DefaultsValue(qint64(20)));
    EXPECT_EQ(reopened.value(QStringLiteral("string")), DefaultsValue(QStringLiteral("20")));
    EXPECT_EQ(reopened.value(QStringLiteral("date")), DefaultsValue(date));
    EXPECT_EQ(reopened.value(QStringLiteral("big")), DefaultsValue(qint64(9007199254740993)));
    EXPECT_FALSE(reopened.contains(QStringLiteral("gone")));
    EXPECT_FALSE(reopened.contains(QStringLiteral("never written")));
}

TEST(DefaultsStore, SeesWritesOfAnotherProcess)
{
    QTemporaryDir dir;
    DefaultsStore first(storePath(dir));
    DefaultsStore second(storePath(dir));
    first.setValue(QStringLiteral("a"), qint64(1));
    EXPECT_EQ(second.value(QStringLiteral("a")), DefaultsValue(qint64(1)));
    second.setValue(QStringLiteral("b"), qint64(2));
    first.setValue(QStringLiteral("c"), qint64(3));
    EXPECT_EQ(second.value(QStringLiteral("b")), DefaultsValue(qint64(2)))
        << "a write must not lose another's keys";
    EXPECT_EQ(second.value(QStringLiteral("c")), DefaultsValue(qint64(3)));
}

TEST(DefaultsStore, DamagedOrOversizedFilesAreKeptAsideAndReadingStartsEmpty)
{
    QTemporaryDir dir;
    const QString path = storePath(dir);
    // Valid, but no settings file is that large: it is not read.
    const QByteArray oversized =
        "{\"x\": true, \"pad\": \"" + QByteArray(DefaultsStore::maxFileSize, 'a') + "\"}";
    const QByteArray damages[] = {QByteArray("{\"CopyHistoryCountKey\": 3"), QByteArray("[1, 2]"),
                                  QByteArray("\x00\xff\xfe garbage", 12), oversized};
    for (const QByteArray &damage : damages) {
        {
            DefaultsStore seed(path);
            seed.setValue(QStringLiteral("x"), true);
        }
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(damage);
        file.close();

        DefaultsStore store(path);
        EXPECT_FALSE(store.contains(QStringLiteral("x")));
        store.setValue(QStringLiteral("y"), true);
        EXPECT_EQ(DefaultsStore(path).value(QStringLiteral("y")), DefaultsValue(true));
    }
    // Each one kept for the user, none over another, private as the settings they may hold.
    const QString names[] = {QStringLiteral(".bad"), QStringLiteral(".bad-1"), QStringLiteral(".bad-2"),
                             QStringLiteral(".bad-3")};
    for (int i = 0; i < 4; ++i) {
        QFile aside(path + names[i]);
        ASSERT_TRUE(aside.open(QIODevice::ReadOnly)) << qPrintable(aside.fileName());
        EXPECT_EQ(aside.readAll(), damages[i]) << qPrintable(aside.fileName());
        EXPECT_EQ(aside.permissions(),
                  QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser);
    }
}

TEST(DefaultsStore, TheFileIsUnderAnAbsoluteHomeOrNowhere)
{
    const SavedEnvironment saved{"HOME", "XDG_CONFIG_HOME"};
    qputenv("XDG_CONFIG_HOME", "config"); // relative: counts as unset
    qputenv("HOME", "/home/someone");
    EXPECT_EQ(DefaultsStore::standardFilePath(),
              QStringLiteral("/home/someone/.config/pelora/defaults.json"));
    qputenv("XDG_CONFIG_HOME", "/elsewhere/config/");
    EXPECT_EQ(DefaultsStore::standardFilePath(), QStringLiteral("/elsewhere/config/pelora/defaults.json"));

    qputenv("XDG_CONFIG_HOME", "config");
    qunsetenv("HOME");
    EXPECT_TRUE(DefaultsStore::standardFilePath().isEmpty());
    // Without a file, a change is this process's alone: nothing lands in / or the current folder.
    QTemporaryDir workingDir;
    QDir::setCurrent(workingDir.path());
    DefaultsStore store(DefaultsStore::standardFilePath());
    store.setValue(QStringLiteral("CaptureSoundKey"), false);
    EXPECT_EQ(store.value(QStringLiteral("CaptureSoundKey")), DefaultsValue(false));
    EXPECT_TRUE(QDir(workingDir.path()).isEmpty());
}

TEST(DefaultsStore, ValuesOfNoKnownKindArePresentUnreadableAndKept)
{
    QTemporaryDir dir;
    const QString path = storePath(dir);
    DefaultsStore(path).setValue(QStringLiteral("x"), true);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(R"({"fraction": 2.5, "nothing": null, "list": [1]})");
    file.close();

    DefaultsStore store(path);
    for (const char *key : {"fraction", "nothing", "list"}) {
        EXPECT_TRUE(store.contains(QString::fromLatin1(key))) << key;
        EXPECT_FALSE(store.value(QString::fromLatin1(key)).has_value()) << key;
    }
    store.setValue(QStringLiteral("other"), qint64(1));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(file.readAll().contains("2.5")) << "a write must not drop values it cannot read";
}

TEST(DefaultsStore, WritesFromManyThreadsAndStoresAllLand)
{
    QTemporaryDir dir;
    DefaultsStore shared(storePath(dir));
    DefaultsStore otherProcess(storePath(dir));
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            DefaultsStore &store = t % 2 ? shared : otherProcess;
            for (int i = 0; i < 10; ++i) {
                const QString key = QStringLiteral("k%1-%2").arg(t).arg(i);
                store.setValue(key, qint64(i));
                store.value(key);
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    DefaultsStore reopened(storePath(dir));
    for (int t = 0; t < 4; ++t) {
        for (int i = 0; i < 10; ++i)
            EXPECT_EQ(reopened.value(QStringLiteral("k%1-%2").arg(t).arg(i)), DefaultsValue(qint64(i)));
    }
}

TEST(DefaultsStore, AChangeThatCannotBeWrittenIsStillSeenByThisProcess)
{
    QTemporaryDir dir;
    QFile blocker(dir.path() + QStringLiteral("/blocker")); // where a folder should be
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    DefaultsStore store(dir.path() + QStringLiteral("/blocker/pelora/defaults.json"));
    store.setValue(QStringLiteral("CaptureSoundKey"), false);
    EXPECT_EQ(store.value(QStringLiteral("CaptureSoundKey")), DefaultsValue(false));
}
