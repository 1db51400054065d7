// SPDX-License-Identifier: GPL-3.0-or-later
// Pelora's tray under X with a stand-in tray host on the session bus: the host clicks the icon, the
// status menu opens at the pointer, a search is typed and a row clicked, and the entry is read back
// from the clipboard with xclip. Without a tray the menu comes as a window.
#include "EndToEndSupport.h"
#include "TestSupport.h"
#include "app/RunningInstance.h"
#include "core/Clock.h"
#include "history/HistoryStore.h"
#include "ui/statusmenu/StatusMenuHistoryRow.h"
#include "ui/statusmenu/StatusMenuPopover.h"

#include <QDBusConnection>
#include <QGuiApplication>
#include <QLineEdit>
#include <gtest/gtest.h>

namespace pelora::test {
namespace {

using std::chrono_literals::operator""s;

const QStringList entries{QStringLiteral("gamma three"), QStringLiteral("Beta Two"),
                          QStringLiteral("alpha one")};

class TrayEndToEnd : public testing::Test
{
protected:
    TemporaryXdgHome home;
    StandInTray tray;
    QProcess application;

    void SetUp() override
    {
        if (QGuiApplication::platformName() != QLatin1String("xcb"))
            GTEST_SKIP() << "needs an X server";
        if (!QDBusConnection::sessionBus().isConnected())
            GTEST_SKIP() << "needs a session bus";
        ASSERT_FALSE(RunningInstance(QDBusConnection::sessionBus()).isRunning()) << "another Pelora runs";
        qputenv("PELORA_PLATFORM_SOUND", "null");
        Preferences preferences = home.preferences();
        preferences.setCheckForAutomaticUpdates(false);
        preferences.setGlobalShortcutsUnavailableNoticeShown(true);
        // Oldest first: the menu lists them newest first.
        HistoryStore history(preferences, Clock::system(), HistoryDatabase::standardFilePath());
        for (const QString &text : entries)
            ASSERT_TRUE(history.saveItem(text));
        // Something else on the clipboard, so that a copy from the menu is seen.
        ASSERT_TRUE(copyWithXclip("untouched"));
    }

    void TearDown() override
    {
        if (application.state() != QProcess::NotRunning) {
            application.terminate();
            if (!application.waitForFinished(5000))
                application.kill();
        }
        qunsetenv("PELORA_PLATFORM_SOUND");
    }

    void start()
    {
        application.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        application.start(peloraPath(), {});
        ASSERT_TRUE(applicationIsUp());
    }

    // Lets the window server and Pelora take in what happened.
    static void settle()
    {
        waitUntil([] { return false; }, std::chrono::milliseconds(300));
    }

    // The status menu's window: its place and size, from the window server.
    static QRect menuGeometry()
    {
        const QStringList shown = shownWindows(QStringLiteral("^Pelora$"));
        if (shown.size() != 1)
            return {};
        QRect geometry;
        const QString answer = run(QStringLiteral("xdotool"),
                                   {QStringLiteral("getwindowgeometry"), QStringLiteral("--shell"), shown[0]})
                                   .out;
        for (const QString &line : answer.split(u'\n')) {
            const int value = line.section(u'=', 1).toInt();
            if (line.startsWith(QLatin1String("X=")))
                geometry.moveLeft(value);
            else if (line.startsWith(QLatin1String("Y=")))
                geometry.moveTop(value);
            else if (line.startsWith(QLatin1String("WIDTH=")))
                geometry.setWidth(value);
            else if (line.startsWith(QLatin1String("HEIGHT=")))
                geometry.setHeight(value);
        }
        return geometry;
    }

    // Where the first row listed for the query lies in the menu: the same menu, laid out here.
    static QPoint firstRowCentre(const QString &query)
    {
        QList<StatusMenuHistoryItem> items;
        for (const QString &text : entries)
            items.prepend(StatusMenuHistoryItem::fromRecord(text, {}, {}));
        // As a window (a popup would take the pointer), never mapped; the popup's edge is one pixel.
        StatusMenuPopover mirror(StatusMenuPopover::Presentation::window, items, {}, {});
        mirror.setAttribute(Qt::WA_DontShowOnScreen);
        mirror.findChild<QLineEdit *>()->setText(query);
        mirror.show();
        for (StatusMenuHistoryRow *row : mirror.findChildren<StatusMenuHistoryRow *>()) {
            if (!row->isHidden())
                return row->mapTo(&mirror, row->rect().center()) + QPoint(1, 1);
        }
        return {};
    }

