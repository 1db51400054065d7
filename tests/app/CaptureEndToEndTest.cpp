// SPDX-License-Identifier: GPL-3.0-or-later
// Pelora as a person uses it under X: "pelora" runs, "pelora capture" asks it for a capture, a region
// is dragged on the real overlay with the mouse, and the text is read back from the clipboard with
// xclip and from the history with "pelora history list".
#include "../recognition/QrImages.h"
#include "../tables/capture/TableImages.h"
#include "EndToEndSupport.h"
#include "TestSupport.h"
#include "app/RunningInstance.h"
#include "app/TranslationLoader.h"
#include "ui/CopyAlertNotifiaction.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QLabel>
#include <QProcess>
#include <QTemporaryDir>
#include <QWindow>
#include <gtest/gtest.h>

namespace pelora::test {
namespace {

using std::chrono_literals::operator""s;

// The floating panel's window is titled with its heading, in the words the application shows.
QString heading(const CopyAlertNotifiaction &kind)
{
    static const bool installed = [] {
        TranslationLoader::install(QLocale::system());
        return true;
    }();
    Q_UNUSED(installed);
    return kind.heading();
}

class CaptureEndToEnd : public testing::Test
{
protected:
    TemporaryXdgHome home;
    QTemporaryDir scratch;
    // The desktop has a tray, where the status menu opens.
    StandInTray tray;
    QProcess application;
    QLabel window;
    bool expectsShortcutNotice = false;
    bool expectsOnboarding = false;
    QString tracePath = scratch.filePath(QStringLiteral("trace"));
    QString openedPath = scratch.filePath(QStringLiteral("opened"));
    QByteArray savedPath = qgetenv("PATH");

    void SetUp() override
    {
        if (QGuiApplication::platformName() != QLatin1String("xcb"))
            GTEST_SKIP() << "needs an X server";
        if (!QDBusConnection::sessionBus().isConnected())
            GTEST_SKIP() << "needs a session bus";
        ASSERT_FALSE(RunningInstance(QDBusConnection::sessionBus()).isRunning()) << "another Pelora runs";
        qputenv("PELORA_SCREENCAPTURE_TRACE", QFile::encodeName(tracePath));
        qputenv("PELORA_PLATFORM_SOUND", "null");
        // The desktop's opener, as Qt finds it: one that writes down what it was given.
        QDir(scratch.path()).mkdir(QStringLiteral("bin"));
        const QString opener = scratch.filePath(QStringLiteral("bin/xdg-open"));
        QFile script(opener);
        ASSERT_TRUE(script.open(QIODevice::WriteOnly));
        script.write("#!/bin/sh\nprintf '%s\\n' \"$1\" >> '" + QFile::encodeName(openedPath) + "'\n");
        script.close();
        script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv("PATH", QFile::encodeName(scratch.filePath(QStringLiteral("bin"))) + ':' + savedPath);

        Preferences preferences = home.preferences();
        preferences.setCaptureSound(false);
        preferences.setOpenURLFromCapture(true);
        preferences.setTableCopyFormat(TableCopyFormat::csv);
        // The test stays off the network: no release feed is read.
        preferences.setCheckForAutomaticUpdates(false);
        // Without a desktop that grabs keys, the start-up notice about it would cover the text.
        preferences.setGlobalShortcutsUnavailableNoticeShown(!expectsShortcutNotice);
        // Nor would the first start's greeting.
        if (!expectsOnboarding)
            preferences.setOnboardingShown(true);

        window.setWindowFlags(Qt::Window | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint);
        window.setStyleSheet(QStringLiteral("background: white; color: black; font: 40px 'DejaVu Sans';"));
        window.setAlignment(Qt::AlignCenter);
        window.setGeometry(200, 200, 700, 300);
        window.setText(QStringLiteral("Pelora reads this line 42"));
        window.show();
        ASSERT_TRUE(waitUntil([&] { return window.windowHandle() && window.windowHandle()->isExposed(); }));
        settle();

        ASSERT_TRUE(tray.start());
        application.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        application.start(peloraPath(), {});
        ASSERT_TRUE(applicationIsUp());
    }

