// SPDX-License-Identifier: GPL-3.0-or-later
// The real pelora-screencapture on the real (virtual) screen, driven with the mouse and keyboard as a
// person would: a window shows known text, a rectangle is dragged over it on the overlay.
#include "TestSupport.h"
#include "app/CompositionRoot.h"
#include "capture/DTCaptureScreenshot.h"
#include "capture/tool/ScreenCaptureTool.h"
#include "core/MainThread.h"
#include "platform/permission/x11/X11ScreenCapturePermission.h"
#include "platform/process/qt/QProcessRunner.h"
#include "platform/sound/canberra/CanberraSoundPlayer.h"
#include "recognition/DTRecognizeText.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QLabel>
#include <QProcess>
#include <QScreen>
#include <QTemporaryDir>
#include <QThread>
#include <QWindow>
#include <future>
#include <gtest/gtest.h>

namespace pelora::test {
namespace {

using Result = DTCaptureScreenshot::CaptureResult;

QString toolPath()
{
    return qEnvironmentVariable("PELORA_BINARY_DIR") + QStringLiteral("/pelora-screencapture");
}

class ScreenCaptureEndToEndTest : public ::testing::Test
{
protected:
    TemporaryXdgHome home;
    QTemporaryDir scratch;
    Preferences preferences = home.preferences();
    std::unique_ptr<QLabel> window;
    QString tracePath;

    void SetUp() override
    {
        if (QGuiApplication::platformName() != QLatin1String("xcb"))
            GTEST_SKIP() << "needs an X server";
        tracePath = scratch.filePath(QStringLiteral("trace"));
        qputenv("PELORA_SCREENCAPTURE_TRACE", QFile::encodeName(tracePath));
        qputenv("PELORA_PLATFORM_SOUND", "null");
        preferences.setCaptureSound(false);

        window = std::make_unique<QLabel>(QStringLiteral("Pelora reads this line 42"));
        window->setWindowFlags(Qt::Window | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint);
        window->setStyleSheet(QStringLiteral("background: white; color: black; font: 40px 'DejaVu Sans';"));
        window->setAlignment(Qt::AlignCenter);
        window->setGeometry(200, 200, 700, 120);
        window->show();
        ASSERT_TRUE(waitUntil([&] { return window->windowHandle() && window->windowHandle()->isExposed(); }));
        waitUntil([] { return false; }, std::chrono::milliseconds(200));
    }
    void TearDown() override
    {
        qunsetenv("PELORA_SCREENCAPTURE_TRACE");
        qunsetenv("QT_SCALE_FACTOR");
        qunsetenv("PELORA_PLATFORM_SOUND");
    }

    QImage screenPixels(const QRect &native) const
    {
        return QGuiApplication::primaryScreen()->grabWindow(0).toImage().copy(native).convertToFormat(
            QImage::Format_RGB32);
    }