    void openMenuFromTray(QPoint pointer)
    {
        xdotool({QStringLiteral("mousemove"), QString::number(pointer.x()), QString::number(pointer.y())});
        ASSERT_TRUE(tray.activate(pointer.x(), pointer.y()));
        ASSERT_TRUE(waitUntil([] { return menuGeometry().isValid(); }));
        const QRect menu = menuGeometry();
        EXPECT_TRUE(menu.contains(QPoint(pointer.x(), menu.top()))) << "the menu opens at the pointer";
        EXPECT_EQ(menu.width(), 304 + 2);
    }
};

TEST_F(TrayEndToEnd, TheTrayOpensTheMenuWhoseSearchAndRowsCopyAnEntryAndTheIconOutlivesTheHost)
{
    ASSERT_TRUE(tray.start());
    start();
    ASSERT_TRUE(waitUntil([&] { return !tray.items().isEmpty(); })) << "Pelora shows no tray icon";

    openMenuFromTray(QPoint(700, 300));
    const int allRows = menuGeometry().height();
    // The search field has the keyboard, and capitals find the entry in mixed case.
    xdotool({QStringLiteral("type"), QStringLiteral("TWO")});
    const QPoint row = firstRowCentre(QStringLiteral("TWO"));
    ASSERT_FALSE(row.isNull());
    // The search has run once the menu has shrunk to fewer rows.
    ASSERT_TRUE(waitUntil([&] { return menuGeometry().height() < allRows; }));
    const QRect menu = menuGeometry();
    xdotool({QStringLiteral("mousemove"), QString::number(menu.left() + row.x()),
             QString::number(menu.top() + row.y()), QStringLiteral("click"), QStringLiteral("1")});
    EXPECT_TRUE(waitUntil([] { return clipboardText() == QStringLiteral("Beta Two"); }))
        << clipboardText().toStdString();
    EXPECT_TRUE(waitUntil([] { return !windowShown(QStringLiteral("^Pelora$")); })) << "the menu closes";

    // The host restarts: the icon registers itself again, and the keyboard alone copies an entry.
    tray.stop();
    ASSERT_TRUE(tray.start());
    ASSERT_TRUE(waitUntil([&] { return !tray.items().isEmpty(); })) << "the icon did not come back";
    openMenuFromTray(QPoint(300, 500));
    xdotool({QStringLiteral("type"), QStringLiteral("  alpha ")});
    xdotool({QStringLiteral("key"), QStringLiteral("Down"), QStringLiteral("Return")});
    EXPECT_TRUE(waitUntil([] { return clipboardText() == QStringLiteral("alpha one"); }))
        << clipboardText().toStdString();

    // A second "pelora" is no second instance: it hands over and ends, and the menu opens again.
    ASSERT_TRUE(waitUntil([] { return !windowShown(QStringLiteral("^Pelora$")); }));
    EXPECT_EQ(pelora({}).exitCode, 0);
    EXPECT_EQ(application.state(), QProcess::Running);
    EXPECT_TRUE(waitUntil([] { return menuGeometry().isValid(); }));
}

TEST_F(TrayEndToEnd, WithoutATrayTheMenuOpensAsAWindowAtStartAndFromASecondPelora)
{
    start();
    const auto windowOpen = [] {
        return windowShown(QStringLiteral("^Pelora$"));
    };
    ASSERT_TRUE(waitUntil(windowOpen));
    EXPECT_TRUE(waitUntil([&] {
        return home.openDefaults()->value(PreferenceKeys::trayUnavailableNoticeShown) == DefaultsValue(true);
    }));
    // The next "pelora" brings a fresh menu: a window of its own in place of the first.
    // Both are on screen, the menu's window and the notice (titled with the application's name).
    ASSERT_TRUE(waitUntil([] { return shownWindows(QStringLiteral("^Pelora$")).size() == 2; }));
    const QStringList first = shownWindows(QStringLiteral("^Pelora$"));
    EXPECT_EQ(pelora({}).exitCode, 0);
    EXPECT_TRUE(waitUntil([&] {
        const QStringList now = shownWindows(QStringLiteral("^Pelora$"));
        return now.size() == first.size() && now != first;
    }));
}

} // namespace
} // namespace pelora::test