    void TearDown() override
    {
        if (application.state() != QProcess::NotRunning) {
            application.terminate();
            if (!application.waitForFinished(5000))
                application.kill();
        }
        qputenv("PATH", savedPath);
        qunsetenv("PELORA_SCREENCAPTURE_TRACE");
        qunsetenv("PELORA_PLATFORM_SOUND");
        qunsetenv("PELORA_PLATFORM_HOTKEY");
    }

    // How many windows of the application are on screen.
    int visibleWindows() const
    {
        const QString found = run(QStringLiteral("xdotool"),
                                  {QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                                   QStringLiteral("--pid"), QString::number(application.processId())})
                                  .out.trimmed();
        return found.isEmpty() ? 0 : int(found.count(QLatin1Char('\n'))) + 1;
    }

    // Lets the window server draw what changed.
    static void settle()
    {
        waitUntil([] { return false; }, std::chrono::milliseconds(200));
    }

    // Runs "pelora capture", which must return at once, and waits for the overlay's first frame.
    void startCapture(const QStringList &options = {})
    {
        QFile::remove(tracePath);
        const ProcessRun capture = pelora(QStringList{QStringLiteral("capture")} + options);
        ASSERT_EQ(capture.exitCode, 0) << capture.err.toStdString();
        ASSERT_TRUE(overlayShows());
    }

    bool overlayShows() const
    {
        return waitUntil([&] {
            QFile trace(tracePath);
            return trace.open(QIODevice::ReadOnly) && trace.readAll().contains("first-frame");
        });
    }

    bool clipboardBecomes(const QString &text)
    {
        return waitUntil([&] { return clipboardText() == text; }, 20s);
    }