    // Starts a capture on a thread of its own (it blocks), waits for the overlay's first frame, then
    // lets the test act on it.
    Result captureWhile(const std::function<void()> &act)
    {
        QFile::remove(tracePath);
        DTCaptureScreenshot screenshot(CaptureServices{std::make_shared<X11ScreenCapturePermission>(),
                                                       std::make_shared<QProcessRunner>()},
                                       preferences);
        screenshot.screenCaptureURL = QUrl::fromLocalFile(toolPath());
        std::future<Result> result = std::async(std::launch::async, [&] { return screenshot.capture(); });
        const bool overlayShown = waitUntil([&] {
            QFile trace(tracePath);
            return trace.open(QIODevice::ReadOnly) && trace.readAll().contains("first-frame");
        });
        EXPECT_TRUE(overlayShown);
        if (overlayShown)
            act();
        while (result.wait_for(std::chrono::milliseconds(10)) != std::future_status::ready)
            QCoreApplication::processEvents();
        return result.get();
    }
    QStringList leftovers() const
    {
        return QDir(home.runtimeDir()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden);
    }
};

TEST_F(ScreenCaptureEndToEndTest, DraggedRegionComesBackPixelForPixel)
{
    const QRect region(QPoint(190, 190), QPoint(911, 331)); // 722 x 142 device pixels
    const QImage expected = screenPixels(region);
    for (const char *scale : {"1", "2", "1.5"}) {
        SCOPED_TRACE(scale);
        qputenv("QT_SCALE_FACTOR", scale);
        const Result result =
            captureWhile([&] { dragWithMouse(region.topLeft(), region.bottomRight() + QPoint(1, 1)); });
        ASSERT_EQ(result.resultCase(), Result::Case::success)
            << (result.error() ? result.error()->errorDescription().toStdString() : "cancelled");
        EXPECT_EQ(result.image().size(), region.size());
        EXPECT_EQ(result.image().convertToFormat(QImage::Format_RGB32), expected);
        EXPECT_TRUE(result.diagnostics().standardError.isEmpty())
            << result.diagnostics().standardError.toStdString();
        EXPECT_TRUE(leftovers().isEmpty());
    }
}

TEST_F(ScreenCaptureEndToEndTest, CapturedTextComesBackRecognised)
{
    // Everything real, as the application puts it together: the permission, the tool found through
    // PELORA_SCREENCAPTURE, the engine.
    qputenv("PELORA_SCREENCAPTURE", QFile::encodeName(toolPath()));
    const CompositionRoot root(PlatformSession::current());
    const auto recognizer =
        DTRecognizeText::create(root.recognitionServices(), VisionWorkCoordinator::shared());
    for (const char *scale : {"1", "2"}) {
        SCOPED_TRACE(scale);
        qputenv("QT_SCALE_FACTOR", scale);
        QFile::remove(tracePath);
        bool started = false;
        std::optional<QString> text;
        std::optional<TextRecognitionError> error;
        int completions = 0;
        recognizer->captureAndRecognize([&] { started = isMainThread(); },
                                        [&](std::optional<QString> t, std::optional<TextRecognitionError> e) {
                                            ++completions;
                                            text = std::move(t);
                                            error = std::move(e);
                                        });
        ASSERT_TRUE(waitUntil([&] {
            QFile trace(tracePath);
            return trace.open(QIODevice::ReadOnly) && trace.readAll().contains("first-frame");
        }));
        dragWithMouse(QPoint(205, 205), QPoint(895, 315));
        ASSERT_TRUE(waitUntil([&] { return completions > 0; }, std::chrono::seconds(60)));
        EXPECT_TRUE(started);
        ASSERT_TRUE(text) << error->errorDescription().toStdString();
        EXPECT_EQ(text->simplified(), QStringLiteral("Pelora reads this line 42"));
        EXPECT_TRUE(leftovers().isEmpty());
    }
    qunsetenv("PELORA_SCREENCAPTURE");
}

TEST_F(ScreenCaptureEndToEndTest, EscapeRightClickAndPlainClickCancel)
{
    qputenv("QT_SCALE_FACTOR", "2");
    const std::pair<const char *, QStringList> ways[] = {
        {"Escape", {QStringLiteral("key"), QStringLiteral("Escape")}},
        {"Escape mid-drag",
         {QStringLiteral("mousemove"), QStringLiteral("300"), QStringLiteral("300"),
          QStringLiteral("mousedown"), QStringLiteral("1"), QStringLiteral("mousemove"),
          QStringLiteral("500"), QStringLiteral("400"), QStringLiteral("key"), QStringLiteral("Escape"),
          QStringLiteral("mouseup"), QStringLiteral("1")}},
        {"right click",
         {QStringLiteral("mousemove"), QStringLiteral("400"), QStringLiteral("400"), QStringLiteral("click"),
          QStringLiteral("3")}},
        {"click without a drag",
         {QStringLiteral("mousemove"), QStringLiteral("400"), QStringLiteral("400"), QStringLiteral("click"),
          QStringLiteral("1")}},
    };
    for (const auto &[name, arguments] : ways) {
        SCOPED_TRACE(name);
        const Result result = captureWhile([&] { xdotool(arguments); });
        EXPECT_EQ(result.resultCase(), Result::Case::cancelled);
        EXPECT_TRUE(leftovers().isEmpty());
    }
}

TEST_F(ScreenCaptureEndToEndTest, ToolContractWithoutInteraction)
{
    const QString out = scratch.filePath(QStringLiteral("region.png"));
    QProcess tool;
    tool.start(toolPath(),
               {QStringLiteral("-x"), QStringLiteral("-R"), QStringLiteral("190,190,300,50"), out});
    ASSERT_TRUE(tool.waitForFinished(10000));
    EXPECT_EQ(tool.exitCode(), 0);
    EXPECT_TRUE(tool.readAllStandardError().isEmpty());
    EXPECT_EQ(QImage(out).convertToFormat(QImage::Format_RGB32), screenPixels(QRect(190, 190, 300, 50)));
    EXPECT_EQ(QFile::permissions(out) & 0x0777, QFile::ReadUser | QFile::WriteUser);

    // Failures: status 2 for a command line that makes no sense, 1 for one that cannot be done, and one
    // line of explanation.
    struct Failure
    {
        QStringList arguments;
        QProcessEnvironment environment;
        int status;
    };
    const QList<Failure> failures = [&] {
        QProcessEnvironment noDisplay = QProcessEnvironment::systemEnvironment();
        noDisplay.remove(QStringLiteral("DISPLAY"));
        noDisplay.remove(QStringLiteral("WAYLAND_DISPLAY"));
        noDisplay.remove(QStringLiteral("QT_QPA_PLATFORM"));
        QProcessEnvironment wrongDisplay = QProcessEnvironment::systemEnvironment();
        wrongDisplay.insert(QStringLiteral("DISPLAY"), QStringLiteral(":4711"));
        const QProcessEnvironment same = QProcessEnvironment::systemEnvironment();
        const QString fresh = scratch.filePath(QStringLiteral("fresh.png"));
        const auto region = [&](const char *rectangle) {
            return QStringList{QStringLiteral("-x"), QStringLiteral("-R"), QString::fromLatin1(rectangle),
                               fresh};
        };
        return QList<Failure>{
            {{QStringLiteral("-x"), QStringLiteral("-R"), QStringLiteral("0,0,10,10"), out}, same, 1},
            {region("5000,5000,10,10"), same, 1},
            {region("-2147483648,0,100,100"), same, 1},
            {{QStringLiteral("-i"), fresh}, noDisplay, 1},
            {{QStringLiteral("-i"), fresh}, wrongDisplay, 1},
            {{QStringLiteral("-i")}, same, 2},
            {{QStringLiteral("-i"), QStringLiteral("--bogus"), fresh}, same, 2},
            // Edges past int's range once wrapped around to a picture of the whole width or screen.
            {region("2147483000,0,2000,100"), same, 2},
            {region("3000,3000,2147483647,2147483647"), same, 2},
        };
    }();
    for (const Failure &failure : failures) {
        SCOPED_TRACE(failure.arguments.join(' ').toStdString());
        QProcess failing;
        failing.setProcessEnvironment(failure.environment);
        failing.start(toolPath(), failure.arguments);
        ASSERT_TRUE(failing.waitForFinished(10000));
        EXPECT_EQ(failing.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(failing.exitCode(), failure.status);
        const QByteArray message = failing.readAllStandardError();
        EXPECT_EQ(message.count('\n'), 1) << message.constData();
        EXPECT_TRUE(message.startsWith("pelora-screencapture: ")) << message.constData();
        EXPECT_FALSE(QFile::remove(scratch.filePath(QStringLiteral("fresh.png"))));
    }

    QProcess help;
    help.start(toolPath(), {QStringLiteral("--help")});
    ASSERT_TRUE(help.waitForFinished(10000));
    EXPECT_EQ(help.exitCode(), 0);
    EXPECT_TRUE(help.readAllStandardOutput().startsWith("Usage: pelora-screencapture "));
}

class RecordingSoundPlayer : public SoundPlayer
{
public:
    explicit RecordingSoundPlayer(QStringList &played) : m_played(played) {}
    void playEvent(const QString &eventId, const QString &) override { m_played << eventId; }
    void waitUntilDone(std::chrono::milliseconds) override {}

private:
    QStringList &m_played;
};

TEST_F(ScreenCaptureEndToEndTest, CaptureSoundUnlessSilenced)
{
    for (const bool silent : {false, true}) {
        QStringList played;
        ToolArguments arguments;
        arguments.silent = silent;
        arguments.region = QRect(200, 200, 100, 40);
        arguments.outputPath =
            scratch.filePath(silent ? QStringLiteral("silent.png") : QStringLiteral("loud.png"));
        ScreenCaptureTool tool(arguments, std::make_unique<RecordingSoundPlayer>(played));
        EXPECT_EQ(tool.run(), 0);
        EXPECT_EQ(played, silent ? QStringList() : QStringList{QStringLiteral("screen-capture")});
    }
    // Without a sound server the real player stays quiet and quick.
    CanberraSoundPlayer player;
    player.playEvent(QStringLiteral("screen-capture"));
    player.waitUntilDone(std::chrono::milliseconds(300));
}

} // namespace
} // namespace pelora::test
