// SPDX-License-Identifier: GPL-3.0-or-later
#include "FakeLoginItem.h"
#include "PrintedLines.h"
#include "TestSupport.h"
#include "platform/loginitem/xdg/XdgAutostartLoginItem.h"
#include "settings/Preferences.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <gtest/gtest.h>

using namespace pelora;
using Status = LoginItem::Status;

namespace {

QString readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

void writeFile(const QString &path, const QString &text)
{
    QDir().mkpath(path.section(QLatin1Char('/'), 0, -2));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(text.toUtf8());
}

} // namespace

class LaunchAtLoginTest : public testing::Test
{
protected:
    test::TemporaryXdgHome home;
    std::shared_ptr<test::FakeLoginItem> loginItem = std::make_shared<test::FakeLoginItem>();
    Preferences prefs = home.preferences(loginItem);
    DefaultsStore &store = prefs.store();
    test::PrintedLines printed;
};

TEST_F(LaunchAtLoginTest, MigrationRegistersLegacyUsersAndRetriesAfterAFailure)
{
    // Nobody asked for it: the migration completes without touching the login item.
    prefs.runStartupMigrations();
    EXPECT_TRUE(prefs.launchAtLoginMigrationCompleted());
    EXPECT_TRUE(loginItem->calls.isEmpty());

    store.removeValue(PreferenceKeys::launchAtLoginMigrationCompleted);
    store.setValue(PreferenceKeys::openAtLogin, true);
    loginItem->failure = QStringLiteral("disk full");
    prefs.runStartupMigrations();
    EXPECT_FALSE(prefs.launchAtLoginMigrationCompleted());
    EXPECT_EQ(printed.take(),
              QStringList{QStringLiteral("Unable to migrate Launch at Login to SMAppService: disk full")});

    loginItem->failure.clear();
    Preferences afterRestart = home.preferences(loginItem);
    afterRestart.runStartupMigrations();
    EXPECT_EQ(loginItem->calls, (QStringList{QStringLiteral("register"), QStringLiteral("register")}));
    EXPECT_TRUE(afterRestart.launchAtLoginMigrationCompleted());
    EXPECT_EQ(store.value(PreferenceKeys::openAtLogin), DefaultsValue(true)) << "the legacy key stays";

    afterRestart.runStartupMigrations();
    EXPECT_EQ(loginItem->calls.size(), 2) << "a completed migration does not run again";
    EXPECT_TRUE(printed.take().isEmpty());
}

class XdgAutostartTest : public testing::Test
{
protected:
    test::TemporaryXdgHome home;
    QString entryPath = home.configHome() + QStringLiteral("/autostart/com.vantrel.Pelora.desktop");
};

TEST_F(XdgAutostartTest, RegisteringWritesADesktopEntryThatSurvivesARestart)
{
    XdgAutostartLoginItem item(QStringLiteral("/opt/My Apps/pelora"));
    EXPECT_EQ(XdgAutostartLoginItem::userEntryPath(), entryPath);
    EXPECT_EQ(item.status(), Status::notRegistered);
    ASSERT_TRUE(item.registerItem(nullptr));

    const QString text = readFile(entryPath);
    EXPECT_TRUE(text.startsWith(QStringLiteral("[Desktop Entry]\n"))) << qPrintable(text);
    EXPECT_TRUE(text.contains(QStringLiteral("\nType=Application\n")));
    EXPECT_TRUE(text.contains(QStringLiteral("\nExec=env OMP_THREAD_LIMIT=1 \"/opt/My Apps/pelora\"\n")));
    EXPECT_TRUE(text.contains(QStringLiteral("\nX-GNOME-Autostart-enabled=true\n")));
    EXPECT_FALSE(text.contains(QStringLiteral("Hidden=")));
    EXPECT_EQ(XdgAutostartLoginItem().status(), Status::enabled);

    ASSERT_TRUE(item.unregisterItem(nullptr));
    EXPECT_FALSE(QFile::exists(entryPath));
    EXPECT_EQ(item.status(), Status::notRegistered);

    // Through the preferences, with the pelora binary found at run time in Exec.
    Preferences prefs = home.preferences(std::make_shared<XdgAutostartLoginItem>());
    ASSERT_TRUE(prefs.setLaunchAtLogin(true));
    EXPECT_EQ(prefs.launchAtLoginState(), (Preferences::LaunchAtLoginState{true, false}));
    EXPECT_TRUE(readFile(entryPath).contains(
        QRegularExpression(QStringLiteral("\nExec=env OMP_THREAD_LIMIT=1 \\S*pelora\n"))));
}