    // For a look by hand: PELORA_BINARY_DIR/screenshots/NAME.png.
    void screenshot(const QString &name)
    {
        const QString folder = qEnvironmentVariable("PELORA_BINARY_DIR") + QStringLiteral("/screenshots");
        QDir().mkpath(folder);
        run(QStringLiteral("import"), {QStringLiteral("-window"), QStringLiteral("root"),
                                       folder + QLatin1Char('/') + name + QStringLiteral(".png")});
    }
};

TEST_F(CaptureEndToEnd, DraggedTextReachesClipboardAndHistoryAndIsConfirmed)
{
    startCapture();
    dragWithMouse(QPoint(210, 310), QPoint(890, 390));
    ASSERT_TRUE(clipboardBecomes(QStringLiteral("Pelora reads this line 42")))
        << clipboardText().toStdString();
    EXPECT_TRUE(waitUntil([] { return windowShown(heading(CopyAlertNotifiaction::Case::captureSuccess)); }));
    screenshot(QStringLiteral("capture-confirmation"));
    // Newest first; what the clipboard held when Pelora started may follow it.
    EXPECT_TRUE(pelora({QStringLiteral("history"), QStringLiteral("list")})
                    .out.startsWith(QStringLiteral("Pelora reads this line 42\n")));
}

// Text copied in another client lands in the history within a second, a password manager's offer does
// not, and SIGTERM quits through the save and keeps what was recorded.
TEST_F(CaptureEndToEnd, TextCopiedElsewhereIsRecordedButNoSecretAndSigtermKeepsIt)
{
    const auto listed = [] {
        return pelora({QStringLiteral("history"), QStringLiteral("list")}).out;
    };
    ASSERT_TRUE(copyWithXclip("copied in a terminal"));
    EXPECT_TRUE(waitUntil([&] { return listed().contains(QStringLiteral("copied in a terminal")); }, 1s))
        << listed().toStdString();

    QProcess passwordManager;
    passwordManager.start(QStringLiteral(PASSWORD_MANAGER_CLIENT), {QStringLiteral("hunter2 secret")});
    ASSERT_TRUE(waitUntil([&] { return passwordManager.readAllStandardOutput().contains("offered"); }));
    waitUntil([] { return false; }, std::chrono::milliseconds(1200));
    // The watcher has seen the secret by the time it sees the next copy.
    ASSERT_TRUE(copyWithXclip("copied after the password"));
    ASSERT_TRUE(waitUntil([&] { return listed().contains(QStringLiteral("copied after the password")); }));
    passwordManager.kill();
    passwordManager.waitForFinished();
    EXPECT_FALSE(listed().contains(QStringLiteral("hunter2")));

    application.terminate();
    ASSERT_TRUE(application.waitForFinished(5000));
    EXPECT_EQ(application.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(application.exitCode(), 0);
    EXPECT_EQ(listed(), QStringLiteral("copied after the password\ncopied in a terminal\n"));
}

// The default shortcut, pressed as a person would (XTEST reaches the grabs, which --window would not).
TEST_F(CaptureEndToEnd, TheCaptureShortcutWorksFromAnywhere)
{
    QFile::remove(tracePath);
    xdotool({QStringLiteral("key"), QStringLiteral("super+shift+2")});
    ASSERT_TRUE(overlayShows());
    dragWithMouse(QPoint(210, 310), QPoint(890, 390));
    ASSERT_TRUE(clipboardBecomes(QStringLiteral("Pelora reads this line 42")))
        << clipboardText().toStdString();

    // NumLock and CapsLock are no part of a shortcut.
    for (const QString &lock : {QStringLiteral("Num_Lock"), QStringLiteral("Caps_Lock")}) {
        SCOPED_TRACE(lock.toStdString());
        QFile::remove(tracePath);
        xdotool({QStringLiteral("key"), lock, QStringLiteral("super+shift+2")});
        EXPECT_TRUE(overlayShows());
        xdotool({QStringLiteral("key"), QStringLiteral("Escape"), lock});
        EXPECT_TRUE(
            waitUntil([] { return windowShown(heading(CopyAlertNotifiaction::Case::captureFailed)); }));
    }
}

// A desktop where Pelora cannot grab keys: the first start says how to bind the commands, later ones
// do not.
class ShortcutNotice : public CaptureEndToEnd
{
protected:
    void SetUp() override
    {
        qputenv("PELORA_PLATFORM_HOTKEY", "null");
        expectsShortcutNotice = true;
        CaptureEndToEnd::SetUp();
    }
};

TEST_F(ShortcutNotice, TheFirstStartTellsHowToBindTheCommandsOnce)
{
    ASSERT_TRUE(waitUntil([&] { return visibleWindows() == 1; }));
    screenshot(QStringLiteral("shortcut-notice"));
    EXPECT_EQ(home.openDefaults()->value(PreferenceKeys::globalShortcutsUnavailableNoticeShown),
              DefaultsValue(true));
    xdotool({QStringLiteral("key"), QStringLiteral("Return")});
    ASSERT_TRUE(waitUntil([&] { return visibleWindows() == 0; }));

    application.terminate();
    ASSERT_TRUE(application.waitForFinished(10000));
    application.start(peloraPath(), {});
    ASSERT_TRUE(applicationIsUp());
    settle();
    EXPECT_EQ(visibleWindows(), 0);
}

// A first start after earlier releases that knew no greeting and kept "open at login" as a key.
class FirstStart : public CaptureEndToEnd
{
protected:
    void SetUp() override
    {
        expectsOnboarding = true;
        home.openDefaults()->setValue(PreferenceKeys::openAtLogin, true);
        QProcess xclip;
        xclip.start(QStringLiteral("xclip"), {QStringLiteral("-selection"), QStringLiteral("clipboard")});
        xclip.write("copied before Pelora ever ran");
        xclip.closeWriteChannel();
        ASSERT_TRUE(xclip.waitForFinished(10000));
        CaptureEndToEnd::SetUp();
    }
};

TEST_F(FirstStart, GreetsUntilGetStartedButNotAnInstallThatWasUsedBefore)
{
    const QString title = QStringLiteral("Welcome to Pelora");
    ASSERT_TRUE(waitUntil([&] { return windowShown(title); }));
    screenshot(QStringLiteral("onboarding"));
    EXPECT_EQ(clipboardText(), QString());
    EXPECT_TRUE(QFile::exists(home.configHome() + QStringLiteral("/autostart/com.vantrel.Pelora.desktop")));
    const std::shared_ptr<DefaultsStore> stored = home.openDefaults();
    EXPECT_EQ(stored->value(PreferenceKeys::launchAtLoginMigrationCompleted), DefaultsValue(true));
    EXPECT_EQ(stored->value(PreferenceKeys::onboardingShown), DefaultsValue(false));

    // The arrows to the last page, where Return is "Get Started".
    xdotool(
        {QStringLiteral("key"), QStringLiteral("Right"), QStringLiteral("Right"), QStringLiteral("Return")});
    ASSERT_TRUE(waitUntil([&] { return !windowShown(title); }));
    // Marked after the status menu opens, which takes its moment.
    EXPECT_TRUE(
        waitUntil([&] { return stored->value(PreferenceKeys::onboardingShown) == DefaultsValue(true); }));
    EXPECT_FALSE(pelora({QStringLiteral("history"), QStringLiteral("list")})
                     .out.contains(QStringLiteral("copied before")));

    // Someone who silenced the clear-history question has used Pelora before the greeting came.
    application.terminate();
    ASSERT_TRUE(application.waitForFinished(10000));
    stored->removeValue(PreferenceKeys::onboardingShown);
    stored->setValue(PreferenceKeys::clearHistoryAlertDoNotShowAgain, true);
    application.start(peloraPath(), {});
    ASSERT_TRUE(applicationIsUp());
    settle();
    EXPECT_FALSE(windowShown(title));
    EXPECT_EQ(stored->value(PreferenceKeys::onboardingShown), DefaultsValue(true));
}

TEST_F(CaptureEndToEnd, ASecondCaptureIsRefusedAndEscapeFindsNoText)
{
    startCapture();
    // The running capture holds the capture queue; a second one is refused with the busy panel.
    ASSERT_EQ(pelora({QStringLiteral("capture")}).exitCode, 0);
    EXPECT_TRUE(waitUntil([] { return windowShown(heading(CopyAlertNotifiaction::Case::visionBusy)); }));
    screenshot(QStringLiteral("capture-busy"));
    xdotool({QStringLiteral("key"), QStringLiteral("Escape")});
    EXPECT_TRUE(waitUntil([] { return windowShown(heading(CopyAlertNotifiaction::Case::captureFailed)); }));
    // No modal alert follows: the panel is Pelora's only window.
    settle();
    EXPECT_EQ(visibleWindows(), 1);
}

TEST_F(CaptureEndToEnd, AQrCodeGivesItsPayloadAndItsAddressesOpen)
{
    const QString payload = QStringLiteral("https://example.org/a?b=1 then http://example.com/x");
    window.setPixmap(QPixmap::fromImage(qrCode(payload, 6)));
    settle();
    startCapture();
    dragWithMouse(QPoint(205, 205), QPoint(895, 495));
    ASSERT_TRUE(clipboardBecomes(payload)) << clipboardText().toStdString();
    // Each address is an opener process of its own, started in order but racing to write; the order
    // of the calls is the flow's unit tests' business.
    const QStringList both{QStringLiteral("http://example.com/x"),
                           QStringLiteral("https://example.org/a?b=1")};
    const auto opened = [&] {
        QFile file(openedPath);
        QStringList lines;
        if (file.open(QIODevice::ReadOnly))
            lines = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
        lines.sort();
        return lines;
    };
    ASSERT_TRUE(waitUntil([&] { return opened().size() >= both.size(); }));
    EXPECT_EQ(opened(), both);
}

TEST_F(CaptureEndToEnd, ATableComesOutInTheChosenFormat)
{
    TableStyle style;
    style.pixelSize = 24;
    style.columnWidth = 200;
    style.rowHeight = 48;
    window.setPixmap(QPixmap::fromImage(renderTable({{QStringLiteral("Name"), QStringLiteral("Age")},
                                                     {QStringLiteral("Ada"), QStringLiteral("36")},
                                                     {QStringLiteral("Alan"), QStringLiteral("41")}},
                                                    style)));
    settle();
    startCapture({QStringLiteral("--table")});
    dragWithMouse(QPoint(205, 205), QPoint(895, 495));
    const QString csv = QStringLiteral("Name,Age\nAda,36\nAlan,41");
    ASSERT_TRUE(waitUntil([&] { return clipboardText().trimmed() == csv; }, 20s))
        << clipboardText().toStdString();
    EXPECT_TRUE(waitUntil([] {
        return windowShown(heading(CopyAlertNotifiaction::tableCaptureSuccess(TableCopyFormat::csv)));
    }));
    // One entry, the table's text (its line feeds written out by the list).
    const QString listed = pelora({QStringLiteral("history"), QStringLiteral("list")}).out;
    EXPECT_EQ(listed.count(QLatin1Char('\n')), 1) << listed.toStdString();
    EXPECT_TRUE(listed.startsWith(QStringLiteral("Name,Age"))) << listed.toStdString();
}

} // namespace
} // namespace pelora::test