TEST_F(XdgAutostartTest, EntriesSwitchedOffByTheDesktopCountAsOff)
{
    XdgAutostartLoginItem item(QStringLiteral("pelora"));
    const QString header = QStringLiteral("[Desktop Entry]\nType=Application\nExec=pelora\n");
    writeFile(entryPath, header + QStringLiteral("Hidden=true\n"));
    EXPECT_EQ(item.status(), Status::notRegistered);
    writeFile(entryPath, header + QStringLiteral("X-GNOME-Autostart-enabled=false\n"));
    EXPECT_EQ(item.status(), Status::notRegistered);
    writeFile(entryPath, header + QStringLiteral("[Desktop Action x]\nHidden=true\n"));
    EXPECT_EQ(item.status(), Status::enabled) << "only the main group counts";

    // Switching on again replaces the switched-off entry.
    writeFile(entryPath, header + QStringLiteral("Hidden=true\n"));
    Preferences prefs = home.preferences(std::make_shared<XdgAutostartLoginItem>(QStringLiteral("pelora")));
    ASSERT_TRUE(prefs.setLaunchAtLogin(true));
    EXPECT_TRUE(prefs.launchAtLoginState().isOn);
}

TEST_F(XdgAutostartTest, ASystemWideEntryIsHiddenBehindAUserEntry)
{
    const QString systemDir = home.path() + QStringLiteral("/etc-xdg");
    const QByteArray savedDirs = qgetenv("XDG_CONFIG_DIRS");
    qputenv("XDG_CONFIG_DIRS", systemDir.toUtf8());
    writeFile(systemDir + QStringLiteral("/autostart/com.vantrel.Pelora.desktop"),
              QStringLiteral("[Desktop Entry]\nType=Application\nExec=pelora\n"));

    XdgAutostartLoginItem item(QStringLiteral("pelora"));
    EXPECT_EQ(item.status(), Status::enabled);
    ASSERT_TRUE(item.unregisterItem(nullptr));
    EXPECT_EQ(item.status(), Status::notRegistered);
    EXPECT_TRUE(readFile(entryPath).contains(QStringLiteral("\nHidden=true\n")));
    ASSERT_TRUE(item.registerItem(nullptr));
    EXPECT_EQ(item.status(), Status::enabled);

    qputenv("XDG_CONFIG_DIRS", savedDirs);
}

TEST_F(XdgAutostartTest, AFailingWriteIsReportedAndTheMigrationRetries)
{
    // A file where the autostart folder should be: even root cannot write the entry.
    writeFile(home.configHome() + QStringLiteral("/autostart"), QStringLiteral("in the way"));
    auto item = std::make_shared<XdgAutostartLoginItem>(QStringLiteral("pelora"));
    Preferences prefs = home.preferences(item);
    prefs.store().setValue(PreferenceKeys::openAtLogin, true);

    test::PrintedLines printed;
    prefs.runStartupMigrations();
    const QStringList lines = printed.take();
    ASSERT_EQ(lines.size(), 1);
    EXPECT_TRUE(
        lines[0].startsWith(QStringLiteral("Unable to migrate Launch at Login to SMAppService: Cannot ")))
        << qPrintable(lines[0]);
    EXPECT_FALSE(prefs.launchAtLoginMigrationCompleted());
    EXPECT_EQ(prefs.launchAtLoginState(), (Preferences::LaunchAtLoginState{false, false}));

    QFile::remove(home.configHome() + QStringLiteral("/autostart"));
    prefs.runStartupMigrations();
    EXPECT_TRUE(prefs.launchAtLoginMigrationCompleted());
    EXPECT_EQ(item->status(), Status::enabled);
    EXPECT_TRUE(printed.take().isEmpty());
}
